// POU interface records and project loaders: the header of a program organisation unit (POU), its
// declarations and the project's tasks as small plain records, and the operations that fill them
// from the project model.
//
// A record is made by Create..., read and written with GetAttrOf... and SetAttrOf..., and released
// by Destroy.... Ownership is a strict tree:
//
//   POU_HEADER_TYP
//     POUH_INFO_TYP
//       POUH_COMMENT_TYP              up to two
//     POUH_DECL_LIST_TYP              the same below a SYMBOL_TABLE_TYP
//       FLIST
//         DECL_TYP
//           UNNAMED_TYPE_TYP
//             a specification record, by type kind
//               POUH_COMMENT_TYP      up to two
//   TASK_TYP
//     TASK_INFO_TYP
//     TASK_POU_LIST_TYP               the same below a TASK_LIST_TYP
//       FLIST of names
//
// Destroying a record destroys everything below it. Texts are copied in and out.
//
// Memory: a Create... gives null when memory is short. A Set of a text that cannot be copied leaves
// the field empty and still returns 1. A loader or a fill operation that cannot make a record or
// copy a text returns 0 and leaves what it stored until then in the record it was given, where it
// is released with that record; so does a loader that met a want of memory in the model, whose
// answer ("no such object", "nothing wrong with it") may be due to that, if the model allocates
// with lq::Allocate or calls lq::ReportShortage. (The info record of a header may lack texts and
// comments all the same.)
#pragma once

#include <cstdint>

#include "lq_data/env/lq_model.h"
#include "lq_data/export.h"
#include "lq_data/memory.h"

class CLQString;
class FLIST;

struct POUH_COMMENT_TYP;
struct POU_HEADER_TYP;
struct POUH_INFO_TYP;
struct SYMBOL_TABLE_TYP;
struct POUH_DECL_LIST_TYP;
struct TASK_LIST_TYP;
struct TASK_POU_LIST_TYP;
struct DECL_TYP;
struct UNNAMED_TYPE_TYP;
struct SIMPLE_SPEC_TYP;
struct FBINST_SPEC_TYP;
struct STRING_SPEC_TYP;
struct ARRAY_SPEC_TYP;
struct SUBRANGE_SPEC_TYP;
struct TASK_TYP;
struct TASK_INFO_TYP;

// ---------------------------------------------------------------------------------------------
// Records and their attributes
// ---------------------------------------------------------------------------------------------

// Selects an attribute. What the `value` of a Get or Set is depends on the attribute's kind, named
// here in brackets:
//   number  the address of a 32-bit variable
//   word    16 bits of a record; Set reads a 16-bit variable, Get stores into a 32-bit one
//   record  the address of a pointer variable. A pointer that is overwritten is not released.
//   text    Set: the text itself (const char16_t*), null for none. Get: a buffer that the text is
//           copied to with its terminator; it must be large enough, and it is left alone when the
//           record holds no text.
//   length  of a text, in characters, 0 without one; Get only, into a 32-bit variable
enum POUH_ATTRIBUTE_FLAG : uint32_t {
    POUH_INFO = 0,           // [record] of a POU header
    POUH_DECLLIST = 1,       // [record] declaration list of a POU header
    POUH_NAME = 2,           // [text] of a POU, declaration, task, type or subrange
    POUH_POUTYPE = 3,        // [number] POUH_POU_TYPE
    POUH_SCOPE = 4,          // [number] DECL_SCOPE
    POUH_INITVALUE = 5,      // [text] initial value
    POUH_COMMENT = 6,        // [record]; of a task info record [text]
    POUH_POUCOMMENT = 7,     // [record] the POU object's own comment
    POUH_RANGE = 8,          // [text] second text of a subrange
    POUH_ARRAYTYPE = 9,      // [text] array type as written
    POUH_STRINGTYPE = 10,    // [text] string type as written
    POUH_TYPEKIND = 11,      // [number] POUH_TYPE_KIND
    POUH_TYPESPEC = 12,      // [record] the specification that belongs to the kind
    POUH_INFOTEXT = 13,      // [text] of an info record; without a meaning here
    POUH_HEADERFLAG = 14,    // [number] what the POU header object answers to query 32
    POUH_LIST = 15,          // [record] FLIST of a list record
    POUH_REMARK = 16,        // [text] of a comment record
    POUH_TYPE = 17,          // [record] type of a declaration
    POUH_EXTRAVALUE = 19,    // [number] of an info record; without a meaning here
    POUH_ADDRESS = 20,       // [text] direct address of a declaration
    POUH_TASKINFO = 21,      // [record] of a task
    POUH_TASKPOUS = 22,      // [record] POU list of a task
    POUH_EVENT = 23,         // [text] of a task
    POUH_INTERVAL = 24,      // [text] of a task
    POUH_PRIORITY = 25,      // [text] of a task
    POUH_DECLWORD = 26,      // [word] of a declaration
    POUH_INITVALUELEN = 27,  // [length] of the initial value
    POUH_DECLFLAGS = 28,     // [word] flags of a declaration
    POUH_COMMENT2 = 29,      // [record] second comment; of a subrange a [number] that is always 0
    POUH_REMARKLEN = 30,     // [length] of a comment record's text
};

