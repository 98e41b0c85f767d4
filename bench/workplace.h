// A folder for what benchmarks generate.
#pragma once

#include <cstdlib>
#include <filesystem>
#include <string>

namespace lq::bench {

// Removed at the end.
class Workplace {
  public:
    Workplace() {
        std::string pattern = (std::filesystem::temp_directory_path() / "lq_bench_XXXXXX").string();
        path_ = mkdtemp(pattern.data());
    }
    ~Workplace() { std::filesystem::remove_all(path_); }
    Workplace(const Workplace&) = delete;
    Workplace& operator=(const Workplace&) = delete;

    std::filesystem::path operator/(const std::string& name) const { return path_ / name; }

  private:
    std::filesystem::path path_;
};

inline const Workplace& TheWorkplace() {
    static const Workplace workplace;
    return workplace;
}

}  // namespace lq::bench
