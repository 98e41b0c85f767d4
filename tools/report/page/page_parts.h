// The files of this folder, as the build embeds them.
#pragma once

#include <string_view>

namespace lq::tool::report {

extern const std::string_view kFrame;   // page.html: with marks where the others go
extern const std::string_view kStyle;   // page.css
extern const std::string_view kScript;  // the scripts, one behind the other

}  // namespace lq::tool::report
