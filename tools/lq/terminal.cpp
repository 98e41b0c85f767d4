#include "tools/lq/terminal.h"

#include <cstdlib>
#include <string_view>
#include <sys/ioctl.h>
#include <unistd.h>

namespace lq::tool {

namespace {

Color color = Color::kAuto;
bool isQuiet = false;

// Asks the system once, as there may be many lines to print: each stream when it is first printed
// to, since a file may take its place until then.
bool ShowsBold(Stream stream) {
    static const char* const noColour = std::getenv("NO_COLOR");
    if (noColour && *noColour) {
        return false;
    }
    if (stream == Stream::kMessages) {
        static const bool canShow = CanControl(Stream::kMessages);
        return canShow;
    }
    static const bool canShow = CanControl(Stream::kResults);
    return canShow;
}

}  // namespace

void UseColor(Color wanted) {
    color = wanted;
}

void BeQuiet() {
    isQuiet = true;
}

bool IsQuiet() {
    return isQuiet;
}

bool IsTerminal(Stream stream) {
    return isatty(static_cast<int>(stream)) != 0;
}

bool CanControl(Stream stream) {
    const char* kind = std::getenv("TERM");
    return IsTerminal(stream) && kind && *kind && std::string_view(kind) != "dumb";
}

size_t Columns(Stream stream) {
    constexpr size_t kUsual = 80;
    winsize size = {};
    const bool isKnown =
        ioctl(static_cast<int>(stream), TIOCGWINSZ, &size) == 0 && size.ws_col != 0;
    return isKnown ? size.ws_col : kUsual;
}

std::string Bold(Stream stream, const std::string& text) {
    return color == Color::kAlways || (color == Color::kAuto && ShowsBold(stream))
               ? "\x1B[1m" + text + "\x1B[0m"
               : text;
}

}  // namespace lq::tool
