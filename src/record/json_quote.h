// Text of the machine's ANSI code page as a JSON string, quotes and all:
// both programs' JSON documents are UTF-8.
#ifndef TOVREL_RECORD_JSON_QUOTE_H
#define TOVREL_RECORD_JSON_QUOTE_H

#include <string>

std::string JsonQuoted(const std::string &ansi);

#endif
