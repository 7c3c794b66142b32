// platform/faults.cpp — the fault seams of test builds: writes and creates
// that fail on demand, shared by every OS layer.
#include "platform/faults.h"

#ifdef ORTH_FAULT_SEAMS
namespace {
int writesLeft = -1;   // -1: no fault armed
int createsToFail = 0;
}  // namespace

void platFailWritesAfter(int n) { writesLeft = n; }
void platFailCreates(int n) { createsToFail = n; }
void platClearFaults() { writesLeft = -1; createsToFail = 0; }

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
