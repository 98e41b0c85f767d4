#include "lq_data/host/model/section.h"

#include <cstddef>

#include "lq_data/detail/in_order.h"

namespace lq::host {

namespace {

// The keywords without attribute, with constant, with retain, with both; null where there is none.
struct Keywords {
    const char16_t* at[4];
};

constexpr RowOf<Scope, Keywords> kKeywords[] = {
    {Scope::kLocal, {{u"VAR", u"VAR_CONSTANT", u"VAR_RETAIN", u"VAR_CONSTANT_RETAIN"}}},
    {Scope::kTemp, {{u"VAR", nullptr, nullptr, nullptr}}},
    {Scope::kInput, {{u"VAR_INPUT", u"VAR_INPUT CONSTANT", u"VAR_INPUT_RETAIN", nullptr}}},
    {Scope::kInExt, {{u"VAR_IN_EXT", nullptr, nullptr, nullptr}}},
    {Scope::kOutput, {{u"VAR_OUTPUT", nullptr, u"VAR_OUTPUT_RETAIN", nullptr}}},
    {Scope::kInOut, {{u"VAR_IN_OUT", nullptr, nullptr, nullptr}}},
    {Scope::kExternal,
     {{u"VAR_EXTERNAL", u"VAR_EXTERNAL_CONSTANT", u"VAR_EXTERNAL_RETAIN",
       u"VAR_EXTERNAL_CONSTANT_RETAIN"}}},
    {Scope::kGlobal,
     {{u"VAR_GLOBAL", u"VAR_GLOBAL_CONSTANT", u"VAR_GLOBAL_RETAIN",
       u"VAR_GLOBAL_CONSTANT_RETAIN"}}},
    {Scope::kConfig, {{u"VAR_CONFIG", nullptr, nullptr, nullptr}}},
    {Scope::kAccess, {{u"VAR_ACCESS", nullptr, nullptr, nullptr}}},
};
static_assert(AreInOrder(kKeywords, Scope::kAccess));

const char16_t* Find(Section section) {
    const Keywords& keywords = kKeywords[static_cast<std::size_t>(section.scope)].value;
    return keywords.at[(section.constant ? 1u : 0u) + (section.retain ? 2u : 0u)];
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

std::u16string WrittenSection(Section section) {
    const unsigned marks = section.marks;
    // Persistent variables count as retained ones; that is no mark of theirs.
    const bool isRetained = section.retain && (marks & kMarkPersistent) == 0;
    std::u16string text = section.scope == Scope::kTemp ? u"VAR_TEMP" : Find({section.scope});
    text += section.constant || (marks & kMarkConstant) != 0 ? u" CONSTANT" : u"";
    text += isRetained || (marks & kMarkRetain) != 0 ? u" RETAIN" : u"";
    text += (marks & kMarkNonRetain) != 0 ? u" NON_RETAIN" : u"";
    text += (marks & kMarkPersistent) != 0 ? u" PERSISTENT" : u"";
    text += (marks & kMarkReadOnly) != 0 ? u" READ_ONLY" : u"";
    text += (marks & kMarkReadWrite) != 0 ? u" READ_WRITE" : u"";
    return text;
}

const char16_t* KeywordOf(Section section) {
    return Find(NearestSection(section));
}

}  // namespace lq::host
