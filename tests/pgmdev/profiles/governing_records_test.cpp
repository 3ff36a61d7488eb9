#include <gtest/gtest.h>

#include <random>

#include "dev.h"
#include "pgmdev/profiles/fixture.h"
#include "pgmdev/profiles/probe.h"
#include "support/repeatable_random.h"

// Which record governs a device, by any part list.

namespace {

namespace ref = dev_info_reference;

/// Entries about devices and programmer files that occur again and again, some of which there are not, and gaps.
std::vector<PGMDEV_PGM_PART*> random_part_list(std::mt19937& random, std::size_t length) {
    const std::vector<int> devices{-1, 0, 1, 2, 3, 4, 5, 6, 7, 989, 990, 991, 0x7FFFFFFF};
    const std::vector<std::string> files{"FILE_A", "file_b", "File_C", "FILE_D", "FILE_X", "NONE", ""};
    std::vector<PGMDEV_PGM_PART*> list;
    for (std::size_t i = 0; i < length; ++i) {
        const auto device = static_cast<DEV_DEVICE_ENUM>(devices[random() % devices.size()]);
        list.push_back(random() % 8 == 0 ? nullptr : new PGMDEV_PGM_PART{1, device, files[random() % files.size()]});
    }
    return list;
}

/// One search after another, each through the whole list.
DWORD governing_record(DEV_INFO_PROBE& manager, DEV_DEVICE_ENUM device) {
    if (manager.search_device(device, false) || manager.search_pcf_for_device(device)) {
        return manager.m_index;
    }
    return manager.m_family_table[DEV_PART_MANAGER().get_family_of(device)];
}

TEST(GoverningRecords, AreThoseThatSearchesFind) {
    auto random = repeatable_random(4);
    std::string body = ref::records(ref::rows());
    bool by_file = false;
    for (const std::size_t length : {0U, 1U, 5U, 20U, 20U, 200U}) {
        DEV_INFO_PROBE manager;
        manager.parse_database(reinterpret_cast<unsigned char*>(body.data()), true);
        manager.m_device_database[40].device = static_cast<DEV_DEVICE_ENUM>(4);
        manager.m_pgm_parts = random_part_list(random, length);
        std::vector<BYTE> buffer(manager.get_table_size());
        BYTE* data = buffer.data();
        DWORD index = 0;
        manager.print_table(&data, index);
        EXPECT_EQ(manager.m_device_table[DEV_DEVICE_INVALID], 0xFFFFFFFF);
        EXPECT_EQ(manager.m_device_table[4], 40U);
        for (int number = DEV_DEVICE_INVALID + 1; number < DEV_DEVICE_MAX; ++number) {
            const auto device = static_cast<DEV_DEVICE_ENUM>(number);
            EXPECT_EQ(manager.m_device_table[number], governing_record(manager, device)) << length << ": " << number;
            by_file = by_file || (!manager.search_device(device, false) && manager.search_pcf_for_device(device));
        }
    }
    EXPECT_TRUE(by_file);
}

}  // namespace
