// The layout of a cabinet file as the decoder walks it: the header with its
// reserve and the names of the set's neighbours, the folders, and each
// folder's chain of data blocks. Platform-free, so that it is fuzzed natively.
#ifndef TOVREL_FILES_CABINET_LAYOUT_H
#define TOVREL_FILES_CABINET_LAYOUT_H

#include <cstddef>
#include <cstdint>
#include <vector>

// Where a cabinet's bytes are read from.
class CCabinetBytes {
public:
    virtual ~CCabinetBytes() {}
    // Exactly size bytes from offset, or false.
    virtual bool Read(uint32_t offset, uint8_t *out, uint32_t size) = 0;
};

enum CabinetCompression {
    CompressionNone = 0,
    CompressionMszip = 1,
    CompressionQuantum = 2,
    CompressionLzx = 3,
};

// The format's limits on a data block: what it gives, and what it holds,
// stored or compressed.
const uint32_t MaxBlockOutput = 32768;
const uint32_t MaxCompressedBlock = 32768 + 6144;

// One data block, as its header gives it.
struct CCabinetBlock {
    uint32_t Offset;      // of its header
    uint32_t DataOffset;  // of its data, behind the header's reserve
    uint32_t Checksum;    // 0 where the cabinet carries none
    uint32_t DataSize;
    uint32_t Output;      // 0 for the part of a block that runs on into the next member
    int Compression;
    // The first block of a member that goes on from the previous one: it may
    // be the rest of a block that the previous member began.
    bool MayContinue;

    uint32_t End() const { return DataOffset + DataSize; }
};

struct CCabinetLayout {
    // Every block whose structure holds, in file order, end to end.
    std::vector<CCabinetBlock> Blocks;
    // How many bytes from the start the decoder may read: to the end of the
    // last block, or up to the first structure that fails.
    uint32_t Readable;
    bool Whole;  // nothing failed
};

// Walks the cabinet of size bytes. A block whose sizes exceed the format's
// limits, a chain that runs out of the file or into another, a gap between
// chains (where a decoder that overruns a folder would read unchecked
// bytes) and an unknown compression fail; so does a header that does not
// hold, which leaves nothing readable.
CCabinetLayout ReadCabinetLayout(CCabinetBytes &bytes, uint32_t size);

#endif
