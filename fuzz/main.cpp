// One target as a program of the fuzzer; LQ_FUZZ_TARGET is its function.
#include "fuzz/targets.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    lq::fuzz::LQ_FUZZ_TARGET(data, size);
    return 0;
}
