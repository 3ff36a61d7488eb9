#include <fstream>
#include <functional>
#include <iostream>
#include <iterator>
#include <map>
#include <stdexcept>
#include <string>

#include "catalog.h"
#include "data_set.h"
#include "grammar.h"
#include "packed/format.h"
#include "packed/inflate.h"
#include "pgmdev_flash_table.h"
#include "user_flash/text.h"

// Inputs that no file holds as such. For harnesses that take their input in two ways, a 1 in front chooses the one that
// reaches further.

namespace {

constexpr char REACHES_FURTHER = 1;

std::string contents_of(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

std::string text_of(const BYTES& bytes) {
    return {bytes.begin(), bytes.end()};
}

CATALOG catalog_of(const std::string& directory, FAULTS& faults) {
    CATALOG catalog = read_catalog(directory, faults);
    if (!faults.empty()) {
        throw std::runtime_error(faults.lines().front());
    }
    return catalog;
}

/// The payload of a packed database.
std::string payload(const std::string& database) {
    constexpr QWORD MOST = QWORD{1} << 24;
    const std::string file = contents_of(database);
    if (file.size() <= PACKED_HEAD_SIZE) {
        throw std::runtime_error(database + ": no database");
    }
    const INFLATED body = inflate_bounded(reinterpret_cast<const BYTE*>(file.data()) + PACKED_HEAD_SIZE,
                                          static_cast<DWORD>(file.size() - PACKED_HEAD_SIZE), MOST);
    return {reinterpret_cast<const char*>(body.data.get()), body.length};
}

/// The body of the data set of spellings.
std::string spellings(const std::string& catalog) {
    FAULTS faults;
    return REACHES_FURTHER + text_of(encode_grammar(build_grammar(catalog_of(catalog, faults), catalog, faults)));
}

/// The body of the data set of ordering codes.
std::string ordering_codes(const std::string& catalog) {
    FAULTS faults;
    std::vector<std::uint32_t> parts;
    for (const CATALOG_PART& part : catalog_of(catalog, faults).parts) {
        parts.push_back(static_cast<std::uint32_t>(part.number));
    }
    return REACHES_FURTHER + text_of(encode_ordering_codes(parts));
}

/// The first flash of a source table as the body of a user's description.
std::string user_flash(const std::string& table) {
    return REACHES_FURTHER + user_flash_body(PGMDEV_FLASH_TABLE::from_source(FIO_PATH(table)).records().at(0));
}

const std::map<std::string, std::function<std::string(const std::string&)>> PIECES{
    {"payload", payload}, {"spellings", spellings}, {"ordering_codes", ordering_codes}, {"user_flash", user_flash}};

}  // namespace

int main(int argc, char** argv) try {
    const auto piece = argc == 4 ? PIECES.find(argv[1]) : PIECES.end();
    if (piece == PIECES.end()) {
        std::cerr << "Usage: seed_pieces PIECE SOURCE OUTPUT\n";
        return 2;
    }
    const std::string contents = piece->second(argv[2]);
    return contents.size() > 1 && std::ofstream(argv[3], std::ios::binary) << contents ? 0 : 1;
} catch (const std::exception& error) {
    std::cerr << "seed_pieces: " << error.what() << "\n";
    return 1;
}
