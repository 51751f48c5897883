#include "files/cabinet_layout.h"

#include <algorithm>
#include <cstring>

namespace {

const uint8_t Signature[] = {'M', 'S', 'C', 'F'};
const uint32_t HeaderSize = 36;
const uint32_t SizeField = 8, FoldersField = 26, FlagsField = 30;
const uint32_t FlagPrevious = 0x0001, FlagNext = 0x0002, FlagReserve = 0x0004;
const uint32_t ReserveFieldsSize = 4;
const uint32_t MaxHeaderReserve = 60000;
// A neighbour's cabinet or disk name, with its NUL.
const uint32_t MaxNameSize = 256;
const uint32_t FolderEntrySize = 8, BlockCountField = 4, CompressionField = 6;
const uint32_t BlockHeaderSize = 8, DataSizeField = 4, OutputField = 6;
const uint32_t CompressionTypeMask = 0x000F;

uint32_t Word(const uint8_t *p) { return p[0] | p[1] << 8; }
uint32_t Long(const uint8_t *p) { return Word(p) | Word(p + 2) << 16; }

struct CFolderEntry {
    uint32_t Start;
    uint32_t Blocks;
    int Compression;
    bool First;  // of the table: the folder that may go on from the previous member
    bool Last;   // of the table: the folder that may run on into the next member
};

bool WithinLimits(const CCabinetBlock &block)
{
    uint32_t maxData = block.Compression == CompressionNone ? MaxBlockOutput : MaxCompressedBlock;
    return block.Output <= MaxBlockOutput && block.DataSize <= maxData;
}

class CLayoutWalk {
public:
    CLayoutWalk(CCabinetBytes &bytes, uint32_t size) : Bytes(bytes), End(size)
    {
        Layout.Readable = 0;
        Layout.Whole = false;
    }
    CCabinetLayout Walk();

private:
    bool Fits(uint64_t offset, uint64_t size) const { return offset + size <= End; }
    bool ReadHeader(uint64_t &at);
    bool SkipName(uint64_t &at);
    bool ReadFolders(uint64_t at, std::vector<CFolderEntry> &folders);
    void WalkChains(const std::vector<CFolderEntry> &folders);
    bool WalkChain(const CFolderEntry &folder, uint64_t &end);
    void Fail(uint64_t at);

