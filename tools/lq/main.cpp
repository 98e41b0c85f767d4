// The command-line tool.
#include <exception>
#include <functional>
#include <iostream>
#include <new>
#include <string>

#include <CLI/CLI.hpp>

#include "tools/lq/command.h"
#include "tools/lq/commands.h"

namespace {

using namespace lq::tool;

// The chosen command, bound to its options.
std::function<int()> chosen;

CLI::App* AddCommand(CLI::App& app, const char* name, const char* description,
                     const char* example) {
    CLI::App* command = app.add_subcommand(name, description);
    command->footer(std::string("Example:\n  ") + example + "\n");
    return command;
}

void AddTranslate(CLI::App& app) {
    static TranslateOptions options;
    CLI::App* command = AddCommand(app, "translate", "Fills the tables from a PLCopen XML project",
                                   "lq translate plant.xml -o plant.lqt");
    command->add_option("project", options.project, "The project file; - for standard input")
        ->required();
    command->add_option("-o,--output", options.output,
                        "The image of the tables to write; - for standard output");
    command->add_flag("--json", options.json, "Prints the summary as JSON");
    command->callback([] { chosen = [] { return RunTranslate(options); }; });
}

void AddShow(CLI::App& app) {
    static ShowOptions options;
    CLI::App* command = AddCommand(app, "show", "Shows the tables of an image or a project",
                                   "lq show plant.lqt --table globals --find Pump1");
    command->add_option("input", options.input, "An image or a project; - for standard input")
        ->required();
    command->add_option("-t,--table", options.tables,
                        "A table: debug, units, components, globals, addresses, constants, labels, "
                        "temporaries, names or arrays; may be repeated");
    command->add_option("-f,--find", options.find,
                        "Only the lines of this name; A.B is the component B of the unit A");
    command->add_option("-s,--save", options.save, "Writes the tables to an image again");
    command->add_flag("--json", options.json, "Prints the tables as JSON");
    command->callback([] { chosen = [] { return RunShow(options); }; });
}

void AddScan(CLI::App& app) {
    static ScanOptions options;
    CLI::App* command = AddCommand(app, "scan", "Shows the tokens of a source text, one a line",
                                   "lq scan --errors mixer.st");
    command->add_option("source", options.source, "The source file; - for standard input")
        ->required();
    command->add_flag("-e,--errors", options.errorsOnly,
                      "Only what is malformed, as file:line: message");
    command->add_flag("--json", options.json, "Prints the tokens as JSON");
    command->callback([] { chosen = [] { return RunScan(options); }; });
}

void AddValue(CLI::App& app) {
    static ValueOptions options;
    static CLI::App* const command =
        AddCommand(app, "value", "Shows what the constants TEXT... are and which types hold them",
                   "lq value 300 -5 T#1h30m 16#FF");
    command->add_flag("-u,--unsigned", options.unsignedOnly,
                      "Reads integers as bit strings, without a sign");
    command->add_flag("--json", options.json, "Prints the values as JSON");
    command->allow_extras();  // a constant may begin with a sign, as an option does
    command->callback([] {
        options.texts = command->remaining();
        chosen = [] { return RunValue(options); };
    });
}

void AddPou(CLI::App& app) {
    static PouOptions options;
    CLI::App* command = AddCommand(app, "pou", "Shows the header of a unit or data type",
                                   "lq pou plant.xml Dosing --interface");
    command->add_option("project", options.project, "The project file; - for standard input")
        ->required();
    command->add_option("name", options.name, "The unit or data type")->required();
    command->add_flag("-i,--interface", options.interfaceOnly, "Only its parameters");
    command->add_flag("--json", options.json, "Prints the header as JSON");
    command->callback([] { chosen = [] { return RunPou(options); }; });
}

void AddFb(CLI::App& app) {
    static FbOptions options;
    CLI::App* command = AddCommand(app, "fb", "Tells of which function block an instance is",
                                   "lq fb plant.xml Mixing stirring");
    command->add_option("project", options.project, "The project file; - for standard input")
        ->required();
    command->add_option("pou", options.pou, "The unit that uses the instance")->required();
    command->add_option("instance", options.instance, "The instance, the unit's or a global one")
        ->required();
    command->add_flag("--json", options.json, "Prints the answer as JSON");
    command->callback([] { chosen = [] { return RunFb(options); }; });
}

void AddTasks(CLI::App& app) {
    static TasksOptions options;
    CLI::App* command = AddCommand(app, "tasks", "Shows the tasks of a project and their programs",
                                   "lq tasks plant.xml");
    command->add_option("project", options.project, "The project file; - for standard input")
        ->required();
    command->add_flag("--json", options.json, "Prints the tasks as JSON");
    command->callback([] { chosen = [] { return RunTasks(options); }; });
}

void AddTypes(CLI::App& app) {
    static TypesOptions options;
    CLI::App* command =
        AddCommand(app, "types", "Shows the type catalogue with sizes", "lq types --json");
    command->add_flag("--json", options.json, "Prints the catalogue as JSON");
    command->callback([] { chosen = [] { return RunTypes(options); }; });
}

}  // namespace

int main(int argc, char** argv) {
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
        app.parse(argc, argv);
    } catch (const CLI::ParseError& e) {
        if (e.get_exit_code() == 0) {
            return app.exit(e);  // help
        }
        std::cerr << "lq: " << e.what() << "; see lq --help\n";
        return kCannotWork;
    }
    try {
        const int status = chosen();
        std::cout.flush();
        if (!std::cout) {
            std::cerr << "lq: standard output cannot be written\n";
            return kCannotWork;
        }
        return status;
    } catch (const std::bad_alloc&) {
        std::cerr << "lq: memory is short\n";
    } catch (const std::exception& e) {
        std::cerr << "lq: " << e.what() << '\n';
    }
    return kCannotWork;
}
