// fuzz/clex_fuzz.cpp — the compressed lexicon reader over any file: open,
// lookups in both cases, case forms, and suggestions at every depth. The
// input is the whole .CLX file; its size picks the memory budget, so small
// budgets evict segments between lookups.
#include <cstdint>
#include <cstring>
#include <string>

#include "fuzz/fuzz_util.h"
#include "orth.h"

namespace {

// The list holds at most 25 words of at most 63 bytes each, an empty word
// after the last, all within the buffer, with scores from 0 to 100.
void requireWholeList(const char *list, size_t size, const int16_t *scores) {
    size_t at = 0;
    for (int n = 0;; ++n) {
        require(at < size, "suggestion list ends within its buffer");
        size_t len = strnlen(list + at, size - at);
        require(at + len < size, "suggestion terminated within the buffer");
        if (len == 0) return;
        require(n < 25 && len <= 63, "at most 25 suggestions of at most 63 bytes");
        require(scores[n] >= 0 && scores[n] <= 100, "scores from 0 to 100");
        at += len + 1;
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
    static const std::string path = scratchFile("input.clx");
    writeBytes(path, data, size);
    static const uint32_t budgets[] = {0, 1, 512, 0xFFFFFFFFu};
    int16_t session = ORTH_OpenSession();
    int16_t lex = ORTH_OpenLex(session, path.c_str(), budgets[size % 4]);
    if (lex >= 0) {
        char replacement[64], list[1250];
        int16_t scores[25];
        for (const std::string &word : probeWords(data, size)) {
            for (uint32_t caseOpt : {0u, static_cast<uint32_t>(ORTH_CASE_SENSITIVE_OPT)}) {
                ORTH_SetOption(session, ORTH_CASE_SENSITIVE_OPT, caseOpt != 0);
                int16_t rc = ORTH_CheckWord(session, 0, word.c_str(), replacement, sizeof replacement);
                require(rc >= -24, "check result is a known code");
            }
            char form[64];
            int16_t rc = ORTH_FindCaseForm(session, word.c_str(), form, sizeof form);
            require(rc == 0 || rc == ORTH_WORD_NOT_FOUND_ERR, "a case form is found or not");
        }
        int n = 0;
        for (const std::string &word : probeWords(data, size)) {
            if (n++ >= 6) break;  // suggestions are the costly part: a few words at every depth
            for (int16_t depth = -1; depth <= 4; ++depth) {
                int16_t rc = ORTH_Suggest(session, word.c_str(), depth, list, sizeof list, scores, 25);
                if (rc == 0) requireWholeList(list, sizeof list, scores);
            }
        }
    }
    ORTH_CloseSession(session);
    return 0;
}
