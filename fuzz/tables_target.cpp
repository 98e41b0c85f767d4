// A table set beside what it must hold: lines as plain bytes, found by walking. After every step
// the set is sound and has the bytes of the model.
#include <cstring>
#include <memory>
#include <tuple>
#include <utility>

#include "cgtab/cgtab_access.h"
#include "fuzz/declarations.h"
#include "fuzz/table_model.h"
#include "fuzz/targets.h"
#include "lq_data/cgtab.h"
#include "lq_data/host/base/streams.h"

namespace lq::fuzz {

namespace {

class Twin : TableModel {
  public:
    explicit Twin(Input& input) : input_(input) {
        for (uint32_t& size : sizes_) {
            size = Below(4);
        }
        MakeSet();
    }

    void Step() {
        switch (Below(14)) {
            case 0: {
                Name text = AnyOf<Name>({u"", u"0", u"1a", u"1A", Name(80, u'7')});
                const Address address(static_cast<tagLocation>(Below(3)),
                                      static_cast<tagSize>(Below(5)),
                                      text.empty() && Below(2) == 0 ? nullptr : text.data());
                return Done(CgTab::TAB_ADR, set_->Insert(address), EnterAddress(address, text));
            }
            case 1: {
                const Name text = AnyName();
                Lit lit;
                lit.SetText(text.c_str());
                lit.val.type = static_cast<VAL_TYPE>(Below(2) == 0 ? 255 : Below(16));
                std::fill(std::begin(lit.val.payload), std::end(lit.val.payload), Below(256));
                return Done(CgTab::TAB_CST, set_->Insert(lit), EnterConstant(text, lit.val));
            }
            case 2: {
                const Name name = AnyName();
                const bool defines = Below(2) == 0;
                const auto meet = [&](Bytes& extra) {
                    if (!defines) {
                        Count(extra);
                    }
                    return !defines || std::exchange(extra[0], 1) == 0;
                };
                const Bytes extra = Bytes(1, defines ? 1 : 0) + U32(defines ? 0 : 1);
                return Done(CgTab::TAB_LBL, set_->Insert(name.c_str(), CgTab::LBL_INFO{defines}),
                            name.size() > 255
                                ? -1
                                : Enter(CgTab::TAB_LBL, name, ByteName(name), extra, meet));
            }
            case 3:
                return Temporary();
            case 4:
                return OtherName(AnyName());
            case 5: {
                const Bytes data(AnyOf<size_t>({0, 1, 2, 255}), static_cast<char>(Below(2)));
                const auto size = static_cast<uint8_t>(data.size());
                const CgTab::DBG_INFO info = {reinterpret_cast<const unsigned char*>(data.data()),
                                              size};
                const Bytes head = static_cast<char>(size) + data;
                Require(set_->Look(info, nullptr) == Find(CgTab::TAB_DBG, head, 0, kMaxCount),
                        "debug records are found");
                return Done(CgTab::TAB_DBG, set_->Insert(info),
                            Append(CgTab::TAB_DBG, {head, u"", "", ""}));
            }
            case 6:
                return Global();
            case 7:
                return Unit();
            case 8:
                return ResetJumps();
            case 9:
            case 10:
                return UserAreas(static_cast<TabId>(Below(9)));
            case 11:
            case 12:
                return ReadOn(static_cast<TabId>(Below(9)));
            default:
                return Whole();
        }
    }

    void Check() {
        Require(CgTabAccess::Check(*set_), "a table has the bytes of the model");
        for (int id = 0; id < CgTab::TAB_COUNT; ++id) {
            MEMSTREAM_A stream;
            set_->Put(static_cast<TabId>(id), stream);
            const Bytes bytes(reinterpret_cast<const char*>(stream.GetData()),
                              static_cast<size_t>(stream.GetSize()));
            Require(bytes == ImageOf(id), "a table has the bytes of the model");
        }
    }

  private:
    uint32_t Below(size_t limit) { return input_.Below(static_cast<uint32_t>(limit)); }
    template <typename T>
    T AnyOf(std::initializer_list<T> values) {
        return values.begin()[Below(values.size())];
    }
    // Lengths on both sides of what records, the set's buffer, the text of an index and the length
    // fields of names take.
    Name AnyName() {
        const auto letter = AnyOf<char16_t>({u'a', u'A', u'b'});
        return Name(Below(2) == 0 ? 1 : AnyOf<size_t>({32, 33, 64, 65, 66, 79, 80, 129, 255, 256}),
                    letter);
    }
    Bytes AnyUsr(int id) { return Bytes(sizes_[id], static_cast<char>('x' + Below(2))); }
    // Where there is a line, its user area is at hand.
    void Done(TabId id, int32_t got, int32_t expected) {
        Require(got == expected, "the position of a line");
        if (expected >= 0 && sizes_[id] != 0 && Below(2) == 0) {
            LineAt(id, expected).usr = AnyUsr(id);
            Require(set_->Write(id, LineAt(id, expected).usr.data()) == 1,
                    "the position of a line");
        }
    }

