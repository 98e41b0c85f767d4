// The scanner that all table sets of a thread share for declaration texts.
#pragma once

#include "lq_data/env/lq_base.h"
#include "lq_data/scanner.h"

namespace lq::cgtab {

// The scanner of this thread, with its keywords. It is made by the first who asks: a set that is
// constructed here, or one that was made on another thread. Null when memory is short.
Scanner* GetSharedScanner();

// Binds the shared scanner to a text as long as it lives. One at a time.
class TextScan {
  public:
    explicit TextScan(const char16_t* text);
    ~TextScan();
    TextScan(const TextScan&) = delete;
    TextScan& operator=(const TextScan&) = delete;

    // Null when there is no shared scanner.
    Scanner* Get() { return scanner_; }

  private:
    MEMSTREAM_W stream_;
    Scanner* scanner_;
};

// The next token, skipping one line break if one comes.
Token NextToken(Scanner& scanner);

}  // namespace lq::cgtab
