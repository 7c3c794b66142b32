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
    // A path in the folder, joined with the platform's separator, which also
    // replaces every '/' in name on Windows: paths the engine builds itself
    // use that separator, so the two compare equal.
    std::string file(const std::string &name) const;

private:
    std::string path_;
};

std::string readFile(const std::string &path);            // "" when missing
std::string readTextFile(const std::string &path);        // in text mode: CR LF is LF on Windows
void writeFile(const std::string &path, const std::string &bytes);
bool fileExists(const std::string &path);
// Moves a file's or folder's modification time by the given seconds from
// now (Windows cannot set a folder's time through the C runtime).
bool setModifiedTime(const std::string &path, long long secondsFromNow);

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
