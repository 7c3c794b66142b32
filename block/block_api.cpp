// block/block_api.cpp — the ORTH_ block functions: four block slots per
// session, id validation with the per-call log lines, and the block-checking
// loop that runs forward to the next word worth reporting.
//
// (1) A block slot is empty or holds a TextBlock that BlockOpen accepted;
//     ORTH_OpenBlock fills it only after BlockOpen succeeds, and
//     closeBlockSlot (ORTH_CloseBlock and session close) empties it.
// (2) The session's closer is registered before the first block exists, so a
//     session never closes while owning a block it cannot release.
// (3) ORTH_CheckBlock leaves the cursor on the word it reports, and on the
//     end of the text when it reports ORTH_CHK_END_OF_BLOCK.
#include <cstring>
#include <new>

#include "block/block.h"
#include "check/chartab.h"
#include "check/check.h"
#include "engine/log.h"
#include "engine/session.h"
#include "orth.h"

namespace {

bool closerRegistered = false;

void closeBlockSlot(Session *session, int16_t blockId) {
    TextBlock *block = session->blocks[blockId];
    BlockClose(block);
    delete block;
    session->blocks[blockId] = nullptr;
    engineLog("ORTH_CloseBlock: block %hd closed", blockId);
}

// Validates both ids for the named call: 0 with the session and the block
// (session may be null when the caller needs only the block), or
// ORTH_BAD_SESSION_ID_ERR / ORTH_BAD_BLOCK_ID_ERR after the call's log line.
int16_t findBlock(int16_t sessionId, int16_t blockId, const char *function, Session **session,
                  TextBlock **block) {
    Session *s = sessionFor(sessionId, function);
    if (s == nullptr) return ORTH_BAD_SESSION_ID_ERR;
    if (blockId < 0 || blockId >= kMaxBlocksPerSession || s->blocks[blockId] == nullptr) {
        engineLog("%s: bad block id %hd", function, blockId);
        return ORTH_BAD_BLOCK_ID_ERR;
    }
    if (session != nullptr) *session = s;
    *block = s->blocks[blockId];
    return 0;
}

// Whether two buffers share a byte.
bool overlaps(const char *a, size_t aSize, const char *b, size_t bSize) {
    if (a == nullptr || b == nullptr || aSize == 0 || bSize == 0) return false;
    auto x = reinterpret_cast<uintptr_t>(a), y = reinterpret_cast<uintptr_t>(b);
    return x < y + bSize && y < x + aSize;
}

bool isAllDigits(const char *word, int charSet) {
    for (const char *p = word; *p != '\0'; ++p) {
        if (!(classOf(charSet, static_cast<unsigned char>(*p)) & CC_DIGIT)) return false;
    }
    return true;
}

// checkWord with the caller's replacement buffer. The checker may treat a
// nonzero-size replacement as 64 bytes, so a smaller caller buffer is served
// through a local one and receives at most size-1 bytes and a zero.
int16_t checkBlockWord(Session *session, const CheckLexicons *lexicons, uint32_t mask, const char *word,
                       char *replacement, uint16_t replacementSize) {
    if (replacement == nullptr) replacementSize = 0;
    if (replacementSize == 0 || replacementSize >= kWordBufSize) {
        return checkWordGathered(session, lexicons, mask, word, replacement, replacementSize);
    }
    char local[kWordBufSize] = {};
    int16_t result = checkWordGathered(session, lexicons, mask, word, local, kWordBufSize);
    size_t n = std::strlen(local);
    if (n > replacementSize - 1u) n = replacementSize - 1u;
    std::memcpy(replacement, local, n);
    replacement[n] = '\0';
    return result;
}

}  // namespace

