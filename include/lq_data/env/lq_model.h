// What the library requires of the project model: the objects of a project, reached by identifier
// or name, and the model's checks of names and texts.
//
// Texts that an object returns stay valid while the object exists. They are never null, but that a
// declaration which CreateObject made answers null for a text that memory was too short to keep;
// what is built from such a declaration fails.
//
// Who releases what: objects that LQNAVIOBJECTMAN and GetDutByName return stay the model's.
// Objects that LQDECLMAN::Get, FindGVLDeclByName and LQPOUHDECL::CreateObject return belong to the
// caller, who deletes them.
//
// An embedder's own model overrides what it has; everything else answers "nothing".
//
// Owns the global names ID; for translation units with another owner: names.h.
#pragma once

#include <cstdint>

#include "lq_data/export.h"
#include "lq_data/memory.h"

class ERRHANDLER;
class Scanner;

// Names a project object. A default-constructed ID is the null identifier.
class ID {
  public:
    constexpr ID() = default;
    constexpr explicit ID(uint32_t number) : number_(number) {}

    constexpr uint32_t GetNumber() const { return number_; }

    friend constexpr int operator==(ID a, ID b) { return a.number_ == b.number_ ? 1 : 0; }
    friend constexpr int operator!=(ID a, ID b) { return a.number_ != b.number_ ? 1 : 0; }

  private:
    uint32_t number_ = 0;
};

// Kinds of project objects (GetKind).
enum LQ_OBJECT_KIND : int32_t {
    LQ_KIND_DUT = 12,  // its declarations are read from the object itself
    LQ_KIND_13 = 13,
    LQ_KIND_PROGRAM = 15,
    LQ_KIND_FUNCTION_BLOCK = 16,
    LQ_KIND_FUNCTION = 17,
    LQ_KIND_GVL_DECL = 51,    // a declaration of a global variable list
    LQ_KIND_LOCAL_DECL = 52,  // a declaration whose scope is always VAR
};

// What Lookup of the library pool is asked for.
inline constexpr uint32_t LQ_LOOKUP_FUNCTION = 23;
inline constexpr uint32_t LQ_LOOKUP_FUNCTION_BLOCK = 24;
// Find: an object of any kind.
inline constexpr uint32_t LQ_ANY_KIND = 0xFFFFFFFFu;
// QueryValue: the number that a POU header answers for its header flag.
inline constexpr int32_t LQ_QUERY_HEADER_FLAG = 32;
// Declaration classes of the implicit parameters (LQPOUHDECL::SetClass), and the class id of a
// return value.
inline constexpr int32_t LQ_CLASS_INPUT = 8407;
inline constexpr int32_t LQ_CLASS_OUTPUT = 8408;
inline constexpr uint32_t LQ_CLASS_ID_RESULT = 50;

// Identifiers by index from 0.
class LQ_DATA_API LQSELECTION {
  public:
    virtual ~LQSELECTION() = default;
    // How many there are.
    virtual int32_t GetCount() const { return 0; }
    // The identifier at an index; null beyond the last.
    virtual ID GetID(int32_t) const { return {}; }
};

// Any object of the project.
class LQ_DATA_API LQOBJECT {
  public:
    virtual ~LQOBJECT() = default;

    // The object's own identifier.
    virtual ID GetId() const { return {}; }
    // Its name.
    virtual const char16_t* GetName() const { return u""; }
    // Its kind, an LQ_OBJECT_KIND or one of the model's own.
    virtual int32_t GetKind() const { return 0; }
    // A number by query: LQ_QUERY_HEADER_FLAG.
    virtual int32_t QueryValue(int32_t) const { return 0; }
    // The comment on the object; the number is the model's affair.
    virtual const char16_t* GetComment(int32_t) const { return u""; }
    // The comment of a declaration.
    virtual const char16_t* GetDeclComment() const { return u""; }
    // The second comment of a declaration.
    virtual const char16_t* GetDeclComment2() const { return u""; }
    // The type of a declaration, as written.
    virtual const char16_t* GetType() const { return u""; }
    // The initial value of a declaration, as written.
    virtual const char16_t* GetInitValue() const { return u""; }
    // The direct address of a declaration, as written.
    virtual const char16_t* GetAddress() const { return u""; }
    // Names a declaration that CreateObject made.
    virtual void SetName(const char16_t*) {}
    // Sets the type of such a declaration.
    virtual void SetType(const char16_t*) {}
    // Sets the initial value of such a declaration.
    virtual void SetInitValue(const char16_t*) {}
    // Marks such a declaration as the result of a function (LQ_CLASS_ID_RESULT).
    virtual void SetClassId(uint32_t) {}
    // The declarations of a header or of an object of kind 12; the POUs assigned to a task. Null
    // when the object has none. Owned by the object.
    virtual LQSELECTION* GetSelection() { return nullptr; }
    // The number of what GetSelection has.
    virtual int32_t GetMemberCount() const { return 0; }
    // Library pool: an object by name.
    virtual ID Lookup(const char16_t*, uint32_t) const { return {}; }

    LQ_ALLOCATED
};

// An object with a place in the project's tree.
class LQ_DATA_API LQNAVIOBJECT : public LQOBJECT {};

