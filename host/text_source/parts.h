// What the reader of a text is made of: types and values, declarations, and what holds them.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "host/model/reading.h"
#include "host/text_source/cursor.h"
#include "lq_data/host/model/project.h"

namespace lq::host::text_source {

struct Context {
    Context(Project& target, ReportList& list, std::u16string_view text)
        : project(target), reports(list), cursor(text, list) {
        if (project.KeepsCode()) {
            cursor.KeepPragmas();
        }
    }

    Project& project;
    ReportList& reports;
    Cursor cursor;
    Text fileStem = u"";         // what lists outside of all units are called
    std::vector<Piece> names;    // of the declaration that is read; here for their memory
    std::vector<Piece> putBack;  // likewise
};

// A name in a message, a long one shortened.
std::string Quoted(const Context& context, const Piece& piece);

// -- Where the reader is --------------------------------------------------------------------------

// Whether the token, so many ahead, is a name and ":", "," or AT follow: then it is declared,
// whatever word it is.
bool IsDeclared(Context& context, std::size_t ahead = 0);
// Whether a unit, type block, configuration or the like begins here: with its word as the first of
// its line, or, with `anywhere`, within one, and a name.
bool IsAtHeader(Context& context, bool anywhere = false);
// Whether the declarations of a section or structure cannot go on here: at an end, a section, a
// header or the end of the text.
bool IsAtBoundary(Context& context);

// Passes everything to behind `end`, but no boundary. False when `end` did not come.
bool PassTo(Context& context, Word end);
// Passes PUBLIC, FINAL and the like in front of a name.
void PassModifiers(Context& context);
// Passes a ";", if one is here.
void PassSemicolon(Context& context);
// Reports "END_VAR" or the like as missing, at `spot`.
void WarnMissing(Context& context, const Spot& spot, std::string_view what);

// -- Types and values -----------------------------------------------------------------------------

struct Spec {
    std::u16string type;  // as the XML reader's texts
    std::u16string value;
    bool hasArguments = false;  // "FB(a := 1)": they are left out
    Word edge = Word::kNone;    // R_EDGE, F_EDGE: likewise
};

enum class Reading {
    kDone,     // what may follow is next
    kMissing,  // the declaration ends without its ";", and what follows is next
    kBroken,   // what is here cannot be read
};

// `isDefinition`: of a data type, where any name may be the base of an enumeration.
bool ReadType(Context& context, Spec& spec, bool isDefinition = false);
// Behind ":=", up to the ";".
Reading ReadValue(Context& context, std::u16string& value);
// Passes what is in brackets, here an opening one. False when it is not closed.
bool PassBrackets(Context& context);
// Passes the rest of a declaration that cannot be read, its ";" included, but none of the next one,
// which may begin here: what the declaration begins with must have been taken.
void PassDeclaration(Context& context);

// -- Declarations ---------------------------------------------------------------------------------

// What declarations belong to.
struct Holder {
    ID owner;
    Section section;
    EnoPair* eno = nullptr;  // of a unit
};

// Reads declarations up to `end`, END_VAR or END_STRUCT, which is passed; `begin` is where a report
// tells that it is missing.
void ReadDeclarations(Context& context, const Holder& holder, Word end, const Spot& begin);

// A section, from its word on, of a unit; one of globals becomes a list of `parent`.
void ReadSection(Context& context, ID parent, EnoPair* eno);
// Reports a section and passes it.
void LeaveSection(Context& context, const char* why);

// -- What holds declarations ----------------------------------------------------------------------

// Each from its word on.
void ReadTypes(Context& context);
void ReadUnit(Context& context);
void ReadConfiguration(Context& context);
// What the body that begins here is written in.
Language LanguageHere(Context& context);
// METHOD, PROPERTY, CLASS, INTERFACE and TEST, with all that they hold.
void LeaveOut(Context& context);

}  // namespace lq::host::text_source
