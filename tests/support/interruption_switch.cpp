// The interruption points of the test builds of tovrel.dll and
// tovrel-uninstall. TOVREL_INTERRUPT_AT names one as POINT:SUBJECT (SUBJECT
// the end of a file's path or an item's name, after a separator, or empty
// for any), and the process ends there at once, as a kill ends it: no
// handler, no destructor, no flush of its own. TOVREL_WORK_DIRECTORY names
// the install's work directory in %TEMP%.
#include <windows.h>

#include <string>

#include "files/interruption_points.h"

namespace {

const UINT InterruptedExitCode = 75;

std::string Variable(const char *name)
{
    char value[MAX_PATH] = "";
    DWORD length = GetEnvironmentVariableA(name, value, sizeof value);
    return length && length < sizeof value ? value : "";
}

bool Matches(const std::string &wanted, const char *point, const std::string &path)
{
    size_t colon = wanted.find(':');
    if (colon == std::string::npos || wanted.compare(0, colon, point) != 0)
        return false;
    std::string tail = wanted.substr(colon + 1);
    if (tail.size() > path.size())
        return false;
    size_t at = path.size() - tail.size();
    return lstrcmpiA(path.c_str() + at, tail.c_str()) == 0 && (tail.empty() || at == 0 || path[at - 1] == '\\');
}

}  // namespace

void InterruptionPoint(const char *point, const char *subject)
{
    if (Matches(Variable("TOVREL_INTERRUPT_AT"), point, subject ? subject : ""))
        TerminateProcess(GetCurrentProcess(), InterruptedExitCode);
}

bool ChosenWorkDirectoryName(std::string &name)
{
    name = Variable("TOVREL_WORK_DIRECTORY");
    return !name.empty();
}
