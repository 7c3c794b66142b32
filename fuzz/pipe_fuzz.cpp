// fuzz/pipe_fuzz.cpp — the orth command's pipe mode (orth -a, as editors run
// it) with any bytes as its input: commands, words, TeX and plain lines; and
// the same bytes as the file that orth -l lists. The first byte picks TeX
// mode. The run must end with a known exit status.
#include <cstdio>
#include <iostream>
#include <sstream>
#include <string>
#include <vector>

#include "fuzz/fuzz_util.h"
#include "tools/cli.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
    scratchDir();  // HOME and XDG_CONFIG_HOME point into it from here on
    static bool quiet = std::freopen("/dev/null", "w", stdout) != nullptr;
    (void)quiet;
    static const std::string input = scratchFile("pipe.txt");
    std::string text(reinterpret_cast<const char *>(data), size);
    writeBytes(input, text);
    GlobalOptions opts;
    opts.dictDir = dictDir();
    opts.personalList = scratchFile("personal.tlx");
    std::remove(opts.personalList.c_str());  // each input starts without one
    bool tex = size > 0 && (data[0] & 1) != 0;

    std::istringstream in(text);
    std::streambuf *saved = std::cin.rdbuf(in.rdbuf());
    std::vector<std::string> pipeArgs = {"-a"};
    if (tex) pipeArgs.push_back("-t");
    int rc = runIspell(opts, pipeArgs);
    std::cin.rdbuf(saved);
    std::cin.clear();
    require(rc == kExitOk, "the pipe ends with status 0");

    std::vector<std::string> listArgs = {"-l", input};
    if (tex) listArgs.push_back("-t");
    rc = runIspell(opts, listArgs);
    require(rc == kExitOk || rc == kExitError, "the list ends with a known status");
    closeEverySession();
    return 0;
}
