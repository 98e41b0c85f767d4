// Documents of many shapes, of any size: honest projects, each large in one way, and such as
// someone makes who wants much time or memory to go into little.
#pragma once

#include <cstddef>
#include <span>
#include <string>

namespace lq::bench {

struct Shape {
    const char* name;
    std::string (*document)(std::size_t bytes);  // of that size, or little more
    std::size_t times = 1;                       // how much larger it must be to show something
};

std::span<const Shape> HonestShapes();
std::span<const Shape> HostileShapes();

}  // namespace lq::bench
