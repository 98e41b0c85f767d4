#include "lq_data/host/model/section.h"

#include <cstddef>
#include <iterator>

namespace lq::host {

namespace {

// Keywords without attribute, with constant, with retain, with both; null where there is none.
struct Row {
    const char16_t* keyword[4];
};

// ORDER Scope
constexpr Row kRows[] = {
    {{u"VAR", u"VAR_CONSTANT", u"VAR_RETAIN", u"VAR_CONSTANT_RETAIN"}},
    {{u"VAR", nullptr, nullptr, nullptr}},
    {{u"VAR_INPUT", u"VAR_INPUT CONSTANT", u"VAR_INPUT_RETAIN", nullptr}},
    {{u"VAR_IN_EXT", nullptr, nullptr, nullptr}},
    {{u"VAR_OUTPUT", nullptr, u"VAR_OUTPUT_RETAIN", nullptr}},
    {{u"VAR_IN_OUT", nullptr, nullptr, nullptr}},
    {{u"VAR_EXTERNAL", u"VAR_EXTERNAL_CONSTANT", u"VAR_EXTERNAL_RETAIN",
      u"VAR_EXTERNAL_CONSTANT_RETAIN"}},
    {{u"VAR_GLOBAL", u"VAR_GLOBAL_CONSTANT", u"VAR_GLOBAL_RETAIN", u"VAR_GLOBAL_CONSTANT_RETAIN"}},
};
static_assert(std::size(kRows) == static_cast<std::size_t>(Scope::kGlobal) + 1);

const char16_t* Find(Section section) {
    const Row& row = kRows[static_cast<std::size_t>(section.scope)];
    return row.keyword[(section.constant ? 1u : 0u) + (section.retain ? 2u : 0u)];
}

}  // namespace

Section NearestSection(Section section) {
    if (Find(section)) {
        return section;
    }
    if (section.scope == Scope::kInput) {
        section.retain = false;
    } else {
        section.constant = false;
    }
    return Find(section) ? section : Section{section.scope};
}

const char16_t* KeywordOf(Section section) {
    return Find(NearestSection(section));
}

}  // namespace lq::host
