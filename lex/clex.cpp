// lex/clex.cpp — compressed lexicon reader.
//
// (1) After CLex_Open succeeds, every segment record has length <= 65535 and
//     offset + length within the file, and the records are in strictly
//     ascending key order; findSegment's binary search relies on the order,
//     loadSeg's single 16-bit counted read on the length.
// (2) A segment's data is either null (unloaded) or a buffer of exactly its
//     length; only loadSeg fills it, and only loadSeg's eviction and
//     CLex_Close free it.
// (3) With a budget, freeBudget == budget - sum of loaded lengths at all
//     times (loadSeg keeps it, eviction gives back).
// (4) decodeSeg never reads outside the segment's data and never builds a
//     word of more than 63 bytes: any coding that would is corrupt data (-6).
// (5) No file handle stays open between calls: loadSeg reopens by path.
// (6) A loaded segment may carry a word table (clex_table.cpp), attached by
//     loadSeg and dropped with the data; lookups and decodeSeg answer from
//     it when it is there and walk the coded data otherwise, with the same
//     results either way. Its memory counts against the budget beside the
//     data, but only the data's lengths decide which segments are evicted.
#include "lex/clex.h"

#include <cstdlib>
#include <cstring>

#include "check/chartab.h"
#include "engine/log.h"
#include "lex/clex_int.h"
#include "lex/fileio.h"
#include "orth.h"

