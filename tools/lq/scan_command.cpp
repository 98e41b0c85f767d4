#include <memory>
#include <new>
#include <string_view>

#include "lq_data/detail/chars.h"
#include "lq_data/detail/in_order.h"
#include "lq_data/env/lq_base.h"
#include "lq_data/host/text/message.h"
#include "lq_data/host/text/token_columns.h"
#include "lq_data/host/text/utf.h"
#include "lq_data/scanner.h"
#include "lq_data/string_escapes.h"
#include "tools/lq/command.h"
#include "tools/lq/commands.h"
#include "tools/lq/describe.h"
#include "tools/lq/escape.h"
#include "tools/lq/input.h"
#include "tools/lq/keywords.h"
#include "tools/lq/messages.h"
#include "tools/lq/output.h"
#include "tools/lq/progress.h"

namespace lq::tool {

using host::EncodeUtf8;
using host::Say;

namespace {

constexpr RowOf<TOKEN_KIND, const char*> kKindNames[] = {
    {TK_ERROR, "error"},
    {TK_OPERATOR, "operator"},
    {TK_INTEGER, "integer"},
    {TK_BASED_INTEGER, "based integer"},
    {TK_REAL, "real"},
    {TK_IDENTIFIER, "identifier"},
    {TK_KEYWORD, "keyword"},
    {TK_NEWLINE, "line break"},
    {TK_ADDRESS, "address"},
    {TK_COMMENT, "comment"},
    {TK_STRING, "string"},
    {TK_TIME, "time"},
    {TK_DATE_AND_TIME, "date and time"},
    {TK_DATE, "date"},
    {TK_TIME_OF_DAY, "time of day"},
    {TK_RANGE_START, "range start"},
    {TK_EOF, "end"},
    {TK_NONE, "none"},
};
static_assert(AreInOrder(kKindNames, TK_NONE));

constexpr RowOf<tagLocation, const char*> kLocationNames[] = {
    {LOC_INPUT, "input"}, {LOC_OUTPUT, "output"}, {LOC_MEMORY, "memory"}};
static_assert(AreInOrder(kLocationNames, LOC_MEMORY));

constexpr RowOf<tagSize, const char*> kSizeNames[] = {{SIZE_BIT, "bit"},
                                                      {SIZE_BYTE, "byte"},
                                                      {SIZE_WORD, "word"},
                                                      {SIZE_DWORD, "double word"},
                                                      {SIZE_LWORD, "long word"}};
static_assert(AreInOrder(kSizeNames, SIZE_LWORD));

// The text of a token. The scanner cuts that of a long one, and keeps the whole of it apart.
std::u16string_view WholeText(const Scanner& scanner, const Token& token) {
    if (scanner.HasLostText()) {
        throw std::bad_alloc();
    }
    return scanner.IsHugeBufComplete()
               ? std::u16string_view(scanner.GetSrcEx(),
                                     static_cast<size_t>(scanner.GetHugeBufLen() - 1))
               : std::u16string_view(token.text);
}

// The value of a well-formed string.
std::u16string DecodedString(std::u16string_view literal) {
    std::u16string value;
    const auto hex = [](char16_t c) { return chars::HexValue(c); };
    for (size_t at = 1; at < literal.size() && literal[at] != literal[0]; ++at) {
        const char16_t c = literal[at];
        if (c != u'$') {
            value.append(c == u'\n' ? 0 : 1, c);
        } else if (const scanner::Escape* escape = scanner::FindEscape(literal[++at])) {
            value.append(escape->stored, escape->stored[1] != 0 ? 2 : 1);
        } else {
            value += static_cast<char16_t>(hex(literal[at]) * 16 + hex(literal[at + 1]));
            ++at;
        }
    }
    return value;
}

// The numeric part of a well-formed address.
std::u16string AddressDigits(std::u16string_view address) {
    std::u16string digits(address.substr(chars::IsDigit(address[2]) ? 2 : 3));
    std::erase(digits, u'_');
    return digits;
}

// The value of a token whose value is a text. For a long token it is worked out anew, because the
// scanner's own value is cut, too.
std::string TextValue(const Token& token, std::u16string_view whole) {
    constexpr size_t kDelimiter = 2;  // "(*"
    const bool isAddress = token.kind == TK_ADDRESS;
    if (whole.size() < Scanner::kBufferSize - 1) {
        return EncodeUtf8(isAddress ? token.GetAddress()->text : token.GetValueText());
    }
    return EncodeUtf8(isAddress                 ? AddressDigits(whole)
                      : token.kind == TK_STRING ? DecodedString(whole)
                                                : std::u16string(whole.substr(
                                                      kDelimiter, whole.size() - 2 * kDelimiter)));
}

std::string TimeValue(const Token& token) {
    return ValueText(Val(static_cast<uint16_t>(token.kind), *token.GetTime(), 0));
}

// What the token's value says beyond its text; the empty text when that is nothing.
std::string TokenValue(const Token& token, std::u16string_view whole) {
    switch (token.kind) {
        case TK_ERROR:
            return ScanErrorText(static_cast<int32_t>(token.GetNumber()));
        case TK_INTEGER:
        case TK_BASED_INTEGER:
        case TK_RANGE_START:
            return std::to_string(token.GetNumber());
        case TK_REAL: {
            CLQString text;
            text._gcvt(token.GetReal(), 17);
            return EncodeUtf8(text.GetText());
        }
        case TK_COMMENT:
        case TK_STRING:
            return TextValue(token, whole);
        case TK_ADDRESS: {
            const Address& address = *token.GetAddress();
            return std::string(kLocationNames[address.location].value) + " " +
                   kSizeNames[address.size].value + " " + TextValue(token, whole);
        }
        case TK_TIME:
        case TK_TIME_OF_DAY:
            return TimeValue(token) + " ms";
        case TK_DATE:
        case TK_DATE_AND_TIME:
            return TimeValue(token) + " s";
        default:
            return "";
    }
}

// A token as it is shown.
struct ShownToken {
    uint32_t line;  // where it begins
    uint32_t column;
    int32_t kind;
    std::string text;
    std::string value;
};

std::string TokenJson(const ShownToken& token) {
    std::string json = "{\"line\":" + std::to_string(token.line) +
                       ",\"column\":" + std::to_string(token.column) + ",\"kind\":\"" +
                       kKindNames[token.kind].value + "\",\"text\":";
    AppendJson(json, token.text);
    const bool isError = token.kind == TK_ERROR;
    if (isError || !token.value.empty()) {
        json += isError ? ",\"error\":" : ",\"value\":";
        AppendJson(json, token.value);
    }
    return json + "}";
}

// Prints tokens, each as it is found.
class TokenPrinter {
  public:
    explicit TokenPrinter(const ScanOptions& options)
        : options_(options), name_(DisplayName(options.source)) {
        if (options.json) {
            PrintLine("{\"schema\": " + std::to_string(kJsonSchema) +
                      ", \"source\": " + JsonText(name_, -1) + ", \"tokens\": [");
        }
    }

