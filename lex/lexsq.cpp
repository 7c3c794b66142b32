// lex/lexsq.cpp — lexicon compressor.
//
// (1) From a successful LexSqInit until LexSqEnd or lexSqCleanup, the
//     temporary file is open (tempOpen) and tempPath names it; lexSqCleanup
//     closes and deletes it and frees the segment list, and is safe to run on
//     a zeroed state or twice.
// (2) The segment list is ascending by key with each key once (addSegment);
//     node offsets are relative to the temporary file until LexSqEnd adds the
//     output's data start to every written record.
// (3) Only suffix entries below primaryCount / secondaryCount take part in
//     coding; entries never loaded stay zero and are written as zero.
// (4) Output depends only on the inputs and the creation time in the banner:
//     two runs over the same files differ only in the banner's time text.
#include "lex/lexsq.h"

#include <cstdio>
#include <cstring>
#include <new>

#include "check/chartab.h"
#include "engine/log.h"
#include "lex/clex_int.h"
#include "lex/fileio.h"
#include "orth.h"
#include "platform/platform.h"

namespace {

constexpr char kTempName[] = "LEXSQXXX.TMP";
constexpr char kNotice[] = "Compressed word list; do not edit.";
constexpr uint16_t kSuffixLineBuf = 80;
constexpr uint16_t kWordLineBuf = 128;
constexpr uint16_t kCopyPiece = 512;

void putU16(uint8_t *p, uint16_t v) {
    p[0] = static_cast<uint8_t>(v);
    p[1] = static_cast<uint8_t>(v >> 8);
}

void putU32(uint8_t *p, uint32_t v) {
    for (int i = 0; i < 4; ++i) p[i] = static_cast<uint8_t>(v >> (8 * i));
}

uint32_t getU32(const uint8_t *p) {
    return static_cast<uint32_t>(p[0]) | (static_cast<uint32_t>(p[1]) << 8) |
           (static_cast<uint32_t>(p[2]) << 16) | (static_cast<uint32_t>(p[3]) << 24);
}

void encodeSegRecord(uint8_t rec[kClexSegHeaderSize], uint32_t offset, uint32_t length,
                     const uint8_t key[2]) {
    putU32(rec, offset);
    putU32(rec + 4, length);
    rec[8] = key[0];
    rec[9] = key[1];
}

// 0; ORTH_FILE_OPEN_ERR after a log line when the folder and name don't fit.
int16_t makeTempPath(const char *outputPath, char out[kPathBufSize]) {
    const char *cut = nullptr;
    for (const char *p = outputPath; *p != '\0'; ++p) {
        if (*p == '\\' || *p == '/') cut = p;
    }
    size_t folder = cut != nullptr ? static_cast<size_t>(cut - outputPath) : 0;
    size_t need = (cut != nullptr ? folder + 1 : 0) + sizeof kTempName - 1;
    if (need > static_cast<size_t>(kMaxPathLen)) {
        engineLog("LexSqInit: path too long: %s", outputPath);
        return ORTH_FILE_OPEN_ERR;
    }
    size_t n = 0;
    if (cut != nullptr) {
        std::memcpy(out, outputPath, folder);
        n = folder;
        out[n++] = platPathSeparator();
    }
    std::memcpy(out + n, kTempName, sizeof kTempName);
    return 0;
}

// 0; ORTH_FILE_OPEN_ERR when the suffix file can't be opened.
int16_t loadSuffixes(CompressState *state, const char *path, uint32_t *lineNumber) {
    *lineNumber = 0;
    int32_t fh = fileOpen(path, kFileRead);
    if (fh < 0) {
        engineLog("loadSuffixes: can't open %s", path);
        return ORTH_FILE_OPEN_ERR;
    }
    char line[kSuffixLineBuf];
    while (state->secondaryCount < kSecondarySuffixes && fileReadLine(fh, line, sizeof line) >= 0) {
        ++*lineNumber;
        if (line[0] == '#') continue;
        uint8_t *entry = state->primaryCount < kPrimarySuffixes
                             ? state->primary[state->primaryCount++]
                             : state->secondary[state->secondaryCount++];
        std::memset(entry, 0, kSuffixEntrySize);
        std::memcpy(entry, line, strnlen(line, kSuffixEntrySize - 1));
    }
    fileClose(fh);
    return 0;
}

// 0; ORTH_OUT_OF_MEMORY_ERR; ORTH_WORD_ORDER_ERR when the key is already in the list.
int16_t addSegment(CompressState *state, uint32_t offset, uint32_t length, const uint8_t key[2]) {
    auto *node = new (std::nothrow) CompressSegNode{offset, length, {key[0], key[1]}, nullptr};
    if (node == nullptr) {
        engineLog("addSegment: out of memory");
        return ORTH_OUT_OF_MEMORY_ERR;
    }
    CompressSegNode **link = &state->segments;
    while (*link != nullptr && ((*link)->key[0] < key[0] ||
                                ((*link)->key[0] == key[0] && (*link)->key[1] < key[1]))) {
        link = &(*link)->next;
    }
    if (*link != nullptr && (*link)->key[0] == key[0] && (*link)->key[1] == key[1]) {
        engineLog("addSegment: duplicate segment %c%c", key[0], key[1]);
        delete node;
        return ORTH_WORD_ORDER_ERR;
    }
    node->next = *link;
    *link = node;
    ++state->segCount;
    return 0;
}

// Lengths of the loaded suffixes, taken once per word file.
struct SuffixLengths {
    uint8_t primary[kPrimarySuffixes];
    uint8_t secondary[kSecondarySuffixes];
};

void measureSuffixes(const CompressState *state, SuffixLengths *lens) {
    for (int j = 0; j < kPrimarySuffixes; ++j) {
        lens->primary[j] = static_cast<uint8_t>(
            strnlen(reinterpret_cast<const char *>(state->primary[j]), kSuffixEntrySize - 1));
    }
    for (int j = 0; j < kSecondarySuffixes; ++j) {
        lens->secondary[j] = static_cast<uint8_t>(
            strnlen(reinterpret_cast<const char *>(state->secondary[j]), kSuffixEntrySize - 1));
    }
}

// What LexSqFile keeps while it reads one word file.
struct FileRun {
    CompressState *state;
    char prev[kWordBufSize];   // the last word of three or more characters, or empty
    bool segOpen;
    uint8_t key[2];
    int32_t segStart;
    bool blockOpen;
    uint8_t third;
    int32_t blockPos;
    uint32_t blockBytes;       // header included
    SuffixLengths lens;
};

bool writeTemp(FileRun *run, const void *bytes, uint16_t n) {
    if (fileWrite(run->state->tempFile, bytes, n) == n) return true;
    engineLog("LexSqFile: error writing %s", run->state->tempPath);
    return false;
}

// Rewrites the open block's header with its final body length.
bool setBlockLength(FileRun *run) {
    int32_t fh = run->state->tempFile;
    int32_t here = fileTell(fh);
    if (here < 0 || fileSeek(fh, run->blockPos, 0) < 0) {
        engineLog("LexSqFile: seek error in %s", run->state->tempPath);
        return false;
    }
    uint8_t header[kClexBlockHeaderSize] = {0, 0, 0, 0, run->third, 0};
    putU32(header, static_cast<uint32_t>(here - run->blockPos) - kClexBlockHeaderSize);
    if (!writeTemp(run, header, sizeof header)) return false;
    if (fileSeek(fh, here, 0) < 0) {
        engineLog("LexSqFile: seek error in %s", run->state->tempPath);
        return false;
    }
    return true;
}

// 0; ORTH_FILE_WRITE_ERR; addSegment's codes. addWord has kept the segment
// within 65535 bytes.
int16_t finishSegment(FileRun *run) {
    if (run->blockOpen) {
        if (!setBlockLength(run)) return ORTH_FILE_WRITE_ERR;
        run->blockOpen = false;
    }
    run->segOpen = false;
    int32_t here = fileTell(run->state->tempFile);
    uint32_t length = static_cast<uint32_t>(here - run->segStart);
    return addSegment(run->state, static_cast<uint32_t>(run->segStart), length, run->key);
}

// Codes word (3 to 63 bytes) against prev into out; returns the byte count.
uint16_t codeWord(const CompressState *state, const SuffixLengths *lens, const char *word,
                  size_t wordLen, const char *prev, size_t prevLen, uint8_t *out) {
    uint16_t n = 0;
    size_t k = 0;
    while (3 + k < wordLen && 3 + k < prevLen && word[3 + k] == prev[3 + k]) ++k;
    size_t i = 3;
    if (k >= 2) {
        if (prevLen == 3 + k) {
            out[n++] = kCodeKeepAll;
        } else if (prevLen == 4 + k) {
            out[n++] = kCodeKeepButLast;
        } else {
            out[n++] = kCodeKeepN;
            out[n++] = static_cast<uint8_t>(k);
        }
        i = 3 + k;
    }
    for (; i < wordLen; ++i) {
        const char *rest = word + i;
        size_t restLen = wordLen - i;
        if (restLen < kSuffixEntrySize) {
            for (uint16_t j = 0; j < state->primaryCount; ++j) {
                if (lens->primary[j] == restLen && std::memcmp(state->primary[j], rest, restLen) == 0) {
                    out[n++] = static_cast<uint8_t>(kCodePrimaryFirst + j);
                    return n;
                }
            }
            for (uint16_t j = 0; j < state->secondaryCount; ++j) {
                if (lens->secondary[j] == restLen &&
                    std::memcmp(state->secondary[j], rest, restLen) == 0) {
                    out[n++] = kCodeSecondary;
                    out[n++] = static_cast<uint8_t>(j);
                    return n;
                }
            }
        }
        out[n++] = static_cast<uint8_t>(word[i]);
    }
    out[n++] = kCodeEnd;
    return n;
}

bool validWord(const char *word, size_t len, uint16_t charSet) {
    for (size_t i = 0; i < len; ++i) {
        auto c = static_cast<unsigned char>(word[i]);
        // White space below 0x20 (tab) passes the class test but can't be coded.
        if (c < kCodeLiteralFirst) return false;
        if ((classOf(charSet, c) & (CC_LETTER | CC_DIGIT | CC_PUNCT | CC_SPACE)) == 0) return false;
    }
    return true;
}

// Handles one accepted-length word line; 0 or a failure code (already logged).
int16_t addWord(FileRun *run, const char *word, size_t len) {
    CompressState *state = run->state;
    if (compareBytes(word, run->prev) <= 0) {
        engineLog("LexSqFile: %s <= %s", word, run->prev);
        return ORTH_WORD_ORDER_ERR;
    }
    if (!validWord(word, len, state->charSet)) {
        engineLog("LexSqFile: invalid word: %s ", word);
        return ORTH_INVALID_WORD_ERR;
    }
    if (len < 3) {
        if (state->smallCount >= kMaxSmallWords) {
            engineLog("LexSqFile: too many small words (%s)", word);
            return ORTH_TOO_MANY_SMALL_WORDS_ERR;
        }
        state->smallWords[state->smallCount][0] = static_cast<uint8_t>(word[0]);
        state->smallWords[state->smallCount][1] = len == 2 ? static_cast<uint8_t>(word[1]) : 0;
        ++state->smallCount;
        return 0;
    }
    auto c0 = static_cast<uint8_t>(word[0]), c1 = static_cast<uint8_t>(word[1]);
    auto c2 = static_cast<uint8_t>(word[2]);
    if (!run->segOpen || run->key[0] != c0 || run->key[1] != c1) {
        if (run->segOpen) {
            int16_t rc = finishSegment(run);
            if (rc < 0) return rc;
        }
        run->segOpen = true;
        run->segStart = fileTell(state->tempFile);
        run->key[0] = c0;
        run->key[1] = c1;
        run->blockOpen = false;
        run->blockBytes = 0;
    }
    if (!run->blockOpen || run->third != c2) {
        if (run->blockOpen) {
            static const uint8_t kPads[3] = {kCodePad, kCodePad, kCodePad};
            uint16_t pad = static_cast<uint16_t>((4 - run->blockBytes % 4) % 4);
            if (pad > 0 && !writeTemp(run, kPads, pad)) return ORTH_FILE_WRITE_ERR;
            if (!setBlockLength(run)) return ORTH_FILE_WRITE_ERR;
        }
        uint8_t header[kClexBlockHeaderSize] = {0, 0, 0, 0, c2, 0};
        run->blockPos = fileTell(state->tempFile);
        if (!writeTemp(run, header, sizeof header)) return ORTH_FILE_WRITE_ERR;
        run->blockOpen = true;
        run->third = c2;
        run->blockBytes = kClexBlockHeaderSize;
        run->prev[0] = '\0';
    }
    uint8_t coded[2 * kWordBufSize];
    uint16_t n = codeWord(state, &run->lens, word, len, run->prev, std::strlen(run->prev), coded);
    if (!writeTemp(run, coded, n)) return ORTH_FILE_WRITE_ERR;
    // Readers load a segment with one 16-bit counted read: refuse the word
    // that takes its segment past 65535 bytes, so the line number names it.
    auto segLength = static_cast<uint32_t>(fileTell(state->tempFile) - run->segStart);
    if (segLength > kMaxSegmentLength) {
        engineLog("LexSqFile: segment %c%c too long at %s (%lu bytes)", c0, c1, word,
                  static_cast<unsigned long>(segLength));
        return ORTH_BUFFER_TOO_SMALL_ERR;
    }
    run->blockBytes += n;
    std::memcpy(run->prev, word, len + 1);
    return 0;
}

}  // namespace

