#include <algorithm>

#include "c/owned.h"
#include "dev.h"
#include "dstr.h"
#include "pgmdev_device_grammar_mgr.h"
#include "pgmdev_mgr.h"
#include "pgmdev_part_index.h"
#include "stl.h"
#include "support/reports.h"

// Parts, ordering codes and lists of the device library.

namespace {

template <class IDENTIFIER>
std::string upper(IDENTIFIER identifier) {
    std::string name = dstr_get_user_string(identifier);
    stl_toupper(name);
    return name;
}

}  // namespace

TEST(CParts, OrderingCodesAreThoseOfTheClass) {
    C_STRING name;
    for (int part = DEV_PART_INVALID + 1; part < DEV_PART_GENERIC; ++part) {
        const std::string part_name = dstr_get_user_string(part);
        uint32_t index = 0;
        const DWORD expected = PGMDEV_MGR::get_opn_enum(part_name);
        ASSERT_EQ(pgmdev_opn_index(part_name.c_str(), &index, nullptr),
                  expected != INVALID_DWORD ? PGMDEV_STATUS_OK : PGMDEV_STATUS_NOT_FOUND);
        ASSERT_EQ(index, expected != INVALID_DWORD ? expected : 0);
        uint64_t hash = 0;
        ASSERT_EQ(pgmdev_opn_hash(part_name.c_str(), &hash, nullptr), PGMDEV_STATUS_OK);
        ASSERT_EQ(hash, PGMDEV_MGR::get_opn_hash(part_name));
        if (part % 64 == 1) {
            ASSERT_EQ(said(pgmdev_opn_name(index, name.place(), nullptr), name), said(PGMDEV_MGR::get_opn(index)));
            ASSERT_EQ(said(pgmdev_opn_from_hash(hash, name.place(), nullptr), name), said(upper(part)));
        }
    }
    uint64_t hash = 1;
    EXPECT_EQ(pgmdev_opn_hash("no such part", &hash, nullptr), PGMDEV_STATUS_NOT_FOUND);
    EXPECT_EQ(hash, 0U);
    EXPECT_EQ(pgmdev_opn_name(INVALID_DWORD, name.place(), nullptr), PGMDEV_STATUS_NOT_FOUND);
}

TEST(CParts, ByLessSpecificNames) {
    const REPORTS quiet;
    C_PART_INDEX index;
    ASSERT_EQ(pgmdev_part_index_open(index.place(), nullptr), PGMDEV_STATUS_OK);
    const PGMDEV_PART_INDEX parts;
    C_STRING part;
    for (const std::string name : {"KES50", "kes50c6", "KES_50", "HER_NX55", "KESTREL", "no such name"}) {
        EXPECT_EQ(said(pgmdev_part_from_pcf(name.c_str(), part.place(), nullptr), part),
                  said(PGMDEV_MGR::get_part_name_from_pcf(name)));
        EXPECT_EQ(said(pgmdev_part_complete(name.c_str(), part.place(), nullptr), part),
                  said(PGMDEV_MGR::get_possible_full_name(name)));
        EXPECT_EQ(said(pgmdev_part_index_from_pcf(index, name.c_str(), part.place(), nullptr), part),
                  said(parts.get_part_name_from_pcf(name)));
        EXPECT_EQ(said(pgmdev_part_index_complete(index, name.c_str(), part.place(), nullptr), part),
                  said(parts.get_possible_full_name(name)));
    }
    for (int device = 1; device < DEV_DEVICE_GENERIC; device += 20) {
        const std::string name = dstr_get_user_string(static_cast<DEV_DEVICE_ENUM>(device));
        EXPECT_EQ(said(pgmdev_part_from_device(name.c_str(), part.place(), nullptr), part),
                  said(PGMDEV_MGR::get_part_name_from_dev(name)));
    }
}

