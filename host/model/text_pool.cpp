#include "lq_data/host/model/text_pool.h"

#include <algorithm>

namespace lq::host {

namespace {

// What stands before the first zero character.
std::u16string_view Whole(std::u16string_view text) {
    return text.substr(0, text.find(u'\0'));
}

bool IsSame(Text known, std::u16string_view text) {
    std::size_t i = 0;
    while (i < text.size() && known[i] == text[i]) {
        ++i;
    }
    return i == text.size() && known[i] == u'\0';
}

}  // namespace

char16_t* TextPool::Room(std::size_t count) {
    if (count > left_) {
        const std::size_t size = std::max(count, kChunk);
        chunks_.reserve(chunks_.size() + 1);
        chunks_.push_back(std::make_unique_for_overwrite<char16_t[]>(size));
        if (size > kChunk) {
            return chunks_.back().get();
        }
        free_ = chunks_.back().get();
        left_ = size;
    }
    char16_t* room = free_;
    free_ += count;
    left_ -= count;
    return room;
}

Text TextPool::Copy(std::u16string_view text) {
    char16_t* copy = Room(text.size() + 1);
    std::copy(text.begin(), text.end(), copy);
    copy[text.size()] = u'\0';
    return copy;
}

Text TextPool::Store(std::u16string_view text) {
    text = Whole(text);
    return text.empty() ? u"" : Copy(text);
}

Text TextPool::Intern(std::u16string_view text) {
    text = Whole(text);
    if (text.empty()) {
        return u"";
    }
    const uint32_t hash = HashOfText(text);
    const Text known = index_.Find(hash, [&](Text t) { return IsSame(t, text); });
    if (known) {
        return known;
    }
    const Text copy = Copy(text);
    index_.Add(copy, hash);
    return copy;
}

}  // namespace lq::host
