// The text by which a line stands in its table's index: its name; of an address all of it, as
// in "%QW0"; of a constant its text behind a prefix for its value class.
#pragma once

#include <cstdint>

#include "cgtab/table_traits.h"
#include "lq_data/cgtab.h"
#include "lq_data/detail/text_hash.h"
#include "lq_data/memory.h"

namespace lq::cgtab {

// Characters of the longest prefix.
inline constexpr int32_t kMaxPrefix = 6;

// The length and the hash of a text, as the index of a table with these traits compares.
inline text_hash::Measured Measure(const TableTraits& traits, const char16_t* text) {
    return traits.caseSensitiveIndex ? text_hash::OfText(text) : text_hash::OfName(text);
}

// Writes what stands in front of the name in the search text of a line of table `id`, from its
// fixed key bytes, to `to`: its length, or -1 when the bytes mean nothing.
int32_t PutPrefix(int32_t id, const unsigned char* key, char16_t (&to)[kMaxPrefix]);

class SearchText {
  public:
    SearchText() = default;
    ~SearchText() {
        if (long_) {
            lq::Release(long_);
        }
    }
    SearchText(const SearchText&) = delete;
    SearchText& operator=(const SearchText&) = delete;

    // Forms the text of a line of table `id` from its fixed key bytes and its name, `length`
    // characters in UTF-16LE, of which it takes those before a terminator. False for an address
    // that has no text, and when memory is short.
    bool Form(int32_t id, const unsigned char* key, const void* name, uint32_t length);
    // Takes a name that ends in a terminator, was measured and outlives this.
    void Take(const char16_t* name, const text_hash::Measured& measured) {
        text_ = name;
        length_ = static_cast<uint32_t>(measured.length);
        hash_ = measured.hash;
    }

    const char16_t* Get() const { return text_; }
    uint32_t Length() const { return length_; }
    // As the table's index compares: with regard to case, or without.
    uint32_t Hash() const { return hash_; }

  private:
    static constexpr uint32_t kInline = 80;

    char16_t inline_[kInline];
    char16_t* long_ = nullptr;
    const char16_t* text_ = inline_;
    uint32_t length_ = 0;
    uint32_t hash_ = 0;
};

}  // namespace lq::cgtab
