#include "files/mszip_stream.h"

#include <cstring>

#include "files/cabinet_layout.h"

namespace {

const uint8_t Signature[] = {'C', 'K'};
const int MaxCodeBits = 15;
// Codes up to this long are decoded by one look-up; longer ones bit by bit.
const int FastBits = 9;
const int FastSymbolMask = (1 << FastBits) - 1;
const int LiteralCodes = 288, UsableLiteralCodes = 286, DistanceCodes = 30, CodeLengthCodes = 19;
const int EndOfBlock = 256, FirstLength = 257, LengthSymbols = 29;
const int StoredBlock = 0, FixedBlock = 1, DynamicBlock = 2;

const uint16_t LengthBase[LengthSymbols] = {3,  4,  5,  6,  7,  8,  9,  10, 11,  13,  15,  17,  19,  23, 27,
                                            31, 35, 43, 51, 59, 67, 83, 99, 115, 131, 163, 195, 227, 258};
const uint8_t LengthExtra[LengthSymbols] = {0, 0, 0, 0, 0, 0, 0, 0, 1, 1, 1, 1, 2, 2, 2,
                                            2, 3, 3, 3, 3, 4, 4, 4, 4, 5, 5, 5, 5, 0};
const uint8_t DistanceExtra[DistanceCodes] = {0, 0, 0, 0, 1, 1, 2, 2,  3,  3,  4,  4,  5,  5,  6,
                                              6, 7, 7, 8, 8, 9, 9, 10, 10, 11, 11, 12, 12, 13, 13};
const uint8_t CodeLengthOrder[CodeLengthCodes] = {16, 17, 18, 0, 8, 7, 9, 6, 10, 5, 11, 4, 12, 3, 13, 2, 14, 1, 15};
// Code-length symbols 16 (the previous length again), 17 and 18 (zeros).
const int FirstRepeat = 16;
const uint8_t RepeatBits[] = {2, 3, 7};
const uint8_t RepeatBase[] = {3, 3, 11};

// The stream's bits, least significant first.
class CBits {
public:
    CBits(const uint8_t *data, size_t size) : Data(data), Size(size) {}

    bool Read(int count, uint32_t &value)
    {
        if (!Peek(count, value))
            return false;
        Drop(count);
        return true;
    }
    bool Peek(int count, uint32_t &value)
    {
        for (; Held < count; Held += 8) {
            if (Position == Size)
                return false;
            Buffer |= static_cast<uint32_t>(Data[Position++]) << Held;
        }
        value = Buffer & ((1u << count) - 1);
        return true;
    }
    void Drop(int count)
    {
        Buffer >>= count;
        Held -= count;
    }
    // A stored block starts on a byte.
    void Align() { Drop(Held & 7); }
    bool Skip(uint32_t bytes)
    {
        for (; bytes && Held >= 8; --bytes)
            Drop(8);
        if (Size - Position < bytes)
            return false;
        Position += bytes;
        return true;
    }

private:
    const uint8_t *Data;
    size_t Size;
    size_t Position = 0;
    uint32_t Buffer = 0;
    int Held = 0;
};

// A canonical Huffman code, as a count of codes of each length and the
// symbols in code order.
struct CHuffman {
    uint16_t Count[MaxCodeBits + 1];
    uint16_t Symbol[LiteralCodes];
    uint16_t Fast[1 << FastBits];  // length << FastBits | symbol; 0 where a code is longer or unused
};

int Reversed(int code, int length)
{
    int reversed = 0;
    for (int i = 0; i < length; ++i, code >>= 1)
        reversed = reversed << 1 | (code & 1);
    return reversed;
}

void FillFast(CHuffman &code)
{
    int value = 0, index = 0;
    for (int length = 1; length <= FastBits; ++length, value <<= 1)
        for (int i = 0; i < code.Count[length]; ++i, ++value, ++index)
            for (int fill = Reversed(value, length); fill < (1 << FastBits); fill += 1 << length)
                code.Fast[fill] = static_cast<uint16_t>(length << FastBits | code.Symbol[index]);
}

// Gives how many code points are left unused: 0 for a complete code (or one
// without any code, which decodes nothing), less than 0 for too many codes.
int Build(CHuffman &code, const uint8_t *lengths, int count)
{
    std::memset(&code, 0, sizeof code);
    for (int symbol = 0; symbol < count; ++symbol)
        ++code.Count[lengths[symbol]];
    if (code.Count[0] == count)
        return 0;
    int left = 1;
    for (int length = 1; length <= MaxCodeBits; ++length) {
        left = (left << 1) - code.Count[length];
        if (left < 0)
            return left;
    }
    uint16_t offsets[MaxCodeBits + 1] = {};
    for (int length = 1; length < MaxCodeBits; ++length)
        offsets[length + 1] = static_cast<uint16_t>(offsets[length] + code.Count[length]);
    for (int symbol = 0; symbol < count; ++symbol)
        if (lengths[symbol])
            code.Symbol[offsets[lengths[symbol]]++] = static_cast<uint16_t>(symbol);
    FillFast(code);
    return left;
}

// Of an incomplete code only a single one-bit code is taken, as inflaters
// have always taken it.
bool Usable(int left, const CHuffman &code, int count)
{
    return left == 0 || (left > 0 && code.Count[0] + code.Count[1] == count);
}

// The next symbol, or -1 where the code has none or the data ends.
int Decode(CBits &bits, const CHuffman &code)
{
    uint32_t peeked;
    if (bits.Peek(FastBits, peeked) && code.Fast[peeked]) {
        bits.Drop(code.Fast[peeked] >> FastBits);
        return code.Fast[peeked] & FastSymbolMask;
    }
    int value = 0, first = 0, index = 0;
    for (int length = 1; length <= MaxCodeBits; ++length, first <<= 1, value <<= 1) {
        uint32_t bit;
        if (!bits.Read(1, bit))
            return -1;
        value |= static_cast<int>(bit);
        if (value - code.Count[length] < first)
            return code.Symbol[index + (value - first)];
        index += code.Count[length];
        first += code.Count[length];
    }
    return -1;
}

struct CFixedCodes {
    CHuffman Literal, Distance;