// POUH_POUTYPE.
enum POUH_POU_TYPE : uint32_t {
    PT_OTHER = 0,
    PT_FUNCTION = 1,
    PT_FUNCTION_BLOCK = 2,  // and every hidden header
    PT_PROGRAM = 3,
    PT_DUT = 5,  // an object of kind 12: it holds its declarations itself
    PT_KIND_13 = 6,
};

// POUH_TYPEKIND. Any other kind has no specification record: POUH_TYPESPEC is then neither read nor
// written.
enum POUH_TYPE_KIND : uint32_t {
    DT_ELEMENTARY = 1,   // SIMPLE_SPEC_TYP
    DT_SUBRANGE = 2,     // SUBRANGE_SPEC_TYP
    DT_STRING = 3,       // STRING_SPEC_TYP
    DT_ARRAY = 4,        // ARRAY_SPEC_TYP
    DT_STRUCTURE = 5,    // SIMPLE_SPEC_TYP
    DT_FB_INSTANCE = 6,  // FBINST_SPEC_TYP
};

// GetAttrOf... and SetAttrOf... return 0 when the record is null and 1 otherwise, also for an
// attribute that the record does not have; nothing is then read or written. (SetAttrOfSymbolTable
// returns 0 for such an attribute.) A null `value` reads and writes nothing, but for a text, whose
// field it empties.
//
// Destroy... returns 0 for null, and 1 otherwise.

// A new comment; null when memory is short.
LQ_DATA_API POUH_COMMENT_TYP* CreatePOUHComment();
// Destroys a comment and what belongs to it.
LQ_DATA_API int DestroyPOUHComment(POUH_COMMENT_TYP* record);
// Reads an attribute of a comment: POUH_REMARK, POUH_REMARKLEN.
LQ_DATA_API int GetAttrOfPOUHComment(const POUH_COMMENT_TYP* record, POUH_ATTRIBUTE_FLAG flag,
                                     void* value);
// Sets POUH_REMARK, which is copied.
LQ_DATA_API int SetAttrOfPOUHComment(POUH_COMMENT_TYP* record, POUH_ATTRIBUTE_FLAG flag,
                                     const char16_t* value);
// The text in place, or an empty text; valid until the text changes. `record` must not be null.
LQ_DATA_API const char16_t* GetRemarkPointerOfPOUHComment(const POUH_COMMENT_TYP* record);

// A new header of a unit; null when memory is short.
LQ_DATA_API POU_HEADER_TYP* CreatePOUHeader();
// Destroys a header and what belongs to it.
LQ_DATA_API int DestroyPOUHeader(POU_HEADER_TYP* record);
// Reads an attribute of a header of a unit: POUH_INFO, POUH_DECLLIST.
LQ_DATA_API int GetAttrOfPOUHeader(const POU_HEADER_TYP* record, POUH_ATTRIBUTE_FLAG flag,
                                   void* value);
