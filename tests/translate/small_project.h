// Small projects of the host's model, and what takes part in their translation.
#pragma once

#include <algorithm>
#include <map>

#include "lq_data/cgtab_compiler.h"
#include "lq_data/host/model/translation_source.h"
#include "lq_data/translate.h"
#include "tests/cgtab/tables_util.h"
#include "tests/pouh/load_test_util.h"

namespace lq::test {

using pouh::kExternal;
using pouh::kInput;
using pouh::kLocal;
using pouh::LoadedProject;

inline constexpr host::Section kTemp = {host::Scope::kTemp};

// Declarations get the lines 1, 2 ... in the order of their entry, behind those of the standard
// blocks, and columns ten times as far.
class SmallProject : public LoadedProject {
  public:
    SmallProject() : list(NewGlobals()), unit(NewPou(LQ_KIND_PROGRAM, u"Unit")) {}

    void Declare(ID owner, const char16_t* name, const char16_t* type,
                 host::Section section = kLocal, const char16_t* init = u"",
                 const char16_t* address = u"") {
        host::Declaration declaration;
        declaration.owner = owner;
        declaration.name = name;
        declaration.type = type;
        declaration.section = section;
        declaration.initValue = init;
        declaration.address = address;
        declaration.line = Line() + 1;
        declaration.column = declaration.line * 10;
        AddDeclaration(declaration);
    }

    // Of the last declaration.
    uint32_t Line() const { return static_cast<uint32_t>(Declarations().size() - standard_); }

    void AddBody(const std::vector<host::Mark>& labels) {
        host::Body& body = EditPou(unit)->bodies.emplace_back();
        body.name = u"Act";
        body.labels = labels;
    }

    const ID list;
    const ID unit;

  private:
    ID NewGlobals() {
        host::VariableList globals;
        globals.name = u"Globals";
        globals.parent = NewConfiguration(u"Config");
        return AddVariableList(globals);
    }

    const size_t standard_ = Declarations().size();
};

// A bit of everything: each table gets a line.
class WholeProject : public SmallProject {
  public:
    WholeProject() {
        NewVar(NewDataType(u"Point"), u"x", u"Point");
        Declare(list, u"Speed", u"INT", pouh::kGlobal, u"1500", u"%QW4");
        Declare(list, u"Points", u"ARRAY [1..3] OF Point", pouh::kGlobal);
        Declare(unit, u"Inner", u"REAL", kLocal, u"0.5");
        Declare(unit, u"Half", u"REAL", kInput, u"0.5");
        Declare(unit, u"Short", u"ARRAY [0..9] OF INT", kTemp);
        Declare(unit, u"Speed", u"INT", kExternal);
        Declare(unit, u"A_name_of_more_than_thirty_two_characters", u"Point");
        AddBody({{u"L1", 30}, {u"Gone", 31}});
        EditPou(unit)->bodies.back().jumps.push_back({u"L1", 40});
    }
};

// Fills user areas with the line's place and as many bytes as there are, and keeps who asked.
class Client : public TranslationClient {
  public:
    bool GoesOn(uint32_t declarations) override { return declarations < cancelAt; }
    void FillUserArea(CgTab::TAB_ID table, const LineOrigin& origin, unsigned char* area,
                      uint32_t size) override {
        EXPECT_EQ(Hex(area, size), Hex(std::vector<unsigned char>(size).data(), size));
        std::fill(area, area + size, static_cast<unsigned char>(origin.place.line));
        lines[table] += std::to_string(origin.place.line) + " ";
    }
    uint32_t FillDebugRecord(const LineOrigin&, const char16_t* name, uint32_t kind,
                             unsigned char* data) override {
        data[0] = static_cast<unsigned char>(name[0]);
        data[1] = static_cast<unsigned char>(kind);
        return 2;
    }

    uint32_t cancelAt = UINT32_MAX;
    std::map<int, std::string> lines;  // of each table's user areas
};

inline std::unique_ptr<CgTab> Translated(host::Project& project) {
    auto tables = NewTables(4);
    host::ProjectSource source(project);
    Client client;
    EXPECT_EQ(Translate(source, *tables, &client).outcome, TranslationOutcome::kDone);
    return tables;
}

}  // namespace lq::test