namespace {

uint16_t readU16(const uint8_t *p) { return static_cast<uint16_t>(p[0] | (p[1] << 8)); }

uint32_t readU32(const uint8_t *p) {
    return static_cast<uint32_t>(p[0]) | (static_cast<uint32_t>(p[1]) << 8) |
           (static_cast<uint32_t>(p[2]) << 16) | (static_cast<uint32_t>(p[3]) << 24);
}

// Length of a word bounded to one buffer: 64 or more means "too long".
size_t boundedLength(const char *word) {
    const void *end = std::memchr(word, '\0', kWordBufSize);
    return end == nullptr ? kWordBufSize : static_cast<size_t>(static_cast<const char *>(end) - word);
}

// Length of a suffix entry: at most 8 characters, whatever the ninth byte holds.
size_t suffixLength(const uint8_t *entry) {
    size_t n = 0;
    while (n < kSuffixEntrySize - 1 && entry[n] != 0) ++n;
    return n;
}

// The four case forms of a two-character key, in the order they are tried.
void caseKeys(unsigned char c1, unsigned char c2, int16_t charSet, unsigned char keys[4][2]) {
    unsigned char l1 = toLowerChar(charSet, c1), u1 = toUpperChar(charSet, c1);
    unsigned char l2 = toLowerChar(charSet, c2), u2 = toUpperChar(charSet, c2);
    keys[0][0] = l1; keys[0][1] = l2;
    keys[1][0] = u1; keys[1][1] = l2;
    keys[2][0] = u1; keys[2][1] = u2;
    keys[3][0] = l1; keys[3][1] = u2;
}

bool findSmallPair(const uint8_t (*table)[2], uint16_t count, uint8_t a, uint8_t b) {
    int lo = 0, hi = static_cast<int>(count) - 1;
    while (lo <= hi) {
        int mid = (lo + hi) / 2;
        int d = table[mid][0] != a ? table[mid][0] - a : table[mid][1] - b;
        if (d == 0) return true;
        if (d < 0) lo = mid + 1;
        else hi = mid - 1;
    }
    return false;
}

struct FoldContext {
    int16_t charSet;
};

// The case-insensitive walk's comparison: 0 equal, negative when the sought
// word folds lower (the walk stops), positive to go on.
int visitFolded(const char *word, const char *decoded, void *context) {
    return compareNoCase(word, decoded, static_cast<FoldContext *>(context)->charSet);
}

void failOpen(int32_t fh, CLexState *state) {
    std::free(state->segs);
    state->segs = nullptr;
    state->segCount = 0;
    fileClose(fh);
}

// Checks the segment records just read; 0, or -6 after a log line.
int16_t checkSegTable(const CLexState *state, int32_t fileSize) {
    for (uint16_t i = 0; i < state->segCount; ++i) {
        const CLexSeg &s = state->segs[i];
        if (s.length > kMaxSegmentLength) {
            logCorrupt("CLex_Open: segment %hu length %lu > %lu", i,
                       static_cast<unsigned long>(s.length),
                       static_cast<unsigned long>(kMaxSegmentLength));
            return ORTH_UNKNOWN_LEXICON_TYPE_ERR;
        }
        if (fileSize < 0 || s.offset > static_cast<uint32_t>(fileSize) ||
            s.length > static_cast<uint32_t>(fileSize) - s.offset) {
            logCorrupt("CLex_Open: segment %hu (offset %lu, length %lu) past end of file", i,
                       static_cast<unsigned long>(s.offset), static_cast<unsigned long>(s.length));
            return ORTH_UNKNOWN_LEXICON_TYPE_ERR;
        }
        if (i > 0) {
            const CLexSeg &p = state->segs[i - 1];
            if (p.key[0] > s.key[0] || (p.key[0] == s.key[0] && p.key[1] >= s.key[1])) {
                logCorrupt("CLex_Open: segment table out of order at %hu", i);
                return ORTH_UNKNOWN_LEXICON_TYPE_ERR;
            }
        }
    }
    return 0;
}

void releaseSegData(CLexState *state, CLexSeg *s) {
    dropWordTable(state, s);
    std::free(s->data);
    s->data = nullptr;
}

// Sets the small-word bits when the table is in the order its binary search
// needs; lookups then test a bit and find exactly what the search finds.
void indexSmallWords(CLexState *state) {
    std::memset(state->smallPairs, 0, sizeof state->smallPairs);
    state->smallIndexed = false;
    for (uint16_t i = 1; i < state->smallCount; ++i) {
        const uint8_t *a = state->smallWords[i - 1], *b = state->smallWords[i];
        if (a[0] > b[0] || (a[0] == b[0] && a[1] > b[1])) return;
    }
    for (uint16_t i = 0; i < state->smallCount; ++i) {
        uint32_t pair = (uint32_t{state->smallWords[i][0]} << 8) | state->smallWords[i][1];
        state->smallPairs[pair >> 6] |= uint64_t{1} << (pair & 63);
    }
    state->smallIndexed = true;
}

bool hasSmallPair(const CLexState *state, uint8_t a, uint8_t b) {
    uint32_t pair = (uint32_t{a} << 8) | b;
    return ((state->smallPairs[pair >> 6] >> (pair & 63)) & 1) != 0;
}

// Set bits of v, by adding neighbouring bit counts in ever wider fields (no
// instruction beyond the baseline of every target is needed).
uint32_t countBits(uint64_t v) {
    v = v - ((v >> 1) & 0x5555555555555555u);
    v = (v & 0x3333333333333333u) + ((v >> 2) & 0x3333333333333333u);
    v = (v + (v >> 4)) & 0x0F0F0F0F0F0F0F0Fu;
    return static_cast<uint32_t>((v * 0x0101010101010101u) >> 56);
}

// Fills the key index of the (sorted) segment table: the segments whose key
// starts with byte b are firstByteStart[b] to firstByteStart[b + 1] - 1, and
// bit c of secondBytes[b] is set when the key b c is among them.
void indexKeys(CLexState *state) {
    uint16_t seg = 0;
    std::memset(state->secondBytes, 0, sizeof state->secondBytes);
    for (int b = 0; b < 256; ++b) {
        state->firstByteStart[b] = seg;
        for (; seg < state->segCount && state->segs[seg].key[0] == b; ++seg) {
            uint8_t c = state->segs[seg].key[1];
            state->secondBytes[b][c >> 6] |= uint64_t{1} << (c & 63);
        }
    }
    state->firstByteStart[256] = seg;
    for (int b = 0; b < 256; ++b) {
        uint32_t n = state->firstByteStart[b];
        for (int w = 0; w < 4; ++w) {
            state->keysBefore[b][w] = static_cast<uint16_t>(n);
            n += countBits(state->secondBytes[b][w]);
        }
    }
}


}  // namespace