// Sets one of these: a text is copied, a record belongs to it from then on.
LQ_DATA_API int SetAttrOfPOUHeader(POU_HEADER_TYP* record, POUH_ATTRIBUTE_FLAG flag,
                                   const void* value);

// A new info record of a unit; null when memory is short.
LQ_DATA_API POUH_INFO_TYP* CreatePOUHInfo();
// Destroys an info record and what belongs to it.
LQ_DATA_API int DestroyPOUHInfo(POUH_INFO_TYP* record);
// Reads an attribute of an info record of a unit: POUH_NAME, POUH_INFOTEXT, POUH_POUTYPE,
// POUH_COMMENT, POUH_POUCOMMENT, POUH_HEADERFLAG, POUH_EXTRAVALUE.
LQ_DATA_API int GetAttrOfPOUHInfo(const POUH_INFO_TYP* record, POUH_ATTRIBUTE_FLAG flag,
                                  void* value);
// Sets one of these: a text is copied, a record belongs to it from then on.
LQ_DATA_API int SetAttrOfPOUHInfo(POUH_INFO_TYP* record, POUH_ATTRIBUTE_FLAG flag,
                                  const void* value);

// The list records: POUH_LIST. Lists of declarations hold DECL_TYP* (LET_MEMORY, elements of the
// size of a pointer), lists of names LET_STRING. The records own list and elements.

// A new symbol table; null when memory is short.
LQ_DATA_API SYMBOL_TABLE_TYP* CreateSymbolTable();
// Destroys a symbol table and what belongs to it.
LQ_DATA_API int DestroySymbolTable(SYMBOL_TABLE_TYP* record);
// Reads POUH_LIST of a symbol table.
LQ_DATA_API int GetAttrOfSymbolTable(const SYMBOL_TABLE_TYP* record, POUH_ATTRIBUTE_FLAG flag,
                                     void* value);
// Sets POUH_LIST of a symbol table.
LQ_DATA_API int SetAttrOfSymbolTable(SYMBOL_TABLE_TYP* record, POUH_ATTRIBUTE_FLAG flag,
                                     const void* value);

// A new declaration list; null when memory is short.
LQ_DATA_API POUH_DECL_LIST_TYP* CreatePOUHDeclList();
// Destroys a declaration list and what belongs to it.
LQ_DATA_API int DestroyPOUHDeclList(POUH_DECL_LIST_TYP* record);
// Reads POUH_LIST of a declaration list.
LQ_DATA_API int GetAttrOfPOUHDeclList(const POUH_DECL_LIST_TYP* record, POUH_ATTRIBUTE_FLAG flag,
                                      void* value);
// Sets POUH_LIST of a declaration list.
LQ_DATA_API int SetAttrOfPOUHDeclList(POUH_DECL_LIST_TYP* record, POUH_ATTRIBUTE_FLAG flag,
                                      const void* value);

// A list with the names of the project's tasks (LoadTaskList). Null, and nothing kept, when memory
// is short.
LQ_DATA_API TASK_LIST_TYP* CreateTaskList();
// Destroys a list of tasks and what belongs to it.
LQ_DATA_API int DestroyTaskList(TASK_LIST_TYP* record);
// Reads POUH_LIST of a list of tasks.
LQ_DATA_API int GetAttrOfTaskList(const TASK_LIST_TYP* record, POUH_ATTRIBUTE_FLAG flag,
                                  void* value);
// Sets POUH_LIST of a list of tasks.
LQ_DATA_API int SetAttrOfTaskList(TASK_LIST_TYP* record, POUH_ATTRIBUTE_FLAG flag,
                                  const void* value);

// A new list of a task's units; null when memory is short.
LQ_DATA_API TASK_POU_LIST_TYP* CreateTaskPOUList();
// Destroys a list of a task's units and what belongs to it.
LQ_DATA_API int DestroyTaskPOUList(TASK_POU_LIST_TYP* record);
// Reads POUH_LIST of a list of a task's units.
LQ_DATA_API int GetAttrOfTaskPOUList(const TASK_POU_LIST_TYP* record, POUH_ATTRIBUTE_FLAG flag,
                                     void* value);
