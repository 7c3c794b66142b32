// platform/profilename.cpp — the profile writes refused on every platform.
#include "platform/profilename.h"

#include <cstring>

namespace {

bool isBlank(char c) { return c == ' ' || c == '\t'; }

bool fitsName(const char *s, bool isKey) {
    size_t n = std::strlen(s);
    if (n == 0 || isBlank(s[0]) || isBlank(s[n - 1])) return false;
    if (isKey && std::strchr("[;#", s[0]) != nullptr) return false;
    return std::strpbrk(s, isKey ? "\r\n=" : "\r\n]") == nullptr;
}

}  // namespace

bool profileWriteFits(const char *section, const char *key, const char *value) {
    return section != nullptr && key != nullptr && value != nullptr && fitsName(section, false) &&
           fitsName(key, true) && std::strpbrk(value, "\r\n") == nullptr;
}
