// The command-line tool.
#include <csignal>
#include <exception>
#include <iostream>
#include <new>
#include <string>
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
    lq::host::UseLanguage(lq::frame::ReadCodePage());
    try {
        return Run(argc, argv);
    } catch (const CommandError& e) {
        PrintMessage(e);
    } catch (const std::bad_alloc&) {
        PrintMessage(lq::host::Say("memory is short"));
    } catch (const std::exception& e) {
        PrintMessage(e.what());
    }
    return kCannotWork;
}
