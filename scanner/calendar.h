// Dates and day numbers (days since 1970-01-01) of the proleptic Gregorian calendar.
//
// The number of January 1 is 365 days for every year since 1970, and one more for every leap day
// before it: for each year since 1970 that 4 divides, but of those that 100 divides only for each
// that 400 divides too. Each of the three counts is one division, as POSIX has them in its formula
// of the seconds since the Epoch (IEEE Std 1003.1, Base Definitions, "Seconds Since the Epoch").
// The lengths of the months before give the rest.
//
// In the other direction the year is approached from below. No year has more than 366 days, so that
// days / 366 years have certainly passed. What that leaves is divided again, until less than a year
// is left; a few rounds are enough, since a round leaves a year and a five-hundredth of the days at
// most.
#pragma once

#include <cstdint>

namespace lq::scanner {

// The day number of a date from 1970 on; not meaningful for earlier years.
uint32_t DateToDays(uint32_t day, uint32_t month, uint32_t year);

// Whether the date exists and has a day number: 1970-01-01 to 11761191-01-20.
bool IsValidDate(uint32_t month, uint32_t day, uint32_t year);

}  // namespace lq::scanner
