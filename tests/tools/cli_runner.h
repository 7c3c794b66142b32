// tests/tools/cli_runner.h — runs the built orth program from a test: its
// arguments, standard input, exit status, standard output and error.
#pragma once

#include <cstdio>
#include <string>
#include <sys/wait.h>
#include <vector>

#include "support/test_util.h"

struct Outcome {
    int status;
    std::string out, err;
};

// The argument quoted for the shell.
inline std::string quote(const std::string &s) {
    std::string q = "'";
    for (char c : s) q += c == '\'' ? std::string("'\\''") : std::string(1, c);
    return q + "'";
}

// Runs the built orth with args on input; scratch is a folder for the input
// and error files. env holds NAME=VALUE settings for the run.
inline Outcome runOrth(const std::vector<std::string> &args, const std::string &input, const std::string &scratch,
                       const std::vector<std::string> &env = {}) {
    writeFile(scratch + "/stdin", input);
    std::string cmd;
    for (const std::string &e : env) cmd += e.substr(0, e.find('=') + 1) + quote(e.substr(e.find('=') + 1)) + " ";
    cmd += quote(std::string(ORTH_BINARY_DIR) + "/orth");
    for (const std::string &a : args) cmd += " " + quote(a);
    cmd += " <" + quote(scratch + "/stdin") + " 2>" + quote(scratch + "/stderr");
    Outcome r{-1, "", ""};
    FILE *p = popen(cmd.c_str(), "r");
    if (p == nullptr) return r;
    char buf[4096];
    size_t n;
    while ((n = fread(buf, 1, sizeof buf, p)) > 0) r.out.append(buf, n);
    int st = pclose(p);
    r.status = WIFEXITED(st) ? WEXITSTATUS(st) : -1;
    r.err = readFile(scratch + "/stderr");
    return r;
}
