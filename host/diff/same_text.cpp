#include "host/diff/same_text.h"

#include "lq_data/detail/chars.h"

namespace lq::host::diff {

namespace {

// Reads a text character by character, with one blank for all that stand between two words, and
// none elsewhere: the end is a zero.
class Words {
  public:
    Words(Text text, bool isCode) : at_(text), isCode_(isCode) {}

    char16_t Next() {
        if (quote_ != 0) {
            return InQuotes();
        }
        const bool isBehindWord = last_ != 0 && (!isCode_ || IsWordPart(last_));
        const Text start = at_;
        while (chars::IsSpace(*at_)) {
            ++at_;
        }
        if (at_ != start && *at_ != 0 && isBehindWord && (!isCode_ || IsWordPart(*at_))) {
            return last_ = u' ';
        }
        if (*at_ == 0) {
            return 0;
        }
        last_ = *at_++;
        if (isCode_ && (last_ == u'\'' || last_ == u'"')) {
            quote_ = last_;
        }
        return isCode_ ? chars::ToUpper(last_) : last_;
    }

  private:
    static bool IsWordPart(char16_t c) {
        return c == u'_' || chars::IsDigit(c) || chars::IsLetter(c);
    }

    // A dollar keeps the quotation mark behind it from ending the string.
    char16_t InQuotes() {
        const char16_t c = *at_;
        at_ += c != 0 ? 1 : 0;
        if (c == quote_ && !isEscaped_) {
            quote_ = 0;
            last_ = c;
        }
        isEscaped_ = c == u'$' && !isEscaped_;
        return c;
    }

    Text at_;
    const bool isCode_;
    char16_t last_ = 0;   // outside of quotes
    char16_t quote_ = 0;  // that ends the string
    bool isEscaped_ = false;
};

bool IsSame(Text a, Text b, bool isCode) {
    if (chars::Equal(a, b)) {
        return true;
    }
    Words wordsOfA(a, isCode);
    Words wordsOfB(b, isCode);
    for (;;) {
        const char16_t c = wordsOfA.Next();
        if (c != wordsOfB.Next()) {
            return false;
        }
        if (c == 0) {
            return true;
        }
    }
}

}  // namespace

bool IsSameCode(Text a, Text b) {
    return IsSame(a, b, true);
}

bool IsSameProse(Text a, Text b) {
    return IsSame(a, b, false);
}

}  // namespace lq::host::diff
