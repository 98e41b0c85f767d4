// The elements and attributes of PLCopen XML and what the reader does with each, as one table.
#pragma once

#include <string_view>

#include "host/plcopen/context.h"

namespace lq::host::plcopen {

enum class Verdict {
    kRead,
    kSkip,     // layout and the like: passed over by design
    kNotKept,  // it has no place in the project
    kUnknown,
};

// What becomes of `element` below its parent. All but kRead and kSkip are reported.
Verdict JudgeElement(Context& context, const Element& element);

// Reports the attributes of the element that the table does not know.
void JudgeAttributes(Context& context, const Element& element);

// JudgeAttributes of the element, and both for all that it holds and that is read.
void JudgeTree(Context& context, const Element& element);

void ReportText(Context& context, const Element& text);

}  // namespace lq::host::plcopen