    void Take(const ShownToken& token) {
        const Place place = {name_, token.line, token.column};
        if (options_.json) {
            PrintLine(separator_ + TokenJson(token));
            separator_ = ",";
        } else if (options_.errorsOnly) {
            PrintLine(ToText(place) + ": " + token.value + ": " + OneLine(token.text));
        } else {
            PrintLine(std::to_string(place.line) + ":" + std::to_string(place.column) + "\t" +
                      kKindNames[token.kind].value + "\t" + OneLine(token.text) +
                      (token.value.empty() ? "" : "\t" + OneLine(token.value)));
        }
    }

    void End() {
        if (options_.json) {
            PrintLine("]}");
        }
    }

  private:
    const ScanOptions& options_;
    std::string name_;
    const char* separator_ = "";
};

// Scans the text; whether all of it is well-formed.
bool Scan(const ScanOptions& options, const std::u16string& text) {
    const auto length = static_cast<int32_t>(text.size());
    MEMSTREAM_W stream(text.c_str(), length, length, nullptr);  // outlives its scanner
    const std::unique_ptr<Scanner> scanner(static_cast<Scanner*>(Scanner::CreateObject()));
    if (!scanner) {
        throw std::bad_alloc();
    }
    RegisterKeywords(*scanner);
    scanner->Initialize(stream);
    if (!scanner->CanRead()) {
        throw std::bad_alloc();
    }

    bool hasErrors = false;
    host::TokenColumns columns(text);
    TokenPrinter printer(options);
    const auto progress =
        Progress::OfResults(Say("scanning {}", DisplayName(options.source)), text.size());
    for (Token token = scanner->GetToken(); token.kind != TK_EOF; token = scanner->GetToken()) {
        const uint32_t column = columns.Next(*scanner, token);
        hasErrors = hasErrors || token.kind == TK_ERROR;
        if (!options.errorsOnly || token.kind == TK_ERROR) {
            const std::u16string_view whole = WholeText(*scanner, token);
            printer.Take(
                {columns.Line(), column, token.kind, EncodeUtf8(whole), TokenValue(token, whole)});
        }
        if (progress) {
            progress->Set(static_cast<uint64_t>(scanner->GetStreamPosition()));
        }
    }
    printer.End();
    return !hasErrors;
}

}  // namespace

int RunScan(const ScanOptions& options) {
    static_assert(kMaxText <= INT32_MAX);
    const std::u16string text = DecodeInput(options.source, ReadInput(options.source, kMaxText));
    const std::string name = DisplayName(options.source);
    bool isFine = Scan(options, text);
    // That character ends the input wherever it stands; old editors put it at the very end.
    const size_t mark = text.find(Scanner::kEndOfInput);
    if (mark != text.npos && mark + 1 < text.size()) {
        PrintMessage(PlaceBehind(name, std::u16string_view(text).substr(0, mark)),
                     Say("the text behind the character U+001A was not read"));
        isFine = false;
    }
    return isFine ? kDone : kInputHasFaults;
}

}  // namespace lq::tool
