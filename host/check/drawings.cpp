// Blocks of drawings, and the steps of charts.

#include <map>
#include <string>

#include "host/check/checks.h"
#include "host/check/findings.h"
#include "lq_data/host/words/words.h"

namespace lq::host::check {

namespace {

bool IsStep(PieceRole role) {
    return role == PieceRole::kStep || role == PieceRole::kInitialStep ||
           role == PieceRole::kMacroStep;
}

class Drawings {
  public:
    explicit Drawings(Run& run) : run_(run) {}

    void Look() {
        ForEachCode(run_, [this](ID owner, const BodyCode& code) {
            CheckBlocks(owner, code);
            CheckSteps(owner, code);
            CheckWires(owner, code);
        });
    }

  private:
    void CheckBlocks(ID unit, const BodyCode& code);
    void CheckBlock(ID unit, const BodyPiece& piece);
    bool IsToldAsType(ID unit, const BodyPiece& piece);
    void CheckSteps(ID unit, const BodyCode& code);
    void CheckWires(ID unit, const BodyCode& code);

    Run& run_;
    Causes unknown_;  // blocks
};

void Drawings::CheckBlocks(ID unit, const BodyCode& code) {
    for (const BodyPiece& piece : code.pieces) {
        if (piece.role == PieceRole::kBlock) {
            CheckBlock(unit, piece);
        }
    }
}

// The type of its instance is not known, either, and told where that is declared.
bool Drawings::IsToldAsType(ID unit, const BodyPiece& piece) {
    const ID instance = run_.types.Members(unit).Find(piece.second);
    const Declaration* declaration = run_.project.GetDeclaration(instance);
    return declaration && run_.Wants(2001) && EqualNames(declaration->type, piece.name);
}

void Drawings::CheckBlock(ID unit, const BodyPiece& piece) {
    if (run_.project.FindAnyPou(piece.name) == ID() && !IsStandardFunction(piece.name) &&
        // An instance may stand for its type.
        run_.types.Members(unit).Find(piece.name) == ID() && !IsToldAsType(unit, piece)) {
        if (!unknown_.IsTold({}, Upper(piece.name))) {
            unknown_.Tell(ReportAt(run_, 8027, run_.OpenSeverity(), unit, SpotOf(piece),
                                   Say("no unit is called '{}'", Utf8(piece.name))));
        }
    }
}

void Drawings::CheckSteps(ID unit, const BodyCode& code) {
    std::map<std::u16string, const BodyPiece*> steps;
    const BodyPiece* first = nullptr;
    std::size_t initial = 0;
    for (const BodyPiece& piece : code.pieces) {
        if (!IsStep(piece.role)) {
            continue;
        }
        first = first ? first : &piece;
        initial += piece.role == PieceRole::kInitialStep ? 1 : 0;
        const auto [known, isNew] = steps.try_emplace(Upper(piece.name), &piece);
        if (!isNew) {
            Finding& finding = ReportAt(run_, 6008, unit, SpotOf(piece),
                                        Say("the step '{}' stands twice", Utf8(piece.name)));
            run_.Relate(finding, known->second->line, known->second->column,
                        Say("first declared here"));
        }
    }
    if (first && initial != 1) {
        ReportAt(run_, 6007, unit, SpotOf(*first), Say("the chart has {} initial steps", initial));
    }
    for (const BodyPiece& piece : code.pieces) {
        if (piece.role == PieceRole::kJumpStep && !steps.contains(Upper(piece.name))) {
            ReportAt(run_, 8023, unit, SpotOf(piece),
                     Say("no step is called '{}'", Utf8(piece.name)));
        }
    }
}

void Drawings::CheckWires(ID unit, const BodyCode& code) {
    for (const LooseWire& wire : code.looseWires) {
        const std::string partner = Utf8(wire.partner);
        ReportAt(run_, wire.isContinuation ? 8030 : 8029, unit,
                 {wire.partner, wire.line, wire.column},
                 wire.isContinuation ? Say("no connector is called '{}'", partner)
                                     : Say("a wire leads to '{}', which no box has", partner));
    }
}

// Its actions and transitions.
void CheckParts(Run& run, ID unit, const Pou& pou) {
    std::map<std::u16string, const Body*> parts;
    for (const Body& body : pou.bodies) {
        const auto [known, isNew] = parts.try_emplace(Upper(body.name), &body);
        if (!isNew && *body.name) {
            Finding& finding =
                ReportAt(run, 6008, unit, SpotOf(body),
                         Say("two actions or transitions are called '{}'", Utf8(body.name)));
            run.Relate(finding, known->second->line, known->second->column,
                       Say("first declared here"));
        }
    }
}

void CheckDrawings(Run& run) {
    for (const ID owner : run.Owners()) {
        if (const Pou* pou = run.project.GetPou(owner)) {
            CheckParts(run, owner, *pou);
        }
    }
    Drawings(run).Look();
}

constexpr Check kRows[] = {
    {6007, "initial-step", Severity::kError, Message("A chart has one initial step"),
     Message("Where it begins is not certain"),
     "<pou name='Main' "
     "pouType='program'><interface><localVars></localVars></interface><body><SFC><step localId='1' "
     "name='A' /><step localId='1' name='B' /></SFC></body></pou>",
     "<pou name='Main' "
     "pouType='program'><interface><localVars></localVars></interface><body><SFC><step localId='1' "
     "name='A' initialStep='true'/><step localId='1' name='B' /></SFC></body></pou>",
     CheckDrawings},
    {6008, "duplicate-step", Severity::kError,
     Message(
         "The steps of a chart have different names, and the actions and transitions of a unit"),
     Message("Which of them is meant is not certain"),
     "<pou name='Main' "
     "pouType='program'><interface><localVars></localVars></interface><body><SFC><step localId='1' "
     "name='A' initialStep='true'/><step localId='1' name='a' /></SFC></body></pou>",
     "<pou name='Main' "
     "pouType='program'><interface><localVars></localVars></interface><body><SFC><step localId='1' "
     "name='A' initialStep='true'/><step localId='1' name='B' /></SFC></body></pou>",
     CheckDrawings},
    {8023, "jump-to-unknown-step", Severity::kError,
     Message("What a chart jumps to is a step of it"), Message("The body cannot be built"),
     "<pou name='Main' "
     "pouType='program'><interface><localVars></localVars></interface><body><SFC><step localId='1' "
     "name='A' initialStep='true'/><jumpStep localId='2' targetName='B'/></SFC></body></pou>",
     "<pou name='Main' "
     "pouType='program'><interface><localVars></localVars></interface><body><SFC><step localId='1' "
     "name='A' initialStep='true'/><jumpStep localId='2' targetName='A'/></SFC></body></pou>",
     CheckDrawings},
    {8027, "block-unknown", Severity::kError,
     Message("A block in a drawing is a unit, or a function of the standard"),
     Message("The body cannot be built"),
     "<pou name='Main' "
     "pouType='program'><interface><localVars></localVars></interface><body><FBD><block "
     "localId='1' typeName='Mixx'/></FBD></body></pou>",
     "<pou name='Main' "
     "pouType='program'><interface><localVars></localVars></interface><body><FBD><block "
     "localId='1' typeName='MAX'/></FBD></body></pou>",
     CheckDrawings},
    {8029, "wire-to-nothing", Severity::kError,
     Message("Each wire of a drawing leads to a box of it"), Message("The body cannot be built"),
     "<pou name='Main' pouType='program'><interface/><body><FBD><inVariable localId='1'>"
     "<expression>TRUE</expression></inVariable><outVariable localId='2'><connectionPointIn>"
     "<connection refLocalId='3'/></connectionPointIn><expression>%QX0.0</expression>"
     "</outVariable></FBD></body></pou>",
     "<pou name='Main' pouType='program'><interface/><body><FBD><inVariable localId='1'>"
     "<expression>TRUE</expression></inVariable><outVariable localId='2'><connectionPointIn>"
     "<connection refLocalId='1'/></connectionPointIn><expression>%QX0.0</expression>"
     "</outVariable></FBD></body></pou>",
     CheckDrawings},
    {8030, "continuation", Severity::kError,
     Message("Each continuation of a drawing has its connector"),
     Message("The body cannot be built"),
     "<pou name='Main' pouType='program'><interface/><body><FBD><connector localId='1' name='Run'/>"
     "<continuation localId='2' name='Ruin'/></FBD></body></pou>",
     "<pou name='Main' pouType='program'><interface/><body><FBD><connector localId='1' name='Run'/>"
     "<continuation localId='2' name='Run'/></FBD></body></pou>",
     CheckDrawings},
};

}  // namespace

Rows DrawingRows() {
    return kRows;
}

}  // namespace lq::host::check
