#include "tools/lq/translation.h"

#include <algorithm>
#include <cstring>
#include <iterator>
#include <new>
#include <span>
#include <string_view>
#include <vector>

#include "cgtab/bytes.h"
#include "cgtab/cgtab_access.h"
#include "lq_data/containers.h"
#include "lq_data/detail/chars.h"
#include "lq_data/host/base/streams.h"
#include "lq_data/host/text/message.h"
#include "lq_data/host/text/utf.h"
#include "pouh/record_access.h"
#include "tools/lq/components.h"
#include "tools/lq/fault_text.h"
#include "tools/lq/messages.h"
#include "tools/lq/progress.h"
#include "tools/lq/records.h"
#include "tools/lq/tables.h"

namespace lq::tool {

namespace {

using cgtab::DeclFault;
using host::EncodeUtf8;
using host::Message;
using host::Say;

// What the loader puts in front of an erroneous text, and no identifier begins with.
constexpr char16_t kErrorMark = u'?';
constexpr const char* kNoIdentifier = Message("the name is no identifier");

constexpr uint16_t kComponentAttributes = 0x4 | 0x80;  // initial values; recorded instances

class Translator {
  public:
    Translator(host::Project& project, Translation& out)
        : project_(project), out_(out), tables_(*out.tables) {}

    void Run() {
        for (uint32_t i = 0; i < project_.VariableLists().size(); ++i) {
            EnterGlobals(host::MakeId(host::Sort::kVariableList, i));
        }
        for (const host::DataType& type : project_.DataTypes()) {
            for (const ID member : type.members) {
                EnterTypeName(type.name, *project_.GetDeclaration(member));
            }
        }
        for (uint32_t i = 0; i < project_.Pous().size(); ++i) {
            if (!project_.Pous()[i].isStandard) {
                EnterUnit(host::MakeId(host::Sort::kPou, i));
            }
        }
        HandOverUnits();
    }

  private:
    // --- Source lines ------------------------------------------------------------------------

    static constexpr CgTab::TAB_ID kTables[] = {CgTab::TAB_POU, CgTab::TAB_CMP, CgTab::TAB_GLB,
                                                CgTab::TAB_ADR, CgTab::TAB_CST, CgTab::TAB_LBL,
                                                CgTab::TAB_TMP, CgTab::TAB_DMM};
    static constexpr CgTab::TAB_ID kTablesOfGlobals[] = {CgTab::TAB_GLB, CgTab::TAB_ADR,
                                                         CgTab::TAB_CST};

    // Gives every line that was appended since the last call its line of the source.
    void Stamp(uint32_t sourceLine, std::span<const CgTab::TAB_ID> tables = kTables) {
        unsigned char bytes[kUserArea];
        cgtab::StoreU32(bytes, sourceLine);
        for (const CgTab::TAB_ID id : tables) {
            const int32_t length = CgTabAccess::LengthOf(tables_, id);
            int32_t& stamped = stamped_[id];
            while (stamped < length) {
                WriteUserArea(id, stamped, bytes);
            }
        }
    }

    // A line that the set holds can be written, unless memory is short.
    void WriteUserArea(CgTab::TAB_ID id, int32_t& pos, const unsigned char* bytes) {
        if (!tables_.Write(id, pos, bytes)) {
            throw std::bad_alloc();
        }
    }

    // --- Globals -----------------------------------------------------------------------------

    // A list is loaded in parts: the records of a declaration take several times the memory of its
    // lines.
    static constexpr size_t kPart = 64;

    void EnterGlobals(ID id) {
        const host::VariableList& list = *project_.GetVariableList(id);
        for (size_t first = 0; first < list.declarations.size(); first += kPart) {
            project_.ShowPart(id, first, kPart);
            EnterGlobals(id, list, first);
        }
        project_.ShowPart(id, 0, static_cast<size_t>(-1));
    }

