#include "names/ordering_codes.h"

#include <algorithm>

#include "report.h"

namespace {

constexpr DWORD COUNT_SIZE = 4;
constexpr BYTE CONTINUED = 0x80;
constexpr DWORD GROUP_BITS = 7;
constexpr DWORD LARGEST_SHIFT = 5 * GROUP_BITS;

/// Reads one number at `index`: groups of 7 bits, the least significant first.
DWORD read_number(const DATA_CONTAINER& container, DWORD& index) {
    if (index < container.body_end() && (container.data[index] & CONTINUED) == 0) {
        return container.data[index++];  // most are of one byte
    }
    QWORD dev_enum = 0;
    DWORD shift = 0;
    BYTE byte = CONTINUED;
    while ((byte & CONTINUED) != 0) {
        PGMDEV_REQUIRE(index < container.body_end(), "index < (data_size - 4)", DDB_MGR_FILE);
        byte = container.data[index++];
        if (shift < LARGEST_SHIFT) {  // what lies above is refused below, but only when the number has ended
            dev_enum |= QWORD{byte & DWORD{0x7F}} << shift;
        }
        shift = std::min(shift + GROUP_BITS, LARGEST_SHIFT + GROUP_BITS);
    }
    PGMDEV_REQUIRE(shift <= LARGEST_SHIFT, "shift <= 35", DDB_MGR_FILE);
    PGMDEV_REQUIRE(dev_enum <= QWORD(0xFFFFFFFF), "dev_enum <= QWORD(0xFFFFFFFF)", DDB_MGR_FILE);
    return static_cast<DWORD>(dev_enum);
}

DWORD read_count(const DATA_CONTAINER& container) {
    DWORD count = 0;
    for (DWORD i = 0; i < COUNT_SIZE; ++i) {
        count |= DWORD{container.data[CONTAINER_MAGIC_SIZE + i]} << (8 * i);
    }
    return count;
}

std::vector<DWORD> read_numbers(const COMPILED_DATA_SET& set) {
    const DATA_CONTAINER container = open_container(set);
    const DWORD enum_count = read_count(container);  // the spare bytes of the buffer cover a container without a count
    PGMDEV_REQUIRE(enum_count > 0, "enum_count > 0", DDB_MGR_FILE);
    // An entry takes a byte at least: a list that is longer ends at the end of the data, with a report.
    std::vector<DWORD> numbers(std::min(enum_count, container.size));
    DWORD* entry = numbers.data();
    DWORD index = CONTAINER_MAGIC_SIZE + COUNT_SIZE;
    for (DWORD i = 0; i < enum_count; ++i) {
        *entry++ = read_number(container, index);
    }
    PGMDEV_REQUIRE(index == container.body_end(), "index == (data_size - 4)", DDB_MGR_FILE);
    return numbers;
}

}  // namespace

std::unique_ptr<OPN_STORE> build_opn_store(const COMPILED_DATA_SET& set) {
    auto store = std::make_unique<OPN_STORE>();
    store->map = set.numbers;
    if (set.numbers.empty() || !is_known(set)) {
        store->own = read_numbers(set);
        store->map = store->own;
    }
    return store;
}
