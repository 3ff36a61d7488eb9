#include "msg.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <string>
#include <tuple>
#include <vector>

#include "host_probe.h"
#include "support/reports.h"
#include "support/scratch.h"
#include "support/settings.h"

namespace {

struct MESSAGE {
    std::string logger;
    int level;
    std::string text;

    bool operator==(const MESSAGE&) const = default;
};

/// Collects the debug messages while it lives.
class MESSAGES {
public:
    MESSAGES()
        : m_previous(msg_set_debug_sink([this](const std::string& logger, int level, const std::string& text) {
              m_messages.push_back({logger, level, text});
          })) {}
    ~MESSAGES() { msg_set_debug_sink(m_previous); }
    MESSAGES(const MESSAGES&) = delete;
    MESSAGES& operator=(const MESSAGES&) = delete;

    const std::vector<MESSAGE>& all() const { return m_messages; }

private:
    MSG_DEBUG_SINK m_previous;
    std::vector<MESSAGE> m_messages;
};

}  // namespace

TEST(msg_internal_error, HandlerReceivesTheWholeReport) {
    const REPORTS reports;
    EXPECT_THROW(MSG_INTERNAL_ERROR::report("a == \"b\"", "PGMDEV", "pgm/pgmdev/source", 123),
                 MSG_INTERNAL_ERROR_EXCEPTION);
    ASSERT_EQ(reports.all().size(), 1U);
    EXPECT_EQ(reports.all()[0].condition, "a == \"b\"");
    EXPECT_EQ(reports.all()[0].module, "PGMDEV");
    EXPECT_EQ(reports.all()[0].file, "pgm/pgmdev/source");
    EXPECT_EQ(reports.all()[0].line, 123);
}

TEST(msg_internal_error, ConditionIsNoFormat) {
    EXPECT_EQ(report_of([] { MSG_INTERNAL_ERROR::report("%s %d %n 100%", "M", "f", 1); }), "%s %d %n 100%");
}

TEST(msg_internal_error, ReportWithArguments) {
    EXPECT_EQ(report_of([] { MSG_INTERNAL_ERROR::report_varg("M", "f", 1, "%s: %d of 0x%02X%%", "part", -3, 0xBAU); }),
              "part: -3 of 0xBA%");
    EXPECT_EQ(report_of([] { MSG_INTERNAL_ERROR::report_varg("M", "f", 1, "%s", ""); }), "");
    const std::string longer(100000, 'x');
    EXPECT_EQ(report_of([&] { MSG_INTERNAL_ERROR::report_varg("M", "f", 1, "<%s>", longer.c_str()); }),
              "<" + longer + ">");
    const REPORTS reports;
    EXPECT_THROW(MSG_INTERNAL_ERROR::report_varg("M", "file", 9, "%d", 1), MSG_INTERNAL_ERROR_EXCEPTION);
    EXPECT_EQ(reports.all().at(0).module, "M");
    EXPECT_EQ(reports.all().at(0).file, "file");
    EXPECT_EQ(reports.all().at(0).line, 9);
}

TEST(msg_internal_error, HandlerMayReturn) {
    int count = 0;
    const auto previous = MSG_INTERNAL_ERROR::set_handler([&count](const MSG_INTERNAL_ERROR_REPORT&) { ++count; });
    MSG_INTERNAL_ERROR::report("x", "M", "f", 1);
    MSG_INTERNAL_ERROR::report_varg("M", "f", 1, "%d", 2);
    MSG_INTERNAL_ERROR::set_handler(previous);
    EXPECT_EQ(count, 2);
}

TEST(msg_internal_error, SetHandlerReturnsThePreviousOne) {
    std::string calls;
    const auto outermost =
        MSG_INTERNAL_ERROR::set_handler([&calls](const MSG_INTERNAL_ERROR_REPORT&) { calls += "a"; });
    const auto a = MSG_INTERNAL_ERROR::set_handler([&calls](const MSG_INTERNAL_ERROR_REPORT&) { calls += "b"; });
    MSG_INTERNAL_ERROR::report("x", "M", "f", 1);
    const auto b = MSG_INTERNAL_ERROR::set_handler(a);
    MSG_INTERNAL_ERROR::report("x", "M", "f", 1);
    MSG_INTERNAL_ERROR::set_handler(outermost);
    b({});
    EXPECT_EQ(calls, "bab");
}

namespace {

/// What a receiver has, as long as it lives; looked at without it.
std::weak_ptr<int> g_of_receiver;
bool g_lived = false;

std::shared_ptr<int> of_receiver() {
    const auto made = std::make_shared<int>(1);
    g_of_receiver = made;
    g_lived = false;
    return made;
}

}  // namespace