int16_t CLex_GetInfo(const char *path, int16_t *type, uint16_t *language) {
    int32_t fh = fileOpen(path, kFileRead);
    if (fh < 0) {
        engineLog("CLex_GetInfo: file open(%s) failed", path != nullptr ? path : "");
        return ORTH_FILE_NOT_FOUND_ERR;
    }
    uint8_t header[kClexHeaderSize];
    uint16_t n = fileRead(fh, header, kClexHeaderSize);
    fileClose(fh);
    if (n < kClexHeaderSize || readU32(header + kOffVersion) != kClexVersion) {
        return ORTH_UNKNOWN_LEXICON_TYPE_ERR;
    }
    if (type != nullptr) *type = 1;
    if (language != nullptr) *language = readU16(header + kOffLanguage);
    return 0;
}

// 0; ORTH_FILE_NOT_FOUND_ERR when the file can't be opened or its path is
// over 259 characters; ORTH_UNKNOWN_LEXICON_TYPE_ERR for a short header,
// another version, over 1024 small words, a short small-words table or a
// segment record that is longer than 65535, lies past the end of the file or
// breaks the key order; ORTH_OUT_OF_MEMORY_ERR when the segment table can't
// be allocated or a segment exceeds a non-zero budget; ORTH_FILE_READ_ERR on a
// short segment record. On failure nothing stays allocated.
int16_t CLex_Open(const char *path, uint32_t budget, CLexState *state) {
    state->segs = nullptr;
    state->segCount = 0;
    state->tableBytes = 0;
    state->evictions = 0;
    state->plainWalks = false;
    if (path == nullptr || std::strlen(path) > static_cast<size_t>(kMaxPathLen)) {
        // A cut path would name another file; refuse it instead.
        engineLog("CLex_Open: path too long");
        return ORTH_FILE_NOT_FOUND_ERR;
    }
    int32_t fh = fileOpen(path, kFileRead);
    if (fh < 0) {
        engineLog("CLex_Open: file open(%s) failed", path);
        return ORTH_FILE_NOT_FOUND_ERR;
    }
    std::strcpy(state->path, path);

    uint8_t header[kClexHeaderSize];
    if (fileRead(fh, header, kClexHeaderSize) < kClexHeaderSize) {
        logCorrupt("CLex_Open: error reading index header");
        failOpen(fh, state);
        return ORTH_UNKNOWN_LEXICON_TYPE_ERR;
    }
    uint32_t version = readU32(header + kOffVersion);
    if (version != kClexVersion) {
        logCorrupt("CLex_Open: expected lex version %lx, read %lx",
                   static_cast<unsigned long>(kClexVersion), static_cast<unsigned long>(version));
        failOpen(fh, state);
        return ORTH_UNKNOWN_LEXICON_TYPE_ERR;
    }
    std::memcpy(state->primary, header + kOffPrimary, sizeof state->primary);
    std::memcpy(state->secondary, header + kOffSecondary, sizeof state->secondary);
    uint16_t smallCount = readU16(header + kOffSmallCount);
    if (smallCount > kMaxSmallWords) {
        logCorrupt("CLex_Open: lex contains %hu small words", smallCount);
        failOpen(fh, state);
        return ORTH_UNKNOWN_LEXICON_TYPE_ERR;
    }
    uint16_t smallBytes = static_cast<uint16_t>(smallCount * 2);
    if (fileRead(fh, state->smallWords, smallBytes) < smallBytes) {
        logCorrupt("CLex_Open: error reading small-words table");
        failOpen(fh, state);
        return ORTH_UNKNOWN_LEXICON_TYPE_ERR;
    }
    state->smallCount = smallCount;
    indexSmallWords(state);
    state->budget = budget;
    state->freeBudget = budget;
    state->language = readU16(header + kOffLanguage);
    uint16_t segCount = readU16(header + kOffSegCount);

    // calloc(0) may give null: allocate at least one entry.
    state->segs = static_cast<CLexSeg *>(std::calloc(segCount > 0 ? segCount : 1, sizeof(CLexSeg)));
    if (state->segs == nullptr) {
        engineLog("CLex_Open: out of memory");
        fileClose(fh);
        return ORTH_OUT_OF_MEMORY_ERR;
    }
    for (uint16_t i = 0; i < segCount; ++i) {
        uint8_t rec[kClexSegHeaderSize];
        if (fileRead(fh, rec, kClexSegHeaderSize) < kClexSegHeaderSize) {
            engineLog("CLex_Open: error reading CLexSegHeader");
            failOpen(fh, state);
            return ORTH_FILE_READ_ERR;
        }
        CLexSeg &s = state->segs[i];
        s.offset = readU32(rec);
        s.length = readU32(rec + 4);
        s.data = nullptr;
        s.table = nullptr;
        s.lastUse = 0;
        s.key[0] = rec[8];
        s.key[1] = rec[9];
        state->segCount = static_cast<uint16_t>(i + 1);
        if (budget != 0 && s.length > budget) {
            engineLog("CLex_Open: segment size %ld > budget %ld", static_cast<long>(s.length),
                      static_cast<long>(budget));
            failOpen(fh, state);
            return ORTH_OUT_OF_MEMORY_ERR;
        }
    }
    int32_t fileSize = fileSeek(fh, 0, 2) == 0 ? fileTell(fh) : -1;
    int16_t rc = checkSegTable(state, fileSize);
    if (rc < 0) {
        failOpen(fh, state);
        return rc;
    }
    indexKeys(state);
    state->useCounter = 0;
    fileClose(fh);
    return 0;
}

