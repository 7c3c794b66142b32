// fuzz/fuzz_util.cpp — shared parts of the fuzz targets.
#include "fuzz/fuzz_util.h"

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <sstream>

#include "orth.h"

const std::string &scratchDir() {
    static const std::string dir = [] {
        const char *tmp = std::getenv("TMPDIR");
        std::string templ = std::string(tmp != nullptr && *tmp != '\0' ? tmp : "/tmp") + "/orth-fuzz-XXXXXX";
        std::vector<char> buf(templ.begin(), templ.end());
        buf.push_back('\0');
        require(mkdtemp(buf.data()) != nullptr, "scratch folder");
        // Nothing a target runs may reach the user's own files: the command's
        // personal word list, the settings store.
        std::string home = std::string(buf.data()) + "/home";
        require(std::system(("mkdir -p '" + home + "/.config'").c_str()) == 0, "scratch home");
        setenv("HOME", home.c_str(), 1);
        setenv("XDG_CONFIG_HOME", (home + "/.config").c_str(), 1);
        return std::string(buf.data());
    }();
    return dir;
}

std::string scratchFile(const std::string &name) { return scratchDir() + "/" + name; }

void writeBytes(const std::string &path, const void *data, size_t size) {
    std::ofstream out(path, std::ios::binary | std::ios::trunc);
    out.write(static_cast<const char *>(data), static_cast<std::streamsize>(size));
    require(out.good(), "writing a scratch file");
}

void writeBytes(const std::string &path, const std::string &bytes) { writeBytes(path, bytes.data(), bytes.size()); }

std::string readBytes(const std::string &path) {
    std::ifstream in(path, std::ios::binary);
    std::ostringstream out;
    out << in.rdbuf();
    return out.str();
}

const std::vector<std::string> &dictWords() {
    static const std::vector<std::string> words = {
        "a", "an", "I", "abc", "able", "about", "cat", "colour", "doesn't", "end", "ending", "ends",
        "grey", "hall", "hello", "help", "helped", "helping", "Paris", "the", "this", "walking", "world"};
    return words;
}

const std::string &dictDir() {
    static const std::string dir = [] {
        std::string d = scratchDir() + "/dict";
        require(std::system(("mkdir -p '" + d + "'").c_str()) == 0, "dictionary folder");
        // The compressor wants each file in byte order.
        writeBytes(d + "/words.txt", std::string("I\r\nParis\r\na\r\nan\r\nabc\r\nable\r\nabout\r\ncat\r\ncolour\r\n"
                                                 "doesn't\r\nend\r\nending\r\nends\r\ngrey\r\nhall\r\nhello\r\nhelp\r\n"
                                                 "helped\r\nhelping\r\nthe\r\nthis\r\nwalking\r\nworld\r\n"));
        writeBytes(d + "/suffixes.txt", std::string("ing\r\ned\r\ns\r\n"));
        int16_t session = ORTH_OpenSession();
        uint32_t line = 0;
        int16_t rc = ORTH_CompressLexInit(session, (d + "/MAIN.CLX").c_str(), (d + "/suffixes.txt").c_str(), 1033,
                                          0, &line);
        if (rc == 0) rc = ORTH_CompressLexFile(session, (d + "/words.txt").c_str(), &line);
        if (rc == 0) rc = ORTH_CompressLexEnd(session);
        ORTH_CloseSession(session);
        require(rc == 0, "compressing the dictionary");
        writeBytes(d + "/MAIN.TLX", std::string("#LID 1033 1 0\r\n"));
        return d;
    }();
    return dir;
}

std::vector<std::string> probeWords(const uint8_t *data, size_t size) {
    std::vector<std::string> out = dictWords();
    for (const char *w : {"ABOUT", "Hello", "hElLo", "helo", "wrold", "catt", "colours", "ab", "zzz", "", "it's",
                          "well-known"})
        out.push_back(w);
    out.push_back(std::string(63, 'a'));
    out.push_back(std::string(64, 'b'));
    // Runs of the input's printable bytes: words the fuzzer can steer.
    std::string run;
    for (size_t i = 0; i <= size && out.size() < 48; ++i) {
        if (i < size && data[i] >= 0x20 && data[i] != 0x7F) {
            if (run.size() < 80) run += static_cast<char>(data[i]);
        } else if (run.size() >= 2) {
            out.push_back(run);
            run.clear();
        } else {
            run.clear();
        }
    }
    return out;
}

void require(bool ok, const char *what) {
    if (ok) return;
    std::fprintf(stderr, "fuzz check failed: %s\n", what);
    std::abort();
}

void closeEverySession() {
    for (int16_t id = 0; id < 16; ++id) ORTH_CloseSession(id);
}
