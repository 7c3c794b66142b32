// lex/lexfreq.cpp — reading and building the commonness file beside a
// compressed lexicon.
//
// (1) A file is taken whole or not at all: LexFreq_Read checks the magic,
//     the version, the count against the size, that nothing follows the
//     classes, and the CRC-32 over header and classes before handing
//     anything out. Whether the file belongs to the lexicon (count and
//     word-list hash) is for the caller to check against the words it walks.
// (2) LexFreq_Build writes a temporary file in the lexicon's folder and
//     renames it into place, so a failed build leaves any old file as it was.
#include "lex/lexfreq.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <new>
#include <string>
#include <vector>

#include "check/chartab.h"
#include "engine/log.h"
#include "lex/clex.h"
#include "lex/fileio.h"
#include "lex/wordtrie.h"
#include "orth.h"
#include "platform/platform.h"

namespace {

constexpr char kMagic[8] = {'O', 'R', 'T', 'H', ' ', 'F', 'R', 'Q'};
constexpr char kTempName[] = "FRQXXXXX.TMP";
constexpr uint16_t kChunk = 0x8000;   // file helpers move at most 64 KiB a call

struct CrcTable {
    uint32_t v[256];
};
constexpr CrcTable makeCrcTable() {
    CrcTable t{};
    for (uint32_t i = 0; i < 256; ++i) {
        uint32_t c = i;
        for (int k = 0; k < 8; ++k) c = (c & 1) ? 0xEDB88320u ^ (c >> 1) : c >> 1;
        t.v[i] = c;
    }
    return t;
}
constexpr CrcTable kCrc = makeCrcTable();

// CRC-32 (the zip polynomial) continued over more bytes; start and end with
// the value inverted, as crcBytes' callers do through crcStart and crcEnd.
uint32_t crcBytes(uint32_t crc, const uint8_t *p, size_t n) {
    for (size_t i = 0; i < n; ++i) crc = kCrc.v[(crc ^ p[i]) & 0xFF] ^ (crc >> 8);
    return crc;
}
constexpr uint32_t kCrcStart = 0xFFFFFFFFu;
uint32_t crcEnd(uint32_t crc) { return crc ^ 0xFFFFFFFFu; }

uint32_t getU32(const uint8_t *p) {
    return static_cast<uint32_t>(p[0]) | static_cast<uint32_t>(p[1]) << 8 |
           static_cast<uint32_t>(p[2]) << 16 | static_cast<uint32_t>(p[3]) << 24;
}
void putU32(uint8_t *p, uint32_t v) {
    for (int i = 0; i < 4; ++i) p[i] = static_cast<uint8_t>(v >> (8 * i));
}

// Reads exactly n bytes in chunks. False on a short read.
bool readAll(int32_t handle, uint8_t *out, uint32_t n) {
    while (n > 0) {
        uint16_t want = n > kChunk ? kChunk : static_cast<uint16_t>(n);
        if (fileRead(handle, out, want) != want) return false;
        out += want;
        n -= want;
    }
    return true;
}

bool writeAll(int32_t handle, const uint8_t *bytes, uint32_t n) {
    while (n > 0) {
        uint16_t want = n > kChunk ? kChunk : static_cast<uint16_t>(n);
        if (fileWrite(handle, bytes, want) != want) return false;
        bytes += want;
        n -= want;
    }
    return true;
}

// Offset of the last path separator plus one, 0 when there is none.
size_t folderLength(const char *path) {
    size_t cut = 0;
    for (size_t i = 0; path[i] != '\0'; ++i) {
        if (path[i] == '\\' || path[i] == '/') cut = i + 1;
    }
    return cut;
}

}  // namespace

bool commonnessPath(const char *lexPath, char out[kPathBufSize]) {
    size_t len = std::strlen(lexPath);
    size_t folder = folderLength(lexPath);
    const char *dot = std::strrchr(lexPath + folder, '.');
    size_t stem = dot != nullptr ? static_cast<size_t>(dot - lexPath) : len;
    bool lower = dot != nullptr && dot[1] >= 'a' && dot[1] <= 'z';
    if (stem + 4 > static_cast<size_t>(kMaxPathLen)) return false;
    std::memcpy(out, lexPath, stem);
    std::memcpy(out + stem, lower ? ".frq" : ".FRQ", 5);
    return true;
}

