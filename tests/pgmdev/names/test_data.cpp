#include "pgmdev/names/test_data.h"

#include <algorithm>

#include "names/clean_up.h"
#include "part_digests_table.h"
#include "pgmdev/names/reference.h"
#include "pgmdev_types.h"

// To the library these are constants of another source file; nothing but their values differs from a build with other
// data. Do not include the header that says so: here they vary.
extern BYTE PGMDDB_GRAMMAR_DATA[TEST_DATA_CAPACITY];
extern DWORD PGMDDB_GRAMMAR_CMP_LENGTH;
extern DWORD PGMDDB_GRAMMAR_LENGTH;
extern BYTE PGMDDB_OPN_DATA[TEST_DATA_CAPACITY];
extern DWORD PGMDDB_OPN_CMP_LENGTH;
extern DWORD PGMDDB_OPN_LENGTH;
extern PART_DIGESTS PGMDDB_PART_DIGESTS;

BYTE PGMDDB_GRAMMAR_DATA[TEST_DATA_CAPACITY];
DWORD PGMDDB_GRAMMAR_CMP_LENGTH;
DWORD PGMDDB_GRAMMAR_LENGTH;
BYTE PGMDDB_OPN_DATA[TEST_DATA_CAPACITY];
DWORD PGMDDB_OPN_CMP_LENGTH;
DWORD PGMDDB_OPN_LENGTH;
PART_DIGESTS PGMDDB_PART_DIGESTS;

namespace {

void set(const std::string& container, BYTE* data, DWORD& stream_length, DWORD& length) {
    free_stores_and_indexes();
    const std::string stream = ddb_reference::deflated(container);
    if (stream.size() > TEST_DATA_CAPACITY) {
        throw std::length_error("test data");
    }
    std::copy(stream.begin(), stream.end(), data);
    stream_length = static_cast<DWORD>(stream.size());
    length = static_cast<DWORD>(container.size());
}

}  // namespace

void set_grammar_container(const std::string& container) {
    set(container, PGMDDB_GRAMMAR_DATA, PGMDDB_GRAMMAR_CMP_LENGTH, PGMDDB_GRAMMAR_LENGTH);
}

void set_opn_container(const std::string& container) {
    set(container, PGMDDB_OPN_DATA, PGMDDB_OPN_CMP_LENGTH, PGMDDB_OPN_LENGTH);
}

void set_part_digests(const PART_DIGESTS& digests) {
    free_stores_and_indexes();
    PGMDDB_PART_DIGESTS = digests;
}
