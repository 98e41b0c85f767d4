// The reader's operations on whole parts of a document, and the IEC text of types and values.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "host/plcopen/context.h"

namespace lq::host::plcopen {

// A variable of an interface, a list or a structure, or what a configuration says of one. Nothing,
// with a report, when it has no name.
std::optional<Declaration> ReadVariable(Context& context, const Element& variable, ID owner,
                                        Section section);

// The section that a list of variables (<inputVars>, <globalVars>) stands for. What has no keyword
// is reported.
Section ReadSection(Context& context, const Element& list);

void ReadDataType(Context& context, const Element& dataType);

// A POU's body, or that of one of its actions or transitions, whose name `name` is then.
void ReadBody(Context& context, const Element& body, std::string_view name, Pou& pou);

// The same of IEC 61131-10, whose drawings have another form: of these only the language is read.
void ReadIecBody(Context& context, const Element& body, std::string_view name, Pou& pou);

void ReadTask(Context& context, const Element& task, ID resource);
void ReadProgramInstance(Context& context, const Element& instance, ID parent);

// The type that `holder` (<type>, <baseType>, <returnType>) holds: "INT", "STRING(20)",
// "ARRAY [1..10, -2..2] OF Pump", "INT (1..10)", "(Red, Green := 5)", "STRUCT a : INT; END_STRUCT".
// Empty, and reported, when it holds none.
std::string TypeText(Context& context, const Element& holder);

// The type that an element of IEC 61131-10 specifies: an array or an enumeration. Empty, and
// reported, for any other.
std::string SpecificationText(Context& context, const Element& specification);

// The value that `holder` (<initialValue>) holds: the text of a simple value as it stands,
// "[1, 2, 3(0)]" of an array, "a := 1, p := (x := 2, y := 3)" of a structure.
std::string InitialValueText(Context& context, const Element& holder);

}  // namespace lq::host::plcopen
