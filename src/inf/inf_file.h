// The INF reader's section store. The grammar lives in Parse, which works on
// a buffer and needs no platform; Load wraps the file I/O around it.
#ifndef TOVREL_INF_INF_FILE_H
#define TOVREL_INF_INF_FILE_H

#include <list>
#include <map>

#include "inf/bounded_string.h"

struct CInfKey {
    CBoundedString Name;
    CBoundedString Value;
};

typedef std::list<CInfKey> CInfKeyList;
typedef std::map<CBoundedString, CInfKeyList, CBoundedStringLess> CInfSectionMap;
typedef CInfSectionMap::iterator CInfSection;

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
    int FindKey(CInfSection entry, CInfKeyList::iterator &key, const char *name);
    int LookupKey(const char *section, const char *key, char *out, const char *defaultValue);

    // Resolves a whole-value %token% from the locale's Strings sections, of
    // this store or, given a path, of that file through the profile calls.
    int ExpandToken(const char *text, char *out, const char *profile);
    // The same from this store alone, for a given locale; needs no platform.
    int ExpandStoreToken(const char *text, char *out, unsigned long locale);
    // The normal read of a value: names and value resolved, and a key found
    // whether or not the file quotes it.
    int GetValue(const char *section, const char *key, char *out, const char *defaultValue);

    CInfSectionMap Sections;
    CBoundedString FilePath;

private:
    // Makes the section that a header line names the current one.
    void OpenSection(char *header, CInfSection &current);
    CInfFile(const CInfFile &);
    CInfFile &operator=(const CInfFile &);
};

#endif