uint32_t hashLexWord(uint32_t hash, const uint8_t *word, int len, uint32_t index) {
    auto mix = [](uint32_t h, uint32_t v) {
        h = (h ^ v) * 0x9E3779B1u;
        return h ^ (h >> 15);
    };
    hash = mix(hash, index);
    int i = 0;
    for (; i + 4 <= len; i += 4) {
        hash = mix(hash, static_cast<uint32_t>(word[i]) | static_cast<uint32_t>(word[i + 1]) << 8 |
                             static_cast<uint32_t>(word[i + 2]) << 16 | static_cast<uint32_t>(word[i + 3]) << 24);
    }
    uint32_t tail = static_cast<uint32_t>(len) << 24;
    for (int k = 0; i < len; ++i, k += 8) tail |= static_cast<uint32_t>(word[i]) << k;
    return mix(hash, tail);
}

int16_t LexFreq_Read(const char *path, LexFreq *freq, const char **reason) {
    *freq = LexFreq{};
    *reason = "";
    int32_t handle = fileOpen(path, kFileRead);
    if (handle < 0) return ORTH_FILE_NOT_FOUND_ERR;
    uint8_t header[kFreqHeaderSize];
    const char *fault = nullptr;
    uint32_t words = 0, bytes = 0;
    if (fileRead(handle, header, sizeof header) != sizeof header) {
        fault = "shorter than its header";
    } else if (std::memcmp(header, kMagic, sizeof kMagic) != 0) {
        fault = "not a commonness file";
    } else if (getU32(header + 8) != kFreqVersion) {
        fault = "unknown version";
    } else if ((words = getU32(header + 12)) > kFreqMaxWords) {
        fault = "word count out of range";
    }
    uint8_t *classes = nullptr;
    if (fault == nullptr) {
        bytes = (words + 1) / 2;
        classes = static_cast<uint8_t *>(std::malloc(bytes == 0 ? 1 : bytes));
        if (classes == nullptr) {
            fileClose(handle);
            return ORTH_OUT_OF_MEMORY_ERR;
        }
        uint8_t extra;
        if (!readAll(handle, classes, bytes)) fault = "shorter than its word count";
        else if (fileRead(handle, &extra, 1) != 0) fault = "longer than its word count";
    }
    fileClose(handle);
    if (fault == nullptr) {
        uint32_t crc = crcBytes(kCrcStart, header, 20);
        if (crcEnd(crcBytes(crc, classes, bytes)) != getU32(header + 20)) fault = "checksum mismatch";
    }
    if (fault != nullptr) {
        std::free(classes);
        *reason = fault;
        return ORTH_UNKNOWN_LEXICON_TYPE_ERR;
    }
    freq->words = words;
    freq->hash = getU32(header + 16);
    freq->classes = classes;
    return 0;
}

void LexFreq_Free(LexFreq *freq) {
    std::free(freq->classes);
    *freq = LexFreq{};
}

