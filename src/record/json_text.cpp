#include "record/json_text.h"

#include <cstdio>

static const unsigned char FirstPrintable = 0x20;
static const unsigned char Delete = 0x7f;

static const char *ShortEscape(char c)
{
    switch (c) {
    case '"': return "\\\"";
    case '\\': return "\\\\";
    case '\b': return "\\b";
    case '\f': return "\\f";
    case '\n': return "\\n";
    case '\r': return "\\r";
    case '\t': return "\\t";
    }
    return nullptr;
}

std::string JsonEscape(const std::string &utf8)
{
    std::string out;
    out.reserve(utf8.size());
    for (char c : utf8) {
        unsigned char byte = static_cast<unsigned char>(c);
        if (const char *escape = ShortEscape(c)) {
            out += escape;
        } else if (byte < FirstPrintable || byte == Delete) {
            char code[8];
            std::snprintf(code, sizeof code, "\\u%04x", byte);
            out += code;
        } else {
            out += c;
        }
    }
    return out;
}
