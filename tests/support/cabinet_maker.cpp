#include "cabinet_maker.h"

#include <fstream>

namespace {

// The fixed parts of the header, a folder entry, a file entry and a data block's header.
const unsigned long HeaderSize = 36, FolderSize = 8, FileEntrySize = 16, BlockHeaderSize = 8;
const size_t MaxFolderData = 0x8000;
const unsigned HasPrevious = 1, HasNext = 2, Version = 0x0103, SetId = 4242, ContinuedToNext = 0xFFFE;
const int Word = 2, Long = 4;

// Little-endian, in the field's width.
void Put(std::string &out, unsigned long value, int width)
{
    for (int i = 0; i < width; ++i, value >>= 8)
        out += static_cast<char>(value & 0xFF);
}

}  // namespace

std::string StoredCabinetBytes(const std::vector<CStoredFile> &files, const CStoredSetPlace &place)
{
    const unsigned flags =
        (place.PreviousCabinet.empty() ? 0 : HasPrevious) | (place.NextCabinet.empty() ? 0 : HasNext);
    std::string links, data;
    if (flags & HasPrevious)
        links += place.PreviousCabinet + '\0' + place.PreviousDisk + '\0';
    if (flags & HasNext)
        links += place.NextCabinet + '\0' + place.NextDisk + '\0';
    unsigned long filesSize = 0;
    for (const CStoredFile &file : files) {
        data += file.Content;
        filesSize += FileEntrySize + file.Stored.size() + 1;
    }
    if (data.size() > MaxFolderData)
        return std::string();

    // A last file that runs on ends the folder in a block split into the next
    // member: cbUncomp 0 here.
    const bool runsOn = !files.empty() && files.back().RunsOnTo;
    std::vector<size_t> blocks;
    if (runsOn && data.size() > files.back().Content.size())
        blocks.push_back(data.size() - files.back().Content.size());
    if (!files.empty())
        blocks.push_back(data.size() - (blocks.empty() ? 0 : blocks[0]));
    const unsigned long filesStart = HeaderSize + links.size() + (files.empty() ? 0 : FolderSize);
    const unsigned long dataStart = filesStart + filesSize;
    // Size, first file entry, version, folders, files, flags, set and place in it; the zeros are reserved.
    const unsigned long header[][2] = {
        {0, Long}, {dataStart + BlockHeaderSize * blocks.size() + data.size(), Long}, {0, Long}, {filesStart, Long},
        {0, Long}, {Version, Word}, {files.empty() ? 0u : 1u, Word}, {files.size(), Word}, {flags, Word},
        {SetId, Word}, {place.Index, Word}};
    std::string out = "MSCF";
    for (const auto &field : header)
        Put(out, field[0], static_cast<int>(field[1]));
    out += links;
    if (!files.empty()) {
        Put(out, dataStart, Long);
        Put(out, blocks.size(), Word);
        Put(out, 0, Word);  // stored
    }
    unsigned long offset = 0;
    for (const CStoredFile &file : files) {
        Put(out, file.RunsOnTo ? file.RunsOnTo : file.Content.size(), Long);
        Put(out, offset, Long);
        Put(out, runsOn && &file == &files.back() ? ContinuedToNext : 0, Word);
        Put(out, file.Date, Word);
        Put(out, file.Time, Word);
        Put(out, file.Attributes, Word);
        out += file.Stored + '\0';
        offset += file.Content.size();
    }
    for (size_t i = 0, at = 0; i < blocks.size(); at += blocks[i++]) {
        Put(out, 0, Long);  // no checksum
        Put(out, blocks[i], Word);
        Put(out, runsOn && i + 1 == blocks.size() ? 0 : blocks[i], Word);
        out += data.substr(at, blocks[i]);
    }
    return out;
}

bool WriteStoredCabinet(const std::string &path, const std::vector<CStoredFile> &files, const CStoredSetPlace &place)
{
    const std::string bytes = StoredCabinetBytes(files, place);
    return !bytes.empty() &&
           std::ofstream(path.c_str(), std::ios::binary | std::ios::trunc).write(bytes.data(), bytes.size()).good();
}