namespace {

// One line of the frequency list.
struct ListEntry {
    std::string word;
    std::string folded;
    uint64_t count;
};

// Splits "word count" at the last run of blanks or tabs. False when the
// line has no such two fields, the count is not a whole number below 10^18,
// or the word is over 63 bytes.
bool parseListLine(const char *line, size_t len, ListEntry *out) {
    while (len > 0 && (line[len - 1] == ' ' || line[len - 1] == '\t')) --len;
    size_t numStart = len;
    while (numStart > 0 && line[numStart - 1] != ' ' && line[numStart - 1] != '\t') --numStart;
    size_t wordEnd = numStart;
    while (wordEnd > 0 && (line[wordEnd - 1] == ' ' || line[wordEnd - 1] == '\t')) --wordEnd;
    size_t wordStart = 0;
    while (wordStart < wordEnd && (line[wordStart] == ' ' || line[wordStart] == '\t')) ++wordStart;
    if (numStart == len || wordEnd == wordStart || wordEnd - wordStart > static_cast<size_t>(kMaxWordLen)) {
        return false;
    }
    uint64_t count = 0;
    for (size_t i = numStart; i < len; ++i) {
        if (line[i] < '0' || line[i] > '9' || count >= 100000000000000000ull) return false;
        count = count * 10 + static_cast<uint64_t>(line[i] - '0');
    }
    out->word.assign(line + wordStart, wordEnd - wordStart);
    out->count = count;
    return true;
}

// The word with every upper-case letter of character set 0 lowered.
std::string foldCase(const std::string &w) {
    std::string f = w;
    for (char &c : f) c = static_cast<char>(toLowerChar(0, static_cast<unsigned char>(c)));
    return f;
}

// Reads the whole list file. 0; ORTH_FILE_NOT_FOUND_ERR; ORTH_FILE_READ_ERR.
int16_t readListFile(const char *path, std::string *text) {
    int32_t handle = fileOpen(path, kFileRead);
    if (handle < 0) return ORTH_FILE_NOT_FOUND_ERR;
    char buf[kChunk];
    for (;;) {
        int32_t n = platRead(handle, buf, sizeof buf);
        if (n < 0) {
            fileClose(handle);
            return ORTH_FILE_READ_ERR;
        }
        if (n == 0) break;
        text->append(buf, static_cast<size_t>(n));
    }
    fileClose(handle);
    return 0;
}

// Parses every line. 0, or ORTH_INVALID_WORD_ERR with *lineNumber set.
int16_t parseList(const std::string &text, std::vector<ListEntry> *entries, uint32_t *lineNumber) {
    size_t start = 0;
    uint32_t line = 0;
    while (start < text.size()) {
        size_t end = text.find('\n', start);
        if (end == std::string::npos) end = text.size();
        size_t stop = (end > start && text[end - 1] == '\r') ? end - 1 : end;
        ++line;
        if (stop > start && text[start] != '#') {
            ListEntry e;
            if (!parseListLine(text.data() + start, stop - start, &e)) {
                *lineNumber = line;
                return ORTH_INVALID_WORD_ERR;
            }
            e.folded = foldCase(e.word);
            entries->push_back(std::move(e));
        }
        start = end + 1;
    }
    *lineNumber = line;
    return 0;
}

// Class of a count against the list's largest: 15, then one lower for every
// factor of four below it, never below 1 (also for a count of 0).
uint8_t classOfCount(uint64_t count, uint64_t largest) {
    if (count == 0) return 1;
    uint8_t cls = kFreqMaxClass;
    while (cls > 1 && count <= largest / 4) {
        count *= 4;
        --cls;
    }
    return cls;
}

// What the walk over the lexicon's words needs.
struct BuildWalk {
    const std::vector<ListEntry> *byWord;
    const std::vector<const ListEntry *> *byFolded;
    uint64_t largest;
    uint8_t unlisted;                // the class of a word the list lacks
    std::vector<uint8_t> *classes;   // one byte per word, by index
    uint32_t hash;
    uint32_t words;
};

int16_t classifyWord(const uint8_t *word, int len, uint32_t index, void *context) {
    auto *walk = static_cast<BuildWalk *>(context);
    std::string w(reinterpret_cast<const char *>(word), static_cast<size_t>(len));
    const ListEntry *hit = nullptr;
    auto exact = std::lower_bound(walk->byWord->begin(), walk->byWord->end(), w,
                                  [](const ListEntry &e, const std::string &k) { return e.word < k; });
    if (exact != walk->byWord->end() && exact->word == w) {
        hit = &*exact;
    } else {
        std::string f = foldCase(w);
        auto folded = std::lower_bound(walk->byFolded->begin(), walk->byFolded->end(), f,
                                       [](const ListEntry *e, const std::string &k) { return e->folded < k; });
        if (folded != walk->byFolded->end() && (*folded)->folded == f) hit = *folded;
    }
    if (index >= walk->classes->size()) walk->classes->resize(index + 1, 0);
    uint8_t cls = hit != nullptr ? classOfCount(hit->count, walk->largest) : walk->unlisted;
    (*walk->classes)[index] = std::max((*walk->classes)[index], cls);
    walk->hash = hashLexWord(walk->hash, word, len, index);
    ++walk->words;
    return 0;
}

// Writes the file through a temporary file beside it. 0, ORTH_FILE_OPEN_ERR
// or ORTH_FILE_WRITE_ERR, logged under caller.
int16_t writeFreqFile(const char *caller, const char *path, uint32_t words, uint32_t hash,
                      const std::vector<uint8_t> &classes) {
    std::vector<uint8_t> packed((words + 1) / 2, 0);   // an index never walked: class 0
    for (uint32_t i = 0; i < words && i < classes.size(); ++i) {
        packed[i / 2] |= static_cast<uint8_t>((i & 1) ? classes[i] << 4 : classes[i]);
    }
    uint8_t header[kFreqHeaderSize];
    std::memcpy(header, kMagic, sizeof kMagic);
    putU32(header + 8, kFreqVersion);
    putU32(header + 12, words);
    putU32(header + 16, hash);
    uint32_t crc = crcBytes(kCrcStart, header, 20);
    putU32(header + 20, crcEnd(crcBytes(crc, packed.data(), packed.size())));

    char temp[kPathBufSize];
    size_t folder = folderLength(path);
    if (folder + sizeof kTempName > sizeof temp) {
        engineLog("%s: path too long: %s", caller, path);
        return ORTH_FILE_OPEN_ERR;
    }
    std::memcpy(temp, path, folder);
    std::memcpy(temp + folder, kTempName, sizeof kTempName);
    int32_t handle = fileOpen(temp, kFileCreate);
    if (handle < 0) {
        engineLog("%s: error opening %s", caller, temp);
        return ORTH_FILE_OPEN_ERR;
    }
    bool ok = writeAll(handle, header, sizeof header) &&
              writeAll(handle, packed.data(), static_cast<uint32_t>(packed.size()));
    fileClose(handle);
    if (ok && platRename(temp, path) != 0) {
        platRemove(path);
        ok = platRename(temp, path) == 0;
    }
    if (!ok) {
        engineLog("%s: error writing %s", caller, path);
        platRemove(temp);
        return ORTH_FILE_WRITE_ERR;
    }
    return 0;
}

int16_t buildFreq(const char *caller, const char *lexPath, const char *listPath,
                  uint32_t *lineNumber) {
    char outPath[kPathBufSize];
    if (!commonnessPath(lexPath, outPath)) {
        engineLog("%s: path too long: %s", caller, lexPath);
        return ORTH_FILE_OPEN_ERR;
    }
    std::string text;
    int16_t rc = readListFile(listPath, &text);
    if (rc < 0) {
        engineLog("%s: can't read %s", caller, listPath);
        return rc;
    }
    std::vector<ListEntry> entries;
    rc = parseList(text, &entries, lineNumber);
    if (rc < 0) {
        engineLog("%s: %s line %lu: expected a word and a count", caller, listPath,
                  static_cast<unsigned long>(*lineNumber));
        return rc;
    }
    text.clear();
    text.shrink_to_fit();
    // Equal words keep their largest count, first in the order below.
    std::sort(entries.begin(), entries.end(), [](const ListEntry &a, const ListEntry &b) {
        return a.word != b.word ? a.word < b.word : a.count > b.count;
    });
    std::vector<const ListEntry *> byFolded;
    byFolded.reserve(entries.size());
    uint64_t largest = 0, smallest = UINT64_MAX;
    for (const ListEntry &e : entries) {
        byFolded.push_back(&e);
        largest = std::max(largest, e.count);
        smallest = std::min(smallest, e.count);
    }
    // Unlisted words rank one class below the rarest listed word.
    uint8_t rarest = entries.empty() ? kFreqMaxClass : classOfCount(smallest, largest);
    uint8_t unlisted = static_cast<uint8_t>(rarest > 1 ? rarest - 1 : 1);
    std::stable_sort(byFolded.begin(), byFolded.end(), [](const ListEntry *a, const ListEntry *b) {
        return a->folded != b->folded ? a->folded < b->folded : a->count > b->count;
    });

    CLexState *lex = new (std::nothrow) CLexState();
    if (lex == nullptr) return ORTH_OUT_OF_MEMORY_ERR;
    rc = CLex_Open(lexPath, 0, lex);
    if (rc < 0) {
        delete lex;
        engineLog("%s: can't open %s", caller, lexPath);
        return rc;
    }
    std::vector<uint8_t> classes;
    BuildWalk walk{&entries, &byFolded, largest, unlisted, &classes, kWordHashSeed, 0};
    rc = walkLexWords(lex, classifyWord, &walk);
    uint32_t words = lex->smallCount;
    CLex_Close(lex);
    delete lex;
    if (rc < 0) {
        engineLog("%s: can't read the words of %s", caller, lexPath);
        return rc;
    }
    words = std::max<uint32_t>(words, static_cast<uint32_t>(classes.size()));
    rc = writeFreqFile(caller, outPath, words, walk.hash, classes);
    if (rc == 0) {
        engineLog("%s: %s written; %lu words, %lu listed", caller, outPath,
                  static_cast<unsigned long>(words), static_cast<unsigned long>(entries.size()));
    }
    return rc;
}

}  // namespace

int16_t LexFreq_Build(const char *caller, const char *lexPath, const char *listPath,
                      uint32_t *lineNumber) {
    uint32_t ignored = 0;
    if (lineNumber == nullptr) lineNumber = &ignored;
    *lineNumber = 0;
    try {
        return buildFreq(caller, lexPath, listPath, lineNumber);
    } catch (const std::bad_alloc &) {
        engineLog("%s: out of memory", caller);
        return ORTH_OUT_OF_MEMORY_ERR;
    }
}
