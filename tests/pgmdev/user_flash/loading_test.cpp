#include <gtest/gtest.h>

#include "msg.h"
#include "pgmdev/user_flash/reference.h"
#include "support/console.h"
#include "support/repeatable_random.h"
#include "support/reports.h"
#include "support/scratch.h"
#include "support/settings.h"

// A description in the configuration: what of it is taken, and how it becomes record 0.

namespace {

namespace flash = flash_reference;
namespace ref = user_flash_reference;

const PGMDEV_SFL_FLASH_INFO CLEARED;

class UserFlashLoading : public testing::Test {
protected:
    /// Reads a configuration value into a manager that held something else before; what it printed stays in m_printed.
    PGMDEV_SFL_FLASH_INFO parse(const std::string& value, bool debug = false) {
        const SETTING setting(ref::KEY, value);
        const SETTING debug_setting(ref::KEY + "_DEBUG", debug ? "on" : "off");
        USER_FLASH_PROBE manager;
        manager.m_ini_flash_info = flash::sample();
        const CONSOLE console;
        manager.parse_ext_flash_info();
        m_printed = console.output();
        return manager.m_ini_flash_info;
    }
    PGMDEV_SFL_FLASH_INFO parse_text(const std::string& text, bool debug = false) {
        return parse(ref::encoded(text), debug);
    }
    bool takes(const ref::CHANGES& changes) {
        const bool taken = parse_text(ref::sealed(ref::body(changes))).device_name == "AC25X80";
        EXPECT_EQ(m_printed, "") << "silent whatever it finds";
        return taken;
    }

