// Whether the data of an MSZIP block is one the decoder can take as it is:
// "CK", then a deflate stream whose final block ends inside the data and
// that gives exactly the block's output, every code of it a valid one. Only
// counted, never decoded into anything: a block that would write past the
// decoder's window, read past its input or use a code it has no table for
// fails here instead.
#ifndef TOVREL_FILES_MSZIP_STREAM_H
#define TOVREL_FILES_MSZIP_STREAM_H

#include <cstddef>
#include <cstdint>

bool IsWholeMszipBlock(const uint8_t *data, size_t size, uint32_t output);

#endif
