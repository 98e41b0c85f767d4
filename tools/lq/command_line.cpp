#include "tools/lq/command_line.h"

#include <algorithm>
#include <cstring>
#include <memory>

#include "lq_data/host/text/message.h"
#include "tools/lq/command.h"
#include "tools/lq/generate.h"
#include "tools/lq/output.h"
#include "tools/lq/suggestion.h"
#include "tools/lq/tables.h"
#include "tools/lq/terminal.h"

namespace lq::tool {

using host::Say;

namespace {

constexpr char kValueCommand[] = "value";
constexpr char kReportCommand[] = "report";
constexpr char kHelpCommand[] = "help";
constexpr bool kHasReport = LQ_REPORT;
constexpr char kCountsUses[] = "Counts how often variables are used in bodies and values";

// Help that begins with the example.
class HelpFormatter : public CLI::Formatter {
  public:
    std::string make_help(const CLI::App* app, std::string name,
                          CLI::AppFormatMode mode) const override {
        return Wrapped("Example:\n  " + app->get_footer() + "\n\n" + make_description(app) + "\n" +
                       make_usage(app, name) + make_positionals(app) + make_groups(app, mode) +
                       make_subcommands(app, mode) + ExitStatuses());
    }

  private:
    static constexpr size_t kColumns = 80;

    // Lines that are longer are broken between words, and go on in the column of descriptions.
    std::string Wrapped(const std::string& text) const {
        std::string wrapped;
        size_t start = 0;  // of the line
        for (const char c : text) {
            wrapped += c;
            start = c == '\n' ? wrapped.size() : start;
            const size_t blank = wrapped.rfind(' ');
            if (wrapped.size() - start > kColumns && blank != wrapped.npos &&
                blank > start + get_column_width()) {
                wrapped.replace(blank, 1, "\n" + std::string(get_column_width(), ' '));
                start = blank + 1;
            }
        }
        return wrapped;
    }

