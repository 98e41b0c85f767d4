#include "tools/lq/name_search.h"

#include <algorithm>
#include <cstring>
#include <string_view>

#include "frame/chars.h"
#include "host/text/utf.h"
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

// Whether the characters of `bytes`, up to their end or a null, can be those of `wanted`.
bool CanBe(std::string_view bytes, std::u16string_view wanted) {
    const size_t length = bytes.size() / sizeof(char16_t);
    char16_t name[64];
    const size_t compared = std::min(wanted.size(), std::size(name));
    char16_t behind = 0;
    if (length < wanted.size()) {
        return false;
    }
    if (length > wanted.size()) {
        std::memcpy(&behind, bytes.data() + wanted.size() * sizeof(behind), sizeof(behind));
    }
    std::memcpy(name, bytes.data(), compared * sizeof(char16_t));
    return behind == 0 && chars::CompareNoCase(name, wanted.data(), compared) == 0;
}

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
    const std::string bytes = BytesOf(tables, id);
    for (int32_t pos = 0; pos < static_cast<int32_t>(bytes.size());) {
        const LineParts parts = PartsOf(id, bytes, pos);
        if (parts.next >= 0 && !MayHave(id, parts.name)) {
            pos = parts.next;
        } else if (!reader.Read(pos)) {
            return pos;
        } else if (Has(id, reader)) {
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