    void EnterGlobals(ID id, const host::VariableList& list, size_t first) {
        const SymbolTablePtr symbols(CreateSymbolTable());
        if (!symbols || !LoadSelectedSymbolTable(symbols.get(), id)) {
            throw std::bad_alloc();
        }
        // The loader keeps the order of the model. What it could not get it leaves out.
        FLIST* decls = pouh::ListOf(symbols.get());
        if (CardinalityOfList(decls) != std::min(list.declarations.size() - first, kPart)) {
            throw std::bad_alloc();
        }
        for (DECL_TYP* decl = pouh::DeclAt(decls, LC_FIRST); decl;
             decl = pouh::DeclAt(decls, LC_NEXT), ++first) {
            EnterGlobal(list, decl, *project_.GetDeclaration(list.declarations[first]));
        }
    }

    void EnterGlobal(const host::VariableList& list, DECL_TYP* decl,
                     const host::Declaration& source) {
        CountDeclaration();
        if (pouh::TextOf(decl, POUH_NAME)[0] == kErrorMark) {
            return Refuse(list.name, source, Say(kNoIdentifier));
        }
        const int32_t before = CgTabAccess::LengthOf(tables_, CgTab::TAB_GLB);
        DeclFault fault = DeclFault::kNone;
        const int32_t pos = CgTabAccess::InsertGlobal(tables_, decl, fault);
        Stamp(source.line, kTablesOfGlobals);
        if (pos < 0) {
            Refuse(list.name, source, FaultText(fault));
        } else if (pos < before) {
            Refuse(list.name, source, Say("a global of this name was declared before"));
        } else {
            EnterTypeName(list.name, source);
        }
    }

    void CountDeclaration() {
        ++out_.declarations;
        progress_.Set(out_.declarations);
    }

    void Refuse(const char16_t* list, const host::Declaration& source, const std::string& reason) {
        out_.refusals.push_back({EncodeUtf8(list), EncodeUtf8(source.name), EncodeUtf8(source.type),
                                 reason, source.line, source.column});
    }
    void Refuse(const host::Pou& pou, const std::string& reason) {
        out_.refusals.push_back({EncodeUtf8(pou.name), "", "", reason, pou.line, pou.column});
    }

    // --- Other names -------------------------------------------------------------------------

    void EnterTypeName(const char16_t* list, const host::Declaration& source) {
        // Texts of the project are equal when their pointers are.
        if (source.type != lastType_) {
            lastType_ = source.type;
            lastNamed_ = NamedType(project_, source);
        }
        const ID id = lastNamed_;
        if (id.GetNumber()) {
            if (tables_.Insert(project_.NameOf(id)) < 0) {
                Refuse(list, source, Say("the name of its type cannot be entered"));
            }
            Stamp(source.line);
        }
    }

    // --- Units -------------------------------------------------------------------------------

    void EnterUnit(ID id) {
        const host::Pou& pou = *project_.GetPou(id);
        const HeaderPtr header(CreatePOUHeader());
        if (!header || !LoadPOUHeader(header.get(), id, 0)) {
            throw std::bad_alloc();
        }
        uint32_t kind = PT_OTHER;
        POUH_INFO_TYP* info = nullptr;
        GetAttrOfPOUHeader(header.get(), POUH_INFO, &info);
        GetAttrOfPOUHInfo(info, POUH_POUTYPE, &kind);

        EnterSourcePosition(pou, kind);
        EnterComponents(pou, header.get(), kind);
        EnterLabels(pou);
    }

    void EnterSourcePosition(const host::Pou& pou, uint32_t kind) {
        const UnitPosition position{pou.line, kind, EncodeUtf8(pou.name)};
        const std::vector<unsigned char> bytes = position.Bytes();
        const CgTab::DBG_INFO record = {bytes.data(), static_cast<uint8_t>(bytes.size())};
        if (tables_.Insert(record) < 0) {
            throw std::bad_alloc();
        }
    }

