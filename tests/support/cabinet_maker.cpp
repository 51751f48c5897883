#include "cabinet_maker.h"

#include <cstring>

namespace {

void PutWord(std::string &out, unsigned value)
{
    out += static_cast<char>(value & 0xFF);
    out += static_cast<char>((value >> 8) & 0xFF);
}

void PutLong(std::string &out, unsigned long value)
{
    PutWord(out, value & 0xFFFF);
    PutWord(out, (value >> 16) & 0xFFFF);
}

}  // namespace

std::string StoredCabinetBytes(const std::vector<CStoredFile> &files, const CStoredSetPlace &place)
{
    unsigned flags = 0;
    std::string links;
    if (!place.PreviousCabinet.empty()) {
        flags |= 1;
        links += place.PreviousCabinet + '\0' + place.PreviousDisk + '\0';
    }
    if (!place.NextCabinet.empty()) {
        flags |= 2;
        links += place.NextCabinet + '\0' + place.NextDisk + '\0';
    }

    std::string data;
    for (const CStoredFile &file : files)
        data += file.Content;
    if (data.size() > 0x8000)
        return std::string();

    // A last file that runs on ends the folder in a block split into the next
    // member: cbUncomp 0 here.
    const bool runsOn = !files.empty() && files.back().RunsOnTo;
    std::vector<size_t> blocks;
    if (runsOn && data.size() > files.back().Content.size())
        blocks.push_back(data.size() - files.back().Content.size());
    if (!files.empty())
        blocks.push_back(data.size() - (blocks.empty() ? 0 : blocks[0]));
    const unsigned long headerSize = 36 + links.size();
    const unsigned long folderSize = files.empty() ? 0 : 8;
    unsigned long filesSize = 0;
    for (const CStoredFile &file : files)
        filesSize += 16 + file.Stored.size() + 1;
    const unsigned long dataStart = headerSize + folderSize + filesSize;
    const unsigned long total = dataStart + 8 * blocks.size() + data.size();

    std::string out = "MSCF";
    PutLong(out, 0);
    PutLong(out, total);
    PutLong(out, 0);
    PutLong(out, headerSize + folderSize);
    PutLong(out, 0);
    out += '\3';
    out += '\1';
    PutWord(out, files.empty() ? 0 : 1);
    PutWord(out, static_cast<unsigned>(files.size()));
    PutWord(out, flags);
    PutWord(out, 4242);  // set id
    PutWord(out, place.Index);
    out += links;
    if (!files.empty()) {
        PutLong(out, dataStart);
        PutWord(out, static_cast<unsigned>(blocks.size()));
        PutWord(out, 0);  // stored
    }
    unsigned long offset = 0;
    for (const CStoredFile &file : files) {
        PutLong(out, file.RunsOnTo ? file.RunsOnTo : file.Content.size());
        PutLong(out, offset);
        PutWord(out, runsOn && &file == &files.back() ? 0xFFFE : 0);  // continued to the next member
        PutWord(out, file.Date);
        PutWord(out, file.Time);
        PutWord(out, file.Attributes);
        out += file.Stored;
        out += '\0';
        offset += file.Content.size();
    }
    for (size_t i = 0, at = 0; i < blocks.size(); at += blocks[i++]) {
        PutLong(out, 0);  // no checksum
        PutWord(out, static_cast<unsigned>(blocks[i]));
        PutWord(out, runsOn && i + 1 == blocks.size() ? 0 : static_cast<unsigned>(blocks[i]));
        out += data.substr(at, blocks[i]);
    }
    return out;
}

bool WriteStoredCabinet(const std::string &path, const std::vector<CStoredFile> &files, const CStoredSetPlace &place)
{
    std::string out = StoredCabinetBytes(files, place);
    if (out.empty())
        return false;
    HANDLE file = CreateFileA(path.c_str(), GENERIC_WRITE, 0, NULL, CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL, NULL);
    if (file == INVALID_HANDLE_VALUE)
        return false;
    DWORD written = 0;
    BOOL ok = WriteFile(file, out.data(), static_cast<DWORD>(out.size()), &written, NULL);
    CloseHandle(file);
    return ok && written == out.size();
}
