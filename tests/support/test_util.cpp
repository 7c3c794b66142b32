// tests/support/test_util.cpp — shared test helpers.
#include "test_util.h"

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>

#include "orth.h"

namespace fs = std::filesystem;

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

std::string readFile(const std::string &path) {
    std::ifstream in(path, std::ios::binary);
    std::ostringstream out;
    out << in.rdbuf();
    return out.str();
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
    std::istringstream in(readFile(path_));
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
