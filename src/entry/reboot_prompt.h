// The restart question that a deferred file replacement leads to.
#ifndef TOVREL_ENTRY_REBOOT_PROMPT_H
#define TOVREL_ENTRY_REBOOT_PROMPT_H

#include <windows.h>

#include <string>

#include "inf/bounded_string.h"

enum {
    IdsRebootQuestion = 100,
    IdsRebootCaption = 101,
    IdsRebootFailed = 102,
};

// Texts of the library's string table. A pointer from Load stays good for
// the next three loads: the texts live in a ring of four.
class CStringTable {
public:
    enum { BufferSize = 512, RingSize = 4 };

    explicit CStringTable(HINSTANCE module);
    virtual ~CStringTable();

    const char *Load(int id);

    HINSTANCE Module;
    char Buffer[BufferSize];
    std::string Ring[RingSize];
    int RingIndex;

private:
    CStringTable(const CStringTable &);
    CStringTable &operator=(const CStringTable &);
};

// Asks with a Yes/No box and restarts on Yes; on a failed restart shows why.
void ShowRebootPrompt(HWND window, const char *caption, const char *text);

#endif
