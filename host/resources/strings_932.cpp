#include "host/resources/texts.h"

LQ_EXPORT_STRINGS(lq::host::kJapanese)
