// tests/lex/procs.h — child processes for the tests of several writers: a
// body run in a forked child whose result is its exit code, and a wait for
// it. The child leaves with _exit, skipping the test framework's and the
// leak checker's exit work, which belongs to the parent.
#pragma once

#include <sys/types.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <functional>

inline pid_t spawnChild(const std::function<int()> &body) {
    std::fflush(nullptr);
    pid_t pid = fork();
    if (pid == 0) _exit(body());
    return pid;
}

// The child's exit code, or 128 + the signal that ended it.
inline int waitChild(pid_t pid) {
    int status = 0;
    if (pid <= 0 || waitpid(pid, &status, 0) != pid) return -1;
    return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
}
