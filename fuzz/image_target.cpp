// An arbitrary image is restored, read, searched, added to and saved.
#include "cgtab/cgtab_access.h"
#include "fuzz/targets.h"
#include "lq_data/cgtab.h"
#include "lq_data/host/base/streams.h"

namespace lq::fuzz {

namespace {

template <typename Line>
void ReadAll(CgTab& tables, Line line) {
    char usr[4];
    for (int32_t pos = 0; tables.Read(pos, line, 1, usr);) {
    }
}

void ReadNames(CgTab& tables) {
    for (int id = 0; id < CgTab::TAB_COUNT; ++id) {
        const auto table = static_cast<CgTab::TAB_ID>(id);
        const int32_t length = CgTabAccess::LengthOf(tables, table);
        for (int32_t pos = 0; pos < length; ++pos) {
            char16_t name[20];
            CgTabAccess::WholeName(tables, table, pos, name, 20);
        }
    }
}

}  // namespace

void Image(const uint8_t* data, size_t size) {
    MEMSTREAM_A stream;
    stream.PutBlock(data, static_cast<int32_t>(size), nullptr);
    uint32_t sizes[CgTab::kUserTables] = {0, 4, 4, 4, 4, 4, 4, 4, 4};
    int ok = 0;
    CgTab tables(ok, &sizes);
    const int restored = tables.Restore(stream);
    MEMSTREAM_A saved;
    tables.Save(saved);
    Require(!restored || std::string_view(reinterpret_cast<const char*>(data), size)
                             .starts_with({reinterpret_cast<const char*>(saved.GetData()),
                                           static_cast<size_t>(saved.GetSize())}),
            "a restored image is saved as it was");
    ReadAll(tables, CgTab::DBG_INFO());
    ReadAll(tables, CgTab::POU_LINE());
    ReadAll(tables, CgTab::CMP_LINE());
    ReadAll(tables, CgTab::GLB_LINE());
    ReadAll(tables, CgTab::ADR_LINE());
    ReadAll(tables, CgTab::CstLine());
    ReadAll(tables, CgTab::LBL_LINE());
    ReadAll(tables, CgTab::TMP_LINE());
    ReadAll(tables, CgTab::DMM_LINE());
    ReadNames(tables);
    CgTab::GLB_LINE global;
    CgTab::CMP_LINE component;
    tables.Look(u"a", &global, 1);
    tables.Look(CgTab::kWholeTable, u"a", &component, 1);
    tables.Insert(u"a", CgTab::kLabelDefinition);
    tables.ResetJumps(0);
    tables.Insert(u"a");
    tables.Insert(u"a", IEC_INT, {.dsc = 0}, 1);
    char16_t digits[] = u"0";
    tables.Insert(Address(LOC_OUTPUT, SIZE_WORD, digits));
    Lit one;
    Require(one.SetText(u"1") != 0, "a text is set");
    one.val.Set(one.text, 0);
    tables.Insert(one);
    const unsigned char bytes[] = {1, 0, 0, 0};
    tables.Look(CgTab::DBG_INFO{bytes, 1}, nullptr);
    for (int id = 0; id < CgTab::kUserTables; ++id) {
        tables.Look(static_cast<CgTab::TAB_ID>(id), bytes, 1);
    }
    for (int id = 0; id < CgTab::TAB_COUNT; ++id) {
        MEMSTREAM_A areas;
        tables.PutUsr(static_cast<CgTab::TAB_ID>(id), areas);
    }
}

}  // namespace lq::fuzz
