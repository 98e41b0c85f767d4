// The answers of a model without units, types and lists: nothing has a name. Each is weak, so that
// an embedder's own takes its place; LQNAVIOBJECTMAN::Get and LQDECLMAN::Get are always theirs.

#include "lq_data/env/lq_model.h"

[[gnu::weak]] LQPOUHDECL* LQPOUHDECL::CreateObject() {
    return nullptr;
}

[[gnu::weak]] ID FindPOUByName(const char16_t*) {
    return {};
}

[[gnu::weak]] ID FindDUTByName(const char16_t*) {
    return {};
}

[[gnu::weak]] LQDECL* FindGVLDeclByName(const char16_t*) {
    return nullptr;
}

[[gnu::weak]] LQDUT* GetDutByName(const char16_t*) {
    return nullptr;
}

[[gnu::weak]] int IsFBName(const char16_t*) {
    return 0;
}

[[gnu::weak]] int CheckIsRecursiveCallEx(const char16_t*, const char16_t*, int) {
    return 0;
}
