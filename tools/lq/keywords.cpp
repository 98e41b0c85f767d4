#include "tools/lq/keywords.h"

#include <new>
#include <string>
#include <string_view>

#include "lq_data/host/words/words.h"

namespace lq::tool {

namespace {

// OF, TRUE and FALSE have the numbers that the library gives them; all others follow from their
// place.
constexpr int kFirstFreeId = 100;

void Register(Scanner& scanner, const std::u16string& name, int id) {
    std::u16string small = name;
    for (char16_t& c : small) {
        if (c >= u'A' && c <= u'Z') {
            c = static_cast<char16_t>(c + (u'a' - u'A'));
        }
    }
    if (!scanner.RegisterKeyword(name.c_str(), id) || !scanner.RegisterKeyword(small.c_str(), id)) {
        throw std::bad_alloc();
    }
}

}  // namespace

void RegisterKeywords(Scanner& scanner) {
    Register(scanner, u"OF", KW_OF);
    Register(scanner, u"TRUE", KW_TRUE);
    Register(scanner, u"FALSE", KW_FALSE);
    int id = kFirstFreeId;
    for (const std::u16string_view keyword : host::Keywords()) {
        if (keyword != u"OF" && keyword != u"TRUE" && keyword != u"FALSE") {
            Register(scanner, std::u16string(keyword), id++);
        }
    }
}

}  // namespace lq::tool
