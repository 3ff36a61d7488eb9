#include <gtest/gtest.h>

#include "fio.h"
#include "pgm_common.h"
#include "support/scratch.h"
#include "support/settings.h"

// Messages that are written into the outbox.

namespace {

namespace fs = std::filesystem;

/// The files of a directory, by contents.
std::vector<std::string> messages_in(const fs::path& directory) {
    std::vector<std::string> messages;
    for (const auto& entry : fs::directory_iterator(directory)) {
        EXPECT_EQ(entry.path().extension(), ".txt");
        messages.push_back(read_file(entry.path()));
    }
    return messages;
}

}  // namespace

TEST(outbox, IsNamedByTheConfigurationAndCreated) {
    const SCRATCH scratch;
    const SETTING outbox("TESSARY_OUTBOX_DIR", scratch.path("a/b"));
    EXPECT_TRUE(PGM_COMMON::send_auto_email_file("A title", "Some text.\n", {0, 3, 4}));
    EXPECT_EQ(messages_in(scratch.path("a/b")),
              std::vector<std::string>{"To: 0, 3, 4\nSubject: A title\n\nSome text.\n"});
}

TEST(outbox, MayEndWithASeparator) {
    const SCRATCH scratch;
    const SETTING outbox("TESSARY_OUTBOX_DIR", scratch.path("a/b") + "/");
    EXPECT_TRUE(PGM_COMMON::send_auto_email_file("", "", {}));
    EXPECT_EQ(messages_in(scratch.path("a/b")).size(), 1U);
}

TEST(outbox, MayBeBelowALongPath) {
    const SCRATCH scratch;
    std::string path = utf8_from_path(scratch.directory());
    for (int i = 0; i < 8; ++i) {  // more than 260 characters together
        path += "/" + std::string(40, static_cast<char>('a' + i));
    }
    const SETTING outbox("TESSARY_OUTBOX_DIR", path);
    EXPECT_TRUE(PGM_COMMON::send_auto_email_file("", "", {}));
    FIO_STATUS status;
    EXPECT_TRUE(FIO_FILE_SYSTEM::status(path.c_str(), &status));
    EXPECT_FALSE(status.regular);
}

TEST(outbox, IsInTheInstallationOtherwise) {
    const SCRATCH scratch;
    const INSTALL_DIRECTORY installation(scratch.directory().string());
    EXPECT_TRUE(PGM_COMMON::send_auto_email_file("", "", {}));
    EXPECT_EQ(messages_in(scratch.path("outbox")), std::vector<std::string>{"To: \nSubject: \n\n"});
}

TEST(outbox, ARepeatedMessageReplacesItselfAndOthersStay) {
    const SCRATCH scratch;
    const SETTING outbox("TESSARY_OUTBOX_DIR", scratch.directory().string());
    for (const char* text : {"one", "two", "one"}) {
        EXPECT_TRUE(PGM_COMMON::send_auto_email_file("title", text, {1}));
    }
    EXPECT_TRUE(PGM_COMMON::send_auto_email_file("title", "one", {2}));
    EXPECT_EQ(messages_in(scratch.directory()).size(), 3U);
}

TEST(outbox, ThatCannotBeWrittenIsToldToTheCaller) {
    const SCRATCH scratch;
    const SETTING outbox("TESSARY_OUTBOX_DIR", scratch.write("file", ""));
    EXPECT_FALSE(PGM_COMMON::send_auto_email_file("title", "text", {1}));
    EXPECT_EQ(scratch.file_count(), 1U);
}
