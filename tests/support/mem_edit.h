// tests/support/mem_edit.h — a host's edit control held in memory, for the
// client context and dialog tests: a MemEdit passed as the control's window
// answers the front end's edit-control calls, as a Windows edit control
// answers its messages (a replaced selection leaves the caret after the new
// text), and records every selection set as "start-end".
#pragma once

#include <algorithm>
#include <cstring>
#include <string>
#include <vector>

#include "host/frontend.h"

struct MemEdit {
    explicit MemEdit(std::string t = "", uint32_t s = 0, uint32_t e = 0) : text(std::move(t)), start(s), end(e) {}
    std::string text;
    uint32_t start, end;
    std::vector<std::string> selections;
};

inline MemEdit &memEdit(OrthWindow w) { return *static_cast<MemEdit *>(w); }

// Points the edit-control members of fe at MemEdit windows.
inline void useMemEdit(ClientFrontEnd *fe) {
    fe->editTextLength = [](OrthWindow w) { return static_cast<uint32_t>(memEdit(w).text.size()); };
    fe->editGetText = [](OrthWindow w, char *buffer, uint32_t size) {
        const std::string &t = memEdit(w).text;
        uint32_t n = std::min<uint32_t>(size - 1, static_cast<uint32_t>(t.size()));
        std::memcpy(buffer, t.data(), n);
        buffer[n] = '\0';
        return n;
    };
    fe->editGetSelection = [](OrthWindow w, uint32_t *start, uint32_t *end) {
        *start = memEdit(w).start;
        *end = memEdit(w).end;
    };
    fe->editSetSelection = [](OrthWindow w, uint32_t start, uint32_t end) {
        MemEdit &e = memEdit(w);
        e.start = start;
        e.end = end;
        e.selections.push_back(std::to_string(start) + "-" + std::to_string(end));
    };
    fe->editReplaceSelection = [](OrthWindow w, const char *text) {
        MemEdit &e = memEdit(w);
        e.text.replace(e.start, e.end - e.start, text);
        e.start = e.end = e.start + static_cast<uint32_t>(std::strlen(text));
    };
}
