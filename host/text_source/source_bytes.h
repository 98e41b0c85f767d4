// The bytes of a source, and the text that they are.
#pragma once

#include <iosfwd>
#include <optional>
#include <string>

#include "lq_data/host/text/utf.h"

namespace lq::host::text_source {

// Replaces `text` by what `source` holds, in `codePage` or as DecodeAnySource finds it; on a fault
// by what precedes that. The bytes of a long text in UTF-8 are given back as they are decoded.
TextStatus ReadBytes(std::istream& source, std::optional<TextEncoding> codePage,
                     std::u16string& text);

}  // namespace lq::host::text_source
