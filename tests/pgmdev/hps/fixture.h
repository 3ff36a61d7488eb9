#pragma once

/// \file
/// HPS managers that start and end with each test, and records as lines of text.

#include <array>
#include <string>

#include "pgmdev/parameters/fixture.h"
#include "pgmdev_hps_mgr.h"
#include "pgmdev_hps_nand_mgr.h"
#include "pgmdev_hps_spi_mgr.h"

/// Every test starts and ends without managers.
class Hps : public testing::Test {
protected:
    void SetUp() override {
        delete_managers();
        m_built_in_nand = PGMDEV_HPS_NAND_MGR::get_mgr()->get_list().size();
        m_built_in_spi = PGMDEV_HPS_SPI_MGR::get_mgr()->get_list().size();
        delete_managers();
    }
    void TearDown() override { delete_managers(); }

    static void delete_managers() {
        PGMDEV_HPS_MGR::delete_mgr();
        PGMDEV_HPS_NAND_MGR::delete_mgr();
        PGMDEV_HPS_SPI_MGR::delete_mgr();
    }

    FLASH_INI_DIRECTORY m_directory;
    std::size_t m_built_in_nand = 0;  ///< the number of built-in devices
    std::size_t m_built_in_spi = 0;   ///< the number of built-in devices
};

/// The values of a record as one line of text, read through its own pointer table.
template <class RECORD, std::size_t COUNT>
std::string line_of(const RECORD& record, const std::array<PGMDEV_HPS_MEMBER<RECORD>, COUNT>& members) {
    static_assert(std::size(decltype(record.values){}) == COUNT);
    std::string line;
    for (std::size_t i = 0; i < COUNT; ++i) {
        const std::string text = PGMDEV_FLASH_INI::print_flash_ini_data(members[i].type(), false, record.values[i]);
        line += (i == 0 ? "" : " ") + text;
    }
    return line;
}

inline std::string line_of(const PGMDEV_HPS_NAND_STRUCTURE& record) {
    return line_of(record, PGMDEV_HPS_NAND_MEMBERS);
}
inline std::string line_of(const PGMDEV_HPS_SPI_STRUCTURE& record) {
    return line_of(record, PGMDEV_HPS_SPI_MEMBERS);
}
