// Shared by the fuzz targets: turns the fuzzer's bytes into the texts the
// text core takes, and stops the run on a broken invariant.
#ifndef TOVREL_TESTS_FUZZ_FUZZ_INPUT_H
#define TOVREL_TESTS_FUZZ_FUZZ_INPUT_H

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>

// An invariant the fuzzer broke: report it and abort, which both libFuzzer
// and the replay driver count as a finding.
#define FUZZ_CHECK(condition)                                                            \
    do {                                                                                 \
        if (!(condition)) {                                                              \
            std::fprintf(stderr, "%s:%d: broken: %s\n", __FILE__, __LINE__, #condition); \
            std::abort();                                                                \
        }                                                                                \
    } while (0)

// Reads the input from the front: a few control bytes, then the rest as text.
class CFuzzInput {
public:
    CFuzzInput(const uint8_t *data, size_t size) : Data(data), Size(size) {}

    uint8_t Byte()
    {
        if (!Size)
            return 0;
        --Size;
        return *Data++;
    }
    // Everything that is left, NULs included.
    std::string Bytes()
    {
        std::string text(reinterpret_cast<const char *>(Data), Size);
        Size = 0;
        return text;
    }
    // Everything that is left, cut at its first NUL as a C string would be.
    std::string Rest() { return Bytes().c_str(); }

private:
    const uint8_t *Data;
    size_t Size;
};

#endif
