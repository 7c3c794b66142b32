// engine/session.h — the process-wide session table and the records a
// session owns. A Session owns its LexEntry records (slot index = lexicon
// id), its TextBlock records (slot index = block id) and its compressor run.
// Every ORTH_ function validates ids through sessionFor / lexFor, which write
// the "<function>: bad ... id" log line on failure.
#pragma once

#include <cstdint>

#include "engine/limits.h"
#include "lex/clex.h"
#include "lex/tlex.h"
#include "lex/wordtrie.h"

struct TextBlock;
struct CompressState;

struct LexEntry {
    uint16_t format;     // ORTH_COMPRESSED_LEX_FORMAT or ORTH_TEXT_LEX_FORMAT
    int16_t type;        // ORTH_*_LEX_TYPE
    uint16_t language;
    CLexState clex;      // used when format is compressed
    TLexState tlex;      // used when format is text
    LexRankIndex *rank;  // owned; the ranked suggester's index, made on first use
};

struct Session {
    LexEntry *lexicons[kMaxLexPerSession];
    TextBlock *blocks[kMaxBlocksPerSession];
    int16_t charSet;
    int16_t language;
    CompressState *compress;
    uint32_t options;
    uint16_t openSlots;   // bit n set while lexicons[n] holds a lexicon (the registry keeps it)
};

extern Session *sessionTable[kMaxSessions];

// The open session with this id, or null after logging "<fn>: bad session id %hd".
Session *sessionFor(int16_t sessionId, const char *function);
// The open lexicon of the session, or null after logging "<fn>: bad lex id %hd".
LexEntry *lexFor(Session *session, int16_t lexId, const char *function);

// Closing what a session owns. The registry closes lexicons (closeLexSlot);
// blocks belong to a higher layer, which registers its closer the first time
// it opens a block.
void closeLexSlot(Session *session, int16_t lexId);
typedef void (*BlockCloser)(Session *session, int16_t blockId);
void setBlockCloser(BlockCloser closer);
// Told of every session that ORTH_CloseSession closes, before it closes it,
// so that a layer above holding the session (a Dict handle) learns that it
// was closed behind its back.
typedef void (*SessionCloseHook)(int16_t sessionId);
void setSessionCloseHook(SessionCloseHook hook);
