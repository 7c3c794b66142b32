// dict/userlist.cpp — the user word list file: a 16-bit little-endian word
// count, then one record per word (a length byte and the word's bytes).
//
// Design notes (the list file)
// (1) The file on disk is always the old list or the complete new one:
//     saveUserList writes "<list>.tmp" beside it and renames it over the old
//     file only after every byte was written. A failed write removes the
//     temporary file; a failed rename keeps it (it holds the only copy of the
//     words); the old list stays in both cases and is never deleted first.
// (2) Handles of several processes may close on one folder at once. Each
//     owns "<list>.tmp" while it writes and renames it (platOpenOwned), so
//     their writes never mix; each rename puts one whole list in place, and
//     the last one decides which words the file holds.
// (3) loadUserList adds only whole records: the first record cut short by the
//     end of the file ends the load, and the count field bounds it.
// (4) The count written always equals the records written: a lexicon of more
//     than 65535 words is saved with its first 65535, in image order.
#include <cstdlib>
#include <cstring>

#include "dict/dict_int.h"
#include "engine/limits.h"
#include "orth.h"
#include "platform/platform.h"

namespace {

// Reads exactly count bytes; false on a short read or an error.
bool readExactly(int32_t fh, void *buffer, uint32_t count) {
    return count == 0 || platRead(fh, buffer, count) == static_cast<int32_t>(count);
}

}  // namespace

int32_t loadUserList(DictHandle *handle, const char *path) {
    int32_t fh = platOpenRead(path);
    if (fh < 0) return 0;
    unsigned char countBytes[2];
    int32_t loaded = 0;
    if (readExactly(fh, countBytes, 2)) {
        uint32_t count = countBytes[0] | (countBytes[1] << 8);
        char word[kDictWordBufSize];
        for (uint32_t n = 0; n < count; ++n) {
            unsigned char len = 0;
            if (!readExactly(fh, &len, 1) || !readExactly(fh, word, len)) break;
            word[len] = '\0';
            if (len == 0) continue;  // an empty record names no word
            ORTH_AddToLex(static_cast<int16_t>(handle->sessionId),
                          static_cast<int16_t>(handle->userLexId), word, nullptr);
            ++loaded;
        }
    }
    platClose(fh);
    return loaded;
}

int16_t saveUserList(DictHandle *handle, const char *path) {
    int16_t session = static_cast<int16_t>(handle->sessionId);
    int16_t lex = static_cast<int16_t>(handle->userLexId);
    uint32_t size = 0;
    int16_t rc = ORTH_GetLexInfo(session, lex, &size, nullptr, nullptr, nullptr);
    if (rc < 0) return rc;
    if (size == 0) size = 1;
    auto *image = static_cast<char *>(std::calloc(size, 1));
    if (image == nullptr) return ORTH_OUT_OF_MEMORY_ERR;
    int32_t got = ORTH_GetLex(session, lex, image, size);
    if (got < 0) { std::free(image); return static_cast<int16_t>(got); }
    image[size - 1] = '\0';

    // The file image: the count, then the records; never larger than the
    // lexicon image plus the count.
    auto *file = static_cast<unsigned char *>(std::malloc(size + 2));
    if (file == nullptr) { std::free(image); return ORTH_OUT_OF_MEMORY_ERR; }
    uint32_t fileLen = 2, words = 0, pos = 0;
    while (pos < size && image[pos] != '\0' && words < kDictMaxListWords) {
        size_t len = std::strlen(image + pos);
        if (len <= 255) {  // longer entries cannot be recorded; the engine keeps 63
            file[fileLen++] = static_cast<unsigned char>(len);
            std::memcpy(file + fileLen, image + pos, len);
            fileLen += static_cast<uint32_t>(len);
            ++words;
        }
        pos += static_cast<uint32_t>(len) + 1;
    }
    std::free(image);
    file[0] = static_cast<unsigned char>(words & 0xFF);
    file[1] = static_cast<unsigned char>(words >> 8);

    char temp[kDictPathBufSize + 4];  // a built path and ".tmp"
    size_t pathLen = std::strlen(path);
    if (pathLen >= kDictPathBufSize) { std::free(file); return ORTH_FILE_OPEN_ERR; }
    std::memcpy(temp, path, pathLen);
    std::memcpy(temp + pathLen, ".tmp", 5);
    int32_t fh = platOpenOwned(temp, kSaveWaitMs);
    if (fh < 0) { std::free(file); return ORTH_FILE_OPEN_ERR; }
    bool written = platWrite(fh, file, fileLen) == static_cast<int32_t>(fileLen);
    std::free(file);
    if (!written) platRemove(temp);
    int replaced = written ? platReplace(temp, path) : -1;
    platCloseOwned(fh);
    return replaced == 0 ? 0 : ORTH_FILE_WRITE_ERR;
}
