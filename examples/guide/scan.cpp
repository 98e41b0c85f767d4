// Scans a text: every token with its line, and what is wrong with a malformed one.
#include <cstdio>
#include <iterator>
#include <lq_data/env/lq_base.h>
#include <lq_data/host/text/utf.h>
#include <lq_data/scanner.h>
#include <memory>

using lq::host::EncodeUtf8;

namespace {

// [share]
// Reads names up to a semicolon, with a scanner of its own, and gives the stream back behind it.
// False at the end of the input.
bool ReadStatement(STREAM_W& stream, int number) {
    const std::unique_ptr<Scanner> scanner(static_cast<Scanner*>(Scanner::CreateObject()));
    if (!scanner) {
        return false;  // memory is short
    }
    scanner->Initialize(stream);
    for (;;) {
        const Token token = scanner->GetToken();
        if (token.kind == TK_EOF) {
            return false;  // not to be read on: the stream stands on its last character
        }
        if (token.IsOperator(OP_SEMICOLON)) {
            break;
        }
        std::printf("statement %d: %s\n", number, EncodeUtf8(token.text).c_str());
    }
    const bool isLast = scanner->IsEOF() != 0;
    scanner->ReleaseStream();
    return !isLast;
}
// [/share]

}  // namespace

int main() {
    // [scan]
    constexpr char16_t kText[] =
        u"IF Level >= 16#FF THEN\n"
        u"  Wait := T#1m30s; (* seconds count *)\n"
        u"  Mask := 2#;\n";
    constexpr int32_t kLength = std::size(kText) - 1;
    constexpr int kIf = 1;
    constexpr int kThen = 2;

    MEMSTREAM_W stream(kText, kLength, kLength, nullptr);
    const std::unique_ptr<Scanner> scanner(static_cast<Scanner*>(Scanner::CreateObject()));
    if (!scanner) {
        return 1;  // memory is short
    }
    scanner->RegisterKeyword(u"IF", kIf);
    scanner->RegisterKeyword(u"THEN", kThen);
    scanner->Initialize(stream);
    scanner->SetnActLine(1);
    for (;;) {
        const Token token = scanner->GetToken();
        if (token.kind == TK_EOF) {
            break;
        }
        const std::string text = EncodeUtf8(token.text);
        switch (token.kind) {
            case TK_ERROR:
                std::printf("%d: error %u at \"%s\"\n", token.line, token.GetNumber(),
                            text.c_str());
                break;
            case TK_KEYWORD:
                std::printf("%d: keyword %u\n", token.line, unsigned{token.GetCode()});
                break;
            case TK_INTEGER:
            case TK_BASED_INTEGER:
                std::printf("%d: %s is %u\n", token.line, text.c_str(), token.GetNumber());
                break;
            case TK_TIME:
                std::printf("%d: %s lasts %.0f ms\n", token.line, text.c_str(),
                            token.GetTime()->ms);
                break;
            default:
                std::printf("%d: %s\n", token.line, text.c_str());
        }
    }
    // [/scan]
    // [statements]
    constexpr char16_t kStatements[] = u"Start Wait; Stop;";
    constexpr int32_t kSize = std::size(kStatements) - 1;
    MEMSTREAM_W shared(kStatements, kSize, kSize, nullptr);
    for (int number = 1; ReadStatement(shared, number); ++number) {
    }
    // [/statements]
    return 0;
}
