// The life of the check scanner, of which each thread has its own.
#pragma once

#include "lq_data/export.h"

namespace lq::host {

// Destroys the check scanner of the calling thread; the next GetCheckScanner makes a new one. For
// whoever accounts for memory or has changed the user adapter's answers; it goes with its thread
// (lq::ReleaseThread). Does nothing while the scanner is lent. Returns how often it is lent.
LQ_DATA_API int DestroyCheckScanner();

}  // namespace lq::host
