// The elements and attributes of PLCopen XML and what the reader does with each, as one table.
#pragma once

#include <string_view>

#include "host/plcopen/context.h"

namespace lq::host::plcopen {

// What the table says of the elements of a name below a parent, null for none.
const Row* FindRow(const Kind* parent, std::string_view name);

// What becomes of a child or an attribute of that name; "#" is text.
Verdict JudgeChild(const Row* parent, std::string_view name);
Verdict JudgeAttribute(const Row* row, std::string_view name);

// What becomes of `element` below its parent. All but kRead and kSkip are reported.
Verdict JudgeElement(Context& context, const Element& element);

// Reports the attributes of the element that the table does not know.
void JudgeAttributes(Context& context, const Element& element);

// Judges the attributes of the element, then each element in it, and of those that are read again
// the attributes and contents.
void JudgeTree(Context& context, const Element& element);

// Additional data is some producer's own. One that its producer allows to be discarded is passed
// over, any other is reported by its name.
void JudgeData(Context& context, const Element& data);

void ReportText(Context& context, const Element& text);

}  // namespace lq::host::plcopen
