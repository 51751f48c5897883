#include "files/cabinet_guard.h"

#include <algorithm>
#include <cstring>

#include "files/mszip_stream.h"

namespace {

const uint32_t ChecksumFieldSize = 4;
const uint8_t MszipStart[] = {'C', 'K'};

// A block as the decoder will decode it: its own data, or the two parts of
// a split block joined. Quantum and LZX streams are not looked into.
bool IsWholeBlock(int compression, const uint8_t *data, size_t size, uint32_t output)
{
    if (compression == CompressionNone)
        return size == output;
    if (compression == CompressionMszip)
        return size <= MaxCompressedBlock && IsWholeMszipBlock(data, size, output);
    return size <= MaxCompressedBlock;
}

// The first part of a split block is all there is of it yet: an MSZIP one
// begins as every MSZIP block does.
bool BeginsWell(int compression, const uint8_t *data, uint32_t size)
{
    size_t compared = std::min<size_t>(size, sizeof MszipStart);
    return compression != CompressionMszip || std::memcmp(data, MszipStart, compared) == 0;
}

}  // namespace

uint32_t CabinetChecksum(const uint8_t *data, uint32_t size, uint32_t seed)
{
    uint32_t sum = seed;
    for (uint32_t words = size / 4; words; --words, data += 4)
        sum ^= data[0] | data[1] << 8 | data[2] << 16 | static_cast<uint32_t>(data[3]) << 24;
    // The bytes left over count from the high end down.
    uint32_t tail = 0;
    for (uint32_t i = 0; i < size % 4; ++i)
        tail = tail << 8 | data[i];
    return sum ^ tail;
}

CCabinetGuard::CCabinetGuard(CCabinetBytes &bytes, uint32_t size)
    : Bytes(bytes), Layout(ReadCabinetLayout(bytes, size)), Checked(Layout.Blocks.size()), Limit(Layout.Readable)
{
}

uint32_t CCabinetGuard::Allow(uint32_t position, uint32_t count, CSplitBlock &split)
{
    uint64_t end = std::min<uint64_t>(static_cast<uint64_t>(position) + count, Limit);
    auto block = std::partition_point(Layout.Blocks.begin(), Layout.Blocks.end(),
                                      [position](const CCabinetBlock &b) { return b.End() <= position; });
    for (; block != Layout.Blocks.end() && block->Offset < end; ++block) {
        size_t index = block - Layout.Blocks.begin();
        if (Checked[index])
            continue;
        if (!CheckBlock(*block, split)) {
            Limit = block->Offset;
            end = std::min<uint64_t>(end, Limit);
            break;
        }
        Checked[index] = true;
    }
    return end > position ? static_cast<uint32_t>(end - position) : 0;
}

// The checksum covers the header behind its own field, the reserve and the
// data, seeded by the data's own. A split block's first part waits in split
// for the rest; any other block ends what split held.
bool CCabinetGuard::CheckBlock(const CCabinetBlock &block, CSplitBlock &split)
{
    const uint32_t headerSize = block.DataOffset - block.Offset;
    Record.resize(block.End() - block.Offset);
    if (!Bytes.Read(block.Offset, Record.data(), static_cast<uint32_t>(Record.size())))
        return false;
    const uint8_t *data = Record.data() + headerSize;
    uint32_t dataSum = CabinetChecksum(data, block.DataSize, 0);
    if (block.Checksum &&
        CabinetChecksum(Record.data() + ChecksumFieldSize, headerSize - ChecksumFieldSize, dataSum) != block.Checksum)
        return false;
    if (!block.Output) {
        split.Owner = this;
        split.Compression = block.Compression;
        split.Data.assign(data, data + block.DataSize);
        return BeginsWell(block.Compression, data, block.DataSize);
    }
    bool joins = block.MayContinue && split.Owner && split.Owner != this && split.Compression == block.Compression;
    split.Owner = nullptr;
    if (!joins)
        return IsWholeBlock(block.Compression, data, block.DataSize, block.Output);
    split.Data.insert(split.Data.end(), data, data + block.DataSize);
    return IsWholeBlock(block.Compression, split.Data.data(), split.Data.size(), block.Output);
}
