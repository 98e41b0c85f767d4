// A code page that came before Unicode, as the C library knows it.
#pragma once

#include <string>
#include <string_view>

#include "lq_data/export.h"
#include "lq_data/host/text/utf.h"

namespace lq::host {

class LQ_DATA_API CodePage {
  public:
    // kWindows1252 or kShiftJis. Throws std::bad_alloc.
    explicit CodePage(TextEncoding encoding);
    ~CodePage();
    CodePage(const CodePage&) = delete;
    CodePage& operator=(const CodePage&) = delete;

    bool IsOpen() const;  // the system knows it

    // Takes some characters from the front of `bytes`; false when what is left there is none.
    bool Take(std::string_view& bytes, std::u16string& text);

  private:
    void* handle_ = reinterpret_cast<void*>(-1);  // none
};

}  // namespace lq::host
