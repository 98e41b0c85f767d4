#include "tools/lq/source_files.h"

#include <algorithm>
#include <cctype>
#include <cerrno>
#include <cstring>
#include <dirent.h>
#include <memory>
#include <set>
#include <string_view>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

#include "lq_data/host/text/message.h"
#include "tools/lq/command.h"
#include "tools/lq/encodings.h"
#include "tools/lq/input.h"

namespace lq::tool {

using host::Say;

namespace {

constexpr std::string_view kEndings[] = {".st",  ".iec", ".exp", ".txt",
                                         ".pou", ".dut", ".gvl", ".xml"};

std::string Lower(std::string_view text) {
    std::string lower(text);
    std::ranges::transform(lower, lower.begin(),
                           [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return lower;
}

// The names in a folder, in order; an error number in their place.
int NamesIn(const std::string& folder, std::vector<std::string>& names) {
    const std::unique_ptr<DIR, int (*)(DIR*)> listing(opendir(folder.c_str()), closedir);
    if (!listing) {
        return errno;
    }
    errno = 0;
    while (const dirent* const entry = readdir(listing.get())) {
        if (entry->d_name[0] != '.') {
            names.emplace_back(entry->d_name);
        }
        errno = 0;
    }
    std::ranges::sort(names);
    return errno;
}

// What was said of how files are read.
void CheckReading(const ProjectFiles& files) {
    for (const std::string& ending : files.endings) {
        if (ending.size() < 2 || ending.front() != '.' || ending.find('/') != ending.npos) {
            throw CommandError(Say("'{}' is no ending of a file's name, such as '.st'", ending));
        }
    }
    if (!files.encoding.empty() && !CodePageOf(files.encoding)) {
        throw CommandError(
            Say("texts are not read in '{}', only in windows-1252 or shift_jis", files.encoding));
    }
}

class Walk {
  public:
    Walk(const ProjectFiles& files, std::vector<host::Report>& reports)
        : reports_(reports), endings_(files.endings) {
        std::ranges::transform(endings_, endings_.begin(), Lower);
    }

    void Add(const std::string& path, bool isLibrary) {
        if (!IsFolder(path)) {
            sources_.push_back({path, isLibrary, false});
            return;
        }
        const std::size_t before = sources_.size();
        const std::size_t told = reports_.size();
        if (const int error = AddFolder(path, isLibrary)) {
            throw CommandError(Say("{}: cannot be opened: {}", path, std::strerror(error)));
        }
        if (sources_.size() == before && reports_.size() == told) {
            throw CommandError(Say("{}: holds no file of a project", path));
        }
    }

    std::vector<SourceFile> Take() { return std::move(sources_); }

  private:
    using Identity = std::pair<dev_t, ino_t>;

    // Below the folder that is named, one that cannot be read is reported. The folders that are
    // open lie on a list of its own: their depth is the user's.
    int AddFolder(const std::string& top, bool isLibrary) {
        std::vector<std::string> waiting = {top};  // the next one last
        while (!waiting.empty()) {
            const std::string path = std::move(waiting.back());
            waiting.pop_back();
            struct stat info = {};
            const int error = stat(path.c_str(), &info) == 0 ? 0 : errno;
            const bool isSource = path == top || HasEnding(path);
            if (error == 0 && S_ISDIR(info.st_mode)) {
                const int fault = Open(path, info, waiting);
                if (fault != 0 && path == top) {
                    return fault;
                }
                if (fault != 0) {
                    Tell(path, fault);
                }
            } else if (error != 0 && isSource) {
                Tell(path, error);
            } else if (isSource && S_ISREG(info.st_mode) &&
                       seen_.insert({info.st_dev, info.st_ino}).second) {
                sources_.push_back({path, isLibrary, true});
            }
        }
        return 0;
    }

    int Open(const std::string& folder, const struct stat& info,
             std::vector<std::string>& waiting) {
        std::vector<std::string> names;
        if (!seen_.insert({info.st_dev, info.st_ino}).second) {
            return 0;
        }
        const int error = NamesIn(folder, names);
        const char* const slash = folder.ends_with('/') ? "" : "/";
        for (auto name = names.rbegin(); name != names.rend(); ++name) {
            waiting.push_back(folder + slash + *name);
        }
        return error;
    }

    void Tell(const std::string& path, int error) {
        reports_.push_back(
            {path, 0, 0, {}, Say("cannot be opened: {}", std::strerror(error)), 0, true});
    }

    bool HasEnding(const std::string& path) const {
        const std::string name = Lower(path.substr(path.find_last_of('/') + 1));
        const auto ends = [&name](std::string_view ending) { return name.ends_with(ending); };
        return std::ranges::any_of(kEndings, ends) || std::ranges::any_of(endings_, ends);
    }

    std::vector<host::Report>& reports_;
    std::vector<std::string> endings_;
    std::vector<SourceFile> sources_;
    std::set<Identity> seen_;
};

}  // namespace

bool IsFolder(const std::string& path) {
    struct stat info = {};
    return path != "-" && stat(path.c_str(), &info) == 0 && S_ISDIR(info.st_mode);
}

std::vector<SourceFile> FilesOf(const ProjectFiles& files, std::vector<host::Report>& reports) {
    CheckReading(files);
    Walk walk(files, reports);
    for (const auto* list : {&files.projects, &files.others}) {
        for (const std::string& path : *list) {
            walk.Add(path, false);
        }
    }
    for (const std::string& path : files.libraries) {
        walk.Add(path, true);
    }
    std::vector<SourceFile> sources = walk.Take();
    std::vector<std::string> paths;
    paths.reserve(sources.size());
    for (const SourceFile& source : sources) {
        paths.push_back(source.path);
    }
    RefuseInputTwice(paths);
    return sources;
}

}  // namespace lq::tool