void CLex_Close(CLexState *state) {
    if (state->segs != nullptr) {
        for (uint16_t i = 0; i < state->segCount; ++i) releaseSegData(state, &state->segs[i]);
        std::free(state->segs);
    }
    state->segs = nullptr;
    state->segCount = 0;
}

int32_t findSegment(const CLexState *state, uint8_t k0, uint8_t k1) {
    // The keys are unique and sorted, so the segment's index is the first
    // index of its first byte plus the number of smaller second bytes
    // (counted beforehand for whole words of the bit set).
    if (state->segs == nullptr) return -1;
    const uint64_t *bits = state->secondBytes[k0];
    const uint32_t word = k1 >> 6, bit = k1 & 63;
    if (((bits[word] >> bit) & 1) == 0) return -1;
    return static_cast<int32_t>(state->keysBefore[k0][word] +
                                countBits(bits[word] & ((uint64_t{1} << bit) - 1)));
}

int16_t loadSeg(CLexState *state, uint16_t seg) {
    if (state->segs == nullptr || seg >= state->segCount) {
        engineLog("loadSeg: bad segment %hu", seg);
        return ORTH_UNSUPPORTED_ACTION_ERR;
    }
    ++state->useCounter;
    CLexSeg &s = state->segs[seg];
    if (s.data != nullptr) {
        s.lastUse = state->useCounter;
        return 0;
    }
    if (s.length == 0) return ORTH_WORD_NOT_FOUND_ERR;
    while (state->budget != 0 && state->freeBudget < s.length) {
        int32_t victim = -1;
        for (uint16_t i = 0; i < state->segCount; ++i) {
            const CLexSeg &c = state->segs[i];
            if (c.data != nullptr && (victim < 0 || c.lastUse < state->segs[victim].lastUse)) victim = i;
        }
        if (victim < 0) break;  // nothing left to evict; the open check keeps length <= budget
        releaseSegData(state, &state->segs[victim]);
        state->freeBudget += state->segs[victim].length;
        ++state->evictions;
    }
    auto *buf = static_cast<uint8_t *>(std::malloc(s.length));
    if (buf == nullptr) {
        engineLog("loadSeg: out of memory");
        return ORTH_OUT_OF_MEMORY_ERR;
    }
    int32_t fh = fileOpen(state->path, kFileRead);
    if (fh < 0) {
        engineLog("loadSeg: error opening %s", state->path);
        std::free(buf);
        return ORTH_FILE_OPEN_ERR;
    }
    if (s.offset > 0x7FFFFFFFu || fileSeek(fh, static_cast<int32_t>(s.offset), 0) < 0) {
        logCorrupt("loadSeg: seek error");
        std::free(buf);
        fileClose(fh);
        return ORTH_UNKNOWN_LEXICON_TYPE_ERR;
    }
    uint16_t len = static_cast<uint16_t>(s.length);  // <= 65535 by invariant (1)
    if (fileRead(fh, buf, len) < len) {
        logCorrupt("loadSeg: read error");
        std::free(buf);
        fileClose(fh);
        return ORTH_UNKNOWN_LEXICON_TYPE_ERR;
    }
    fileClose(fh);
    s.data = buf;
    s.lastUse = state->useCounter;
    if (state->budget != 0) state->freeBudget -= s.length;
    attachWordTable(state, seg);
    return 0;
}

