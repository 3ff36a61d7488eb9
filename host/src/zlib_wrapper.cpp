#include "zlib_wrapper.h"

#include <zlib.h>

#include "quick_inflate.h"

static_assert(ZLIB_OK == Z_OK);

namespace {

template <int (*OPERATION)(Bytef*, uLongf*, const Bytef*, uLong)>
int run(BYTE* destination, DWORD* destination_length, const BYTE* source, DWORD source_length) {
    uLongf length = *destination_length;
    const int result = OPERATION(destination, &length, source, source_length);
    *destination_length = static_cast<DWORD>(length);  // zlib never lets it grow
    return result;
}

}  // namespace

int zlib_compress(BYTE* destination, DWORD* destination_length, const BYTE* source, DWORD source_length) {
    return run<compress>(destination, destination_length, source, source_length);
}

int zlib_uncompress(BYTE* destination, DWORD* destination_length, const BYTE* source, DWORD source_length) {
    if (quick_inflate(destination, destination_length, source, source_length)) {
        return ZLIB_OK;
    }
    // zlib says what is wrong with the stream, and gives as much of it as there is.
    return run<uncompress>(destination, destination_length, source, source_length);
}