// As one does that is only to hear the first report.
TEST(msg_internal_error, AHandlerThatInstallsAnotherOneLivesUntilItHasReturned) {
    std::string calls;
    const auto outermost = MSG_INTERNAL_ERROR::set_handler(
        [&calls](const MSG_INTERNAL_ERROR_REPORT& report) { calls += "outer " + report.condition; });
    const auto outer = MSG_INTERNAL_ERROR::set_handler([has = of_receiver()](const MSG_INTERNAL_ERROR_REPORT&) {
        MSG_INTERNAL_ERROR::set_handler({});
        g_lived = !g_of_receiver.expired();
    });
    MSG_INTERNAL_ERROR::report("first", "M", "f", 1);
    EXPECT_TRUE(g_lived);
    EXPECT_TRUE(g_of_receiver.expired());
    outer({"called", "", "", 0});
    MSG_INTERNAL_ERROR::set_handler(outermost);
    EXPECT_EQ(calls, "outer called");
}

TEST(msg_internal_error, AHandlerKeepsWhatItCounts) {
    int last = 0;
    const auto outermost = MSG_INTERNAL_ERROR::set_handler(
        [&last, count = 0](const MSG_INTERNAL_ERROR_REPORT&) mutable { last = ++count; });
    MSG_INTERNAL_ERROR::report("x", "M", "f", 1);
    MSG_INTERNAL_ERROR::report("x", "M", "f", 1);
    MSG_INTERNAL_ERROR::set_handler(outermost);
    EXPECT_EQ(last, 2);
}

TEST(msg_internal_error, ExceptionCarriesTheReport) {
    const MSG_INTERNAL_ERROR_EXCEPTION error({"condition", "module", "file", 5});
    MSG_INTERNAL_ERROR_EXCEPTION copy({"", "", "", 0});
    copy = error;
    const std::runtime_error& base = copy;
    EXPECT_STREQ(base.what(), "condition");
    EXPECT_EQ(copy.report().condition, "condition");
    EXPECT_EQ(copy.report().module, "module");
    EXPECT_EQ(copy.report().file, "file");
    EXPECT_EQ(copy.report().line, 5);
}

TEST(msg_internal_error, ReferenceHostLogsOneLineAndThrows) {
    const PROCESS_RESULT result = run_host_probe({"report", "a condition"});
    EXPECT_EQ(result.exit_code, 0);
    EXPECT_EQ(result.output, "caught a condition\n");
    for (const char* part : {"a condition", "PROBE", "tests/host/host_probe", "7"}) {
        EXPECT_NE(result.errors.find(part), std::string::npos) << part << " in " << result.errors;
    }
    EXPECT_EQ(std::count(result.errors.begin(), result.errors.end(), '\n'), 1);
}

TEST(msg_internal_error, UncaughtReportEndsTheProcess) {
    EXPECT_NE(run_host_probe({"die-of-report", "a condition"}).exit_code, 0);
}

TEST(msg_debug, SinkReceivesEveryLevel) {
    const MESSAGES messages;
    msg_local_vdebug("PGMDEV", 1, "plain");
    msg_local_vdebug("OTHER", 2, "Found Device %d device id at index %d", 1, 17);
    msg_local_vdebug("PGMDEV", 9, "%s", std::string(5000, 'x').c_str());
    EXPECT_EQ(messages.all(), (std::vector<MESSAGE>{{"PGMDEV", 1, "plain"},
                                                    {"OTHER", 2, "Found Device 1 device id at index 17"},
                                                    {"PGMDEV", 9, std::string(5000, 'x')}}));
}

TEST(msg_debug, SinkReplacesStandardError) {
    const SETTING level("TESSARY_DEBUG_LEVEL", "9");
    testing::internal::CaptureStderr();
    {
        const MESSAGES messages;
        msg_local_vdebug("PGMDEV", 1, "into the sink");
    }
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
    testing::internal::CaptureStderr();
    msg_local_vdebug("PGMDEV", 1, "to standard error");
    EXPECT_NE(testing::internal::GetCapturedStderr().find("to standard error"), std::string::npos);
}

TEST(msg_debug, CommandsNoTerminal) {
    const SETTING level("TESSARY_DEBUG_LEVEL", "9");
    testing::internal::CaptureStderr();
    msg_local_vdebug("PGMDEV", 1, "%s", "a\x1B[31m \xC2\x9B \xE2\x80\xAE \xFF\n\tb \xC3\xA4");
    EXPECT_EQ(testing::internal::GetCapturedStderr(),
              "PGMDEV debug 1: a\\x1B[31m \\xC2\\x9B \\xE2\\x80\\xAE \\xFF\n\tb \xC3\xA4\n");
}

