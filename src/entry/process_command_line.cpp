#include <windows.h>

#include "entry/command_line.h"

const char *ProcessCommandLine()
{
    const char *text = GetCommandLineA();
    return text ? text : "";
}
