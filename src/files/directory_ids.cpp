#include "files/directory_ids.h"

#include "files/file_spec.h"

namespace {

// Above every INF id of the table: a longer run of digits names none.
const int LargestDirectoryId = 1000000;

bool IsDigit(char c)
{
    return c >= '0' && c <= '9';
}

// Each head of each run of digits in the text that is an id of the table.
void AddNameableIds(const char *text, std::set<int> &ids)
{
    for (const char *p = text; *p;) {
        if (!IsDigit(*p)) {
            ++p;
            continue;
        }
        long value = 0;
        for (; IsDigit(*p); ++p) {
            if (value < LargestDirectoryId)
                value = value * 10 + (*p - '0');
            if (value < LargestDirectoryId && IdentifierOfInfId(static_cast<int>(value)))
                ids.insert(static_cast<int>(value));
        }
    }
}

}  // namespace

std::set<int> NameableDirectoryIds(CInfFile &store)
{
    std::set<int> ids;
    for (const auto &section : store.Sections)
        for (const CInfKey &line : section.second) {
            AddNameableIds(line.Name, ids);
            AddNameableIds(line.Value, ids);
        }
    return ids;
}

void CDirectoryIdMap::Resolve(CInfFile &store)
{
    clear();
    std::set<int> named = NameableDirectoryIds(store);
    for (int id : InfDirectoryIdList()) {
        if (named.count(id))
            ResolveNow(id);
        else
            Pending.insert(id);
    }
}

void CDirectoryIdMap::ResolveAll()
{
    clear();
    for (int id : InfDirectoryIdList())
        ResolveNow(id);
}

void CDirectoryIdMap::ResolvePending(int id)
{
    if (Pending.erase(id))
        ResolveNow(id);
}

void CDirectoryIdMap::ResolveNow(int id)
{
    Base::operator[](id) = CBoundedString(CFileSpec().ResolveFullPath(IdentifierOfInfId(id)));
}
