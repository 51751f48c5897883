// The SHA-256 digest of a stream of bytes, written as 64 lower-case hex
// digits: what the baseline keeps of a file's content. No <windows.h> here.
#ifndef TOVREL_REPORT_SHA256_H
#define TOVREL_REPORT_SHA256_H

#include <cstddef>
#include <cstdint>
#include <string>

class CSha256 {
public:
    CSha256();
    void Update(const void *bytes, size_t count);
    // Ends the stream; the object is not to be fed afterwards.
    std::string HexDigest();

private:
    static const size_t BlockSize = 64;
    void Compress(const unsigned char *block);
    uint32_t State[8];
    unsigned char Pending[BlockSize];
    size_t PendingCount;
    uint64_t TotalBytes;
};

#endif
