// A project in memory: its POUs, data types, global variable lists and tasks, and the standard
// function blocks as its library.
//
// Building: the Add operations return the new object's identifier, and the null identifier, with no
// change, when the owner is of the wrong sort or unknown. They may throw std::bad_alloc, after
// which the project holds what it held. Nothing that the library calls (lq_model.h) throws or
// allocates, but for the objects that its callers own.
//
// Names are compared without regard to case. Of two objects of one name the first added is found.
//
// References into the project stay valid while it lives. One thread at a time.
#pragma once

#include <array>
#include <cstddef>
#include <deque>
#include <memory>
#include <string_view>

#include "lq_data/export.h"
#include "lq_data/host/model/code.h"
#include "lq_data/host/model/objects.h"

namespace lq::host {

struct Managers;

class LQ_DATA_API Project {
  public:
    Project();
    ~Project();
    Project(const Project&) = delete;
    Project& operator=(const Project&) = delete;

    // -- Building ---------------------------------------------------------------------------------

    // The text, valid as long as the project; a zero character ends it early.
    Text Intern(std::u16string_view text);
    // A copy of the text, for one that hardly repeats; valid as long as the project.
    Text Store(std::u16string_view text);

    // Lists of identifiers are empty in what is added: the project fills them. The comments say
    // what an object may be part of.

    // A POU, of the project or, when the standard defines it, of its library.
    ID AddPou(const Pou& pou);
    // A data type.
    ID AddDataType(const DataType& type);
    // Of a configuration, a resource or a POU; of nothing where the null identifier is its parent.
    ID AddVariableList(const VariableList& list);
    // Of a POU, a structure or a variable list, as `declaration.owner` says.
    // Of a global, `earlier` receives the one that has the name already, and is found by it, if
    // any.
    ID AddDeclaration(const Declaration& declaration, ID* earlier = nullptr);
    // A configuration.
    ID AddConfiguration(const Configuration& configuration);
    // Of a configuration.
    ID AddResource(const Resource& resource);
    // Of a resource.
    ID AddTask(const Task& task);
    // Of a task, or of a resource where no task runs it.
    ID AddProgramInstance(const ProgramInstance& instance);

    // A POU under construction; null for any other identifier. Its declarations are only added.
    Pou* EditPou(ID pou);
    // Makes a POU what `read` is, a POU of the same name and kind of another project, into which a
    // unit was read anew or built: result type, comments, place, declarations, bodies with their
    // code, if both projects keep it, and calls; then lq::TranslateUnit enters it. False, with no
    // change, when there are no such two.
    //
    //   - The POU keeps its identifier, and so do its declarations whose names it had before,
    //     without regard to case, and had once. Others get identifiers that replacements of this
    //     POU left, then new ones.
    //   - The identifier of a declaration that it no longer has names an empty one without an owner
    //     until it is given out again. References to the records stay valid, those to their texts,
    //     too; but not iterators of the POU's lists, nor views of declarations that are gone.
    //   - So the project grows only where the POU has more declarations than ever before, and by
    //     texts that it did not have: those that are no longer used stay until it is destroyed.
    //   - Variable lists of the POU stay as they are: their globals are the whole project's.
    bool ReplacePou(ID pou, const Project& from, ID read);
    // The comment of any object but a pool; false when there is no such object.
    bool SetComment(ID object, Text comment);
    // Says that a POU's bodies call something of that name, a text of this project.
    void AddCall(Pou& pou, Text callee);

    // Names the project.
    void SetName(Text name) { name_ = name; }

    // Bodies that are read from now on are kept with their code, 24 bytes a token.
    void KeepCode() { keepsCode_ = true; }
    // Whether they are.
    bool KeepsCode() const { return keepsCode_; }
    // The body's, to be filled. Stays where it is.
    BodyCode& EditCode(Body& body);

    // What is added from now on comes from this file. A library's names are to come behind those
    // of the project, which are found then where both have one.
    void BeginFile(const SourceFile& file);
    // The file that was begun last is a library.
    void CountAsLibrary();

    // A declaration that none of the lists below shows but Declarations(): an implicit parameter of
    // a POU, what a configuration says of a variable of one (VAR_CONFIG), with the path of the
    // instance for a name, or a way to one from outside (VAR_ACCESS), of a configuration or POU.
    ID AddAside(const Declaration& declaration);
    // Makes a declaration that was added aside the last of its owner's, if that has declarations.
    void Adopt(ID declaration);

    // -- Reading ----------------------------------------------------------------------------------

    // The project's name.
    Text Name() const { return name_; }

    // All objects of a sort, in the order of their entry; the POUs first of the library.
    const std::deque<Pou>& Pous() const { return pous_; }
    // The data types.
    const std::deque<DataType>& DataTypes() const { return dataTypes_; }
    // The variable lists.
    const std::deque<VariableList>& VariableLists() const { return variableLists_; }
    // The declarations; one without an owner is what ReplacePou has removed.
    const std::deque<Declaration>& Declarations() const { return declarations_; }
    // The configurations.
    const std::deque<Configuration>& Configurations() const { return configurations_; }
    // The resources.
    const std::deque<Resource>& Resources() const { return resources_; }
    // The tasks.
    const std::deque<Task>& Tasks() const { return tasks_; }
    // The program instances.
    const std::deque<ProgramInstance>& ProgramInstances() const { return programInstances_; }

