// platform/datetext.cpp — the fixed English date text of log lines and
// lexicon banners, independent of the user's locale.
#include "platform/platform.h"

#include <cstdio>
#include <cstring>

void platDateText(const PlatTime &t, char out[25]) {
    static const char *const kDays[7] = {"Sun", "Mon", "Tue", "Wed", "Thu", "Fri", "Sat"};
    static const char *const kMonths[12] = {"Jan", "Feb", "Mar", "Apr", "May", "Jun",
                                            "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};
    int wd = (t.weekday >= 0 && t.weekday < 7) ? t.weekday : 0;
    int mo = (t.month >= 1 && t.month <= 12) ? t.month - 1 : 0;
    // Each field is clamped to its width so the text is always 24 characters.
    auto field = [](int v, unsigned limit) { return static_cast<unsigned>(v < 0 ? 0 : v) % limit; };
    char text[64];
    std::snprintf(text, sizeof text, "%s %s %02u %02u:%02u:%02u %04u", kDays[wd], kMonths[mo],
                  field(t.day, 100), field(t.hour, 100), field(t.minute, 100),
                  field(t.second, 100), field(t.year, 10000));
    std::memcpy(out, text, 24);
    out[24] = '\0';
}
