// The command line: the one definition of the commands and their options, from which help, man page
// and completions come.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include <CLI/CLI.hpp>

#include "tools/lq/command.h"
#include "tools/lq/commands.h"

namespace lq::tool {

// What an option's value or an argument is: its name in help, and what completions offer.
inline constexpr char kFileValue[] = "FILE";
inline constexpr char kTableValue[] = "TABLE";
inline constexpr char kNameValue[] = "NAME";
inline constexpr char kKindValue[] = "KIND";
inline constexpr char kCodeValue[] = "CODE";
inline constexpr char kSeverityValue[] = "CODE=SEVERITY";
inline constexpr char kModelValue[] = "MODEL";
inline constexpr char kEditionValue[] = "EDITION";
inline constexpr char kFailureValue[] = "LEAST";
inline constexpr char kFormatValue[] = "FORMAT";
inline constexpr char kLengthValue[] = "LENGTH";
inline constexpr char kOrderValue[] = "ORDER";
inline constexpr char kEndingValue[] = "ENDING";
inline constexpr char kEncodingValue[] = "ENCODING";
inline constexpr char kCharacterValue[] = "CHARACTER";
inline constexpr char kWhenValue[] = "WHEN";
inline constexpr char kCommandValue[] = "COMMAND";

// Of all commands, each with what it means.
inline constexpr struct {
    const char* status;
    const char* meaning;
} kExitStatuses[] = {
    {"0", "Done"},
    {"1", "The input has faults, or not the name that was looked for; of diff, the inputs differ"},
    {"2", "The command could not do its work"},
    {"141", "Whoever read the results left before their end"},
};

class CommandLine {
  public:
    CommandLine();
    CommandLine(const CommandLine&) = delete;
    CommandLine& operator=(const CommandLine&) = delete;

    // What the arguments ask for; to be called once. Throws CommandError when they cannot be
    // understood.
    std::function<int()> Parse(std::vector<std::string> arguments);

    // Its footer, and each command's, is an example.
    const CLI::App& App() const { return app_; }

  private:
    template <typename Options>
    CLI::App* AddCommand(const char* name, const char* description, const char* example,
                         Options& options, int (*run)(const Options&));
    void AddCommands();
    void AddCheck();
    void AddSymbols();
    void AddHelp();
    void AddManners(CLI::App* command);
    void UseManners(const std::string& command) const;

    CLI::App app_;
    std::string generated_;  // what to generate
    std::function<int()> chosen_;
    bool isQuiet_ = false;
    std::string color_;
    std::string topic_;  // what help is asked for

    TranslateOptions translate_;
    ShowOptions show_;
    ReportOptions report_;
    ScanOptions scan_;
    ValueOptions value_;
    PouOptions pou_;
    FbOptions fb_;
    TasksOptions tasks_;
    CheckOptions check_;
    SymbolsOptions symbols_;
    DiffOptions diff_;
    UsesOptions uses_;
    TypesOptions types_;
};

// Why the arguments cannot be understood, in the tool's own words and the user's language: the
// sentence on what the parser threw, with the help of the command that it was in. `last` is the
// last argument. An error without a sentence keeps the parser's words.
CommandError UsageFault(const CLI::App& app, const CLI::ParseError& error, const std::string& last);

}  // namespace lq::tool
