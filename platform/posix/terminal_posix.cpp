// platform/posix/terminal_posix.cpp — the interactive terminal over termios,
// poll and signals.
//
// Design notes
// (1) `entered` is set only while the terminal is in raw mode; restoreMode
//     clears it first, so the mode is restored once however many ways out
//     race (an exit handler, a signal during platTermLeave).
// (2) restoreMode runs inside signal handlers: it uses only write and
//     tcsetattr, both async-signal-safe, on data prepared beforehand.
// (3) A fatal signal restores the terminal, then takes its default action
//     (SA_RESETHAND and SA_NODEFER let the handler raise it again at once), so
//     the parent sees the real cause of death. Signals that were ignored when
//     the terminal was entered stay ignored.
#include "platform/platform.h"

#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <poll.h>
#include <sys/ioctl.h>
#include <termios.h>
#include <unistd.h>

namespace {

volatile sig_atomic_t entered = 0;
volatile sig_atomic_t redrawPending = 0;
struct termios savedMode;
struct termios rawMode;
char enterSeq[64];
size_t enterLen = 0;
char leaveSeq[64];
size_t leaveLen = 0;
bool exitHandlerSet = false;

const int kFatalSignals[] = {SIGINT, SIGTERM, SIGHUP, SIGQUIT, SIGSEGV, SIGBUS, SIGFPE, SIGILL, SIGABRT};
constexpr int kFatalCount = sizeof kFatalSignals / sizeof kFatalSignals[0];
struct sigaction previousFatal[kFatalCount];
struct sigaction previousStop, previousResize;

bool writeAll(const char *p, size_t n) {
    while (n > 0) {
        ssize_t done = write(STDOUT_FILENO, p, n);
        if (done < 0 && errno == EINTR) continue;
        if (done <= 0) return false;
        p += done;
        n -= size_t(done);
    }
    return true;
}

void restoreMode() {
    if (!entered) return;
    entered = 0;
    writeAll(leaveSeq, leaveLen);
    tcsetattr(STDIN_FILENO, TCSADRAIN, &savedMode);
}

void enterMode() {
    if (tcsetattr(STDIN_FILENO, TCSADRAIN, &rawMode) != 0) return;
    entered = 1;
    writeAll(enterSeq, enterLen);
}

void onFatalSignal(int sig) {
    int saved = errno;
    restoreMode();
    raise(sig);  // the handler was reset on entry: this is the default action
    errno = saved;
}

// Ctrl-Z: give the shell a sane terminal, stop, and come back in raw mode.
void onStopSignal(int) {
    int saved = errno;
    bool was = entered;
    restoreMode();
    kill(getpid(), SIGSTOP);
    if (was) {
        enterMode();
        redrawPending = 1;
    }
    errno = saved;
}

void onResize(int) { redrawPending = 1; }

void copySequence(const char *from, char *to, size_t *length) {
    size_t n = from == nullptr ? 0 : strnlen(from, 63);
    std::memcpy(to, from == nullptr ? "" : from, n);
    *length = n;
}

void installHandlers() {
    struct sigaction fatal {};
    fatal.sa_handler = onFatalSignal;
    fatal.sa_flags = SA_RESETHAND | SA_NODEFER;
    sigemptyset(&fatal.sa_mask);
    for (int i = 0; i < kFatalCount; ++i) {
        sigaction(kFatalSignals[i], nullptr, &previousFatal[i]);
        if (previousFatal[i].sa_handler == SIG_IGN) continue;
        sigaction(kFatalSignals[i], &fatal, nullptr);
    }
    struct sigaction other {};
    sigemptyset(&other.sa_mask);
    other.sa_handler = onStopSignal;
    sigaction(SIGTSTP, nullptr, &previousStop);
    if (previousStop.sa_handler != SIG_IGN) sigaction(SIGTSTP, &other, nullptr);
    other.sa_handler = onResize;
    sigaction(SIGWINCH, &other, &previousResize);
}

void removeHandlers() {
    for (int i = 0; i < kFatalCount; ++i) sigaction(kFatalSignals[i], &previousFatal[i], nullptr);
    sigaction(SIGTSTP, &previousStop, nullptr);
    sigaction(SIGWINCH, &previousResize, nullptr);
}

}  // namespace

bool platTermIsTerminal(int fd) { return isatty(fd) == 1; }

int platTermEnter(const char *enter, const char *leave) {
    if (entered) return 0;
    if (!isatty(STDIN_FILENO) || tcgetattr(STDIN_FILENO, &savedMode) != 0) return -1;
    rawMode = savedMode;
    rawMode.c_iflag &= ~tcflag_t(BRKINT | ICRNL | INPCK | ISTRIP | IXON);
    rawMode.c_lflag &= ~tcflag_t(ECHO | ICANON | IEXTEN);
    rawMode.c_cc[VMIN] = 1;
    rawMode.c_cc[VTIME] = 0;
    copySequence(enter, enterSeq, &enterLen);
    copySequence(leave, leaveSeq, &leaveLen);
    if (!exitHandlerSet) {
        std::atexit(restoreMode);
        exitHandlerSet = true;
    }
    installHandlers();
    enterMode();
    if (!entered) {
        removeHandlers();
        return -1;
    }
    redrawPending = 0;
    return 0;
}

void platTermLeave() {
    if (!entered) return;
    restoreMode();
    removeHandlers();
}

void platTermSize(int *columns, int *rows) {
    struct winsize ws {};
    if ((ioctl(STDOUT_FILENO, TIOCGWINSZ, &ws) == 0 || ioctl(STDIN_FILENO, TIOCGWINSZ, &ws) == 0) &&
        ws.ws_col > 0 && ws.ws_row > 0) {
        *columns = ws.ws_col;
        *rows = ws.ws_row;
        return;
    }
    *columns = 80;
    *rows = 24;
}

int platTermRead(int timeoutMs) {
    struct pollfd p {STDIN_FILENO, POLLIN, 0};
    int ready = poll(&p, 1, timeoutMs);
    if (ready == 0) return kTermTimeout;
    if (ready < 0) return errno == EINTR ? kTermInterrupted : kTermClosed;
    unsigned char byte;
    ssize_t n = read(STDIN_FILENO, &byte, 1);
    if (n == 1) return byte;
    if (n < 0 && errno == EINTR) return kTermInterrupted;
    return kTermClosed;
}

bool platTermWrite(const char *bytes, uint32_t count) { return writeAll(bytes, count); }

bool platTermRedrawPending() {
    if (!redrawPending) return false;
    redrawPending = 0;
    return true;
}
