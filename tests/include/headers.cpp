// tests/include/headers.cpp — the public headers as a C++ host sees them:
// both compile together, every function is noexcept in its type, and the
// declarations carry the calling convention the host expects. The checks
// are compile-time; headersCpp adds one call through each header.
#include <cstring>
#include <type_traits>

#include "orth.h"
#include "orth_client.h"
#include "tmspl32.h"

static_assert(std::is_same<decltype(&DictOpen),
                           DictHandle *(DICT_CALL *)(const char *, const void *, int32_t) noexcept>::value,
              "DictOpen's type");
static_assert(std::is_same<decltype(&DictGetNextSug), int32_t(DICT_CALL *)(DictHandle *, char *) noexcept>::value,
              "DictGetNextSug's type");
static_assert(std::is_same<decltype(&ORTH_Suggest), int16_t(ORTH_CALL *)(int16_t, const char *, int16_t, char *,
                                                                         int32_t, int16_t *, uint16_t) noexcept>::value,
              "ORTH_Suggest's type");
static_assert(std::is_same<decltype(&resultCodeName), const char *(ORTH_CALL *)(int16_t) noexcept>::value,
              "resultCodeName's type");
static_assert(noexcept(ORTH_OpenSession()) && noexcept(DictClose(nullptr)), "the functions never throw");

extern "C" int headersCpp(void) {
    char buffer[64] = "";
    int failed = 0;
    if (std::strcmp(resultCodeName(0), "Ok.") != 0) ++failed;
    if (DictGetNextSug(nullptr, buffer) != 0) ++failed;
    return failed;
}