// Sets POUH_LIST of a list of a task's units.
LQ_DATA_API int SetAttrOfTaskPOUList(TASK_POU_LIST_TYP* record, POUH_ATTRIBUTE_FLAG flag,
                                     const void* value);

// A new declaration; null when memory is short.
LQ_DATA_API DECL_TYP* CreateDecl();
// Destroys a declaration and what belongs to it.
LQ_DATA_API int DestroyDecl(DECL_TYP* record);
// Reads an attribute of a declaration: POUH_NAME, POUH_ADDRESS, POUH_SCOPE, POUH_TYPE,
// POUH_DECLWORD, POUH_DECLFLAGS.
LQ_DATA_API int GetAttrOfDecl(const DECL_TYP* record, POUH_ATTRIBUTE_FLAG flag, void* value);
// Sets one of these: a text is copied, a record belongs to it from then on.
LQ_DATA_API int SetAttrOfDecl(DECL_TYP* record, POUH_ATTRIBUTE_FLAG flag, const void* value);
// Which of its owner's declarations a loader made the record from: the index in the selection of
// the object that holds them. -1 for a parameter that no declaration stands for (the result of a
// function, EN, ENO), a record that no loader of a list made, and null.
LQ_DATA_API int32_t GetIndexOfDecl(const DECL_TYP* record);
// The flag word (POUH_DECLFLAGS) in place; null for null.
LQ_DATA_API uint16_t* DecFlags(DECL_TYP* record);

// A new type record; null when memory is short.
LQ_DATA_API UNNAMED_TYPE_TYP* CreateUnnamedType();
// Destroys a type record and what belongs to it.
LQ_DATA_API int DestroyUnnamedType(UNNAMED_TYPE_TYP* record);
// Reads an attribute of a type record: POUH_TYPEKIND; POUH_TYPESPEC while the kind is a
// POUH_TYPE_KIND.
LQ_DATA_API int GetAttrOfUnnamedType(const UNNAMED_TYPE_TYP* record, POUH_ATTRIBUTE_FLAG flag,
                                     void* value);
// Sets one of these: a text is copied, a record belongs to it from then on.
LQ_DATA_API int SetAttrOfUnnamedType(UNNAMED_TYPE_TYP* record, POUH_ATTRIBUTE_FLAG flag,
                                     const void* value);

// The four specification records of one shape: the type text (POUH_NAME, POUH_STRINGTYPE or
// POUH_ARRAYTYPE), POUH_INITVALUE, POUH_INITVALUELEN, POUH_COMMENT, POUH_COMMENT2.

// A new specification of a simple type or a structure; null when memory is short.
LQ_DATA_API SIMPLE_SPEC_TYP* CreateSimpleSpec();
// Destroys a specification of a simple type and what belongs to it.
LQ_DATA_API int DestroySimpleSpec(SIMPLE_SPEC_TYP* record);
// Reads an attribute of a specification of a simple type.
LQ_DATA_API int GetAttrOfSimpleSpec(const SIMPLE_SPEC_TYP* record, POUH_ATTRIBUTE_FLAG flag,
                                    void* value);
// Sets an attribute of a specification of a simple type.
LQ_DATA_API int SetAttrOfSimpleSpec(SIMPLE_SPEC_TYP* record, POUH_ATTRIBUTE_FLAG flag,
                                    const void* value);

// A new specification of an instance; null when memory is short.
LQ_DATA_API FBINST_SPEC_TYP* CreateFBInstSpec();
// Destroys a specification of an instance and what belongs to it.
LQ_DATA_API int DestroyFBInstSpec(FBINST_SPEC_TYP* record);
// Reads an attribute of a specification of an instance.
LQ_DATA_API int GetAttrOfFBInstSpec(const FBINST_SPEC_TYP* record, POUH_ATTRIBUTE_FLAG flag,
                                    void* value);
// Sets an attribute of a specification of an instance.
LQ_DATA_API int SetAttrOfFBInstSpec(FBINST_SPEC_TYP* record, POUH_ATTRIBUTE_FLAG flag,
                                    const void* value);

