// Table sets in tests: construction, images as hex, declarations from texts.
#pragma once

#include <cstring>
#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "cgtab/cgtab_access.h"
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

struct DeclDeleter {
    void operator()(DECL_TYP* decl) const { DestroyDecl(decl); }
};
using DeclPtr = std::unique_ptr<DECL_TYP, DeclDeleter>;

struct DeclText {
    uint32_t scope;
    std::u16string name;
    uint32_t kind;  // POUH_TYPE_KIND
    std::u16string type;
    std::u16string init = u"";
    std::u16string address = u"";
};

inline DeclPtr NewDecl(const DeclText& text) {
    DeclPtr decl(CreateDecl());
    UNNAMED_TYPE_TYP* type = CreateUnnamedType();
    SetAttrOfDecl(decl.get(), POUH_SCOPE, &text.scope);
    SetAttrOfDecl(decl.get(), POUH_NAME, text.name.c_str());
    SetAttrOfDecl(decl.get(), POUH_ADDRESS, text.address.c_str());
    SetAttrOfDecl(decl.get(), POUH_TYPE, &type);
    SetAttrOfUnnamedType(type, POUH_TYPEKIND, &text.kind);
    const auto fill = [&text, type](auto* spec, POUH_ATTRIBUTE_FLAG typeFlag, auto set) {
        set(spec, typeFlag, text.type.c_str());
        set(spec, POUH_INITVALUE, text.init.c_str());
        SetAttrOfUnnamedType(type, POUH_TYPESPEC, &spec);
    };
    switch (text.kind) {
        case DT_STRING:
            fill(CreateStringSpec(), POUH_STRINGTYPE, SetAttrOfStringSpec);
            break;
        case DT_ARRAY:
            fill(CreateArraySpec(), POUH_ARRAYTYPE, SetAttrOfArraySpec);
            break;
        case DT_FB_INSTANCE:
            fill(CreateFBInstSpec(), POUH_NAME, SetAttrOfFBInstSpec);
            break;
        case DT_SUBRANGE:
            fill(CreateSubrangeSpec(), POUH_NAME, SetAttrOfSubrangeSpec);
            break;
        case DT_ELEMENTARY:
        case DT_STRUCTURE:
            fill(CreateSimpleSpec(), POUH_NAME, SetAttrOfSimpleSpec);
            break;
        default:
            break;  // no specification belongs to the kind
    }
    return decl;
}

// A header of these declarations.
class Header {
  public:
    explicit Header(const std::vector<DeclText>& texts) : header_(CreatePOUHeader()) {
        POUH_DECL_LIST_TYP* record = CreatePOUHDeclList();
        FLIST* list = CreateList(0, LET_MEMORY, sizeof(void*), nullptr);
        for (const DeclText& text : texts) {
            DECL_TYP* decl = NewDecl(text).release();
            InsertElementOfList(list, &decl, LC_LAST, 0);
        }
        SetAttrOfPOUHDeclList(record, POUH_LIST, &list);
        SetAttrOfPOUHeader(header_, POUH_DECLLIST, &record);
    }
    ~Header() { DestroyPOUHeader(header_); }
    Header(const Header&) = delete;
    Header& operator=(const Header&) = delete;

    POU_HEADER_TYP* Get() const { return header_; }

  private:
    POU_HEADER_TYP* header_;
};

inline std::string Ascii(const char16_t* text) {
    return {text, text + std::char_traits<char16_t>::length(text)};
}

}  // namespace lq::test