    void OtherName(const Name& name) {
        Done(CgTab::TAB_DMM, set_->Insert(name.c_str()),
             Enter(CgTab::TAB_DMM, name, WordName(name), U32(1),
                   [](Bytes& extra) { return Count(extra); }));
    }

    void Temporary() {
        const Name name = AnyName();
        const auto type =
            AnyOf({IEC_INT, IEC_STRING, IEC_STRUCTURE, IEC_FUNCTION_BLOCK, IEC_ARRAY, IEC_ARRAY});
        const auto tag = static_cast<unsigned char>(Below(256));
        ArrInfo info;
        info.elemType = IEC_BOOL;
        ANY_INT_32 extent[2] = {{0, 1}, {0, 9}};
        info.AppendExt(&extent, 1);
        CgTab::TYP_DSC dsc = {};
        Bytes stored;
        const bool isNew = Find(CgTab::TAB_TMP, WordName(name), 0, kMaxCount) < 0;
        const bool isBare = type == IEC_ARRAY && Below(2) == 0;
        if (type == IEC_ARRAY) {
            dsc.arr = {isBare ? nullptr : &info, 0};
            stored = U32(LengthOf(CgTab::TAB_ARR));
            if (isNew && !isBare) {
                Append(CgTab::TAB_ARR, {U32(IEC_BOOL), u"", "\1\1\x09\x11\1\x09" + U32(1), ""});
            }
        } else if (type != IEC_INT) {
            dsc.dsc = 77;
            stored = U32(77);
        }
        const Bytes extra = static_cast<char>(tag) + U32(type) + stored + U32(1);
        const auto meet = [&](Bytes& old) {
            if (Count(old)) {
                old[0] = static_cast<char>(tag);
                return true;
            }
            return false;
        };
        Done(CgTab::TAB_TMP, set_->Insert(name.c_str(), type, dsc, tag),
             isNew && isBare ? -1 : Enter(CgTab::TAB_TMP, name, WordName(name), extra, meet));
    }

    void Global() {
        const Name name = AnyName();
        const auto scope = AnyOf({DS_VAR_GLOBAL, DS_VAR_GLOBAL_CONSTANT, DS_VAR_EXTERNAL, DS_VAR});
        const Name init = AnyOf<Name>({u"", u"5", u"300"});
        CgTab::GLB_LINE line;
        const int32_t known = Find(CgTab::TAB_GLB, ByteName(name), 0, kMaxCount);
        Require(set_->Look(name.size() > 255 ? nullptr : name.c_str(), &line, 1) == known,
                "a global is found");
        if (known >= 0) {
            Require(set_->End(CgTab::TAB_GLB) ==
                        (known == PosOf(CgTab::TAB_GLB, lines_[CgTab::TAB_GLB].size() - 1)),
                    "a global is found");
        }
        int32_t expected = -1;
        if (name.size() < 66 && scope != DS_VAR) {
            const int32_t address = EnterAddress(Address(LOC_OUTPUT, SIZE_WORD, nullptr), u"0");
            const int32_t constant = EnterConstant(init, Val(init.c_str(), 0));
            expected =
                Enter(CgTab::TAB_GLB, name, ByteName(name),
                      U32(address) + U32(IEC_INT) + U32(constant) + U32(1) + U32(scope), Keep);
        }
        const DeclPtr decl = NewDecl({scope, name, DT_ELEMENTARY, u"INT", init, u"%QW0"});
        Done(CgTab::TAB_GLB, set_->Insert(decl.get()), expected);
    }