// A new specification of a string; null when memory is short.
LQ_DATA_API STRING_SPEC_TYP* CreateStringSpec();
// Destroys a specification of a string and what belongs to it.
LQ_DATA_API int DestroyStringSpec(STRING_SPEC_TYP* record);
// Reads an attribute of a specification of a string.
LQ_DATA_API int GetAttrOfStringSpec(const STRING_SPEC_TYP* record, POUH_ATTRIBUTE_FLAG flag,
                                    void* value);
// Sets an attribute of a specification of a string.
LQ_DATA_API int SetAttrOfStringSpec(STRING_SPEC_TYP* record, POUH_ATTRIBUTE_FLAG flag,
                                    const void* value);

// A new specification of an array; null when memory is short.
LQ_DATA_API ARRAY_SPEC_TYP* CreateArraySpec();
// Destroys a specification of an array and what belongs to it.
LQ_DATA_API int DestroyArraySpec(ARRAY_SPEC_TYP* record);
// Reads an attribute of a specification of an array.
LQ_DATA_API int GetAttrOfArraySpec(const ARRAY_SPEC_TYP* record, POUH_ATTRIBUTE_FLAG flag,
                                   void* value);
// Sets an attribute of a specification of an array.
LQ_DATA_API int SetAttrOfArraySpec(ARRAY_SPEC_TYP* record, POUH_ATTRIBUTE_FLAG flag,
                                   const void* value);

// A new specification of a subrange; null when memory is short.
LQ_DATA_API SUBRANGE_SPEC_TYP* CreateSubrangeSpec();
// Destroys a specification of a subrange and what belongs to it.
LQ_DATA_API int DestroySubrangeSpec(SUBRANGE_SPEC_TYP* record);
// Reads an attribute of a specification of a subrange: POUH_NAME, POUH_RANGE, POUH_INITVALUE,
// POUH_INITVALUELEN, POUH_COMMENT; POUH_COMMENT2 (Get only).
LQ_DATA_API int GetAttrOfSubrangeSpec(const SUBRANGE_SPEC_TYP* record, POUH_ATTRIBUTE_FLAG flag,
                                      void* value);
// Sets one of these: a text is copied, a record belongs to it from then on.
LQ_DATA_API int SetAttrOfSubrangeSpec(SUBRANGE_SPEC_TYP* record, POUH_ATTRIBUTE_FLAG flag,
                                      const void* value);

// A new task; null when memory is short.
LQ_DATA_API TASK_TYP* CreateTask();
// Destroys a task and what belongs to it.
LQ_DATA_API int DestroyTask(TASK_TYP* record);
// Reads an attribute of a task: POUH_TASKINFO, POUH_TASKPOUS.
LQ_DATA_API int GetAttrOfTask(const TASK_TYP* record, POUH_ATTRIBUTE_FLAG flag, void* value);
// Sets one of these: a text is copied, a record belongs to it from then on.
LQ_DATA_API int SetAttrOfTask(TASK_TYP* record, POUH_ATTRIBUTE_FLAG flag, const void* value);

// A new info record of a task; null when memory is short.
LQ_DATA_API TASK_INFO_TYP* CreateTaskInfo();
// Destroys a task info and what belongs to it.
LQ_DATA_API int DestroyTaskInfo(TASK_INFO_TYP* record);
// Reads an attribute of an info record of a task: POUH_NAME, POUH_EVENT, POUH_INTERVAL,
// POUH_PRIORITY, POUH_COMMENT: all texts.
LQ_DATA_API int GetAttrOfTaskInfo(const TASK_INFO_TYP* record, POUH_ATTRIBUTE_FLAG flag,
                                  void* value);
// Sets one of these texts, which is copied.
LQ_DATA_API int SetAttrOfTaskInfo(TASK_INFO_TYP* record, POUH_ATTRIBUTE_FLAG flag,
                                  const void* value);

// ---------------------------------------------------------------------------------------------
// Scopes and declarations
// ---------------------------------------------------------------------------------------------