TEST(msg_internal_error, CommandsNoTerminal) {
    testing::internal::CaptureStderr();
    EXPECT_THROW(MSG_INTERNAL_ERROR::report("a\x1B[31m", "M", "f", 1), MSG_INTERNAL_ERROR_EXCEPTION);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "Internal Error: M, f, line 1: a\\x1B[31m\n");
}

TEST(msg_debug, SetSinkReturnsThePreviousOne) {
    const MESSAGES outer;
    {
        const MESSAGES inner;
        msg_local_vdebug("M", 1, "inner");
        EXPECT_EQ(inner.all().size(), 1U);
    }
    msg_local_vdebug("M", 1, "outer");
    EXPECT_EQ(outer.all(), (std::vector<MESSAGE>{{"M", 1, "outer"}}));
}

TEST(msg_debug, ASinkThatInstallsAnotherOneLivesUntilItHasReturned) {
    const MESSAGES outer;
    MSG_DEBUG_SINK previous = msg_set_debug_sink([has = of_receiver()](const std::string&, int, const std::string&) {
        msg_set_debug_sink({});
        g_lived = !g_of_receiver.expired();
    });
    msg_local_vdebug("M", 1, "first");
    msg_set_debug_sink(std::move(previous));
    EXPECT_TRUE(g_lived);
    EXPECT_TRUE(g_of_receiver.expired());
    msg_local_vdebug("M", 1, "second");
    EXPECT_EQ(outer.all(), (std::vector<MESSAGE>{{"M", 1, "second"}}));
}

TEST(msg_debug, TellsWhetherAMessageGoesAnywhere) {
    EXPECT_FALSE(msg_is_debug_on("M", 1));
    {
        const SETTING level("TESSARY_DEBUG_LEVEL", "2");
        EXPECT_TRUE(msg_is_debug_on("M", 1));
        EXPECT_TRUE(msg_is_debug_on("M", 2));
        EXPECT_FALSE(msg_is_debug_on("M", 3));
    }
    const MESSAGES messages;
    EXPECT_TRUE(msg_is_debug_on("M", 3));
    EXPECT_TRUE(messages.all().empty());
}

TEST(msg_debug, SilentWithoutALevel) {
    EXPECT_EQ(run_host_probe({"debug", "1", "text", "debug", "2", "text"}).errors, "");
    for (const char* level : {"0", "", "-1", "x", "1 ", "0x2", "99999999999999"}) {
        EXPECT_EQ(run_host_probe({"debug", "1", "text"}, {{"TESSARY_DEBUG_LEVEL", level}}).errors, "") << level;
    }
}

TEST(msg_debug, LevelSelectsTheDepth) {
    const std::vector<std::string> operations{"debug", "1", "one", "debug", "2", "two", "debug", "9", "nine"};
    for (const auto& [level, one, two, nine] :
         std::vector<std::tuple<std::string, bool, bool, bool>>{{"1", true, false, false},
                                                                {"2", true, true, false},
                                                                {"8", true, true, false},
                                                                {"9", true, true, true},
                                                                {"10", true, true, true},
                                                                {"1000000", true, true, true}}) {
        const PROCESS_RESULT result = run_host_probe(operations, {{"TESSARY_DEBUG_LEVEL", level}});
        EXPECT_EQ(result.output, "");
        EXPECT_EQ(result.errors.find("one at 1") != std::string::npos, one) << level;
        EXPECT_EQ(result.errors.find("two at 2") != std::string::npos, two) << level;
        EXPECT_EQ(result.errors.find("nine at 9") != std::string::npos, nine) << level;
        EXPECT_EQ(std::count(result.errors.begin(), result.errors.end(), '\n'), int{one} + int{two} + int{nine});
    }
}

TEST(msg_debug, LevelMayChangeOnTheWay) {
    const PROCESS_RESULT result =
        run_host_probe({"debug", "1", "before", "set", "TESSARY_DEBUG_LEVEL", "1", "debug", "1", "between", "clear",
                        "TESSARY_DEBUG_LEVEL", "debug", "1", "after"});
    EXPECT_NE(result.errors.find("between at 1"), std::string::npos);
    EXPECT_NE(result.errors.find("PROBE"), std::string::npos);
    EXPECT_EQ(result.errors.find("before"), std::string::npos);
    EXPECT_EQ(result.errors.find("after"), std::string::npos);
}

TEST(msg_debug, LevelFromTheConfigurationFile) {
    const SCRATCH scratch;
    const std::string file = scratch.write("test.conf", "TESSARY_DEBUG_LEVEL = 2\n");
    const PROCESS_RESULT result =
        run_host_probe({"debug", "2", "two", "debug", "3", "three"}, {{"TESSARY_CONFIG_FILE", file}});
    EXPECT_NE(result.errors.find("two at 2"), std::string::npos);
    EXPECT_EQ(result.errors.find("three"), std::string::npos);
}
