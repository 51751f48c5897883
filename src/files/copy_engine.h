// The copy stage: the "CopyFiles" paths go on record, and the files of the
// model's cabinets reach every destination the INF gives for their cabinet.
#ifndef TOVREL_FILES_COPY_ENGINE_H
#define TOVREL_FILES_COPY_ENGINE_H

#include <list>

#include "inf/bounded_string.h"

typedef std::list<CBoundedString> CBoundedStringList;

// Sorts in ascending order ignoring case, keeping equal entries in their
// order, then drops each entry that equals the one before it.
void SortUnique(CBoundedStringList &list);

#endif