    // Takes the declarations with erroneous names, which the loader has marked, and those whose
    // name was declared before out of the header.
    Components TakeComponents(const host::Pou& pou, POU_HEADER_TYP* header) const {
        Components components;
        for (const ID id : pou.declarations) {
            const host::Declaration& source = *project_.GetDeclaration(id);
            if (source.section.scope != host::Scope::kGlobal) {
                Components::Component& component = components.FindOrAdd(source.name);
                component.source = component.source ? component.source : &source;
            }
        }
        FLIST* all = pouh::ListOf(header);
        std::vector<DECL_TYP*> kept;
        std::vector<DECL_TYP*> dropped;
        for (DECL_TYP* decl = pouh::DeclAt(all, LC_FIRST); decl;
             decl = pouh::DeclAt(all, LC_NEXT)) {
            const char16_t* name = pouh::TextOf(decl, POUH_NAME);
            Components::Component* component =
                name[0] == kErrorMark ? nullptr : &components.FindOrAdd(name);
            if (component && !component->decl) {
                component->decl = decl;
                kept.push_back(decl);
            } else {
                dropped.push_back(decl);
            }
        }
        if (!dropped.empty()) {
            KeepOnly(header, kept);
            std::for_each(dropped.begin(), dropped.end(), DestroyDecl);
        }
        return components;
    }

    static void KeepOnly(POU_HEADER_TYP* header, const std::vector<DECL_TYP*>& kept) {
        FLIST* all = pouh::ListOf(header);
        FLIST* list = CreateList(0, LET_MEMORY, sizeof(void*), nullptr);
        const bool isComplete = std::all_of(kept.begin(), kept.end(), [list](DECL_TYP* decl) {
            return InsertElementOfList(list, &decl, LC_LAST, 0) != 0;
        });
        POUH_DECL_LIST_TYP* record = nullptr;
        GetAttrOfPOUHeader(header, POUH_DECLLIST, &record);
        if (!isComplete || !SetAttrOfPOUHDeclList(record, POUH_LIST, &list)) {
            DestroyList(list);
            throw std::bad_alloc();
        }
        DestroyList(all);
    }

    void EnterComponents(const host::Pou& pou, POU_HEADER_TYP* header, uint32_t kind) {
        Components components = TakeComponents(pou, header);
        POU_LIST instances;
        CgTab::POS_DSC range = {};
        const int entered =
            CgTabAccess::AppendCmp(tables_, header, kComponentAttributes, &instances, range, 1);
        StampComponents(components, pou.line);
        Stamp(pou.line);
        const auto missing = CheckComponents(pou, components);
        const int32_t length = CgTabAccess::LengthOf(tables_, CgTab::TAB_CMP);
        if (!entered && length == range.start && range.lines > 0) {
            Refuse(pou, Say("the unit's components cannot be entered"));
            range = {range.start, range.start, 0};
        } else {
            RefuseMissing(pou, missing);
        }
        UnitInfo unit;
        unit.start = static_cast<uint32_t>(range.start);
        unit.end = static_cast<uint32_t>(range.end);
        unit.lines = static_cast<uint32_t>(range.lines);
        unit.kind = kind;
        for (const POU_LIST* entry = &instances; entry; entry = entry->next) {
            unit.instances += entry->count;
        }
        AppendUnitLine(pou, unit);
        EnterTemporaries(pou, components, kind);
    }

    // Short of memory, the set skips a declaration as it skips one that it cannot hold.
    void RefuseMissing(const host::Pou& pou, const std::vector<const host::Declaration*>& missing) {
        for (const host::Declaration* source : missing) {
            Refuse(pou.name, *source, FaultText(DeclFault::kMemory));
        }
    }

    // Reports the declarations that the tables had to skip, and enters the types that others use.
    // Those that the tables could have entered, and did not.
    std::vector<const host::Declaration*> CheckComponents(const host::Pou& pou,
                                                          Components& components) {
        std::vector<const host::Declaration*> missing;
        for (const ID id : pou.declarations) {
            const host::Declaration& source = *project_.GetDeclaration(id);
            const Components::Component* const component = components.Find(source.name);
            if (!component || !component->source) {
                continue;  // a global of the unit
            }
            CountDeclaration();
            if (component->source != &source) {
                Refuse(pou.name, source, Say("the unit has declared this name before"));
            } else if (!component->decl) {
                Refuse(pou.name, source, Say(kNoIdentifier));
            } else if (component->isEntered) {
                EnterTypeName(pou.name, source);
            } else if (!RefuseSkipped(pou, source, component->decl)) {
                EnterTypeName(pou.name, source);
                missing.push_back(&source);
            }
        }
        return missing;
    }

