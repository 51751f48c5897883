// Finding a line by its name. INFs of thousands of models look up a
// %token% for every one of them, so a walk of [Strings] per lookup would
// make reading them quadratic: each line is found through an index sorted
// once per parse instead.
#include <algorithm>
#include <functional>

#include "inf/inf_file.h"

namespace {

struct CKeyProbe {
    const CInfKeyList *Section;
    const char *Name;
};

bool SectionBefore(const CInfKeyList *left, const CInfKeyList *right)
{
    return std::less<const CInfKeyList *>()(left, right);
}

// Section first, then name with case ignored. Lines of one section and name
// keep their file order, since the index is sorted stably.
bool KeyBefore(const CInfIndexedKey &left, const CInfIndexedKey &right)
{
    if (left.Section != right.Section)
        return SectionBefore(left.Section, right.Section);
    return CompareNoCase(left.Line->Name.Text, right.Line->Name.Text) < 0;
}

bool KeyBeforeProbe(const CInfIndexedKey &key, const CKeyProbe &probe)
{
    if (key.Section != probe.Section)
        return SectionBefore(key.Section, probe.Section);
    return CompareNoCase(key.Line->Name.Text, probe.Name) < 0;
}

}  // namespace

void CInfFile::IndexKeys()
{
    KeyIndex.clear();
    for (CInfSection section = Sections.begin(); section != Sections.end(); ++section)
        for (CInfKeyList::iterator line = section->second.begin(); line != section->second.end(); ++line)
            KeyIndex.push_back(CInfIndexedKey{&section->second, line});
    std::stable_sort(KeyIndex.begin(), KeyIndex.end(), KeyBefore);
    Indexed = true;
}

int CInfFile::FindKey(CInfSection entry, CInfKeyList::iterator &key, const char *name)
{
    if (entry == Sections.end())
        return 0;
    if (!Indexed)
        return FindKeyInList(entry, key, name);
    CKeyProbe probe = {&entry->second, name ? name : ""};
    std::vector<CInfIndexedKey>::const_iterator first =
        std::lower_bound(KeyIndex.begin(), KeyIndex.end(), probe, KeyBeforeProbe);
    if (first == KeyIndex.end() || first->Section != probe.Section || CompareNoCase(first->Line->Name.Text, probe.Name))
        return 0;
    key = first->Line;
    return 1;
}

// Before the index is built, as while a file is still being read.
int CInfFile::FindKeyInList(CInfSection entry, CInfKeyList::iterator &key, const char *name)
{
    for (CInfKeyList::iterator it = entry->second.begin(); it != entry->second.end(); ++it) {
        if (it->Name.Equals(name)) {
            key = it;
            return 1;
        }
    }
    return 0;
}
