// Files as the page calls them: it goes to people who need not know the folders of the machine that
// it was made on.
#pragma once

#include <algorithm>
#include <filesystem>
#include <string>
#include <system_error>
#include <unordered_map>
#include <vector>

#include "lq_data/host/model/flat_index.h"

namespace lq::tool {

class FileNames {
  public:
    // The name without folders; of another file of that name with a number behind.
    const std::string& Shown(const std::string& file) {
        const auto known = shown_.find(file);
        if (known != shown_.end()) {
            return known->second;
        }
        const std::string name = NameOf(file);
        const int number = ++count_[name];
        return shown_.emplace(file, number == 1 ? name : name + " (" + std::to_string(number) + ")")
            .first->second;
    }

    // A sentence with the names of files that were shown before.
    std::string ShownIn(std::string text) const {
        std::vector<const std::string*> named;
        for (const auto& [file, name] : shown_) {
            if (file.find('/') != file.npos && text.find(file) != text.npos) {
                named.push_back(&file);
            }
        }
        // A folder's name is the beginning of that of a file in it.
        std::ranges::sort(named, [](const std::string* a, const std::string* b) {
            return a->size() > b->size();
        });
        for (const std::string* file : named) {
            const std::string& name = shown_.at(*file);
            for (size_t at = text.find(*file); at != text.npos;
                 at = text.find(*file, at + name.size())) {
                text.replace(at, file->size(), name);
            }
        }
        return text;
    }

  private:
    // Of "." and the like that of the folder they are.
    static std::string NameOf(const std::string& file) {
        std::string name = file.substr(0, file.find_last_not_of('/') + 1);
        name.erase(0, name.rfind('/') + 1);
        if (name.empty() || name == "." || name == "..") {
            std::error_code error;
            name = std::filesystem::canonical(file, error).filename().string();
        }
        return name.empty() ? file : name;
    }

    std::unordered_map<std::string, std::string, host::BytesHash> shown_;
    std::unordered_map<std::string, int, host::BytesHash> count_;
};

}  // namespace lq::tool
