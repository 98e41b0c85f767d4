// The code of bodies as a project keeps it when it is asked to (Project::KeepCode): tokens with
// their places, in pieces that say what part of a body they are. Text in IL or ST is one piece; a
// drawing, or a chart as text, is as many as it has places where names stand.
#pragma once

#include <cstdint>
#include <vector>

#include "lq_data/host/model/text_pool.h"

namespace lq::host {

// A token as the scanner tells it. Strings are without their characters, and a name or number with
// a prefix ("Color#Red", "INT#5") is a token of kind TK_ERROR, "Color#", and what follows it.
struct BodyToken {
    Text text = u"";
    uint32_t line = 0;
    uint32_t column = 0;
    uint16_t operation = 0;  // OPERATOR_CODE of an operator
    uint8_t kind = 0;        // TOKEN_KIND
    // The line of the body's text that it is in, which ends instructions of IL; texts of XML
    // documents need not have the lines of the file. Equal rows of two pieces mean nothing.
    uint32_t row = 0;

    bool Is(uint16_t code) const { return operation == code; }
};

enum class PieceRole : uint8_t {
    kSt,  // text, an expression of no other role, or the inline code of a transition or action
    kIl,

    // Drawings. Tokens are the expression.
    kIn,     // what a box reads, or the parameter in front of it
    kOut,    // what is written to
    kInOut,  // both
    kContact,
    kCoil,
    kBlock,  // `name` is its type, `second` the instance's name, which a function has not; tokens
             // are there where the instance is a member or an element
    kInput,  // a parameter of the block in front of it, by `name`; also the next two
    kOutput,
    kInputOutput,

    // Sequential charts, by `name`. Transitions and actions have tokens where that is more than
    // one: a member, an element, an address or a constant.
    kStep,
    kInitialStep,
    kMacroStep,
    kJumpStep,    // the step that is jumped to
    kTransition,  // the transition that is referred to
    kAction,      // the action or variable that an action block refers to
    kIndicator,   // the variable that tells how an action fares; tokens are the expression
    kDuration,    // of an action's qualifier; tokens are the expression
    kPart,        // a transition as text, or inline code with a name; the code follows
};

struct BodyPiece {
    PieceRole role = PieceRole::kSt;
    uint32_t line = 0;
    uint32_t column = 0;
    uint32_t first = 0;  // of its tokens, which end where the next piece's begin
    Text name = u"";
    Text second = u"";
    uint32_t id = 0;    // of the box in the drawing; 0 for none
    uint32_t wire = 0;  // the box that a parameter, or a box, is wired to at first; 0 for none
};

// An end of a wire of a drawing that has no other one.
struct LooseWire {
    Text partner = u"";  // the connector that a continuation names, or the number of a box
    bool isContinuation = false;
    uint32_t line = 0;
    uint32_t column = 0;
};

struct BodyCode {
    std::vector<BodyPiece> pieces;
    std::vector<BodyToken> tokens;
    std::vector<BodyToken> pragmaWords;  // in which language they are is not known
    std::vector<LooseWire> looseWires;
};

}  // namespace lq::host
