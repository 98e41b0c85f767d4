// One target as a program of the fuzzer; LQ_FUZZ_TARGET is its name.
#include <string_view>

#include "fuzz/targets.h"
#include "lq_data/detail/text_hash.h"

namespace {

lq::fuzz::Target Find(std::string_view name) {
    for (const auto& target : lq::fuzz::kTargets) {
        if (target.name == name) {
            lq::text_hash::SetSeed(1);  // so that an input that fails once fails again
            return target.run;
        }
    }
    std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    static const lq::fuzz::Target run = Find(LQ_FUZZ_TARGET);
    run(data, size);
    return 0;
}