    void Unit() {
        const Name name = AnyName();
        const Name external = AnyName();
        if (name.size() > 65 || external.size() > 65) {
            return;
        }
        const Header header({{DS_VAR, name, DT_ELEMENTARY, u"INT", u"5"},
                             {DS_VAR_EXTERNAL, external, DT_ELEMENTARY, u"INT"}});
        const bool withValues = Below(2) == 0;
        const int sections = static_cast<int>(Below(3));
        const int32_t global = Find(CgTab::TAB_GLB, ByteName(external), 0, kMaxCount);
        const int32_t start = LengthOf(CgTab::TAB_CMP);
        int32_t end = -1;
        for (int section = 0; section < sections; ++section) {
            const int32_t constant = withValues ? EnterConstant(u"5", Val(ANY_INT_32{0, 5})) : -1;
            Append(CgTab::TAB_CMP,
                   {ByteName(name), name, U32(DS_VAR) + U32(IEC_INT) + U32(constant) + U32(0), ""});
            if (global >= 0) {
                Append(CgTab::TAB_CMP, {ByteName(external), external,
                                        U32(DS_VAR_EXTERNAL) + U32(global) + U32(0), ""});
            }
            end = section == 0 ? LengthOf(CgTab::TAB_CMP) : end;
        }
        POU_LIST list;
        CgTab::POS_DSC range;
        Require(CgTabAccess::AppendCmp(*set_, header.Get(), withValues ? 4 : 0, &list, range,
                                       sections) == (global >= 0 || sections == 0),
                "the sections of a unit");
        Require(range.start == start, "the sections of a unit");
        Require(range.end == end, "the sections of a unit");
        Require(range.lines == (sections == 0 ? 0 : global >= 0 ? 2 : 1), "the sections of a unit");
        if (Below(2) == 0) {
            range = {Below(2) == 0 ? 0 : start, AnyOf({kMaxCount, end, end - 1}), kMaxCount};
        }
        const bool counts = Below(2) == 0;
        const int32_t found = Find(CgTab::TAB_CMP, ByteName(name), range.start, range.end);
        if (found >= 0 && counts) {
            Count(LineAt(CgTab::TAB_CMP, found).extra);
        }
        CgTab::CMP_LINE* const none = nullptr;
        Done(CgTab::TAB_CMP, set_->Look(range, name.c_str(), none, counts ? 2 : 0), found);
    }

    void ResetJumps() {
        const auto& lines = lines_[CgTab::TAB_LBL];
        Require(set_->ResetJumps(LengthOf(CgTab::TAB_LBL) + 1) == 0, "jumps start anew");
        Require(set_->ResetJumps(-1) == 0, "jumps start anew");
        if (!lines.empty()) {
            const int32_t pos = PosOf(CgTab::TAB_LBL, Below(lines.size()));
            Require(set_->ResetJumps(pos) == 1, "jumps start anew");
            LineAt(CgTab::TAB_LBL, pos).extra.replace(1, 4, U32(0));
            Done(CgTab::TAB_LBL, pos, pos);
        }
    }

    void UserAreas(TabId id) {
        std::vector<ModelLine>& lines = lines_[id];
        if (!lines.empty()) {
            const size_t index = Below(lines.size());
            int32_t pos = PosOf(id, index);
            lines[index].usr = AnyUsr(id);
            Require(set_->Write(id, pos, lines[index].usr.data()) == 1, "user areas");
            Require(pos == PosOf(id, index + 1), "user areas");
        }
        const Bytes wanted = AnyUsr(id);
        int rewinds = 1;
        for (size_t i = 0; sizes_[id] != 0 && i < lines.size(); ++i) {
            if (lines[i].usr == wanted) {
                Require(set_->Look(id, wanted.data(), std::exchange(rewinds, 0)) == PosOf(id, i),
                        "user areas");
            }
        }
        Require(set_->Look(id, wanted.data(), rewinds) == -1, "user areas");
        Bytes areas;
        for (ModelLine& line : lines) {
            areas += line.usr;
            line.usr = AnyUsr(id);
        }
        MEMSTREAM_A out, in;
        Require(set_->PutUsr(id, out) == static_cast<int32_t>(areas.size()), "user areas");
        Require(std::equal(areas.begin(), areas.end(), out.GetData(),
                           [](char a, unsigned char b) { return a == static_cast<char>(b); }),
                "user areas");
        for (const ModelLine& line : lines) {
            in.PutBlock(line.usr.data(), static_cast<int32_t>(line.usr.size()), nullptr);
        }
        Require(set_->GetUsr(id, in) == static_cast<int32_t>(areas.size()), "user areas");
    }

