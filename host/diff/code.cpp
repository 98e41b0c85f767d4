// The code of bodies, token by token.

#include <algorithm>
#include <iterator>
#include <unordered_map>

#include "host/diff/teller.h"
#include "lq_data/detail/chars.h"
#include "lq_data/scanner.h"

namespace lq::host::diff {

namespace {

// What a box of a drawing is called means nothing beyond the drawing: one with another number is
// the same, as long as it has that everywhere.
class Boxes {
  public:
    bool IsSame(uint32_t inOld, uint32_t inNew) {
        if (inOld == 0 || inNew == 0) {
            return inOld == inNew;
        }
        return newOf_.emplace(inOld, inNew).first->second == inNew &&
               oldOf_.emplace(inNew, inOld).first->second == inOld;
    }

  private:
    // The numbers are the document's.
    struct Hash {
        std::size_t operator()(uint32_t number) const noexcept {
            const char16_t units[] = {static_cast<char16_t>(number),
                                      static_cast<char16_t>(number >> 16)};
            return HashOfText({units, std::size(units)});
        }
    };
    using Numbers = std::unordered_map<uint32_t, uint32_t, Hash>;

    Numbers newOf_;
    Numbers oldOf_;
};

bool IsSameToken(const BodyToken& a, const BodyToken& b) {
    return a.kind == b.kind && a.operation == b.operation &&
           (a.kind == TK_STRING || chars::EqualNoCase(a.text, b.text));
}

// A body's pieces and tokens in the order of the text: what stands at a place, and where.
struct Spot {
    Text text = u"";
    uint32_t line = 0;  // 0 behind the end
    uint32_t column = 0;
};

class CodeComparison {
  public:
    CodeComparison(const BodyCode& inOld, const BodyCode& inNew) : old_(inOld), new_(inNew) {}

    // Whether all is the same; otherwise `inOld` and `inNew` are where the first difference is.
    bool Run(Spot& inOld, Spot& inNew) {
        const std::size_t pieces = std::min(old_.pieces.size(), new_.pieces.size());
        for (std::size_t i = 0; i < pieces; ++i) {
            if (!IsSamePiece(old_.pieces[i], new_.pieces[i])) {
                inOld = SpotOf(old_.pieces[i]);
                inNew = SpotOf(new_.pieces[i]);
                return false;
            }
            if (!IsSameText({old_.tokens, old_.pieces[i].first, EndOf(old_, i)},
                            {new_.tokens, new_.pieces[i].first, EndOf(new_, i)}, inOld, inNew)) {
                return false;
            }
        }
        if (old_.pieces.size() != new_.pieces.size()) {
            inOld = pieces < old_.pieces.size() ? SpotOf(old_.pieces[pieces]) : Spot();
            inNew = pieces < new_.pieces.size() ? SpotOf(new_.pieces[pieces]) : Spot();
            return false;
        }
        return IsSameText({old_.pragmaWords, 0, old_.pragmaWords.size()},
                          {new_.pragmaWords, 0, new_.pragmaWords.size()}, inOld, inNew);
    }

  private:
    struct Tokens {
        const std::vector<BodyToken>& all;
        std::size_t at;
        std::size_t end;

        Spot Here() const {
            return at < end ? Spot{all[at].text, all[at].line, all[at].column} : Spot();
        }
    };

    static std::size_t EndOf(const BodyCode& code, std::size_t piece) {
        return piece + 1 < code.pieces.size() ? code.pieces[piece + 1].first : code.tokens.size();
    }
    static Spot SpotOf(const BodyPiece& piece) { return {piece.name, piece.line, piece.column}; }

    bool IsSamePiece(const BodyPiece& a, const BodyPiece& b) {
        return a.role == b.role && chars::EqualNoCase(a.name, b.name) &&
               chars::EqualNoCase(a.second, b.second) && boxes_.IsSame(a.id, b.id) &&
               boxes_.IsSame(a.wire, b.wire);
    }

    static bool IsSameText(Tokens inOld, Tokens inNew, Spot& oldSpot, Spot& newSpot) {
        while (inOld.at < inOld.end && inNew.at < inNew.end &&
               IsSameToken(inOld.all[inOld.at], inNew.all[inNew.at])) {
            ++inOld.at;
            ++inNew.at;
        }
        oldSpot = inOld.Here();
        newSpot = inNew.Here();
        return inOld.at == inOld.end && inNew.at == inNew.end;
    }

    const BodyCode& old_;
    const BodyCode& new_;
    Boxes boxes_;
};

void SetSpot(Difference::Side& side, const Spot& spot) {
    if (spot.line != 0) {
        side.line = spot.line;
        side.column = spot.column;
    }
}

}  // namespace

void CompareCode(const Teller& teller, Difference about, const Body& inOld, const Body& inNew) {
    const BodyCode none;
    const BodyCode* const oldCode = teller.before.CodeOf(inOld);
    const BodyCode* const newCode = teller.after.CodeOf(inNew);
    Spot oldSpot;
    Spot newSpot;
    if (!CodeComparison(oldCode ? *oldCode : none, newCode ? *newCode : none)
             .Run(oldSpot, newSpot)) {
        SetSpot(about.before, oldSpot);
        SetSpot(about.after, newSpot);
        teller.TellIfChanged(about, Aspect::kCode, oldSpot.text, newSpot.text,
                             [](Text, Text) { return false; });
    }
}

}  // namespace lq::host::diff
