// Jobs of a table set with every allocation failing in turn, and with memory back on the same set.
#include "tests/cgtab/tables_util.h"
#include "tests/support/memory_jobs.h"
#include "tests/support/test_allocator.h"

namespace lq::test {
namespace {

using Tables = std::unique_ptr<CgTab>;

// Names of 40 characters; texts of twice as many fit no inline buffer.
std::u16string Name(char16_t letter) {
    return std::u16string(40, letter);
}

DeclText ArrayDecl(char16_t letter) {
    return {DS_VAR_GLOBAL, Name(letter),
            DT_ARRAY,      u"ARRAY [1..3, 4..5] OF STRING(5)",
            u"['a']",      u"%QW10000000000000000000000000000000000000"};
}

// The lines that were entered, or -1.
int Append(CgTab& tables, Header& header, uint16_t attr = 0) {
    POU_LIST list;
    CgTab::POS_DSC range;
    return CgTabAccess::AppendCmp(tables, header.Get(), attr, &list, range, 1) ? range.lines : -1;
}

int32_t InsertConstant(CgTab& tables, char16_t letter) {
    Lit lit;
    lit.SetText((Name(letter) + Name(letter)).c_str());
    return lit.text ? tables.Insert(lit) : -1;
}

Tables Empty() {
    return NewTables(4);
}

// A set with lines in tables 3 to 9, and one in table 2 that refers to table 3.
Tables Filled() {
    Tables tables = Empty();
    for (char16_t letter = u'a'; letter < u'f'; ++letter) {
        tables->Insert(NewDecl(ArrayDecl(letter)).get());
        tables->Insert(Name(letter).c_str(), CgTab::kLabelDefinition);
        tables->Insert(Name(letter).c_str());
        InsertConstant(*tables, letter);
    }
    Header header({{DS_VAR_EXTERNAL, Name(u'c'), DT_ELEMENTARY, u"INT"},
                   {DS_VAR, Name(u'x'), DT_ELEMENTARY, u"INT", u"7"}});
    Append(*tables, header, 4);
    return tables;
}

// The same without indexes.
Tables Restored() {
    Tables tables = Empty();
    MEMSTREAM_A stream;
    Fill(stream, Saved(*Filled()));
    EXPECT_EQ(tables->Restore(stream), 1);
    return tables;
}

// Jobs on a set that `make` makes: each gives a position, or a number below 0 for a failure.
struct SetJob {
    const char* name;
    Tables (*make)();
    std::function<int32_t(CgTab&)> run;
};

void RunAll(const std::vector<SetJob>& jobs) {
    for (const SetJob& job : jobs) {
        bool goesOn = false;
        const auto make = [&] {
            goesOn = false;
            return std::shared_ptr<CgTab>(job.make());
        };
        RunWithFailures(job.name, make, [&](CgTab& tables) {
            EXPECT_TRUE(!std::exchange(goesOn, true) || CgTabAccess::Check(tables));
            const int32_t pos = job.run(tables);
            return pos < 0 ? kShort : std::to_string(pos);
        });
    }
}

TEST(TablesMemory, EveryJobIsWholeOrFails) {
    const DeclPtr global = NewDecl(ArrayDecl(u'n'));
    Header header({{DS_VAR, u"s", DT_STRUCTURE, u"Motor", u"a := 1"},
                   {DS_VAR, Name(u'y'), DT_STRUCTURE, Name(u't')},
                   {DS_VAR, u"m", DT_ARRAY, u"ARRAY [1..2] OF STRUCTURE"},
                   {DS_VAR, u"i", DT_ELEMENTARY, u"INT", u"7"}});
    // The position, or 1000000 for one without its address.
    const auto insertGlobal = [&](CgTab& t) {
        CgTab::GLB_LINE line;
        CgTab::ADR_LINE address;
        const int32_t pos = t.Insert(global.get());
        int32_t at = pos;
        return pos < 0 || !t.Read(at, line, 0, nullptr) ||
                       !t.Read(at = line.adrLine, address, 0, nullptr)
                   ? -1
               : *address.text ? pos
                               : 1000000;
    };
    const auto insertUnit = [&](CgTab& t) { return Append(t, header, 0x84); };
    const auto insertJump = [](CgTab& t) {
        return t.Insert(Name(u'd').c_str(), CgTab::LBL_INFO{0});
    };
    const auto insertTemporary = [](CgTab& t) {
        ArrInfo info;
        info.elemType = IEC_INT;
        ANY_INT_32 extent[2] = {{0, 1}, {0, 3}};
        return info.AppendExt(&extent, 1) ? t.Insert(u"t", IEC_ARRAY, {.arr = {&info, 0}}, 7) : -1;
    };
    const auto readName = [](CgTab& t) {
        CgTab::CstLine line;
        for (int32_t pos = 0; t.Read(pos, line, 0, nullptr);) {
            if (line.text == Name(u'd') + Name(u'd')) {
                return pos;
            }
        }
        return -1;
    };
    // The position, or what the record says wrongly.
    const auto lookGlobal = [](CgTab& t) {
        CgTab::GLB_LINE line = {};
        const int32_t pos = t.Look(Name(u'd').c_str(), &line, 0);
        return pos < 0 || line.scope == DS_VAR_GLOBAL ? pos : 1000000;
    };
    const auto lookExternal = [](CgTab& t) {
        CgTab::CMP_LINE line = {};
        const int32_t pos = t.Look(CgTab::kWholeTable, Name(u'c').c_str(), &line, 0);
        return pos < 0 || line.scope == DS_VAR_EXTERNAL ? pos : 1000000;
    };
    char16_t number[] = u"10000000000000000000000000000000000000";
    const Address address(LOC_OUTPUT, SIZE_WORD, number);
    RunAll({{"global", Empty, insertGlobal},
            {"global, index to be built", Restored, insertGlobal},
            {"unit", Empty, insertUnit},
            {"unit, indexes to be built", Restored, insertUnit},
            {"jump", Empty, insertJump},
            {"jump, index to be built", Restored, insertJump},
            {"constant, index to be built", Restored,
             [](CgTab& t) { return InsertConstant(t, u'd'); }},
            {"address, index to be built", Restored, [&](CgTab& t) { return t.Insert(address); }},
            {"temporary", Empty, insertTemporary},
            {"long text", Restored, readName},
            {"jumps reset", Restored, [](CgTab& t) { return t.ResetJumps(0) - 1; }},
            {"global looked up", Restored, lookGlobal},
            {"component looked up", Restored, lookExternal}});
}

// Entering a line that crosses the end of a block needs memory in the middle of things: the line is
// then there, or it is not.
TEST(TablesMemory, NoLineIsEnteredHalfWhereABlockEnds) {
    // In the line's head, its name, its extra bytes, its user area, behind it.
    for (const int32_t left : {2, 100, 246, 252, 256}) {
        const int32_t first = 4096 - left;
        const auto make = [first] {
            std::shared_ptr<CgTab> tables = NewTables(8);
            tables->Insert(std::u16string(static_cast<size_t>((first - 18) / 2), u'a').c_str());
            return tables;
        };
        RunWithFailures("other name", make, [first](CgTab& tables) {
            const int32_t pos = tables.Insert(std::u16string(119, u'b').c_str());
            EXPECT_EQ(CgTabAccess::LengthOf(tables, CgTab::TAB_DMM), first + (pos < 0 ? 0 : 256));
            return pos < 0 ? kShort : std::to_string(pos);
        });
    }
    // Two lines of an array of 255 dimensions fit a block, a third crosses its end.
    std::u16string type = u"ARRAY [-70000..-70000";
    static ArrInfo info;
    info.Clear(ArrInfo::CLEAR_END);
    info.elemType = IEC_INT;
    for (int i = 0; i < 255; ++i) {
        ANY_INT_32 extent[2] = {{1, 70000}, {0, 1}};
        info.AppendExt(&extent, 1);
        type += i < 254 ? u", -70000..-70000" : u"] OF INT";
    }
    const auto withTwo = []() -> Tables {
        Tables tables = NewTables();
        CgTabAccess::InsertArray(*tables, {&info, 0});
        CgTabAccess::InsertArray(*tables, {&info, 0});
        return tables;
    };
    const DeclPtr global = NewDecl({DS_VAR_GLOBAL, u"x", DT_ARRAY, type});
    Header header({{DS_VAR, u"x", DT_ARRAY, type}});
    const auto readArray = [](CgTab& tables) {
        ArrInfo copy;
        CgTab::ArrDsc array = {&copy, 0};
        int32_t pos = 1545;
        return CgTabAccess::ReadArray(tables, pos, array) - 1;
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
    RunAll(
        {{"array", withTwo,
          [](CgTab& t) {
              return CgTabAccess::InsertArray(t, {&info, 0});
          }},
         {"array of a global", withTwo, [&](CgTab& t) { return t.Insert(global.get()); }},
         {"array of a component", withTwo, [&](CgTab& t) { return Append(t, header); }},
         {"array read", withTwo, readArray},
         {"long label", withTwo,
          [](CgTab& t) { return t.Insert(std::u16string(250, u'n').c_str(), CgTab::LBL_INFO{0}); }},
         {"image of a table", withTwo, getTable},
         {"user areas", withName, putUserAreas}});
    info.Clear(ArrInfo::CLEAR_END);
}

TEST(TablesMemory, ImagesAreWholeOrTheirBeginnings) {
    const auto hex = [](const MEMSTREAM_A& stream) {
        return Hex(stream.GetData(), static_cast<size_t>(stream.GetSize()));
    };
    MEMSTREAM_A image;
    Fill(image, Saved(*Filled()));
    const auto make = [] { return std::shared_ptr<CgTab>(Filled()); };
    RunWithFailures("save", make, [&](CgTab& tables) {
        MEMSTREAM_A stream;
        const int saved = tables.Save(stream);
        EXPECT_TRUE(hex(image).starts_with(hex(stream)));
        return saved ? hex(stream) : kShort;
    });
    RunWithFailures({"a new set, and restore", [&]() -> Attempt {
                         return [&] {
                             uint32_t sizes[CgTab::kUserTables] = {4, 4, 4, 4, 4, 4, 4, 4, 4};
                             int ok = 0;
                             CgTab tables(ok, &sizes);
                             image.SeekRead(0, nullptr);
                             MEMSTREAM_A again;
                             return ok && tables.Restore(image) && tables.Save(again) ? hex(again)
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
    CgTab::DMM_LINE line;
    MEMSTREAM_A stream;
    ArrInfo info;
    int32_t pos = 0;
    for (const int32_t result :
         {tables.Insert(u"x"), tables.Insert(CgTab::DBG_INFO{nullptr, 0}),
          tables.Insert(decl.get()), tables.Look(CgTab::TAB_DMM, "x", 1),
          CgTabAccess::InsertArray(tables, {&info, 0}), Append(tables, header)}) {
        EXPECT_EQ(result, -1);
    }
    const auto id = CgTab::TAB_DMM;
    EXPECT_EQ(CgTabAccess::LengthOf(tables, id), 0);
    EXPECT_EQ(tables.Read(pos, line, 0, nullptr) + tables.Write(id, "x") + tables.End(id), 0);
    EXPECT_EQ(tables.Save(stream) + tables.Put(id, stream) + tables.PutUsr(id, stream), 0);
    EXPECT_EQ(tables.SetPos(id, 0) + tables.Clear(id) + tables.IsTableEmpty(), 0);
}

// A scanner that could not be bound is no reason to take a declaration without its value.
TEST(TablesMemory, NoDeclarationIsEnteredHalfRead) {
    const DeclPtr decl = NewDecl({DS_VAR_GLOBAL, u"x", DT_ELEMENTARY, u"INT", u"-5"});
    for (int64_t nth = 1; nth < 60; ++nth) {
        CgTab_ReleaseTokenScanner();
        int ok = 0;
        {
            const FailingAllocation failing(nth, false);
            CgTab first(ok, nullptr);
        }
        auto tables = NewTables();
        ASSERT_GE(tables->Insert(decl.get()), 0);
        CgTab::CstLine constant;
        int32_t pos = 0;
        ASSERT_EQ(tables->Read(pos, constant, 0, nullptr), 1);
        EXPECT_EQ(constant.val.type, VT_SINT) << nth;
    }
}

}  // namespace
}  // namespace lq::test
