#include "host/framework/built_in_texts.h"
#include "host/resources/english.h"

namespace lq::host {

constinit const LQ_STRING_TABLE kDefaultStrings = {std::size(kEnglish), kEnglish};

}  // namespace lq::host
