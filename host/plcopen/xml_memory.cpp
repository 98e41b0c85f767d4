#include "host/plcopen/xml_memory.h"

#include <cstdint>
#include <cstdlib>

#include "lq_data/memory.h"

namespace lq::host::plcopen {

namespace {

// In front of each block; as large as keeps the block aligned.
union Head {
    std::size_t size;
    std::max_align_t alignment;
};

Head* HeadOf(void* block) {
    return static_cast<Head*>(block) - 1;
}

}  // namespace

thread_local XmlMemory* XmlMemory::current = nullptr;

XmlMemory::XmlMemory() : outer_(current) {
    current = this;
}

XmlMemory::~XmlMemory() {
    current = outer_;
}

const XML_Memory_Handling_Suite& XmlMemory::Functions() {
    static constexpr XML_Memory_Handling_Suite kFunctions = {Allocate, Reallocate, Release};
    return kFunctions;
}

bool XmlMemory::Take(std::size_t size, std::size_t old) {
    if (size > old && size - old > most_ - (used_ < most_ ? used_ : most_)) {
        isExceeded_ = true;
        return false;
    }
    used_ += size - old;
    return true;
}

void* XmlMemory::Allocate(std::size_t size) {
    return Reallocate(nullptr, size);
}

void* XmlMemory::Reallocate(void* block, std::size_t size) {
    const std::size_t old = block ? HeadOf(block)->size : 0;
    if (size > SIZE_MAX - sizeof(Head) || !current->Take(size, old)) {
        return nullptr;
    }
    void* const memory = std::realloc(block ? HeadOf(block) : nullptr, sizeof(Head) + size);
    if (!memory) {
        current->Take(old, size);
        ReportShortage();
        return nullptr;
    }
    Head* const head = static_cast<Head*>(memory);
    head->size = size;
    return head + 1;
}

void XmlMemory::Release(void* block) {
    if (block) {
        current->Take(0, HeadOf(block)->size);
        std::free(HeadOf(block));
    }
}

}  // namespace lq::host::plcopen
