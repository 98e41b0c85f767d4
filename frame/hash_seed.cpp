// The seed of the hash of texts, which is drawn when the library is loaded.
#include <ctime>
#include <sys/auxv.h>
#include <sys/random.h>

#include "lq_data/detail/text_hash.h"

namespace lq::text_hash {

namespace {

// The step of SplitMix64 (Steele, Lea, Flood: Fast Splittable Pseudorandom Number Generators,
// 2014).
uint64_t NextOf(uint64_t& number) noexcept {
    number += 0x9E3779B97F4A7C15u;
    uint64_t mixed = (number ^ number >> 30) * 0xBF58476D1CE4E5B9u;
    mixed = (mixed ^ mixed >> 27) * 0x94D049BB133111EBu;
    return mixed ^ mixed >> 31;
}

// Stands in for random numbers when the kernel has none yet or refuses them. It mixes what others
// can hardly know: the random bytes that the kernel gave the process at its start, the time, and
// the address to which the library was loaded.
uint64_t GuessNumber() noexcept {
    uint64_t number = reinterpret_cast<std::uintptr_t>(&seed);
    if (const auto* given = reinterpret_cast<const void*>(getauxval(AT_RANDOM))) {
        uint64_t words[2];
        std::memcpy(words, given, sizeof words);
        number ^= words[0] ^ NextOf(words[1]);
    }
    std::timespec now = {};
    std::timespec_get(&now, TIME_UTC);
    return number ^ static_cast<uint64_t>(now.tv_sec * 1'000'000'000 + now.tv_nsec);
}

// Runs before the constructors of all static objects, which may hash texts. Nobody can use the
// library earlier.
[[gnu::constructor(101)]] void DrawSeed() noexcept {
    if (getrandom(&seed, sizeof seed, GRND_NONBLOCK) != static_cast<ssize_t>(sizeof seed)) {
        SetSeed(GuessNumber());
    }
}

}  // namespace

constinit Seed seed = {};

void SetSeed(uint64_t number) noexcept {
    seed.word = NextOf(number);
    seed.state = NextOf(number);
    seed.length = NextOf(number);
}

}  // namespace lq::text_hash
