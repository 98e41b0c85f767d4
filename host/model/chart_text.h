// Sequential charts as text.
#pragma once

#include "lq_data/host/model/code.h"

namespace lq::host {

// Makes of the tokens of a chart the pieces that a drawing of it has: steps, what they do, targets,
// and the code of transitions. Actions are bodies of their own.
void SplitChart(BodyCode& code);

}  // namespace lq::host
