// The code pages of documents that expat does not read by itself.
#pragma once

#include <expat.h>

namespace lq::host::plcopen {

// Tells expat of the encoding that a document declares; false when it is neither windows-1252 nor
// Shift_JIS under any of their names, or the system does not know it. Throws std::bad_alloc.
bool DescribeEncoding(const XML_Char* name, XML_Encoding& encoding);

}  // namespace lq::host::plcopen
