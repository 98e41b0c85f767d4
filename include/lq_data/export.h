// The one export macro. The library is built with hidden visibility; what carries LQ_DATA_API is
// its interface.
#pragma once

#if defined(__GNUC__)
#define LQ_DATA_API __attribute__((visibility("default")))
#else
#define LQ_DATA_API
#endif
