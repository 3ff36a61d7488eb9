#include <algorithm>

#include "cfg.h"
#include "faults/every_fault.h"
#include "pgmdev/flash/source_fixture.h"
#include "pgmdev/profiles/fixture.h"
#include "pgmdev_dev_info_manager.h"
#include "pgmdev_flash_manager.h"
#include "pgmdev_flash_table.h"
#include "support/process.h"
#include "support/repeatable_random.h"
#include "support/reports.h"
#include "support/settings.h"

// Databases compiled and loaded on a system that fails: the output is the table or there is none.

namespace {

namespace flash_ref = flash_reference;
namespace profile_ref = dev_info_reference;

std::string flash_text(int rows) {
    return flash_ref::table(std::vector(static_cast<std::size_t>(rows), flash_ref::data_row()));
}

/// Compiling is done wholly or not at all.
class CompileFaults : public testing::Test {
protected:
    void expect_all_or_nothing(const std::string& source, const std::function<void()>& compile) {
        m_source = m_scratch.write("table.csv", source);
        compile();
        const std::string whole = read_file(m_output);
        const REPORTS quiet;
        with_each_allocation_failing([&] { m_scratch.write("table.pcf", "old"); }, compile,
                                     [&](bool ended) { EXPECT_TRUE(read_file(m_output) == (ended ? whole : "old")); });
        for (const int error : {EIO, EMFILE, EINTR, ENOSPC}) {
            with_each_call_failing<bool>(
                error, [&] { m_scratch.write("table.pcf", "old"); },
                [&] {
                    try {
                        compile();
                    } catch (const MSG_INTERNAL_ERROR_EXCEPTION&) {
                        return false;
                    }
                    return true;
                },
                [&](bool ended, const char* /*call*/) { EXPECT_TRUE(read_file(m_output) == (ended ? whole : "old")); });
        }
        EXPECT_EQ(m_scratch.file_count(), 2U);
    }

    SCRATCH m_scratch;
    std::string m_source;
    std::string m_output = m_scratch.path("table.pcf");
};

TEST_F(CompileFaults, FlashTable) {
    expect_all_or_nothing(flash_text(20), [this] {
        PGMDEV_FLASH_MANAGER manager(false, 1, true, false);
        manager.generate_flash_database(m_source, m_output);
    });
}

TEST_F(CompileFaults, ProfileTable) {
    const SCRATCH outbox;
    const SETTING messages("TESSARY_OUTBOX_DIR", outbox.directory().string());
    expect_all_or_nothing(profile_ref::source(profile_ref::rows()), [this] {
        PGMDEV_DEV_INFO_MANAGER manager(true);
        manager.generate_device_database(m_source, m_output);
    });
}

TEST(LoadFaults, FlashDatabaseIsWholeOrReported) {
    const DWORD whole = PGMDEV_FLASH_MANAGER(false, 1, false, false).get_flash_count();
    const REPORTS quiet;
    DWORD found = 0;
    const auto load = [&] { found = PGMDEV_FLASH_MANAGER(false, 1, false, false).get_flash_count(); };
    with_each_allocation_failing([&] { found = whole; }, load, [&](bool) { EXPECT_EQ(found, whole); });
    for (const int error : {EIO, EMFILE, EINTR}) {
        with_each_call_failing<bool>(
            error, [&] { found = whole; },
            [&] {
                try {
                    load();
                } catch (const MSG_INTERNAL_ERROR_EXCEPTION&) {
                    return false;
                }
                return true;
            },
            [&](bool, const char*) { EXPECT_EQ(found, whole); });
    }
}

TEST(LoadFaults, WithoutMemoryForZlibNothingIsLoadedOrWritten) {
    const REPORTS quiet;
    const SCRATCH scratch;
    const std::string source = scratch.write("table.csv", flash_text(20));
    const std::string output = scratch.path("table.pcf");
    const auto ended = [](const std::function<void()>& operation) {
        try {
            operation();
        } catch (const MSG_INTERNAL_ERROR_EXCEPTION&) {
            return false;
        }
        return true;
    };
    const auto compile = [&] { PGMDEV_FLASH_MANAGER(false, 1, true, false).generate_flash_database(source, output); };
    compile();
    const std::string whole = read_file(output);
    bool done = false;
    int refused = 0;
    with_each_malloc_failing([&] { scratch.write("table.pcf", "old"); }, [&] { done = ended(compile); },
                             [&] {
                                 EXPECT_TRUE(read_file(output) == (done ? whole : "old"));
                                 refused += done ? 0 : 1;
                             });
    EXPECT_GT(refused, 0);
    std::size_t found = 0;
    with_each_malloc_failing(
        [&] { found = 0; },
        [&] { done = ended([&] { found = PGMDEV_FLASH_TABLE::from_database(output).records().size(); }); },
        [&] { EXPECT_EQ(found, done ? 20U : 0U); });
}

TEST(LoadFaults, ProfileDatabaseIsWholeOrReported) {
    const REPORTS quiet;
    with_each_allocation_failing(
        [] {},
        [] {
            PGMDEV_DEV_INFO_MANAGER profiles;
            const std::unique_ptr<PGMDEV_DEVICE_INFO> found(profiles.get_db_by_device(DEV_DEVICE_GENERIC));
            EXPECT_NE(found, nullptr);
        },
        [](bool) {}, 16);
}

/// What loading a database ends with, and the most memory that it takes.
class LoadMemory : public testing::Test {
protected:
    static constexpr const char* SOUND = "(no report)";
    static constexpr long long MEBIBYTE = 1 << 20;
    static constexpr long long LONGEST_BODY = 128 * MEBIBYTE;

