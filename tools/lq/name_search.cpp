#include "tools/lq/name_search.h"

#include <algorithm>
#include <cstring>
#include <string_view>
#include <vector>

#include "lq_data/detail/chars.h"
#include "lq_data/env/lq_base.h"
#include "lq_data/host/text/utf.h"
#include "tools/lq/input.h"
#include "tools/lq/line_bytes.h"

namespace lq::tool {

namespace {

constexpr std::u16string_view kArray = u"ARRAY ";  // what the texts of arrays begin with

bool HasText(const Cell& cell, const std::u16string& wanted) {
    const auto* text = std::get_if<std::string>(&cell);
    std::u16string decoded;
    if (text) {
        host::DecodeUtf8(*text, decoded);
    }
    return text && chars::EqualNoCase(decoded.c_str(), wanted.c_str());
}

char16_t CharacterAt(std::string_view bytes, size_t i) {
    char16_t c = 0;
    std::memcpy(&c, bytes.data() + i * sizeof(c), sizeof(c));
    return c;
}

// Whether the characters of `bytes`, up to their end or a null, can be those of `wanted`. Names of
// lines that follow each other begin alike more often than they end alike.
bool CanBe(std::string_view bytes, std::u16string_view wanted) {
    const size_t length = bytes.size() / sizeof(char16_t);
    if (length < wanted.size() ||
        (length > wanted.size() && CharacterAt(bytes, wanted.size()) != 0)) {
        return false;
    }
    for (size_t i = wanted.size(); i > 0; --i) {
        if (chars::ToUpper(CharacterAt(bytes, i - 1)) != chars::ToUpper(wanted[i - 1])) {
            return false;
        }
    }
    return true;
}

// A stream that a table is written to: it keeps the positions of the lines that are to be looked at
// closely, and of one that is damaged.
class Candidates : public STREAM_A {
  public:
    Candidates(CgTab::TAB_ID id, std::function<bool(std::string_view)> mayHave)
        : id_(id), mayHave_(std::move(mayHave)) {}

    int32_t GetBlock(void*, int32_t, STREAMERROR*) override { return 0; }
    int32_t PutBlock(const void* from, int32_t count, STREAMERROR*) override {
        pending_.append(static_cast<const char*>(from), static_cast<size_t>(count));
        int32_t at = 0;
        for (LineHead head = HeadOf(id_, pending_, at); head.next >= 0;
             head = HeadOf(id_, pending_, at)) {
            if (mayHave_(head.name)) {
                positions_.push_back(passed_ + at);
            }
            at = head.next;
        }
        pending_.erase(0, static_cast<size_t>(at));
        passed_ += at;
        return count;
    }

    // To be called once, when all is written.
    const std::vector<int32_t>& Positions() {
        if (!pending_.empty()) {
            positions_.push_back(passed_);
        }
        return positions_;
    }

  private:
    CgTab::TAB_ID id_;
    std::function<bool(std::string_view)> mayHave_;
    std::string pending_;  // the beginning of a line
    int32_t passed_ = 0;   // the bytes in front of that
    std::vector<int32_t> positions_;
};

}  // namespace

NameSearch::NameSearch(const std::string& name) : whole_(DecodeArgument(name)) {
    const size_t point = whole_.find(u'.');
    if (point != whole_.npos) {
        isOfUnit_ = true;
        unit_ = whole_.substr(0, point);
        component_ = whole_.substr(point + 1);
    }
}

std::optional<int32_t> NameSearch::Run(CgTab& tables, CgTab::TAB_ID id, RowReader& reader,
                                       const std::function<void()>& take) const {
    Candidates candidates(id, [&](std::string_view name) { return MayHave(id, name); });
    tables.Put(id, candidates);
    for (int32_t pos : candidates.Positions()) {
        if (!reader.Read(pos)) {
            return pos;
        }
        if (Has(id, reader)) {
            take();
        }
    }
    return std::nullopt;
}

bool NameSearch::MayHave(CgTab::TAB_ID id, std::string_view nameBytes) const {
    switch (id) {
        case CgTab::TAB_DBG:
            return true;
        case CgTab::TAB_ARR:
            return whole_.size() > kArray.size() &&
                   chars::CompareNoCase(whole_.data(), kArray.data(), kArray.size()) == 0;
        case CgTab::TAB_ADR: {  // the line holds the digits that end the address
            const size_t digits = std::min(whole_.size(), nameBytes.size() / sizeof(char16_t));
            return CanBe(nameBytes, std::u16string_view(whole_).substr(whole_.size() - digits));
        }
        default:
            return CanBe(nameBytes, id == CgTab::TAB_CMP && isOfUnit_ ? component_ : whole_);
    }
}

bool NameSearch::Has(CgTab::TAB_ID id, const RowReader& reader) const {
    const Row& row = reader.Get();
    return id == CgTab::TAB_CMP && isOfUnit_ ? HasText(row[reader.UnitColumn()], unit_) &&
                                                   HasText(row[reader.NameColumn()], component_)
                                             : HasText(row[reader.NameColumn()], whole_);
}

void SuggestNames(CgTab::TAB_ID id, RowReader& reader, Suggestion& suggestion) {
    reader.ForEach([&] {
        const std::string* const name = reader.Name();
        const auto* const unit = std::get_if<std::string>(&reader.Get()[reader.UnitColumn()]);
        if (name) {
            suggestion.Consider(*name);
        }
        if (name && unit && id == CgTab::TAB_CMP) {
            suggestion.Consider(*unit + "." + *name);
        }
    });
}

}  // namespace lq::tool
