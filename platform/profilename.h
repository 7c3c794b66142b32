// platform/profilename.h — for the OS layers only: the profile writes that
// every platform refuses, because a later read would not find what was
// written (a key or section split over two lines, a key that reads as a
// header or a comment, a name that loses its blanks).
#pragma once

// Whether section, key and value can be written so that a read finds them
// again unchanged: none is null; no line end anywhere; a section and a key
// are non-empty, without blanks at either end; no ']' in a section; no '='
// in a key, and no key starting with '[', ';' or '#'.
bool profileWriteFits(const char *section, const char *key, const char *value);
