// Calls tovrel.dll's Repair the way a setup program does, for the main job
// and for end-to-end runs:  repair_cli INF MANUFACTURER MODEL PRINTER
#include <windows.h>

#include <cstdio>

typedef void(WINAPI *RepairProc)(const char *, const char *, const char *, const char *, int *, const char *);

int main(int argc, char **argv)
{
    if (argc < 5) {
        std::fprintf(stderr, "usage: repair_cli INF MANUFACTURER MODEL PRINTER [DEVICEKEY]\n");
        return 2;
    }
    HMODULE dll = LoadLibraryA("tovrel.dll");
    if (!dll) {
        std::fprintf(stderr, "repair_cli: tovrel.dll not loaded (error %lu)\n", GetLastError());
        return 1;
    }
    RepairProc repair = reinterpret_cast<RepairProc>(reinterpret_cast<void *>(GetProcAddress(dll, "Repair")));
    if (!repair) {
        std::fprintf(stderr, "repair_cli: no Repair export\n");
        return 1;
    }
    int reboot = -1;
    repair(argv[1], argv[2], argv[3], argv[4], &reboot, argc > 5 ? argv[5] : "");
    if (reboot < 0)
        std::printf("Repair stopped before its stages ran (the reboot flag was not written)\n");
    else
        std::printf("Repair ran through to its end; reboot required: %s\n", reboot ? "yes" : "no");
    FreeLibrary(dll);
    return 0;
}
