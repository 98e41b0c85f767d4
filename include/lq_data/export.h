// The one export macro. The library is built with hidden visibility; what carries LQ_DATA_API is
// its interface.
#pragma once

#if defined(__GNUC__)
#define LQ_DATA_API __attribute__((visibility("default")))
// Marks a member of an exported class that is not part of the interface.
#define LQ_DATA_LOCAL __attribute__((visibility("hidden")))
#else
#define LQ_DATA_API
#define LQ_DATA_LOCAL
#endif
