#include "tools/lq/terminal.h"

#include <cstdlib>
#include <string_view>
#include <sys/ioctl.h>
#include <unistd.h>

namespace lq::tool {

namespace {

Color color = Color::kAuto;
bool isQuiet = false;

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
    const char* noColour = std::getenv("NO_COLOR");
    const bool isPlain = (noColour && *noColour) || !CanControl(stream);
    return color == Color::kNever || (color == Color::kAuto && isPlain)
               ? text
               : "\x1B[1m" + text + "\x1B[0m";
}

}  // namespace lq::tool
