// What of one cabinet file the decoder may read. The layout is walked when
// the cabinet is opened; each data block is checked the first time a read
// reaches it: its checksum where it carries one, and an MSZIP block's stream.
// Reads stop where the first block that fails begins, so the decoder never
// sees one and fails there as at the end of a cut file. Platform-free.
#ifndef TOVREL_FILES_CABINET_GUARD_H
#define TOVREL_FILES_CABINET_GUARD_H

#include <cstdint>
#include <vector>

#include "files/cabinet_layout.h"

// The format's checksum of size bytes, folded into seed.
uint32_t CabinetChecksum(const uint8_t *data, uint32_t size, uint32_t seed);

// The first part of a block that runs on into the next member of a set, as
// the last read left it: the decoder joins it to the first block of the next
// member, and only the two together can be checked.
struct CSplitBlock {
    const void *Owner;  // the guard it was read through; null for none
    int Compression;
    std::vector<uint8_t> Data;
};

class CCabinetGuard {
public:
    // bytes must stay readable, and unchanged, for the guard's life.
    CCabinetGuard(CCabinetBytes &bytes, uint32_t size);

    // How many of count bytes at position may be read, after checking every
    // block they reach that was not checked yet. split is shared by the
    // guards of one decoder's members.
    uint32_t Allow(uint32_t position, uint32_t count, CSplitBlock &split);
    uint32_t Readable() const { return Limit; }

private:
    bool CheckBlock(const CCabinetBlock &block, CSplitBlock &split);

    CCabinetBytes &Bytes;
    CCabinetLayout Layout;
    std::vector<bool> Checked;
    uint32_t Limit;
    std::vector<uint8_t> Record;
};

#endif
