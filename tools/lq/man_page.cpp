#include "tools/lq/command_line.h"
#include "tools/lq/generate.h"
#include "tools/lq/output.h"

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

// Follows the list of what each status means.
constexpr char kStatusNotes[] = R"(.PP
A name is looked for by \fBshow \-\-find\fR, and as the instance by \fBfb\fR: that there is none is a
result, too. A unit that \fBpou\fR or \fBfb\fR does not find leaves them without one, and the status is 2.
.PP
With 141 a shell shows the signal \fBSIGPIPE\fR, which ends the command.
)";

constexpr char kTail[] = R"(.SH ENVIRONMENT
.TP
.B NO_COLOR
When set and not empty, nothing is printed in bold but with \fB\-\-color=always\fR.
.TP
.B TERM
When not set, empty or \fBdumb\fR, nothing is printed in bold, and no progress is shown.
.TP
.B LC_ALL, LC_MESSAGES, LANG
Where no code page is registered, the first of them that is set and not empty decides on the language of
messages: Japanese where it begins with \fBja\fR, else English.
.TP
.B XDG_CONFIG_HOME
The folder that takes the place of \fI~/.config\fR.
.SH FILES
.TP
.I ~/.config/lq_data/registry.ini
.TQ
.I /etc/lq_data/registry.ini
The language of messages: Japanese with the code page 932, English with any other. It is
the value \fBCodePage\fR of the section
.IP
.EX
[SOFTWARE\eVeldrane\eTalmor2\eApp]
CodePage=932
.EE
.IP
of the user's file. When that has no such section, the section
\fB[SOFTWARE\eVeldrane\eTalmor2\eStartup\eApp]\fR of the machine's file decides.
)";

// Escapes what the formatter would take for a command.
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
        title += " " + argument.names.front() + (argument.isRepeatable ? "..." : "");
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
    page += ".SH EXIT STATUS\n";
    for (const auto& [status, meaning] : kExitStatuses) {
        page += std::string(".TP\n.B ") + status + "\n" + Escaped(meaning) + ".\n";
    }
    page += kStatusNotes;
    page +=
        ".SH JSON\nEvery document has a member \\fBschema\\fR, the number of its form. It changes "
        "when a reader\nof the documents would have to; new members may come at any "
        "time.\n";
    return page + kTail;
}

}  // namespace lq::tool
