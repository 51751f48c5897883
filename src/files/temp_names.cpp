#include "files/temp_names.h"

#include <windows.h>

#include <cctype>
#include <cstdio>
#include <cstring>

const char TempNamePrefix[] = "~tvr";
const char StagedFileSuffix[] = ".tmp";

namespace {

const size_t RandomDigits = 16;

typedef BOOLEAN(WINAPI *GenRandomProc)(void *, ULONG);

// The finaliser of splitmix64: every input bit reaches every output bit.
unsigned long long Mix(unsigned long long x)
{
    x = (x ^ (x >> 30)) * 0xbf58476d1ce4e5b9ULL;
    x = (x ^ (x >> 27)) * 0x94d049bb133111ebULL;
    return x ^ (x >> 31);
}

unsigned long long ClockMix()
{
    static unsigned long long counter;
    LARGE_INTEGER ticks = {};
    QueryPerformanceCounter(&ticks);
    FILETIME now;
    GetSystemTimeAsFileTime(&now);
    unsigned long long x = Mix(static_cast<unsigned long long>(ticks.QuadPart) ^ ++counter);
    x = Mix(x ^ ((static_cast<unsigned long long>(now.dwHighDateTime) << 32) | now.dwLowDateTime));
    return Mix(x ^ ((static_cast<unsigned long long>(GetCurrentProcessId()) << 32) | GetCurrentThreadId()));
}

}  // namespace

unsigned long long RandomPart()
{
    static GenRandomProc generate = reinterpret_cast<GenRandomProc>(
        reinterpret_cast<void *>(GetProcAddress(GetModuleHandleA("advapi32"), "SystemFunction036")));
    unsigned long long value = 0;
    if (generate && generate(&value, sizeof value))
        return value;
    return ClockMix();
}

std::string TempName(const std::string &directory, const char *suffix)
{
    unsigned long long value = RandomPart();
    char digits[RandomDigits + 1];
    std::snprintf(digits, sizeof digits, "%08lx%08lx", static_cast<unsigned long>(value >> 32),
                  static_cast<unsigned long>(value & 0xffffffffUL));
    return directory + TempNamePrefix + digits + suffix;
}

bool IsTempName(const char *name, const char *suffix)
{
    size_t prefix = sizeof TempNamePrefix - 1;
    if (std::strlen(name) != prefix + RandomDigits + std::strlen(suffix) ||
        _strnicmp(name, TempNamePrefix, prefix) != 0 || _stricmp(name + prefix + RandomDigits, suffix) != 0)
        return false;
    for (size_t i = prefix; i < prefix + RandomDigits; ++i)
        if (!std::isxdigit(static_cast<unsigned char>(name[i])))
            return false;
    return true;
}
