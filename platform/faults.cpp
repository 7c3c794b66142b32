// platform/faults.cpp — the fault seams of test builds: writes and creates
// that fail on demand, shared by every OS layer.
#include "platform/faults.h"

#ifdef ORTH_FAULT_SEAMS
namespace {
int writesLeft = -1;   // -1: no fault armed
int createsToFail = 0;
uint32_t ownedWaitCap = UINT32_MAX;
}  // namespace

void platFailWritesAfter(int n) { writesLeft = n; }
void platFailCreates(int n) { createsToFail = n; }
void platClearFaults() {
    writesLeft = -1;
    createsToFail = 0;
    ownedWaitCap = UINT32_MAX;
}
void platCapOwnedWait(uint32_t ms) { ownedWaitCap = ms; }
uint32_t cappedOwnedWait(uint32_t waitMs) { return waitMs < ownedWaitCap ? waitMs : ownedWaitCap; }

bool writeShouldFail() {
    if (writesLeft == 0) return true;
    if (writesLeft > 0) --writesLeft;
    return false;
}

bool createShouldFail() {
    if (createsToFail <= 0) return false;
    --createsToFail;
    return true;
}
#endif
