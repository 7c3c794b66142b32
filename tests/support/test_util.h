// tests/support/test_util.h — helpers shared by the test programs:
// a temporary folder removed at the end of a test, whole-file reads and
// writes, and a diagnostic log captured into a file of the folder.
#pragma once

#include <string>
#include <vector>

// A fresh folder under the system's temporary folder; removed with its
// contents when the object goes.
class TempDir {
public:
    TempDir();
    ~TempDir();
    TempDir(const TempDir &) = delete;
    TempDir &operator=(const TempDir &) = delete;
    const std::string &path() const { return path_; }
    std::string file(const std::string &name) const { return path_ + "/" + name; }

private:
    std::string path_;
};

std::string readFile(const std::string &path);            // "" when missing
void writeFile(const std::string &path, const std::string &bytes);
bool fileExists(const std::string &path);

// Turns the engine log on into a file of its own; lines() returns the
// messages without their "hh:mm:ss " prefix. Logging goes off at the end.
class LogCapture {
public:
    LogCapture();
    ~LogCapture();
    std::vector<std::string> lines() const;
    bool contains(const std::string &message) const;  // an exact message line
    void clear();
    const std::string &path() const { return path_; }

private:
    TempDir dir_;
    std::string path_;
};

// Closes every session left open, so each test starts with an empty table.
void closeAllSessions();
