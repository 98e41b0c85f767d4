#include "host/model/views.h"

#include <algorithm>

#include "lq_data/host/model/project.h"

namespace lq::host {

namespace {

class Selection final : public LQSELECTION {
  public:
    explicit Selection(const IdList& ids) : ids_(ids) {}

    int32_t GetCount() const override { return static_cast<int32_t>(ids_.size()); }
    ID GetID(int32_t index) const override {
        return index >= 0 && index < GetCount() ? ids_[static_cast<std::size_t>(index)] : ID();
    }

  private:
    const IdList& ids_;
};

// What every view answers. `Record` has a name and a comment.
template <typename Base, typename Record>
class View : public Base {
  public:
    View(ID id, int32_t kind, const Record& record) : record_(record), id_(id), kind_(kind) {}

    ID GetId() const override { return id_; }
    const char16_t* GetName() const override { return record_.name; }
    int32_t GetKind() const override { return kind_; }
    const char16_t* GetComment(int32_t) const override { return record_.comment; }

  protected:
    const Record& record_;

  private:
    const ID id_;
    const int32_t kind_;
};

template <typename Base>
class DeclarationView final : public View<Base, Declaration> {
  public:
    DeclarationView(ID id, const Declaration& d) : View<Base, Declaration>(id, d.Kind(), d) {}

    const char16_t* GetDeclComment() const override { return this->record_.comment; }
    const char16_t* GetDeclComment2() const override { return this->record_.comment2; }
    const char16_t* GetType() const override { return this->record_.type; }
    const char16_t* GetInitValue() const override { return this->record_.initValue; }
    const char16_t* GetAddress() const override { return this->record_.address; }
    const char16_t* GetClass() const override { return KeywordOf(this->record_.section); }
};

// The part of a POU that holds its declarations.
class HeaderView final : public View<LQOBJECT, Pou> {
  public:
    HeaderView(ID id, const Pou& pou)
        : View(id, kKindHeader, pou), declarations_(pou.declarations) {}

    const char16_t* GetComment(int32_t) const override { return record_.headerComment; }
    LQSELECTION* GetSelection() override { return &declarations_; }
    int32_t GetMemberCount() const override { return declarations_.GetCount(); }

  private:
    Selection declarations_;
};

// A POU of any kind. A program or function block has no result type, so LQFUN serves all three.
class PouView final : public View<LQFUN, Pou> {
  public:
    PouView(ID id, const Pou& pou) : View(id, pou.kind, pou), header_(id, pou) {}

    LQOBJECT* GetHeader() override { return &header_; }
    LQSELECTION* GetSelection() override { return header_.GetSelection(); }
    int32_t GetMemberCount() const override { return header_.GetMemberCount(); }
    int GetEnoFlag() const override { return record_.eno ? 1 : 0; }
    const char16_t* GetResultType() const override { return record_.resultType; }

  private:
    HeaderView header_;
};

// A data type. Asked for its header, it answers itself.
class DataTypeView final : public View<LQDUT, DataType> {
  public:
    DataTypeView(ID id, const DataType& type)
        : View(id, type.structure ? LQ_KIND_DUT : LQ_KIND_13, type), members_(type.members) {}

    LQOBJECT* GetHeader() override { return this; }
    LQSELECTION* GetSelection() override { return &members_; }
    int32_t GetMemberCount() const override { return members_.GetCount(); }
    const char16_t* GetType() const override { return record_.baseType; }
    const char16_t* GetInitValue() const override { return record_.initValue; }
    const char16_t* GetDeclComment() const override { return record_.comment; }

  private:
    Selection members_;
};

class VariableListView final : public View<LQNAVIOBJECT, VariableList> {
  public:
    VariableListView(ID id, const VariableList& list)
        : View(id, kKindVariableList, list), declarations_(list.declarations) {}

    LQSELECTION* GetSelection() override { return &declarations_; }
    int32_t GetMemberCount() const override { return declarations_.GetCount(); }

  private:
    Selection declarations_;
};

// A configuration or a resource: the collection of its resources or tasks.
template <typename Record>
class CollectionView final : public View<LQCOLLECTION, Record> {
  public:
    CollectionView(ID id, int32_t kind, const Record& record, const IdList& members)
        : View<LQCOLLECTION, Record>(id, kind, record), members_(members) {}

    ID GetID(int32_t index) const override { return members_.GetID(index); }
    LQSELECTION* GetSelection() override { return &members_; }
    int32_t GetMemberCount() const override { return members_.GetCount(); }

  private:
    Selection members_;
};

// The programs assigned to a task: POUs where the project has them, else the instances, which
// answer the names of the POUs that are missing.
class AssignedPrograms final : public LQSELECTION {
  public:
    AssignedPrograms(const Project& project, const IdList& instances)
        : project_(project), instances_(instances) {}

    int32_t GetCount() const override { return instances_.GetCount(); }
    ID GetID(int32_t index) const override {
        const ID instance = instances_.GetID(index);
        const ProgramInstance* record = project_.GetProgramInstance(instance);
        const ID pou = record ? project_.FindPou(record->typeName) : ID();
        return pou != ID() ? pou : instance;
    }