DecodeStep decodeWord(const CLexState *state, const uint8_t *data, uint32_t *pos, uint32_t end,
                      char *buf, uint32_t *len, bool report) {
    uint32_t i = *pos;
    while (i < end && data[i] == kCodePad) ++i;
    if (i == end) {
        *pos = i;
        return kBodyDone;
    }
    uint32_t prev = *len;
    uint32_t p = 3;
    bool first = true;  // keep codes may only open a word
    for (;;) {
        if (i >= end) {
            if (report) logCorrupt("decodeSeg: word runs past its block");
            return kCorrupt;
        }
        uint8_t c = data[i++];
        if (c >= kCodeLiteralFirst) {
            if (p >= static_cast<uint32_t>(kMaxWordLen)) {
                if (report) logCorrupt("decodeSeg: word over %d bytes", kMaxWordLen);
                return kCorrupt;
            }
            buf[p++] = static_cast<char>(c);
            first = false;
            continue;
        }
        const uint8_t *suffix = nullptr;
        switch (c) {
        case kCodeEnd:
            break;
        case kCodeKeepAll:
            p = prev;
            break;
        case kCodeKeepN:
            if (i >= end) {
                if (report) logCorrupt("decodeSeg: keep count past its block");
                return kCorrupt;
            }
            p += data[i++];
            break;
        case kCodeKeepButLast:
            p = prev - 1;  // prev 0 wraps high and is refused below
            break;
        case kCodeSecondary:
            if (i >= end) {
                if (report) logCorrupt("decodeSeg: suffix index past its block");
                return kCorrupt;
            }
            suffix = state->secondary[data[i++]];
            break;
        case kCodePad:
            continue;
        default:
            suffix = state->primary[c - kCodePrimaryFirst];
            break;
        }
        if (c == kCodeKeepAll || c == kCodeKeepN || c == kCodeKeepButLast) {
            // Kept characters must come from the previous word of the block.
            if (!first || p < 3 || p > prev) {
                if (report) {
                    logCorrupt("decodeSeg: keeps %lu of a %lu-byte word", static_cast<unsigned long>(p),
                               static_cast<unsigned long>(prev));
                }
                return kCorrupt;
            }
            first = false;
            continue;
        }
        if (suffix != nullptr) {
            size_t n = suffixLength(suffix);
            if (p + n > static_cast<size_t>(kMaxWordLen)) {
                if (report) logCorrupt("decodeSeg: word over %d bytes", kMaxWordLen);
                return kCorrupt;
            }
            std::memcpy(buf + p, suffix, n);
            p += static_cast<uint32_t>(n);
        }
        break;  // the end code or a suffix ends the word
    }
    buf[p] = '\0';
    *len = p;
    *pos = i;
    return kWordDone;
}

