// Types, values and durations of PLCopen XML, written as IEC text.
#pragma once

#include <string>
#include <string_view>

#include "host/plcopen/context.h"

namespace lq::host::plcopen {

// The type that `holder` (<type>, <baseType>, <returnType>) holds: "INT", "STRING(20)",
// "ARRAY [1..10, -2..2] OF Pump", "INT (1..10)", "(Red, Green := 5)", "STRUCT a : INT; END_STRUCT".
// Empty, and reported, when it holds none.
std::string TypeText(Context& context, const Element& holder);

// The value that `holder` (<initialValue>) holds: the text of a simple value as it stands,
// "[1, 2, 3(0)]" of an array, "a := 1, p := (x := 2, y := 3)" of a structure.
std::string InitialValueText(Context& context, const Element& holder);

// An interval as an IEC duration. Beside IEC text, clock times ("00:00:00.100") and XML durations
// ("PT0.1S") are understood; a name stays as it is. False when the text is none of these; it is
// then returned unchanged.
bool IntervalText(std::string_view interval, std::string& text);

}  // namespace lq::host::plcopen
