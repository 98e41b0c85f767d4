// The text by which a line stands in its table's hash index: its name; of an address all of it, as
// in "%QW0"; of a constant its text behind a prefix for its value class.
#pragma once

#include <cstdint>

#include "lq_data/cgtab.h"
#include "lq_data/memory.h"

namespace lq::cgtab {

class SearchText {
  public:
    SearchText() = default;
    ~SearchText() {
        if (text_ != inline_) {
            lq::Release(text_);
        }
    }
    SearchText(const SearchText&) = delete;
    SearchText& operator=(const SearchText&) = delete;

    // Forms the text of a line of table `id` from its fixed key bytes and its name, `length`
    // characters in UTF-16LE. False for an address that has no text, and when memory is short.
    bool Form(int32_t id, const unsigned char* key, const void* name, uint32_t length);

    const char16_t* Get() const { return text_; }

  private:
    static constexpr uint32_t kInline = 80;
    static constexpr uint32_t kMaxPrefix = 6;

    char16_t inline_[kInline];
    char16_t* text_ = inline_;
};

}  // namespace lq::cgtab
