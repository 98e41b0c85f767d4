// What was added or removed, in a few words.
#pragma once

#include <string>

#include "lq_data/host/model/project.h"

namespace lq::host::diff {

Text KindText(LQ_OBJECT_KIND kind);    // "function block"
Text LanguageText(Language language);  // "ST"; empty for none
Text ConditionText(const Mark& jump);  // "conditional"; empty for a jump that is not
Text TypeText(const DataType& type);   // as it was declared; "STRUCT" of a structure
// The task's name; empty for none.
Text TaskText(const Project& project, const ProgramInstance& instance);

// "function : INT"
std::u16string Written(const Pou& pou);
// "INT (0..5) := 2"
std::u16string Written(const DataType& type);
// "VAR_INPUT INT AT %IW2 := 5"; a member without its section
std::u16string Written(const Declaration& declaration);
// "INTERVAL := T#20ms, PRIORITY := 1"
std::u16string Written(const Task& task);
// "WITH Cyclic : Mixing"
std::u16string Written(const Project& project, const ProgramInstance& instance);

}  // namespace lq::host::diff
