// Jobs of a table set with every allocation failing in turn, and with memory back on the same set.
#include "tests/cgtab/tables_util.h"
#include "tests/support/memory_jobs.h"
#include "tests/support/test_allocator.h"

namespace lq::test {
namespace {

using Tables = std::unique_ptr<CgTab>;

// Names and texts of 40 characters: their lines do not fit a reader's inline buffer.
std::u16string Name(char16_t letter) {
    return std::u16string(40, letter);
}

DeclText ArrayDecl(char16_t letter) {
    return {DS_VAR_GLOBAL, Name(letter),
            DT_ARRAY,      u"ARRAY [1..3, 4..5] OF STRING(5)",
            u"['a']",      u"%QW10000000000000000000000000000000000000"};
}

// A set with lines in tables 3 to 9, and one in table 2 that refers to table 3.
Tables Filled() {
    Tables tables = NewTables(4);
    for (char16_t letter = u'a'; letter < u'f'; ++letter) {
        tables->Insert(NewDecl(ArrayDecl(letter)).get());
        tables->Insert(Name(letter).c_str(), CgTab::kLabelDefinition);
        tables->Insert(Name(letter).c_str());
        Lit lit;
        lit.SetText(Name(letter).c_str());
        tables->Insert(lit);
    }
    Header header({{DS_VAR_EXTERNAL, Name(u'c'), DT_ELEMENTARY, u"INT"},
                   {DS_VAR, Name(u'x'), DT_ELEMENTARY, u"INT", u"7"}});
    POU_LIST list;
    CgTab::POS_DSC range;
    CgTabAccess::AppendCmp(*tables, header.Get(), 4, &list, range, 1);
    return tables;
}

// The same without indexes.
Tables Restored() {
    Tables tables = NewTables(4);
    MEMSTREAM_A stream;
    Fill(stream, Saved(*Filled()));
    EXPECT_EQ(tables->Restore(stream), 1);
    return tables;
}

// A job on a set that `make` makes: `run` gives a position, or a number below 0 for a failure.
MemoryJob On(const char* name, Tables (*make)(), std::function<int32_t(CgTab&)> run) {
    return {name, [make, run]() -> Attempt {
                const std::shared_ptr<CgTab> tables = make();
                const auto goesOn = std::make_shared<bool>(false);
                return [=] {
                    EXPECT_TRUE(!std::exchange(*goesOn, true) || CgTabAccess::Check(*tables));
                    const int32_t pos = run(*tables);
                    return pos < 0 ? kShort : std::to_string(pos);
                };
            }};
}

Tables Empty() {
    return NewTables(4);
}

// The position, followed by what the record says.
template <typename Line>
int32_t LookUp(CgTab& tables, char16_t letter, uint32_t scope) {
    Line line = {};
    const std::u16string name = Name(letter);
    int32_t pos;
    if constexpr (std::is_same_v<Line, CgTab::CMP_LINE>) {
        pos = tables.Look(CgTab::kWholeTable, name.c_str(), &line, 0);
    } else {
        pos = tables.Look(name.c_str(), &line, 0);
    }
    return pos < 0 || line.scope == scope ? pos : 1000000 + static_cast<int32_t>(line.scope);
}

TEST(TablesMemory, EveryJobIsWholeOrFails) {
    const auto insertJump = [](CgTab& tables) {
        return tables.Insert(Name(u'd').c_str(), CgTab::LBL_INFO{0});
    };
    const DeclPtr global = NewDecl(ArrayDecl(u'n'));
    const auto insertGlobal = [&global](CgTab& tables) { return tables.Insert(global.get()); };
    Header header({{DS_VAR, u"s", DT_STRUCTURE, u"Motor", u"a := 1"},
                   {DS_VAR, Name(u'y'), DT_STRUCTURE, Name(u't')},
                   {DS_VAR, u"m", DT_ARRAY, u"ARRAY [1..2] OF STRUCTURE"},
                   {DS_VAR, u"i", DT_ELEMENTARY, u"INT", u"7"}});
    const auto insertUnit = [&header](CgTab& tables) {
        POU_LIST list;
        CgTab::POS_DSC range;
        return CgTabAccess::AppendCmp(tables, header.Get(), 0x84, &list, range, 1) ? range.lines
                                                                                   : -1;
    };
    const auto insertConstant = [](CgTab& tables) {
        Lit lit;
        lit.SetText(Name(u'd').c_str());
        return lit.text ? tables.Insert(lit) : -1;
    };
    const auto insertAddress = [](CgTab& tables) {
        char16_t text[] = u"10000000000000000000000000000000000000";
        return tables.Insert(Address(LOC_OUTPUT, SIZE_WORD, text));
    };
    const auto insertTemporary = [](CgTab& tables) {
        ArrInfo info;
        info.elemType = IEC_INT;
        ANY_INT_32 extent[2] = {{0, 1}, {0, 3}};
        CgTab::TYP_DSC dsc = {.arr = {&info, 0}};
        return info.AppendExt(&extent, 1) ? tables.Insert(u"t", IEC_ARRAY, dsc, 7) : -1;
    };
    const auto readName = [](CgTab& tables) {
        CgTab::CstLine line;
        int32_t pos = 0;
        while (tables.Read(pos, line, 0, nullptr)) {
            if (line.text == Name(u'd')) {
                return pos;
            }
        }
        return -1;
    };
    const auto resetJumps = [](CgTab& tables) { return tables.ResetJumps(0) - 1; };
    const auto lookGlobal = [](CgTab& tables) {
        return LookUp<CgTab::GLB_LINE>(tables, u'd', DS_VAR_GLOBAL);
    };
    const auto lookExternal = [](CgTab& tables) {
        return LookUp<CgTab::CMP_LINE>(tables, u'c', DS_VAR_EXTERNAL);
    };
    const MemoryJob jobs[] = {
        On("global", Empty, insertGlobal),
        On("global, index to be built", Restored, insertGlobal),
        On("unit", Empty, insertUnit),
        On("unit, indexes to be built", Restored, insertUnit),
        On("jump", Empty, insertJump),
        On("jump, index to be built", Restored, insertJump),
        On("constant, index to be built", Restored, insertConstant),
        On("address, index to be built", Restored, insertAddress),
        On("temporary", Empty, insertTemporary),
        On("long text", Restored, readName),
        On("jumps reset", Restored, resetJumps),
        On("global looked up", Restored, lookGlobal),
        On("component looked up", Restored, lookExternal),
    };
    for (const MemoryJob& job : jobs) {
        RunWithFailures(job);
    }
}

// 255 dimensions: two lines fit a block, a third crosses its end.
std::u16string LongArrayType() {
    std::u16string type = u"ARRAY [-70000..-70000";
    for (int i = 1; i < 255; ++i) {
        type += u", -70000..-70000";
    }
    return type + u"] OF INT";
}

// Entering a line that crosses the end of a block needs memory in the middle of things: the line is
// then there, or it is not.
TEST(TablesMemory, NoLineIsEnteredHalfWhereABlockEnds) {
    // In the line's head, its name, its extra bytes, its user area, behind it.
    for (const int32_t left : {2, 100, 246, 252, 256}) {
        RunWithFailures(
            {"other name", [left]() -> Attempt {
                 const std::shared_ptr<CgTab> tables = NewTables(8);
                 const int32_t first = 4096 - left;
                 tables->Insert(
                     std::u16string(static_cast<size_t>((first - 18) / 2), u'a').c_str());
                 return [=] {
                     const std::u16string name(119, u'b');
                     const int32_t pos = tables->Insert(name.c_str());
                     EXPECT_EQ(CgTabAccess::LengthOf(*tables, CgTab::TAB_DMM),
                               first + (pos < 0 ? 0 : 256));
                     return pos < 0 ? kShort : std::to_string(pos);
                 };
             }});
    }
    static ArrInfo info;
    info.Clear(ArrInfo::CLEAR_END);
    info.elemType = IEC_INT;
    for (int i = 0; i < 255; ++i) {
        ANY_INT_32 extent[2] = {{1, 70000}, {0, 1}};
        info.AppendExt(&extent, 1);
    }
    const auto withTwo = []() -> Tables {
        Tables tables = NewTables();
        CgTabAccess::InsertArray(*tables, {&info, 0});
        CgTabAccess::InsertArray(*tables, {&info, 0});
        return tables;
    };
    const DeclPtr global = NewDecl({DS_VAR_GLOBAL, u"x", DT_ARRAY, LongArrayType()});
    const auto insertGlobal = [&global](CgTab& tables) { return tables.Insert(global.get()); };
    Header header({{DS_VAR, u"x", DT_ARRAY, LongArrayType()}});
    const auto insertComponent = [&header](CgTab& tables) {
        POU_LIST list;
        CgTab::POS_DSC range;
        return CgTabAccess::AppendCmp(tables, header.Get(), 0, &list, range, 1) - 1;
    };
    const auto readArray = [](CgTab& tables) {
        ArrInfo copy;
        CgTab::ArrDsc array = {&copy, 0};
        int32_t pos = 1545;
        return CgTabAccess::ReadArray(tables, pos, array) - 1;
    };
    const auto insertLabel = [](CgTab& tables) {
        return tables.Insert(std::u16string(250, u'n').c_str(), CgTab::LBL_INFO{0});
    };
    const auto getTable = [](CgTab& tables) {
        MEMSTREAM_A image;
        const std::vector<unsigned char> bytes(9000, 0);
        const bool isFilled = image.PutBlock(bytes.data(), 9000, nullptr) == 9000;
        tables.Clear(CgTab::TAB_ARR);
        const int32_t got = tables.Get(CgTab::TAB_ARR, image, isFilled ? 9000 : 0);
        EXPECT_EQ(CgTabAccess::LengthOf(tables, CgTab::TAB_ARR), got);
        tables.Clear(CgTab::TAB_ARR);
        return got == 9000 ? got : -1;
    };
    const auto putUserAreas = [](CgTab& tables) {
        MEMSTREAM_A areas;
        if (CgTabAccess::LengthOf(tables, CgTab::TAB_DMM) == 0 && tables.Insert(u"x") != 0) {
            return -1;
        }
        const int32_t put = tables.PutUsr(CgTab::TAB_DMM, areas);
        EXPECT_EQ(CgTabAccess::LengthOf(tables, CgTab::TAB_DMM) == 0, put < 0);
        return put;
    };
    const auto withName = []() -> Tables {
        Tables tables = NewTables(500);
        tables->Insert(u"x");
        return tables;
    };
    const MemoryJob jobs[] = {
        On("array", withTwo,
           [](CgTab& tables) {
               return CgTabAccess::InsertArray(tables, {&info, 0});
           }),
        On("array of a global", withTwo, insertGlobal),
        On("array of a component", withTwo, insertComponent),
        On("array read", withTwo, readArray),
        On("long label", withTwo, insertLabel),
        On("image of a table", withTwo, getTable),
        On("user areas", withName, putUserAreas),
    };
    for (const MemoryJob& job : jobs) {
        RunWithFailures(job);
    }
    info.Clear(ArrInfo::CLEAR_END);
}

std::string HexOf(MEMSTREAM_A& stream) {
    return Hex(stream.GetData(), static_cast<size_t>(stream.GetSize()));
}

TEST(TablesMemory, ImagesAreWholeOrTheirBeginnings) {
    const std::vector<unsigned char> image = Saved(*Filled());
    const std::string whole = Hex(image.data(), image.size());
    RunWithFailures({"save", [&]() -> Attempt {
                         const std::shared_ptr<CgTab> tables = Filled();
                         return [&whole, tables] {
                             MEMSTREAM_A stream;
                             const int saved = tables->Save(stream);
                             const std::string bytes = HexOf(stream);
                             EXPECT_EQ(whole.substr(0, bytes.size()), bytes);
                             return saved ? bytes : kShort;
                         };
                     }});
    MEMSTREAM_A stream;
    Fill(stream, image);
    RunWithFailures({"a new set, and restore", [&]() -> Attempt {
                         return [&] {
                             uint32_t sizes[CgTab::kUserTables] = {4, 4, 4, 4, 4, 4, 4, 4, 4};
                             int ok = 0;
                             CgTab tables(ok, &sizes);
                             stream.SeekRead(0, nullptr);
                             MEMSTREAM_A again;
                             return ok && tables.Restore(stream) && tables.Save(again)
                                        ? HexOf(again)
                                        : kShort;
                         };
                     }});
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
