// Fills the tables, saves them, restores them into another set, and reads them back.
#include <cstdio>
#include <cstring>
#include <lq_data/cgtab.h>
#include <lq_data/host/base/streams.h>
#include <lq_data/host/text/utf.h>
#include <lq_data/pouh.h>

using lq::host::EncodeUtf8;

namespace {

// [declare]
// A declaration record; a compiler gets them from the loaders instead.
DECL_TYP* DeclareGlobal(const char16_t* name, const char16_t* typeName, const char16_t* initial) {
    DECL_TYP* decl = CreateDecl();
    UNNAMED_TYPE_TYP* type = CreateUnnamedType();
    SIMPLE_SPEC_TYP* spec = CreateSimpleSpec();
    const uint32_t scope = DS_VAR_GLOBAL;
    const uint32_t kind = DT_ELEMENTARY;
    SetAttrOfSimpleSpec(spec, POUH_NAME, typeName);
    SetAttrOfSimpleSpec(spec, POUH_INITVALUE, initial);
    SetAttrOfUnnamedType(type, POUH_TYPEKIND, &kind);
    SetAttrOfUnnamedType(type, POUH_TYPESPEC, &spec);  // the type owns it now
    SetAttrOfDecl(decl, POUH_NAME, name);
    SetAttrOfDecl(decl, POUH_SCOPE, &scope);
    SetAttrOfDecl(decl, POUH_TYPE, &type);  // and the declaration the type
    return decl;
}
// [/declare]

// [fill]
// Every line of the tables of globals and constants ends in four bytes of our own.
uint32_t userAreas[CgTab::kUserTables] = {0, 0, 0, 4, 0, 4, 0, 0, 0};

int Fill(CgTab& tables) {
    DECL_TYP* const speed = DeclareGlobal(u"Speed", u"INT", u"1500");
    DECL_TYP* const limit = DeclareGlobal(u"Limit", u"INT", u"1500");
    const int32_t first = tables.Insert(speed);
    const int32_t second = tables.Insert(limit);
    DestroyDecl(speed);
    DestroyDecl(limit);
    int32_t pos = second;
    const char ours[4] = {'h', 'o', 't', '!'};
    return first >= 0 && second >= 0 && tables.Write(CgTab::TAB_GLB, pos, ours);
}
// [/fill]

// [read]
void Show(CgTab& tables) {
    CgTab::GLB_LINE global;
    char ours[4];
    for (int32_t pos = 0, at = pos; tables.Read(pos, global, 0, ours); at = pos) {
        CgTab::CstLine constant;
        int32_t cstPos = global.cstLine;
        const bool hasValue = cstPos >= 0 && tables.Read(cstPos, constant, 0, nullptr);
        std::printf("%d: %s := %s (constant at %d), %.4s\n", at, EncodeUtf8(global.name).c_str(),
                    hasValue ? EncodeUtf8(constant.text).c_str() : "-", global.cstLine,
                    ours[0] ? ours : "none");
    }
    if (tables.Look(u"LIMIT", &global, 0) >= 0) {  // names have no case
        std::printf("found %s\n", EncodeUtf8(global.name).c_str());
    }
}
// [/read]

}  // namespace

int main() {
    // [image]
    int ok = 0;
    CgTab tables(ok, &userAreas);
    if (!ok || !Fill(tables)) {
        return 1;
    }
    MEMSTREAM_A image;
    if (!tables.Save(image)) {
        return 1;
    }
    std::printf("the image has %d bytes\n", image.GetSize());

    CgTab restored(ok, &userAreas);  // the same sizes: the image does not carry them
    if (!ok || !restored.Restore(image)) {
        return 1;
    }
    Show(restored);
    // [/image]
    return 0;
}
