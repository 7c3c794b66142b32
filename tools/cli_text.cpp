// tools/cli_text.cpp — conversion between UTF-8 (terminal and files) and the
// dictionary's 8-bit character set 0, keeping a map from every converted
// byte back to the UTF-8 bytes it came from, so that a word is shown exactly
// as the user wrote it.
//
// Design notes
// (1) Every UTF-8 character, and every byte of an invalid sequence, gives
//     exactly one 8-bit byte, so origin is strictly increasing and
//     origin.size() == bytes.size() + 1 (encodeUtf8).
// (2) A character the set lacks never vanishes from a word: a letter of
//     another script, a combining mark or an invalid byte becomes
//     kForeignByte (a letter), so its word stays whole and is reported
//     unknown; symbols and punctuation become a blank, which separates words
//     just as the set's own punctuation does.
#include <cerrno>
#include <cstring>
#include <fstream>
#include <iostream>
#include <iterator>
#include <sstream>

#include "orth.h"
#include "tools/cli.h"

namespace {

// Windows-1252 characters at 0x80 to 0x9F; 0 where the code page has none.
const uint16_t kWinHigh[32] = {
    0x20AC, 0,      0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021,
    0x02C6, 0x2030, 0x0160, 0x2039, 0x0152, 0,      0x017D, 0,
    0,      0x2018, 0x2019, 0x201C, 0x201D, 0x2022, 0x2013, 0x2014,
    0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0,      0x017E, 0x0178};

// Decodes one UTF-8 character at s[pos]; returns its length (0 when the
// bytes there are not a valid sequence) and the code point.
size_t decodeOne(const char *s, size_t size, size_t pos, uint32_t *cp) {
    auto b = [&](size_t i) { return static_cast<unsigned char>(s[pos + i]); };
    unsigned char c = b(0);
    size_t len;
    uint32_t value;
    if (c < 0x80) { *cp = c; return 1; }
    if (c >= 0xC2 && c <= 0xDF) { len = 2; value = c & 0x1F; }
    else if (c >= 0xE0 && c <= 0xEF) { len = 3; value = c & 0x0F; }
    else if (c >= 0xF0 && c <= 0xF4) { len = 4; value = c & 0x07; }
    else return 0;
    if (pos + len > size) return 0;
    for (size_t i = 1; i < len; ++i) {
        if ((b(i) & 0xC0) != 0x80) return 0;
        value = (value << 6) | (b(i) & 0x3F);
    }
    if ((len == 3 && value < 0x800) || (len == 4 && (value < 0x10000 || value > 0x10FFFF)) ||
        (value >= 0xD800 && value <= 0xDFFF))
        return 0;
    *cp = value;
    return len;
}

// Whether a character the set lacks is a symbol or punctuation mark (it
// then separates words) rather than a letter.
bool isSeparatorCharacter(uint32_t cp) {
    return (cp >= 0x80 && cp <= 0x9F) || (cp >= 0x2B0 && cp <= 0x2FF) ||
           (cp >= 0x2000 && cp <= 0x2BFF) || (cp >= 0x2E00 && cp <= 0x2E7F) ||
           (cp >= 0x3000 && cp <= 0x303F) || (cp >= 0xFE10 && cp <= 0xFE6F) ||
           (cp >= 0xFF00 && cp <= 0xFF0F) || (cp >= 0xFFF0 && cp <= 0xFFFF) ||
           (cp >= 0x1F000 && cp <= 0x1FAFF);
}

}  // namespace

int set0ByteFor(uint32_t cp) {
    if (cp == 0) return ' ';
    if (cp < 0x80 || (cp >= 0xA0 && cp <= 0xFF)) return static_cast<int>(cp);
    if (cp == 0x2019 || cp == 0x02BC) return '\'';  // typographic and modifier apostrophes
    // The quotation marks, bullet, dashes, tilde, trade mark and angle quote
    // of 0x91 to 0x9B; the letters there (0x9A, 0x9C) are not letters in the set.
    for (int i = 0x11; i <= 0x1B; ++i)
        if (kWinHigh[i] == cp && i != 0x1A) return 0x80 + i;
    return isSeparatorCharacter(cp) ? -2 : -1;
}

