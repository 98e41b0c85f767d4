// EN and ENO, the parameters that a POU with the ENO flag has beside its own.
#pragma once

#include "lq_data/pouh.h"

namespace lq::pouh {

struct EnableParameter {
    const char16_t* name;
    int32_t declClass;
};

inline constexpr EnableParameter kEnable = {u"EN", LQ_CLASS_INPUT};
inline constexpr EnableParameter kEnableOut = {u"ENO", LQ_CLASS_OUTPUT};

// Gives `decl` the type, class and initial value of the parameter, not its name.
void DescribeEnable(LQPOUHDECL& decl, const EnableParameter& parameter);

}  // namespace lq::pouh
