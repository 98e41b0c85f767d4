// Table sets in tests: construction, images as hex.
#pragma once

#include <cstring>
#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "cgtab/cgtab_access.h"
#include "fuzz/declarations.h"
#include "lq_data/cgtab.h"
#include "lq_data/containers.h"
#include "lq_data/host/base/streams.h"
#include "lq_data/pouh.h"

namespace lq::test {

inline std::unique_ptr<CgTab> NewTables(uint32_t usrLen = 0) {
    uint32_t sizes[CgTab::kUserTables];
    std::fill(std::begin(sizes), std::end(sizes), usrLen);
    int ok = 0;
    auto tables = std::make_unique<CgTab>(ok, &sizes);
    EXPECT_EQ(ok, 1);
    return tables;
}

inline std::string Hex(const unsigned char* bytes, size_t size) {
    std::string text;
    for (size_t i = 0; i < size; ++i) {
        char code[4];
        std::snprintf(code, sizeof(code), "%s%02X", i == 0 ? "" : " ", bytes[i]);
        text += code;
    }
    return text;
}

// The bytes of a table.
inline std::string ImageOf(CgTab& tables, CgTab::TAB_ID id) {
    MEMSTREAM_A stream;
    tables.Put(id, stream);
    return Hex(stream.GetData(), static_cast<size_t>(stream.GetSize()));
}

inline std::vector<unsigned char> Saved(CgTab& tables) {
    MEMSTREAM_A stream;
    EXPECT_EQ(tables.Save(stream), 1);
    return {stream.GetData(), stream.GetData() + stream.GetSize()};
}

inline void Fill(MEMSTREAM_A& stream, const std::vector<unsigned char>& bytes) {
    ASSERT_EQ(stream.PutBlock(bytes.data(), static_cast<int32_t>(bytes.size()), nullptr),
              static_cast<int32_t>(bytes.size()));
}

using fuzz::DeclPtr;
using fuzz::DeclText;
using fuzz::Header;
using fuzz::NewDecl;

inline std::string Ascii(const char16_t* text) {
    return {text, text + std::char_traits<char16_t>::length(text)};
}

}  // namespace lq::test
