// The fuzz targets over stored inputs: files of tests/fuzz/<target>/, sample files, and a fixed
// sequence of random bytes.
#include <filesystem>
#include <fstream>
#include <random>
#include <sstream>
#include <vector>

#include <gtest/gtest.h>

#include "fuzz/targets.h"

namespace lq::test {
namespace {

namespace fs = std::filesystem;

class Replay : public testing::TestWithParam<fuzz::NamedTarget> {};

std::string ReadFile(const fs::path& path) {
    std::ifstream file(path, std::ios::binary);
    std::ostringstream bytes;
    bytes << file.rdbuf();
    return bytes.str();
}

TEST_P(Replay, KeepsItsPromises) {
    const fuzz::NamedTarget& target = GetParam();
    const auto run = [&target](const std::string& bytes) {
        target.run(reinterpret_cast<const uint8_t*>(bytes.data()), bytes.size());
    };
    run("");
    run(ReadFile(LQ_TEST_EXAMPLES "/plant/plant.xml"));
    const fs::path stored = fs::path(LQ_TEST_SOURCE) / "fuzz" / target.name;
    int files = 0;
    for (const auto& entry : fs::directory_iterator(stored)) {
        SCOPED_TRACE(entry.path());
        run(ReadFile(entry.path()));
        ++files;
    }
    EXPECT_GT(files, 0);
    std::minstd_rand random(42);
    for (int round = 0; round < 300; ++round) {
        std::string bytes(random() % 400, '\0');
        const unsigned range = random() % 2 == 0 ? 256 : 40;  // small numbers are operations
        for (char& byte : bytes) {
            byte = static_cast<char>(random() % range);
        }
        SCOPED_TRACE(round);
        run(bytes);
    }
}

INSTANTIATE_TEST_SUITE_P(Targets, Replay, testing::ValuesIn(fuzz::kTargets),
                         [](const testing::TestParamInfo<fuzz::NamedTarget>& target) {
                             return std::string(target.param.name);
                         });

}  // namespace
}  // namespace lq::test