    // False when the declaration is as the tables want it.
    bool RefuseSkipped(const host::Pou& pou, const host::Declaration& source,
                       const DECL_TYP* decl) {
        DeclFault fault = DeclFault::kNone;
        if (!CgTabAccess::Decode(tables_, decl, fault)) {
            Refuse(pou.name, source, FaultText(fault));
            return true;
        }
        const bool isMissing =
            source.section.scope == host::Scope::kExternal &&
            tables_.Look(source.name, static_cast<CgTab::GLB_LINE*>(nullptr), 0) < 0;
        if (isMissing) {
            Refuse(pou.name, source, Say("no global of this name was entered"));
        }
        return isMissing;
    }

    // Components carry a line each, and so do the constants that they brought; an implicit one has
    // that of its unit.
    void StampComponents(Components& components, uint32_t unitLine) {
        const int32_t length = CgTabAccess::LengthOf(tables_, CgTab::TAB_CMP);
        int32_t pos = stamped_[CgTab::TAB_CMP];
        while (pos < length) {
            CgTab::CMP_LINE line;
            int32_t next = pos;
            if (!tables_.Read(next, line, 0, nullptr)) {
                throw std::bad_alloc();
            }
            char16_t name[kMaxName];
            const bool isShort = chars::Length(line.name) + 1 < std::size(line.name);
            if (!isShort) {
                CgTabAccess::WholeName(tables_, CgTab::TAB_CMP, pos, name, kMaxName);
            }
            uint32_t sourceLine = unitLine;
            Components::Component* component = components.Find(isShort ? line.name : name);
            if (component && component->source) {
                component->isEntered = true;
                sourceLine = component->source->line;
            }
            unsigned char bytes[kUserArea];
            cgtab::StoreU32(bytes, sourceLine);
            StampConstant(line.cstLine, bytes);
            WriteUserArea(CgTab::TAB_CMP, pos, bytes);
        }
        stamped_[CgTab::TAB_CMP] = length;
        stamped_[CgTab::TAB_CST] = CgTabAccess::LengthOf(tables_, CgTab::TAB_CST);
    }

    // A constant of this unit belongs to the first component that uses it.
    void StampConstant(int32_t pos, const unsigned char* bytes) {
        unsigned char old[kUserArea] = {};
        CgTab::CstLine line;
        int32_t at = pos;
        if (pos < stamped_[CgTab::TAB_CST]) {
            return;
        }
        if (!tables_.Read(at, line, 0, old)) {
            throw std::bad_alloc();
        }
        if (cgtab::LoadU32(old) == 0) {
            at = pos;
            WriteUserArea(CgTab::TAB_CST, at, bytes);
        }
    }

    // Lines of table 1 come through an image only; this one is composed as the set itself would
    // have written it.
    void AppendUnitLine(const host::Pou& pou, const UnitInfo& unit) {
        const std::u16string_view name(pou.name);
        if (name.size() > kMaxName - 1) {
            Refuse(pou, Say("the unit's name has more than 255 characters"));
            return;
        }
        const size_t body = 1 + 2 * name.size() + sizeof(CgTab::POU_INFO) + kUserArea;
        const size_t start = units_.size();
        units_.resize(start + 4 + body);
        unsigned char* p = units_.data() + start;
        cgtab::StoreU32(p, static_cast<uint32_t>(body));
        p[4] = static_cast<unsigned char>(name.size());
        std::memcpy(p + 5, name.data(), 2 * name.size());
        p += 5 + 2 * name.size();
        unit.To(p);
        cgtab::StoreU32(p + sizeof(CgTab::POU_INFO), pou.line);
    }