    CCabinetBytes &Bytes;
    uint32_t End;
    uint32_t Flags = 0, FolderCount = 0, FolderReserve = 0, BlockReserve = 0;
    CCabinetLayout Layout;
};

CCabinetLayout CLayoutWalk::Walk()
{
    uint64_t tables = 0;
    std::vector<CFolderEntry> folders;
    if (!ReadHeader(tables) || !ReadFolders(tables, folders))
        return Layout;
    // Chains are walked in file order, so that each byte is walked once
    // whatever the folders claim.
    std::stable_sort(folders.begin(), folders.end(),
                     [](const CFolderEntry &a, const CFolderEntry &b) { return a.Start < b.Start; });
    WalkChains(folders);
    return Layout;
}

bool CLayoutWalk::ReadHeader(uint64_t &at)
{
    uint8_t header[HeaderSize];
    if (!Fits(0, HeaderSize) || !Bytes.Read(0, header, HeaderSize) ||
        std::memcmp(header, Signature, sizeof Signature) != 0)
        return false;
    End = std::min(End, Long(header + SizeField));
    FolderCount = Word(header + FoldersField);
    Flags = Word(header + FlagsField);
    at = HeaderSize;
    if (Flags & FlagReserve) {
        uint8_t reserve[ReserveFieldsSize];
        if (!Fits(at, ReserveFieldsSize) || !Bytes.Read(HeaderSize, reserve, ReserveFieldsSize) ||
            Word(reserve) > MaxHeaderReserve)
            return false;
        FolderReserve = reserve[2];
        BlockReserve = reserve[3];
        at += ReserveFieldsSize + Word(reserve);
    }
    int names = ((Flags & FlagPrevious) ? 2 : 0) + ((Flags & FlagNext) ? 2 : 0);
    while (names--)
        if (!SkipName(at))
            return false;
    return true;
}

bool CLayoutWalk::SkipName(uint64_t &at)
{
    uint8_t name[MaxNameSize];
    uint32_t size = static_cast<uint32_t>(std::min<uint64_t>(MaxNameSize, at < End ? End - at : 0));
    if (!size || !Bytes.Read(static_cast<uint32_t>(at), name, size))
        return false;
    const uint8_t *nul = static_cast<const uint8_t *>(std::memchr(name, 0, size));
    if (!nul)
        return false;
    at += nul - name + 1;
    return true;
}

// Nothing can be walked past a folder entry that fails, so the readable part
// ends there.
bool CLayoutWalk::ReadFolders(uint64_t at, std::vector<CFolderEntry> &folders)
{
    for (uint32_t i = 0; i < FolderCount; ++i, at += FolderEntrySize + FolderReserve) {
        uint8_t entry[FolderEntrySize];
        bool read = Fits(at, FolderEntrySize) && Bytes.Read(static_cast<uint32_t>(at), entry, FolderEntrySize);
        int compression = read ? static_cast<int>(Word(entry + CompressionField) & CompressionTypeMask) : 0;
        if (!read || compression > CompressionLzx) {
            Fail(at);
            return false;
        }
        folders.push_back(
            CFolderEntry{Long(entry), Word(entry + BlockCountField), compression, i == 0, i + 1 == FolderCount});
    }
    return true;
}

// The chains lie end to end: one that starts inside another fails where it
// starts, a gap fails where it begins. After a failing block, a chain that
// starts before it fails first.
void CLayoutWalk::WalkChains(const std::vector<CFolderEntry> &folders)
{
    uint64_t frontier = folders.empty() ? End : folders.front().Start;
    for (size_t i = 0; i < folders.size(); ++i) {
        if (folders[i].Start != frontier)
            return Fail(std::min<uint64_t>(folders[i].Start, frontier));
        if (!WalkChain(folders[i], frontier))
            return Fail(i + 1 < folders.size() ? std::min<uint64_t>(folders[i + 1].Start, frontier) : frontier);
    }
    Layout.Readable = static_cast<uint32_t>(std::min<uint64_t>(frontier, End));
    Layout.Whole = true;
}

// end becomes where the chain ends, or where its first failing block begins.
bool CLayoutWalk::WalkChain(const CFolderEntry &folder, uint64_t &end)
{
    const uint32_t headerSize = BlockHeaderSize + BlockReserve;
    for (uint32_t i = 0; i < folder.Blocks; ++i) {
        uint8_t header[BlockHeaderSize];
        if (!Fits(end, headerSize) || !Bytes.Read(static_cast<uint32_t>(end), header, BlockHeaderSize))
            return false;
        const uint32_t at = static_cast<uint32_t>(end);
        const bool previous = (Flags & FlagPrevious) != 0, next = (Flags & FlagNext) != 0;
        CCabinetBlock block = {at, at + headerSize, Long(header), Word(header + DataSizeField),
                               Word(header + OutputField), folder.Compression, folder.First && i == 0 && previous};
        // Only the last block of a member's last folder may run on.
        bool runsOn = block.Output == 0;
        if (!Fits(block.DataOffset, block.DataSize) || !WithinLimits(block) ||
            (runsOn && !(folder.Last && i + 1 == folder.Blocks && next)))
            return false;
        Layout.Blocks.push_back(block);
        end = block.End();
    }
    return true;
}

void CLayoutWalk::Fail(uint64_t at)
{
    Layout.Readable = static_cast<uint32_t>(std::min<uint64_t>(at, End));
    Layout.Whole = false;
    while (!Layout.Blocks.empty() && Layout.Blocks.back().End() > Layout.Readable)
        Layout.Blocks.pop_back();
}

}  // namespace

CCabinetLayout ReadCabinetLayout(CCabinetBytes &bytes, uint32_t size)
{
    return CLayoutWalk(bytes, size).Walk();
}
