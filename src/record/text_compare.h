// Comparisons of single-byte text without regard to ASCII case, as the
// registry and the file system compare names. No <windows.h> here.
#ifndef TOVREL_RECORD_TEXT_COMPARE_H
#define TOVREL_RECORD_TEXT_COMPARE_H

#include <string>

int CompareNoCase(const std::string &a, const std::string &b);
bool EqualNoCase(const std::string &a, const std::string &b);
// The text with its ASCII capitals made small, as a key that ignores case.
std::string LowerCase(std::string text);
// The part of a path behind its last backslash, or all of it.
std::string FileNameOf(const std::string &path);

#endif
