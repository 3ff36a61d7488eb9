#include "pgmdev_hps_mgr.h"

#include <algorithm>
#include <thread>
#include <vector>

#include "pgmdev/hps/fixture.h"
#include "support/reports.h"

// The HPS kinds, and the boot flash lists with the user's own entries.

namespace {

namespace ref = ini_reference;

/// Managers whose protected members a test can reach.
template <class MANAGER>
class PROBE : public MANAGER {
public:
    using MANAGER::m_mgr;
};

const std::string NAND_STAMP = "79b884d001a0760b19c475920183ef66";
const std::string SPI_STAMP = "9095cbfc6f5b69d3eb5d625df882a316";

std::string nand_bytes(unsigned long manufacturer, unsigned long device, unsigned long low, unsigned long high) {
    return ref::le32(manufacturer) + ref::le32(device) + ref::le32(low) + ref::le32(high);
}

std::string spi_bytes(const std::string& name) {
    std::string bytes = ref::le32(0x112233) + ref::le32(0xFFFFFF) + ref::le32(7) + ref::le32(255);
    bytes += std::string("MAKER") + '\0' + name + '\0' + ref::le32(0x89ABCDEF) + ref::le32(0x01234567);
    for (unsigned long value = 101; value <= 108; ++value) {
        bytes += ref::le32(value);
    }
    return bytes + '\1' + ref::le32(0xD8) + ref::le32(0x02) + ref::le32(0x03);
}

std::string spi_line(const std::string& name) {
    return "1122867 16777215 7 255 MAKER " + name + " 81985529216486895 101 102 103 104 105 106 107 108 True 216 2 3";
}

TEST_F(Hps, MembersAreInTheOrderOfABlock) {
    const std::vector<std::string> nand{"manufacturer_id", "device_id", "device_byte_size"};
    const std::vector<std::string> spi{"silicon_id",        "silicon_id_mask", "ext_id",          "ext_id_mask",
                                       "manufacturer_name", "device_name",     "device_bit_size", "device_sector_byte",
                                       "page_byte",         "bulk_erase_time", "code_a",          "code_b",
                                       "sec_erase_time",    "code_c",          "die_count",       "flag_a",
                                       "erase_opcode",      "program_opcode",  "read_opcode"};
    const auto types_of = [](const auto& members) {
        std::string types;
        for (const auto& member : members) {
            types += std::to_string(static_cast<DWORD>(member.type()));
        }
        return types;
    };
    EXPECT_EQ(types_of(PGMDEV_HPS_NAND_MEMBERS), "556");
    EXPECT_EQ(types_of(PGMDEV_HPS_SPI_MEMBERS), "5555116555555552555");
    EXPECT_TRUE(std::equal(nand.begin(), nand.end(), PGMDEV_HPS_NAND_MEMBERS.begin(), PGMDEV_HPS_NAND_MEMBERS.end(),
                           [](const auto& name, const auto& member) { return name == member.name; }));
    EXPECT_TRUE(std::equal(spi.begin(), spi.end(), PGMDEV_HPS_SPI_MEMBERS.begin(), PGMDEV_HPS_SPI_MEMBERS.end(),
                           [](const auto& name, const auto& member) { return name == member.name; }));
}

TEST_F(Hps, RecordsPointAtTheirOwnValues) {
    PGMDEV_HPS_SPI_STRUCTURE first;
    first.device_name = "first";
    first.read_opcode = 3;
    const PGMDEV_HPS_SPI_STRUCTURE copy(first);
    PGMDEV_HPS_SPI_STRUCTURE assigned;
    assigned = copy;
    first.device_name = "changed";
    const std::vector<const PGMDEV_HPS_SPI_STRUCTURE*> records{&first, &copy, &assigned};
    for (const PGMDEV_HPS_SPI_STRUCTURE* record : records) {
        EXPECT_EQ(record->values[0], &record->silicon_id);
        EXPECT_EQ(record->values[5], &record->device_name);
        EXPECT_EQ(record->values[18], &record->read_opcode);
    }
    EXPECT_EQ(copy.device_name, "first");
    EXPECT_EQ(assigned.device_name, "first");
    EXPECT_EQ(assigned.read_opcode, 3U);

    PGMDEV_HPS_NAND_STRUCTURE nand;
    nand.device_byte_size = 5;
    const PGMDEV_HPS_NAND_STRUCTURE nand_copy(nand);
    EXPECT_EQ(nand_copy.values[2], &nand_copy.device_byte_size);
    EXPECT_EQ(nand_copy.device_byte_size, 5U);
    // The pointers follow the values directly.
    EXPECT_EQ(static_cast<const void*>(nand.values), static_cast<const void*>(&nand.device_byte_size + 1));
}

TEST_F(Hps, UserEntriesComeFirst) {
    m_directory.write_file(ref::file(ref::BLOCKS{std::nullopt, SPI_STAMP + spi_bytes("ONE") + spi_bytes("TWO"),
                                                 NAND_STAMP + nand_bytes(0xEC, 0xD3, 0x40000000, 1)}));
    const auto& spi = *PGMDEV_HPS_SPI_MGR::get_mgr();
    ASSERT_EQ(spi.get_user_list().size(), 2U);
    ASSERT_EQ(spi.get_list().size(), m_built_in_spi + 2);
    EXPECT_EQ(spi.get_user_list()[0], spi.get_list()[0]);
    EXPECT_EQ(spi.get_user_list()[1], spi.get_list()[1]);
    EXPECT_EQ(line_of(*spi.get_list()[0]), spi_line("ONE"));
    EXPECT_EQ(line_of(*spi.get_list()[1]), spi_line("TWO"));
    EXPECT_EQ(line_of(*spi.get_list()[2]),
              "1554976 16777215 0 0 MICRON QSPI_64 67108864 65536 256 120 2 3 1000 1 1 True 216 2 3");
    EXPECT_EQ(spi.get_list()[0]->values[4], &spi.get_list()[0]->manufacturer_name);

    const auto& nand = *PGMDEV_HPS_NAND_MGR::get_mgr();
    ASSERT_EQ(nand.get_user_list().size(), 1U);
    ASSERT_EQ(nand.get_list().size(), m_built_in_nand + 1);
    EXPECT_EQ(line_of(*nand.get_list()[0]), "236 211 5368709120");
    EXPECT_EQ(line_of(*nand.get_list()[1]), "44 104 4294967296");
}

TEST_F(Hps, DuplicatesStay) {
    const std::string same = nand_bytes(0x2C, 0x68, 0, 1);
    m_directory.write_file(ref::file(ref::BLOCKS{std::nullopt, std::nullopt, NAND_STAMP + same + same}));
    EXPECT_EQ(PGMDEV_HPS_NAND_MGR::get_mgr()->get_list().size(), m_built_in_nand + 2);
}

TEST_F(Hps, BlockCutAnywhere) {
    const std::string whole = SPI_STAMP + spi_bytes("ONE") + spi_bytes("TWO") + spi_bytes("THREE");
    const std::size_t one = 32 + spi_bytes("ONE").size();
    for (std::size_t length = 1; length < whole.size(); ++length) {
        m_directory.write_file(ref::file(ref::BLOCKS{std::nullopt, whole.substr(0, length), std::nullopt}));
        PGMDEV_HPS_SPI_MGR::delete_mgr();
        const std::size_t expected = length < one ? 0 : length < 2 * one - 32 ? 1 : 2;
        ASSERT_EQ(PGMDEV_HPS_SPI_MGR::get_mgr()->get_user_list().size(), expected) << length;
        ASSERT_EQ(PGMDEV_HPS_SPI_MGR::get_mgr()->get_list().size(), m_built_in_spi + expected) << length;
    }
}

TEST_F(Hps, LastNandRecordMayEndInTheMiddleOfItsSize) {
    const std::string whole = NAND_STAMP + nand_bytes(1, 2, 3, 4);
    for (std::size_t length = 33; length < whole.size(); ++length) {
        m_directory.write_file(ref::file(ref::BLOCKS{std::nullopt, std::nullopt, whole.substr(0, length)}));
        PGMDEV_HPS_NAND_MGR::delete_mgr();
        const auto& list = PGMDEV_HPS_NAND_MGR::get_mgr()->get_user_list();
        ASSERT_EQ(list.size(), length >= 32 + 12 ? 1U : 0U) << length;
        if (!list.empty()) {
            EXPECT_EQ(list[0]->device_byte_size, length == 32 + 12 ? 3U : 0x400000003U) << length;
        }
    }
}

TEST_F(Hps, EveryCharacterOfTheStampCounts) {
    for (std::size_t i = 0; i < 32; ++i) {
        std::string stamp = NAND_STAMP;
        stamp[i] = 'g';
        m_directory.write_file(ref::file(ref::BLOCKS{std::nullopt, std::nullopt, stamp + nand_bytes(1, 2, 3, 4)}));
        PGMDEV_HPS_NAND_MGR::delete_mgr();
        EXPECT_TRUE(PGMDEV_HPS_NAND_MGR::get_mgr()->get_user_list().empty()) << i;
        EXPECT_EQ(PGMDEV_HPS_NAND_MGR::get_mgr()->get_list().size(), m_built_in_nand);
    }
    // Neither does a list take the other's block.
    m_directory.write_file(ref::file(ref::BLOCKS{std::nullopt, NAND_STAMP + spi_bytes("ONE"), SPI_STAMP + "12345678"}));
    PGMDEV_HPS_NAND_MGR::delete_mgr();
    EXPECT_TRUE(PGMDEV_HPS_NAND_MGR::get_mgr()->get_user_list().empty());
    EXPECT_TRUE(PGMDEV_HPS_SPI_MGR::get_mgr()->get_user_list().empty());
}

TEST_F(Hps, DamageIsNotReported) {
    const REPORTS reports;
    for (const std::string& file : {std::string("short"), std::string(100, 'x'),
                                    ref::file(ref::BLOCKS{std::nullopt, SPI_STAMP, NAND_STAMP}) + "tail"}) {
        m_directory.write_file(file);
        delete_managers();
        EXPECT_EQ(PGMDEV_HPS_SPI_MGR::get_mgr()->get_list().size(), m_built_in_spi);
        EXPECT_EQ(PGMDEV_HPS_NAND_MGR::get_mgr()->get_list().size(), m_built_in_nand);
    }
    EXPECT_TRUE(reports.all().empty());
}

TEST_F(Hps, ManagersReadTheFileOnce) {
    EXPECT_EQ(PROBE<PGMDEV_HPS_NAND_MGR>::m_mgr, nullptr);
    PGMDEV_HPS_NAND_MGR* const manager = PGMDEV_HPS_NAND_MGR::get_mgr();
    EXPECT_EQ(PROBE<PGMDEV_HPS_NAND_MGR>::m_mgr, manager);
    m_directory.write_file(ref::file(ref::BLOCKS{std::nullopt, std::nullopt, NAND_STAMP + nand_bytes(1, 2, 3, 4)}));
    EXPECT_EQ(PGMDEV_HPS_NAND_MGR::get_mgr(), manager);
    EXPECT_TRUE(manager->get_user_list().empty());
    PGMDEV_HPS_NAND_MGR::delete_mgr();
    EXPECT_EQ(PROBE<PGMDEV_HPS_NAND_MGR>::m_mgr, nullptr);
    PGMDEV_HPS_NAND_MGR::delete_mgr();  // there is none: nothing happens
    EXPECT_EQ(PGMDEV_HPS_NAND_MGR::get_mgr()->get_user_list().size(), 1U);
}

TEST_F(Hps, ManagersCannotBeCopied) {
    EXPECT_FALSE(std::is_copy_constructible_v<PGMDEV_HPS_MGR> || std::is_copy_assignable_v<PGMDEV_HPS_MGR>);
    EXPECT_FALSE(std::is_copy_constructible_v<PGMDEV_HPS_NAND_MGR> || std::is_copy_assignable_v<PGMDEV_HPS_NAND_MGR>);
    EXPECT_FALSE(std::is_copy_constructible_v<PGMDEV_HPS_SPI_MGR> || std::is_copy_assignable_v<PGMDEV_HPS_SPI_MGR>);
}

TEST_F(Hps, FirstCallsFromTwoThreads) {
    for (int round = 0; round < 50; ++round) {
        delete_managers();
        std::array<const void*, 6> found{};
        const auto get_all = [&found](std::size_t first) {
            found.at(first) = PGMDEV_HPS_MGR::get_mgr();
            found.at(first + 1) = PGMDEV_HPS_NAND_MGR::get_mgr();
            found.at(first + 2) = PGMDEV_HPS_SPI_MGR::get_mgr();
        };
        std::thread other(get_all, 3);
        get_all(0);
        other.join();
        EXPECT_TRUE(std::equal(found.begin(), found.begin() + 3, found.begin() + 3));
    }
}

TEST_F(Hps, CurrentKind) {
    PGMDEV_HPS_MGR* const manager = PGMDEV_HPS_MGR::get_mgr();
    EXPECT_EQ(manager->get_current_hps(), nullptr);
    EXPECT_TRUE(manager->set_current_hps(0x4BA00477));
    EXPECT_EQ(manager->get_current_hps(), PGMDEV_HPS_MGR::get_kinds().data());
    EXPECT_EQ(manager->get_current_hps()->id, 0x4BA00477U);
    EXPECT_TRUE(manager->set_current_hps(0x4BA00478));
    EXPECT_EQ(manager->get_current_hps(), &PGMDEV_HPS_MGR::get_kinds()[1]);
    EXPECT_EQ(manager->get_current_hps()->id, 0x4BA00478U);
    EXPECT_FALSE(manager->set_current_hps(5));
    EXPECT_EQ(manager->get_current_hps(), nullptr);

    EXPECT_TRUE(manager->set_current_hps(0x4BA00477));
    PGMDEV_HPS_MGR::delete_mgr();
    EXPECT_EQ(PGMDEV_HPS_MGR::get_mgr()->get_current_hps(), nullptr);
}

TEST_F(Hps, KindsAreDescribed) {
    using KIND = PGMDEV_HPS_STRUCTURE;
    constexpr std::array BASES{&KIND::on_chip_ram_base,    &KIND::clock_manager_base, &KIND::reset_manager_base,
                               &KIND::pin_multiplex_base,  &KIND::watchdog_base,      &KIND::uart_base,
                               &KIND::spi_controller_base, &KIND::spi_data_base,      &KIND::nand_controller_base,
                               &KIND::nand_data_base};
    const auto kinds = PGMDEV_HPS_MGR::get_kinds();
    ASSERT_EQ(kinds.size(), 2U);
    for (const KIND& kind : kinds) {
        EXPECT_EQ(static_cast<const void*>(&kind), static_cast<const void*>(&kind.id));
        std::vector<DWORD> bases;
        for (const auto base : BASES) {
            EXPECT_GE(kind.*base, 0xFF700000U);
            EXPECT_LE(kind.*base, 0xFFFF0000U);
            EXPECT_EQ(kind.*base % 0x10000, 0U);
            bases.push_back(kind.*base);
        }
        std::sort(bases.begin(), bases.end());
        EXPECT_EQ(std::adjacent_find(bases.begin(), bases.end()), bases.end()) << "two blocks at one address";
        EXPECT_GT(kind.on_chip_ram_byte, 0U);
    }
}

}  // namespace
