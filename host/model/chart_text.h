// Sequential charts as text.
#pragma once

#include "lq_data/host/model/code.h"

namespace lq::host {

// Makes of the tokens of a chart the pieces that a drawing of it has: steps, actions, targets, and
// the code of transitions and actions.
void SplitChart(BodyCode& code);

}  // namespace lq::host
