// Finding a line by its name. INFs of thousands of models look up a
// %token% for every one of them, so a walk of [Strings] per lookup would
// make reading them quadratic: a section is indexed by name once instead,
// on its first lookup, so that an INF of many small sections that nobody
// asks about pays nothing for it.
#include "inf/inf_file.h"

namespace {

// Up to this many lines a walk costs less than an index.
const size_t WalkedSectionLines = 16;

}  // namespace

int CInfFile::FindKey(CInfSection entry, CInfKeyList::iterator &key, const char *name)
{
    if (entry == Sections.end())
        return 0;
    if (entry->second.size() <= WalkedSectionLines)
        return FindKeyInList(entry, key, name);
    const CInfKeyIndex &index = IndexOf(entry);
    CInfKeyIndex::const_iterator found = index.find(name ? name : "");
    if (found == index.end())
        return 0;
    key = found->second;
    return 1;
}

// The names point into the lines themselves, which stay where they are.
const CInfKeyIndex &CInfFile::IndexOf(CInfSection entry)
{
    std::pair<std::unordered_map<const CInfKeyList *, CInfKeyIndex>::iterator, bool> added =
        KeyIndex.emplace(&entry->second, CInfKeyIndex());
    CInfKeyIndex &index = added.first->second;
    if (added.second) {
        index.reserve(entry->second.size());
        // emplace keeps the first line of a name: the file's order decides.
        for (CInfKeyList::iterator line = entry->second.begin(); line != entry->second.end(); ++line)
            index.emplace(line->Name.Text, line);
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
