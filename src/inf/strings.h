// Language-dependent reads: a %token% is looked up in the Strings sections of
// the thread's locale, most specific first. What needs no platform call lives
// in tokens.cpp; the thread locale and the profile-file read in strings.cpp.
#ifndef TOVREL_INF_STRINGS_H
#define TOVREL_INF_STRINGS_H

#include "inf/bounded_string.h"

enum { StringsSectionCount = 3 };

// Fills names with "Strings.<locale>", "Strings.<primary language>" and
// "Strings", the order in which a token is looked up. The numbers come out as
// wsprintfA's "%04x" writes them: lower-case, at least four digits.
void FormStringsSections(unsigned long locale, CBoundedString (&names)[StringsSectionCount]);

// A token is a whole value that begins and ends with '%'.
bool IsToken(const char *text);

// Reads token from one Strings section into out (260 bytes); original is the
// text as the caller gave it. Non-zero when that section had it.
typedef int (*StringsReader)(void *source, const char *section, const char *token, char *out,
                             const char *original);

// Resolves a whole-value %token% through read, section by section for
// locale; out gets the text without its outer quotes, or text unchanged when
// no section had it. Gives what the successful read gave, else 0.
int ResolveToken(const char *text, char *out, unsigned long locale, StringsReader read, void *source);

#endif
