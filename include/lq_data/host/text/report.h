// What the readers of project files have to say about them.
#pragma once

#include <cstdint>
#include <string>

#include "lq_data/export.h"

namespace lq::host {

// Something that a reader has to say about a file. Like reports, in different places, are one:
// that of the first place.
struct Report {
    std::string file;
    uint32_t line = 0;  // both from 1; 0 when the report concerns the whole file
    uint32_t column = 0;
    std::string path;     // in XML "project/types/pous/pou[Main]/interface"; may be empty
    std::string message;  // a sentence without a full stop
    uint32_t more = 0;    // further places
    bool error = false;   // the file was not read to its end
    uint16_t code = 0;    // of the check that this is; it never changes. 0 for none of its own
};

// "plant.xml:12:5: project/types: <thing> in <types> is not known and was left out (and 2 more)".
LQ_DATA_API std::string ToText(const Report& report);

}  // namespace lq::host
