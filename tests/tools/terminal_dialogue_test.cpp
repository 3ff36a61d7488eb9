#include "command_fixture.h"
#include "support/pseudo_terminal.h"

// The questions of `flash define` on a terminal: a person is asked again.

namespace {

const std::string ANSWERS_BEFORE = "1\nNumonyx\nM25PX80\n";
const std::string ANSWERS_BEHIND =
    "14\n2\n71\n1\n20\n0\nN\nN\nN\nN\nN\nN\n1\n8\n64\n80\n3\n5000\n1C\n1C\n0\n7\n5\nN\n3.3V\n";

/// What the dialogue shows when that is typed.
std::string dialogue(const std::string& typed, int exit_code = DONE) {
    return PSEUDO_TERMINAL(200).shown_by("'" TEST_COMMAND "' flash define 2>&1", typed, exit_code);
}

std::string encoded_of(const std::string& shown) {
    const std::string label = "INI : ";
    const std::size_t place = shown.rfind(label);
    return place == std::string::npos ? "" : shown.substr(place + label.size());
}

}  // namespace

TEST(terminal_dialogue, PutsAQuestionAgainWhoseAnswerIsRefused) {
    const std::string straight = dialogue(ANSWERS_BEFORE + ANSWERS_BEHIND);
    ASSERT_NE(encoded_of(straight), "") << straight;
    EXPECT_EQ(count_of(straight, "is refused"), 0U);
    const std::string shown = dialogue("four\n" + ANSWERS_BEFORE + "GG\n0\n" + ANSWERS_BEHIND);
    EXPECT_EQ(encoded_of(shown), encoded_of(straight));
    EXPECT_EQ(count_of(shown, "is refused"), 3U);
    EXPECT_TRUE(contains(shown,
                         "the answer \"four\" to \"Number of 3rd party flash to define (max 3)\" is refused; accepted: "
                         "1, 2 or 3\nNumber of 3rd party flash to define (max 3) : "))
        << shown;
    EXPECT_TRUE(contains(shown, "the answer \"GG\" to ")) << shown;
    EXPECT_TRUE(contains(shown, "is refused; accepted: 1 to FE in hexadecimal\n")) << shown;
}

TEST(terminal_dialogue, EndsWithTheInput) {
    const std::string shown = dialogue("1\nNumonyx\n\x04", WRONG_USAGE);
    EXPECT_TRUE(contains(shown, "the input ended before the last question was answered")) << shown;
    EXPECT_EQ(count_of(shown, "is refused"), 0U) << shown;
}

TEST(terminal_dialogue, ShowsWhatIsTypedWithoutObeyingIt) {
    const std::string shown = dialogue("1\nA\033[2JB@\n\x04", WRONG_USAGE);
    EXPECT_TRUE(contains(shown, "the answer \"A\\x1B[2JB@\" to \"Manufacture Name\" is refused")) << shown;
}
