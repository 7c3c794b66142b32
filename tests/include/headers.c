/* tests/include/headers.c — the public headers as a C host sees them:
 * compiled as strict C99 with warnings as errors, their declarations must
 * match the function-pointer types a host writes for itself (__stdcall on
 * Windows, so a convention mismatch fails the build), and calls through
 * them must reach the library (the DLLs' import libraries on Windows).
 * Prints "headers: N passed, N failed" and exits 0 only when none failed. */
#include <stdio.h>
#include <string.h>

#include "orth.h"
#include "orth_client.h"
#include "tmspl32.h"

#ifdef _WIN32
#define HOST_CALL __stdcall
#else
#define HOST_CALL
#endif

typedef DictHandle *(HOST_CALL *DictOpenFn)(const char *, const void *, int32_t);
typedef int32_t(HOST_CALL *DictCloseFn)(DictHandle *);
typedef int32_t(HOST_CALL *DictWordFn)(DictHandle *, const char *);
typedef int32_t(HOST_CALL *DictSugFn)(DictHandle *, char *);
typedef int16_t(HOST_CALL *OpenSessionFn)(void);
typedef int16_t(HOST_CALL *CloseSessionFn)(int16_t);
typedef void(HOST_CALL *VersionFn)(uint16_t *, uint16_t *);
typedef const char *(HOST_CALL *CodeNameFn)(int16_t);
typedef int16_t(HOST_CALL *CheckWordFn)(int16_t, uint32_t, const char *, char *, uint16_t);
typedef int16_t(HOST_CALL *RegTreeNameFn)(char *, uint16_t);
typedef void(HOST_CALL *StatisticsFn)(uint32_t *, uint32_t *, uint32_t *);

int headersCpp(void); /* headers.cpp: the C++ view; the number of failed checks */

static int passed, failed;

static void expect(int ok, const char *what) {
    if (ok) {
        ++passed;
    } else {
        ++failed;
        printf("FAILED: %s\n", what);
    }
}

int main(void) {
    DictOpenFn dictOpen = DictOpen;
    DictCloseFn dictClose = DictClose;
    DictWordFn dictCheck = DictCheckWord, dictAdd = DictAddWord;
    DictSugFn dictSug = DictGetNextSug;
    OpenSessionFn openSession = ORTH_OpenSession;
    CloseSessionFn closeSession = ORTH_CloseSession;
    VersionFn version = ORTH_Version;
    CodeNameFn codeName = resultCodeName;
    CheckWordFn checkWord = ORTH_CheckWord;
    RegTreeNameFn regTreeName = ORTH_GetRegTreeName;
    StatisticsFn statistics = ORTH_GetStatistics;
    uint32_t checked = 7;
    uint16_t major = 0, minor = 0;
    char buffer[64] = "";
    unsigned char record[256] = {0};
    int16_t sid;

    version(&major, &minor);
    expect(major == ORTH_VERSION_MAJOR && minor == ORTH_VERSION_MINOR, "ORTH_Version 4.21");
    expect(strcmp(codeName(ORTH_BAD_SESSION_ID_ERR), "ORTH_BAD_SESSION_ID_ERR") == 0, "resultCodeName(-2)");
    sid = openSession();
    expect(sid >= 0, "ORTH_OpenSession");
    expect(checkWord(sid, 0, "word", buffer, sizeof buffer) > 0, "a word no lexicon holds is reported");
    expect(closeSession(sid) == ORTH_OK, "ORTH_CloseSession");
    expect(closeSession(sid) == ORTH_BAD_SESSION_ID_ERR, "closing it again");
    /* An empty host record over a missing folder: the open fails cleanly. */
    expect(dictOpen("no-such-folder/", record, 0) == NULL, "DictOpen over a missing folder");
    expect(dictClose(NULL) == 0 && dictCheck(NULL, "word") == 1 && dictAdd(NULL, "word") == 0 &&
               dictSug(NULL, buffer) == 0,
           "the Dict functions refuse a null handle");
    /* The client level: a 16-bit size after a pointer, three pointers. */
    expect(regTreeName(buffer, 5) == ORTH_OK && strcmp(buffer, "Soft") == 0, "ORTH_GetRegTreeName cut to 5");
    statistics(&checked, NULL, NULL);
    expect(checked == 0, "ORTH_GetStatistics before any check");
    failed += headersCpp();
    printf("headers: %d passed, %d failed\n", passed, failed);
    return failed == 0 ? 0 : 1;
}
