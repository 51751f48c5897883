// Owner of an item id list that the shell handed out: it goes back to the
// allocator that it came from when the owner goes.
#ifndef TOVREL_SUPPORT_SHELL_H
#define TOVREL_SUPPORT_SHELL_H

#include <windows.h>
#include <shlobj.h>

class CShellItemList {
public:
    // The allocator is not owned: its owner is declared first, so that it
    // outlives this list.
    explicit CShellItemList(IMalloc *allocator) : Allocator(allocator), Items(NULL) {}
    ~CShellItemList() { Reset(); }

    LPITEMIDLIST Get() const { return Items; }
    bool IsValid() const { return Items != NULL; }
    void Reset()
    {
        if (Items)
            Allocator->Free(Items);
        Items = NULL;
    }
    // For the calls that fill an item id list through a pointer.
    LPITEMIDLIST *Put()
    {
        Reset();
        return &Items;
    }

private:
    CShellItemList(const CShellItemList &);
    CShellItemList &operator=(const CShellItemList &);
    IMalloc *Allocator;
    LPITEMIDLIST Items;
};

#endif
