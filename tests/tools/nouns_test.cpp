#include <gtest/gtest.h>

#include "terminal/command_line.h"

// What may stand behind a noun.

namespace {

int times_made = 0;

NOUN_CONTENTS counted_contents() {
    ++times_made;
    return {list_of(VERB("verb", "What it does", "noun verb", [](const ARGUMENTS&, COMMAND&) {}))};
}

TEST(Nouns, MakeTheirContentsOnceWhenTheyAreAskedFor) {
    times_made = 0;
    const NOUN noun("noun", "What it is about", "noun verb", counted_contents);
    EXPECT_EQ(times_made, 0);
    ASSERT_EQ(noun.verbs().size(), 1U);
    EXPECT_EQ(noun.verbs().front().name, "verb");
    EXPECT_TRUE(noun.groups().empty());
    EXPECT_EQ(times_made, 1);
}

TEST(Nouns, ShowTheirFirstVerbByDefault) {
    EXPECT_EQ(NOUN("noun", "What it is about", counted_contents).example(), "noun verb");
    EXPECT_EQ(NOUN("noun", "What it is about", "noun other", counted_contents).example(), "noun other");
}

}  // namespace
