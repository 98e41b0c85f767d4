#include "tools/lq/usage_fault.h"

#include <algorithm>
#include <vector>

#include "lq_data/host/text/message.h"
#include "tools/lq/suggestion.h"

namespace lq::tool {

using host::Message;
using host::Say;

namespace {

template <typename Error>
bool Is(const CLI::ParseError& error) {
    return dynamic_cast<const Error*>(&error) != nullptr;
}

// --- What is wrong with an option; errors name it only within their texts ------------------------

bool IsMissing(const CLI::Option& option, const std::string&) {
    return option.get_required() && option.count() == 0;
}

bool IsGivenTooOften(const CLI::Option& option, const std::string&) {
    const auto most = static_cast<size_t>(option.get_items_expected_max());
    return most != 0 && option.count() > most;
}

bool EndsTheLine(const CLI::Option& option, const std::string& last) {
    return option.check_name(last.substr(0, last.find('=')));
}

bool IsNeitherOnNorOff(const CLI::Option& option, const std::string&) {
    bool isOn = false;
    return option.get_items_expected_max() == 0 && option.count() != 0 &&
           !CLI::detail::lexical_cast(option.results().back(), isOn);
}

bool IsEmpty(const CLI::Option& option, const std::string&) {
    return std::ranges::count(option.results(), std::string()) != 0;
}

// The sentences; arguments have positions, options have names.
constexpr struct {
    bool (*isError)(const CLI::ParseError&);
    bool (*isOption)(const CLI::Option&, const std::string& last);
    const char* onArgument;
    const char* onOption;  // its name and value
} kSentences[] = {
    {Is<CLI::RequiredError>, IsMissing, Message("the argument '{}' is missing"),
     Message("the option '{}' is missing")},
    {Is<CLI::ArgumentMismatch>, IsGivenTooOften, nullptr,
     Message("the option '{}' may be given only once")},
    {Is<CLI::ArgumentMismatch>, EndsTheLine, nullptr, Message("the option '{}' needs a value")},
    {Is<CLI::ConversionError>, IsNeitherOnNorOff, nullptr,
     Message("the option '{}' cannot have the value '{}'")},
    {Is<CLI::ValidationError>, IsEmpty, Message("the argument '{}' is empty"),
     Message("the value of the option '{}' is empty")},
};

std::string SentenceOn(const CLI::App& command, const CLI::ParseError& error,
                       const std::string& last) {
    for (const auto& sentence : kSentences) {
        for (const CLI::Option* option : command.get_options()) {
            const char* format = option->get_positional() ? sentence.onArgument : sentence.onOption;
            if (format && sentence.isError(error) && sentence.isOption(*option, last)) {
                return Say(format, option->get_name(),
                           option->count() == 0 ? "" : option->results().back());
            }
        }
    }
    return error.what();
}

std::vector<std::string> OptionNames(const CLI::App& command) {
    std::vector<std::string> names;
    for (const CLI::Option* option : command.get_options()) {
        for (const std::string& name : option->get_lnames()) {
            names.push_back("--" + name);
        }
    }
    return names;
}

}  // namespace

CommandError UsageFault(const CLI::App& app, const CLI::ParseError& error,
                        const std::string& last) {
    const std::vector<CLI::App*> parsed = app.get_subcommands();
    const bool isInCommand = !parsed.empty();
    const CLI::App& command = isInCommand ? *parsed.front() : app;
    const std::string advice = isInCommand ? SeeHelp(command.get_name()) : SeeHelp();
    const std::vector<std::string> unexpected = app.remaining(true);
    // An option that is misspelled is the likelier fault than the argument that its value became.
    if ((Is<CLI::ExtrasError>(error) || Is<CLI::RequiredError>(error)) && !unexpected.empty()) {
        const std::string& word = unexpected.front();
        return word.starts_with('-') ? CommandError(Say("no option is called '{}'", word) +
                                                    DidYouMean(word, OptionNames(command), advice))
                                     : CommandError(Say("there is no use for '{}'", word) + advice);
    }
    return CommandError((isInCommand ? command.get_name() + ": " : "") +
                        SentenceOn(command, error, last) + advice);
}

}  // namespace lq::tool
