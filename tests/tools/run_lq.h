// Running the command-line tool as a user would.
#pragma once

#include <string>
#include <string_view>

namespace lq::test {

struct Outcome {
    int status = -1;  // the exit status; -1 when the tool was killed
    std::string out;
    std::string err;
};

// Runs lq with the arguments, as a shell reads them, in a folder of its own for each test; `input`
// is its standard input. Paths of sample projects: "$EXAMPLES/plant/plant.xml".
Outcome RunLq(const std::string& arguments, std::string_view input = "");

// The test's folder; files in it go when the test ends.
std::string TestFolder();

std::string ReadFile(const std::string& path);
void WriteFile(const std::string& path, std::string_view bytes);

}  // namespace lq::test
