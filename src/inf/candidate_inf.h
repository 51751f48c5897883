// A candidate of the discovery: one INF's text, read the way the platform's
// profile calls read a file, and a store that takes in a section's lines
// the first time a question needs them.
#ifndef TOVREL_INF_CANDIDATE_INF_H
#define TOVREL_INF_CANDIDATE_INF_H

#include <unordered_map>
#include <vector>

#include "inf/inf_file.h"

class CCandidateInf;

// Where a read may end early: once the first section of that name is over,
// KeepReading looks at the candidate so far.
struct CProfileStop {
    const char *Section;
    bool (*KeepReading)(CCandidateInf &candidate);
};

class CCandidateInf {
public:
    // Takes over text, length characters (NULs among them) and one byte
    // more, and notes where the lines of each section lie, reading none of
    // them yet. Ends where stop says, if given.
    void Read(std::vector<char> &text, size_t length, const CProfileStop *stop);
    // A section by the name that its first header gives, case ignored; its
    // lines read on first use. Store.Sections.end() when there is
    // none. The lines before any header go by the empty name.
    CInfSection Section(const char *name);

    CInfFile Store;

private:
    // Where the lines of a section's first header lie, and the section once
    // they are read.
    struct CPlace {
        size_t Begin, End;  // offsets into Text
        bool Read;
        CInfSection Entry;
    };
    // By the names as the headers give them, cut off in Text itself.
    typedef std::unordered_map<const char *, CPlace, CNoCaseHash, CNoCaseEqual> CPlaces;
    void ReadLines(CInfKeyList &lines, const CPlace &place);

    std::vector<char> Text;
    CPlaces Places;
};

#endif
