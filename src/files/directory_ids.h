// The INF directory ids of an opened INF and their paths. Resolving an id
// can cost milliseconds (a shell folder, the colour library), so an open
// resolves at once only the ids that the INF can name, and leaves the
// others of the table pending: each is resolved on its first lookup, so
// that no lookup can tell the two ways apart.
#ifndef TOVREL_FILES_DIRECTORY_IDS_H
#define TOVREL_FILES_DIRECTORY_IDS_H

#include <map>
#include <set>

#include "inf/bounded_string.h"
#include "inf/inf_file.h"

class CDirectoryIdMap : public std::map<int, CBoundedString> {
public:
    typedef std::map<int, CBoundedString> Base;

    CBoundedString &operator[](int id)
    {
        ResolvePending(id);
        return Base::operator[](id);
    }
    iterator find(int id)
    {
        ResolvePending(id);
        return Base::find(id);
    }
    size_type size() const { return Base::size() + Pending.size(); }
    void clear()
    {
        Base::clear();
        Pending.clear();
    }
    // Every id of the table: those that the store can name now, the others
    // when they are first looked up.
    void Resolve(CInfFile &store);
    void ResolveAll();

    // Ids of the table not resolved yet.
    std::set<int> Pending;

private:
    void ResolvePending(int id);
    void ResolveNow(int id);
};

// Whether an INF can name the id anywhere: an id is read with atoi from a
// piece of a name or value, so it is a run of digits there, whole or, where
// a text was cut to its bounded length, its head.
std::set<int> NameableDirectoryIds(CInfFile &store);

#endif
