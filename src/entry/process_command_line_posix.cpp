// The native build of the text core: the command line of a Linux process is
// its arguments joined by blanks.
#include <cstdio>

#include "entry/command_line.h"

const char *ProcessCommandLine()
{
    static char text[4096];
    text[0] = 0;
    std::FILE *file = std::fopen("/proc/self/cmdline", "rb");
    if (!file)
        return text;
    size_t n = std::fread(text, 1, sizeof text - 1, file);
    std::fclose(file);
    while (n && text[n - 1] == 0)
        --n;
    text[n] = 0;
    for (size_t i = 0; i < n; ++i)
        if (text[i] == 0)
            text[i] = ' ';
    return text;
}