TEST(CParts, TheListIsThatOfTheDeviceLibrary) {
    std::vector<int> numbers;
    DEV_PART_MANAGER manager;
    manager.filter_part_list(&numbers, "ANY", "ANY", "ANY", "ANY", "ANY", false, false, false, "ANY");
    C_RECORDS parts;
    ASSERT_EQ(pgmdev_part_list(nullptr, parts.place(), nullptr), PGMDEV_STATUS_OK);
    EXPECT_EQ(member_names(parts),
              (std::vector<std::string>{"number", "name", "device", "family", "package_name", "pgm_name",
                                        "pgm_part_pcf", "pgm_family_pcf", "orderable", "production", "hidden"}));
    ASSERT_EQ(pgmdev_records_count(parts), numbers.size());
    for (std::size_t i = 0; i < numbers.size(); i += 50) {
        const std::vector<std::string> row = row_of(parts, i);
        const std::string name = upper(numbers[i]);
        const DEV_DEVICE_ENUM device = manager.get_device_of(numbers[i]);
        EXPECT_EQ((std::vector<std::string>(row.begin(), row.begin() + 6)),
                  (std::vector<std::string>{std::to_string(numbers[i]), name, upper(device),
                                            upper(manager.get_family_of(device)),
                                            PGMDEV_DEVICE_GRAMMAR_MGR::get_package_name(name, true),
                                            PGMDEV_DEVICE_GRAMMAR_MGR::get_pgm_name(name, false, true)}));
        EXPECT_EQ(row.back(), "0");
    }
}

TEST(CParts, FiltersAreThoseOfTheDeviceLibrary) {
    pgmdev_part_filter filter{};
    filter.struct_size = sizeof filter;
    filter.family = "osprey";
    filter.package = "FBGA";
    filter.temperature = "INDUSTRIAL";
    filter.orderable = true;
    filter.hidden = true;
    C_RECORDS parts;
    ASSERT_EQ(pgmdev_part_list(&filter, parts.place(), nullptr), PGMDEV_STATUS_OK);
    std::vector<int> numbers;
    DEV_PART_MANAGER().filter_part_list(&numbers, "osprey", "ANY", "FBGA", "ANY", "ANY", true, false, true,
                                        "INDUSTRIAL");
    ASSERT_FALSE(numbers.empty());
    ASSERT_EQ(pgmdev_records_count(parts), numbers.size());
    for (std::size_t i = 0; i < numbers.size(); ++i) {
        uint64_t number = 0;
        ASSERT_EQ(pgmdev_records_number(parts, i, "number", &number, nullptr), PGMDEV_STATUS_OK);
        ASSERT_EQ(number, static_cast<uint64_t>(numbers[i]));
    }
}

TEST(CParts, DevicesAndFamilies) {
    C_RECORDS devices;
    C_RECORDS families;
    ASSERT_EQ(pgmdev_device_list(devices.place(), nullptr), PGMDEV_STATUS_OK);
    ASSERT_EQ(pgmdev_family_list(families.place(), nullptr), PGMDEV_STATUS_OK);
    std::size_t row = 0;
    for (int number = 1; number < DEV_DEVICE_GENERIC; ++number) {
        const auto device = static_cast<DEV_DEVICE_ENUM>(number);
        const std::string name = upper(device);
        if (!name.empty()) {
            ASSERT_EQ(
                row_of(devices, row++),
                (std::vector<std::string>{std::to_string(number), name, upper(DEV_PART_MANAGER().get_family_of(device)),
                                          PGMDEV_DEVICE_GRAMMAR_MGR::get_dev_part_pcf(name),
                                          PGMDEV_DEVICE_GRAMMAR_MGR::get_dev_family_pcf(name)}));
        }
    }
    EXPECT_EQ(row, pgmdev_records_count(devices));
    row = 0;
    for (int number = 1; number < DEV_FAMILY_GENERIC; ++number) {
        const std::string name = upper(static_cast<DEV_FAMILY_ENUM>(number));
        if (!name.empty()) {
            ASSERT_EQ(row_of(families, row++),
                      (std::vector<std::string>{std::to_string(number), name,
                                                PGMDEV_DEVICE_GRAMMAR_MGR::get_pcf_family_pcf(name)}));
        }
    }
    EXPECT_EQ(row, pgmdev_records_count(families));
}
