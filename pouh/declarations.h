// From the declarations of the project model to declaration records: what the loaders are made of.
#pragma once

#include "lq_data/export.h"
#include "lq_data/pouh.h"

namespace lq::pouh {

// --- fill_declaration.cpp: a new record from its parts -----------------------------------------

// What a declaration consists of. A null text leaves its field empty.
struct DeclContent {
    DECL_SCOPE scope;
    const char16_t* name;
    const char16_t* typeText;
    const char16_t* initValue;
    const char16_t* comment;
    const char16_t* comment2;
};

// Each stores scope and name, a type record of its kind with a specification, and both comment
// records in `decl`, which is new and not null. The result is 1, or 0 when memory is short: the
// parts that were made until then belong to `decl`.
int FillSimpleDeclaration(DECL_TYP* decl, const DeclContent& content);
int FillStringDeclaration(DECL_TYP* decl, const DeclContent& content);
int FillArrayDeclaration(DECL_TYP* decl, const DeclContent& content);
int FillStructDeclaration(DECL_TYP* decl, const DeclContent& content);

// --- convert_declaration.cpp: one declaration of the model to one record -----------------------

// A new record, owned by the caller, with its type classified and erroneous texts marked; null when
// memory is short. `isReturn` is for the return value of a function, whose name has a rule of its
// own. An object that is no declaration of a POU or global list has an unknown scope.
DECL_TYP* ConvertDeclaration(LQOBJECT& source, bool isReturn);

// The scope of a declaration of the model; that of an object that is none is unknown.
LQ_DATA_API DECL_SCOPE ScopeOf(LQOBJECT& source);

// --- load_declarations.cpp: what the loaders of headers, interfaces and symbol tables share ----

// EN and ENO, the parameters that a POU with the ENO flag has beside its own.
struct EnableParameter {
    const char16_t* name;
    int32_t declClass;
};
inline constexpr EnableParameter kEnable = {u"EN", LQ_CLASS_INPUT};
inline constexpr EnableParameter kEnableOut = {u"ENO", LQ_CLASS_OUTPUT};

// Gives `decl` the type, class and initial value of the parameter, not its name.
void DescribeEnable(LQPOUHDECL& decl, const EnableParameter& parameter);

// Appends the declarations of `owner` to `list`, in the model's order. With `onlyParameters` those
// of the interface scopes alone. Identifiers without an object are skipped. False when memory is
// short: the declarations before that stay.
bool LoadDeclarations(FLIST* list, LQOBJECT& owner, bool onlyParameters);

// Puts the return value of a function in front. False when the model or memory has none to give.
bool PrependResult(FLIST* list, LQFUN& function);

// Puts a parameter of the POU with the ENO flag in front, converted from `decl`.
bool PrependEnable(FLIST* list, LQPOUHDECL& decl, const EnableParameter& parameter);

// Destroys the records of `header` and gives it new ones, with an empty list. False when memory is
// short: those that were made are kept.
bool RenewHeader(POU_HEADER_TYP& header);
// The same for its declaration list alone.
bool RenewDeclarations(POU_HEADER_TYP& header);

// --- load_header.cpp: what loading a header at once and in parts shares ------------------------

// What the declarations of a header are loaded from.
struct HeaderSource {
    LQPOU* pou = nullptr;       // null for a data type
    LQOBJECT* owner = nullptr;  // of the declarations; null when there is none
};

// Renews the records of `header` and fills its info. There is no owner when the object has no
// header to load or memory is short.
HeaderSource OpenHeader(POU_HEADER_TYP& header, LQOBJECT& object);

// Loads all its declarations into the header that was opened. False when memory is short.
bool LoadWhole(POU_HEADER_TYP& header, const HeaderSource& source);

// Puts what a POU has without declaring it in front of the list: a function its result, what has
// the ENO flag and is no program EN and ENO. False when the model or memory has none to give.
bool PrependUndeclared(FLIST* list, LQPOU& pou);

}  // namespace lq::pouh
