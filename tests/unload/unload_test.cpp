#include <gtest/gtest.h>

#include <array>
#include <thread>

#include "pgmdev_c.h"
#include "support/loaded_library.h"
#include "support/start_line.h"

// The library comes and goes with a plug-in, in a process that does not link it.

namespace {

constexpr int STORES = 9;
constexpr int QUESTIONS_FOR_INDEXES = 200;

/// Loads the plug-in, makes the first calls from two threads at once, and unloads it.
void come_and_go(bool with_indexes) {
    const LOADED_LIBRARY plugin(TEST_PLUGIN);
    const LOADED_LIBRARY::FUNCTION use_every_store = plugin.function("use_every_store");
    ASSERT_NE(use_every_store, nullptr);
    START_LINE line(2);
    const auto call_with_the_other = [&] {
        line.arrive_and_wait();
        return use_every_store();
    };
    std::array<int, 2> answered{};
    std::thread other([&] { answered[0] = call_with_the_other(); });
    answered[1] = call_with_the_other();
    other.join();
    ASSERT_EQ(answered, (std::array{STORES, STORES}));
    if (with_indexes) {
        ASSERT_EQ(plugin.function("use_every_index")(), QUESTIONS_FOR_INDEXES);
    }
    ASSERT_TRUE(is_loaded(TEST_LIBRARY));
    ASSERT_TRUE(is_loaded(TEST_HOST_LIBRARY));
}

/// A function of any type.
template <class FUNCTION>
FUNCTION function_as(const LOADED_LIBRARY& library, const char* name) {
    return reinterpret_cast<FUNCTION>(reinterpret_cast<void (*)()>(library.function(name)));
}

int heard = 0;

void hear_message(const char* /*logger*/, int32_t /*level*/, const char* /*text*/, void* user) {
    ++*static_cast<int*>(user);
}

void hear_report(const pgmdev_report* /*report*/, void* user) {
    ++*static_cast<int*>(user);
}

}  // namespace

/// The host stays, since the plug-in has it, and must not call into a library that has gone.
TEST(Unload, TheCInterfaceTakesItsHandlersBack) {
    const LOADED_LIBRARY plugin(TEST_PLUGIN);
    const LOADED_LIBRARY::FUNCTION speak = plugin.function("speak");
    {
        const LOADED_LIBRARY c_interface(TEST_C_LIBRARY);
        const auto set_debug_handler =
            function_as<decltype(&pgmdev_set_debug_handler)>(c_interface, "pgmdev_set_debug_handler");
        const auto set_report_handler =
            function_as<decltype(&pgmdev_set_report_handler)>(c_interface, "pgmdev_set_report_handler");
        ASSERT_EQ(set_debug_handler(hear_message, &heard, nullptr), PGMDEV_STATUS_OK);
        ASSERT_EQ(set_report_handler(hear_report, &heard, nullptr), PGMDEV_STATUS_OK);
        EXPECT_EQ(speak(), 1);
        EXPECT_EQ(heard, 2);
    }
    ASSERT_FALSE(is_loaded(TEST_C_LIBRARY));
    testing::internal::CaptureStderr();
    EXPECT_EQ(speak(), 1);
    EXPECT_NE(testing::internal::GetCapturedStderr().find("PLUGIN, every_store, line 1: nothing is wrong"),
              std::string::npos);
    EXPECT_EQ(heard, 2);
}

TEST(Unload, HoweverOftenNothingIsLeftOver) {
    constexpr int WARM_UP = 20;  // what the system itself keeps after the first times
    constexpr int ROUNDS = TEST_ROUNDS;
    constexpr int ROUNDS_PER_INDEXES = 50;  // one index is larger than all the growth that is allowed
    constexpr std::size_t MOST_GROWTH = std::size_t{256} * ROUNDS;
#if defined(_WIN32)
    // The system's, which stays: the emulator's leaves something behind each time that it goes.
    const LOADED_LIBRARY digests_of_the_system("bcrypt.dll");
#endif
    std::size_t handles = 0;
    std::size_t memory = 0;
    for (int round = 0; round < ROUNDS; ++round) {
        if (round == WARM_UP) {
            handles = open_handles();
            memory = memory_in_use();
        }
        ASSERT_NO_FATAL_FAILURE(come_and_go(round % ROUNDS_PER_INDEXES == 0));
        ASSERT_FALSE(is_loaded(TEST_LIBRARY)) << "round " << round;
        ASSERT_FALSE(is_loaded(TEST_HOST_LIBRARY)) << "round " << round;
    }
    EXPECT_LE(open_handles(), handles);
    EXPECT_LE(memory_in_use(), memory + MOST_GROWTH);
}
