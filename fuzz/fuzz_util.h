// fuzz/fuzz_util.h — shared parts of the fuzz targets: a scratch folder of
// the process for the files a target writes, a small dictionary folder made
// with the engine's own compressor, and a check that stops the run with a
// message when an invariant breaks (libFuzzer then saves the input).
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

// The process's scratch folder (made once, under $TMPDIR or /tmp). Making it
// points HOME and XDG_CONFIG_HOME into it, so no target touches the user's
// own files; every target calls it before anything else.
const std::string &scratchDir();
std::string scratchFile(const std::string &name);
void writeBytes(const std::string &path, const void *data, size_t size);
void writeBytes(const std::string &path, const std::string &bytes);
std::string readBytes(const std::string &path);  // "" when missing

// A folder holding MAIN.CLX (the words below, compressed with a few
// suffixes) and MAIN.TLX (the sentinel of a type 1 lexicon); made once.
const std::string &dictDir();
const std::vector<std::string> &dictWords();

// Probe words for lookups and suggestions: the dictionary's words, near
// misses, case variants, and words built from the input's own bytes.
std::vector<std::string> probeWords(const uint8_t *data, size_t size);

// Aborts with what broke when ok is false.
void require(bool ok, const char *what);

// Closes every session, so that no input leaves state for the next.
void closeEverySession();
