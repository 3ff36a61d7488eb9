#include "packed/inflate.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>

// Any bytes as a stream, with any capacity that a head may claim.

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size < 4) {
        return 0;
    }
    const QWORD capacity = (QWORD{data[0]} << (data[1] & 31U)) + data[2];
    const INFLATED contents = inflate_bounded(data + 4, static_cast<DWORD>(size - 4), capacity);
    if (contents.good && contents.length > capacity) {
        __builtin_trap();
    }
    static_cast<void>(std::count(contents.data.get(), contents.data.get() + contents.length, 0));
    return 0;
}
