// The commands. Each prints its result and returns an ExitStatus, or throws CommandError.
#pragma once

#include <string>
#include <vector>

namespace lq::tool {

// What a project is read from.
struct ProjectFiles {
    std::vector<std::string> projects;   // one project, in several files
    std::vector<std::string> others;     // that go with the only one of `projects`
    std::vector<std::string> libraries;  // known, and not the project's own
    bool checkLibraries = false;         // what is wrong with them is reported, too
    std::vector<std::string> endings;    // of files in folders, beside the usual ones
    std::string encoding;                // of texts: a name of kCodePages; empty for what they tell
};

struct TranslateOptions {
    ProjectFiles files;
    std::string output;  // empty: the tables are not kept
    bool uses = false;   // are counted
    bool json = false;
};
int RunTranslate(const TranslateOptions& options);

struct ShowOptions {
    ProjectFiles files;  // or one image
    std::vector<std::string> tables;
    std::string find;
    std::string save;  // writes the restored tables as an image again
    bool json = false;
};
int RunShow(const ShowOptions& options);

struct ReportOptions {
    ProjectFiles files;  // as of show
    std::string output;
};
int RunReport(const ReportOptions& options);

struct ScanOptions {
    std::string source;
    bool errorsOnly = false;
    bool json = false;
};
int RunScan(const ScanOptions& options);

struct ValueOptions {
    std::vector<std::string> texts;
    bool unsignedOnly = false;
    bool json = false;
};
int RunValue(const ValueOptions& options);

struct PouOptions {
    ProjectFiles files;
    std::string name;
    bool interfaceOnly = false;
    bool json = false;
};
int RunPou(const PouOptions& options);

struct FbOptions {
    ProjectFiles files;
    std::string pou;
    std::string instance;
    bool json = false;
};
int RunFb(const FbOptions& options);

struct TasksOptions {
    ProjectFiles files;
    bool json = false;
};
int RunTasks(const TasksOptions& options);

struct CheckOptions {
    ProjectFiles files;
    std::vector<std::string> ignore;    // codes, names or families, with commas between them
    std::vector<std::string> only;      // likewise
    std::vector<std::string> severity;  // CODE=SEVERITY
    std::string addresses;
    std::string edition;
    std::string failOn;
    std::string maxName;
    std::string baseline;
    std::string format;
    std::string explain;
    std::string output;  // empty: standard output
    bool closed = false;
    bool list = false;
    bool json = false;
};
int RunCheck(const CheckOptions& options);

struct SymbolsOptions {
    ProjectFiles files;
    std::string unit;
    std::string sort;
    std::string delimiter;
    std::string output;  // empty: standard output
    bool located = false;
    bool expand = false;
    bool uses = false;  // are counted
    bool csv = false;
    bool noFormulas = false;
    bool mark = false;
    bool json = false;
};
int RunSymbols(const SymbolsOptions& options);

struct DiffOptions {
    std::string before;  // each an image or a project
    std::string after;
    ProjectFiles reading;  // how both are read; without files
    bool json = false;
};
int RunDiff(const DiffOptions& options);
struct UsesOptions {
    ProjectFiles files;
    std::string name;
    bool json = false;
};
int RunUses(const UsesOptions& options);

struct TypesOptions {
    bool json = false;
};
int RunTypes(const TypesOptions& options);

}  // namespace lq::tool