    static std::string ExitStatuses() {
        std::string text = "\nExit status:\n";
        for (const auto& [status, meaning] : kExitStatuses) {
            text += "  " + std::string(status) + std::string(5 - std::strlen(status), ' ') +
                    meaning + "\n";
        }
        return text;
    }
};

CLI::Option* NeverEmpty(CLI::Option* option) {
    return option->check([](const std::string& text) { return text.empty() ? "empty" : ""; });
}

template <typename Value>  // a text, or a list of them
CLI::Option* AddFile(CLI::App* command, const char* name, Value& value, const char* description) {
    return NeverEmpty(command->add_option(name, value, description)->type_name(kFileValue));
}

void AddName(CLI::App* command, const char* name, std::string& value, const char* description) {
    command->add_option(name, value, description)->type_name(kNameValue)->required();
}

// How the files are read.
void AddReading(CLI::App* command, ProjectFiles& files) {
    NeverEmpty(command
                   ->add_option("--ending", files.endings,
                                "A further ending of files in folders; may be repeated")
                   ->type_name(kEndingValue)
                   ->allow_extra_args(false));
    NeverEmpty(command
                   ->add_option("--encoding", files.encoding,
                                "The code page of texts: windows-1252 or shift_jis")
                   ->type_name(kEncodingValue));
}

void AddLibraries(CLI::App* command, ProjectFiles& files) {
    AddFile(command, "-l,--library", files.libraries,
            "A file whose units and types are known, and not the project's; may be repeated")
        ->allow_extra_args(false);
    command->add_flag("--check-libraries", files.checkLibraries,
                      "Reports what is wrong with the libraries, too");
    AddReading(command, files);
}

void AddProject(CLI::App* command, ProjectFiles& files) {
    AddFile(
        command, "project", files.projects,
        "The project file, XML or text, or a folder; several are one project; - for standard input")
        ->required();
    AddLibraries(command, files);
}

// Of a command that has further arguments.
void AddOneProject(CLI::App* command, ProjectFiles& files) {
    const auto take = [&files](const std::string& path) { files.projects = {path}; };
    NeverEmpty(
        command
            ->add_option_function<std::string>(
                "project", take, "The project file, XML or text, or a folder; - for standard input")
            ->type_name(kFileValue)
            ->required());
    AddFile(command, "-w,--with", files.others, "A further file of the project; may be repeated")
        ->allow_extra_args(false);
    AddLibraries(command, files);
}

void AddInput(CLI::App* command, ProjectFiles& files) {
    AddFile(command, "input", files.projects,
            "A project, several files or a folder are one; or an image; - for standard input")
        ->required();
    AddLibraries(command, files);
}

std::string TableNames() {
    std::string names;
    for (const auto& [id, name] : kTableNames) {
        names += (id == 0 ? "" : id == CgTab::TAB_ARR ? " or " : ", ") + std::string(name);
    }
    return names;
}

// Takes the constants out of the arguments of the value command: they may begin with a sign, as
// options do.
std::vector<std::string> TakeConstants(std::vector<std::string>& arguments) {
    std::vector<std::string> constants;
    std::vector<std::string> others;
    bool isBehindMark = false;
    bool isColor = false;  // the next one is that option's value
    for (const std::string& argument : arguments) {
        const bool isCommand = &argument == &arguments.front();
        const bool isOption = argument.starts_with("--") || argument == "-u" || argument == "-h" ||
                              argument == "-q" || isColor;
        isColor = argument == "--color";
        if (!isBehindMark && argument == "--") {
            isBehindMark = true;
        } else if (isCommand || (isOption && !isBehindMark)) {
            others.push_back(argument);
        } else {
            constants.push_back(argument);
        }
    }
    arguments = std::move(others);
    return constants;
}

// What "help show" asks for is what "show --help" does.
void TurnHelp(std::vector<std::string>& arguments) {
    if (!arguments.empty() && arguments.front() == kHelpCommand) {
        arguments.erase(arguments.begin());
        const bool isNamed = !arguments.empty() && !arguments.front().starts_with('-');
        arguments.insert(arguments.begin() + (isNamed ? 1 : 0), "--help");
    }
}

std::vector<std::string> CommandNames(const CLI::App& app) {
    std::vector<std::string> names;
    for (const CLI::App* command : app.get_subcommands({})) {
        names.push_back(command->get_name());
    }
    return names;
}

}  // namespace

CommandLine::CommandLine() : app_("Works with the data of IEC 61131-3 projects.", "lq") {
    app_.formatter(std::make_shared<HelpFormatter>());
    app_.set_help_flag("-h,--help", "Prints this help");
    app_.set_version_flag("--version", "lq " LQ_VERSION, "Prints the version");
    app_.add_option("--generate", generated_,
                    "Prints the man page or a completion: " + std::string(kGeneratedKinds))
        ->type_name(kKindValue);
    app_.footer("lq translate plant.xml -o plant.lqt");
    app_.require_subcommand(0, 1);
    AddCommands();
}

// A command that runs `run` with its options.
template <typename Options>
CLI::App* CommandLine::AddCommand(const char* name, const char* description, const char* example,
                                  Options& options, int (*run)(const Options&)) {
    CLI::App* command = app_.add_subcommand(name, description);
    command->footer(example);
    if constexpr (requires { options.json; }) {
        command->add_flag("--json", options.json, "Prints the result as JSON");
    }
    AddManners(command);
    command->callback(
        [this, &options, run] { chosen_ = [&options, run] { return run(options); }; });
    return command;
}

void CommandLine::AddCommands() {
    CLI::App* command = AddCommand("translate", "Fills the tables from a PLCopen XML project",
                                   "lq translate plant.xml -o plant.lqt", translate_, RunTranslate);
    AddProject(command, translate_.files);
    AddFile(command, "-o,--output", translate_.output,
            "The image of the tables to write; - for standard output");
    command->add_flag("--uses", translate_.uses, kCountsUses);

    command = AddCommand("show", "Shows the tables of an image or a project",
                         "lq show plant.lqt --table globals --find Pressures", show_, RunShow);
    AddInput(command, show_.files);
    command
        ->add_option("-t,--table", show_.tables, "A table: " + TableNames() + "; may be repeated")
        ->type_name(kTableValue)
        ->allow_extra_args(false);
    command
        ->add_option("-f,--find", show_.find,
                     "Only the lines of this name; A.B is the component B of the unit A")
        ->type_name(kNameValue);
    AddFile(command, "-s,--save,-o,--output", show_.save, "Writes the tables to an image again");

    if constexpr (kHasReport) {
        command =
            AddCommand(kReportCommand, "Writes a page for the browser with the tables, linked",
                       "lq report plant.xml -o plant.html", report_, RunReport);
        AddInput(command, report_.files);
        AddFile(command, "-o,--output", report_.output, "The page to write; - for standard output")
            ->required();
    }

    command = AddCommand("scan", "Shows the tokens of a source text, one a line",
                         "lq scan --errors mixer.st", scan_, RunScan);
    AddFile(command, "source", scan_.source, "The source file; - for standard input")->required();
    command->add_flag("-e,--errors", scan_.errorsOnly,
                      "Only what is malformed, as file:line:column: message");

    command = AddCommand(kValueCommand, "Shows what constants are and which types hold them",
                         "lq value 300 -5 T#1h30m 16#FF", value_, RunValue);
    command
        ->add_option("constant", value_.texts,
                     "The constants; - reads them from standard input, one a line")
        ->type_name("TEXT");
    command->add_flag("-u,--unsigned", value_.unsignedOnly,
                      "Reads integers as bit strings, without a sign");

    command = AddCommand("pou", "Shows the header of a unit or data type",
                         "lq pou plant.xml Dosing --interface", pou_, RunPou);
    AddOneProject(command, pou_.files);
    AddName(command, "name", pou_.name, "The unit or data type");
    command->add_flag("-i,--interface", pou_.interfaceOnly, "Only its parameters");

    command = AddCommand("fb", "Tells of which function block an instance is",
                         "lq fb plant.xml Mixing stirring", fb_, RunFb);
    AddOneProject(command, fb_.files);
    AddName(command, "pou", fb_.pou, "The unit that uses the instance");
    AddName(command, "instance", fb_.instance, "The instance, the unit's or a global one");

    command = AddCommand("tasks", "Shows the tasks of a project and their programs",
                         "lq tasks plant.xml", tasks_, RunTasks);
    AddProject(command, tasks_.files);

    AddCheck();
    AddSymbols();

    command = AddCommand("diff", "Tells what is different between two projects",
                         "lq diff old.xml plant.xml", diff_, RunDiff);
    AddFile(command, "old", diff_.before, "A project or an image; - for standard input")
        ->required();
    AddFile(command, "new", diff_.after, "What it is compared with, a project or an image")
        ->required();
    AddReading(command, diff_.reading);

    command = AddCommand("uses", "Shows where a name is used, and what is done with it there",
                         "lq uses plant.xml Mixing.litres", uses_, RunUses);
    AddOneProject(command, uses_.files);
    AddName(command, "name", uses_.name,
            "A variable, unit, type or value; A.B is the B of the unit, type or configuration A");

    AddCommand("types", "Shows the type catalogue with sizes", "lq types --json", types_, RunTypes);
    AddHelp();
}

// Every command has them.
void CommandLine::AddManners(CLI::App* command) {
    command->add_flag("-q,--quiet", isQuiet_,
                      "Prints no messages on the input: the exit status tells of them");
    NeverEmpty(
        command
            ->add_option("--color", color_,
                         "Prints titles in bold: auto, that is on terminals, always or never")
            ->type_name(kWhenValue));
}

void CommandLine::UseManners(const std::string& command) const {
    struct Named {
        std::string_view name;
        Color color;
    };
    constexpr Named kColors[] = {{"", Color::kAuto},
                                 {"auto", Color::kAuto},
                                 {"always", Color::kAlways},
                                 {"never", Color::kNever}};
    const auto* const color = std::ranges::find(kColors, color_, &Named::name);
    if (color == std::end(kColors)) {
        throw CommandError(command + ": " +
                           Say("the option '{}' cannot have the value '{}'", "--color", color_) +
                           SeeHelp(command));
    }
    UseColor(color->color);
    if (isQuiet_) {
        BeQuiet();
    }
}

void CommandLine::AddHelp() {
    CLI::App* command = app_.add_subcommand(kHelpCommand, "Explains a command");
    command->footer("lq help show");
    command->add_option("command", topic_, "The command; none for all of them")
        ->type_name(kCommandValue);
}

void CommandLine::AddCheck() {
    CLI::App* command =
        AddCommand("check", "Looks for what is wrong with a project, or hardly ever meant",
                   "lq check plant.xml --fail-on warning", check_, RunCheck);
    AddFile(command, "project", check_.files.projects,
            "The project file, XML or text, or a folder; several are one project; - for standard "
            "input");
    AddLibraries(command, check_.files);
    const auto addList = [command](const char* name, std::vector<std::string>& value,
                                   const char* description, const char* type) {
        NeverEmpty(command->add_option(name, value, description)
                       ->type_name(type)
                       ->allow_extra_args(false));
    };
    const auto add = [command](const char* name, std::string& value, const char* description,
                               const char* type) {
        NeverEmpty(command->add_option(name, value, description)->type_name(type));
    };
    addList("-i,--ignore", check_.ignore, "Leaves out a code, a name or a family, as in 3xxx",
            kCodeValue);
    addList("--only", check_.only, "Looks for this code, name or family alone", kCodeValue);
    addList("-s,--severity", check_.severity, "Makes it off, note, warning or error",
            kSeverityValue);
    add("-a,--addresses", check_.addresses,
        "What the numbers of addresses are: separate, byte or element", kModelValue);
    add("--edition", check_.edition, "Of the standard, 2 or 3; 2 forbids recursion", kEditionValue);
    add("--fail-on", check_.failOn, "What makes the exit status 1: error, warning, note or never",
        kFailureValue);
    add("--max-name", check_.maxName, "How many characters name-too-long allows", kLengthValue);
    command->add_flag("--closed", check_.closed, "All files of the project are given");
    AddFile(command, "-b,--baseline", check_.baseline,
            "A former result of --json, whose findings are left out");
    add("-f,--format", check_.format, "text, json, jsonl or sarif", kFormatValue);
    AddFile(command, "-o,--output", check_.output, "The file to write; - for standard output");
    command->add_flag("--list", check_.list, "Lists the checks");
    add("-x,--explain", check_.explain, "Explains a code, a name or a family", kCodeValue);
}

void CommandLine::AddSymbols() {
    CLI::App* command =
        AddCommand("symbols", "Lists the variables that a project declares, with their addresses",
                   "lq symbols plant.xml --located --sort address", symbols_, RunSymbols);
    AddProject(command, symbols_.files);
    command->add_flag("--located", symbols_.located, "Only what has an address");
    NeverEmpty(command->add_option("-u,--unit", symbols_.unit, "Only the variables of this unit")
                   ->type_name(kNameValue));
    NeverEmpty(command
                   ->add_option("-s,--sort", symbols_.sort,
                                "By " + std::string(kSymbolOrders) + ", not as in the project")
                   ->type_name(kOrderValue));
    command->add_flag("-e,--expand", symbols_.expand,
                      "Lists the members of structures and instances in their place");
    command->add_flag("--uses", symbols_.uses, kCountsUses);
    command->add_flag("--csv", symbols_.csv, "Prints the result as CSV");
    NeverEmpty(command
                   ->add_option("-d,--delimiter", symbols_.delimiter,
                                "What stands between the cells of CSV, in place of a comma")
                   ->type_name(kCharacterValue));
    command->add_flag("--no-formulas", symbols_.noFormulas,
                      "Puts an apostrophe before cells of CSV that a spreadsheet would calculate");
    command->add_flag("--bom", symbols_.mark, "Begins CSV with a byte order mark");
    AddFile(command, "-o,--output", symbols_.output, "The file to write; - for standard output");
}

std::function<int()> CommandLine::Parse(std::vector<std::string> arguments) {
    const std::vector<std::string> names = CommandNames(app_);
    TurnHelp(arguments);
    const std::string first = arguments.empty() ? "" : arguments.front();
    const bool isCommand = std::find(names.begin(), names.end(), first) != names.end();
    if (!kHasReport && first == kReportCommand) {
        throw CommandError(Say("this lq was built without its report"));
    }
    if (!isCommand && !first.starts_with('-') && !first.empty()) {
        throw CommandError(Say("no command is called '{}'", first) +
                           DidYouMean(first, names, SeeHelp()));
    }
    std::vector<std::string> constants;
    if (first == kValueCommand) {
        constants = TakeConstants(arguments);
    }
    const std::string last = arguments.empty() ? "" : arguments.back();
    std::reverse(arguments.begin(), arguments.end());
    try {
        app_.parse(std::move(arguments));
    } catch (const CLI::Success& e) {  // help and version
        const std::string text = dynamic_cast<const CLI::CallForVersion*>(&e)
                                     ? std::string(e.what()) + "\n"
                                     : app_.help();
        return [text] {
            PrintText(text);
            return 0;
        };
    } catch (const CLI::ParseError& e) {
        throw UsageFault(app_, e, last);
    }
    value_.texts = std::move(constants);
    if (!generated_.empty()) {
        return [this] {
            PrintText(Generate(*this, generated_));
            return 0;
        };
    }
    if (!chosen_) {
        throw CommandError(Say("no command was given") + SeeHelp());
    }
    UseManners(first);
    return chosen_;
}

}  // namespace lq::tool