    std::string m_printed;
    TOOL_VERSION m_version{"7.1.0", 2, 345};
};

TEST_F(UserFlashLoading, TakesASignedDescription) {
    EXPECT_EQ(parse_text(ref::sealed(ref::body())), ref::record());
    EXPECT_EQ(m_printed, "");
}

TEST_F(UserFlashLoading, ClearsTheRecordWithoutAValue) {
    EXPECT_EQ(parse(""), CLEARED);
    EXPECT_EQ(m_printed, "");
}

TEST_F(UserFlashLoading, SaysOnlyThatItDoesNotDecode) {
    EXPECT_EQ(parse("no such text"), CLEARED);
    EXPECT_EQ(m_printed, "Invalid INI decoding\n");
    for (const bool debug : {false, true}) {
        EXPECT_EQ(parse("nosuchtext", debug), CLEARED);
        EXPECT_EQ(m_printed, "Fail to generate INI because of decompression failure\n");
    }
}

TEST_F(UserFlashLoading, UpperCasesTheValuesButSignsThemAsTheyAre) {
    const std::string body = ref::body({{"device_name", "ac25x80"}, {"manufacturer_name", "Acme"}});
    EXPECT_EQ(parse_text(ref::sealed(body)), ref::record());
    EXPECT_EQ(parse_text(body + "#" + ref::password(ref::body(), ref::BANNER) + ";"), CLEARED);
}

TEST_F(UserFlashLoading, IgnoresWhatIsAroundTheValuesAndBehindTheEnd) {
    EXPECT_EQ(parse_text(ref::sealed("a comment" + ref::body() + "and another@one")), ref::record());
    EXPECT_EQ(parse_text(ref::sealed(ref::body()) + "@X@#Y;;#"), ref::record());
}

TEST_F(UserFlashLoading, TakesTheFirstOfSeveral) {
    const std::string other = ref::sealed(ref::body({{"device_name", "OTHER"}}));
    EXPECT_EQ(parse_text(ref::sealed(ref::body()) + other), ref::record());
    EXPECT_EQ(parse_text(other + ref::sealed(ref::body())).device_name, "OTHER");
}

TEST_F(UserFlashLoading, RefusesTextsOfAnotherForm) {
    const std::string body = ref::body();
    const std::string password = ref::password(body, ref::BANNER);
    const std::vector<std::string> texts{
        body,                               // neither piece
        body + "#" + password,              // no end
        body + ";" + password + "#",        // the wrong way round
        ";" + body + "#" + password + ";",  // the first end is before the password
        "#" + password + ";",               // no body
        body + "#;",                        // no password
        body + "##" + password + ";",       // the password begins with '#'
        body + "#" + password + " ;",
        body.substr(0, body.size() - 1) + "#" + password + ";",
        "##########;;;;;;;;;;",
    };
    for (const std::string& text : texts) {
        EXPECT_EQ(parse_text(text), CLEARED) << text;
        EXPECT_EQ(m_printed, "") << text;
    }
}

TEST_F(UserFlashLoading, NeedsThirtyFourMarks) {
    const std::string body = ref::body();
    const std::string cut = body.substr(0, body.size() - 1);  // one short
    EXPECT_EQ(parse_text(ref::sealed(cut)), CLEARED);
    parse_text(ref::sealed(cut), true);
    EXPECT_NE(m_printed.find("Status 31 : 1\nStatus 32 : 0\n"), std::string::npos);
    // The mark that is missing is not taken from behind the body.
    EXPECT_EQ(parse_text(cut + "#" + ref::password(cut, ref::BANNER) + ";@@@"), CLEARED);
    // A doubled mark is an empty value, which moves all others by one.
    EXPECT_EQ(parse_text(ref::sealed("@" + body)), CLEARED);
}

TEST_F(UserFlashLoading, RefusesAValueThatIsNotAccepted) {
    EXPECT_FALSE(takes({{"bottom_value", "-1"}}));
    EXPECT_TRUE(takes({{"memory_type_index", "-1"}}));
    EXPECT_FALSE(takes({{"silicon_id", "TRUE"}}));
}

struct BOUND {
    ref::CHANGES changes;
    bool plausible;
};

TEST_F(UserFlashLoading, ChecksThePlausibilityToItsBounds) {
    const std::vector<BOUND> bounds{
        {{{"memory_id", "0"}}, false},
        {{{"memory_id", "1"}}, true},
        {{{"memory_id", "255"}}, true},
        {{{"memory_id_index", "3"}}, false},
        {{{"memory_id_index", "255"}}, false},
        {{{"memory_id_index", "0"}, {"mfc_id_index", "2"}}, true},
        {{{"memory_type_index", "3"}}, false},
        {{{"memory_type_index", "254"}}, false},
        {{{"memory_type_index", "255"}}, true},
        {{{"memory_type_index", "2"}}, false},  // as memory_id_index
        {{{"memory_type_index", "0"}}, false},  // as mfc_id_index
        {{{"memory_type_index", "0"}, {"mfc_id_index", "1"}}, true},
        {{{"mfc_id_index", "3"}}, false},
        {{{"mfc_id_index", "254"}}, false},
        {{{"mfc_id_index", "255"}}, true},
        {{{"mfc_id_index", "-1"}}, true},
        {{{"mfc_id_index", "2"}}, false},  // as memory_id_index
        {{{"mfc_id_index", "1"}}, false},  // as memory_type_index
        {{{"mfc_id_index", "255"}, {"memory_type_index", "255"}}, true},
        {{{"mfc_id_index", "1"}, {"memory_type_index", "255"}}, true},
        {{{"mfc_id_index", "2"}, {"memory_type_index", "255"}}, false},
        {{{"die_count", "0"}}, false},
        {{{"die_count", "1"}}, true},
        {{{"die_count", "255"}}, true},
        {{{"device_bit_size", "0"}}, false},
        {{{"device_bit_size", "1048575"}}, false},
        {{{"device_bit_size", "1048576"}}, true},
        {{{"device_bit_size", "1572864"}}, false},  // one and a half megabits
        {{{"device_bit_size", "3145728"}}, true},   // a whole number is enough
        {{{"device_bit_size", "-2147483648"}}, true},
        {{{"device_bit_size", "4293918720"}}, true},
        {{{"device_sector_byte", "0"}}, false},
        {{{"device_sector_byte", "1023"}}, false},
        {{{"device_sector_byte", "1024"}}, true},
        {{{"device_sector_byte", "1025"}}, false},
        {{{"device_sector_byte", "1536"}}, false},  // one and a half kilobytes
        {{{"device_sector_byte", "3072"}}, true},
        {{{"bulk_erase_time", "0"}}, false},
        {{{"bulk_erase_time", "1"}}, true},
        {{{"bulk_erase_time", "900"}}, true},
        {{{"bulk_erase_time", "901"}}, false},
        {{{"sec_erase_time", "0"}}, false},
        {{{"sec_erase_time", "1"}}, true},
        {{{"sec_erase_time", "60"}}, true},
        {{{"sec_erase_time", "61"}}, false},
        {{{"program_utime", "999"}}, false},
        {{{"program_utime", "1000"}}, true},
        {{{"program_utime", "1000000"}}, true},
        {{{"program_utime", "1000001"}}, false},
        {{{"protection_division", "0"}}, true},
        {{{"protection_division", "31"}}, true},
        {{{"protection_division", "32"}}, false},
        {{{"protection_division", "254"}}, false},
        {{{"protection_division", "255"}}, true},
    };
    for (const BOUND& bound : bounds) {
        EXPECT_EQ(takes(bound.changes), bound.plausible)
            << bound.changes.front().first << " " << bound.changes.front().second;
    }
    for (int id = 0; id < 256; ++id) {
        const bool known = id == 16 || id == 18 || id == 20 || id == 21 || id == 22 || id == 24 || id == 25 || id == 32;
        EXPECT_EQ(takes({{"orvane_id", std::to_string(id)}}), known) << id;
    }
}

TEST_F(UserFlashLoading, RefusesThePasswordOfAnotherBuild) {
    const TOOL_VERSION version("7.1.0", 2, 346);
    EXPECT_EQ(parse_text(ref::sealed(ref::body())), CLEARED);
}

std::string statuses() {
    std::string lines;
    for (int i = 0; i < static_cast<int>(flash_reference::MEMBERS); ++i) {
        lines += "Status " + std::to_string(i) + " : 1\n";
    }
    return lines;
}

TEST_F(UserFlashLoading, TellsItsStepsInDebugMode) {
    const std::string body = ref::body();
    const std::string password = ref::password(body, ref::BANNER);
    const std::string text = body + "#" + password + ";";
    EXPECT_EQ(parse_text(text + "rest", true), ref::record());
    EXPECT_EQ(m_printed, text + "rest\n" + body + "\n" + password + "\n" + statuses());

    const std::string unsigned_text = body + "#ABCDEFGHIJKLMNOP;";
    EXPECT_EQ(parse_text(unsigned_text, true), CLEARED);
    EXPECT_EQ(m_printed,
              unsigned_text + "\n" + body + "\nABCDEFGHIJKLMNOP\n" + statuses() + "Fail to compare INI password\n");

    // Plausibility comes before the password, and both are not told.
    const std::string odd = ref::body({{"die_count", "0"}});
    EXPECT_EQ(parse_text(odd + "#X;", true), CLEARED);
    EXPECT_EQ(m_printed, odd + "#X;\n" + odd + "\nX\n" + statuses() + "Fail to check the validity of the INI\n");

    // Of a value that is not accepted nothing more is said.
    const std::string refused = ref::body({{"sdm_support", "2"}});
    EXPECT_EQ(parse_text(refused + "#X;", true), CLEARED);
    EXPECT_EQ(m_printed, refused + "#X;\n" + refused + "\nX\n" + statuses());

    EXPECT_EQ(parse_text("@A@B#X;", true), CLEARED);
    EXPECT_EQ(m_printed, "@A@B#X;\n@A@B\nX\nStatus 0 : 1\nStatus 1 : 0\n");
    EXPECT_EQ(parse_text("no separators", true), CLEARED);
    EXPECT_EQ(m_printed, "no separators\n");
    EXPECT_EQ(parse_text("#only a password;", true), CLEARED);
    EXPECT_EQ(m_printed, "#only a password;\n\nonly a password\n");
    EXPECT_EQ(parse("", true), CLEARED);
    EXPECT_EQ(m_printed, "");
}

TEST_F(UserFlashLoading, ListsTheRecordWhenAskedToPrint) {
    int lines = 0;
    const MSG_DEBUG_SINK previous = msg_set_debug_sink(
        [&](const std::string&, int, const std::string& text) { lines += text.starts_with("3rd party") ? 1 : 0; });
    USER_FLASH_PROBE manager;
    manager.m_print_on_load = 1;
    {
        const SETTING setting(ref::KEY, ref::encoded(ref::body() + "#WRONG;"));
        manager.parse_ext_flash_info();
        EXPECT_EQ(lines, 0);
    }
    const SETTING setting(ref::KEY, ref::encoded(ref::sealed(ref::body())));
    manager.parse_ext_flash_info();
    EXPECT_EQ(lines, static_cast<int>(flash_reference::MEMBERS));
    manager.m_print_on_load = 0;
    manager.parse_ext_flash_info();
    EXPECT_EQ(lines, static_cast<int>(flash_reference::MEMBERS));
    msg_set_debug_sink(previous);
}

TEST_F(UserFlashLoading, SurvivesDamage) {
    const std::string text = ref::sealed(ref::body());
    const std::string good = ref::encoded(text);
    auto random = repeatable_random(4);
    for (int i = 0; i < 3000; ++i) {
        std::string bad = good;
        const std::size_t where = random() % bad.size();
        switch (random() % 3) {
            case 0:
                bad[where] = static_cast<char>(1 + random() % 255);
                break;
            case 1:
                bad.erase(where, 1 + random() % 20);
                break;
            default:
                bad.insert(where, 1 + random() % 20, ref::SYMBOLS[random() % 64]);
        }
        // A few bits, behind the last block and behind the end of the stream, mean nothing.
        const PGMDEV_SFL_FLASH_INFO record = parse(bad);
        EXPECT_TRUE(record == CLEARED || record == ref::record()) << bad;
    }
    for (int i = 0; i < 3000; ++i) {
        std::string bad = text;
        bad[random() % bad.size()] = static_cast<char>(1 + random() % 255);
        if (parse_text(bad) != CLEARED) {  // then the letters happen to agree
            const std::string body = bad.substr(0, bad.find('#'));
            EXPECT_TRUE(bad.starts_with(ref::sealed(body))) << bad;
        }
    }
}

TEST_F(UserFlashLoading, SurvivesMegabytes) {
    auto random = repeatable_random(5);
    std::string noise(4'000'000, ' ');
    for (char& c : noise) {
        c = static_cast<char>(1 + random() % 255);
    }
    EXPECT_EQ(parse(noise), CLEARED);
    for (char& c : noise) {
        c = ref::SYMBOLS[random() % 64];
    }
    EXPECT_EQ(parse(noise), CLEARED);
    // NOLINTNEXTLINE(bugprone-string-constructor): a bomb
    EXPECT_EQ(parse_text(std::string(20'000'000, '@')), CLEARED);
    // A long text that is right all the same: comments may be of any length.
    std::string comment = noise.substr(0, 1'000'000);
    std::erase(comment, '@');
    EXPECT_EQ(parse_text(ref::sealed(comment + ref::body())), ref::record());
}

/// The same with a database around it.
class UserFlashDatabase : public UserFlashLoading {
protected:
    void write(const std::vector<PGMDEV_SFL_FLASH_INFO>& records) {
        m_scratch.write("programmer/pgm_flash.pcf", flash::file(flash::payload(records)));
    }