// 0; ORTH_FILE_OPEN_ERR when the temporary file can't be created (or its path
// is too long) or the suffix file can't be opened. An earlier run's temporary
// file and segment list are released first. On failure the temporary file is
// gone and the state holds nothing to release.
int16_t LexSqInit(CompressState *state, const char *outputPath, const char *suffixPath,
                  uint16_t language, uint16_t charSet, uint32_t *lineNumber) {
    lexSqCleanup(state);
    if (outputPath == nullptr || std::strlen(outputPath) > static_cast<size_t>(kMaxPathLen)) {
        engineLog("LexSqInit: path too long: %s", outputPath != nullptr ? outputPath : "");
        return ORTH_FILE_OPEN_ERR;
    }
    std::strcpy(state->outputPath, outputPath);
    state->language = language;
    state->charSet = charSet;
    state->segments = nullptr;
    state->segCount = 0;
    state->primaryCount = 0;
    state->secondaryCount = 0;
    state->smallCount = 0;
    std::memset(state->primary, 0, sizeof state->primary);
    std::memset(state->secondary, 0, sizeof state->secondary);

    char tempPath[kPathBufSize];
    int16_t rc = makeTempPath(outputPath, tempPath);
    if (rc < 0) return rc;
    state->tempFile = fileOpen(tempPath, kFileCreate);
    if (state->tempFile < 0) {
        engineLog("LexSqInit: can't open %s", tempPath);
        return ORTH_FILE_OPEN_ERR;
    }
    std::strcpy(state->tempPath, tempPath);
    state->tempOpen = true;
    if (suffixPath != nullptr) {
        uint32_t ignored = 0;
        rc = loadSuffixes(state, suffixPath, lineNumber != nullptr ? lineNumber : &ignored);
        if (rc < 0) {
            lexSqCleanup(state);
            return rc;
        }
    }
    return 0;
}