    CFixedCodes()
    {
        uint8_t lengths[LiteralCodes];
        std::memset(lengths, 8, 144);
        std::memset(lengths + 144, 9, 112);
        std::memset(lengths + 256, 7, 24);
        std::memset(lengths + 280, 8, 8);
        Build(Literal, lengths, LiteralCodes);
        std::memset(lengths, 5, DistanceCodes);
        Build(Distance, lengths, DistanceCodes);
    }
};

const CFixedCodes &FixedCodes()
{
    static const CFixedCodes codes;
    return codes;
}

class CInflateCheck {
public:
    CInflateCheck(const uint8_t *data, size_t size, uint32_t output) : Bits(data, size), Expected(output) {}
    bool Run();

private:
    bool Emit(uint32_t count);
    bool Stored();
    bool Dynamic();
    bool ReadCodeLengths(const CHuffman &code, uint8_t *lengths, uint32_t count);
    bool Codes(const CHuffman &literal, const CHuffman &distance);

    CBits Bits;
    uint32_t Expected;
    uint32_t Produced = 0;
};

bool CInflateCheck::Run()
{
    uint32_t last = 0, type = 0;
    do {
        if (!Bits.Read(1, last) || !Bits.Read(2, type))
            return false;
        bool taken = type == StoredBlock    ? Stored()
                     : type == FixedBlock   ? Codes(FixedCodes().Literal, FixedCodes().Distance)
                     : type == DynamicBlock ? Dynamic()
                                            : false;
        if (!taken)
            return false;
    } while (!last);
    return Produced == Expected;
}

bool CInflateCheck::Emit(uint32_t count)
{
    if (Expected - Produced < count)
        return false;
    Produced += count;
    return true;
}

bool CInflateCheck::Stored()
{
    Bits.Align();
    uint32_t length, complement;
    return Bits.Read(16, length) && Bits.Read(16, complement) && length == (~complement & 0xFFFF) &&
           Emit(length) && Bits.Skip(length);
}

bool CInflateCheck::Dynamic()
{
    uint32_t literals, distances, codeLengths;
    if (!Bits.Read(5, literals) || !Bits.Read(5, distances) || !Bits.Read(4, codeLengths))
        return false;
    literals += FirstLength;
    distances += 1;
    codeLengths += 4;
    if (literals > UsableLiteralCodes || distances > DistanceCodes)
        return false;
    uint8_t codeLengthLengths[CodeLengthCodes] = {};
    for (uint32_t i = 0; i < codeLengths; ++i) {
        uint32_t length;
        if (!Bits.Read(3, length))
            return false;
        codeLengthLengths[CodeLengthOrder[i]] = static_cast<uint8_t>(length);
    }
    CHuffman lengthCode, literal, distance;
    uint8_t lengths[UsableLiteralCodes + DistanceCodes] = {};
    if (Build(lengthCode, codeLengthLengths, CodeLengthCodes) != 0 ||
        !ReadCodeLengths(lengthCode, lengths, literals + distances) || !lengths[EndOfBlock])
        return false;
    return Usable(Build(literal, lengths, literals), literal, literals) &&
           Usable(Build(distance, lengths + literals, distances), distance, distances) && Codes(literal, distance);
}

bool CInflateCheck::ReadCodeLengths(const CHuffman &code, uint8_t *lengths, uint32_t count)
{
    for (uint32_t i = 0; i < count;) {
        int symbol = Decode(Bits, code);
        if (symbol < 0)
            return false;
        if (symbol < FirstRepeat) {
            lengths[i++] = static_cast<uint8_t>(symbol);
            continue;
        }
        int kind = symbol - FirstRepeat;
        uint32_t repeat;
        if ((kind == 0 && i == 0) || !Bits.Read(RepeatBits[kind], repeat))
            return false;
        repeat += RepeatBase[kind];
        if (repeat > count - i)
            return false;
        uint8_t length = kind == 0 ? lengths[i - 1] : 0;
        for (; repeat; --repeat)
            lengths[i++] = length;
    }
    return true;
}

bool CInflateCheck::Codes(const CHuffman &literal, const CHuffman &distance)
{
    for (;;) {
        int symbol = Decode(Bits, literal);
        if (symbol < 0)
            return false;
        if (symbol == EndOfBlock)
            return true;
        if (symbol < EndOfBlock) {
            if (!Emit(1))
                return false;
            continue;
        }
        symbol -= FirstLength;
        uint32_t lengthExtra, distanceExtra;
        if (symbol >= LengthSymbols || !Bits.Read(LengthExtra[symbol], lengthExtra))
            return false;
        // A distance reaches no further back than the window, whatever it
        // is; only that there is a code for it matters.
        int code = Decode(Bits, distance);
        if (code < 0 || !Bits.Read(DistanceExtra[code], distanceExtra) || !Emit(LengthBase[symbol] + lengthExtra))
            return false;
    }
}

}  // namespace

bool IsWholeMszipBlock(const uint8_t *data, size_t size, uint32_t output)
{
    if (size < sizeof Signature || std::memcmp(data, Signature, sizeof Signature) != 0 || output > MaxBlockOutput)
        return false;
    return CInflateCheck(data + sizeof Signature, size - sizeof Signature, output).Run();
}