// A pool or another collection of objects.
class LQ_DATA_API LQCOLLECTION : public LQNAVIOBJECT {
  public:
    // The identifier at an index; null beyond the last.
    virtual ID GetID(int32_t) const { return {}; }
};

// A declaration.
class LQ_DATA_API LQDECL : public LQOBJECT {};
class LQ_DATA_API LQDATADECL : public LQDECL {};

// A declaration of a POU header.
class LQ_DATA_API LQPOUHDECL : public LQDATADECL {
  public:
    // A new declaration that belongs to no POU yet; owned by the caller. Null when the model
    // cannot make one.
    static LQPOUHDECL* CreateObject();

    // Sets the section: LQ_CLASS_INPUT or LQ_CLASS_OUTPUT.
    virtual void SetClass(int32_t) {}
    // The section keyword, such as "VAR_INPUT".
    virtual const char16_t* GetClass() const { return u""; }
};

// A declaration of a global variable list.
class LQ_DATA_API LQGVLDECL : public LQDATADECL {
  public:
    int32_t GetKind() const override { return LQ_KIND_GVL_DECL; }
    // The section keyword.
    virtual const char16_t* GetClass() const { return u"VAR_GLOBAL"; }
};

// A program organisation unit.
class LQ_DATA_API LQPOU : public LQNAVIOBJECT {
  public:
    // The object that holds the POU's declarations, or null. Owned by the POU.
    virtual LQOBJECT* GetHeader() { return nullptr; }
    // Non-zero for a POU with the implicit parameters EN and ENO.
    virtual int GetEnoFlag() const { return 0; }
};

// A function (kind 17).
class LQ_DATA_API LQFUN : public LQPOU {
  public:
    // The type of the result, as written.
    virtual const char16_t* GetResultType() const { return u""; }
};

// A user data type. A structure (kind 12) answers its members itself, through GetSelection; the
// loaders ask any other (kind 13) for its header, as they ask a POU.
class LQ_DATA_API LQDUT : public LQPOU {};

class LQ_DATA_API LQTASK : public LQNAVIOBJECT {
  public:
    // The priority, as written.
    virtual const char16_t* GetPriority() const { return u""; }
    // The interval, as written.
    virtual const char16_t* GetInterval() const { return u""; }
    // The event, as written.
    virtual const char16_t* GetEvent() const { return u""; }
};

// Named in the interface, without operations that the library uses.
class LQDECLLIST;
class LQLIB;

// The object manager.
class LQ_DATA_API LQNAVIOBJECTMAN {
  public:
    virtual ~LQNAVIOBJECTMAN() = default;

    // The project's manager; null when there is no project.
    static LQNAVIOBJECTMAN* Get();

    // The object of the identifier, the model's; null when there is none.
    virtual LQNAVIOBJECT* Get(ID) { return nullptr; }
    // The object of that name below the object `parent`; `kind` LQ_ANY_KIND or a kind.
    virtual ID Find(const char16_t* name, ID parent, uint32_t kind) {
        (void)name, (void)parent, (void)kind;
        return {};
    }
    // The project's units.
    virtual LQCOLLECTION* GetPOUPool() { return nullptr; }
    // The library's units.
    virtual LQCOLLECTION* GetLibraryPool() { return nullptr; }
    // The resources: collections of tasks.
    virtual LQCOLLECTION* GetResourcePool() { return nullptr; }
};

// The declaration manager.
class LQ_DATA_API LQDECLMAN {
  public:
    virtual ~LQDECLMAN() = default;

    // The project's manager; null when there is no project.
    static LQDECLMAN* Get();

    // The object of the identifier, owned by the caller; null when there is none.
    virtual LQOBJECT* Get(ID) { return nullptr; }
};

// The POU of that name, the project's or the library's; null when there is none.
LQ_DATA_API ID FindPOUByName(const char16_t* name);
// The data type of that name; null when there is none.
LQ_DATA_API ID FindDUTByName(const char16_t* name);
// The global of that name, owned by the caller; null when there is none.
LQ_DATA_API LQDECL* FindGVLDeclByName(const char16_t* name);
// The object of the data type of that name, the model's; null when there is none.
LQ_DATA_API LQDUT* GetDutByName(const char16_t* name);

// Non-zero when a type text begins as a string type.
LQ_DATA_API int IsStringType(const char16_t* typeText);
// Non-zero when a type text begins as an array type.
LQ_DATA_API int IsArrayType(const char16_t* typeText);
// Non-zero when a function block has that name.
LQ_DATA_API int IsFBName(const char16_t* name);

// Whether a name is acceptable; 0 means that it is. With `flag` 0 the name is whole; with 1 it is
// the beginning of a name, and the question is whether its last character may belong to it.
LQ_DATA_API int CheckIdentifier(ERRHANDLER* handler, const char16_t* name, int flag);
// Whether the text of an initial value has an error; non-zero means that it has.
LQ_DATA_API int CheckInitSyntax(ERRHANDLER* handler, const char16_t* text);
// Reads the length that follows the string keyword, if one does; non-zero means accepted.
LQ_DATA_API int CheckStringSize(Scanner* scanner, int32_t& size);
// Non-zero when `caller` calls `callee`, directly or through others.
LQ_DATA_API int CheckIsRecursiveCallEx(const char16_t* caller, const char16_t* callee, int flag);
