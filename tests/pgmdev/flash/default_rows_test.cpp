#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <random>
#include <string>

#include "gen.h"
#include "pgmdev/flash/probe.h"
#include "support/repeatable_random.h"
#include "support/reports.h"

// Which name has no default row, or more than one, in tables of any names: beside walks over all rows.

namespace {

using RECORD = PGMDEV_SFL_FLASH_INFO;

/// Names that are often the same, or only for the host, or nearly the same: of letters in both cases, of characters that
/// differ from letters in the bit that makes the case, of others than ASCII, and longer than a text holds in itself.
std::string any_name(std::mt19937& chance) {
    static const std::string CHARACTERS = "aA@`zZ\xC4\xE4[{";
    std::string name = std::bernoulli_distribution(0.2)(chance) ? "A_NAME_LONGER_THAN_OTHERS_" : "";
    for (auto left = std::uniform_int_distribution<>(0, 2)(chance); left > 0; --left) {
        name += CHARACTERS[std::uniform_int_distribution<std::size_t>(0, CHARACTERS.size() - 1)(chance)];
    }
    return name;
}

/// What is reported: the first row in whose name something is wrong decides.
std::string expected_report(const RECORD* records, DWORD count) {
    for (DWORD i = 0; i < count; ++i) {
        const auto defaults = std::count_if(records, records + count, [&](const RECORD& other) {
            return other.default_dev && gen_stricmp(other.device_name, records[i].device_name) == 0;
        });
        if (defaults != 1) {
            return defaults > 1 ? "!one_default" : "one_default";
        }
    }
    return "(no report)";
}

TEST(FlashDefaultRows, AreTakenAsWalksOverAllRowsTakeThem) {
    auto chance = repeatable_random(20);
    std::array<int, 3> seen{};
    for (int round = 0; round < 400; ++round) {
        FLASH_PROBE manager;
        manager.m_flash_count = std::uniform_int_distribution<DWORD>(1, 12)(chance);
        manager.m_flash_database = new RECORD[manager.m_flash_count];
        for (DWORD i = 0; i < manager.m_flash_count; ++i) {
            RECORD& record = manager.m_flash_database[i];
            record.device_name = any_name(chance);
            // Mostly the first row of its name is the default one.
            const auto same = [&](const RECORD& other) {
                return gen_stricmp(other.device_name, record.device_name) == 0;
            };
            record.default_dev =
                std::none_of(manager.m_flash_database, &record, same) != std::bernoulli_distribution(0.06)(chance);
        }
        const std::string expected = expected_report(manager.m_flash_database, manager.m_flash_count);
        EXPECT_REPORT(manager.confirm_default_value(0), expected) << "round " << round;
        ++seen[expected == "(no report)" ? 0 : expected == "one_default" ? 1 : 2];
    }
    EXPECT_GT(*std::min_element(seen.begin(), seen.end()), 20);
}

constexpr DWORD MANY = 100000;

void give_many_rows(FLASH_PROBE& manager) {
    manager.m_flash_database = new RECORD[MANY];
    manager.m_flash_count = MANY;
}

TEST(FlashDefaultRows, AreFewForManyRowsOfOneName) {
    FLASH_PROBE manager;
    give_many_rows(manager);
    for (DWORD i = 0; i < MANY; ++i) {
        manager.m_flash_database[i].device_name = i % 2 == 0 ? "ONE" : "one";
    }
    EXPECT_REPORT(manager.confirm_default_value(0), "one_default");
    manager.m_flash_database[MANY - 1].default_dev = true;
    EXPECT_REPORT(manager.confirm_default_value(0), "(no report)");
    manager.m_flash_database[0].default_dev = true;
    EXPECT_REPORT(manager.confirm_default_value(0), "!one_default");
}

// Their bytes are none of ASCII, which are all alike to the hash of names: compared with each other, these would take a minute.
TEST(FlashDefaultRows, OfNamesThatAreMadeToBeAlike) {
    FLASH_PROBE manager;
    give_many_rows(manager);
    for (DWORD i = 0; i < MANY; ++i) {
        RECORD& record = manager.m_flash_database[i];
        for (DWORD rest = i, digit = 0; digit < 3; ++digit, rest /= 100) {
            record.device_name += static_cast<char>(0x80 + rest % 100);
        }
        record.default_dev = true;
    }
    EXPECT_REPORT(manager.confirm_default_value(0), "(no report)");
    manager.m_flash_database[MANY - 1].default_dev = false;
    EXPECT_REPORT(manager.confirm_default_value(0), "one_default");
    manager.m_flash_database[MANY - 1] = manager.m_flash_database[MANY - 2];
    EXPECT_REPORT(manager.confirm_default_value(0), "!one_default");
}

}  // namespace
