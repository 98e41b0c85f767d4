// A resource library: the texts of the language that the build names.
#include "host/resources/texts.h"

extern "C" LQ_DATA_API const LQ_STRING_TABLE lq_string_table;
const LQ_STRING_TABLE lq_string_table = {std::size(lq::host::LQ_LANGUAGE), lq::host::LQ_LANGUAGE};
