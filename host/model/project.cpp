#include "lq_data/host/model/project.h"

#include <algorithm>
#include <new>

#include "host/model/views.h"
#include "lq_data/detail/chars.h"

namespace lq::host {

namespace {

constexpr std::size_t kPoolCount = 3;

const IdList kNothing;

template <typename Record>
const Record* At(const std::deque<Record>& records, ID id, Sort sort) {
    return SortOf(id) == sort && IndexOf(id) < records.size() ? &records[IndexOf(id)] : nullptr;
}

template <typename Record>
Record* At(std::deque<Record>& records, ID id, Sort sort) {
    return SortOf(id) == sort && IndexOf(id) < records.size() ? &records[IndexOf(id)] : nullptr;
}

// Makes the next push_back certain, growing as push_back does.
template <typename Item>
void MakeRoom(std::vector<Item>& list) {
    if (list.size() == list.capacity()) {
        list.reserve(list.size() * 2 + 4);
    }
}

bool EqualName(std::u16string_view a, Text b) {
    return chars::Length(b) == a.size() && chars::CompareNoCase(a.data(), b, a.size()) == 0;
}

}  // namespace

int32_t Declaration::Kind() const {
    if (section.scope == Scope::kTemp || SortOf(owner) == Sort::kDataType) {
        return LQ_KIND_LOCAL_DECL;
    }
    return SortOf(owner) == Sort::kVariableList ? int32_t{LQ_KIND_GVL_DECL}
                                                : kKindHeaderDeclaration;
}

// The one list of what record stands behind which sort. `function` is called with the record of
// `id`; its value-initialised result stands for no record.
template <typename Self, typename Function>
auto Project::WithRecord(Self& self, ID id, Function function) {
    using Result = decltype(function(self.pous_.front()));
    const auto apply = [&](auto& records) {
        return IndexOf(id) < records.size() ? function(records[IndexOf(id)]) : Result{};
    };
    switch (SortOf(id)) {
        case Sort::kDeclaration:
            return apply(self.declarations_);
        case Sort::kPou:
            return apply(self.pous_);
        case Sort::kDataType:
            return apply(self.dataTypes_);
        case Sort::kVariableList:
            return apply(self.variableLists_);
        case Sort::kConfiguration:
            return apply(self.configurations_);
        case Sort::kResource:
            return apply(self.resources_);
        case Sort::kTask:
            return apply(self.tasks_);
        case Sort::kProgramInstance:
            return apply(self.programInstances_);
        default:
            return Result{};
    }
}

Project::Project() : managers_(std::make_unique<Managers>(*this)) {
    Views& pools = views_[static_cast<std::size_t>(Sort::kPool)];
    for (std::size_t i = 0; i < kPoolCount; ++i) {
        pools.emplace_back(NewView(*this, MakeId(Sort::kPool, static_cast<uint32_t>(i))));
        if (!pools.back()) {
            throw std::bad_alloc();
        }
    }
    AddStandardBlocks();
}

Project::~Project() = default;

// -- Building -------------------------------------------------------------------------------------

template <typename Record>
ID Project::Enter(std::deque<Record>& records, const Record& record, const Place& place) {
    if (records.size() >= kMaxObjects) {
        throw std::bad_alloc();
    }
    const ID id = MakeId(place.sort, static_cast<uint32_t>(records.size()));
    if (place.siblings) {
        MakeRoom(*place.siblings);
    }
    Views& views = views_[static_cast<std::size_t>(place.sort)];
    const bool hasView = place.sort != Sort::kDeclaration;  // those are views of the moment
    records.push_back(record);
    try {
        if (hasView) {
            views.emplace_back(NewView(*this, id));
            if (!views.back()) {
                throw std::bad_alloc();
            }
        }
        if (place.names) {
            place.names->AddFirst(id.GetNumber(), HashOfName(record.name), [&](uint32_t number) {
                const bool isSame = EqualName(record.name, NameOf(ID(number)));
                if (isSame && place.earlier) {
                    *place.earlier = ID(number);
                }
                return isSame;
            });
        }
    } catch (...) {
        if (views.size() == records.size()) {
            views.pop_back();
        }
        records.pop_back();
        throw;
    }
    if (place.siblings) {
        place.siblings->push_back(id);
    }
    return id;
}

Text Project::Intern(std::u16string_view text) {
    return texts_.Intern(text);
}

Text Project::Store(std::u16string_view text) {
    return texts_.Store(text);
}

ID Project::AddPou(const Pou& pou) {
    return pou.isStandard ? Enter(pous_, pou, {Sort::kPou, &libraryPous_, &libraryNames_})
                          : Enter(pous_, pou, {Sort::kPou, &projectPous_, &pouNames_});
}

ID Project::AddDataType(const DataType& type) {
    return Enter(dataTypes_, type, {Sort::kDataType, nullptr, &dataTypeNames_});
}

ID Project::AddVariableList(const VariableList& list) {
    if (list.parent != ID() && !GetConfiguration(list.parent) && !GetResource(list.parent) &&
        !GetPou(list.parent)) {
        return {};
    }
    return Enter(variableLists_, list, {Sort::kVariableList, nullptr, nullptr});
}

IdList* Project::DeclarationsOf(ID owner) {
    if (Pou* pou = At(pous_, owner, Sort::kPou)) {
        return &pou->declarations;
    }
    if (VariableList* list = At(variableLists_, owner, Sort::kVariableList)) {
        return &list->declarations;
    }
    DataType* type = At(dataTypes_, owner, Sort::kDataType);
    return type && type->structure ? &type->members : nullptr;
}

ID Project::AddDeclaration(const Declaration& declaration, ID* earlier) {
    IdList* siblings = DeclarationsOf(declaration.owner);
    if (!siblings) {
        return {};
    }
    const bool global = SortOf(declaration.owner) == Sort::kVariableList;
    return Enter(declarations_, declaration,
                 {Sort::kDeclaration, siblings, global ? &globalNames_ : nullptr, earlier});
}

ID Project::AddAside(const Declaration& declaration) {
    Pou* const pou = EditPou(declaration.owner);
    return DeclarationsOf(declaration.owner) || GetConfiguration(declaration.owner)
               ? Enter(declarations_, declaration,
                       {Sort::kDeclaration, pou ? &pou->implicit : nullptr, nullptr})
               : ID();
}

void Project::Adopt(ID declaration) {
    const Declaration* record = GetDeclaration(declaration);
    if (IdList* siblings = record ? DeclarationsOf(record->owner) : nullptr) {
        siblings->push_back(declaration);
        if (Pou* const pou = EditPou(record->owner)) {
            std::erase_if(pou->implicit, [=](ID id) { return id == declaration; });
        }
    }
}

void Project::BeginFile(const SourceFile& file) {
    FileBeginning beginning{file, {}};
    const auto mark = [&](Sort sort, const auto& records) {
        beginning.first[static_cast<std::size_t>(sort)] = static_cast<uint32_t>(records.size());
    };
    mark(Sort::kDeclaration, declarations_);
    mark(Sort::kPou, pous_);
    mark(Sort::kDataType, dataTypes_);
    mark(Sort::kVariableList, variableLists_);
    mark(Sort::kConfiguration, configurations_);
    mark(Sort::kResource, resources_);
    mark(Sort::kTask, tasks_);
    mark(Sort::kProgramInstance, programInstances_);
    files_.push_back(beginning);
}

void Project::CountAsLibrary() {
    if (!files_.empty()) {
        files_.back().file.isLibrary = true;
    }
}

ID Project::AddConfiguration(const Configuration& configuration) {
    return Enter(configurations_, configuration, {Sort::kConfiguration, nullptr, nullptr});
}

ID Project::AddResource(const Resource& resource) {
    Configuration* owner = At(configurations_, resource.configuration, Sort::kConfiguration);
    if (!owner) {
        return {};
    }
    MakeRoom(resourceIds_);
    const ID id = Enter(resources_, resource, {Sort::kResource, &owner->resources, nullptr});
    resourceIds_.push_back(id);
    return id;
}

ID Project::AddTask(const Task& task) {
    Resource* owner = At(resources_, task.resource, Sort::kResource);
    return owner ? Enter(tasks_, task, {Sort::kTask, &owner->tasks, nullptr}) : ID();
}

ID Project::AddProgramInstance(const ProgramInstance& instance) {
    Task* task = At(tasks_, instance.parent, Sort::kTask);
    Resource* resource = At(resources_, instance.parent, Sort::kResource);
    if (!task && !resource) {
        return {};
    }
    IdList& siblings = task ? task->programs : resource->programs;
    return Enter(programInstances_, instance, {Sort::kProgramInstance, &siblings, nullptr});
}

Pou* Project::EditPou(ID pou) {
    return At(pous_, pou, Sort::kPou);
}

bool Project::SetComment(ID object, Text comment) {
    return WithRecord(*this, object, [comment](auto& record) {
        record.comment = comment;
        return true;
    });
}

void Project::AddCall(Pou& pou, Text callee) {
    MakeRoom(pou.calls);
    if (pou.callIndex.AddFirst(callee, HashOfText(callee),
                               [callee](Text known) { return known == callee; })) {
        pou.calls.push_back(callee);
    }
}

BodyCode& Project::EditCode(Body& body) {
    if (body.code == 0 && !spareCodes_.empty()) {
        body.code = spareCodes_.back();
        spareCodes_.pop_back();
    } else if (body.code == 0) {
        codes_.emplace_back();
        body.code = static_cast<uint32_t>(codes_.size());
    }
    return codes_[body.code - 1];
}

// -- Reading --------------------------------------------------------------------------------------

const Pou* Project::GetPou(ID id) const {
    return At(pous_, id, Sort::kPou);
}

const DataType* Project::GetDataType(ID id) const {
    return At(dataTypes_, id, Sort::kDataType);
}

const VariableList* Project::GetVariableList(ID id) const {
    return At(variableLists_, id, Sort::kVariableList);
}

const Declaration* Project::GetDeclaration(ID id) const {
    return At(declarations_, id, Sort::kDeclaration);
}

const Configuration* Project::GetConfiguration(ID id) const {
    return At(configurations_, id, Sort::kConfiguration);
}

const Resource* Project::GetResource(ID id) const {
    return At(resources_, id, Sort::kResource);
}

const Task* Project::GetTask(ID id) const {
    return At(tasks_, id, Sort::kTask);
}

const ProgramInstance* Project::GetProgramInstance(ID id) const {
    return At(programInstances_, id, Sort::kProgramInstance);
}

ID Project::FindName(const NameIndex& index, std::u16string_view name) const {
    return ID(index.Find(HashOfName(name),
                         [&](uint32_t number) { return EqualName(name, NameOf(ID(number))); }));
}

ID Project::FindPou(std::u16string_view name) const {
    return FindName(pouNames_, name);
}

ID Project::FindLibraryPou(std::u16string_view name) const {
    return FindName(libraryNames_, name);
}

ID Project::FindAnyPou(std::u16string_view name) const {
    const ID own = FindPou(name);
    return own != ID() ? own : FindLibraryPou(name);
}

ID Project::FindDataType(std::u16string_view name) const {
    return FindName(dataTypeNames_, name);
}

ID Project::FindGlobal(std::u16string_view name) const {
    return FindName(globalNames_, name);
}

ID Project::FindBelow(ID parent, std::u16string_view name) const {
    if (parent == PouPool()) {
        return FindPou(name);
    }
    if (parent == LibraryPool()) {
        return FindLibraryPou(name);
    }
    for (const ID id : Below(parent)) {
        if (EqualName(name, NameOf(id))) {
            return id;
        }
    }
    return {};
}

Text Project::NameOf(ID id) const {
    const Text name = WithRecord(*this, id, [](const auto& record) { return record.name; });
    return name ? name : u"";
}

uint32_t Project::LineOf(ID id) const {
    return WithRecord(*this, id, [](const auto& record) { return record.line; });
}

uint32_t Project::ColumnOf(ID id) const {
    return WithRecord(*this, id, [](const auto& record) { return record.column; });
}

const BodyCode* Project::CodeOf(const Body& body) const {
    return body.code != 0 ? &codes_[body.code - 1] : nullptr;
}

const SourceFile* Project::FileOf(ID id) const {
    if (SortOf(id) == Sort::kNone || SortOf(id) >= Sort::kPool) {
        return nullptr;
    }
    // What replaced a declaration may have been entered behind the objects of other files.
    const Declaration* const declaration = GetDeclaration(id);
    const ID entered = declaration && declaration->owner != ID() ? declaration->owner : id;
    const auto sort = static_cast<std::size_t>(SortOf(entered));
    const auto next = std::upper_bound(
        files_.begin(), files_.end(), IndexOf(entered),
        [sort](uint32_t index, const FileBeginning& file) { return index < file.first[sort]; });
    return next == files_.begin() ? nullptr : &(next - 1)->file;
}

bool Project::IsOfLibrary(ID id) const {
    const SourceFile* file = FileOf(id);
    return file && file->isLibrary;
}

const IdList& Project::Below(ID id) const {
    const IdList* const pools[kPoolCount] = {&projectPous_, &libraryPous_, &resourceIds_};
    const uint32_t index = IndexOf(id);
    switch (SortOf(id)) {
        case Sort::kPool:
            return index < kPoolCount ? *pools[index] : kNothing;
        case Sort::kPou:
            return index < pous_.size() ? pous_[index].declarations : kNothing;
        case Sort::kDataType:
            return index < dataTypes_.size() ? dataTypes_[index].members : kNothing;
        case Sort::kVariableList:
            return index < variableLists_.size() ? variableLists_[index].declarations : kNothing;
        case Sort::kConfiguration:
            return index < configurations_.size() ? configurations_[index].resources : kNothing;
        case Sort::kResource:
            return index < resources_.size() ? resources_[index].tasks : kNothing;
        case Sort::kTask:
            return index < tasks_.size() ? tasks_[index].programs : kNothing;
        default:
            return kNothing;
    }
}

LQNAVIOBJECT* Project::GetView(ID id) const {
    if (SortOf(id) >= Sort::kCount) {
        return nullptr;
    }
    const Views& views = views_[static_cast<std::size_t>(SortOf(id))];
    return IndexOf(id) < views.size() ? views[IndexOf(id)].get() : nullptr;
}

}  // namespace lq::host
