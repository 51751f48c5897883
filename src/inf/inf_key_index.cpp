// Finding a line by its name. INFs of thousands of models look up a
// %token% for every one of them, so a walk of [Strings] per lookup would
// make reading them quadratic: each section is sorted by name once instead.
#include <algorithm>

#include "inf/inf_file.h"

namespace {

// Lines of one name keep their file order, since the index is sorted stably.
bool LineBefore(const CInfKeyList::iterator &left, const CInfKeyList::iterator &right)
{
    return CompareNoCase(left->Name.Text, right->Name.Text) < 0;
}

bool LineBeforeName(const CInfKeyList::iterator &line, const char *name)
{
    return CompareNoCase(line->Name.Text, name) < 0;
}

}  // namespace

void CInfFile::IndexKeys()
{
    for (CInfSection section = Sections.begin(); section != Sections.end(); ++section)
        IndexSection(section);
}

void CInfFile::IndexSection(CInfSection section)
{
    CInfKeyIndex &index = KeyIndex[&section->second];
    index.clear();
    index.reserve(section->second.size());
    for (CInfKeyList::iterator line = section->second.begin(); line != section->second.end(); ++line)
        index.push_back(line);
    std::stable_sort(index.begin(), index.end(), LineBefore);
}

int CInfFile::FindKey(CInfSection entry, CInfKeyList::iterator &key, const char *name)
{
    if (entry == Sections.end())
        return 0;
    std::map<const CInfKeyList *, CInfKeyIndex>::const_iterator index = KeyIndex.find(&entry->second);
    if (index == KeyIndex.end())
        return FindKeyInList(entry, key, name);
    const char *probe = name ? name : "";
    CInfKeyIndex::const_iterator first =
        std::lower_bound(index->second.begin(), index->second.end(), probe, LineBeforeName);
    if (first == index->second.end() || CompareNoCase((*first)->Name.Text, probe))
        return 0;
    key = *first;
    return 1;
}

// A section that no reader has indexed.
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
