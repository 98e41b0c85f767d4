// What the library asks the address check library: device addresses and constant notations of the
// system's own.
#pragma once

#include <cstdint>

#include "lq_data/export.h"

class CLQString;

// Non-zero when `text` (upper case) is the beginning of one of the system's own device addresses.
LQ_DATA_API int IsCustomAdress(const char16_t* text, int checkAccess, int flag);

// Non-zero when `text` is the beginning of one of the system's own constant notations.
LQ_DATA_API int bIsVdConstant(const char16_t* text, int a, int b);

// Writes the normalised form of an address text into `normalised`. The result says whether the
// address is valid; the library takes the text only.
LQ_DATA_API int IsAdressValidOnl(const char16_t* address, int a, int32_t b, CLQString* normalised);