// The section that a declaration stands in, by its keyword.
enum DECL_SCOPE : uint32_t {
    DS_UNKNOWN = 0,
    DS_VAR = 1,
    DS_VAR_INPUT = 2,
    DS_VAR_INPUT_CONSTANT = 3,
    DS_VAR_IN_EXT = 4,
    DS_VAR_OUTPUT = 5,
    DS_VAR_IN_OUT = 6,
    DS_VAR_RETAIN = 7,
    DS_VAR_INPUT_RETAIN = 8,
    DS_VAR_OUTPUT_RETAIN = 9,
    DS_VAR_EXTERNAL = 10,
    DS_VAR_GLOBAL = 11,
    DS_VAR_EXTERNAL_RETAIN = 13,
    DS_VAR_GLOBAL_RETAIN = 14,
    DS_VAR_CONSTANT = 15,
    DS_VAR_CONSTANT_RETAIN = 16,
    DS_VAR_GLOBAL_CONSTANT = 17,
    DS_VAR_GLOBAL_CONSTANT_RETAIN = 18,
    DS_VAR_EXTERNAL_CONSTANT = 19,
    DS_VAR_EXTERNAL_CONSTANT_RETAIN = 20,
};

// The one bit of a declaration's flag word that this library sets.
inline constexpr uint16_t POUH_DECL_MARK = 0x0010;

// The scope of a section keyword. Case and blanks count: the constant inputs are
// "VAR_INPUT CONSTANT", the retained ones "VAR_INPUT_RETAIN". DS_UNKNOWN for any other text and for
// null.
LQ_DATA_API DECL_SCOPE GetDeclScope(const char16_t* keyword);
// Leaves nothing of the keywords' table that would be in memory when the library is unloaded. The
// table is constant, so there is nothing to do; the next GetDeclScope answers as ever.
LQ_DATA_API void LQHeadReleaseHashTable();

// Writes the whole flag word: POUH_DECL_MARK, or 0 when `set` is 0. 1; 0 when `decl` is null.
LQ_DATA_API int FillFlagsInDeclaration(DECL_TYP* decl, int set);

// Fills a new declaration as a function block instance; the flag word is not touched. A null text
// leaves its field empty; both comment records exist in any case. `word` is POUH_DECLWORD, of which
// 16 bits are kept. A type record that the declaration has already is replaced and not released.
// 1; 0 when `decl` is null or memory is short: the parts that were made until then belong to
// `decl`.
LQ_DATA_API int FillFBInstDeclaration(DECL_TYP* decl, DECL_SCOPE scope, const char16_t* name,
                                      const char16_t* fbType, const char16_t* comment, int word,
                                      const char16_t* comment2);

// New declaration objects of the project model for the implicit parameters of a POU: the return
// value of a function, EN and ENO. The caller deletes them. Null when the model cannot make one.
LQ_DATA_API LQPOUHDECL* GetRetDecl(const char16_t* name, const char16_t* type);
// The same for EN, an input.
LQ_DATA_API LQPOUHDECL* GetEnDecl();
// The same for ENO, an output.
LQ_DATA_API LQPOUHDECL* GetEnoDecl();

// ---------------------------------------------------------------------------------------------
// Loading from the project model
// ---------------------------------------------------------------------------------------------
//
// Results are 1 for success and 0 for failure: a null argument or identifier, an object that the
// model does not know, a POU without a header, or memory that runs out. Erroneous names, types and
// initial values do not fail a load; they are stored in the marked form that the base library
// gives them, and a declaration whose type cannot be told is stored as DT_ELEMENTARY.
//
// The loaders borrow the check scanner of their thread and ask the project model.

// Fills `header` with the info and declarations of the object `id`, in scope order, but those of an
// object of kind 12 in the model's order. A function gets its return value as a declaration of its
// own name, and any POU but a program gets EN and ENO when its ENO flag is set. `fromDeclManager`
// non-zero fetches the object from the declaration manager (and deletes it after use) instead of
// the object manager. The header's old records are destroyed once the object is found.
LQ_DATA_API int LoadPOUHeader(POU_HEADER_TYP* header, ID id, int fromDeclManager);
// Does the same for the POU, library function, library function block or data type of that name.
LQ_DATA_API int LoadPOUHeader(POU_HEADER_TYP* header, const char16_t* name);

