#include "files/destination_dirs.h"

const char *const DestinationDirsSection = "DestinationDirs";
const char *const DestinationDirsCabSection = "DestinationDirs.CAB";

namespace {

bool EntryLess(const CBoundedString &left, const CBoundedString &right)
{
    return left.Compare(left.Text, right.Text) < 0;
}

bool EntryEqual(const CBoundedString &left, const CBoundedString &right)
{
    return left.Compare(left.Text, right.Text) == 0;
}

// The list recorded for a name: the whole name first, then the part before
// its first dot. Null when neither is there or the list is empty.
const CDestinationList *Lookup(const CDestinationDirMap &map, CBoundedString name)
{
    CDestinationDirMap::const_iterator found = map.find(name);
    if (found == map.end()) {
        NextToken(name.Text, '.');
        found = map.find(name);
    }
    if (found == map.end() || found->second.empty())
        return nullptr;
    return &found->second;
}

}  // namespace

int CPrinterInf::ReadDestinationDirs()
{
    DestinationDirs.clear();
    const char *const sections[] = {DestinationDirsSection, DestinationDirsCabSection};
    for (const char *sectionName : sections) {
        CInfSection section;
        if (!FindSection(sectionName, section))
            continue;
        for (const CInfKey &line : section->second) {
            if (line.Cut)
                continue;
            CBoundedString value(line.Value);
            char *element = value.Text;
            while (element && *element) {
                char *rest = NextToken(element, ':');
                StripChar(element, ' ');
                DestinationDirs[line.Name].push_back(CBoundedString(element));
                element = rest;
            }
        }
    }
    // Destinations are served in text order, so "11" comes before "2".
    for (auto &entry : DestinationDirs) {
        entry.second.sort(EntryLess);
        entry.second.unique(EntryEqual);
    }
    return DestinationDirs.empty() ? 0 : 1;
}

int CPrinterInf::FindDestinationEntries(CBoundedString name, CDestinationList *out)
{
    const CDestinationList *entries = Lookup(DestinationDirs, name);
    if (!entries)
        return 0;
    out->insert(out->end(), entries->begin(), entries->end());
    return 1;
}

int CPrinterInf::FindDestinations(CBoundedString name, CDestinationList *out)
{
    const CDestinationList *entries = Lookup(DestinationDirs, name);
    if (!entries)
        return 0;
    for (const CBoundedString &entry : *entries) {
        char directory[CBoundedString::Capacity];
        if (FindDirectoryIdText(entry, directory))
            out->push_back(CBoundedString(directory));
    }
    return 1;
}
