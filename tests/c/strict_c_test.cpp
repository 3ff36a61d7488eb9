#include "c/strict_c.h"

#include <gtest/gtest.h>

#include "support/reports.h"

TEST(StrictC, AProgramInC99GetsItsAnswers) {
    const REPORTS quiet;
    EXPECT_EQ(failures_in_strict_c(), 0);
}
