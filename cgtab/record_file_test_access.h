// The way to what a record file keeps to itself, for tests and fuzz targets.
#pragma once

#include "lq_data/record_file.h"

struct RecordFileTestAccess {
    static bool Check(const R_FILE& file) { return file.Check(); }
    static void SetClosed(int closed) { R_FILE::bClosed = closed; }
};
