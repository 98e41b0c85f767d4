#include "tools/lq/messages.h"

#include <algorithm>
#include <iostream>
#include <unistd.h>

#include "tools/lq/escape.h"
#include "tools/lq/output.h"
#include "tools/lq/output_file.h"
#include "tools/lq/progress.h"
#include "tools/lq/terminal.h"

namespace lq::tool {

namespace {

// In one piece, lest memory is short within it. A message that cannot be written has nobody to be
// told.
void PrintLineOf(const std::string& origin, const std::string& text) {
    const auto pause = Progress::Hide();
    std::cout.flush();  // what was printed before it comes before it
    WriteAll(STDERR_FILENO, Bold(Stream::kMessages, origin + ":") + ' ' + OneLine(text) + '\n');
}

}  // namespace

std::string ToText(const Place& place) {
    const auto number = [](uint32_t n) { return n == 0 ? "" : ":" + std::to_string(n); };
    return OneLine(place.file) + number(place.line) + number(place.column);
}

Place PlaceBehind(const std::string& file, std::u16string_view text) {
    const size_t lineStart = text.rfind(u'\n') + 1;  // 0 when there is none
    const auto isFirstHalf = [](char16_t c) { return c >= 0xD800 && c <= 0xDBFF; };
    const auto line = std::count(text.begin(), text.end(), u'\n') + 1;
    const std::u16string_view rest = text.substr(lineStart);
    const auto pairs = std::count_if(rest.begin(), rest.end(), isFirstHalf);
    return {file, static_cast<uint32_t>(line),
            static_cast<uint32_t>(rest.size() - static_cast<size_t>(pairs) + 1)};
}

InputError::InputError(const Place& place, const std::string& text)
    : CommandError(ToText(place), text) {}

void PrintMessage(const std::string& text) {
    PrintLineOf("lq", text);
}

void PrintMessage(const Place& place, const std::string& text) {
    PrintLineOf(ToText(place), text);
}

void PrintMessage(const host::Report& report) {
    host::Report rest = report;
    rest.file.clear();
    rest.line = 0;
    const std::string text = host::ToText(rest);  // ": the rest"
    PrintMessage(Place{report.file, report.line, report.column}, text.substr(2));
}

void PrintMessage(const CommandError& error) {
    PrintLineOf(error.Origin(), error.what());
}

}  // namespace lq::tool
