// platform/posix/owned_posix.cpp — the primitives of owned files over POSIX:
// flock locks (one per open file, dropped when it closes or its process dies)
// and device and inode numbers for a file's identity.
#include "platform/owned_int.h"

#include "platform/platform.h"

#include <cerrno>
#include <cstdio>
#include <ctime>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

int32_t ownedOpen(const char *path) {
    int fd = open(path, O_RDWR | O_CREAT | O_CLOEXEC, 0644);
    return fd < 0 ? -1 : fd;
}

int ownedTryLock(int32_t handle) {
    if (flock(handle, LOCK_EX | LOCK_NB) == 0) return 0;
    if (errno == EWOULDBLOCK || errno == EINTR) return 1;
    // A file system without locks: go on unlocked, as before locks existed.
    if (errno == ENOLCK || errno == EOPNOTSUPP || errno == ENOSYS) return 0;
    return -1;
}

void ownedUnlock(int32_t handle) { flock(handle, LOCK_UN); }

bool ownedIsFileAt(int32_t handle, const char *path) {
    struct stat open, named;
    if (fstat(handle, &open) != 0 || stat(path, &named) != 0) return false;
    return open.st_dev == named.st_dev && open.st_ino == named.st_ino;
}

bool ownedEmpty(int32_t handle) {
    return ftruncate(handle, 0) == 0 && lseek(handle, 0, SEEK_SET) == 0;
}

void ownedSleepMs(uint32_t ms) {
    struct timespec ts;
    ts.tv_sec = ms / 1000;
    ts.tv_nsec = static_cast<long>(ms % 1000) * 1000000L;
    nanosleep(&ts, nullptr);
}

uint32_t ownedTickMs() {
    struct timespec ts;
    clock_gettime(CLOCK_MONOTONIC, &ts);
    return static_cast<uint32_t>(ts.tv_sec * 1000u + ts.tv_nsec / 1000000);
}

int platReplace(const char *from, const char *to) {
    return std::rename(from, to) == 0 ? 0 : -1;
}
