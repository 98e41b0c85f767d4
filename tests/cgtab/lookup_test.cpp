// Units, indexes, use counts; and tables when memory runs out.
#include "host/model/project.h"
#include "tests/cgtab/tables_util.h"
#include "tests/support/test_allocator.h"

namespace lq::test {
namespace {

// Table 1 receives its lines through an image only.
void EnterUnits(CgTab& tables) {
    MEMSTREAM_A image;
    std::vector<unsigned char> bytes;
    for (const char name : {'A', 'b'}) {
        const std::vector<unsigned char> head = {23, 0, 0, 0, 1, static_cast<unsigned char>(name),
                                                 0};
        bytes.insert(bytes.end(), head.begin(), head.end());
        for (unsigned char i = 0; i < 20; ++i) {
            bytes.push_back(static_cast<unsigned char>(name + i));
        }
    }
    Fill(image, bytes);
    ASSERT_EQ(tables.Get(CgTab::TAB_POU, image, 54), 54);
}

TEST(Lookup, UnitsByName) {
    auto tables = NewTables();
    EnterUnits(*tables);
    CgTab::POU_LINE line = {};
    EXPECT_EQ(tables->Look(u"B", &line, 0), 27);
    EXPECT_EQ(Ascii(line.name), "b");
    EXPECT_EQ(line.info.bytes[0], 'b');
    EXPECT_EQ(line.info.bytes[19], 'b' + 19);
    EXPECT_EQ(tables->Look(u"c", &line, 0), -1);
    EXPECT_EQ(tables->Look(static_cast<const char16_t*>(nullptr), &line, 0), -1);
}

TEST(Lookup, AUnitInTheTableIsNoRecursiveOne) {
    host::Project project;
    host::Pou pou;
    pou.name = u"A";
    host::Pou* edited = project.EditPou(project.AddPou(pou));
    project.AddCall(*edited, u"A");
    host::SetProject(&project);
    auto tables = NewTables();
    EXPECT_EQ(CgTab_IsRecursivPOU(tables.get(), u"A"), 1);
    EXPECT_EQ(CgTab_IsRecursivPOU(tables.get(), u"Z"), 0);
    EXPECT_EQ(CgTab_IsRecursivPOU(tables.get(), nullptr), 0);
    EXPECT_EQ(CgTab_IsRecursivPOU(nullptr, u"A"), 0);
    tables = NewTables();  // an image does not reach an index that was built before
    EnterUnits(*tables);
    EXPECT_EQ(CgTab_IsRecursivPOU(tables.get(), u"a"), 0);
    host::SetProject(nullptr);
}

TEST(Lookup, AClearedTableForgetsItsIndex) {
    auto tables = NewTables();
    char16_t text[] = u"1";
    EXPECT_EQ(tables->Insert(Address(LOC_INPUT, SIZE_BIT, text)), 0);
    EXPECT_EQ(tables->Clear(CgTab::TAB_ADR), 1);
    EXPECT_EQ(tables->Insert(Address(LOC_INPUT, SIZE_WORD, text)), 0);
    EXPECT_EQ(tables->Insert(Address(LOC_INPUT, SIZE_BIT, text)), 14) << "not found any more";
}

// An index that a search builds leaves the table where it stands, at a user area too.
TEST(Lookup, BuildingAnIndexMovesNothing) {
    auto tables = NewTables(4);
    for (const char16_t* name : {u"a", u"b"}) {
        tables->Insert(NewDecl({DS_VAR_GLOBAL, name, DT_ELEMENTARY, u"INT"}).get());
    }
    MEMSTREAM_A image;
    Fill(image, Saved(*tables));
    auto restored = NewTables(4);
    ASSERT_EQ(restored->Restore(image), 1);
    CgTab::GLB_LINE line;
    restored->SetPos(CgTab::TAB_GLB, 0);
    ASSERT_EQ(restored->Read(line, 1, nullptr), 1);
    EXPECT_EQ(restored->Look(u"none", static_cast<CgTab::GLB_LINE*>(nullptr), 0), -1);
    EXPECT_EQ(restored->Write(CgTab::TAB_GLB, "user"), 1);
    EXPECT_EQ(restored->Look(CgTab::TAB_GLB, "user", 1), 0);
}

TEST(Lookup, AnIndexOfLongNames) {
    auto tables = NewTables(4);
    const auto label = [](CgTab& t, size_t length) {
        return t.Insert(std::u16string(length, u'n').c_str(), CgTab::LBL_INFO{0});
    };
    for (const size_t length : {size_t{250}, size_t{10}, size_t{150}, size_t{255}}) {
        label(*tables, length);
    }
    MEMSTREAM_A image;
    Fill(image, Saved(*tables));
    auto restored = NewTables(4);
    ASSERT_EQ(restored->Restore(image), 1);
    for (const size_t length : {size_t{10}, size_t{150}, size_t{250}, size_t{255}}) {
        EXPECT_EQ(label(*restored, length), label(*tables, length)) << length;
    }
    EXPECT_EQ(Saved(*restored), Saved(*tables));
}

TEST(Lookup, ACountNeverBecomesNegative) {
    auto tables = NewTables();
    Header header({{DS_VAR, u"a", DT_ELEMENTARY, u"INT"}});
    POU_LIST list;
    CgTab::POS_DSC range;
    CgTabAccess::AppendCmp(*tables, header.Get(), 0, &list, range, 1);
    tables->Insert(u"n");
    const auto image = [&tables](CgTab::TAB_ID id, const std::vector<unsigned char>& bytes) {
        tables->Clear(id);
        MEMSTREAM_A stream;
        Fill(stream, bytes);
        tables->Get(id, stream, static_cast<int32_t>(bytes.size()));
    };
    // Both with a count of 2^31 - 1.
    image(CgTab::TAB_DMM, {8, 0, 0, 0, 1, 0, 'n', 0, 0xFF, 0xFF, 0xFF, 0x7F});
    EXPECT_EQ(tables->Insert(u"n"), -1) << "a table without an index fails";
    image(CgTab::TAB_CMP, {19, 0, 0, 0,    1,    'a',  0,    1,    0,    0,    0,   2,
                           0,  0, 0, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0x7F});
    CgTab::CMP_LINE line = {};
    EXPECT_EQ(tables->Look(CgTab::kWholeTable, u"A", &line, 1), 0) << "one with an index finds it";
    EXPECT_EQ(line.count, 0x7FFFFFFFu);
}

TEST(Lookup, ASearchBehindAPositionThatIsTaken) {
    auto tables = NewTables(4);
    for (const char16_t* name : {u"a", u"b"}) {
        tables->Insert(name);
    }
    CgTab::DMM_LINE line;
    tables->SetPos(CgTab::TAB_DMM, 0);
    EXPECT_EQ(tables->Read(line, 1, nullptr), 1);
    EXPECT_EQ(tables->SetPos(CgTab::TAB_DMM, -5), 0);
    EXPECT_EQ(tables->Insert(u"b"), 16) << "a search moves the table";
    EXPECT_EQ(tables->Write(CgTab::TAB_DMM, "bbbb"), 1);
    EXPECT_EQ(ImageOf(*tables, CgTab::TAB_DMM),
              "0C 00 00 00 01 00 61 00 01 00 00 00 00 00 00 00 "
              "0C 00 00 00 01 00 62 00 02 00 00 00 62 62 62 62");
}

TEST(TablesMemory, ASetThatWasNotMadeRefusesEverything) {
    int ok = 1;
    const FailingAllocation failing(3, false);
    CgTab tables(ok, nullptr);
    ASSERT_EQ(ok, 0);
    const DeclPtr decl = NewDecl({DS_VAR_GLOBAL, u"x", DT_ELEMENTARY, u"INT"});
    Header header({{DS_VAR, u"x", DT_ELEMENTARY, u"INT"}});
    POU_LIST list;
    CgTab::POS_DSC range;
    CgTab::DMM_LINE line;
    MEMSTREAM_A stream;
    ArrInfo info;
    int32_t pos = 0;
    EXPECT_EQ(tables.Insert(u"x"), -1);
    EXPECT_EQ(tables.Insert(CgTab::DBG_INFO{nullptr, 0}), -1);
    EXPECT_EQ(tables.Insert(decl.get()), -1);
    EXPECT_EQ(CgTabAccess::InsertArray(tables, {&info, 0}), -1);
    EXPECT_EQ(CgTabAccess::AppendCmp(tables, header.Get(), 0, &list, range, 1), 0);
    EXPECT_EQ(CgTabAccess::LengthOf(tables, CgTab::TAB_DMM), 0);
    EXPECT_EQ(tables.Read(pos, line, 0, nullptr), 0);
    EXPECT_EQ(tables.Write(CgTab::TAB_DMM, "x"), 0);
    EXPECT_EQ(tables.Look(CgTab::TAB_DMM, "x", 1), -1);
    EXPECT_EQ(tables.Save(stream), 0);
    EXPECT_EQ(tables.Put(CgTab::TAB_DMM, stream), 0);
    EXPECT_EQ(tables.PutUsr(CgTab::TAB_DMM, stream), 0);
    EXPECT_EQ(tables.SetPos(CgTab::TAB_DMM, 0), 0);
    EXPECT_EQ(tables.End(CgTab::TAB_DMM), 0);
    EXPECT_EQ(tables.Clear(CgTab::TAB_DMM), 0);
    EXPECT_EQ(tables.IsTableEmpty(), 0);
}

// A scanner that could not be bound is no reason to take a declaration without its value.
TEST(TablesMemory, NoDeclarationIsEnteredHalfRead) {
    for (int64_t nth = 1; nth < 60; ++nth) {
        CgTab_ReleaseTokenScanner();
        int ok = 0;
        {
            const FailingAllocation failing(nth, false);
            CgTab first(ok, nullptr);
        }
        auto tables = NewTables();
        ASSERT_GE(
            tables->Insert(NewDecl({DS_VAR_GLOBAL, u"x", DT_ELEMENTARY, u"INT", u"-5"}).get()), 0);
        CgTab::CstLine constant;
        int32_t pos = 0;
        ASSERT_EQ(tables->Read(pos, constant, 0, nullptr), 1);
        EXPECT_EQ(constant.val.type, VT_SINT) << nth;
    }
}

}  // namespace
}  // namespace lq::test
