#include "report/sha256.h"

#include <cstring>

static const uint32_t InitialState[8] = {0x6a09e667, 0xbb67ae85, 0x3c6ef372, 0xa54ff53a,
                                         0x510e527f, 0x9b05688c, 0x1f83d9ab, 0x5be0cd19};

static const uint32_t RoundConstants[64] = {
    0x428a2f98, 0x71374491, 0xb5c0fbcf, 0xe9b5dba5, 0x3956c25b, 0x59f111f1, 0x923f82a4, 0xab1c5ed5,
    0xd807aa98, 0x12835b01, 0x243185be, 0x550c7dc3, 0x72be5d74, 0x80deb1fe, 0x9bdc06a7, 0xc19bf174,
    0xe49b69c1, 0xefbe4786, 0x0fc19dc6, 0x240ca1cc, 0x2de92c6f, 0x4a7484aa, 0x5cb0a9dc, 0x76f988da,
    0x983e5152, 0xa831c66d, 0xb00327c8, 0xbf597fc7, 0xc6e00bf3, 0xd5a79147, 0x06ca6351, 0x14292967,
    0x27b70a85, 0x2e1b2138, 0x4d2c6dfc, 0x53380d13, 0x650a7354, 0x766a0abb, 0x81c2c92e, 0x92722c85,
    0xa2bfe8a1, 0xa81a664b, 0xc24b8b70, 0xc76c51a3, 0xd192e819, 0xd6990624, 0xf40e3585, 0x106aa070,
    0x19a4c116, 0x1e376c08, 0x2748774c, 0x34b0bcb5, 0x391c0cb3, 0x4ed8aa4a, 0x5b9cca4f, 0x682e6ff3,
    0x748f82ee, 0x78a5636f, 0x84c87814, 0x8cc70208, 0x90befffa, 0xa4506ceb, 0xbef9a3f7, 0xc67178f2};

static const size_t LengthFieldSize = 8;
static const unsigned char EndMarker = 0x80;
static const int ByteBits = 8;

static uint32_t RotateRight(uint32_t value, int bits)
{
    return (value >> bits) | (value << (32 - bits));
}

static uint32_t BigEndianWord(const unsigned char *bytes)
{
    return static_cast<uint32_t>(bytes[0]) << 24 | static_cast<uint32_t>(bytes[1]) << 16
           | static_cast<uint32_t>(bytes[2]) << 8 | bytes[3];
}

CSha256::CSha256() : PendingCount(0), TotalBytes(0)
{
    std::memcpy(State, InitialState, sizeof State);
}

void CSha256::Compress(const unsigned char *block)
{
    uint32_t schedule[64];
    for (int i = 0; i < 16; ++i)
        schedule[i] = BigEndianWord(block + 4 * i);
    for (int i = 16; i < 64; ++i) {
        uint32_t s0 = RotateRight(schedule[i - 15], 7) ^ RotateRight(schedule[i - 15], 18) ^ (schedule[i - 15] >> 3);
        uint32_t s1 = RotateRight(schedule[i - 2], 17) ^ RotateRight(schedule[i - 2], 19) ^ (schedule[i - 2] >> 10);
        schedule[i] = schedule[i - 16] + s0 + schedule[i - 7] + s1;
    }
    uint32_t v[8];
    std::memcpy(v, State, sizeof v);
    for (int i = 0; i < 64; ++i) {
        uint32_t s1 = RotateRight(v[4], 6) ^ RotateRight(v[4], 11) ^ RotateRight(v[4], 25);
        uint32_t choice = (v[4] & v[5]) ^ (~v[4] & v[6]);
        uint32_t t1 = v[7] + s1 + choice + RoundConstants[i] + schedule[i];
        uint32_t s0 = RotateRight(v[0], 2) ^ RotateRight(v[0], 13) ^ RotateRight(v[0], 22);
        uint32_t majority = (v[0] & v[1]) ^ (v[0] & v[2]) ^ (v[1] & v[2]);
        std::memmove(v + 1, v, 7 * sizeof v[0]);
        v[4] += t1;
        v[0] = t1 + s0 + majority;
    }
    for (int i = 0; i < 8; ++i)
        State[i] += v[i];
}

void CSha256::Update(const void *bytes, size_t count)
{
    const unsigned char *at = static_cast<const unsigned char *>(bytes);
    TotalBytes += count;
    while (count > 0) {
        size_t take = BlockSize - PendingCount < count ? BlockSize - PendingCount : count;
        std::memcpy(Pending + PendingCount, at, take);
        PendingCount += take;
        at += take;
        count -= take;
        if (PendingCount == BlockSize) {
            Compress(Pending);
            PendingCount = 0;
        }
    }
}

std::string CSha256::HexDigest()
{
    uint64_t bits = TotalBytes * ByteBits;
    unsigned char end[BlockSize + LengthFieldSize] = {EndMarker};
    size_t padding = (PendingCount < BlockSize - LengthFieldSize ? BlockSize : 2 * BlockSize) - PendingCount
                     - LengthFieldSize;
    for (size_t i = 0; i < LengthFieldSize; ++i)
        end[padding + i] = static_cast<unsigned char>(bits >> (ByteBits * (LengthFieldSize - 1 - i)));
    Update(end, padding + LengthFieldSize);
    static const char Digits[] = "0123456789abcdef";
    std::string hex;
    for (uint32_t word : State)
        for (int shift = 28; shift >= 0; shift -= 4)
            hex += Digits[(word >> shift) & 0xf];
    return hex;
}
