// JSON string escaping of UTF-8 text. No <windows.h> here.
#ifndef TOVREL_RECORD_JSON_TEXT_H
#define TOVREL_RECORD_JSON_TEXT_H

#include <string>

// The text between double quotes: quote, backslash and control characters
// escaped; bytes of 0x80 and above, already UTF-8, pass unchanged.
std::string JsonEscape(const std::string &utf8);

#endif
