// tests/support/test_util.cpp — shared test helpers.
#include "test_util.h"

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <sstream>

#include "orth.h"

#ifdef _WIN32
#include <windows.h>
#endif

namespace fs = std::filesystem;

#ifdef _WIN32
// Windows has no mkdtemp: fill in the Xs from a counter and the clock until
// a folder of that name can be created.
static char *mkdtemp(char *templ) {
    static unsigned counter = 0;
    size_t len = std::strlen(templ);
    for (int attempt = 0; attempt < 1000; ++attempt) {
        unsigned long n = static_cast<unsigned long>(std::time(nullptr)) * 7919u + ++counter;
        for (size_t i = len - 6; i < len; ++i, n /= 36) templ[i] = "0123456789abcdefghijklmnopqrstuvwxyz"[n % 36];
        std::error_code ec;
        if (fs::create_directory(templ, ec)) return templ;
    }
    return nullptr;
}
#endif

TempDir::TempDir() {
    std::string templ = (fs::temp_directory_path() / "orth-test-XXXXXX").string();
    std::vector<char> buf(templ.begin(), templ.end());
    buf.push_back('\0');
    char *made = mkdtemp(buf.data());
    path_ = made != nullptr ? made : templ;
}

TempDir::~TempDir() {
    std::error_code ec;
    fs::remove_all(path_, ec);
}

std::string TempDir::file(const std::string &name) const {
#ifdef _WIN32
    std::string native = name;
    for (char &c : native)
        if (c == '/') c = '\\';
    return path_ + "\\" + native;
#else
    return path_ + "/" + name;
#endif
}

static std::string readWhole(const std::string &path, std::ios::openmode mode) {
    std::ifstream in(path, mode);
    std::ostringstream out;
    out << in.rdbuf();
    return out.str();
}

std::string readFile(const std::string &path) { return readWhole(path, std::ios::in | std::ios::binary); }

std::string readTextFile(const std::string &path) { return readWhole(path, std::ios::in); }

bool setModifiedTime(const std::string &path, long long secondsFromNow) {
#ifdef _WIN32
    HANDLE h = CreateFileA(path.c_str(), FILE_WRITE_ATTRIBUTES, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
                           nullptr, OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS, nullptr);
    if (h == INVALID_HANDLE_VALUE) return false;
    FILETIME now;
    GetSystemTimeAsFileTime(&now);
    ULARGE_INTEGER t;
    t.LowPart = now.dwLowDateTime;
    t.HighPart = now.dwHighDateTime;
    t.QuadPart += secondsFromNow * 10000000LL;  // 100-nanosecond units
    FILETIME when{t.LowPart, t.HighPart};
    bool ok = SetFileTime(h, nullptr, nullptr, &when) != 0;
    CloseHandle(h);
    return ok;
#else
    std::error_code ec;
    fs::last_write_time(path, fs::file_time_type::clock::now() + std::chrono::seconds(secondsFromNow), ec);
    return !ec;
#endif
}

void writeFile(const std::string &path, const std::string &bytes) {
    std::ofstream out(path, std::ios::binary | std::ios::trunc);
    out << bytes;
}

bool fileExists(const std::string &path) {
    std::error_code ec;
    return fs::exists(path, ec);
}

LogCapture::LogCapture() : path_(dir_.file("engine.log")) { ORTH_SetDebugFile(path_.c_str()); }

LogCapture::~LogCapture() { ORTH_SetDebugFile(""); }

std::vector<std::string> LogCapture::lines() const {
    std::vector<std::string> out;
    std::istringstream in(readTextFile(path_));  // the log is written in text mode
    std::string line;
    while (std::getline(in, line)) out.push_back(line.size() >= 9 ? line.substr(9) : line);
    return out;
}

bool LogCapture::contains(const std::string &message) const {
    for (const std::string &line : lines()) {
        if (line == message) return true;
    }
    return false;
}

void LogCapture::clear() { writeFile(path_, ""); }

void closeAllSessions() {
    for (int16_t id = 0; id < 16; ++id) ORTH_CloseSession(id);
}
