// What the reader of a file reports. Where a check of the model says the same, the report has the
// check's code.

#include "host/check/checks.h"
#include "lq_data/host/text/message.h"

namespace lq::host::check {

namespace {

constexpr Check kRows[] = {
    {1, "unreadable", Severity::kError,
     Message("A file is well-formed XML, a PLCopen project and within the reader's limits"),
     Message("What stands behind the place was not read, and nothing is checked"), "", ""},
    {2, "unused-suppression", Severity::kNote,
     Message("A comment that suppresses a check suppresses something"),
     Message("The fault is gone or was never there, and a new one would stay hidden"),
     "VAR\n  a : INT; (* lq: ignore 3002 *)\nEND_VAR",
     "VAR\n  a : SINT := 300; (* lq: ignore 3002 *)\nEND_VAR"},
    {3, "more-reports", Severity::kNote,
     Message("A file has at most a thousand different reports of the reader"),
     Message("The others are not told"), "", ""},
    {10, "unknown-element", Severity::kWarning,
     Message("The elements of a file are those of the format"),
     Message("What the reader does not know is missing in the project"),
     "<variable name='a'><type><INT/></type><strange/></variable>",
     "<variable name='a'><type><INT/></type></variable>"},
    {11, "unknown-attribute", Severity::kWarning,
     Message("The attributes of an element are those of the format"),
     Message("What the reader does not know is missing in the project"), "<localVars strange='1'/>",
     "<localVars/>"},
    {12, "unknown-text", Severity::kWarning, Message("Text stands only where the format has some"),
     Message("The text is missing in the project"), "<localVars>a : INT;</localVars>",
     "<variable name='a'><type><INT/></type></variable>"},
    {13, "not-kept", Severity::kNote, Message("What the format allows has a place in the project"),
     Message("The reader knows it and leaves it out; no other check sees it"),
     "<localVars><documentation><p xmlns='http://www.w3.org/1999/xhtml'>x</p></documentation>"
     "</localVars>",
     "<localVars/>"},
    {14, "missing-attribute", Severity::kWarning,
     Message("An element has the attributes that the format asks for, and they are not empty"),
     Message("Without its name the thing is left out; without another one it is not whole"),
     "<localVars><variable><type><INT/></type></variable></localVars>",
     "<variable name='a'><type><INT/></type></variable>"},
    {15, "missing-element", Severity::kWarning,
     Message(
         "An element holds what the format asks for: a type, a base type, dimensions, a range, a "
         "value"),
     Message("The declaration is not whole"), "<variable name='a'></variable>",
     "<variable name='a'><type><INT/></type></variable>"},
    {16, "bad-attribute", Severity::kWarning,
     Message("An attribute says yes or no, and two do not contradict each other"),
     Message("The reader takes one meaning, and others may take the other one"),
     "<localVars constant='maybe'/>", "<localVars constant='false'/>"},
    {17, "section-narrowed", Severity::kNote,
     Message("The marks of a list of variables make a section that has a keyword"),
     Message("The variables are read as those of the nearest section"),
     "<localVars persistent='true'/>", "<localVars retain='true'/>"},
    {18, "name-beyond-limit", Severity::kWarning,
     Message("The name of what holds others has no more than 1,024 bytes"),
     Message("It is left out with all that is in it"), "", ""},
    {19, "not-read", Severity::kWarning, Message("A text is written as the language has it"),
     Message("What the reader does not understand is missing in the project"),
     "PROGRAM Main\nVAR\n  a INT;\nEND_VAR\nEND_PROGRAM",
     "PROGRAM Main\nVAR\n  a : INT;\nEND_VAR\nEND_PROGRAM"},
    {20, "unit-left-out", Severity::kError,
     Message("A unit is a program, a function block or a function"),
     Message("The unit is left out with all that is in it"), "<pou name='Main' pouType='class'/>",
     "<pou name='Main' pouType='program'>"
     "<body><ST><p xmlns='http://www.w3.org/1999/xhtml'>;</p></ST></body></pou>"},
    {21, "not-entered", Severity::kError,
     Message("The tables take each declaration that is well formed"),
     Message("It is missing in the tables, and in whatever is made of them"), "", ""},
};

}  // namespace

Rows ReaderRows() {
    return kRows;
}

}  // namespace lq::host::check
