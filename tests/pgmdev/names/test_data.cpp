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
extern std::uint32_t PGMDDB_GRAMMAR_INDEX[1];
extern DWORD PGMDDB_GRAMMAR_INDEX_LENGTH;
extern char PGMDDB_GRAMMAR_TEXT[1];
extern std::uint64_t PGMDDB_GRAMMAR_DIGEST;
extern DWORD PGMDDB_GRAMMAR_CRC;
extern BYTE PGMDDB_OPN_DATA[TEST_DATA_CAPACITY];
extern DWORD PGMDDB_OPN_CMP_LENGTH;
extern DWORD PGMDDB_OPN_LENGTH;
extern DWORD PGMDDB_OPN_NUMBERS[1];
extern DWORD PGMDDB_OPN_NUMBERS_LENGTH;
extern std::uint64_t PGMDDB_OPN_DIGEST;
extern DWORD PGMDDB_OPN_CRC;
extern PART_DIGESTS PGMDDB_PART_DIGESTS;

BYTE PGMDDB_GRAMMAR_DATA[TEST_DATA_CAPACITY];
DWORD PGMDDB_GRAMMAR_CMP_LENGTH;
DWORD PGMDDB_GRAMMAR_LENGTH;
std::uint32_t PGMDDB_GRAMMAR_INDEX[1];  // none
DWORD PGMDDB_GRAMMAR_INDEX_LENGTH;
char PGMDDB_GRAMMAR_TEXT[1];
std::uint64_t PGMDDB_GRAMMAR_DIGEST;
DWORD PGMDDB_GRAMMAR_CRC;
BYTE PGMDDB_OPN_DATA[TEST_DATA_CAPACITY];
DWORD PGMDDB_OPN_CMP_LENGTH;
DWORD PGMDDB_OPN_LENGTH;
DWORD PGMDDB_OPN_NUMBERS[1];  // none
DWORD PGMDDB_OPN_NUMBERS_LENGTH;
std::uint64_t PGMDDB_OPN_DIGEST;
DWORD PGMDDB_OPN_CRC;
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
