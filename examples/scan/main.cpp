// Says what the tokens of a source file are: scan FILE
#include <cstdio>
#include <fstream>
#include <iterator>
#include <lq_data/lq_data.h>
#include <memory>

namespace {

// The whole text, also of a token that is longer than the scanner's buffer.
std::u16string_view TextOf(const Scanner& scanner, const Token& token) {
    return scanner.IsHugeBufComplete() ? scanner.GetSrcEx() : token.text;
}

const char* KindOf(const Token& token) {
    switch (token.kind) {
        case TK_ERROR:
            return "error";
        case TK_KEYWORD:
            return "keyword";
        case TK_IDENTIFIER:
            return "name";
        case TK_OPERATOR:
            return "operator";
        case TK_COMMENT:
            return "comment";
        default:
            return "constant or address";
    }
}

}  // namespace

int main(int argc, char** argv) {
    std::ifstream file(argc == 2 ? argv[1] : "", std::ios::binary);
    const std::string bytes(std::istreambuf_iterator<char>(file), {});
    std::u16string text;
    if (!file || !lq::host::DecodeUtf8(bytes, text).IsFine() || text.size() > INT32_MAX) {
        return 2;
    }
    const auto length = static_cast<int32_t>(text.size());
    MEMSTREAM_W stream(text.c_str(), length, length, nullptr);  // outlives its scanner
    const std::unique_ptr<Scanner> scanner(static_cast<Scanner*>(Scanner::CreateObject()));
    if (!scanner || !scanner->RegisterKeyword(u"IF", 1) || !scanner->RegisterKeyword(u"THEN", 2)) {
        return 2;  // memory is short
    }
    scanner->Initialize(stream);
    lq::host::TokenColumns columns(text);
    bool isFine = true;
    for (Token token = scanner->GetToken(); token.kind != TK_EOF; token = scanner->GetToken()) {
        const uint32_t column = columns.Next(*scanner, token);
        std::printf("%u:%u: %s %s\n", columns.Line(), column, KindOf(token),
                    lq::host::EncodeUtf8(TextOf(*scanner, token)).c_str());
        isFine = isFine && token.kind != TK_ERROR;
    }
    return isFine ? 0 : 1;
}
