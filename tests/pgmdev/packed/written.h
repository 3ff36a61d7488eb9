#pragma once

#include <gtest/gtest.h>

#include <vector>

#include "host_types.h"

/// What a writer of the packed encoding, `write(BYTE** data, DWORD& index)`, produces, and how far it moves the index.
template <class WRITE>
std::vector<BYTE> written(WRITE write) {
    using BYTES = std::vector<BYTE>;
    BYTES buffer(300, 0xCC);
    BYTE* data = buffer.data();
    DWORD index = 3;  // writers write at the running index
    write(&data, index);
    EXPECT_EQ(BYTES(buffer.begin(), buffer.begin() + 3), BYTES(3, 0xCC));
    return {buffer.begin() + 3, buffer.begin() + index};
}
