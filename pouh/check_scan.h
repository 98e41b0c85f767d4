// The check scanner on one text, borrowed for the length of a scope.
#pragma once

#include "lq_data/detail/chars.h"
#include "lq_data/env/lq_base.h"
#include "lq_data/scanner.h"

namespace lq::pouh {

class CheckScan {
  public:
    // `text` must outlive the scan.
    explicit CheckScan(const char16_t* text)
        : CheckScan(text, static_cast<int32_t>(chars::Length(text))) {}
    CheckScan(const char16_t* text, int32_t length)
        : stream_(text, length, length, nullptr), scanner_(GetCheckScanner()) {
        if (scanner_) {
            scanner_->AssignStream(stream_, 0);
        }
    }
    // Unbinds the stream and gives the scanner back.
    ~CheckScan() {
        if (scanner_) {
            scanner_->ReleaseStream();
        }
        ReleaseCheckScanner();
    }
    CheckScan(const CheckScan&) = delete;
    CheckScan& operator=(const CheckScan&) = delete;

    // False when the base library has no scanner to lend, or memory was short for its stream;
    // nothing else may be called then.
    bool IsOpen() const { return scanner_ && scanner_->CanRead(); }

    // The next token, after one newline token if one comes. Valid until the next call.
    Token Next() {
        Token token = scanner_->GetToken();
        return token.kind == TK_NEWLINE ? scanner_->GetToken() : token;
    }
    bool AtEnd() { return scanner_->IsEOF() || Next().kind == TK_EOF; }
    // The whole text of the token that Next returned last, however long it is; null when memory
    // ran short for it.
    const char16_t* WholeText(const Token& token) const {
        if (scanner_->HasLostText()) {
            return nullptr;
        }
        const char16_t* overflow = scanner_->GetSrcEx();
        return overflow ? overflow : token.text;
    }

    Scanner& GetScanner() { return *scanner_; }

  private:
    MEMSTREAM_W stream_;
    Scanner* scanner_;
};

}  // namespace lq::pouh
