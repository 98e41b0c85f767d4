#include "host/plcopen/xml_memory.h"

#include <atomic>
#include <cstdlib>

#include "lq_data/memory.h"

namespace lq::host::plcopen {

namespace {

constinit std::atomic<std::uint32_t> shortages = 0;

void* Counted(void* block) noexcept {
    if (!block) {
        ++shortages;
        ReportShortage();
    }
    return block;
}

void* Allocate(std::size_t size) noexcept {
    return Counted(std::malloc(size));
}

void* Reallocate(void* block, std::size_t size) noexcept {
    return Counted(std::realloc(block, size));
}

}  // namespace

const XML_Memory_Handling_Suite kXmlMemory = {Allocate, Reallocate, std::free};

std::uint32_t XmlShortages() noexcept {
    return shortages;
}

}  // namespace lq::host::plcopen
