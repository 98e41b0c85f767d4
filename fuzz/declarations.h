// Declarations and headers from texts, for the fuzz targets and for tests.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "lq_data/containers.h"
#include "lq_data/pouh.h"

namespace lq::fuzz {

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

}  // namespace lq::fuzz
