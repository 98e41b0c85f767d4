#include "tests/tools/run_lq.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <sys/wait.h>

#include <gtest/gtest.h>

namespace lq::test {

namespace {

// A folder a test, removed when the next test asks for one and at the end.
class Folders {
  public:
    ~Folders() { Remove(); }

    const std::string& Current() {
        const auto* info = testing::UnitTest::GetInstance()->current_test_info();
        const std::string test = std::string(info->test_suite_name()) + "." + info->name();
        if (test != test_) {
            Remove();
            test_ = test;
            std::string pattern =
                (std::filesystem::temp_directory_path() / "lq_tools_XXXXXX").string();
            path_ = mkdtemp(pattern.data());
        }
        return path_;
    }

  private:
    void Remove() {
        if (!path_.empty()) {
            std::filesystem::remove_all(path_);
        }
    }

    std::string test_;
    std::string path_;
};

}  // namespace

std::string TestFolder() {
    static Folders folders;
    return folders.Current();
}

std::string ReadFile(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    std::ostringstream bytes;
    bytes << file.rdbuf();
    return bytes.str();
}

void WriteFile(const std::string& path, std::string_view bytes) {
    std::ofstream(path, std::ios::binary) << bytes;
}

Outcome RunLq(const std::string& arguments, std::string_view input) {
    const std::string folder = TestFolder();
    WriteFile(folder + "/.in", input);
    const std::string command = "cd '" + folder +
                                "' && export EXAMPLES='" LQ_TEST_EXAMPLES "' && '" LQ_TOOL "' " +
                                arguments + " <.in >.out 2>.err";
    const int status = std::system(command.c_str());
    return {WIFEXITED(status) ? WEXITSTATUS(status) : -1, ReadFile(folder + "/.out"),
            ReadFile(folder + "/.err")};
}

}  // namespace lq::test
