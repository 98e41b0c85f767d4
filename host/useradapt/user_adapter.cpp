#include "lq_data/host/useradapt/user_adapter.h"

namespace {

constinit lq::host::UserAdapterAnswers answers;

int32_t AnswerInterface(const LQ_INTERFACE_REPLY* known, intptr_t reply) {
    if (!known || reply == 0) {
        return 1;
    }
    *reinterpret_cast<LQ_INTERFACE_REPLY*>(reply) = *known;
    return 0;
}

}  // namespace

namespace lq::host {

UserAdapterAnswers& GetUserAdapterAnswers() noexcept {
    return answers;
}

}  // namespace lq::host

int32_t ProcessUserDLLMessage(HWND, uint32_t message, uint32_t wParam, intptr_t lParam) {
    if (message != LQ_WM_USER) {
        return 0;
    }
    switch (wParam) {
        case LQ_ASK_INT_AS_BITS:
            return answers.intAsBits;
        case LQ_ASK_BITS_AS_INT:
            return answers.bitsAsInt;
        case LQ_ASK_NUL_ESCAPE:
            if (lParam != 0) {
                reinterpret_cast<LQ_OPTION_REPLY*>(lParam)->option = answers.nulEscape;
            }
            return 0;
        case LQ_ASK_SFC_STEP:
            return AnswerInterface(answers.sfcStep, lParam);
        case LQ_ASK_SFC_ACTION:
            return AnswerInterface(answers.sfcAction, lParam);
        case LQ_ASK_SFC_DEBUG:
            return AnswerInterface(answers.sfcDebug, lParam);
        default:
            return 0;
    }
}
