// The check scanner on one text, borrowed for the length of a scope.
#pragma once

#include "lq_base.h"
#include "lq_data/scanner.h"

namespace lq::pouh {

class CheckScan {
  public:
    // `text` must outlive the scan.
    explicit CheckScan(const char16_t* text);
    // Unbinds the stream and gives the scanner back.
    ~CheckScan();
    CheckScan(const CheckScan&) = delete;
    CheckScan& operator=(const CheckScan&) = delete;

    // False when the base library has no scanner to lend, or memory was short for its stream;
    // nothing else may be called then.
    bool IsOpen() const { return scanner_ && scanner_->CanRead(); }

    // The next token, after one newline token if one comes. Valid until the next call.
    Token Next();
    bool AtEnd() { return scanner_->IsEOF() || Next().kind == TK_EOF; }
    // The whole text of the token that Next returned last, however long it is; null when memory
    // ran short for it.
    const char16_t* WholeText(const Token& token) const;

    Scanner& GetScanner() { return *scanner_; }

  private:
    MEMSTREAM_W stream_;
    Scanner* scanner_;
};

}  // namespace lq::pouh
