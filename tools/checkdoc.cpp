// tools/checkdoc.cpp — a file's text cut into runs for the Check Spelling
// dialog, and written back.
//
// Design notes
// (1) A byte of enc is kept out of the runs when it stands for a character
//     the set lacks: a foreign letter or invalid byte (enc.foreign), or a
//     symbol or NUL that became a blank. Such a byte must survive whatever
//     the dialog does, and a dialog that deletes a doubled word also
//     deletes the blanks after it; so no run holds one.
// (2) CheckRun::from keeps, for each byte, where it came from; only bytes
//     the dialog wrote are converted back from character set 0, so a file
//     comes back byte for byte where the user changed nothing.
// (3) rewriteFile never leaves path without a whole text: the new text is
//     written and flushed to a temporary file in the same folder, which is
//     then renamed over path.
#include "tools/checkdoc.h"

#include <algorithm>
#include <cerrno>
#include <climits>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "check/chartab.h"

void CheckRun::setSelection(uint32_t start, uint32_t end) {
    uint32_t n = static_cast<uint32_t>(bytes.size());
    start = std::min(start, n);
    end = std::min(end, n);
    selStart = std::min(start, end);
    selEnd = std::max(start, end);
}

void CheckRun::replaceSelection(const char *text) {
    setSelection(selStart, selEnd);
    size_t n = text == nullptr ? 0 : std::strlen(text);
    bytes.replace(selStart, selEnd - selStart, text == nullptr ? "" : text, n);
    from.erase(from.begin() + selStart, from.begin() + selEnd);
    from.insert(from.begin() + selStart, n, kNewByte);
    selStart = selEnd = selStart + static_cast<uint32_t>(n);
}

namespace {

bool keptOut(const CheckDoc &doc, size_t i) {
    if (doc.enc.foreign[i]) return true;
    if (doc.enc.bytes[i] != ' ') return false;
    return doc.enc.origin[i + 1] - doc.enc.origin[i] != 1 || doc.source[doc.enc.origin[i]] != ' ';
}

std::string sourceSpan(const CheckDoc &doc, uint32_t from, uint32_t to) {
    return doc.source.substr(doc.enc.origin[from], doc.enc.origin[to] - doc.enc.origin[from]);
}

std::string errnoReason(const std::string &what) { return what + ": " + std::strerror(errno); }

// Replaces dest by text through a temporary file beside it.
bool replaceFile(const std::string &dest, const std::string &text, mode_t mode, std::string *error) {
    size_t slash = dest.rfind('/');
    std::string folder = slash == std::string::npos ? "." : dest.substr(0, slash == 0 ? 1 : slash);
    std::string name = slash == std::string::npos ? dest : dest.substr(slash + 1);
    std::string temp = folder + "/." + name + ".orth-XXXXXX";
    std::vector<char> tempName(temp.begin(), temp.end());
    tempName.push_back('\0');
    int fd = mkstemp(tempName.data());
    if (fd < 0) {
        *error = errnoReason("cannot create a temporary file in " + folder);
        return false;
    }
    bool ok = true;
    for (size_t done = 0; ok && done < text.size();) {
        ssize_t n = write(fd, text.data() + done, text.size() - done);
        if (n < 0 && errno == EINTR) continue;
        ok = n > 0;
        if (ok) done += static_cast<size_t>(n);
    }
    if (!ok) *error = errnoReason("cannot write " + dest);
    if (ok && (fchmod(fd, mode) != 0 || fsync(fd) != 0)) ok = false, *error = errnoReason("cannot write " + dest);
    if (close(fd) != 0 && ok) ok = false, *error = errnoReason("cannot write " + dest);
    if (ok && rename(tempName.data(), dest.c_str()) != 0) ok = false, *error = errnoReason("cannot replace " + dest);
    if (!ok) unlink(tempName.data());
    return ok;
}

}  // namespace

void checkDocOpen(CheckDoc *doc, const std::string &source) {
    doc->source = source;
    doc->enc = encodeUtf8(source);
    doc->parts.clear();
    uint32_t n = static_cast<uint32_t>(doc->enc.bytes.size());
    for (uint32_t i = 0; i < n;) {
        bool out = keptOut(*doc, i);
        uint32_t j = i + 1;
        while (j < n && keptOut(*doc, j) == out) ++j;
        CheckDoc::Part part{!out, {}, i, j};
        if (!out) {
            part.run.bytes = doc->enc.bytes.substr(i, j - i);
            for (uint32_t k = i; k < j; ++k) part.run.from.push_back(k);
        }
        doc->parts.push_back(std::move(part));
        i = j;
    }
}

bool checkRunHasWords(const CheckRun &run) {
    for (char c : run.bytes)
        if (classOf(0, static_cast<unsigned char>(c)) & (CC_LETTER | CC_DIGIT)) return true;
    return false;
}

std::string checkDocText(const CheckDoc &doc) {
    std::string out;
    out.reserve(doc.source.size());
    for (const CheckDoc::Part &part : doc.parts) {
        if (!part.isRun) {
            out += sourceSpan(doc, part.from, part.to);
            continue;
        }
        const CheckRun &run = part.run;
        for (size_t i = 0; i < run.bytes.size();) {
            size_t j = i + 1;
            if (run.from[i] == CheckRun::kNewByte) {
                while (j < run.bytes.size() && run.from[j] == CheckRun::kNewByte) ++j;
                out += decodeToUtf8(run.bytes.substr(i, j - i));
            } else {
                // A stretch of bytes the dialog left alone, still in their order.
                while (j < run.bytes.size() && run.from[j] == run.from[j - 1] + 1) ++j;
                out += sourceSpan(doc, run.from[i], run.from[j - 1] + 1);
            }
            i = j;
        }
    }
    return out;
}

bool rewriteFile(const std::string &path, const std::string &oldText, const std::string &text, bool backup,
                 std::string *error) {
    char real[PATH_MAX];
    std::string target = realpath(path.c_str(), real) != nullptr ? std::string(real) : path;
    struct stat st;
    mode_t mode = stat(target.c_str(), &st) == 0 ? (st.st_mode & 07777) : 0644;
    if (backup && !replaceFile(target + ".bak", oldText, mode, error)) return false;
    return replaceFile(target, text, mode, error);
}
