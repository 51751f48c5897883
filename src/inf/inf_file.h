// The INF reader's section store. The grammar lives in Parse, which works on
// a buffer and needs no platform; Load wraps the file I/O around it.
#ifndef TOVREL_INF_INF_FILE_H
#define TOVREL_INF_INF_FILE_H

#include <list>
#include <map>
#include <unordered_map>

#include "inf/bounded_string.h"

// Cut marks a line whose name or value did not fit its field: what the field
// holds is the head of some longer text, and nothing may be made of it.
struct CInfKey {
    CBoundedString Name;
    CBoundedString Value;
    bool Cut;
};

// What LookupKey found: a line whose text was cut counts as neither found
// nor missing, so that no default stands in for it either.
enum { KeyMissing = 0, KeyFound = 1, KeyCut = -1 };

// Copies text into a field, keeping the first 259 characters of a longer one;
// false when it did not fit.
bool StoreField(CBoundedString &field, const char *text);

// The line as the stages read one that has no "=": name and value joined
// into line. False when the line was cut or the two do not fit together.
bool JoinLine(const CInfKey &key, CBoundedString &line);

typedef std::list<CInfKey> CInfKeyList;
typedef std::map<CBoundedString, CInfKeyList, CBoundedStringLess> CInfSectionMap;
typedef CInfSectionMap::iterator CInfSection;

// The first line of each name of one section, by the name's text.
typedef std::unordered_map<const char *, CInfKeyList::iterator, CNoCaseHash, CNoCaseEqual> CInfKeyIndex;

class CInfFile {
public:
    CInfFile();
    virtual ~CInfFile();

    int Load(const char *path);
    // Cuts the NUL-terminated text up in place and stores what the grammar keeps.
    void Parse(char *text);
    void AddSection(const char *name);

    int FindSection(const char *name, CInfSection &entry);
    int GetKeyCount(const char *section);
    // The first line of the name in file order, cut or not. A section of
    // more than a few lines is indexed by name on its first lookup, so that
    // every later one takes constant time.
    int FindKey(CInfSection entry, CInfKeyList::iterator &key, const char *name);
    // KeyFound, KeyMissing or KeyCut; out holds the value only when found.
    int LookupKey(const char *section, const char *key, char *out, const char *defaultValue);

    // Resolves a whole-value %token% from the locale's Strings sections, of
    // this store or, given a path, of that file through the profile calls.
    // KeyCut when the token's text was cut.
    int ExpandToken(const char *text, char *out, const char *profile);
    // The same from this store alone, for a given locale; needs no platform.
    int ExpandStoreToken(const char *text, char *out, unsigned long locale);
    // The normal read of a value: names and value resolved, and a key found
    // whether or not the file quotes it. A value that was cut, or that names
    // a token whose text was cut, reads as missing: 0, out the default.
    int GetValue(const char *section, const char *key, char *out, const char *defaultValue);
    // The same for a given locale, from this store alone; needs no platform.
    int GetStoreValue(const char *section, const char *key, char *out, const char *defaultValue,
                      unsigned long locale);

    CInfSectionMap Sections;
    CBoundedString FilePath;

private:
    // Makes the section that a header line names the current one.
    void OpenSection(char *header, CInfSection &current);
    int FindKeyInList(CInfSection entry, CInfKeyList::iterator &key, const char *name);
    const CInfKeyIndex &IndexOf(CInfSection entry);

    // The sections indexed so far; lines are never added to them afterwards.
    std::unordered_map<const CInfKeyList *, CInfKeyIndex> KeyIndex;
    CInfFile(const CInfFile &);
    CInfFile &operator=(const CInfFile &);
};

#endif
