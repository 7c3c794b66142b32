// tools/cli_list.cpp — `orth list`: prints every reported word of the input,
// once per occurrence, one per line, as the user wrote it.
//
// Each line is checked as one text block, so the block rules apply per line:
// a doubled word is found within a line ("the the" is printed as one entry),
// and with --capitals the first word of each line must start with a capital.
//
// (1) Input is read in chunks and checked line by line, so memory stays
//     bounded whatever the input's size. A line longer than kPieceBytes is
//     checked in pieces that end at a word start of the line's walk (or
//     inside a run of characters that start no word), each piece reaching
//     kLookahead bytes past its last word start; the block over a piece
//     takes over the word memory of the one before (BlockCarry), so a long
//     line is reported exactly as if it were one block, and no word is ever
//     split.
// (2) A line is converted to the 8-bit set only once; an all-ASCII line
//     (the common case) is its own conversion and needs no offset map.
// (3) Entries are gathered in ListRun::out and written once per chunk read
//     (or when they reach kChunkBytes), not one by one.
// (4) Unless first words must start with a capital, consecutive ASCII lines
//     of a chunk are checked as one block with each line feed turned into
//     kLineMark (checkJoinedLines), which reports exactly what a block per
//     line would: a word ends at the mark as at a block's end (the mark
//     joins nothing, so periods, hyphens and apostrophes before it are
//     measured alike); the word before it is followed by punctuation, so
//     the doubled-word memory forgets it, as a new block starts with none;
//     and the walk keeps no other state from word to word but the
//     first-word flag, which only the capital rule reads. A carriage return
//     left before the mark is white space, as the end of a line is.
#include <cerrno>
#include <cstring>
#ifdef _WIN32
#include <fcntl.h>
#include <io.h>
#endif

#include "block/block.h"
#include "orth.h"
#include "tools/cli.h"
#include "tools/front.h"

