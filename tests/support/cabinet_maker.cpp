#include "cabinet_maker.h"

#include <fstream>

namespace {

// The fixed parts of the header, a folder entry, a file entry and a data block's header.
const unsigned long HeaderSize = 36, FolderSize = 8, FileEntrySize = 16, BlockHeaderSize = 8;
const size_t MaxFolderData = 0x8000;
const unsigned Version = 0x0103, SetId = 4242;
const int Word = 2, Long = 4;

// Little-endian, in the field's width.
void Put(std::string &out, size_t value, int width)
{
    for (int i = 0; i < width; ++i, value >>= 8)
        out += static_cast<char>(value & 0xFF);
}

}  // namespace

std::string StoredCabinetBytes(const std::vector<CStoredFile> &files)
{
    std::string data;
    unsigned long filesSize = 0;
    for (const CStoredFile &file : files) {
        data += file.Content;
        filesSize += FileEntrySize + file.Stored.size() + 1;
    }
    if (data.size() > MaxFolderData)
        return std::string();
    const unsigned long folders = files.empty() ? 0 : 1, filesStart = HeaderSize + folders * FolderSize;
    const unsigned long dataStart = filesStart + filesSize;
    // Size, first file entry, version, folders, files, flags, set and place in it; the zeros are reserved.
    const size_t header[][2] = {
        {0, Long}, {dataStart + folders * BlockHeaderSize + data.size(), Long}, {0, Long}, {filesStart, Long},
        {0, Long}, {Version, Word}, {folders, Word}, {files.size(), Word}, {0, Word}, {SetId, Word}, {0, Word}};
    std::string out = "MSCF";
    for (const auto &field : header)
        Put(out, field[0], static_cast<int>(field[1]));
    if (folders) {
        Put(out, dataStart, Long);
        Put(out, 1, Word);  // one data block
        Put(out, 0, Word);  // stored
    }
    unsigned long offset = 0;
    for (const CStoredFile &file : files) {
        Put(out, file.Content.size(), Long);
        Put(out, offset, Long);
        Put(out, 0, Word);  // the folder
        Put(out, file.Date, Word);
        Put(out, file.Time, Word);
        Put(out, file.Attributes, Word);
        out += file.Stored + '\0';
        offset += file.Content.size();
    }
    if (folders) {
        Put(out, 0, Long);  // no checksum
        Put(out, data.size(), Word);
        Put(out, data.size(), Word);
        out += data;
    }
    return out;
}

bool WriteStoredCabinet(const std::string &path, const std::vector<CStoredFile> &files)
{
    const std::string bytes = StoredCabinetBytes(files);
    return !bytes.empty() &&
           std::ofstream(path.c_str(), std::ios::binary | std::ios::trunc).write(bytes.data(), bytes.size()).good();
}
