// What the library asks the user adapter library: site-specific answers.
#pragma once

#include <cstdint>

#include "lq_data/export.h"

struct LQ_WINDOW;
using HWND = LQ_WINDOW*;

// The message of every question, and the questions (its first parameter).
inline constexpr uint32_t LQ_WM_USER = 0x400;
inline constexpr uint32_t LQ_ASK_SFC_STEP = 29;
inline constexpr uint32_t LQ_ASK_SFC_ACTION = 30;
inline constexpr uint32_t LQ_ASK_SFC_DEBUG = 35;
inline constexpr uint32_t LQ_ASK_INT_AS_BITS = 64;
inline constexpr uint32_t LQ_ASK_BITS_AS_INT = 65;
inline constexpr uint32_t LQ_ASK_NUL_ESCAPE = 84;

// Reply to LQ_ASK_NUL_ESCAPE: zeroed by the caller, the first word set by the adapter.
struct LQ_OPTION_REPLY {
    int32_t option;
    int32_t reserved;
};

// Reply to the three questions about hidden interfaces. The memory stays the adapter's.
struct LQ_INTERFACE_ENTRY {
    uint32_t scope;  // DECL_SCOPE
    const char16_t* name;
    int32_t typeBits;  // a type bitset
    const char16_t* initValue;
};
struct LQ_INTERFACE_REPLY {
    uint32_t count;
    const LQ_INTERFACE_ENTRY* entries;
};

// `lParam` is 0 or the address of the reply record of the question. For the hidden interfaces the
// result 0 says that the reply is filled.
LQ_DATA_API int32_t ProcessUserDLLMessage(HWND window, uint32_t message, uint32_t wParam,
                                          intptr_t lParam);
