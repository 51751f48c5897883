// Finding a line by its name. INFs of thousands of models look up a
// %token% for every one of them, so a walk of [Strings] per lookup would
// make reading them quadratic: a section is sorted by name once instead,
// on its first lookup, so that an INF of many small sections that nobody
// asks about pays nothing for it.
#include <algorithm>

#include "inf/inf_file.h"

namespace {

// Up to this many lines a walk costs less than sorting.
const size_t WalkedSectionLines = 16;

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

int CInfFile::FindKey(CInfSection entry, CInfKeyList::iterator &key, const char *name)
{
    if (entry == Sections.end())
        return 0;
    if (entry->second.size() <= WalkedSectionLines)
        return FindKeyInList(entry, key, name);
    const CInfKeyIndex &index = IndexOf(entry);
    const char *probe = name ? name : "";
    CInfKeyIndex::const_iterator first = std::lower_bound(index.begin(), index.end(), probe, LineBeforeName);
    if (first == index.end() || CompareNoCase((*first)->Name.Text, probe))
        return 0;
    key = *first;
    return 1;
}

const CInfKeyIndex &CInfFile::IndexOf(CInfSection entry)
{
    std::pair<std::map<const CInfKeyList *, CInfKeyIndex>::iterator, bool> added =
        KeyIndex.emplace(&entry->second, CInfKeyIndex());
    CInfKeyIndex &index = added.first->second;
    if (added.second) {
        index.reserve(entry->second.size());
        for (CInfKeyList::iterator line = entry->second.begin(); line != entry->second.end(); ++line)
            index.push_back(line);
        std::stable_sort(index.begin(), index.end(), LineBefore);
    }
    return index;
}

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
