#include "cgtab/shared_scanner.h"

#include "lq_data/cgtab.h"
#include "lq_data/detail/chars.h"

namespace lq::cgtab {

namespace {

// Process-wide. Made by the first table set, released by CgTab_ReleaseTokenScanner.
Scanner* sharedScanner = nullptr;
STREAM_W* sharedStream = nullptr;

struct Keyword {
    const char16_t* name;
    int id;
};
constexpr Keyword kKeywords[] = {{u"OF", KW_OF}, {u"TRUE", KW_TRUE}, {u"FALSE", KW_FALSE}};

void ReleaseSharedScanner() {
    delete sharedScanner;
    delete sharedStream;
    sharedScanner = nullptr;
    sharedStream = nullptr;
}

bool RegisterKeywords() {
    for (const Keyword& keyword : kKeywords) {
        if (!sharedScanner->RegisterKeyword(keyword.name, keyword.id)) {
            return false;
        }
    }
    return true;
}

}  // namespace

bool CreateSharedScanner() {
    if (sharedScanner) {
        return true;
    }
    static constexpr char16_t kEmpty[] = u"";
    sharedStream = new MEMSTREAM_W(kEmpty, 0, 0, nullptr);
    sharedScanner = static_cast<Scanner*>(Scanner::CreateObject());
    if (sharedStream && sharedScanner) {
        sharedScanner->Initialize(*sharedStream);
        if (sharedScanner->CanRead() && RegisterKeywords()) {
            return true;
        }
    }
    ReleaseSharedScanner();
    return false;
}

bool HasSharedScanner() {
    return sharedScanner != nullptr;
}

Token NextToken(Scanner& scanner) {
    Token token = scanner.GetToken();
    return token.kind == TK_NEWLINE ? scanner.GetToken() : token;
}

TextScan::TextScan(const char16_t* text)
    : stream_(text, static_cast<int32_t>(chars::Length(text)),
              static_cast<int32_t>(chars::Length(text)), nullptr),
      scanner_(sharedScanner) {
    if (scanner_) {
        scanner_->AssignStream(stream_, 0);
    }
}

TextScan::~TextScan() {
    if (scanner_) {
        scanner_->ReleaseStream();
    }
}

}  // namespace lq::cgtab

void CgTab_ReleaseTokenScanner() {
    lq::cgtab::ReleaseSharedScanner();
}