// 0; ORTH_UNSUPPORTED_ACTION_ERR without a temporary file; ORTH_FILE_OPEN_ERR;
// ORTH_INVALID_WORD_ERR for a word over 63 characters or with a character
// outside letters, digits, punctuation and space (control characters
// included); ORTH_WORD_ORDER_ERR for a word not above the previous one or a
// key built before; ORTH_TOO_MANY_SMALL_WORDS_ERR; ORTH_BUFFER_TOO_SMALL_ERR
// for the word that takes its segment past 65535 bytes; ORTH_FILE_WRITE_ERR
// when the temporary file can't be written; ORTH_OUT_OF_MEMORY_ERR.
// lineNumber is the lines read, so after a failure the failing word's line.
int16_t LexSqFile(CompressState *state, const char *wordFile, uint32_t *lineNumber) {
    uint32_t ignored = 0;
    if (lineNumber == nullptr) lineNumber = &ignored;
    *lineNumber = 0;
    if (!state->tempOpen) {
        engineLog("LexSqFile: no temporary file");
        return ORTH_UNSUPPORTED_ACTION_ERR;
    }
    int32_t fh = fileOpen(wordFile, kFileRead);
    if (fh < 0) {
        engineLog("LexSqFile: can't open %s", wordFile != nullptr ? wordFile : "");
        return ORTH_FILE_OPEN_ERR;
    }
    // A failed earlier file may have left the position inside the data.
    if (fileSeek(state->tempFile, 0, 2) < 0) {
        engineLog("LexSqFile: seek error in %s", state->tempPath);
        fileClose(fh);
        return ORTH_FILE_WRITE_ERR;
    }
    FileRun run{};
    run.state = state;
    measureSuffixes(state, &run.lens);
    char line[kWordLineBuf];
    int32_t len;
    int16_t rc = 0;
    while ((len = fileReadLine(fh, line, sizeof line)) >= 0) {
        ++*lineNumber;
        if (len == 0 || line[0] == '#') continue;
        if (len > kMaxWordLen) {
            engineLog("LexSqFile: word %s too long", line);
            rc = ORTH_INVALID_WORD_ERR;
            break;
        }
        rc = addWord(&run, line, static_cast<size_t>(len));
        if (rc < 0) break;
    }
    if (rc == 0 && run.segOpen) rc = finishSegment(&run);
    fileClose(fh);
    return rc;
}

