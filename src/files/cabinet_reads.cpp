#include "files/cabinet_reads.h"

thread_local CGuardedReads *GuardedReads;

namespace {

// The guard's reads go through the decoder's own handle, which Allow puts
// back where the decoder left it.
class CHandleBytes : public CCabinetBytes {
public:
    explicit CHandleBytes(HANDLE file) : File(file) {}

    bool Read(uint32_t offset, uint8_t *out, uint32_t size) override
    {
        DWORD read = 0;
        return MoveTo(File, offset) && ReadFile(File, out, size, &read, NULL) && read == size;
    }

    static bool MoveTo(HANDLE file, DWORD offset)
    {
        return SetFilePointer(file, static_cast<LONG>(offset), NULL, FILE_BEGIN) != INVALID_SET_FILE_POINTER ||
               GetLastError() == NO_ERROR;
    }

private:
    HANDLE File;
};

}  // namespace

struct CGuardedReads::CGuarded {
    CGuarded(HANDLE file, DWORD size) : Bytes(file), Guard(Bytes, size) {}

    CHandleBytes Bytes;
    CCabinetGuard Guard;
};

CGuardedReads::CGuardedReads() : Split{nullptr, CompressionNone, {}} {}

CGuardedReads::~CGuardedReads() {}

bool CGuardedReads::Add(HANDLE file)
{
    DWORD high = 0;
    DWORD size = GetFileSize(file, &high);
    if (size == INVALID_FILE_SIZE && GetLastError() != NO_ERROR)
        return false;
    // No cabinet can say of itself that it is larger.
    if (high)
        size = MAXDWORD;
    std::unique_ptr<CGuarded> cabinet(new CGuarded(file, size));
    if (!CHandleBytes::MoveTo(file, 0))
        return false;
    Cabinets[file] = std::move(cabinet);
    return true;
}

DWORD CGuardedReads::Allow(HANDLE file, DWORD count)
{
    auto found = Cabinets.find(file);
    if (found == Cabinets.end())
        return count;
    DWORD position = SetFilePointer(file, 0, NULL, FILE_CURRENT);
    if (position == INVALID_SET_FILE_POINTER)
        return 0;
    DWORD allowed = found->second->Guard.Allow(position, count, Split);
    return CHandleBytes::MoveTo(file, position) ? allowed : 0;
}

// A split block's first part goes with the member it was read from: the
// decoder joins it to the next member only while both are open.
void CGuardedReads::Remove(HANDLE file)
{
    auto found = Cabinets.find(file);
    if (found == Cabinets.end())
        return;
    if (Split.Owner == &found->second->Guard)
        Split.Owner = nullptr;
    Cabinets.erase(found);
}
