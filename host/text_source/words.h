// The words of declarations, in whatever case they are written.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace lq::host::text_source {

// ORDER: the functions below tell groups apart by it.
enum class Word : uint8_t {
    kNone,

    // Sections.
    kVar,
    kVarInput,
    kVarOutput,
    kVarInOut,
    kVarTemp,
    kVarExternal,
    kVarGlobal,
    kVarInst,
    kVarStat,
    kVarConfig,
    kVarAccess,

    // Ends. Those of units lie in the order of the units below.
    kEndVar,
    kEndStruct,
    kEndUnion,
    kEndResource,
    kEndProgram,
    kEndFunction,
    kEndFunctionBlock,
    kEndMethod,
    kEndProperty,
    kEndClass,
    kEndInterface,
    kEndNamespace,
    kEndType,
    kEndConfiguration,
    kEndTest,

    // What begins what an end ends.
    kProgram,
    kFunction,
    kFunctionBlock,
    kMethod,
    kProperty,
    kClass,
    kInterface,
    kNamespace,
    kType,
    kConfiguration,
    kTest,
    kStruct,
    kUnion,
    kResource,
    kTask,

    // Behind the word of a section.
    kConstant,
    kRetain,
    kNonRetain,
    kPersistent,

    // Before a name.
    kPublic,
    kPrivate,
    kProtected,
    kInternal,
    kAbstract,
    kFinal,
    kOverride,

    // Of code: no name of a unit.
    kAnd,
    kOr,
    kXor,
    kNot,
    kMod,
    kThen,
    kDo,
    kTo,
    kBy,
    kOf,

    kAt,
    kArray,
    kString,
    kWString,
    kRefTo,
    kPointer,
    kReference,
    kRisingEdge,
    kFallingEdge,
    kReadOnly,
    kReadWrite,
    kExtends,
    kImplements,
    kUsing,
    kWith,
    kOn,
    kInterval,
    kSingle,
    kPriority,
    kStep,
    kInitialStep,
    kTransition,
    kAction,
    kEndAction,
};

constexpr bool IsBetween(Word word, Word first, Word last) {
    return word >= first && word <= last;
}
constexpr bool IsSection(Word word) {
    return IsBetween(word, Word::kVar, Word::kVarAccess);
}
constexpr bool IsEnd(Word word) {
    return IsBetween(word, Word::kEndVar, Word::kEndTest);
}
constexpr bool IsEndOfUnit(Word word) {
    return IsBetween(word, Word::kEndProgram, Word::kEndFunctionBlock);
}
// What the model has units for.
constexpr bool IsUnit(Word word) {
    return IsBetween(word, Word::kProgram, Word::kFunctionBlock);
}
// What stands in no unit, and begins with its word and a name.
constexpr bool IsHeader(Word word) {
    return IsBetween(word, Word::kProgram, Word::kTest);
}
constexpr bool IsMark(Word word) {
    return IsBetween(word, Word::kConstant, Word::kPersistent);
}
constexpr bool IsModifier(Word word) {
    return IsBetween(word, Word::kPublic, Word::kOverride);
}
constexpr bool IsOfCode(Word word) {
    return IsBetween(word, Word::kAnd, Word::kOf);
}

// The end of what begins with one of kProgram to kTest.
constexpr Word EndOf(Word word) {
    return static_cast<Word>(static_cast<int>(word) - static_cast<int>(Word::kProgram) +
                             static_cast<int>(Word::kEndProgram));
}
static_assert(EndOf(Word::kTest) == Word::kEndTest);

Word WordOf(std::u16string_view text);
std::string Spelled(Word word);

// An elementary or generic type, in capitals; without a name for any other word.
struct TypeWord {
    std::u16string_view name;
    bool isWhole = false;  // an integer or bit string
};
TypeWord TypeWordOf(std::u16string_view text);

}  // namespace lq::host::text_source
