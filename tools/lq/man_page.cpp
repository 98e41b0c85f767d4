#include "tools/lq/command_line.h"
#include "tools/lq/generate.h"

namespace lq::tool {

namespace {

constexpr char kHead[] = R"(.SH NAME
lq \- works with the data of IEC 61131-3 projects
.SH SYNOPSIS
.B lq
.I COMMAND
[\fIOPTION\fR]... [\fIARGUMENT\fR]...
.SH DESCRIPTION
Reads PLCopen XML projects, IEC source texts, constants, and images of the tables that a compiler
fills from a project, and shows what is in them.
.PP
Results go to standard output: in columns on a terminal, in one line with tabs a row anywhere else, or
as JSON. Messages go to standard error; those about an input begin with its name, line and column.
Sources may be UTF-8 or UTF-16.
)";

constexpr char kTail[] = R"(.SH JSON
Every document has a member \fBschema\fR, the number of its form, which is 1. It changes when a reader
of the documents would have to; new members may come at any time.
.SH ENVIRONMENT
.TP
.B NO_COLOR
When set and not empty, nothing is printed in bold.
.TP
.B TERM
With the value \fBdumb\fR, nothing is printed in bold, and no progress is shown.
)";

// Text that is text to the formatter.
std::string Escaped(const std::string& text) {
    std::string escaped;
    for (const char c : text) {
        if (c == '\\') {
            escaped += "\\e";
        } else if (c == '-') {
            escaped += "\\-";
        } else {
            escaped += c;
        }
    }
    return escaped.starts_with('.') || escaped.starts_with('\'') ? "\\&" + escaped : escaped;
}

std::string ItemOf(const ParameterText& parameter) {
    std::string names;
    for (const std::string& name : parameter.names) {
        names += (names.empty() ? "" : ", ") + ("\\fB" + Escaped(name) + "\\fR");
    }
    const bool isOption = parameter.names.front().starts_with('-');
    const std::string value =
        isOption && !parameter.value.empty() ? " \\fI" + Escaped(parameter.value) + "\\fR" : "";
    return ".TP\n" + names + value + "\n" + Escaped(parameter.description) + ".\n";
}

std::string ItemsOf(const CommandText& command) {
    std::string text;
    for (const auto* parameters : {&command.arguments, &command.options}) {
        for (const ParameterText& parameter : *parameters) {
            text += ItemOf(parameter);
        }
    }
    return text;
}

std::string SectionOf(const CommandText& command) {
    std::string title = "lq " + command.name;
    for (const ParameterText& argument : command.arguments) {
        title += " " + argument.names.front();
    }
    return ".SS " + Escaped(title) + "\n" + Escaped(command.description) + ".\n" +
           ItemsOf(command) + ".PP\nExample:\n.PP\n.EX\n    " + Escaped(command.example) +
           "\n.EE\n";
}

}  // namespace

std::string ManPage(const ProgramText& text) {
    std::string page = ".TH LQ 1 \"\" \"lq " LQ_VERSION "\" \"User Commands\"\n";
    page += kHead;
    page += ".SH OPTIONS\n" + ItemsOf(text.program) + ".SH COMMANDS\n";
    for (const CommandText& command : text.commands) {
        page += SectionOf(command);
    }
    page += ".SH EXIT STATUS\n" + Escaped(kExitStatus) + ".\n";
    return page + kTail;
}

}  // namespace lq::tool
