// Dates and day numbers (days since 1970-01-01) of the proleptic Gregorian calendar.
#pragma once

#include <cstdint>

namespace lq::scanner {

// The day number of a date from 1970 on; not meaningful for earlier years.
uint32_t DateToDays(uint32_t day, uint32_t month, uint32_t year);

// Whether the date exists and has a day number: 1970-01-01 to 11761191-01-20.
bool IsValidDate(uint32_t month, uint32_t day, uint32_t year);

}  // namespace lq::scanner