// The new block id 0 to 3; ORTH_BAD_SESSION_ID_ERR, ORTH_TOO_MANY_BLOCKS_ERR,
// ORTH_OUT_OF_MEMORY_ERR, or BlockOpen's code, each logged, with no slot used.
extern "C" ORTH_API int16_t ORTH_CALL ORTH_OpenBlock(int16_t sessionId, char *text, uint32_t length, uint32_t size,
                                  uint16_t copy) noexcept {
    Session *s = sessionFor(sessionId, "ORTH_OpenBlock");
    if (s == nullptr) return ORTH_BAD_SESSION_ID_ERR;
    int16_t slot = 0;
    while (slot < kMaxBlocksPerSession && s->blocks[slot] != nullptr) ++slot;
    if (slot == kMaxBlocksPerSession) {
        engineLog("ORTH_OpenBlock: too many blocks");
        return ORTH_TOO_MANY_BLOCKS_ERR;
    }
    TextBlock *block = new (std::nothrow) TextBlock{};
    if (block == nullptr) {
        engineLog("ORTH_OpenBlock: out of memory");
        return ORTH_OUT_OF_MEMORY_ERR;
    }
    int16_t rc = BlockOpen(text, length, size, copy, s->charSet, block);
    if (rc < 0) {
        delete block;
        return rc;
    }
    if (!closerRegistered) {
        setBlockCloser(closeBlockSlot);
        closerRegistered = true;
    }
    s->blocks[slot] = block;
    engineLog("ORTH_OpenBlock: block %hd opened", slot);
    return slot;
}

// 0, or ORTH_BAD_SESSION_ID_ERR / ORTH_BAD_BLOCK_ID_ERR (logged).
extern "C" ORTH_API int16_t ORTH_CALL ORTH_CloseBlock(int16_t sessionId, int16_t blockId) noexcept {
    Session *s;
    TextBlock *block;
    int16_t rc = findBlock(sessionId, blockId, "ORTH_CloseBlock", &s, &block);
    if (rc < 0) return rc;
    closeBlockSlot(s, blockId);
    return 0;
}

// A nonzero check result for the word now under the cursor (the word is in
// `word`), ORTH_CHK_END_OF_BLOCK when the text holds no further word worth
// reporting, ORTH_BAD_SESSION_ID_ERR / ORTH_BAD_BLOCK_ID_ERR (logged), or
// ORTH_BUFFER_TOO_SMALL_ERR (logged) for a word buffer of size 0.
extern "C" ORTH_API int16_t ORTH_CALL ORTH_CheckBlock(int16_t sessionId, int16_t blockId, uint32_t mask, char *word,
                                   uint16_t wordSize, char *replacement,
                                   uint16_t replacementSize) noexcept {
    Session *s;
    TextBlock *block;
    int16_t found = findBlock(sessionId, blockId, "ORTH_CheckBlock", &s, &block);
    if (found < 0) return found;
    uint32_t checkMask = mask | s->options;
    BlockMeasure memo;  // the text cannot change during this call
    CheckLexicons lexicons;  // nor can the session's lexicons
    gatherLexicons(s, &lexicons);
    for (;;) {
        int16_t rc = BlockGetWordMeasured(block, word, wordSize, &memo);
        if (rc == ORTH_WORD_NOT_FOUND_ERR) return ORTH_CHK_END_OF_BLOCK;
        if (rc < 0) return rc;
        // Only the first word of a block must start with a capital.
        if ((checkMask & ORTH_REPORT_UNCAPPED_WORDS_OPT) && !BlockAtFirstWord(block)) {
            checkMask &= ~ORTH_REPORT_UNCAPPED_WORDS_OPT;
        }
        int16_t result = 0;
        if (!isAllDigits(word, block->charSet)) {
            result = checkBlockWord(s, &lexicons, checkMask, word, replacement, replacementSize);
            if (checkMask & ORTH_REPORT_DOUBLED_WORDS_OPT) {
                // The doubled-word test extracts the word again into 64
                // bytes; with a word buffer of that size that the check left
                // alone, the word is still there.
                const bool cs = (checkMask & ORTH_CASE_SENSITIVE_OPT) != 0;
                const bool kept = wordSize == kWordBufSize && !overlaps(word, wordSize, replacement, replacementSize);
                if (kept ? BlockDoubledWordOfLength(block, cs, word, memo.length, rc)
                         : BlockDoubledWordMeasured(block, cs, &memo)) {
                    result |= ORTH_CHK_DOUBLED_WORD;
                }
            }
        }
        if (result != 0) return result;
        if (BlockNextWordMeasured(block, &memo) < 0) return ORTH_CHK_END_OF_BLOCK;
    }
}

