// Completion scripts: commands first, then their options, the tables' names where one is asked for,
// and files anywhere else.
#include <string_view>

#include "tools/lq/command_line.h"
#include "tools/lq/generate.h"
#include "tools/lq/tables.h"

namespace lq::tool {

namespace {

// The words that a value may be; empty when it is anything.
std::string WordsFor(const std::string& value) {
    if (value == kKindValue) {
        return "man bash zsh fish";
    }
    if (value == kWhenValue) {
        return "auto always never";
    }
    if (value == kOrderValue) {
        return "name address";
    }
    if (value == kModelValue) {
        return "separate byte element";
    }
    if (value == kEditionValue) {
        return "2 3";
    }
    if (value == kFailureValue) {
        return "error warning note never";
    }
    if (value == kFormatValue) {
        return "text json jsonl sarif";
    }
    if (value == kEncodingValue) {
        return "windows-1252 shift_jis";
    }
    std::string words;
    for (const auto& [id, name] : kTableNames) {
        words += (words.empty() ? "" : " ") + std::string(name);
    }
    return value == kTableValue ? words : "";
}

// The text, with a backslash in front of each of these characters.
std::string Escaped(const std::string& text, std::string_view characters) {
    std::string escaped;
    for (const char c : text) {
        escaped += (characters.find(c) != characters.npos ? "\\" : "") + std::string(1, c);
    }
    return escaped;
}

// Quotes a text so that the shell takes it as one word, whatever characters it has.
std::string Quoted(const std::string& text) {
    std::string quoted = "'";
    for (const char c : text) {
        quoted += c == '\'' ? "'\\''" : std::string(1, c);
    }
    return quoted + "'";
}

std::string Join(const std::vector<std::string>& words, const char* separator) {
    std::string text;
    for (const std::string& word : words) {
        text += (text.empty() ? "" : separator) + word;
    }
    return text;
}

std::string OptionWords(const CommandText& command) {
    std::vector<std::string> words;
    for (const ParameterText& option : command.options) {
        words.insert(words.end(), option.names.begin(), option.names.end());
    }
    return Join(words, " ");
}

// A branch of a shell's case statement: for the pattern it offers the words.
std::string BashCase(const std::string& pattern, const std::string& words) {
    return "        " + pattern + ") mapfile -t COMPREPLY < <(compgen -W '" + words +
           "' -- \"$cur\"); return ;;\n";
}

// The branches that complete the value of an option: which values there are depends on the command
// and on the option in front of the value.
std::string BashValues(const CommandText& command, const std::string& name) {
    std::string cases;
    for (const ParameterText& option : command.options) {
        std::vector<std::string> patterns;
        for (const std::string& flag : option.names) {
            patterns.push_back("'" + name + " " + flag + "'");
        }
        const std::string words = WordsFor(option.value);
        if (!words.empty()) {
            cases += BashCase(Join(patterns, " | "), words);
        } else if (!option.value.empty()) {
            cases += "        " + Join(patterns, " | ") + ") return ;;\n";
        }
    }
    return cases;
}

std::string ZshOption(const ParameterText& option) {
    const std::string text = "[" + Escaped(option.description, "[]:\\") + "]";
    std::string value;
    if (!option.value.empty()) {
        const std::string words = WordsFor(option.value);
        value =
            ":" + option.value +
            (words.empty() ? option.value == kFileValue ? ":_files" : ": " : ":(" + words + ")");
    }
    const std::string end = Quoted(text + value);
    const std::string others = option.isRepeatable ? "*" : "(" + Join(option.names, " ") + ")";
    return option.names.size() == 1 ? option.names[0] + end
                                    : "'" + others + "'{" + Join(option.names, ",") + "}" + end;
}

std::string ZshOptions(const CommandText& command, const char* indent) {
    std::string text;
    for (const ParameterText& option : command.options) {
        text += " \\\n" + std::string(indent) + ZshOption(option);
    }
    return text;
}

std::string FishOption(const ParameterText& option, const std::string& condition) {
    std::string line = "complete -c lq -n '" + condition + "'";
    for (const std::string& name : option.names) {
        line += name.starts_with("--") ? " -l " + name.substr(2) : " -s " + name.substr(1);
    }
    const std::string words = WordsFor(option.value);
    if (!words.empty()) {
        line += " -x -a '" + words + "'";
    } else if (!option.value.empty()) {
        line += option.value == kFileValue ? " -r" : " -x";
    }
    return line + " -d '" + Escaped(option.description, "'\\") + "'\n";
}

}  // namespace

std::string BashCompletion(const ProgramText& text) {
    std::vector<std::string> names;
    std::string values = BashValues(text.program, "");
    std::string options = BashCase("' '-*", OptionWords(text.program));
    for (const CommandText& command : text.commands) {
        names.push_back(command.name);
        values += BashValues(command, command.name);
        options += BashCase("'" + command.name + " '-*", OptionWords(command));
    }
    return "# Completion of lq for bash.\n"
           "_lq() {\n"
           "    local cur=${COMP_WORDS[COMP_CWORD]} prev=${COMP_WORDS[COMP_CWORD - 1]} command= "
           "word\n"
           "    COMPREPLY=()\n"
           "    for word in \"${COMP_WORDS[@]:1:COMP_CWORD - 1}\"; do\n"
           "        [[ $word == -* ]] || { command=$word; break; }\n"
           "    done\n"
           "    case \"$command $prev\" in\n" +
           values +
           "    esac\n"
           "    case \"$command $cur\" in\n" +
           options + BashCase("' '*", Join(names, " ")) +
           "    esac\n"
           "}\n"
           "complete -o default -F _lq lq\n";
}

std::string ZshCompletion(const ProgramText& text) {
    std::string names;
    std::string cases;
    for (const CommandText& command : text.commands) {
        names += "      " + Quoted(command.name + ":" + command.description) + "\n";
        cases += "      " + command.name + ")\n        _arguments" +
                 ZshOptions(command, "          ") + " \\\n          '*:file:_files'\n        ;;\n";
    }
    return "#compdef lq\n"
           "# Completion of lq for zsh.\n"
           "_lq() {\n"
           "  local context state state_descr line\n"
           "  typeset -A opt_args\n"
           "  _arguments -C" +
           ZshOptions(text.program, "    ") +
           " \\\n    '1:command:->command' '*::argument:->argument'\n"
           "  if [[ $state == command ]]; then\n"
           "    local -a commands=(\n" +
           names +
           "    )\n"
           "    _describe command commands\n"
           "  elif [[ $state == argument ]]; then\n"
           "    case $words[1] in\n" +
           cases +
           "    esac\n"
           "  fi\n"
           "}\n"
           "if [[ $funcstack[1] == _lq ]]; then _lq \"$@\"; else compdef _lq lq; fi\n";
}

std::string FishCompletion(const ProgramText& text) {
    const std::string none = "__fish_use_subcommand";
    std::string script = "# Completion of lq for fish.\ncomplete -c lq -n " + none + " -f\n";
    for (const ParameterText& option : text.program.options) {
        script += FishOption(option, none);
    }
    for (const CommandText& command : text.commands) {
        script += "complete -c lq -n " + none + " -a " + command.name + " -d '" +
                  Escaped(command.description, "'\\") + "'\n";
        for (const ParameterText& option : command.options) {
            script += FishOption(option, "__fish_seen_subcommand_from " + command.name);
        }
    }
    return script;
}

}  // namespace lq::tool
