// engine/options.cpp — the session's on/off options (bits of one mask) and
// its two numbers, the character set and the language.
//
// (1) An id with several bits reads as 1 when any of them is on, and sets or
//     clears all of them together. Values are stored as given: a character
//     set outside 0 to 9 reads row 0 of the character tables (chartab.h).
#include "engine/log.h"
#include "engine/session.h"
#include "orth.h"

extern "C" ORTH_API int32_t ORTH_CALL ORTH_SetOption(int16_t sessionId, uint32_t optionId, uint32_t value) noexcept {
    Session *s = sessionFor(sessionId, "ORTH_SetOption");
    if (s == nullptr) return ORTH_BAD_SESSION_ID_ERR;
    int32_t previous;
    if (optionId == ORTH_CHARSET_OPT) {
        previous = s->charSet;
        s->charSet = static_cast<int16_t>(value & 0xFFFF);
    } else if (optionId == ORTH_LANGUAGE_OPT) {
        previous = s->language;
        s->language = static_cast<int16_t>(value & 0xFFFF);
    } else {
        previous = (s->options & optionId) != 0 ? 1 : 0;
        if (value != 0) s->options |= optionId;
        else s->options &= ~optionId;
    }
    return previous;
}

extern "C" ORTH_API int32_t ORTH_CALL ORTH_GetOption(int16_t sessionId, uint32_t optionId) noexcept {
    Session *s = sessionFor(sessionId, "ORTH_GetOption");
    if (s == nullptr) return ORTH_BAD_SESSION_ID_ERR;
    if (optionId == ORTH_CHARSET_OPT) return s->charSet;
    if (optionId == ORTH_LANGUAGE_OPT) return s->language;
    return (s->options & optionId) != 0 ? 1 : 0;
}