    // Reads the line at `pos` and compares it; the user area of keepAtUser is at hand then.
    template <typename Line>
    void ReadOne(TabId id, Line line, size_t index, int32_t pos, int keep) {
        const ModelLine& model = lines_[id][index];
        char usr[4] = {};
        const bool here = pos == -1;
        const bool withUsr = Below(2) == 0;
        if constexpr (std::is_same_v<Line, CgTab::CstLine>) {
            std::fill(std::begin(line.val.payload), std::end(line.val.payload), 0xEE);
        }
        Require(set_->Read(pos, line, keep, withUsr ? usr : nullptr) == 1, "what a record says");
        Require(pos == (here ? -1 : PosOf(id, index + 1)), "what a record says");
        Require(Bytes(usr, sizes_[id]) == (withUsr ? model.usr : Bytes(sizes_[id], 0)),
                "what a record says");
        const Bytes& extra = model.extra;
        if constexpr (requires { line.count; }) {
            Require(line.count == static_cast<uint32_t>(
                                      Field(extra, extra.size() - (id == CgTab::TAB_GLB ? 8 : 4))),
                    "what a record says");
        }
        if constexpr (requires { Name(line.text); }) {
            Require(line.text == model.name, "what a record says");
        } else if constexpr (requires { Name(line.name); }) {
            const bool isCut = std::is_array_v<decltype(line.name)>;
            Require(line.name == (isCut ? model.name.substr(0, 32) : model.name),
                    "what a record says");
        }
        if constexpr (std::is_same_v<Line, CgTab::DBG_INFO>) {
            Require(
                static_cast<char>(line.len) + Bytes(line.data, line.data + line.len) == model.head,
                "what a record says");
        } else if constexpr (std::is_same_v<Line, CgTab::POU_LINE>) {
            Require(std::equal(extra.begin(), extra.end(),
                               reinterpret_cast<const char*>(line.info.bytes)),
                    "what a record says");
        } else if constexpr (std::is_same_v<Line, CgTab::ADR_LINE>) {
            Require((line.location << 8 | line.size) ==
                        static_cast<uint32_t>(model.head[0] << 8 | model.head[1]),
                    "what a record says");
        } else if constexpr (std::is_same_v<Line, CgTab::CstLine>) {
            Require(static_cast<char>(line.val.type) == model.head[0], "what a record says");
            Bytes payload = extra.substr(0, extra.size() - 4);
            payload.resize(sizeof(line.val.payload));
            Require(std::memcmp(line.val.payload, payload.data(), payload.size()) == 0,
                    "what a record says");
        } else if constexpr (std::is_same_v<Line, CgTab::LBL_LINE>) {
            Require(line.info == static_cast<uint32_t>(extra[0]), "what a record says");
        } else if constexpr (std::is_same_v<Line, CgTab::TMP_LINE>) {
            Require(Bytes(1, static_cast<char>(line.tag)) + U32(line.type) == extra.substr(0, 5),
                    "what a record says");
            if (line.type == IEC_ARRAY) {
                Require(line.dsc.arr.info->total.magnitude == 9u, "what a record says");
            } else {
                Require(line.dsc.dsc == (line.type == IEC_INT ? 0u : 77u), "what a record says");
            }
        } else if constexpr (requires { line.adrLine; }) {
            const bool isExternal = id == CgTab::TAB_CMP && line.scope == DS_VAR_EXTERNAL;
            const Bytes& own = isExternal ? LineAt(CgTab::TAB_GLB, Field(extra, 4)).extra : extra;
            const bool isLocal = id == CgTab::TAB_CMP && !isExternal;
            Require(
                line.scope == static_cast<uint32_t>(Field(extra, isExternal || isLocal ? 0 : 16)),
                "what a record says");
            Require(line.adrLine == (isLocal ? -1 : Field(own, 0)), "what a record says");
            Require(line.type == IEC_INT, "what a record says");
            Require(line.cstLine == Field(own, 8), "what a record says");
        }
    }

