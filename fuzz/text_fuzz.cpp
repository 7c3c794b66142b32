// fuzz/text_fuzz.cpp — the orth command's text input: any bytes as the file
// that `orth list` checks line by line, and as the words `orth suggest`
// checks, over the small dictionary; plus the UTF-8 conversion both rest on,
// whose origin table must map every byte back into the source.
#include <cstdio>
#include <string>
#include <vector>

#include "fuzz/fuzz_util.h"
#include "tools/cli.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
    scratchDir();  // HOME and XDG_CONFIG_HOME point into it from here on
    static bool quiet = std::freopen("/dev/null", "w", stdout) != nullptr;
    (void)quiet;
    std::string text(reinterpret_cast<const char *>(data), size);
    Encoded enc = encodeUtf8(text);
    require(enc.origin.size() == enc.bytes.size() + 1 && enc.origin.back() == text.size(), "origin table");
    for (size_t i = 0; i + 1 < enc.origin.size(); ++i) require(enc.origin[i] <= enc.origin[i + 1], "origins ascend");
    decodeToUtf8(enc.bytes, size % 2 == 0);

    static const std::string input = scratchFile("input.txt");
    writeBytes(input, data, size);
    GlobalOptions opts;
    opts.dictDir = dictDir();
    opts.personalList = scratchFile("personal.tlx");
    std::remove(opts.personalList.c_str());  // each input starts without one
    std::vector<std::string> words;
    for (const std::string &line : splitLines(text)) {
        if (words.size() >= 4) break;
        if (!line.empty()) words.push_back(line.substr(0, 100));
    }
    int rc = runList(opts, {input});
    require(rc == kExitOk || rc == kExitFound, "list ends with a known status");
    if (!words.empty()) runSuggest(opts, words);
    closeEverySession();
    return 0;
}
