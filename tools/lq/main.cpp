// The command-line tool.
#include <cstdlib>
#include <exception>
#include <iostream>
#include <new>
#include <string>
#include <string_view>
#include <vector>

#include "lq_data/code_page.h"
#include "lq_data/host/text/message.h"
#include "tools/lq/command.h"
#include "tools/lq/command_line.h"
#include "tools/lq/messages.h"
#include "tools/lq/output_file.h"
#include "tools/lq/process.h"

namespace {

using namespace lq::tool;

// That of the registered code page; where none is registered, that of the environment.
uint32_t CodePageOfMessages() {
    constexpr uint32_t kJapanese = 932;
    uint32_t codePage = lq::frame::kDefaultCodePage;
    if (lq::frame::ReadRegisteredCodePage(codePage)) {
        return codePage;
    }
    for (const char* name : {"LC_ALL", "LC_MESSAGES", "LANG"}) {
        const char* const locale = std::getenv(name);
        if (locale && *locale) {
            return std::string_view(locale).starts_with("ja") ? kJapanese : codePage;
        }
    }
    return codePage;
}

// Parses the command line and runs the chosen command.
int Run(int argc, char** argv) {
    CommandLine commandLine;
    const int status = commandLine.Parse({argv + std::min(argc, 1), argv + argc})();
    std::cout.flush();
    if (!std::cout) {
        throw CommandError(lq::host::Say("standard output cannot be written") + SavedNote());
    }
    return status;
}

}  // namespace

int main(int argc, char** argv) {
    PrepareProcess();
    lq::host::UseLanguage(CodePageOfMessages());
    try {
        return Run(argc, argv);
    } catch (const CommandError& e) {
        PrintMessage(e);
    } catch (const std::bad_alloc&) {
        PrintMessage(CommandError(lq::host::Say("memory is short")));
    } catch (const std::exception& e) {
        PrintMessage(CommandError(e.what()));
    }
    return kCannotWork;
}
