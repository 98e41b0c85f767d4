// The command-line tool.
#include <algorithm>
#include <exception>
#include <functional>
#include <iostream>
#include <new>
#include <string>
#include <utility>
#include <vector>

#include <CLI/CLI.hpp>

#include "tools/lq/command.h"
#include "tools/lq/commands.h"
#include "tools/lq/process.h"

namespace {

using namespace lq::tool;

// The chosen command, with its options.
std::function<int()> chosen;

// A command that runs `run` with its options.
template <typename Options>
CLI::App* AddCommand(CLI::App& app, const char* name, const char* description, const char* example,
                     Options& options, int (*run)(const Options&)) {
    CLI::App* command = app.add_subcommand(name, description);
    command->footer(std::string("Example:\n  ") + example + "\n");
    command->add_flag("--json", options.json, "Prints the result as JSON");
    command->callback([&options, run] { chosen = [&options, run] { return run(options); }; });
    return command;
}

void AddRequired(CLI::App* command, const char* name, std::string& value, const char* description) {
    command->add_option(name, value, description)->required();
}

void AddProject(CLI::App* command, std::string& value) {
    AddRequired(command, "project", value, "The project file; - for standard input");
}

void AddTranslate(CLI::App& app) {
    static TranslateOptions options;
    CLI::App* command = AddCommand(app, "translate", "Fills the tables from a PLCopen XML project",
                                   "lq translate plant.xml -o plant.lqt", options, RunTranslate);
    AddProject(command, options.project);
    command->add_option("-o,--output", options.output,
                        "The image of the tables to write; - for standard output");
}

void AddShow(CLI::App& app) {
    static ShowOptions options;
    CLI::App* command =
        AddCommand(app, "show", "Shows the tables of an image or a project",
                   "lq show plant.lqt --table globals --find Pump1", options, RunShow);
    AddRequired(command, "input", options.input, "An image or a project; - for standard input");
    command->add_option("-t,--table", options.tables,
                        "A table: debug, units, components, globals, addresses, constants, labels, "
                        "temporaries, names or arrays; may be repeated");
    command->add_option("-f,--find", options.find,
                        "Only the lines of this name; A.B is the component B of the unit A");
    command->add_option("-s,--save", options.save, "Writes the tables to an image again");
}

void AddScan(CLI::App& app) {
    static ScanOptions options;
    CLI::App* command = AddCommand(app, "scan", "Shows the tokens of a source text, one a line",
                                   "lq scan --errors mixer.st", options, RunScan);
    AddRequired(command, "source", options.source, "The source file; - for standard input");
    command->add_flag("-e,--errors", options.errorsOnly,
                      "Only what is malformed, as file:line: message");
}

void AddValue(CLI::App& app) {
    static ValueOptions options;
    static CLI::App* const command = AddCommand(app, "value",
                                                "Shows what the constants TEXT... are and which "
                                                "types hold them; - reads them from standard "
                                                "input, one a line",
                                                "lq value 300 -5 T#1h30m 16#FF", options, RunValue);
    command->add_flag("-u,--unsigned", options.unsignedOnly,
                      "Reads integers as bit strings, without a sign");
    command->allow_extras();  // a constant may begin with a sign, as an option does
    command->parse_complete_callback([] { options.texts = command->remaining(); });
}

void AddPou(CLI::App& app) {
    static PouOptions options;
    CLI::App* command = AddCommand(app, "pou", "Shows the header of a unit or data type",
                                   "lq pou plant.xml Dosing --interface", options, RunPou);
    AddProject(command, options.project);
    AddRequired(command, "name", options.name, "The unit or data type");
    command->add_flag("-i,--interface", options.interfaceOnly, "Only its parameters");
}

void AddFb(CLI::App& app) {
    static FbOptions options;
    CLI::App* command = AddCommand(app, "fb", "Tells of which function block an instance is",
                                   "lq fb plant.xml Mixing stirring", options, RunFb);
    AddProject(command, options.project);
    AddRequired(command, "pou", options.pou, "The unit that uses the instance");
    AddRequired(command, "instance", options.instance, "The instance, the unit's or a global one");
}

void AddTasks(CLI::App& app) {
    static TasksOptions options;
    CLI::App* command = AddCommand(app, "tasks", "Shows the tasks of a project and their programs",
                                   "lq tasks plant.xml", options, RunTasks);
    AddProject(command, options.project);
}

void AddTypes(CLI::App& app) {
    static TypesOptions options;
    AddCommand(app, "types", "Shows the type catalogue with sizes", "lq types --json", options,
               RunTypes);
}

// The status, when all results are written.
int EndOutput(int status) {
    std::cout.flush();
    if (!std::cout) {
        throw CommandError("standard output cannot be written");
    }
    return status;
}

// Parses the command line and runs the chosen command.
int Run(int argc, char** argv) {
    CLI::App app("Works with the data of IEC 61131-3 projects.", "lq");
    app.require_subcommand(1);
    app.footer(
        "Exit status: 0 done, 1 the input has faults, 2 the command could not do its work.\n");
    AddTranslate(app);
    AddShow(app);
    AddScan(app);
    AddValue(app);
    AddPou(app);
    AddFb(app);
    AddTasks(app);
    AddTypes(app);
    try {
        std::vector<std::string> arguments(argv + 1, argv + argc);
        if (!arguments.empty() && arguments[0] == "value") {
            // Its constants may begin with a sign anyway, so the mark says nothing new.
            const auto mark = std::find(arguments.begin(), arguments.end(), "--");
            arguments.erase(mark, mark == arguments.end() ? mark : mark + 1);
        }
        std::reverse(arguments.begin(), arguments.end());
        app.parse(std::move(arguments));
    } catch (const CLI::ParseError& e) {
        if (e.get_exit_code() == 0) {
            app.exit(e);  // help
            return EndOutput(kDone);
        }
        throw CommandError(std::string(e.what()) + "; see lq --help");
    }
    return EndOutput(chosen());
}

}  // namespace

int main(int argc, char** argv) {
    PrepareProcess();
    try {
        return Run(argc, argv);
    } catch (const std::bad_alloc&) {
        std::cerr << "lq: memory is short\n";
    } catch (const std::exception& e) {
        std::cerr << "lq: " << e.what() << '\n';
    }
    return kCannotWork;
}