    // The records of an identifier; null when it names no such object.
    const Pou* GetPou(ID id) const;
    // A data type.
    const DataType* GetDataType(ID id) const;
    // A variable list.
    const VariableList* GetVariableList(ID id) const;
    // A declaration.
    const Declaration* GetDeclaration(ID id) const;
    // A configuration.
    const Configuration* GetConfiguration(ID id) const;
    // A resource.
    const Resource* GetResource(ID id) const;
    // A task.
    const Task* GetTask(ID id) const;
    // A program instance.
    const ProgramInstance* GetProgramInstance(ID id) const;

    // By name: the null identifier when there is none.
    ID FindPou(std::u16string_view name) const;  // of the project only
    // A POU of the library.
    ID FindLibraryPou(std::u16string_view name) const;
    ID FindAnyPou(std::u16string_view name) const;  // the project's, else the library's
    // A data type.
    ID FindDataType(std::u16string_view name) const;
    ID FindGlobal(std::u16string_view name) const;  // a declaration of a variable list
    // Directly below `parent`, a pool, list or other object that holds named ones.
    ID FindBelow(ID parent, std::u16string_view name) const;

    // The name of any object; empty when there is none. A program instance answers its own.
    Text NameOf(ID id) const;
    // The line of any object; 0 when there is none or it is not known.
    uint32_t LineOf(ID id) const;
    // Its column likewise.
    uint32_t ColumnOf(ID id) const;

    // The code of a body; null when none was kept.
    const BodyCode* CodeOf(const Body& body) const;

    // The file that an object came from; null for the standard's blocks, and where no file was
    // begun.
    const SourceFile* FileOf(ID id) const;
    // Whether that file is a library.
    bool IsOfLibrary(ID id) const;

    // The identifiers directly below an object; the empty list when it holds none.
    const IdList& Below(ID id) const;

    // The pool of the project's POUs.
    ID PouPool() const { return MakeId(Sort::kPool, 0); }
    // The pool of the library's POUs.
    ID LibraryPool() const { return MakeId(Sort::kPool, 1); }
    // The pool of the resources.
    ID ResourcePool() const { return MakeId(Sort::kPool, 2); }

    // The object that LQNAVIOBJECTMAN::Get answers; null when there is none.
    LQNAVIOBJECT* GetView(ID id) const;
    // What LQNAVIOBJECTMAN::Get and LQDECLMAN::Get answer with.
    Managers& GetManagers() const { return *managers_; }

  private:
    // The library's view of the objects of one sort, by index.
    using Views = std::deque<std::unique_ptr<LQNAVIOBJECT>>;

    // Identifiers' numbers by name.
    using NameIndex = FlatIndex<uint32_t>;

    // Files follow each other, and so do their objects: of each sort it is enough to know the
    // first.
    struct FileBeginning {
        SourceFile file;
        std::array<uint32_t, static_cast<std::size_t>(Sort::kCount)> first;
    };

    struct Place {
        Sort sort;
        IdList* siblings;       // receives the identifier; may be null
        NameIndex* names;       // likewise
        ID* earlier = nullptr;  // receives what has the name already; may be null
    };

    // The function blocks of the standard, with which every library begins.
    void AddStandardBlocks();

    template <typename Record>
    ID Enter(std::deque<Record>& records, const Record& record, const Place& place);
    template <typename Self, typename Function>
    static auto WithRecord(Self& self, ID id, Function function);
    IdList* DeclarationsOf(ID owner);
    ID FindName(const NameIndex& index, std::u16string_view name) const;

    TextPool texts_;
    Text name_ = u"";
    std::vector<FileBeginning> files_;

    std::deque<Declaration> declarations_;
    std::deque<Pou> pous_;
    std::deque<DataType> dataTypes_;
    std::deque<VariableList> variableLists_;
    std::deque<Configuration> configurations_;
    std::deque<Resource> resources_;
    std::deque<Task> tasks_;
    std::deque<ProgramInstance> programInstances_;

    bool keepsCode_ = false;
    std::deque<BodyCode> codes_;
    std::vector<uint32_t> spareCodes_;  // those of bodies that are gone, from 1

    IdList projectPous_;
    IdList libraryPous_;
    IdList resourceIds_;

    NameIndex pouNames_;
    NameIndex libraryNames_;
    NameIndex dataTypeNames_;
    NameIndex globalNames_;

    std::array<Views, static_cast<std::size_t>(Sort::kCount)> views_;
    std::unique_ptr<Managers> managers_;
};

// The project that LQNAVIOBJECTMAN::Get, LQDECLMAN::Get and the searches by name answer for on the
// calling thread; null, as at first on every thread, for none. It stays the caller's, and must be
// set aside, on each thread that set it, before it is destroyed. The objects that came from it must
// be gone by then. Threads with a project each translate at the same time; what works for a project
// on another thread than before sets it there.
LQ_DATA_API void SetProject(Project* project);
// The project that was set on the calling thread; null for none.
LQ_DATA_API Project* GetProject();

}  // namespace lq::host
