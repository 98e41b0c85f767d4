// Files as the page calls them: it goes to people who need not know the folders of the machine that
// it was made on.
#pragma once

#include <string>
#include <unordered_map>

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
        const std::string name = file.substr(file.rfind('/') + 1);
        const int number = ++count_[name];
        return shown_.emplace(file, number == 1 ? name : name + " (" + std::to_string(number) + ")")
            .first->second;
    }

  private:
    std::unordered_map<std::string, std::string, host::BytesHash> shown_;
    std::unordered_map<std::string, int, host::BytesHash> count_;
};

}  // namespace lq::tool