namespace {

constexpr size_t kChunkBytes = 1 << 16;     // read at a time
constexpr size_t kPieceBytes = 1 << 20;     // longest piece of a line checked at once
// The line ends of joined lines (invariant 4): punctuation in every
// character set (bytes below 0x80 are classed alike in all), and neither a
// joiner inside a word (period, hyphen) nor an apostrophe.
constexpr char kLineMark = '!';
// A word as the block walk measures it spans at most 63 bytes, and its
// measure looks at most two bytes past its end; a piece reaches this far
// past its last word start.
constexpr uint32_t kLookahead = 2 * kWordBufSize + 2;

struct ListOptions {
    bool doubled = true;
    bool capitals = false;
    bool joinLines = false;  // invariant 4
};

struct ListCounts {
    long reported = 0;
    bool engineFailed = false;
    CapsMemo caps;  // all-capitals words already judged by the front-end rule
};

// The state of one run of the command: the session, the options, and the
// conversion buffers reused from line to line.
struct ListRun {
    int16_t session;
    ListOptions lo;
    ListCounts counts;
    Encoded enc;
    int16_t block = -1;   // put over each line in turn (reopenBlock)
    std::string out;      // entries not yet written
};

void flushEntries(ListRun &run) {
    std::fwrite(run.out.data(), 1, run.out.size(), stdout);
    run.out.clear();
}

void printEntry(ListRun &run, const char *text, size_t n, bool doubled) {
    run.out.append(text, n);
    if (doubled) {
        run.out += ' ';
        run.out.append(text, n);
    }
    run.out += '\n';
    if (run.out.size() >= kChunkBytes) flushEntries(run);
}

// Checks length bytes of 8-bit text as one block and prints what it reports:
// the conversion in run.enc of the UTF-8 source src, or the source itself
// (text == src) when it is plain ASCII. The block only reads the text. As a
// piece of a longer text, the block takes over the word memory of the pieces
// before (carryIn) and leaves its own in carryOut.
void checkPiece(ListRun &run, const char *src, char *text, uint32_t length, const BlockCarry *carryIn,
                BlockCarry *carryOut) {
    const Encoded &enc = run.enc;
    const bool plain = text == src;
    int16_t rc = run.block < 0 ? ORTH_OpenBlock(run.session, text, length, length, 0)
                               : reopenBlock(run.session, run.block, text, length);
    if (rc < 0) {
        reportError("cannot check a line: %s", describeResult(rc).c_str());
        run.counts.engineFailed = true;
        return;
    }
    if (run.block < 0) run.block = rc;
    const int16_t block = run.block;
    if (carryIn != nullptr) takeBlockCarry(run.session, block, carryIn);
    uint32_t mask = (run.lo.doubled ? ORTH_REPORT_DOUBLED_WORDS_OPT : 0) |
                    (run.lo.capitals ? ORTH_REPORT_UNCAPPED_WORDS_OPT : 0);
    char word[64];
    for (;;) {
        // The replacement is not shown, so none is asked for.
        rc = ORTH_CheckBlock(run.session, block, mask, word, sizeof word, nullptr, 0);
        if (rc < 0) {
            reportError("cannot check a line: %s", describeResult(rc).c_str());
            run.counts.engineFailed = true;
            break;
        }
        if (rc & ORTH_CHK_END_OF_BLOCK) break;
        if ((rc & ORTH_CHK_MISSPELLED) && frontAcceptsRejected(run.session, word, &run.counts.caps))
            rc &= ~(ORTH_CHK_MISSPELLED | ORTH_CHK_NON_LETTERS);
        uint32_t cursor = 0;
        ORTH_GetBlockInfo(run.session, block, nullptr, nullptr, &cursor, nullptr);
        size_t from = cursor, n = std::strlen(word);
        if (!plain) enc.sourceSpan(cursor, cursor + n, &from, &n);
        if (rc & ~ORTH_CHK_DOUBLED_WORD) {
            printEntry(run, src + from, n, false);
            ++run.counts.reported;
        }
        if (rc & ORTH_CHK_DOUBLED_WORD) {
            printEntry(run, src + from, n, true);
            ++run.counts.reported;
        }
        if (ORTH_NextBlockWord(run.session, block) < 0) break;
    }
    if (carryOut != nullptr) saveBlockCarry(run.session, block, carryOut);
}

// Where a piece of a long line may end: the last word start of the walk
// at or before length - kLookahead (past 0), or that position when the walk
// starts no word in between, so every word start before the end is measured
// with all it needs. Found by walking the converted piece in a block.
uint32_t pieceEnd(int16_t session, Encoded &enc) {
    const auto length = static_cast<uint32_t>(enc.bytes.size());
    const uint32_t limit = length - kLookahead;
    uint32_t end = limit;
    const int16_t block = ORTH_OpenBlock(session, &enc.bytes[0], length, length, 0);
    if (block < 0) return end;
    char word[64];
    for (;;) {
        uint32_t cursor = 0;
        ORTH_GetBlockInfo(session, block, nullptr, nullptr, &cursor, nullptr);
        if (cursor > limit || ORTH_GetBlockWord(session, block, word, sizeof word) < 0) break;
        if (cursor > 0) end = cursor;
        if (ORTH_NextBlockWord(session, block) < 0) break;
    }
    ORTH_CloseBlock(session, block);
    return end;
}

// Checks one whole line (without its line end), or the last piece of one
// when earlier pieces were checked (their word memory in carry).
void checkLine(ListRun &run, const char *line, size_t n, const BlockCarry *carry) {
    if (n == 0) return;
    if (isPlainAscii(line, n)) {
        checkPiece(run, line, const_cast<char *>(line), static_cast<uint32_t>(n), carry, nullptr);
        return;
    }
    encodeUtf8Into(line, n, &run.enc);
    checkPiece(run, line, &run.enc.bytes[0], static_cast<uint32_t>(run.enc.bytes.size()), carry, nullptr);
}

// Checks the lines of chunk from start to end (each ended by a line feed,
// all ASCII) as one block, their line feeds turned into kLineMark.
void checkJoinedLines(ListRun &run, std::string *chunk, size_t start, size_t end) {
    if (end == start) return;
    char *text = &(*chunk)[start];
    for (char *p = text; (p = static_cast<char *>(std::memchr(p, '\n', end - start - (p - text)))) != nullptr;)
        *p++ = kLineMark;
    checkPiece(run, text, text, static_cast<uint32_t>(end - start), nullptr, nullptr);
}

// Checks the leading part of an unfinished long line held in pending and
// removes it, keeping what the next piece starts with; carry goes from the
// pieces before (none when first) to the next.
void checkLeadingPiece(ListRun &run, std::string *pending, bool first, BlockCarry *carry) {
    encodeUtf8Into(pending->data(), pending->size(), &run.enc);
    const uint32_t end = pieceEnd(run.session, run.enc);
    const size_t sourceEnd = run.enc.sourceOffset(end);
    BlockCarry before = *carry;
    checkPiece(run, pending->data(), &run.enc.bytes[0], end, first ? nullptr : &before, carry);
    pending->erase(0, sourceEnd);
}

// Reads and checks a whole input; false with errno set when reading failed.
bool checkStream(ListRun &run, FILE *in) {
    std::string chunk(kChunkBytes, '\0');
    std::string pending;         // the start of a line not yet ended
    BlockCarry carry{};          // word memory of those pieces
    bool inPieces = false;       // pieces of the pending line were checked
    for (;;) {
        size_t got = std::fread(&chunk[0], 1, chunk.size(), in);
        if (got == 0) break;
        size_t pos = 0;
        size_t joined = 0;  // lines from joined to pos wait to be checked as one block
        while (pos < got) {
            if (run.lo.joinLines && pending.empty()) {
                // The lines that end before the first byte that is not
                // plain ASCII join those waiting (invariant 4).
                const char *from = chunk.data() + pos;
                size_t ended = plainAsciiPrefix(from, got - pos);
                while (ended > 0 && from[ended - 1] != '\n') --ended;
                if (ended > 0) {
                    pos += ended;
                    continue;
                }
            }
            const char *nl = static_cast<const char *>(std::memchr(chunk.data() + pos, '\n', got - pos));
            if (nl == nullptr) {
                checkJoinedLines(run, &chunk, joined, pos);
                pending.append(chunk, pos, got - pos);
                while (pending.size() > kPieceBytes) {
                    checkLeadingPiece(run, &pending, !inPieces, &carry);
                    inPieces = true;
                }
                break;
            }
            size_t end = static_cast<size_t>(nl - chunk.data());
            const char *line = chunk.data() + pos;
            size_t n = end - pos;
            checkJoinedLines(run, &chunk, joined, pos);
            if (!pending.empty()) {
                pending.append(line, n);
                line = pending.data();
                n = pending.size();
            }
            if (n > 0 && line[n - 1] == '\r') --n;
            checkLine(run, line, n, inPieces ? &carry : nullptr);
            pending.clear();
            inPieces = false;
            pos = end + 1;
            joined = pos;
        }
        if (pos == got) checkJoinedLines(run, &chunk, joined, pos);
        flushEntries(run);
    }
    if (std::ferror(in)) return false;
    if (!pending.empty()) {
        size_t n = pending.size();
        if (pending[n - 1] == '\r') --n;
        checkLine(run, pending.data(), n, inPieces ? &carry : nullptr);
    }
    return true;
}

// Opens a named file or standard input ("-") for binary reading.
FILE *openInput(const std::string &path) {
    if (path != "-") return std::fopen(path.c_str(), "rb");
#ifdef _WIN32
    _setmode(_fileno(stdin), _O_BINARY);
#endif
    return stdin;
}

}  // namespace