namespace {

// Fills the 2806-byte header.
void buildHeader(const CompressState *state, uint8_t *header) {
    std::memset(header, 0, kClexHeaderSize);
    PlatTime now;
    platLocalTime(&now);
    char date[25];
    platDateText(now, date);
    std::snprintf(reinterpret_cast<char *>(header), kClexBannerSize, "ORTH Lexicon %lx %s\n\r%s\r\n",
                  static_cast<unsigned long>(kClexVersion), date, kNotice);
    putU32(header + kOffVersion, kClexVersion);
    putU16(header + kOffSmallCount, state->smallCount);
    putU16(header + kOffSegCount, state->segCount);
    putU16(header + kOffLanguage, state->language);
    putU16(header + kOffCharSet, state->charSet);
    std::memcpy(header + kOffPrimary, state->primary, sizeof state->primary);
    std::memcpy(header + kOffSecondary, state->secondary, sizeof state->secondary);
}

void sortSmallWords(uint8_t (*words)[2], uint16_t count) {
    // Insertion sort: stable, at most 1024 entries, once per compression.
    for (uint16_t i = 1; i < count; ++i) {
        uint8_t a = words[i][0], b = words[i][1];
        uint16_t j = i;
        while (j > 0 && (words[j - 1][0] > a || (words[j - 1][0] == a && words[j - 1][1] > b))) {
            words[j][0] = words[j - 1][0];
            words[j][1] = words[j - 1][1];
            --j;
        }
        words[j][0] = a;
        words[j][1] = b;
    }
}

int16_t failEnd(CompressState *state, int32_t out, int16_t rc, const char *message) {
    engineLog("LexSqEnd: %s", message);
    lexSqCleanup(state);
    fileClose(out);
    return rc;
}

}  // namespace

