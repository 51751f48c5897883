// Real cabinet sets for the benchmarks, made through the system's FCI (bound
// at run time, so a program that uses this still starts when cabinet.dll is
// disabled).
#ifndef TOVREL_BENCH_CABINET_SET_H
#define TOVREL_BENCH_CABINET_SET_H

#include <windows.h>

#include <string>
#include <vector>

struct CCabinetEntry {
    std::string Source;  // the file to store
    std::string Stored;  // its name inside the cabinet
    // DOS date and time and attributes to store; a Date of 0 takes the
    // source's own time and attributes.
    USHORT Date;
    USHORT Time;
    USHORT Attributes;
};

struct CCabinetSetPlan {
    std::string Directory;  // where the members go, ending in a backslash
    std::string Prefix;     // member i is named Prefix + i + ".cab"
    bool DiskNames;         // members carry disk names "disk<i>"
    ULONG MemberSize;       // largest member; 0 for one member whatever the size
    USHORT Compression;     // 0 stored, 1 MSZIP
};

// Each file in a folder of its own: Wine's FCI spans sets correctly only so,
// and only when a file running over a member's end is over 32 KiB as stored
// (a smaller one makes the next FCIAddFile fail).
// Gives the full paths of the members in order, empty on failure.
std::vector<std::string> MakeCabinetSet(const CCabinetSetPlan &plan, const std::vector<CCabinetEntry> &entries);

#endif
