// The report's page: one document with style, script and data in it, which loads nothing.
#pragma once

#include <string>

#include "tools/lq/output.h"

namespace lq::tool {

std::string ReportPage(const Json& data);

}  // namespace lq::tool
