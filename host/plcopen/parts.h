// The reader's operations on whole parts of a document.
#pragma once

#include <optional>
#include <string_view>

#include "host/plcopen/context.h"
#include "host/plcopen/iec_text.h"

namespace lq::host::plcopen {

// A variable of an interface, a list or a structure. Nothing, with a report, when it has no name.
std::optional<Declaration> ReadVariable(Context& context, const Element& variable, ID owner,
                                        Section section);

// The section that a list of variables (<inputVars>, <globalVars>) stands for. What has no keyword
// is reported.
Section ReadSection(Context& context, const Element& list);

void ReadDataType(Context& context, const Element& dataType);

// A POU's body, or that of one of its actions or transitions, whose name `name` is then.
void ReadBody(Context& context, const Element& body, std::string_view name, Pou& pou);

void ReadTask(Context& context, const Element& task, ID resource);
void ReadProgramInstance(Context& context, const Element& instance, ID parent);

// The labels, jumps and calls of IL or ST text.
void ReadCode(Context& context, const Code& code, Language language, Pou& pou, Body& body);

}  // namespace lq::host::plcopen
