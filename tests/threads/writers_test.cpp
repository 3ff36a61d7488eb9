#include <gtest/gtest.h>

#include <atomic>
#include <set>
#include <thread>

#include "cfg.h"
#include "gen.h"
#include "msg.h"
#include "pgm_common.h"
#include "pgmdev/parameters/fixture.h"
#include "support/scratch.h"
#include "support/settings.h"
#include "support/start_line.h"

// Eight threads that write, report and speak at the same time.

namespace {

constexpr std::size_t WRITERS = 8;

void in_all_threads(const std::function<void(std::size_t thread)>& operation) {
    START_LINE line(static_cast<int>(WRITERS));
    std::vector<std::thread> threads;
    for (std::size_t i = 0; i < WRITERS; ++i) {
        threads.emplace_back([&, i] {
            line.arrive_and_wait();
            operation(i);
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
}

TEST(ManyThreads, WriteIntoTheContainer) {
    const FLASH_INI_DIRECTORY directory;
    constexpr int ROUNDS = 3;
    std::atomic<int> failed{0};
    in_all_threads([&](std::size_t thread) {
        const auto which = static_cast<unsigned>(thread % PGMDEV_FLASH_INI_MAX);
        for (int round = 0; round < ROUNDS; ++round) {
            failed += FLASH_INI_DIRECTORY::write(which, "block " + std::to_string(which)) ? 0 : 1;
            failed += FLASH_INI_DIRECTORY::read(which) == "block " + std::to_string(which) ? 0 : 1;
        }
    });
    EXPECT_EQ(failed, 0);
    EXPECT_EQ(directory.file(), ini_reference::file({"block 0", "block 1", "block 2"}));
}

TEST(ManyThreads, SendMessages) {
    const SCRATCH scratch;
    const SETTING outbox("TESSARY_OUTBOX_DIR", scratch.path("made/by the first"));
    std::atomic<int> sent{0};
    in_all_threads([&](std::size_t thread) {
        sent += PGM_COMMON::send_auto_email_file("one", "of all", {1}) ? 1 : 0;
        sent += PGM_COMMON::send_auto_email_file("another", std::to_string(thread), {2}) ? 1 : 0;
    });
    EXPECT_EQ(sent, 2 * static_cast<int>(WRITERS));
    std::multiset<std::string> found;
    for (const auto& file : std::filesystem::directory_iterator(scratch.path("made/by the first"))) {
        found.insert(read_file(file.path()));
    }
    std::multiset<std::string> expected{"To: 1\nSubject: one\n\nof all"};
    for (std::size_t i = 0; i < WRITERS; ++i) {
        expected.insert("To: 2\nSubject: another\n\n" + std::to_string(i));
    }
    EXPECT_EQ(found, expected);
}

TEST(ManyThreads, ReportToOneHandler) {
    std::atomic<int> received{0};
    const auto previous = MSG_INTERNAL_ERROR::set_handler([&received](const MSG_INTERNAL_ERROR_REPORT& report) {
        ++received;
        throw MSG_INTERNAL_ERROR_EXCEPTION(report);
    });
    std::atomic<int> thrown{0};
    in_all_threads([&](std::size_t /*thread*/) {
        for (int round = 0; round < 20; ++round) {
            try {
                PGM_COMMON::get_block_sha("", 0, 20);
            } catch (const MSG_INTERNAL_ERROR_EXCEPTION&) {
                ++thrown;
            }
        }
    });
    MSG_INTERNAL_ERROR::set_handler(previous);
    EXPECT_EQ(received, 20 * static_cast<int>(WRITERS));
    EXPECT_EQ(thrown, received);
}

TEST(ManyThreads, SpeakToOneListener) {
    std::atomic<int> heard{0};
    const MSG_DEBUG_SINK previous =
        msg_set_debug_sink([&heard](const std::string& logger, int level, const std::string& text) {
            heard += logger == "TEST" && level == 2 && text == "of a thread" ? 1 : 0;
        });
    in_all_threads([](std::size_t /*thread*/) {
        for (int round = 0; round < 20; ++round) {
            msg_local_vdebug("TEST", 2, "of %s", "a thread");
        }
    });
    msg_set_debug_sink(previous);
    EXPECT_EQ(heard, 20 * static_cast<int>(WRITERS));
}

TEST(ManyThreads, SetAndAskTheConfigurationAndTheDirectories) {
    std::atomic<int> wrong{0};
    in_all_threads([&](std::size_t thread) {
        const std::string key = "TESSARY_TEST_OF_THREAD_" + std::to_string(thread);
        for (int round = 0; round < 100; ++round) {
            cfg_set_value(key, std::to_string(round));
            wrong += cfg_get_value(key) == std::to_string(round) ? 0 : 1;
            cfg_clear_value(key);
            wrong += cfg_get_value(key).empty() ? 0 : 1;
            gen_set_module_path(thread % 2 == 0 ? TEST_DEVICES_DIR : "");
            wrong += gen_get_module_path().empty() ? 1 : 0;
        }
    });
    gen_set_module_path("");
    EXPECT_EQ(wrong, 0);
}

}  // namespace
