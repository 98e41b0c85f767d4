#include "host/resources/japanese.h"

LQ_EXPORT_STRINGS(lq::host::kJapanese)
