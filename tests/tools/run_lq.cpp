#include "tests/tools/run_lq.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <optional>
#include <sstream>
#include <sys/wait.h>

#include <gtest/gtest.h>

#include "tests/host/temp_folder.h"

namespace lq::test {

// A folder a test, removed when the next test asks for one and at the end.
std::string TestFolder() {
    static std::string test;
    static std::optional<TempFolder> folder;
    const auto* info = testing::UnitTest::GetInstance()->current_test_info();
    const std::string current = std::string(info->test_suite_name()) + "." + info->name();
    if (current != test) {
        folder.emplace();
        test = current;
    }
    return folder->GetPath();
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

Outcome RunShell(const std::string& script, std::string_view input) {
    const std::string folder = TestFolder();
    WriteFile(folder + "/.in", input);
    const std::string command = "cd '" + folder +
                                "' && export EXAMPLES='" LQ_TEST_EXAMPLES "' LQ='" LQ_TOOL
                                "' LQ_DATA_CONFIG=\"$PWD/config\" && { " +
                                script + "\n} <.in >.out 2>.err";
    const int status = std::system(command.c_str());
    return {WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status),
            ReadFile(folder + "/.out"), ReadFile(folder + "/.err")};
}

Outcome RunLq(const std::string& arguments, std::string_view input) {
    return RunShell("\"$LQ\" " + arguments, input);
}

std::vector<std::string> FilesIn(const std::string& folder) {
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(folder)) {
        const std::string name = entry.path().filename().string();
        if (name != ".in" && name != ".out" && name != ".err") {
            names.push_back(name);
        }
    }
    std::sort(names.begin(), names.end());
    return names;
}

std::string Project(const std::string& globals, const std::string& pous) {
    return "<?xml version='1.0' encoding='utf-8'?>\n"
           "<project xmlns='http://www.plcopen.org/xml/tc6_0201'>\n"
           "<fileHeader companyName='c' productName='p' productVersion='1' "
           "creationDateTime='2024-01-01T00:00:00'/>\n"
           "<contentHeader name='n'><coordinateInfo><fbd><scaling x='0' y='0'/></fbd>"
           "<ld><scaling x='0' y='0'/></ld><sfc><scaling x='0' y='0'/></sfc></coordinateInfo>"
           "</contentHeader>\n"
           "<types><dataTypes/><pous>" +
           pous +
           "</pous></types>\n"
           "<instances><configurations><configuration name='c'><resource name='r'>\n"
           "<globalVars name='List'>" +
           globals +
           "</globalVars>\n"
           "</resource></configuration></configurations></instances></project>\n";
}

std::string Variable(const std::string& name, const std::string& type, const std::string& rest) {
    return "<variable name='" + name + "'><type>" + type + "</type>" + rest + "</variable>\n";
}

}  // namespace lq::test
