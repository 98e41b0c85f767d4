#include "tools/lq/generate.h"

#include "tools/lq/command.h"
#include "tools/lq/command_line.h"

namespace lq::tool {

using host::Say;

namespace {

constexpr struct {
    const char* kind;
    std::string (*generate)(const ProgramText&);
} kGenerators[] = {
    {"man", ManPage},
    {"bash", BashCompletion},
    {"zsh", ZshCompletion},
    {"fish", FishCompletion},
};

ParameterText Describe(const CLI::Option& option) {
    ParameterText text;
    for (const std::string& name : option.get_snames()) {
        text.names.push_back("-" + name);
    }
    for (const std::string& name : option.get_lnames()) {
        text.names.push_back("--" + name);
    }
    if (option.get_positional()) {
        text.names.push_back(option.get_name());
    }
    text.value = option.get_expected_max() == 0 ? "" : option.get_type_name();
    text.description = option.get_description();
    text.isRepeatable = option.get_items_expected_max() > 1;
    return text;
}

CommandText Describe(const CLI::App& app) {
    CommandText text{app.get_name(), app.get_description(), app.get_footer(), {}, {}};
    for (const CLI::Option* option : app.get_options()) {
        (option->get_positional() ? text.arguments : text.options).push_back(Describe(*option));
    }
    return text;
}

}  // namespace

std::string Generate(const CommandLine& commandLine, const std::string& kind) {
    ProgramText text{Describe(commandLine.App()), {}};
    for (const CLI::App* command : commandLine.App().get_subcommands({})) {
        text.commands.push_back(Describe(*command));
    }
    for (const auto& generator : kGenerators) {
        if (kind == generator.kind) {
            return generator.generate(text);
        }
    }
    throw CommandError(
        Say("nothing of the kind '{}' is generated; the kinds are {}", kind, Say(kGeneratedKinds)));
}

}  // namespace lq::tool