void appendUtf8(std::string *out, uint32_t cp) {
    if (cp < 0x80) {
        out->push_back(static_cast<char>(cp));
    } else if (cp < 0x800) {
        out->push_back(static_cast<char>(0xC0 | (cp >> 6)));
        out->push_back(static_cast<char>(0x80 | (cp & 0x3F)));
    } else {
        out->push_back(static_cast<char>(0xE0 | (cp >> 12)));
        out->push_back(static_cast<char>(0x80 | ((cp >> 6) & 0x3F)));
        out->push_back(static_cast<char>(0x80 | (cp & 0x3F)));
    }
}

uint32_t set0Codepoint(unsigned char c) {
    if (c >= 0x80 && c <= 0x9F) return kWinHigh[c - 0x80] ? kWinHigh[c - 0x80] : 0xFFFD;
    return c;
}

bool Encoded::hasForeign(size_t from, size_t to) const {
    for (size_t i = from; i < to && i < foreign.size(); ++i)  // identity: none
        if (foreign[i]) return true;
    return false;
}

std::string Encoded::sourceOf(const std::string &utf8, size_t from, size_t to) const {
    size_t start, n;
    sourceSpan(from, to, &start, &n);
    return utf8.substr(start, n);
}

size_t Encoded::sourceOffset(size_t i) const { return identity ? i : origin[i]; }

void Encoded::sourceSpan(size_t from, size_t to, size_t *start, size_t *n) const {
    if (from > bytes.size()) from = bytes.size();
    if (to > bytes.size()) to = bytes.size();
    if (to < from) to = from;
    *start = sourceOffset(from);
    *n = sourceOffset(to) - *start;
}

size_t plainAsciiPrefix(const char *text, size_t n) {
    size_t i = 0;
    for (; i + 8 <= n; i += 8) {
        uint64_t v;
        std::memcpy(&v, text + i, 8);
        const uint64_t high = 0x8080808080808080u, ones = 0x0101010101010101u;
        if (((v | ((v - ones) & ~v)) & high) != 0) break;  // a byte above 0x7F, or a zero
    }
    while (i < n && static_cast<unsigned char>(text[i]) - 1u < 0x7Fu) ++i;
    return i;
}

bool isPlainAscii(const char *text, size_t n) { return plainAsciiPrefix(text, n) == n; }

void encodeUtf8Into(const char *utf8, size_t n, Encoded *e) {
    e->bytes.clear();
    e->origin.clear();
    e->foreign.clear();
    e->identity = isPlainAscii(utf8, n);
    if (e->identity) {
        e->bytes.assign(utf8, n);
        return;
    }
    e->bytes.reserve(n);
    e->origin.reserve(n + 1);
    e->foreign.reserve(n);
    size_t pos = 0;
    while (pos < n) {
        uint32_t cp = 0;
        size_t len = decodeOne(utf8, n, pos, &cp);
        int byte = len == 0 ? -1 : set0ByteFor(cp);
        if (len == 0) len = 1;  // an invalid byte stands for itself
        e->origin.push_back(static_cast<uint32_t>(pos));
        e->foreign.push_back(byte == -1);
        e->bytes.push_back(static_cast<char>(byte == -1 ? kForeignByte : byte == -2 ? ' ' : byte));
        pos += len;
    }
    e->origin.push_back(static_cast<uint32_t>(n));
}

Encoded encodeUtf8(const std::string &utf8) {
    Encoded e;
    encodeUtf8Into(utf8.data(), utf8.size(), &e);
    if (e.identity) {
        // The full maps, for callers that read them.
        e.identity = false;
        e.origin.resize(utf8.size() + 1);
        for (size_t i = 0; i <= utf8.size(); ++i) e.origin[i] = static_cast<uint32_t>(i);
        e.foreign.assign(utf8.size(), false);
    }
    return e;
}

