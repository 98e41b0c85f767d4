// The life of the shared check scanner.
#pragma once

#include "lq_data/export.h"

namespace lq::host {

// Destroys the check scanner; the next GetCheckScanner makes a new one. For whoever unloads the
// libraries, accounts for memory or has changed the user adapter's answers. Does nothing while the
// scanner is lent. Returns how often it is lent.
LQ_DATA_API int DestroyCheckScanner();

}  // namespace lq::host
