// What is included from here to foreign_end.h may have names of the interface for itself: names.h.
#ifndef LQ_DATA_FOREIGN
#define LQ_DATA_FOREIGN  // until the end: any number of headers may be so included
#pragma push_macro("Address")
#undef Address
#define Address ForeignAddress
#pragma push_macro("ArrInfo")
#undef ArrInfo
#define ArrInfo ForeignArrInfo
#pragma push_macro("BufferPair")
#undef BufferPair
#define BufferPair ForeignBufferPair
#pragma push_macro("CgTab")
#undef CgTab
#define CgTab ForeignCgTab
#pragma push_macro("HashTable")
#undef HashTable
#define HashTable ForeignHashTable
#pragma push_macro("ID")
#undef ID
#define ID ForeignID
#pragma push_macro("Lit")
#undef Lit
#define Lit ForeignLit
#pragma push_macro("Scanner")
#undef Scanner
#define Scanner ForeignScanner
#pragma push_macro("Time")
#undef Time
#define Time ForeignTime
#pragma push_macro("Token")
#undef Token
#define Token ForeignToken
#pragma push_macro("Val")
#undef Val
#define Val ForeignVal
#endif
