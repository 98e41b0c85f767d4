// A parse of a document by expat alone, as the reader has it parse: what `lq translate` is measured
// beside.
//
//   lq_expat_alone FILE
#include <cstdio>

#include <expat.h>

int main(int argc, char** argv) {
    const XML_Parser parser = XML_ParserCreateNS(nullptr, '|');
    XML_SetElementHandler(
        parser, [](void*, const XML_Char*, const XML_Char**) {}, [](void*, const XML_Char*) {});
    XML_SetCharacterDataHandler(parser, [](void*, const XML_Char*, int) {});
    std::FILE* const file = argc == 2 ? std::fopen(argv[1], "rb") : nullptr;
    static char buffer[65536];
    for (;;) {
        const std::size_t size = file ? std::fread(buffer, 1, sizeof(buffer), file) : 0;
        if (XML_Parse(parser, buffer, static_cast<int>(size), size == 0) != XML_STATUS_OK) {
            return 1;
        }
        if (size == 0) {
            return 0;
        }
    }
}
