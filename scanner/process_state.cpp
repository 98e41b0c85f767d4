#include "scanner/process_state.h"

#include "lq_useradapt.h"

namespace lq::scanner {

constinit CommaFlag commaEndsString;

int32_t AskNulEscape() {
    LQ_OPTION_REPLY reply = {0, 0};
    ProcessUserDLLMessage(nullptr, LQ_WM_USER, LQ_ASK_NUL_ESCAPE,
                          reinterpret_cast<intptr_t>(&reply));
    return reply.option;
}

}  // namespace lq::scanner
