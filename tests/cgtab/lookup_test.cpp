// Units, indexes, use counts; and tables when memory runs out.
#include "host/base/check_scanner.h"
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

// Those that the process keeps.
void ReleaseScanners() {
    CgTab_ReleaseTokenScanner();
    host::DestroyCheckScanner();
}

// Every allocation fails in turn: a result is either right or a failure, and a table never holds
// half a line.
TEST(TablesMemory, EveryFailureLeavesWholeTables) {
    ReleaseScanners();
    const DeclPtr decl =
        NewDecl({DS_VAR_GLOBAL, u"x", DT_ARRAY, u"ARRAY [1..3] OF STRING(5)", u"['a']", u"%QW5"});
    Header header({{DS_VAR, u"s", DT_STRUCTURE, u"Motor", u"a := 1"},
                   {DS_VAR, u"i", DT_ELEMENTARY, u"INT", u"7"}});
    int rounds = 0;
    FailEachAllocation([&](const FailingAllocation& failing) {
        ++rounds;
        {
            int ok = 0;
            CgTab tables(ok, nullptr);
            if (!ok) {
                EXPECT_TRUE(failing.HasFailed());
                ReleaseScanners();
                return;
            }
            const int32_t global = tables.Insert(decl.get());
            POU_LIST list;
            CgTab::POS_DSC range;
            const int components =
                CgTabAccess::AppendCmp(tables, header.Get(), 0x84, &list, range, 1);
            const int32_t label = tables.Insert(u"L", CgTab::kLabelDefinition);
            const std::u16string longName(200, u'n');
            const int32_t name = tables.Insert(longName.c_str());
            CgTab::DMM_LINE line;
            int32_t pos = name;
            const int read = name >= 0 ? tables.Read(pos, line, 0, nullptr) : 0;
            const bool all = global >= 0 && components && label >= 0 && read;
            EXPECT_TRUE(all || failing.HasFailed());
            if (components && !failing.HasFailed()) {
                EXPECT_EQ(range.lines, 2);
            }
            for (int id = 0; id < CgTab::TAB_COUNT; ++id) {
                MEMSTREAM_A bytes;
                const auto table = static_cast<CgTab::TAB_ID>(id);
                const int32_t length = CgTabAccess::LengthOf(tables, table);
                if (tables.Put(table, bytes) != length) {
                    EXPECT_TRUE(failing.HasFailed());
                    continue;
                }
                int32_t at = 0;
                while (at < length) {
                    const unsigned char* p = bytes.GetData() + at;
                    at += 4 + (p[0] | p[1] << 8 | p[2] << 16 | p[3] << 24);
                }
                EXPECT_EQ(at, length) << "table " << id;
            }
        }
        ReleaseScanners();
    });
    EXPECT_GT(rounds, 40);
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
        ASSERT_GE(tables->Insert(NewDecl({DS_VAR_GLOBAL, u"x", DT_ELEMENTARY, u"INT", u"5"}).get()),
                  0);
        CgTab::CstLine constant;
        int32_t pos = 0;
        ASSERT_EQ(tables->Read(pos, constant, 0, nullptr), 1);
        EXPECT_EQ(constant.val.type, VT_SINT) << nth;
    }
    CgTab_ReleaseTokenScanner();
}

}  // namespace
}  // namespace lq::test