    void HandOverUnits() {
        const auto size = static_cast<int32_t>(units_.size());
        MEMSTREAM_A image;
        if (image.PutBlock(units_.data(), size, nullptr) != size ||
            tables_.Get(CgTab::TAB_POU, image, size) != size) {
            throw std::bad_alloc();
        }
    }

    void EnterTemporaries(const host::Pou& pou, Components& components, uint32_t kind) {
        for (const ID id : pou.declarations) {
            const host::Declaration& source = *project_.GetDeclaration(id);
            if (source.section.scope != host::Scope::kTemp) {
                continue;
            }
            const Components::Component* const component = components.Find(source.name);
            const DECL_TYP* decl = component->source == &source ? component->decl : nullptr;
            IEC_TYPE type = IEC_NO_TYPE;
            CgTab::TYP_DSC dsc = {};
            DeclFault fault = DeclFault::kNone;
            if (!decl || !CgTabAccess::DecodeType(tables_, decl, type, dsc, fault)) {
                continue;  // as a component it has been refused
            }
            if (tables_.Insert(Qualified(pou, u"", source.name).c_str(), type, dsc,
                               static_cast<unsigned char>(kind)) < 0) {
                Refuse(pou.name, source, Say("the temporary cannot be entered"));
            }
            Stamp(source.line);
        }
    }

    static std::u16string Qualified(const host::Pou& pou, std::u16string_view body,
                                    std::u16string_view name) {
        std::u16string text(pou.name);
        for (const std::u16string_view part : {body, name}) {
            if (!part.empty()) {
                text += u'.';
                text += part;
            }
        }
        return text;
    }

    void EnterLabels(const host::Pou& pou) {
        for (const host::Body& body : pou.bodies) {
            for (const host::Mark& label : body.labels) {
                EnterLabel(pou, body, label, CgTab::kLabelDefinition);
            }
            for (const host::Mark& jump : body.jumps) {
                EnterLabel(pou, body, jump, 0);
            }
        }
    }

    void EnterLabel(const host::Pou& pou, const host::Body& body, const host::Mark& mark,
                    CgTab::LBL_INFO info) {
        const std::u16string name = Qualified(pou, body.name, mark.name);
        if (tables_.Insert(name.c_str(), info) < 0) {
            const char* reason = name.size() > kMaxName - 1
                                     ? Message("the label's name has more than 255 characters")
                                     : Message("the label is defined twice");
            out_.refusals.push_back({EncodeUtf8(pou.name), EncodeUtf8(mark.name), "", Say(reason),
                                     mark.line, mark.column});
        }
        Stamp(mark.line);
    }

    static constexpr uint32_t kMaxName = 256;  // with its terminator

    host::Project& project_;
    Translation& out_;
    CgTab& tables_;
    Progress progress_{Say("entering declarations"), project_.Declarations().size()};
    int32_t stamped_[CgTab::TAB_COUNT] = {};
    std::vector<unsigned char> units_;  // the image of table 1
    host::Text lastType_ = nullptr;     // of EnterTypeName, and the object that it names
    ID lastNamed_;
};

}  // namespace

ID NamedType(const host::Project& project, const host::Declaration& declaration) {
    const std::u16string_view type(declaration.type);
    const size_t of = type.rfind(u" OF ");
    const std::u16string_view name = of == type.npos ? type : type.substr(of + 4);
    const ID id = project.FindDataType(name);
    return id.GetNumber() ? id : project.FindAnyPou(name);
}

void PrintRefusals(const std::string& file, const std::vector<Refusal>& refusals) {
    for (const Refusal& refusal : refusals) {
        PrintMessage({file, refusal.line, refusal.column},
                     refusal.list + (refusal.name.empty() ? "" : ".") + refusal.name + ": " +
                         refusal.reason);
    }
}

Translation Translate(host::Project& project) {
    host::SetProject(&project);
    Translation out;
    out.tables = NewTables();
    Translator(project, out).Run();
    return out;
}

}  // namespace lq::tool
