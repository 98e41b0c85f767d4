#include "tools/lq/translation.h"

#include <algorithm>
#include <cstring>
#include <new>
#include <string_view>

#include "lq_data/host/model/translation_source.h"
#include "lq_data/host/text/message.h"
#include "lq_data/host/text/utf.h"
#include "tools/lq/messages.h"
#include "tools/lq/progress.h"
#include "tools/lq/refusal_words.h"
#include "tools/lq/tables.h"

namespace lq::tool {

namespace {

using host::EncodeUtf8;
using host::Say;

// Every line of the tables gets its line of the source, every unit a debug record.
class LineNumbers final : public TranslationClient {
  public:
    explicit LineNumbers(const host::Project& project)
        : progress_(Say("entering declarations"), project.Declarations().size()) {}

    bool GoesOn(uint32_t declarations) override {
        progress_.Set(declarations);
        return true;
    }
    void FillUserArea(CgTab::TAB_ID, const LineOrigin& origin, unsigned char* area,
                      uint32_t) override {
        std::memcpy(area, &origin.place.line, kUserArea);
    }
    uint32_t FillDebugRecord(const LineOrigin& unit, const char16_t* name, uint32_t kind,
                             unsigned char* data) override {
        const auto bytes = UnitPosition{unit.place.line, kind, EncodeUtf8(name)}.Bytes();
        std::ranges::copy(bytes, data);
        return static_cast<uint32_t>(bytes.size());
    }

  private:
    Progress progress_;
};

FaultWords FaultOf(const host::Declaration* declaration, DeclFault fault, TypeFaults& types) {
    if (!declaration) {
        return {FaultText(fault)};
    }
    switch (fault) {
        case DeclFault::kTypeName:
        case DeclFault::kTypeKind:
        case DeclFault::kStringLength:
        case DeclFault::kArrayType:
            return types.Of(declaration->type);
        case DeclFault::kInitialValue:
            return ValueFault(declaration->initValue);
        default:
            return {FaultText(fault)};
    }
}

// Functions and function blocks of the third edition declare one of the two, and the tables take
// both or none.
FaultWords NameFault(const host::Declaration* declaration) {
    if (!declaration || !*declaration->name) {
        return {Say("the name is no identifier")};
    }
    const host::Scope scope = declaration->section.scope;
    const char16_t* const enable = scope == host::Scope::kInput    ? u"EN"
                                   : scope == host::Scope::kOutput ? u"ENO"
                                                                   : u"";
    return chars::EqualNoCase(declaration->name, enable)
               ? FaultWords{Say("EN and ENO are supported only together, as BOOL"), true}
               : FaultWords{host::WhyNoName(declaration->name)};
}

FaultWords ReasonOf(const TranslationRefusal& refusal, const host::Declaration* declaration,
                    TypeFaults& types) {
    switch (refusal.reason) {
        case RefusalReason::kDeclaration:
            return FaultOf(declaration, refusal.fault, types);
        case RefusalReason::kNoIdentifier:
            return NameFault(declaration);
        case RefusalReason::kGlobalTwice:
            return {Say("a global of this name was declared before")};
        case RefusalReason::kComponentTwice:
            return {Say("the unit has declared this name before")};
        case RefusalReason::kNoGlobal:
            return {Say("no global of this name was entered")};
        case RefusalReason::kTypeName:
            return {Say("the name of its type cannot be entered")};
        case RefusalReason::kTemporary:
            return {Say("the temporary cannot be entered")};
        case RefusalReason::kUnit:
            break;  // the project has all its units
        case RefusalReason::kComponents:
            return {Say("the unit's components cannot be entered")};
        case RefusalReason::kUnitName:
            return {Say("the unit's name has more than 255 characters")};
        case RefusalReason::kLabelName:
            return {Say("the label's name has more than 255 characters")};
        case RefusalReason::kLabelTwice:
            return {Say("the label is defined twice")};
    }
    return {Say("unknown")};
}

Refusal ToRefusal(const host::Project& project, const TranslationRefusal& refusal,
                  TypeFaults& types) {
    const host::Declaration* const declaration = project.GetDeclaration(refusal.object);
    const FaultWords words = ReasonOf(refusal, declaration, types);
    // No check minds what the language permits.
    const host::Check& check = words.isOfTables
                                   ? host::CheckOf(RefusalReason::kDeclaration, DeclFault::kNone)
                                   : host::CheckOf(refusal.reason, refusal.fault);
    return {EncodeUtf8(project.NameOf(refusal.owner)),
            EncodeUtf8(declaration    ? declaration->name
                       : refusal.mark ? refusal.mark
                                      : u""),
            EncodeUtf8(declaration ? declaration->type : u""),
            words.text,
            &check,
            FileNameOf(project, declaration ? refusal.object : refusal.owner),
            refusal.place.line,
            refusal.place.column};
}

}  // namespace

ID NamedType(const host::Project& project, const host::Declaration& declaration) {
    const std::u16string_view type(declaration.type);
    const size_t of = type.rfind(u" OF ");
    const std::u16string_view name = of == type.npos ? type : type.substr(of + 4);
    const ID id = project.FindDataType(name);
    return id.GetNumber() ? id : project.FindAnyPou(name);
}

std::string FileNameOf(const host::Project& project, ID id) {
    const host::SourceFile* file = project.FileOf(id);
    return file ? host::EncodeUtf8(file->name) : "";
}

void PrintRefusals(const std::vector<Refusal>& refusals) {
    for (const Refusal& refusal : refusals) {
        PrintMessage({refusal.file, refusal.line, refusal.column}, host::Severity::kError,
                     *refusal.check,
                     refusal.list + (refusal.name.empty() ? "" : ".") + refusal.name + ": " +
                         refusal.reason);
    }
}

Translation Translate(host::Project& project) {
    host::SetProject(&project);
    Translation out;
    out.tables = NewTables();
    host::ProjectSource source(project);
    LineNumbers client(project);
    const TranslationResult result = lq::Translate(source, *out.tables, &client);
    if (result.outcome != TranslationOutcome::kDone) {
        throw std::bad_alloc();
    }
    out.declarations = result.declarations;
    out.refusals.reserve(result.GetRefusalCount());
    TypeFaults types(project);
    for (const TranslationRefusal& refusal : result) {
        out.refusals.push_back(ToRefusal(project, refusal, types));
    }
    return out;
}

}  // namespace lq::tool
