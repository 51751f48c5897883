// Language-dependent reads: a %token% is looked up in the Strings sections of
// the thread's locale, most specific first.
#ifndef TOVREL_INF_STRINGS_H
#define TOVREL_INF_STRINGS_H

#include "inf/bounded_string.h"

enum { StringsSectionCount = 3 };

// Fills names with "Strings.<locale>", "Strings.<primary language>" and
// "Strings", the order in which a token is looked up. The numbers come out as
// wsprintfA's "%04x" writes them: lower-case, at least four digits.
void FormStringsSections(unsigned long locale, CBoundedString (&names)[StringsSectionCount]);

#endif
