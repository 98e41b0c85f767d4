// The memory that expat may take for a document.
#pragma once

#include <cstddef>

#include <expat.h>

namespace lq::host::plcopen {

// As long as it lives, what expat takes on this thread counts against it. For each byte of a
// document a parser may hold so many as no sound document needs; a short document that makes it
// take more is one that was written for that.
class XmlMemory {
  public:
    XmlMemory();
    ~XmlMemory();
    XmlMemory(const XmlMemory&) = delete;
    XmlMemory& operator=(const XmlMemory&) = delete;

    static const XML_Memory_Handling_Suite& Functions();

    void Allow(std::size_t documentBytes) { most_ += documentBytes * kEach; }
    // From now on expat gets nothing.
    void End() { most_ = 0; }
    bool IsExceeded() const { return isExceeded_; }

  private:
    static constexpr std::size_t kFirst = 4 << 20;
    static constexpr std::size_t kEach = 32;

    static void* Allocate(std::size_t size);
    static void* Reallocate(void* block, std::size_t size);
    static void Release(void* block);

    // Whether so much may be taken when so much is given back.
    bool Take(std::size_t size, std::size_t old);

    // Takes no memory when the library is opened late, as the loader would for another kind.
    [[gnu::tls_model("initial-exec")]] static thread_local XmlMemory* current;

    XmlMemory* const outer_;
    std::size_t used_ = 0;
    std::size_t most_ = kFirst;
    bool isExceeded_ = false;
};

}  // namespace lq::host::plcopen
