#include <algorithm>
#include <fstream>
#include <iterator>
#include <sstream>
#include <vector>

#include "pgmdev/hps/fixture.h"

// The built-in boot flash: the rows that every release has had, and all rows of the tables.

namespace {

/// A word of a table as records print it: numbers in decimal, flags as words.
std::string printed(const std::string& word) {
    if (word == "TRUE" || word == "FALSE") {
        return word == "TRUE" ? "True" : "False";
    }
    return word.substr(0, 2) == "0x" ? std::to_string(std::stoull(word, nullptr, 16)) : word;
}

std::string printed_line(const std::vector<std::string>& words) {
    std::string line;
    for (const std::string& word : words) {
        line += (line.empty() ? "" : " ") + printed(word);
    }
    return line;
}

/// The words of a line, between blanks and commas.
std::vector<std::string> words_of(std::string line) {
    std::replace(line.begin(), line.end(), ',', ' ');
    std::istringstream stream(line);
    return {std::istream_iterator<std::string>(stream), {}};
}

/// The rows of a table in data/hps as records print, whatever the order of its columns.
template <class MEMBERS>
std::vector<std::string> rows_of(const std::string& table, const MEMBERS& members) {
    std::ifstream file(TEST_DATA_DIR "/hps/" + table);
    std::vector<std::vector<std::string>> lines;
    for (std::string line; std::getline(file, line);) {
        if (const std::vector<std::string> words = words_of(line); !words.empty()) {
            lines.push_back(words);
        }
    }
    const auto ruler = std::find_if(lines.begin(), lines.end(), [](const auto& words) {
        return words.size() == 1 && words[0].find_first_not_of('-') == std::string::npos;
    });
    std::vector<std::string> rows;
    for (auto row = ruler; row != lines.end() && ++row != lines.end();) {
        std::vector<std::string> values;
        for (const auto& member : members) {
            const auto column = std::find(lines[1].begin(), lines[1].end(), member.name) - lines[1].begin();
            values.push_back(row->at(static_cast<std::size_t>(column)));
        }
        rows.push_back(printed_line(values));
    }
    return rows;
}

template <class MANAGER>
std::vector<std::string> served() {
    std::vector<std::string> rows;
    for (const auto* record : MANAGER::get_mgr()->get_list()) {
        rows.push_back(line_of(*record));
    }
    return rows;
}

/// Whether the rows begin with those known, which are written as words between blanks.
void expect_first(const std::vector<std::string>& rows, const std::vector<std::string>& known) {
    ASSERT_GE(rows.size(), known.size());
    for (std::size_t i = 0; i < known.size(); ++i) {
        EXPECT_EQ(rows[i], printed_line(words_of(known[i])))
            << "row " << i << ": programs and users know rows by their index, so new ones go to the end";
    }
}

const std::vector<std::string> BUILT_IN_NAND{"0x2C 0x68 0x100000000", "0x2C 0x48 0x80000000", "0x2C 0xA1 0x40000000",
                                             "0x2C 0xF1 0x40000000",  "0x01 0xF1 0x8000000",  "0x01 0xDA 0x10000000",
                                             "0x01 0xDC 0x20000000",  "0x01 0xC1 0x8000000",  "0x01 0xCA 0x10000000",
                                             "0x01 0xCC 0x20000000"};

// silicon ID, mask, extended ID, mask, maker, device, bits, sector, page, bulk erase, code a, code b, sector erase,
// code c, dies, flag a, erase, program, read
const std::vector<std::string> BUILT_IN_SPI{
    "0x17BA20 0xFFFFFF 0 0 MICRON QSPI_64 0x4000000 0x10000 256 120 2 3 1000 1 1 TRUE 0xD8 0x02 0x03",
    "0x18BA20 0xFFFFFF 0 0 MICRON QSPI_128 0x8000000 0x10000 256 250 2 3 1000 1 1 TRUE 0xD8 0x02 0x03",
    "0x19BA20 0xFFFFFF 0 0 MICRON QSPI_256 0x10000000 0x10000 256 480 3 3 1000 1 1 TRUE 0xD8 0x02 0x03",
    "0x20BA20 0xFFFFFF 68 255 MICRON QSPI_512 0x20000000 0x10000 256 460 3 1 1000 1 1 TRUE 0xD8 0x02 0x03",
    "0x20BA20 0xFFFFFF 0 0 MICRON QSPI_512 0x20000000 0x10000 256 480 3 3 1000 1 2 FALSE 0xD8 0x02 0x03",
    "0x21BA20 0xFFFFFF 0 0 MICRON QSPI_1024 0x40000000 0x10000 256 480 3 3 1000 1 4 FALSE 0xD8 0x02 0x03",
    "0x22BA20 0xFFFFFF 0 0 MICRON QSPI_2048 0x80000000 0x10000 256 460 3 1 1000 1 4 TRUE 0xD8 0x02 0x03",
    "0x18BB20 0xFFFFFF 0 0 MICRON QSPI_128 0x8000000 0x10000 256 250 2 3 1000 1 1 TRUE 0xD8 0x02 0x03",
    "0x19BB20 0xFFFFFF 0 0 MICRON QSPI_256 0x10000000 0x10000 256 480 3 3 1000 1 1 TRUE 0xD8 0x02 0x03",
    "0x20BB20 0xFFFFFF 68 255 MICRON QSPI_512 0x20000000 0x10000 256 460 3 1 1000 1 1 TRUE 0xD8 0x02 0x03",
    "0x20BB20 0xFFFFFF 0 0 MICRON QSPI_512 0x20000000 0x10000 256 480 3 3 1000 1 2 FALSE 0xD8 0x02 0x03",
    "0x21BB20 0xFFFFFF 68 255 MICRON QSPI_1024 0x40000000 0x10000 256 460 3 1 1000 1 2 TRUE 0xD8 0x02 0x03",
    "0x21BB20 0xFFFFFF 0 0 MICRON QSPI_1024 0x40000000 0x10000 256 480 3 3 1000 1 4 FALSE 0xD8 0x02 0x03",
    "0x22BB20 0xFFFFFF 0 0 MICRON QSPI_2048 0x80000000 0x10000 256 460 3 1 1000 1 4 TRUE 0xD8 0x02 0x03",
    "0x132020 0xFFFFFF 0 0 MICRON SPI_4 0x400000 0x10000 256 10 2 3 3000 1 1 TRUE 0xD8 0x02 0x03",
    "0x152020 0xFFFFFF 0 0 MICRON SPI_16 0x1000000 0x10000 256 40 2 3 3000 1 1 TRUE 0xD8 0x02 0x03",
    "0x182001 0xFFFFFF 1 255 SPANSION QSPI_128 0x8000000 0x10000 256 256 2 11 2200 1 1 TRUE 0xD8 0x02 0x03",
    "0x182001 0xFFFFFF 0 255 SPANSION QSPI_128 0x8000000 0x40000 256 256 2 11 2200 1 1 TRUE 0xD8 0x02 0x03",
    "0x190201 0xFFFFFF 1 255 SPANSION QSPI_256 0x10000000 0x10000 256 330 3 11 2200 1 1 TRUE 0xDC 0x12 0x13",
    "0x190201 0xFFFFFF 0 255 SPANSION QSPI_256 0x10000000 0x40000 256 330 3 11 2200 1 1 TRUE 0xDC 0x12 0x13",
    "0x200201 0xFFFFFF 0 255 SPANSION QSPI_512 0x20000000 0x40000 512 460 3 3 2200 1 1 TRUE 0xDC 0x12 0x13",
    "0x1820C2 0xFFFFFF 0 0 MACRONIX QSPI_128 0x8000000 0x10000 256 80 3 1 1500 1 1 TRUE 0xDC 0x12 0x13",
    "0x1920C2 0xFFFFFF 0 0 MACRONIX QSPI_256 0x10000000 0x10000 256 300 3 2 3000 1 1 TRUE 0xDC 0x12 0x13",
    "0x1A20C2 0xFFFFFF 0 0 MACRONIX QSPI_512 0x20000000 0x10000 256 300 3 3 1500 1 1 TRUE 0xDC 0x12 0x13",
    "0x3A25C2 0xFFFFFF 0 0 MACRONIX QSPI_512 0x20000000 0x10000 256 320 3 3 3000 1 1 TRUE 0xDC 0x12 0x13",
    "0x1B20C2 0xFFFFFF 0 0 MACRONIX QSPI_1024 0x40000000 0x10000 256 600 3 2 1000 1 1 TRUE 0xDC 0x12 0x13",
    "0x1840C8 0xFFFFFF 0 0 GIGADEVICE QSPI_128 0x8000000 0x10000 256 300 3 3 3000 1 1 TRUE 0xDC 0x12 0x13",
};

TEST_F(Hps, KnownNandRowsKeepTheirPlaces) {
    expect_first(served<PGMDEV_HPS_NAND_MGR>(), BUILT_IN_NAND);
}

TEST_F(Hps, KnownSpiRowsKeepTheirPlaces) {
    expect_first(served<PGMDEV_HPS_SPI_MGR>(), BUILT_IN_SPI);
}

TEST_F(Hps, BuiltInListsAreTheTables) {
    EXPECT_EQ(served<PGMDEV_HPS_NAND_MGR>(), rows_of("nand.csv", PGMDEV_HPS_NAND_MEMBERS));
    EXPECT_EQ(served<PGMDEV_HPS_SPI_MGR>(), rows_of("spi.csv", PGMDEV_HPS_SPI_MEMBERS));
    EXPECT_TRUE(PGMDEV_HPS_NAND_MGR::get_mgr()->get_user_list().empty());
    EXPECT_TRUE(PGMDEV_HPS_SPI_MGR::get_mgr()->get_user_list().empty());
}

}  // namespace
