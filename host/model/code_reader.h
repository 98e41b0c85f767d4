// What concerns names beyond a body of IL or ST text, read token by token: its labels and jumps,
// and the POUs that it calls.
//
// A call is a name before an opening bracket, in IL also an instruction that is a name. Names that
// call nothing (standard operators) may be among them; only names of POUs count in the end.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "lq_data/export.h"
#include "lq_data/host/model/project.h"
#include "lq_data/host/text/token_columns.h"

namespace lq::host {

// A token of code as the scanner tells it.
struct CodeToken {
    int32_t kind;        // TOKEN_KIND
    uint16_t operation;  // OPERATOR_CODE of an operator
    std::u16string_view text;
    uint32_t line;
    uint32_t column;
    uint32_t row = 0;  // of the text, where its lines are not the file's

    bool Is(uint16_t code) const;
    uint32_t Row() const { return row != 0 ? row : line; }
};

class LQ_DATA_API CodeReader {
  public:
    // `body` need not belong to `pou` yet.
    CodeReader(Project& project, Language language, Pou& pou, Body& body)
        : project_(project),
          il_(language == Language::kIl),
          chart_(language == Language::kSfc),
          pou_(pou),
          body_(body),
          code_(project.KeepsCode() ? &project.EditCode(body) : nullptr) {}

    // Where the project keeps code, the tokens are this piece of it; without it they are one of
    // text. To be called before the first token.
    void BeginPiece(BodyPiece piece);

    // A pragma, braces and all, that stands anywhere in the text: its words are kept with the code.
    void TakePragma(std::u16string_view text, uint32_t line, uint32_t column) {
        TakePragma(text, TextPlaces(text, line, column));
    }
    // `text` is what `places` walks through, up to the pragma's end; they are at its beginning.
    void TakePragma(std::u16string_view text, TextPlaces places);

    // Every token but line breaks and comments.
    void Take(const CodeToken& token);

    // A line of IL has ended, or the whole text, in either language.
    void EndLine();

  private:
    void Keep(std::u16string_view name, bool isInstruction);
    void EndName(bool called);
    void KeepToken(const CodeToken& token);

    Project& project_;
    const bool il_;
    const bool chart_;
    Pou& pou_;
    Body& body_;
    BodyCode* const code_;  // null when none is kept
    bool hasPiece_ = false;
    std::u16string name_;  // the last token, when it is a name, else empty
    uint32_t nameColumn_ = 0;
    bool isInstruction_ = false;  // it is the first of an IL line
    bool atStart_ = true;         // nothing on the line yet, but for a label
    bool behindDot_ = false;      // what follows is a part of something, and no POU
    uint32_t line_ = 0;           // of the instruction of IL
    uint32_t row_ = 0;
};

}  // namespace lq::host
