#include <libdeflate.h>

#include <memory>

#include "quick_inflate.h"

namespace {

struct FREE_DECOMPRESSOR {
    void operator()(libdeflate_decompressor* decompressor) const { libdeflate_free_decompressor(decompressor); }
};

}  // namespace

bool quick_inflate(BYTE* destination, DWORD* destination_length, const BYTE* source, DWORD source_length) {
    const std::unique_ptr<libdeflate_decompressor, FREE_DECOMPRESSOR> decompressor(libdeflate_alloc_decompressor());
    if (decompressor == nullptr) {
        return false;
    }
    std::size_t taken = 0;  // asked for, so that bytes behind the end of the stream are no fault
    std::size_t length = 0;
    if (libdeflate_zlib_decompress_ex(decompressor.get(), source, source_length, destination, *destination_length,
                                      &taken, &length) != LIBDEFLATE_SUCCESS) {
        return false;
    }
    *destination_length = static_cast<DWORD>(length);
    return true;
}