std::string decodeToUtf8(const std::string &bytes, bool typoApostrophe) {
    std::string out;
    out.reserve(bytes.size() + bytes.size() / 4);
    for (char ch : bytes) {
        auto c = static_cast<unsigned char>(ch);
        appendUtf8(&out, c == '\'' && typoApostrophe ? 0x2019 : set0Codepoint(c));
    }
    return out;
}

bool readAll(const std::string &path, std::string *out) {
    errno = 0;
    if (path == "-") {
        std::ostringstream ss;
        ss << std::cin.rdbuf();
        *out = ss.str();
        return !std::cin.bad();
    }
    std::ifstream in(path, std::ios::binary);
    if (!in) {
        if (errno == 0) errno = ENOENT;
        return false;
    }
    out->assign(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
    if (in.bad()) {
        if (errno == 0) errno = EIO;
        return false;
    }
    return true;
}

std::string errnoText() { return std::strerror(errno); }

std::string describeResult(int rc) {
    switch (rc) {
    case ORTH_TOO_MANY_SESSIONS_ERR: return "too many sessions";
    case ORTH_WORD_NOT_FOUND_ERR: return "word not found";
    case ORTH_FILE_NOT_FOUND_ERR: return "file not found";
    case ORTH_TOO_MANY_LEXICONS_ERR: return "too many lexicons";
    case ORTH_UNKNOWN_LEXICON_TYPE_ERR: return "not a lexicon, or an unknown lexicon type";
    case ORTH_BUFFER_TOO_SMALL_ERR: return "buffer too small";
    case ORTH_READ_ONLY_LEXICON_ERR: return "lexicon is read-only";
    case ORTH_TWO_WORDS_REQUIRED_ERR: return "a word and a replacement (WORD:REPLACEMENT) are needed";
    case ORTH_OUT_OF_MEMORY_ERR: return "out of memory";
    case ORTH_UNSUPPORTED_ACTION_ERR: return "not supported for this lexicon";
    case ORTH_LEXICON_EXISTS_ERR: return "file already exists";
    case ORTH_INVALID_WORD_ERR: return "invalid word (too long, or a character outside the character set)";
    case ORTH_WORD_ORDER_ERR: return "word out of order (words must be sorted byte-wise, each key once)";
    case ORTH_TOO_MANY_SMALL_WORDS_ERR: return "too many one- and two-letter words";
    case ORTH_FILE_READ_ERR: return "read error";
    case ORTH_FILE_WRITE_ERR: return "write error";
    case ORTH_FILE_OPEN_ERR: return "cannot open file";
    default: return std::string("engine error ") + std::to_string(rc) + " (" + resultCodeName(static_cast<int16_t>(rc)) + ")";
    }
}

std::vector<std::string> splitLines(const std::string &text) {
    std::vector<std::string> lines;
    size_t start = 0;
    while (start < text.size()) {
        size_t end = text.find('\n', start);
        if (end == std::string::npos) end = text.size();
        size_t stop = (end > start && text[end - 1] == '\r') ? end - 1 : end;
        lines.push_back(text.substr(start, stop - start));
        start = end + 1;
    }
    return lines;
}

bool LineBlock::open(int16_t session, const std::string &utf8) {
    line = utf8;
    enc = encodeUtf8(line);
    uint32_t length = static_cast<uint32_t>(enc.bytes.size());
    enc.bytes.push_back('\0');  // the block's room for one more byte
    id = ORTH_OpenBlock(session, &enc.bytes[0], length, length + 1, 1);
    enc.bytes.pop_back();
    return id >= 0;
}

std::string LineBlock::wordAtCursor(int16_t session, size_t n) const {
    uint32_t cursor = 0;
    ORTH_GetBlockInfo(session, id, nullptr, nullptr, &cursor, nullptr);
    return enc.sourceOf(line, cursor, cursor + n);
}