// The calls below validate the session and block ids (ORTH_BAD_SESSION_ID_ERR,
// ORTH_BAD_BLOCK_ID_ERR, each logged with the call's name) and otherwise
// return the block operation's result unchanged (see block/block.h).
extern "C" ORTH_API int16_t ORTH_CALL ORTH_NextBlockWord(int16_t sessionId, int16_t blockId) noexcept {
    TextBlock *block;
    int16_t rc = findBlock(sessionId, blockId, "ORTH_NextBlockWord", nullptr, &block);
    return rc < 0 ? rc : BlockNextWord(block);
}

extern "C" ORTH_API int16_t ORTH_CALL ORTH_GetBlockWord(int16_t sessionId, int16_t blockId, char *buffer,
                                     uint16_t size) noexcept {
    TextBlock *block;
    int16_t rc = findBlock(sessionId, blockId, "ORTH_GetBlockWord", nullptr, &block);
    return rc < 0 ? rc : BlockGetWord(block, buffer, size);
}

extern "C" ORTH_API int16_t ORTH_CALL ORTH_ReplaceBlockWord(int16_t sessionId, int16_t blockId,
                                         const char *newWord) noexcept {
    TextBlock *block;
    int16_t rc = findBlock(sessionId, blockId, "ORTH_ReplaceBlockWord", nullptr, &block);
    return rc < 0 ? rc : BlockReplaceWord(block, newWord);
}

extern "C" ORTH_API int16_t ORTH_CALL ORTH_DelBlockWord(int16_t sessionId, int16_t blockId) noexcept {
    TextBlock *block;
    int16_t rc = findBlock(sessionId, blockId, "ORTH_DelBlockWord", nullptr, &block);
    return rc < 0 ? rc : BlockDeleteWord(block);
}

extern "C" ORTH_API int32_t ORTH_CALL ORTH_GetBlock(int16_t sessionId, int16_t blockId, char *buffer,
                                 uint32_t size) noexcept {
    TextBlock *block;
    int16_t rc = findBlock(sessionId, blockId, "ORTH_GetBlock", nullptr, &block);
    return rc < 0 ? rc : BlockGetText(block, buffer, size);
}

extern "C" ORTH_API int16_t ORTH_CALL ORTH_GetBlockInfo(int16_t sessionId, int16_t blockId, uint32_t *length,
                                     uint32_t *size, uint32_t *cursor,
                                     uint32_t *wordCount) noexcept {
    TextBlock *block;
    int16_t rc = findBlock(sessionId, blockId, "ORTH_GetBlockInfo", nullptr, &block);
    return rc < 0 ? rc : BlockGetInfo(block, length, size, cursor, wordCount);
}

extern "C" ORTH_API int16_t ORTH_CALL ORTH_SetBlockCursor(int16_t sessionId, int16_t blockId,
                                       uint32_t cursor) noexcept {
    TextBlock *block;
    int16_t rc = findBlock(sessionId, blockId, "ORTH_SetBlockCursor", nullptr, &block);
    return rc < 0 ? rc : BlockSetCursor(block, cursor);
}

int16_t saveBlockCarry(int16_t sessionId, int16_t blockId, BlockCarry *carry) {
    TextBlock *block;
    int16_t rc = findBlock(sessionId, blockId, "saveBlockCarry", nullptr, &block);
    if (rc < 0) return rc;
    BlockSaveCarry(block, carry);
    return 0;
}

int16_t takeBlockCarry(int16_t sessionId, int16_t blockId, const BlockCarry *carry) {
    TextBlock *block;
    int16_t rc = findBlock(sessionId, blockId, "takeBlockCarry", nullptr, &block);
    if (rc < 0) return rc;
    BlockTakeCarry(block, carry);
    return 0;
}

int16_t reopenBlock(int16_t sessionId, int16_t blockId, char *text, uint32_t length) {
    Session *s;
    TextBlock *block;
    int16_t rc = findBlock(sessionId, blockId, "reopenBlock", &s, &block);
    if (rc < 0) return rc;
    BlockClose(block);
    return BlockOpen(text, length, length, 0, s->charSet, block);
}
