// Cabinet structure: the guard never asks for a byte past the cabinet, gives
// no more than the cabinet holds, and passes the same bytes however the
// decoder's reads are cut. The same input behind "CK" as an MSZIP block's
// data: the check passes it exactly when zlib, with a full window of history
// behind it, inflates it through its final block to the output it claims.
#include <zlib.h>

#include <cstring>
#include <vector>

#include "files/cabinet_guard.h"
#include "files/mszip_stream.h"
#include "fuzz_input.h"

namespace {

class CInputBytes : public CCabinetBytes {
public:
    explicit CInputBytes(const std::string &bytes) : Bytes(bytes) {}
    bool Read(uint32_t offset, uint8_t *out, uint32_t size) override
    {
        FUZZ_CHECK(static_cast<uint64_t>(offset) + size <= Bytes.size());
        std::memcpy(out, Bytes.data() + offset, size);
        return true;
    }

private:
    const std::string &Bytes;
};

uint32_t ReadInPieces(const std::string &cabinet, uint32_t piece)
{
    CInputBytes bytes(cabinet);
    CCabinetGuard guard(bytes, static_cast<uint32_t>(cabinet.size()));
    CSplitBlock split{nullptr, CompressionNone, {}};
    uint32_t position = 0;
    for (uint32_t allowed; (allowed = guard.Allow(position, piece, split)) != 0;)
        position += allowed;
    FUZZ_CHECK(position == guard.Readable() && position <= cabinet.size());
    return position;
}

// The size zlib inflates the stream to, or -1 where it fails or the stream
// does not end.
long Inflated(const std::string &stream)
{
    z_stream z = {};
    std::vector<Bytef> window(MaxBlockOutput), out(MaxBlockOutput + 1);
    inflateInit2(&z, -MAX_WBITS);
    inflateSetDictionary(&z, window.data(), MaxBlockOutput);
    z.next_in = reinterpret_cast<Bytef *>(const_cast<char *>(stream.data()));
    z.avail_in = static_cast<uInt>(stream.size());
    z.next_out = out.data();
    z.avail_out = static_cast<uInt>(out.size());
    long size = inflate(&z, Z_FINISH) == Z_STREAM_END ? static_cast<long>(z.total_out) : -1;
    inflateEnd(&z);
    return size;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    // Every byte is the cabinet's, so that seeds are whole cabinets; the
    // size picks how small the decoder's reads are.
    std::string bytes = CFuzzInput(data, size).Bytes();
    uint32_t piece = static_cast<uint32_t>(size % 64 + 1);
    FUZZ_CHECK(ReadInPieces(bytes, piece) == ReadInPieces(bytes, static_cast<uint32_t>(size) + 1));

    std::string block = "CK" + bytes;
    const uint8_t *blockData = reinterpret_cast<const uint8_t *>(block.data());
    long inflated = Inflated(bytes);
    uint32_t claimed = inflated < 0 ? 0 : static_cast<uint32_t>(inflated);
    FUZZ_CHECK(IsWholeMszipBlock(blockData, block.size(), claimed) == (inflated >= 0 && claimed <= MaxBlockOutput));
    FUZZ_CHECK(!IsWholeMszipBlock(blockData, block.size(), claimed + 1));
    return 0;
}