// 0; ORTH_UNSUPPORTED_ACTION_ERR without a temporary file; ORTH_FILE_OPEN_ERR
// when the output can't be created or the temporary file reopened;
// ORTH_FILE_WRITE_ERR when the header, small words, segment records or data
// are written short; ORTH_FILE_READ_ERR when the temporary file or a written
// record can't be read back. Every failure releases the temporary file and
// the list; a partly written output stays.
int16_t LexSqEnd(CompressState *state) {
    if (!state->tempOpen) {
        engineLog("LexSqEnd: no temporary file");
        lexSqCleanup(state);
        return ORTH_UNSUPPORTED_ACTION_ERR;
    }
    uint8_t header[kClexHeaderSize];
    buildHeader(state, header);
    int32_t out = fileOpen(state->outputPath, kFileCreate);
    if (out < 0) {
        engineLog("LexSqEnd: can't open %s", state->outputPath);
        lexSqCleanup(state);
        return ORTH_FILE_OPEN_ERR;
    }
    if (fileWrite(out, header, kClexHeaderSize) != kClexHeaderSize) {
        return failEnd(state, out, ORTH_FILE_WRITE_ERR, "error writing hdr");
    }
    sortSmallWords(state->smallWords, state->smallCount);
    uint16_t smallBytes = static_cast<uint16_t>(state->smallCount * 2);
    if (smallBytes > 0 && fileWrite(out, state->smallWords, smallBytes) != smallBytes) {
        return failEnd(state, out, ORTH_FILE_WRITE_ERR, "error writing smallWords");
    }
    int32_t tableStart = fileTell(out);
    for (const CompressSegNode *node = state->segments; node != nullptr; node = node->next) {
        uint8_t rec[kClexSegHeaderSize];
        encodeSegRecord(rec, node->offset, node->length, node->key);
        if (fileWrite(out, rec, kClexSegHeaderSize) != kClexSegHeaderSize) {
            return failEnd(state, out, ORTH_FILE_WRITE_ERR, "error writing segHeader");
        }
    }
    // The temporary file's size tells a read error from its end while copying.
    int32_t tempSize = fileSeek(state->tempFile, 0, 2) == 0 ? fileTell(state->tempFile) : -1;
    fileClose(state->tempFile);
    state->tempOpen = false;
    state->tempFile = fileOpen(state->tempPath, kFileRead);
    if (state->tempFile < 0) {
        engineLog("LexSqEnd: can't open %s", state->tempPath);
        lexSqCleanup(state);
        fileClose(out);
        return ORTH_FILE_OPEN_ERR;
    }
    state->tempOpen = true;
    int32_t dataStart = fileTell(out);
    int32_t copied = 0;
    uint8_t piece[kCopyPiece];
    for (;;) {
        uint16_t n = fileRead(state->tempFile, piece, kCopyPiece);
        if (n == 0) break;
        if (fileWrite(out, piece, n) != n) {
            return failEnd(state, out, ORTH_FILE_WRITE_ERR, "write error copying seg data");
        }
        copied += n;
        if (n < kCopyPiece) break;
    }
    if (tempSize < 0 || copied != tempSize) {
        engineLog("LexSqEnd: error reading %s", state->tempPath);
        lexSqCleanup(state);
        fileClose(out);
        return ORTH_FILE_READ_ERR;
    }
    fileClose(state->tempFile);
    state->tempOpen = false;
    platRemove(state->tempPath);
    state->tempPath[0] = '\0';
    for (uint16_t i = 0; i < state->segCount; ++i) {
        uint8_t rec[kClexSegHeaderSize];
        int32_t at = tableStart + static_cast<int32_t>(kClexSegHeaderSize) * i;
        if (fileSeek(out, at, 0) < 0 || fileRead(out, rec, kClexSegHeaderSize) != kClexSegHeaderSize) {
            return failEnd(state, out, ORTH_FILE_READ_ERR, "error reading segHdr");
        }
        putU32(rec, getU32(rec) + static_cast<uint32_t>(dataStart));
        if (fileSeek(out, at, 0) < 0 || fileWrite(out, rec, kClexSegHeaderSize) != kClexSegHeaderSize) {
            return failEnd(state, out, ORTH_FILE_WRITE_ERR, "error writing segHdr");
        }
    }
    fileClose(out);
    lexSqCleanup(state);
    return 0;
}

void lexSqCleanup(CompressState *state) {
    if (state->tempOpen) {
        fileClose(state->tempFile);
        state->tempOpen = false;
    }
    if (state->tempPath[0] != '\0') {
        platRemove(state->tempPath);
        state->tempPath[0] = '\0';
    }
    while (state->segments != nullptr) {
        CompressSegNode *next = state->segments->next;
        delete state->segments;
        state->segments = next;
    }
    state->segCount = 0;
}