namespace {

// Exact lookup within one block without rebuilding words. Only lengths are
// tracked, with m, the length of the prefix that the last word below the
// target shares with it: a word that keeps more than m characters of its
// predecessor is below the target too (it carries the predecessor's smaller
// character at m), and a word that keeps at most m characters matches the
// target up to there, so only its new characters need comparing. The same
// length checks as decodeWord apply, so corrupt data is refused alike.
// 1 found, 0 not (the first greater word ends the walk), or -6.
int scanBlockExact(const CLexState *state, const uint8_t *data, uint32_t i, uint32_t end,
                   const unsigned char *target) {
    uint32_t prev = 0;  // previous word's length
    uint32_t m = 3;     // key and third byte match by construction
    while (i < end) {
        if (data[i] == kCodePad) {
            ++i;
            continue;
        }
        uint32_t p = 3;
        bool equal = true;  // the word matches the target on [0, p)
        bool first = true;  // keep codes may only open a word
        for (;;) {
            if (i >= end) {
                logCorrupt("decodeSeg: word runs past its block");
                return ORTH_UNKNOWN_LEXICON_TYPE_ERR;
            }
            uint8_t c = data[i++];
            if (c >= kCodeLiteralFirst) {
                if (p >= static_cast<uint32_t>(kMaxWordLen)) {
                    logCorrupt("decodeSeg: word over %d bytes", kMaxWordLen);
                    return ORTH_UNKNOWN_LEXICON_TYPE_ERR;
                }
                if (equal) {
                    if (c != target[p]) {
                        if (target[p] == 0 || c > target[p]) return 0;  // first greater word
                        equal = false;
                        m = p;
                    }
                }
                ++p;
                first = false;
                continue;
            }
            if (c == kCodePad) continue;
            if (c == kCodeKeepAll || c == kCodeKeepN || c == kCodeKeepButLast) {
                if (c == kCodeKeepAll) {
                    p = prev;
                } else if (c == kCodeKeepButLast) {
                    p = prev - 1;
                } else {
                    if (i >= end) {
                        logCorrupt("decodeSeg: keep count past its block");
                        return ORTH_UNKNOWN_LEXICON_TYPE_ERR;
                    }
                    p += data[i++];
                }
                if (!first || p < 3 || p > prev) {
                    logCorrupt("decodeSeg: keeps %lu of a %lu-byte word", static_cast<unsigned long>(p),
                               static_cast<unsigned long>(prev));
                    return ORTH_UNKNOWN_LEXICON_TYPE_ERR;
                }
                equal = p <= m;
                first = false;
                continue;
            }
            if (c != kCodeEnd) {
                const uint8_t *suffix;
                if (c == kCodeSecondary) {
                    if (i >= end) {
                        logCorrupt("decodeSeg: suffix index past its block");
                        return ORTH_UNKNOWN_LEXICON_TYPE_ERR;
                    }
                    suffix = state->secondary[data[i++]];
                } else {
                    suffix = state->primary[c - kCodePrimaryFirst];
                }
                size_t n = suffixLength(suffix);
                if (p + n > static_cast<size_t>(kMaxWordLen)) {
                    logCorrupt("decodeSeg: word over %d bytes", kMaxWordLen);
                    return ORTH_UNKNOWN_LEXICON_TYPE_ERR;
                }
                for (size_t k = 0; equal && k < n; ++k) {
                    if (suffix[k] != target[p + k]) {
                        if (target[p + k] == 0 || suffix[k] > target[p + k]) return 0;
                        equal = false;
                        m = static_cast<uint32_t>(p + k);
                    }
                }
                p += static_cast<uint32_t>(n);
            }
            break;  // the end code or a suffix ends the word
        }
        if (equal) {
            if (target[p] == 0) return 1;
            m = p;  // a proper prefix of the target: below it
        }
        prev = p;
    }
    return 0;
}

// Result of visiting one block: a match, a stop without one, corrupt data,
// or the block's end with the walk to go on.
constexpr int kBlockDone = 2;

// Decodes the words of one block (body to end) into buf and hands each to
// the visitor, or compares it with word when there is none. 1, 0, -6 or
// kBlockDone.
int visitBlock(const CLexState *state, const uint8_t *data, uint32_t body, uint32_t end,
               uint8_t third, char buf[kWordBufSize], const char *word, DecodeVisitor visitor,
               void *context) {
    buf[2] = static_cast<char>(third);
    uint32_t len = 0;  // the previous word's length: none yet in this block
    uint32_t i = body;
    for (;;) {
        DecodeStep step = decodeWord(state, data, &i, end, buf, &len, true);
        if (step == kCorrupt) return ORTH_UNKNOWN_LEXICON_TYPE_ERR;
        if (step == kBodyDone) return kBlockDone;
        int d = visitor != nullptr ? visitor(word, buf, context) : compareBytes(word, buf);
        if (d == 0) return 1;
        if (d < 0) return 0;
    }
}

// Reads the block header at pos: its body's bounds and third byte. False
// (logged) when the header or body runs past the segment.
bool readBlockHeader(const CLexSeg &s, uint32_t pos, uint32_t *body, uint32_t *end, uint8_t *third) {
    if (s.length - pos < kClexBlockHeaderSize) {
        logCorrupt("decodeSeg: block header past end of segment %c%c", s.key[0], s.key[1]);
        return false;
    }
    uint32_t bodyLen = readU32(s.data + pos);
    *third = s.data[pos + 4];
    *body = pos + kClexBlockHeaderSize;
    if (bodyLen > s.length - *body) {
        logCorrupt("decodeSeg: block of %lu bytes past end of segment %c%c",
                   static_cast<unsigned long>(bodyLen), s.key[0], s.key[1]);
        return false;
    }
    *end = *body + bodyLen;
    return true;
}

// The case-insensitive walk of one loaded segment, with the outcome of
// decoding every block under the folding comparison but decoding far less.
// All words of a segment share its key, so when the key folds unlike the
// word's first two characters every comparison is decided there: the walk
// either stops at the first word or passes them all, unmatched. Otherwise a
// block whose third byte folds below the word's holds only lower-folding
// words and is skipped; any other block is decoded, and one whose third
// byte folds above ends the walk at its first word. 1, 0 or -6.
int walkFolded(CLexState *state, uint16_t seg, const char *word, int16_t charSet) {
    const CLexSeg &s = state->segs[seg];
    const auto *w = reinterpret_cast<const unsigned char *>(word);
    if (toLowerChar(charSet, s.key[0]) != toLowerChar(charSet, w[0]) ||
        toLowerChar(charSet, s.key[1]) != toLowerChar(charSet, w[1])) {
        return 0;
    }
    const unsigned char foldedThird = toLowerChar(charSet, w[2]);
    FoldContext fold{charSet};
    char buf[kWordBufSize];
    buf[0] = static_cast<char>(s.key[0]);
    buf[1] = static_cast<char>(s.key[1]);
    for (uint32_t pos = 0; pos < s.length;) {
        uint32_t body, end;
        uint8_t third;
        if (!readBlockHeader(s, pos, &body, &end, &third)) return ORTH_UNKNOWN_LEXICON_TYPE_ERR;
        pos = end;
        if (toLowerChar(charSet, third) < foldedThird) continue;
        int rc = visitBlock(state, s.data, body, end, third, buf, word, visitFolded, &fold);
        if (rc != kBlockDone) return rc;
    }
    return 0;
}

}  // namespace

