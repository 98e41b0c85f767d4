// Ends what foreign_begin.h began; see names.h.
#ifdef LQ_DATA_FOREIGN
#undef LQ_DATA_FOREIGN
#pragma pop_macro("Address")
#pragma pop_macro("ArrInfo")
#pragma pop_macro("BufferPair")
#pragma pop_macro("CgTab")
#pragma pop_macro("HashTable")
#pragma pop_macro("ID")
#pragma pop_macro("Lit")
#pragma pop_macro("Scanner")
#pragma pop_macro("Time")
#pragma pop_macro("Token")
#pragma pop_macro("Val")
#endif