    static std::string stating(unsigned long long size, const std::string& stream) {
        return flash_ref::head() + flash_ref::le32(size) + stream + "cc";
    }

    void expect(const std::string& file, const std::string& report, long long most) {
        const std::string path = m_scratch.write("stranger.pcf", file);
        expect_of_file(path, report, most);
    }

    static void expect_of_file(const std::string& path, const std::string& report, long long most) {
        const COUNTED_MEMORY memory;
        EXPECT_EQ(report_of([&path] { PGMDEV_FLASH_TABLE::from_database(path); }), report);
        EXPECT_LE(memory.most(), most);
    }

    /// Until the contents are known to be sound.
    static long long bound(std::size_t file_size) { return 4 * static_cast<long long>(file_size) + MEBIBYTE; }

    const std::string m_payload = flash_ref::payload({flash_ref::sample("A")});
    SCRATCH m_scratch;
};

TEST_F(LoadMemory, IsThatOfTheFileUntilItsContentsAreKnown) {
    constexpr unsigned long long ALL = 0xFFFFFFFF;
    const auto expect_modesty = [this](const std::string& file, const std::string& report) {
        expect(file, report, bound(file.size()));
    };
    const std::string far = flash_ref::deflated_with_zeros("", 400 * MEBIBYTE);
    expect_modesty(stating(ALL, far), "Mismatch version between flash file and reader");
    const std::string many = flash_ref::le32(1) + flash_ref::le32(ALL) + flash_ref::le32(33);
    expect_modesty(stating(ALL, flash_ref::deflated_with_zeros(many, 400 * MEBIBYTE)), "index < data_size");
    expect_modesty(stating(ALL, flash_ref::deflated_with_zeros(m_payload, 400 * MEBIBYTE)),
                   "memory_size <= PACKED_BODY_MAX");
    std::string noise(MEBIBYTE, '\0');
    auto random = repeatable_random(1);
    std::generate(noise.begin(), noise.end(), [&random] { return static_cast<char>(random()); });
    constexpr const char* FAILED =
        "zlib_uncompress(decompressed_data, &new_dcmp_size, data, decompressed_count) == ZLIB_OK";
    expect_modesty(stating(ALL, noise), FAILED);
    expect_modesty(stating(ALL, flash_ref::deflated(noise)), "new_dcmp_size == original_count");
}

TEST_F(LoadMemory, IsThatOfTheBodyThen) {
    const std::string longest = stating(LONGEST_BODY, flash_ref::deflated_with_zeros(m_payload, LONGEST_BODY));
    expect(longest, SOUND, LONGEST_BODY + bound(longest.size()));
}

TEST_F(LoadMemory, IsNotThatOfAHoleBehindTheStream) {
    const std::string path = m_scratch.write("hole.pcf", flash_ref::file(m_payload));
    std::filesystem::resize_file(path, std::uintmax_t{5} << 30);
    expect_of_file(path, SOUND, MEBIBYTE + MEBIBYTE / 2);
    m_scratch.write("hole.pcf", stating(0xFFFFFFFF, flash_ref::deflated(m_payload)));
    std::filesystem::resize_file(path, std::uintmax_t{5} << 30);
    expect_of_file(path, "new_dcmp_size == original_count", 3 * LONGEST_BODY + MEBIBYTE);
}

TEST(TableLimits, TablesThatWouldTakeAllMemoryAreRefused) {
    const SCRATCH scratch;
    const REPORTS quiet;
    const std::string commas(std::size_t{20} << 20, ',');
    std::string feeds(std::size_t{20} << 20, '\n');
    for (const std::string& text : {commas, feeds}) {
        const PGMDEV_FLASH_TABLE table = PGMDEV_FLASH_TABLE::from_source(scratch.write("table.csv", text));
        EXPECT_TRUE(table.records().empty());
        EXPECT_FALSE(table.faults().empty());
        EXPECT_LT(table.faults().size(), 10U);
    }
    EXPECT_FALSE(PGMDEV_FLASH_TABLE::from_source("/dev/zero").faults().empty());
}

constexpr const char* OWN_PROCESS = "FAULT_TESTS_OWN_PROCESS";

TEST(ConfigurationFaults, OneOfSeveralFilesThatCannotBeReadIsReadAgain) {
    if (std::getenv(OWN_PROCESS) == nullptr) {  // files are read once in a process
        const PROCESS_RESULT result =
            run_process({{std::filesystem::read_symlink("/proc/self/exe").string(),
                          "--gtest_filter=ConfigurationFaults.OneOfSeveralFilesThatCannotBeReadIsReadAgain"},
                         "",
                         {{OWN_PROCESS, "1"}},
                         {}});
        EXPECT_EQ(result.exit_code, 0) << result.output;
        return;
    }
    const SCRATCH scratch;
    const std::string system_file = scratch.path("system/etc/tessary/tessary.conf");
    std::filesystem::create_directories(system_file);
    scratch.write("user/tessary/tessary.conf", "KEY = of the user\n");
    ASSERT_EQ(::unsetenv("TESSARY_CONFIG_FILE"), 0);
    ASSERT_EQ(::setenv("TESSARY_SYSTEM_ROOT", scratch.path("system").c_str(), 1), 0);
    ASSERT_EQ(::setenv("XDG_CONFIG_HOME", scratch.path("user").c_str(), 1), 0);
    EXPECT_EQ(cfg_get_value("KEY"), "of the user");
    std::filesystem::remove(system_file);
    scratch.write("system/etc/tessary/tessary.conf", "KEY = of the system\nOTHER_KEY = other\n");
    EXPECT_EQ(cfg_get_value("OTHER_KEY"), "other");
    EXPECT_EQ(cfg_get_value("KEY"), "of the user");
}

TEST(ConfigurationFaults, AFileThatIsCutGivesNothing) {
    if (std::getenv(OWN_PROCESS) == nullptr) {  // files are read once in a process
        const PROCESS_RESULT result = run_process({{std::filesystem::read_symlink("/proc/self/exe").string(),
                                                    "--gtest_filter=ConfigurationFaults.AFileThatIsCutGivesNothing"},
                                                   "",
                                                   {{OWN_PROCESS, "1"}},
                                                   {}});
        EXPECT_EQ(result.exit_code, 0) << result.output;
        return;
    }
    const SCRATCH scratch;
    const std::string file = scratch.write("tessary.conf", "SOME_KEY = value\nOTHER_KEY = other\n");
    const char* const present = std::getenv("TESSARY_CONFIG_FILE");
    ASSERT_NE(present, nullptr);
    const std::string former = present;
    ASSERT_EQ(::setenv("TESSARY_CONFIG_FILE", file.c_str(), 1), 0);
    std::string value;
    std::string other;
    const std::string key = "OTHER_KEY";
    for (const int error : {EIO, EMFILE, EINTR}) {
        for (std::size_t number = 1; number < 20; ++number) {
            const FAILING_CALL fault(number, error);
            other = cfg_get_value(key);
            EXPECT_TRUE(other.empty() || other == "other");
        }
    }
    EXPECT_EQ(cfg_get_value(key), "other");  // a fault that has passed leaves nothing behind
    ASSERT_EQ(::setenv("TESSARY_CONFIG_FILE", former.c_str(), 1), 0);
}

}  // namespace
