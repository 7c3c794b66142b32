// platform/owned_int.h — for the OS layers only: the primitives beneath
// platOpenOwned (platform/owned.cpp), one set per OS.
#pragma once

#include <cstdint>

// Opens path for reading and writing, creating it when missing, never
// emptying it; other handles may read, write, rename or delete it meanwhile.
// A handle, or -1.
int32_t ownedOpen(const char *path);
// Tries to take the exclusive lock without waiting: 0 taken, 1 held by
// another handle, -1 failed. A file system without locks counts as taken.
int ownedTryLock(int32_t handle);
void ownedUnlock(int32_t handle);
// Whether the open file is the one path names now.
bool ownedIsFileAt(int32_t handle, const char *path);
// Empties the file and moves to its start; false on failure.
bool ownedEmpty(int32_t handle);
void ownedSleepMs(uint32_t ms);
uint32_t ownedTickMs();  // a monotonic clock in milliseconds
