// tools/orth_main.cpp — the orth command: dispatches to its subcommands.
#include <cstdio>
#include <cstring>

#include "orth.h"

namespace {

void printUsage(FILE *out) {
    std::fputs(
        "Usage: orth [-d DIR] COMMAND [ARGS...]\n"
        "       orth --help | --version\n"
        "\n"
        "Spelling checker.\n", out);
}

}  // namespace

int main(int argc, char **argv) {
    if (argc >= 2 && std::strcmp(argv[1], "--version") == 0) {
        uint16_t major = 0, minor = 0;
        ORTH_Version(&major, &minor);
        std::printf("orth %u.%u\n", major, minor);
        return 0;
    }
    if (argc >= 2 && (std::strcmp(argv[1], "--help") == 0 || std::strcmp(argv[1], "-h") == 0)) {
        printUsage(stdout);
        return 0;
    }
    printUsage(stderr);
    return 2;
}
