// The bytes of a source, and the text that they are.
#pragma once

#include <cstddef>
#include <iosfwd>
#include <optional>
#include <string>
#include <string_view>

#include "lq_data/host/text/utf.h"

namespace lq::host::text_source {

// Long ones take little more memory than the text does: what is done with goes back to the system.
class SourceText {
  public:
    // What `source` holds, in `codePage` or as DecodeAnySource finds it; on a fault what precedes
    // that.
    TextStatus Read(std::istream& source, std::optional<TextEncoding> codePage);

    std::u16string_view Text() const { return text_; }

    // What stands before `at` is not asked for any more, and may be gone.
    void Forget(std::size_t at);

  private:
    std::u16string text_;
    std::size_t forgotten_ = 0;
};

}  // namespace lq::host::text_source