int decodeSeg(CLexState *state, uint16_t seg, const char *word, bool sameThirdByte,
              DecodeVisitor visitor, void *context) {
    if (state->segs == nullptr || seg >= state->segCount || state->segs[seg].data == nullptr) return 0;
    const CLexSeg &s = state->segs[seg];
    if (s.table != nullptr) return tableVisit(s.table, word, sameThirdByte, visitor, context);
    const auto *w = reinterpret_cast<const unsigned char *>(word);
    char buf[kWordBufSize];
    buf[0] = static_cast<char>(s.key[0]);
    buf[1] = static_cast<char>(s.key[1]);
    for (uint32_t pos = 0; pos < s.length;) {
        uint32_t body, end;
        uint8_t third;
        if (!readBlockHeader(s, pos, &body, &end, &third)) return ORTH_UNKNOWN_LEXICON_TYPE_ERR;
        pos = end;
        if (sameThirdByte) {
            if (third < w[2]) continue;
            if (third > w[2]) return 0;
            if (visitor == nullptr) return scanBlockExact(state, s.data, body, end, w);
        }
        int rc = visitBlock(state, s.data, body, end, third, buf, word, visitor, context);
        if (rc != kBlockDone) return rc;
        if (sameThirdByte) return 0;
    }
    return 0;
}

