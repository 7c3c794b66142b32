// platform/faults.h — for the OS layers only: whether the next write or
// create must fail, as armed by the fault seams of platform.h. Without
// ORTH_FAULT_SEAMS nothing ever fails.
#pragma once

#include "platform/platform.h"

#ifdef ORTH_FAULT_SEAMS
bool writeShouldFail();   // counts the write
bool createShouldFail();  // counts the create
#else
inline bool writeShouldFail() { return false; }
inline bool createShouldFail() { return false; }
#endif

#ifdef ORTH_FAULT_SEAMS
uint32_t cappedOwnedWait(uint32_t waitMs);  // waitMs, or the cap a test set
#else
inline uint32_t cappedOwnedWait(uint32_t waitMs) { return waitMs; }
#endif