// Fills `header` with a hidden interface: "_STEP", "_ACTION", "_SFC_DEBUG" or "_SFCCB". 0 for any
// other name, which leaves an empty info record and declaration list.
LQ_DATA_API int LoadPOUHiddenHeader(POU_HEADER_TYP* header, const char16_t* name);

// Fills `list` with the parameters of a function or function block, in scope order, implicit ones
// included; 0 for any other POU. Neither argument may be null. The list that `list` held before is
// replaced and not destroyed.
LQ_DATA_API int LoadInterface(POUH_DECL_LIST_TYP* list, LQPOU* pou);

// Fills `table` with all declarations of the object `id`, in the model's order. `table` must not be
// null. The list that it held before is replaced and not destroyed; it stays when the model does
// not know the object.
LQ_DATA_API int LoadSelectedSymbolTable(SYMBOL_TABLE_TYP* table, ID id);

// A new record of one declaration, an object that LQDECLMAN::Get made; both are the caller's. For
// who goes through a long list without holding the records of all. Null for null, and when memory
// is short.
LQ_DATA_API DECL_TYP* LoadDecl(LQOBJECT* source);

// Returns 1 and does nothing.
LQ_DATA_API int LoadSymbolTable(SYMBOL_TABLE_TYP* table);
// Returns 0 and does nothing.
LQ_DATA_API int GetDecl(DECL_TYP* decl, LQDATADECL* source);
// Returns 0 and does nothing.
LQ_DATA_API int SaveDeclList(FLIST* list, LQDECLLIST* target);
// Returns 0 and does nothing.
LQ_DATA_API int SavePOUHeader(POU_HEADER_TYP* header, LQLIB* library, ID* id);

// Fills `task` from the first task of that name, in the order of the resource pool's collections,
// or from the task object `id`. The old records are destroyed in any case, unless an argument is
// null. 0 also without a resource pool and for an object that is no task.
LQ_DATA_API int LoadTask(TASK_TYP* task, const char16_t* name);
// Fills `task` from the task object `id`, as from a task by name.
LQ_DATA_API int LoadTask(TASK_TYP* task, ID id);

// Appends the names of the project's tasks that the model gives members to `list` (LET_STRING).
// Always 1: without a resource pool nothing is added, and when memory is short the names from there
// on are missing.
LQ_DATA_API int LoadTaskList(FLIST* list);

// ---------------------------------------------------------------------------------------------
// Member initial values and function block names
// ---------------------------------------------------------------------------------------------

// The initial values that the text of a structure instance gives to its members, such as
// "a := 1, b := [1, 2]".
//
// A value is the text of its tokens without the blanks between them, whether or not it is well
// formed: whoever uses it checks it. The model's CheckInitSyntax is asked about each value while
// the check scanner is lent, and its answer changes nothing. Malformed text ends the reading and so
// does a shortage of memory; the assignments before that count.
class LQ_DATA_API DUVMemberInit_C {
  public:
    // Null is an empty text.
    explicit DUVMemberInit_C(const char16_t* text);
    ~DUVMemberInit_C();
    DUVMemberInit_C(const DUVMemberInit_C&) = delete;
    DUVMemberInit_C& operator=(const DUVMemberInit_C&) = delete;

    // The value of a member, or null when it has none. Blanks and tabs around the name do not
    // count, nor does case; of several assignments the last one counts. Valid as long as this
    // object lives.
    const char16_t* FindNewInit(const char16_t* member) const;

    LQ_ALLOCATED

  private:
    struct Entry;

    // Puts an entry in front. False when memory is short; the list is then unchanged.
    bool AppendOverloadInit(const char16_t* member, const char16_t* value);

    Entry* head_ = nullptr;  // the last assignment comes first
};

// Whether `instance` names a function block instance, declared in the POU `pou` or globally. 1 with
// the function block's name in `fbType`, else 0. Case does not count. `fbType` must not be null;
// when memory is too short for the name, it is empty and says so (CLQString::HasFailed).
LQ_DATA_API int FindFBName(const char16_t* instance, const char16_t* pou, CLQString* fbType);
