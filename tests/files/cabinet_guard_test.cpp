#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <vector>

#include "files/cabinet_guard.h"

namespace {

std::string Le(size_t value, int width)
{
    std::string out;
    for (int i = 0; i < width; ++i, value >>= 8)
        out += static_cast<char>(value & 0xFF);
    return out;
}

uint32_t Sum(const std::string &text, uint32_t seed)
{
    return CabinetChecksum(reinterpret_cast<const uint8_t *>(text.data()), static_cast<uint32_t>(text.size()), seed);
}

struct CBlock {
    std::string Data;
    uint32_t Output;
};

CBlock Stored(size_t size, char fill) { return CBlock{std::string(size, fill), static_cast<uint32_t>(size)}; }

// A cabinet written field by field: the header, Extra (the reserve fields
// and names the flags call for), the folder entries, then each folder's
// blocks end to end, each with its right checksum unless Checksums is off.
struct CPlan {
    uint32_t Flags = 0, Compression = CompressionNone;
    std::string Extra, BlockReserve;
    std::vector<std::vector<CBlock>> Folders = {{Stored(100, 'a'), Stored(100, 'b')}};
    bool Checksums = true;

    std::string Write() const
    {
        const size_t tables = 36 + Extra.size() + 8 * Folders.size();
        std::string entries, data;
        for (const std::vector<CBlock> &blocks : Folders) {
            entries += Le(tables + data.size(), 4) + Le(blocks.size(), 2) + Le(Compression, 2);
            for (const CBlock &block : blocks) {
                std::string header = Le(block.Data.size(), 2) + Le(block.Output, 2) + BlockReserve;
                data += Le(Checksums ? Sum(header, Sum(block.Data, 0)) : 0, 4) + header + block.Data;
            }
        }
        // Signature, size, where the files begin, version 1.3, counts,
        // flags, the set's id and the member's place in it.
        return "MSCF" + Le(0, 4) + Le(tables + data.size(), 4) + Le(0, 4) + Le(tables, 4) + Le(0, 4) + "\x03\x01" +
               Le(Folders.size(), 2) + Le(0, 2) + Le(Flags, 2) + Le(7, 4) + Extra + entries + data;
    }
};

class CTextBytes : public CCabinetBytes {
public:
    explicit CTextBytes(const std::string &text) : Text(text) {}
    bool Read(uint32_t offset, uint8_t *out, uint32_t size) override
    {
        if (static_cast<uint64_t>(offset) + size > Text.size())
            return false;
        std::memcpy(out, Text.data() + offset, size);
        return true;
    }

private:
    const std::string &Text;
};

// Everything the decoder may read, asked for in one read.
uint32_t Readable(const std::string &cabinet)
{
    CTextBytes bytes(cabinet);
    CCabinetGuard guard(bytes, static_cast<uint32_t>(cabinet.size()));
    CSplitBlock split{nullptr, CompressionNone, {}};
    return guard.Allow(0, static_cast<uint32_t>(cabinet.size()), split);
}

// The cabinet of the plan as change leaves it.
std::string With(void (*change)(CPlan &))
{
    CPlan plan;
    change(plan);
    return plan.Write();
}

std::string Changed(std::string bytes, size_t at, char value)
{
    bytes[at] = value;
    return bytes;
}

// The names a member of a set carries for its neighbour: 14 bytes.
std::string Names() { return std::string("set2.cab") + '\0' + "disk" + '\0'; }

TEST(CabinetGuard, ReadsStopWhereTheFirstFailingBlockBegins)
{
    // Two stored blocks of 100 in one folder: blocks at 44 and 152, 260 in all.
    const std::string plain = CPlan().Write();
    const uint32_t first = 44, second = 152, whole = 260, named = 14;
    // Two folders of one block: entries at 36 and 44, blocks at 52 and 160.
    const std::string folders = With([](CPlan &p) { p.Folders = {{Stored(100, 'a')}, {Stored(100, 'b')}}; });
    // A block reserve of 2: blocks at 48 and 158, their reserves 8 bytes in.
    const std::string reserved = With([](CPlan &p) {
        p.Flags = 4, p.Extra = Le(0, 3) + "\x02", p.BlockReserve = "rr";
    });
    // "CK", then one final stored deflate block of 100 bytes.
    static const std::string deflated =
        std::string("CK\x01", 3) + Le(100, 2) + Le(0xFFFF - 100, 2) + std::string(100, 'z');
    const struct {
        const char *Name;
        std::string Cabinet;
        uint32_t Readable;
    } cases[] = {
        {"two stored blocks", plain, whole},
        {"the second block's data changed", Changed(plain, second + 20, 'x'), second},
        {"changed, without checksums", Changed(With([](CPlan &p) { p.Checksums = false; }), second + 20, 'x'), whole},
        {"a block of 32768", With([](CPlan &p) { p.Folders = {{Stored(32768, 'a')}}; }), first + 8 + 32768},
        {"a block of 32769", With([](CPlan &p) { p.Folders = {{Stored(32769, 'a')}}; }), first},
        {"stored data longer than it gives", With([](CPlan &p) { p.Folders[0][0].Output = 99; }), first},
        {"the last block runs on, no member follows", With([](CPlan &p) { p.Folders[0][1].Output = 0; }), second},
        {"the last block runs on into the next member",
         With([](CPlan &p) { p.Flags = 2, p.Extra = Names(), p.Folders[0][1].Output = 0; }), whole + named},
        {"the first of two runs on", With([](CPlan &p) { p.Flags = 2, p.Extra = Names(), p.Folders[0][0].Output = 0; }),
         first + named},
        {"the previous member's names", With([](CPlan &p) { p.Flags = 1, p.Extra = Names(); }), whole + named},
        {"a name without its end", With([](CPlan &p) { p.Flags = 1, p.Extra = std::string(300, 'n'); }), 0},
        {"a header reserve", With([](CPlan &p) { p.Flags = 4, p.Extra = Le(3, 2) + Le(0, 2) + "xyz"; }), whole + 7},
        {"a header reserve over 60000", With([](CPlan &p) { p.Flags = 4, p.Extra = Le(60001, 2) + Le(0, 2); }), 0},
        {"a block reserve", reserved, 268},
        {"a block reserve changed", Changed(reserved, 158 + 9, 'x'), 158},
        {"an unknown compression", With([](CPlan &p) { p.Compression = 4; }), 36},
        {"two folders end to end", folders, 268},
        {"a gap before the second folder", Changed(folders, 44, static_cast<char>(160 + 4)), 160},
        {"the second folder inside the first", Changed(folders, 44, static_cast<char>(160 - 4)), 156},
        {"an MSZIP block", With([](CPlan &p) { p.Compression = 1, p.Folders = {{CBlock{deflated, 100}}}; }),
         first + 8 + 107},
        {"an MSZIP block that gives less than it says",
         With([](CPlan &p) { p.Compression = 1, p.Folders = {{CBlock{deflated, 101}}}; }), first},
    };
    for (const auto &c : cases)
        EXPECT_EQ(c.Readable, Readable(c.Cabinet)) << c.Name;
}

}  // namespace
