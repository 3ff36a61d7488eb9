#include "packed/inflate.h"

#include <algorithm>

#include "zlib_wrapper.h"

namespace {

constexpr int ZLIB_TOO_LONG = -5;  ///< zlib's own code when the contents do not fit

}  // namespace

INFLATED inflate_bounded(const BYTE* stream, DWORD stream_length, QWORD capacity) {
    const QWORD largest = (QWORD{stream_length} + 1) * DEFLATE_LARGEST_RATIO;  // with room for one match beyond
    const auto room = static_cast<DWORD>(std::min({capacity, largest, QWORD{0xFFFFFFFF}}));
    auto data = std::make_unique_for_overwrite<BYTE[]>(room);
    DWORD length = room;
    const int result = zlib_uncompress(data.get(), &length, stream, stream_length);
    std::fill(data.get() + length, data.get() + room, BYTE{0});
    return {result == ZLIB_OK, std::move(data), length, result == ZLIB_TOO_LONG};
}
