// ui/rcgen/orth_rcgen.cpp — writes the Windows resource script of the
// dialogs. Usage: orth_rcgen [OUTPUT.rc]; without an argument the script goes
// to standard output. An output file is only rewritten when its contents
// change, so a build does not recompile resources needlessly.
//
// It depends on nothing but the templates table and the string table (and
// the language names it borrows), so a cross build can compile it for the
// build machine.
#include <cstdio>
#include <string>

#include "ui/rcscript.h"

namespace {

bool sameContents(const char *path, const std::string &text) {
    FILE *f = std::fopen(path, "rb");
    if (f == nullptr) return false;
    std::string old;
    char buf[4096];
    for (size_t n; (n = std::fread(buf, 1, sizeof buf, f)) > 0;) old.append(buf, n);
    std::fclose(f);
    return old == text;
}

}  // namespace

int main(int argc, char **argv) {
    if (argc > 2) {
        std::fprintf(stderr, "usage: orth_rcgen [OUTPUT.rc]\n");
        return 2;
    }
    std::string script;
    writeLibraryResourceScript(&script);
    if (argc < 2) return std::fwrite(script.data(), 1, script.size(), stdout) == script.size() ? 0 : 1;

    const char *path = argv[1];
    if (sameContents(path, script)) return 0;
    std::string temp = std::string(path) + ".tmp";
    FILE *f = std::fopen(temp.c_str(), "wb");
    if (f == nullptr) {
        std::perror(temp.c_str());
        return 1;
    }
    bool ok = std::fwrite(script.data(), 1, script.size(), f) == script.size();
    ok = std::fclose(f) == 0 && ok;
    // Where rename does not replace an existing file, remove it first.
    if (ok && std::rename(temp.c_str(), path) != 0) ok = std::remove(path) == 0 && std::rename(temp.c_str(), path) == 0;
    if (!ok) {
        std::perror(path);
        std::remove(temp.c_str());
        return 1;
    }
    return 0;
}