int runList(const GlobalOptions &opts, const std::vector<std::string> &args) {
    ListOptions lo;
    std::vector<std::string> files;
    bool onlyFiles = false;
    for (const std::string &a : args) {
        if (!onlyFiles && a == "--") onlyFiles = true;
        else if (!onlyFiles && a == "--no-doubled") lo.doubled = false;
        else if (!onlyFiles && a == "--capitals") lo.capitals = true;
        else if (!onlyFiles && a.size() > 1 && a[0] == '-') {
            reportError("list: unknown option %s (see orth --help)", a.c_str());
            return kExitError;
        } else files.push_back(a);
    }
    if (files.empty()) files.push_back("-");

    DictSession ds;
    if (!openDictionary(opts, &ds)) return kExitError;
    lo.joinLines = !lo.capitals && ORTH_GetOption(ds.session, ORTH_REPORT_UNCAPPED_WORDS_OPT) == 0;
    ListRun run{ds.session, lo, ListCounts{}, Encoded{}, -1, std::string()};
    bool fileFailed = false;
    for (const std::string &f : files) {
        errno = 0;
        FILE *in = openInput(f);
        bool ok = in != nullptr && checkStream(run, in);
        if (!ok) {
            if (errno == 0) errno = in == nullptr ? ENOENT : EIO;
            reportError("%s: %s", f == "-" ? "standard input" : f.c_str(), errnoText().c_str());
            fileFailed = true;
        }
        if (in != nullptr && in != stdin) std::fclose(in);
    }
    if (run.block >= 0) ORTH_CloseBlock(ds.session, run.block);
    closeDictionary(&ds);
    flushEntries(run);
    std::fflush(stdout);
    if (fileFailed || run.counts.engineFailed) return kExitError;
    return run.counts.reported > 0 ? kExitFound : kExitOk;
}
