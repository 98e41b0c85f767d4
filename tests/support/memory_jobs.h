// One harness for want of memory: a job, whatever allocation of it fails, gives its whole answer or
// its documented failure, and the whole answer as soon as memory is back.
#pragma once

#include <functional>
#include <string>

namespace lq::test {

// The answer of an attempt that memory was too short for.
inline const std::string kShort = "(short of memory)";

// One attempt after another on the same objects: the whole answer, or kShort.
using Attempt = std::function<std::string()>;

struct MemoryJob {
    const char* name;
    // Makes the objects of the job, with memory at hand; they live as long as the attempt.
    std::function<Attempt()> start;
};

// The job with its first allocation failing, then its second, and so on until it gets through; once
// for single failures, once with all later allocations failing too; each followed by an attempt
// with memory. What the job answers when nothing fails is the whole answer. A job that failed has
// changed nothing that shows: the attempt behind it answers as a first one does. No block is left
// over, and the job must allocate something.
void RunWithFailures(const MemoryJob& job);

// The same of a job on one object: `make` gives a shared pointer to it, `run` the answer.
template <typename Make, typename Run>
void RunWithFailures(const char* name, const Make& make, const Run& run) {
    RunWithFailures({name, [&]() -> Attempt {
                         const auto object = make();
                         return [&run, object] { return run(*object); };
                     }});
}

}  // namespace lq::test
