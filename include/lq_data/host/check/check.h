// Checks of a project: what the language forbids, and what is hardly ever meant.
//
// A check reports what is certain. Where a type or unit is not known, the files that are there may
// not be all of the project, and what depends on such a name is a warning, until the caller says
// that nothing is missing (CheckOptions::closed).
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "lq_data/export.h"
#include "lq_data/host/model/project.h"
#include "lq_data/host/plcopen/plcopen.h"
#include "lq_data/translate.h"

namespace lq::host {

namespace check {
class Run;
class Store;
}  // namespace check

enum class Severity : uint8_t {
    kOff,      // it is not looked for
    kNote,     // a reader may want to know
    kWarning,  // nearly always a mistake, or an error that a missing file may explain
    kError,    // the language forbids it
};

// "off", "note", "warning", "error".
LQ_DATA_API const char* NameOf(Severity severity) noexcept;
// The severity of such a word; false for any other.
LQ_DATA_API bool ReadSeverity(std::string_view name, Severity& severity) noexcept;

// An entry of the table of checks. A code is never given another meaning. The texts are English;
// Translated has the rule and the reason in the user's language. The examples are declarations as
// the language writes them or, of what the reader reports, elements of PLCopen XML.
struct Check {
    uint16_t code = 0;
    const char* name = "";
    Severity severity = Severity::kOff;  // at first; kOff for what has to be asked for
    const char* rule = "";
    const char* reason = "";
    const char* wrong = "";
    const char* right = "";
    // What finds it, and perhaps other codes in the same walk; null for what the reader reports.
    void (*run)(check::Run& run) = nullptr;
};

// All checks, by their codes.
LQ_DATA_API std::vector<const Check*> AllChecks();

// Those that a word names: a code ("8001", "3"), a name ("unused-variable") or a family ("8xxx").
// None for any other word.
LQ_DATA_API std::vector<const Check*> ChecksNamed(std::string_view word);

// The check that says the same as a refusal of the tables (TranslationRefusal), whose severity is
// that of an error; not-entered where there is no such check.
LQ_DATA_API const Check& CheckOf(RefusalReason reason, DeclFault fault) noexcept;
// The check that says the same as a report of a reader.
LQ_DATA_API const Check& CheckOf(const Report& report) noexcept;

// What is wrong with a text that is not empty and no name of the language: a sentence in the user's
// language.
LQ_DATA_API std::string WhyNoName(std::u16string_view name);

// "8001", four digits.
LQ_DATA_API std::string CodeText(uint16_t code);

// What the numbers of direct addresses mean: each target has its own answer.
enum class AddressModel : uint8_t {
    kSeparate,  // nothing: addresses of different sizes share no memory
    kByte,      // the number of a byte
    kElement,   // an index of what has the address's size
};

// Of the standard. The second one forbids recursion and wants a result of every function.
enum class Edition : uint8_t { kSecond, kThird };

// Names that a check leaves alone: "Main.spare*", "G_*", with * and ? for letters.
struct IgnoredNames {
    uint16_t code = 0;
    std::string pattern;
};

struct CheckOptions {
    bool closed = false;          // all files of the project are there
    bool checkLibraries = false;  // libraries are checked, too
    AddressModel addresses = AddressModel::kSeparate;
    Edition edition = Edition::kSecond;
    unsigned longestName = 32;              // for name-too-long
    std::map<uint16_t, Severity> severity;  // in place of those of the table
    std::vector<IgnoredNames> ignored;
    const std::vector<Report>* reports = nullptr;  // what the reader said; it becomes findings
};

// A place that belongs to a finding.
struct RelatedPlace {
    std::string file;
    uint32_t line = 0;
    uint32_t column = 0;
    std::string message;
};

struct Finding {
    const Check* check = nullptr;
    Severity severity = Severity::kOff;
    ID object;          // null for what is about a file
    std::string file;   // this and the following as UTF-8
    uint32_t line = 0;  // both from 1; 0 where they are not known
    uint32_t column = 0;
    std::string unit;     // the unit, the type, or "Configuration.Resource"; may be empty
    std::string name;     // what it is about; may be empty
    std::string message;  // a sentence without a full stop, in the user's language
    uint32_t more = 0;    // further places of the same cause
    std::vector<RelatedPlace> related;
    // The same for what is found again, wherever it has moved: made of the code, the unit and the
    // name.
    std::string fingerprint;
};

// Has the finding until it returns.
using TakeFinding = std::function<void(const Finding&)>;

// What the checks find in a project. Of each finding little is held, however many there are: its
// texts are made when it is handed out, from the project, which has to be there until then. A
// comment "lq: ignore 8001, unused-input" at an object or at the unit that it is in suppresses
// there.
class LQ_DATA_API Findings {
  public:
    // Runs the checks. The project must be the current one (SetProject).
    // Throws std::bad_alloc.
    Findings(const Project& project, const CheckOptions& options);
    ~Findings();
    Findings(const Findings&) = delete;
    Findings& operator=(const Findings&) = delete;

    // How many are handed out.
    std::size_t Count() const noexcept;
    // How many comments and patterns suppress.
    std::size_t Suppressed() const noexcept { return suppressed_; }

    // Hands them out by file and place, as often as wanted. Throws std::bad_alloc, and what `take`
    // throws.
    void ForEach(const TakeFinding& take) const;
    // The same with those of one severity.
    void ForEach(Severity severity, const TakeFinding& take) const;

  private:
    std::unique_ptr<check::Store> store_;
    std::size_t suppressed_ = 0;
};

struct CheckCounts {
    std::size_t suppressed = 0;  // by comments and patterns
};

// The same for who wants each once.
LQ_DATA_API CheckCounts RunChecks(const Project& project, const CheckOptions& options,
                                  const TakeFinding& take);

}  // namespace lq::host
