#include "tools/lq/line_bytes.h"

#include "lq_data/cgtab_compiler.h"
#include "lq_data/env/lq_base.h"

namespace lq::tool {

namespace {

class StringStream : public STREAM_A {
  public:
    int32_t GetBlock(void*, int32_t, STREAMERROR*) override { return 0; }
    int32_t PutBlock(const void* from, int32_t count, STREAMERROR*) override {
        bytes.append(static_cast<const char*>(from), static_cast<size_t>(count));
        return count;
    }

    std::string bytes;
};

}  // namespace

std::string BytesOf(CgTab& tables, CgTab::TAB_ID id) {
    StringStream stream;
    stream.bytes.reserve(static_cast<size_t>(CgTabCompiler::LengthOf(tables, id)));
    tables.Put(id, stream);
    return std::move(stream.bytes);
}

}  // namespace lq::tool
