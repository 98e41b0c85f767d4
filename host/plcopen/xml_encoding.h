// The encodings of documents that expat does not know.
#pragma once

#include <expat.h>

namespace lq::host::plcopen {

// windows-1252 and Shift_JIS, by the names that documents give them. 0 for any other. Throws
// nothing.
int XMLCALL OnUnknownEncoding(void* self, const XML_Char* name, XML_Encoding* encoding);

}  // namespace lq::host::plcopen
