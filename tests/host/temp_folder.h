// For tests of what reads files and the environment: a folder that vanishes with its test, and
// environment variables that return to what they were.
#pragma once

#include <filesystem>
#include <fstream>
#include <optional>
#include <stdlib.h>
#include <string>
#include <string_view>

namespace lq::test {

class TempFolder {
  public:
    TempFolder() {
        std::string name = (std::filesystem::temp_directory_path() / "lq_test_XXXXXX").string();
        path_ = mkdtemp(name.data());
    }
    ~TempFolder() {
        std::error_code ignored;
        std::filesystem::remove_all(path_, ignored);
    }
    TempFolder(const TempFolder&) = delete;
    TempFolder& operator=(const TempFolder&) = delete;

    const std::filesystem::path& GetPath() const { return path_; }

    // Writes a file, with the folders above it; returns its path.
    std::filesystem::path Write(const std::string& name, std::string_view content) const {
        const std::filesystem::path file = path_ / name;
        std::filesystem::create_directories(file.parent_path());
        std::ofstream(file, std::ios::binary) << content;
        return file;
    }

  private:
    std::filesystem::path path_;
};

class EnvironmentVariable {
  public:
    // Null unsets it.
    EnvironmentVariable(const char* name, const char* value) : name_(name) {
        if (const char* old = getenv(name)) {
            saved_ = old;
        }
        Set(value);
    }
    ~EnvironmentVariable() { Set(saved_ ? saved_->c_str() : nullptr); }
    EnvironmentVariable(const EnvironmentVariable&) = delete;
    EnvironmentVariable& operator=(const EnvironmentVariable&) = delete;

  private:
    void Set(const char* value) { value ? setenv(name_, value, 1) : unsetenv(name_); }

    const char* name_;
    std::optional<std::string> saved_;
};

}  // namespace lq::test
