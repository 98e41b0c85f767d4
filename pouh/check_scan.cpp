#include "pouh/check_scan.h"

#include "frame/chars.h"

namespace lq::pouh {

CheckScan::CheckScan(const char16_t* text)
    : stream_(text, static_cast<int32_t>(chars::Length(text)),
              static_cast<int32_t>(chars::Length(text)), nullptr),
      scanner_(GetCheckScanner()) {
    if (scanner_) {
        scanner_->AssignStream(stream_, 0);
    }
}

CheckScan::~CheckScan() {
    if (scanner_) {
        scanner_->ReleaseStream();
    }
    ReleaseCheckScanner();
}

Token CheckScan::Next() {
    Token token = scanner_->GetToken();
    return token.kind == TK_NEWLINE ? scanner_->GetToken() : token;
}

const char16_t* CheckScan::WholeText(const Token& token) const {
    if (scanner_->HasLostText()) {
        return nullptr;
    }
    const char16_t* overflow = scanner_->GetSrcEx();
    return overflow ? overflow : token.text;
}

}  // namespace lq::pouh