    template <typename Line>
    void ReadPair(TabId id, Line line) {
        const std::vector<ModelLine>& lines = lines_[id];
        int32_t pos = LengthOf(id);
        Require(set_->SetPos(id, pos + 1) + set_->SetPos(id, -1) == 0, "positions, ends and names");
        Require(set_->SetPos(id, pos) + set_->End(id) == 2, "positions, ends and names");
        Require(set_->Read(pos, line, 0, nullptr) == 0, "positions, ends and names");
        Require(pos == 0, "positions, ends and names");
        if (lines.empty()) {
            return;
        }
        size_t index = Below(lines.size());
        char16_t whole[300] = {};  // what records cut is read aside
        const bool isCut = id == 1 || id == 2 || id == 3 || id == 6;
        const uint32_t room = 1 + Below(299);
        Require(CgTabAccess::WholeName(*set_, id, PosOf(id, index), whole, room) == isCut,
                "positions, ends and names");
        Require(whole == (isCut ? lines[index].name.substr(0, room - 1) : u""),
                "positions, ends and names");
        set_->SetPos(id, 0);
        int keep = static_cast<int>(Below(2));
        ReadOne(id, line, index, index == 0 ? -1 : PosOf(id, index), keep);
        if (index + 1 < lines.size()) {
            keep = static_cast<int>(Below(2));
            ReadOne(id, line, ++index, -1, keep);
        }
        // A search that fails, and may build an index, moves nothing.
        CgTab::GLB_LINE* const none = nullptr;
        Require(set_->Look(u"none", none, 0) == -1, "positions, ends and names");
        if (keep != 0 && sizes_[id] != 0 && Below(2) == 0) {
            const Bytes wanted = AnyUsr(id);
            while (++index < lines.size() && lines[index].usr != wanted) {
            }
            Require(
                set_->Look(id, wanted.data(), 0) == (index < lines.size() ? PosOf(id, index) : -1),
                "positions, ends and names");
        } else if (keep != 0 && id == CgTab::TAB_DMM && Below(2) == 0) {
            OtherName(Name(lines.back().name));
        } else if (keep != 0) {
            Done(id, PosOf(id, index), PosOf(id, index));
        }
    }

    void ReadOn(TabId id) {
        using Records = std::tuple<CgTab::DBG_INFO, CgTab::POU_LINE, CgTab::CMP_LINE,
                                   CgTab::GLB_LINE, CgTab::ADR_LINE, CgTab::CstLine,
                                   CgTab::LBL_LINE, CgTab::TMP_LINE, CgTab::DMM_LINE>;
        [&]<int... I>(std::integer_sequence<int, I...>) {
            ((id == I ? ReadPair(id, std::tuple_element_t<I, Records>()) : void()), ...);
        }
        (std::make_integer_sequence<int, CgTab::kUserTables>());
    }

    // The set is made anew from the model's image, which may have what only images bring: units,
    // counts that are full, a label twice. Or a table is cleared.
    void Whole() {
        if (Below(3) == 0) {
            const auto id = AnyOf({CgTab::TAB_DBG, CgTab::TAB_CMP, CgTab::TAB_LBL, CgTab::TAB_DMM});
            lines_[id].clear();
            Require(set_->Clear(id) == 1, "a whole set");
            return;
        }
        const Name name = AnyName().substr(0, 255);
        if (Find(CgTab::TAB_POU, ByteName(name), 0, kMaxCount) < 0) {
            Append(CgTab::TAB_POU,
                   {ByteName(name), name, Bytes(20, static_cast<char>(Below(99))), ""});
        }
        const auto counting =
            AnyOf({CgTab::TAB_CMP, CgTab::TAB_LBL, CgTab::TAB_TMP, CgTab::TAB_DMM});
        if (!lines_[counting].empty()) {
            Bytes& extra = lines_[counting][Below(lines_[counting].size())].extra;
            extra.replace(extra.size() - 4, 4, U32(kMaxCount));
        }
        if (!lines_[CgTab::TAB_LBL].empty()) {
            Append(CgTab::TAB_LBL, lines_[CgTab::TAB_LBL][0]);
        }
        Bytes image;
        int isEmpty = 1;
        for (int id = 0; id < CgTab::TAB_COUNT; ++id) {
            image += U32(LengthOf(id)) + ImageOf(id);
            isEmpty = lines_[id].empty() ? isEmpty : 0;
        }
        MakeSet();
        Require(set_->IsTableEmpty() == 1, "a whole set");
        MEMSTREAM_A stream;
        stream.PutBlock(image.data(), static_cast<int32_t>(image.size()), nullptr);
        Require(set_->Restore(stream) == 1, "a whole set");
        Require(set_->IsTableEmpty() == isEmpty, "a whole set");
        CgTab::POU_LINE line;
        Require(set_->Look(name.c_str(), &line, 0) ==
                    Find(CgTab::TAB_POU, ByteName(name), 0, kMaxCount),
                "a whole set");
        ReadOn(CgTab::TAB_GLB);
    }

    void MakeSet() {
        int ok = 0;
        set_ = std::make_unique<CgTab>(ok, &sizes_);
        Require(ok == 1, "a set is made");
    }

    Input& input_;
    std::unique_ptr<CgTab> set_;
};

}  // namespace

void Tables(const uint8_t* data, size_t size) {
    constexpr int kMostSteps = 400;  // each looks at all tables
    Input input(data, size);
    Twin twin(input);
    for (int step = 0; step < kMostSteps && !input.IsEmpty(); ++step) {
        twin.Step();
        twin.Check();
    }
}

}  // namespace lq::fuzz
