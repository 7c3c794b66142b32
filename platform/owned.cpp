// platform/owned.cpp — owning a file that several writers share by name, over
// the per-OS primitives of owned_int.h, and the checksum of a file's bytes.
//
// (1) A writer empties the shared file only after it holds the lock and has
//     seen that the locked file is still the one of that name. A writer that
//     waited while another renamed the file into a lexicon's place thus holds
//     the lexicon itself, sees the name now leads elsewhere, and lets go of it
//     untouched.
// (2) A writer killed while it owned the file leaves it behind unlocked; the
//     next writer takes it over and empties it.
#include "platform/platform.h"

#include "platform/faults.h"
#include "platform/owned_int.h"

namespace {

constexpr uint32_t kFirstPauseMs = 1;
constexpr uint32_t kLongestPauseMs = 16;  // short enough to notice a release soon
constexpr uint32_t kSumPiece = 8192;

}  // namespace

int32_t platOpenOwned(const char *path, uint32_t waitMs) {
    if (path == nullptr) return kPlatOwnedFailed;
    if (createShouldFail()) return kPlatOwnedFailed;
    waitMs = cappedOwnedWait(waitMs);
    uint32_t start = ownedTickMs();
    uint32_t pause = kFirstPauseMs;
    for (;;) {
        int32_t handle = ownedOpen(path);
        if (handle < 0) return kPlatOwnedFailed;
        int lock = ownedTryLock(handle);
        if (lock < 0) {
            platClose(handle);
            return kPlatOwnedFailed;
        }
        if (lock == 0) {
            if (ownedIsFileAt(handle, path)) {
                if (ownedEmpty(handle)) return handle;
                ownedUnlock(handle);
                platClose(handle);
                return kPlatOwnedFailed;
            }
            // Renamed away by the writer we waited for: start over at once.
            ownedUnlock(handle);
            platClose(handle);
        } else {
            platClose(handle);
            if (ownedTickMs() - start >= waitMs) return kPlatOwnedBusy;
            ownedSleepMs(pause);
            if (pause < kLongestPauseMs) pause *= 2;
        }
        if (ownedTickMs() - start > waitMs) return kPlatOwnedBusy;
    }
}

void platCloseOwned(int32_t handle) {
    if (handle < 0) return;
    ownedUnlock(handle);
    platClose(handle);
}

bool platFileSum(int32_t handle, uint64_t *sum, uint32_t *size) {
    if (platSeek(handle, 0, 0) < 0) return false;
    uint64_t hash = 0xcbf29ce484222325ull;  // 64-bit FNV-1a
    uint64_t total = 0;
    unsigned char piece[kSumPiece];
    for (;;) {
        int32_t n = platRead(handle, piece, sizeof piece);
        if (n < 0) return false;
        for (int32_t i = 0; i < n; ++i) {
            hash ^= piece[i];
            hash *= 0x100000001b3ull;
        }
        total += static_cast<uint32_t>(n);
        if (n < static_cast<int32_t>(sizeof piece)) break;
    }
    *sum = hash;
    *size = total > UINT32_MAX ? UINT32_MAX : static_cast<uint32_t>(total);
    return true;
}