int lookupSmallWord(const char *word, const uint8_t (*smallWords)[2], uint16_t count,
                    bool caseSensitive, int16_t charSet) {
    auto c1 = static_cast<unsigned char>(word[0]);
    auto c2 = c1 == 0 ? static_cast<unsigned char>(0) : static_cast<unsigned char>(word[1]);
    if (caseSensitive) return findSmallPair(smallWords, count, c1, c2) ? 1 : 0;
    unsigned char keys[4][2];
    caseKeys(c1, c2, charSet, keys);
    for (const auto &key : keys) {
        if (findSmallPair(smallWords, count, key[0], key[1])) return 1;
    }
    return 0;
}

// 0 found; ORTH_WORD_NOT_FOUND_ERR when absent (also for an empty word or one
// over 63 bytes); a failed loadSeg's code as it is; ORTH_UNKNOWN_LEXICON_TYPE_ERR
// when the segment walked turns out corrupt.
int16_t CLex_Lookup(const char *word, int16_t charSet, bool caseSensitive, CLexState *state) {
    if (word == nullptr) return ORTH_WORD_NOT_FOUND_ERR;
    return CLex_LookupLength(word, boundedLength(word), charSet, caseSensitive, state);
}

int16_t CLex_LookupLength(const char *word, size_t len, int16_t charSet, bool caseSensitive,
                          CLexState *state) {
    if (word == nullptr || state->segs == nullptr) return ORTH_WORD_NOT_FOUND_ERR;
    if (len == 0 || len > static_cast<size_t>(kMaxWordLen)) return ORTH_WORD_NOT_FOUND_ERR;
    auto c1 = static_cast<unsigned char>(word[0]);
    auto c2 = static_cast<unsigned char>(word[1]);
    if (len < 3) {
        if (!state->smallIndexed) {
            return lookupSmallWord(word, state->smallWords, state->smallCount, caseSensitive, charSet)
                       ? 0
                       : ORTH_WORD_NOT_FOUND_ERR;
        }
        if (caseSensitive) return hasSmallPair(state, c1, c2) ? 0 : ORTH_WORD_NOT_FOUND_ERR;
        unsigned char keys[4][2];
        caseKeys(c1, c2, charSet, keys);
        for (const auto &key : keys) {
            if (hasSmallPair(state, key[0], key[1])) return 0;
        }
        return ORTH_WORD_NOT_FOUND_ERR;
    }
    if (caseSensitive) {
        int32_t seg = findSegment(state, c1, c2);
        if (seg < 0) return ORTH_WORD_NOT_FOUND_ERR;
        int16_t rc = touchSeg(state, static_cast<uint16_t>(seg));
        if (rc < 0) return rc;
        const CLexWordTable *table = state->segs[seg].table;
        if (table != nullptr) return tableHolds(table, word, len) ? 0 : ORTH_WORD_NOT_FOUND_ERR;
        int found = decodeSeg(state, static_cast<uint16_t>(seg), word, true, nullptr, nullptr);
        if (found < 0) return static_cast<int16_t>(found);
        return found == 1 ? 0 : ORTH_WORD_NOT_FOUND_ERR;
    }
    unsigned char keys[4][2];
    caseKeys(c1, c2, charSet, keys);
    const int row = charSetRow(charSet);
    bool hashed = false;
    uint32_t hash = 0;
    for (const auto &key : keys) {
        int32_t seg = findSegment(state, key[0], key[1]);
        if (seg < 0) continue;
        int16_t rc = touchSeg(state, static_cast<uint16_t>(seg));
        if (rc < 0) return rc;
        int found = -1;
        if (state->segs[seg].table != nullptr) {
            if (!hashed) hash = foldedHash(word, row);
            hashed = true;
            found = tableFindFolded(state, static_cast<uint16_t>(seg), word, row, hash);
        }
        if (found < 0) found = walkFolded(state, static_cast<uint16_t>(seg), word, charSet);
        if (found < 0) return static_cast<int16_t>(found);
        if (found == 1) return 0;
    }
    return ORTH_WORD_NOT_FOUND_ERR;
}
