// The extension libraries of the application.
#pragma once

#include "lq_data/env/lq_framework.h"

namespace lq::host {

// The chain of registered libraries, the youngest first, linked by nextLibrary; null when empty.
LQ_DATA_API CDynLinkLibrary* GetFirstLibrary() noexcept;

}  // namespace lq::host