    SCRATCH m_scratch;
    DEVICE_DB_DIRECTORY m_directory{m_scratch.directory().string()};
};

TEST_F(UserFlashDatabase, BeginsWithTheUsersFlash) {
    write({flash::sample("FIRST"), flash::sample("SECOND")});
    const SETTING setting(ref::KEY, ref::encoded(ref::sealed(ref::body())));
    USER_FLASH_PROBE manager(false, 1, false, false);
    ASSERT_EQ(manager.get_flash_count(), 3U);
    EXPECT_EQ(manager.m_ini_count, 0U);
    EXPECT_EQ(manager.get_flash_database()[0], ref::record());
    EXPECT_EQ(manager.get_flash_database()[1], flash::sample("FIRST"));
    EXPECT_EQ(manager.get_flash_database()[2], flash::sample("SECOND"));
    BYTE response[256] = {0x20, 0x71, 0x14};
    EXPECT_TRUE(manager.flash_id_database_mapping(false, 0, response));
    EXPECT_EQ(manager.get_flash_mapping_index(0, false), 0U);
    EXPECT_EQ(manager.get_default_flash("ac25x80"), manager.get_flash_database());
}

TEST_F(UserFlashDatabase, PrefersTheUsersFlash) {
    PGMDEV_SFL_FLASH_INFO same = ref::record();
    same.device_name = "SAME";
    write({same});
    BYTE response[256] = {0x20, 0x71, 0x14};
    {
        const SETTING setting(ref::KEY, ref::encoded(ref::sealed(ref::body())));
        PGMDEV_FLASH_MANAGER manager(false, 1, false, false);
        ASSERT_TRUE(manager.flash_id_database_mapping(false, 0, response));
        EXPECT_EQ(manager.sfl_get_device_name(0), "AC25X80");
    }
    PGMDEV_FLASH_MANAGER manager(false, 1, false, false);
    ASSERT_TRUE(manager.flash_id_database_mapping(false, 0, response));
    EXPECT_EQ(manager.sfl_get_device_name(0), "SAME");
}

TEST_F(UserFlashDatabase, DoesNotCheckTheUsersFlashAgainstTheOthers) {
    PGMDEV_SFL_FLASH_INFO same_name = flash::sample("AC25X80");
    write({same_name});
    // Another default row of that name, and a switch that is off: neither counts for record 0.
    const SETTING setting(ref::KEY, ref::encoded(ref::sealed(ref::body({{"ini", "OFF"}}))));
    PGMDEV_FLASH_MANAGER manager(false, 1, false, false);
    ASSERT_EQ(manager.get_flash_count(), 2U);
    EXPECT_EQ(manager.get_flash_database()[0].ini, "OFF");
}

TEST_F(UserFlashDatabase, StandsAloneWhenAllOtherRowsAreDisabled) {
    PGMDEV_SFL_FLASH_INFO disabled = flash::sample();
    disabled.ini = "RARE";
    write({disabled, disabled});
    const SETTING setting(ref::KEY, ref::encoded(ref::sealed(ref::body())));
    PGMDEV_FLASH_MANAGER manager(false, 1, false, false);
    ASSERT_EQ(manager.get_flash_count(), 1U);
    EXPECT_EQ(manager.get_flash_database()[0], ref::record());
}

TEST_F(UserFlashDatabase, LoadsWithoutARefusedDescription) {
    write({flash::sample()});
    for (const std::string& value : {std::string("?"), ref::encoded(ref::body() + "#WRONG;"),
                                     ref::encoded(ref::sealed(ref::body({{"device_name", ""}})))}) {
        const SETTING setting(ref::KEY, value);
        const CONSOLE console;
        PGMDEV_FLASH_MANAGER manager(false, 1, false, false);
        ASSERT_EQ(manager.get_flash_count(), 1U);
        EXPECT_EQ(manager.get_flash_database()[0], flash::sample());
        EXPECT_EQ(console.output(), value == "?" ? "Invalid INI decoding\n" : "") << "it traces when asked to only";
    }
}

TEST_F(UserFlashDatabase, LeaksNothingWhenTheFileIsDamagedBehindIt) {
    const std::string payload = flash::payload({flash::sample()});
    m_scratch.write("programmer/pgm_flash.pcf", flash::file(payload.substr(0, payload.size() - 1) + "X"));
    const SETTING setting(ref::KEY, ref::encoded(ref::sealed(ref::body())));
    EXPECT_NE(report_of([] { PGMDEV_FLASH_MANAGER manager(false, 1, false, false); }), "(no report)");
}

TEST_F(UserFlashDatabase, EmptyManagersDoNotLookForIt) {
    const SETTING setting(ref::KEY, "?");
    const CONSOLE console;
    const USER_FLASH_PROBE manager;
    EXPECT_EQ(console.output(), "");
    EXPECT_EQ(manager.m_ini_flash_info, CLEARED);
}

}  // namespace
