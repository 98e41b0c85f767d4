#include "host/resources/english.h"

LQ_EXPORT_STRINGS(lq::host::kEnglish)
