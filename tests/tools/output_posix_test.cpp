#include <gtest/gtest.h>

#include <cerrno>
#include <filesystem>

#include "files/inspection.h"
#include "files/output.h"
#include "support/ordinary_user_posix.h"
#include "support/scratch.h"

// Why an output cannot be written, to users who may not write everywhere.

namespace {

namespace fs = std::filesystem;

/// What is said of an output that cannot be written by somebody who may read the directory and not write to it.
std::string failure_of(const SCRATCH& scratch, const std::string& name) {
    fs::permissions(scratch.directory(), fs::perms(0555));
    std::string message = "it was written";
    try {
        const ORDINARY_USER user;
        OUTPUT_FILE file({scratch.path(name), {}});
    } catch (const COMMAND_FAILURE& failure) {
        message = failure.failure().message;
    }
    fs::permissions(scratch.directory(), fs::perms(0755));
    return message;
}

constexpr const char* FORBIDDEN = "the output cannot be written, since the system says \"Permission denied\"";

}  // namespace

TEST(output_posix, TheReasonIsThatTheUserMayNotWrite) {
    const SCRATCH scratch;
    EXPECT_EQ(failure_of(scratch, "new.pcf"), FORBIDDEN);
    fs::permissions(scratch.write("old.pcf", "old"), fs::perms(0444));
    EXPECT_EQ(failure_of(scratch, "old.pcf"), FORBIDDEN);
}

TEST(output_posix, WhoMayNotWriteIsToldWhateverFailedLast) {
    const SCRATCH scratch;
    const std::string file = scratch.write("old.pcf", "old");
    EXPECT_EQ(reason_not_to_write(file), "");
    EXPECT_EQ(reason_not_to_write(scratch.path("new.pcf")), "");
    fs::permissions(file, fs::perms(0444));
    const ORDINARY_USER user;
    errno = EINVAL;
    EXPECT_EQ(output_failure({file, {}}).failure().message, FORBIDDEN);
}

TEST(output_posix, AFileThatCannotBeReadIsNotSaidToBeOfAnotherKind) {
    const SCRATCH scratch;
    const std::string file = scratch.write("old.pcf", "PGMIO_FM");
    fs::permissions(file, fs::perms(0000));
    const auto refusal_of = [&file](bool force) -> std::string {
        try {
            const ORDINARY_USER user;
            confirm_output({file, {}}, {}, "flash database", "PGMIO_FM", force);
        } catch (const COMMAND_FAILURE& failure) {
            return failure.failure().message;
        }
        return "";
    };
    EXPECT_EQ(refusal_of(false),
              "the output would replace a file that cannot be read, since the system says \"Permission denied\"");
    EXPECT_EQ(refusal_of(true), "");
    fs::permissions(file, fs::perms(0644));
    EXPECT_EQ(refusal_of(false), "");
}