  private:
    const Project& project_;
    const Selection instances_;
};

class TaskView final : public View<LQTASK, Task> {
  public:
    TaskView(const Project& project, ID id, const Task& task)
        : View(id, kKindTask, task), programs_(project, task.programs) {}

    const char16_t* GetPriority() const override { return record_.priority; }
    const char16_t* GetInterval() const override { return record_.interval; }
    const char16_t* GetEvent() const override { return record_.event; }
    LQSELECTION* GetSelection() override { return &programs_; }
    // A task without programs is a task as well: never 0, the mark of an object to be passed over.
    int32_t GetMemberCount() const override { return std::max(1, programs_.GetCount()); }

  private:
    AssignedPrograms programs_;
};

class ProgramInstanceView final : public View<LQNAVIOBJECT, ProgramInstance> {
  public:
    ProgramInstanceView(ID id, const ProgramInstance& instance)
        : View(id, kKindProgramInstance, instance) {}

    const char16_t* GetName() const override { return record_.typeName; }
    const char16_t* GetType() const override { return record_.typeName; }
};

class PoolView final : public LQCOLLECTION {
  public:
    PoolView(const Project& project, ID id)
        : project_(project), id_(id), members_(project.Below(id)) {}

    ID GetId() const override { return id_; }
    int32_t GetKind() const override { return kKindPool; }
    ID GetID(int32_t index) const override { return members_.GetID(index); }
    LQSELECTION* GetSelection() override { return &members_; }
    int32_t GetMemberCount() const override { return members_.GetCount(); }

    // `kind` is LQ_LOOKUP_FUNCTION or LQ_LOOKUP_FUNCTION_BLOCK.
    ID Lookup(const char16_t* name, uint32_t kind) const override {
        const ID id = name ? project_.FindBelow(id_, name) : ID();
        const Pou* pou = project_.GetPou(id);
        const bool wanted =
            pou && ((kind == LQ_LOOKUP_FUNCTION && pou->kind == LQ_KIND_FUNCTION) ||
                    (kind == LQ_LOOKUP_FUNCTION_BLOCK && pou->kind == LQ_KIND_FUNCTION_BLOCK));
        return wanted ? id : ID();
    }

  private:
    const Project& project_;
    const ID id_;
    Selection members_;
};

}  // namespace

LQNAVIOBJECT* NewView(const Project& project, ID id) {
    if (const Pou* pou = project.GetPou(id)) {
        return new PouView(id, *pou);
    }
    if (const DataType* type = project.GetDataType(id)) {
        return new DataTypeView(id, *type);
    }
    if (const VariableList* list = project.GetVariableList(id)) {
        return new VariableListView(id, *list);
    }
    if (const Configuration* configuration = project.GetConfiguration(id)) {
        return new CollectionView<Configuration>(id, kKindConfiguration, *configuration,
                                                 configuration->resources);
    }
    if (const Resource* resource = project.GetResource(id)) {
        return new CollectionView<Resource>(id, kKindResource, *resource, resource->tasks);
    }
    if (const Task* task = project.GetTask(id)) {
        return new TaskView(project, id, *task);
    }
    if (const ProgramInstance* instance = project.GetProgramInstance(id)) {
        return new ProgramInstanceView(id, *instance);
    }
    return SortOf(id) == Sort::kPool ? new PoolView(project, id) : nullptr;
}

LQDECL* NewDeclarationView(const Project& project, ID id) {
    const Declaration* declaration = project.GetDeclaration(id);
    if (!declaration) {
        return nullptr;
    }
    if (declaration->Kind() == LQ_KIND_GVL_DECL) {
        return new DeclarationView<LQGVLDECL>(id, *declaration);
    }
    return new DeclarationView<LQPOUHDECL>(id, *declaration);
}

// -- Managers -------------------------------------------------------------------------------------

LQNAVIOBJECT* ObjectManager::Get(ID id) {
    return project_.GetView(id);
}

ID ObjectManager::Find(const char16_t* name, ID parent, uint32_t kind) {
    const ID id = name ? project_.FindBelow(parent, name) : ID();
    if (kind == LQ_ANY_KIND) {
        return id;
    }
    const Declaration* declaration = project_.GetDeclaration(id);
    const LQNAVIOBJECT* object = project_.GetView(id);
    const int32_t found = declaration ? declaration->Kind() : object ? object->GetKind() : 0;
    return static_cast<uint32_t>(found) == kind ? id : ID();
}

LQCOLLECTION* ObjectManager::GetPOUPool() {
    return static_cast<LQCOLLECTION*>(project_.GetView(project_.PouPool()));
}

LQCOLLECTION* ObjectManager::GetLibraryPool() {
    return static_cast<LQCOLLECTION*>(project_.GetView(project_.LibraryPool()));
}

LQCOLLECTION* ObjectManager::GetResourcePool() {
    return static_cast<LQCOLLECTION*>(project_.GetView(project_.ResourcePool()));
}

LQOBJECT* DeclarationManager::Get(ID id) {
    LQOBJECT* const declaration = NewDeclarationView(project_, id);
    return declaration ? declaration : NewView(project_, id);
}

}  // namespace lq::host
