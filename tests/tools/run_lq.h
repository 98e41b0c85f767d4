// Running the command-line tool as a user would.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace lq::test {

struct Outcome {
    int status = -1;  // the exit status; as in a shell, 128 and the signal when the tool was killed
    std::string out;
    std::string err;
};

// Runs lq with the arguments, as a shell reads them, in a folder of its own for each test; `input`
// is its standard input. What it is configured by lies in the folder "config". Paths of sample
// projects: "$EXAMPLES/plant/plant.xml".
Outcome RunLq(const std::string& arguments, std::string_view input = "");

// The same for a script in which lq is "$LQ".
Outcome RunShell(const std::string& script, std::string_view input = "");

// A project as PLCopen XML; `globals` and `pous` are XML elements.
std::string Project(const std::string& globals, const std::string& pous = "");
std::string Variable(const std::string& name, const std::string& type = "<INT/>",
                     const std::string& rest = "");

// The names in a folder but for those of RunLq's own files, sorted.
std::vector<std::string> FilesIn(const std::string& folder);

// The test's folder; files in it go when the test ends.
std::string TestFolder();

std::string ReadFile(const std::string& path);
void WriteFile(const std::string& path, std::string_view bytes);

}  // namespace lq::test
