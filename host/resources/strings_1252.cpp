// English.
#include "host/resources/string_ids.h"

namespace {

constexpr LQ_STRING_RESOURCE kStrings[] = {
    {6491, u"STRING"},
    {6492, u"ARRAY"},
    {10000, u"(64-bit value)"},
};

}  // namespace

LQ_EXPORT_STRINGS(kStrings)
