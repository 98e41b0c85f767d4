#include "cgtab/shared_scanner.h"

#include <utility>

#include "frame/per_thread.h"
#include "lq_data/cgtab.h"
#include "lq_data/detail/chars.h"

namespace lq::cgtab {

namespace {

struct KeptScanner : frame::PerThread {
    Scanner* scanner = nullptr;
    STREAM_W* stream = nullptr;
};
LQ_THREAD_LOCAL KeptScanner kept;

struct Keyword {
    const char16_t* name;
    int id;
};
constexpr Keyword kKeywords[] = {{u"OF", KW_OF}, {u"TRUE", KW_TRUE}, {u"FALSE", KW_FALSE}};

void Release(frame::PerThread& part) {
    auto& own = static_cast<KeptScanner&>(part);
    delete std::exchange(own.scanner, nullptr);
    delete std::exchange(own.stream, nullptr);
}

bool RegisterKeywords(Scanner& scanner) {
    for (const Keyword& keyword : kKeywords) {
        if (!scanner.RegisterKeyword(keyword.name, keyword.id)) {
            return false;
        }
    }
    return true;
}

bool MakeScanner() {
    static constexpr char16_t kEmpty[] = u"";
    if (!frame::KeepForThread(kept, Release)) {
        return false;
    }
    kept.stream = new MEMSTREAM_W(kEmpty, 0, 0, nullptr);
    kept.scanner = static_cast<Scanner*>(Scanner::CreateObject());
    if (kept.stream && kept.scanner) {
        kept.scanner->Initialize(*kept.stream);
        if (kept.scanner->CanRead() && RegisterKeywords(*kept.scanner)) {
            return true;
        }
    }
    Release(kept);
    return false;
}

}  // namespace

Scanner* GetSharedScanner() {
    if (!kept.scanner) {
        MakeScanner();
    }
    return kept.scanner;
}

Token NextToken(Scanner& scanner) {
    Token token = scanner.GetToken();
    return token.kind == TK_NEWLINE ? scanner.GetToken() : token;
}

TextScan::TextScan(const char16_t* text)
    : stream_(text, static_cast<int32_t>(chars::Length(text)),
              static_cast<int32_t>(chars::Length(text)), nullptr),
      scanner_(GetSharedScanner()) {
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
    lq::cgtab::Release(lq::cgtab::kept);
}
