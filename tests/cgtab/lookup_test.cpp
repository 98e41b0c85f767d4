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

// FailEachAllocation without the scanners that the process keeps from one round to the next.
template <typename Operation>
void FailEachAllocationOfTables(Operation operation) {
    const auto releaseScanners = [] {
        CgTab_ReleaseTokenScanner();
        host::DestroyCheckScanner();
    };
    releaseScanners();
    FailEachAllocation([&](const FailingAllocation& failing) {
        operation(failing);
        releaseScanners();
    });
}

// Every allocation fails in turn: a result is either right or a failure, and a table never holds
// half a line.
TEST(TablesMemory, EveryFailureLeavesWholeTables) {
    const DeclPtr decl = NewDecl(
        {DS_VAR_GLOBAL, u"x", DT_ARRAY, u"ARRAY [1..3] OF STRING(5)", u"['a']", u"%QW1000000000"});
    Header header({{DS_VAR, u"s", DT_STRUCTURE, u"Motor", u"a := 1"},
                   {DS_VAR, u"l", DT_STRUCTURE, std::u16string(40, u't')},
                   {DS_VAR, u"m", DT_ARRAY, u"ARRAY [1..2] OF STRUCTURE"},
                   {DS_VAR, u"i", DT_ELEMENTARY, u"INT", u"7"}});
    int rounds = 0;
    FailEachAllocationOfTables([&](const FailingAllocation& failing) {
        ++rounds;
        int ok = 0;
        CgTab tables(ok, nullptr);
        if (!ok) {
            EXPECT_TRUE(failing.HasFailed());
            return;
        }
        const int32_t global = tables.Insert(decl.get());
        POU_LIST list;
        CgTab::POS_DSC range;
        const int components = CgTabAccess::AppendCmp(tables, header.Get(), 0x84, &list, range, 1);
        const int32_t label = tables.Insert(u"L", CgTab::kLabelDefinition);
        const std::u16string longName(200, u'n');
        const int32_t name = tables.Insert(longName.c_str());
        CgTab::DMM_LINE line;
        int32_t pos = name;
        const int read = name >= 0 ? tables.Read(pos, line, 0, nullptr) : 0;
        const bool all = global >= 0 && components && label >= 0 && read;
        EXPECT_TRUE(all || failing.HasFailed());
        if (components && !failing.HasFailed()) {
            EXPECT_EQ(range.lines, 4);
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
    });
    EXPECT_GT(rounds, 40);
}

// Where a block of 4096 bytes ends within a line, entering it needs memory in the middle of things:
// the line is then there or it is not.
TEST(TablesMemory, NoLineIsEnteredHalfWhereABlockEnds) {
    // In the line's head, its name, its extra bytes, its user area, behind it.
    for (const int32_t left : {2, 100, 246, 252, 256}) {
        FailEachAllocationOfTables([left](const FailingAllocation& failing) {
            uint32_t sizes[CgTab::kUserTables];
            std::fill(std::begin(sizes), std::end(sizes), 8);
            int ok = 0;
            CgTab tables(ok, &sizes);
            const auto insert = [&tables](size_t length, char16_t letter) {
                return tables.Insert(std::u16string(length, letter).c_str());
            };
            const int32_t first = 4096 - left;
            const auto firstName = static_cast<size_t>((first - 18) / 2);
            if (!ok || insert(firstName, u'a') < 0) {
                EXPECT_TRUE(failing.HasFailed());
                return;
            }
            const int32_t pos = insert(119, u'b');
            EXPECT_EQ(CgTabAccess::LengthOf(tables, CgTab::TAB_DMM), pos < 0 ? first : first + 256);
            EXPECT_TRUE(pos == first || (pos == -1 && failing.HasFailed()));
            EXPECT_EQ(insert(firstName, u'a'), 0);
            MEMSTREAM_A areas;
            const int32_t put = tables.PutUsr(CgTab::TAB_DMM, areas);
            EXPECT_TRUE(put == (pos < 0 ? 8 : 16) || (put == -1 && failing.HasFailed()));
            EXPECT_EQ(CgTabAccess::LengthOf(tables, CgTab::TAB_DMM) == 0, put < 0);
        });
    }
}

// The same where the line is an array's, a label's with its index, or comes from an image.
TEST(TablesMemory, LongLinesOfOtherTables) {
    ArrInfo info;
    info.elemType = IEC_INT;
    for (int i = 0; i < 255; ++i) {
        ANY_INT_32 extent[2] = {{0, 70000}, {0, 1}};
        info.AppendExt(&extent, 1);
    }
    const std::vector<unsigned char> bytes(9000, 0);
    std::u16string type = u"ARRAY [-70000..-70000";
    for (int i = 1; i < 255; ++i) {
        type += u", -70000..-70000";
    }
    type += u"] OF INT";
    const DeclPtr decl = NewDecl({DS_VAR_GLOBAL, u"x", DT_ARRAY, type});
    Header header({{DS_VAR, u"x", DT_ARRAY, type}});
    FailEachAllocationOfTables([&](const FailingAllocation& failing) {
        int ok = 0;
        CgTab tables(ok, nullptr);
        if (!ok) {
            EXPECT_TRUE(failing.HasFailed());
            return;
        }
        for (int i = 0; i < 4; ++i) {
            const std::u16string label(250, static_cast<char16_t>(u'a' + i));
            const int32_t pos = tables.Insert(label.c_str(), CgTab::LBL_INFO{0});
            EXPECT_TRUE(pos >= 0 || failing.HasFailed());
            EXPECT_TRUE(pos < 0 || tables.ResetJumps(pos) || failing.HasFailed());
        }
        // The third and the sixth array line cross the end of a block.
        const auto twoArrays = [&] {
            for (int i = 0; i < 2; ++i) {
                EXPECT_TRUE(CgTabAccess::InsertArray(tables, {&info, 0}) >= 0 ||
                            failing.HasFailed());
            }
        };
        twoArrays();
        EXPECT_TRUE(tables.Insert(decl.get()) >= 0 || failing.HasFailed());
        twoArrays();
        POU_LIST list;
        CgTab::POS_DSC range;
        const int entered = CgTabAccess::AppendCmp(tables, header.Get(), 0, &list, range, 1);
        EXPECT_TRUE(entered || failing.HasFailed());
        ArrInfo copy;
        CgTab::ArrDsc array = {&copy, 0};
        int32_t pos = 1545;
        EXPECT_TRUE(CgTabAccess::ReadArray(tables, pos, array) || failing.HasFailed());
        EXPECT_EQ(CgTabAccess::LengthOf(tables, CgTab::TAB_ARR) % 1545, 0);
        MEMSTREAM_A image;
        if (image.PutBlock(bytes.data(), 9000, nullptr) == 9000) {
            const int32_t got = tables.Get(CgTab::TAB_DBG, image, 9000);
            EXPECT_EQ(CgTabAccess::LengthOf(tables, CgTab::TAB_DBG), got);
            EXPECT_TRUE(got == 9000 || failing.HasFailed());
        }
    });
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
    CgTab_ReleaseTokenScanner();
}

}  // namespace
}  // namespace lq::test
