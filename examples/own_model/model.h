// What the program knows of its model beside the library's interface to it.
#pragma once

#include <lq_data/env/lq_model.h>

constexpr ID kList(1);
constexpr ID kProgram(2);
uint32_t LineOf(ID id);
