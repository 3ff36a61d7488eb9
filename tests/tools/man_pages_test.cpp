#include <algorithm>
#include <filesystem>
#include <set>

#include "command_fixture.h"

// Manual pages, made from the texts of the help.

namespace {

std::string page(const std::vector<std::string>& nouns) {
    std::vector<std::string> arguments{"__man"};
    arguments.insert(arguments.end(), nouns.begin(), nouns.end());
    const PROCESS_RESULT result = run_command(arguments);
    EXPECT_EQ(result.exit_code, DONE) << result.errors;
    EXPECT_EQ(result.errors, "");
    return result.output;
}

/// The text as man shows it: without changes of font and escaped characters.
std::string shown(const std::string& text) {
    std::string plain;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const bool escaped = text[i] == '\\';
        i += escaped ? 1 : 0;
        if (escaped && text[i] == 'f') {
            ++i;
        } else if (escaped && text[i] == 'e') {
            plain += '\\';
        } else if (!escaped || text[i] != '&') {
            plain += text[i];
        }
    }
    return plain;
}

}  // namespace

TEST(man_pages, TellWhatHelpTells) {
    const std::string flash = shown(page({"flash"}));
    for (const char* part :
         {".TH pgmdev-flash 1", ".SH NAME\npgmdev-flash - Serial flash devices", ".SS pgmdev flash identify",
          "Which flash answered, how sure that is, and how it must be driven", "--silicon",
          "The responses are one-byte", "pgmdev flash identify [--silicon] [HEX] ... ",
          "    pgmdev flash identify 20BA18 \"EF 70 17\" silicon:13",
          "What is printed, in the dialogue behind \"INI : \","}) {
        EXPECT_TRUE(contains(flash, part)) << part;
    }
    const std::string top = shown(page({}));
    for (const char* part : {".TH pgmdev 1", "--db-dir DIR", "Directory of the device databases", "Exit codes: 0 done",
                             "pgmdev-flash(1)", "-q,--quiet"}) {
        EXPECT_TRUE(contains(top, part)) << part;
    }
}

TEST(man_pages, DescribeGroupsOfVerbs) {
    const std::string hps = shown(page({"hps"}));
    EXPECT_TRUE(contains(hps, ".SS pgmdev hps add nand\n"));
    EXPECT_TRUE(contains(hps, "[--like INDEX]"));
}

TEST(man_pages, LetNoTextBeARequest) {
    const std::set<std::string> requests{".TH", ".SH", ".SS", ".TP", ".PP", ".nf", ".fi"};
    for (const char* noun : {"flash", "hps", "params", "profile", "name", "part", "opn", "enum"}) {
        for (const std::string& line : lines_of(page({noun}))) {
            if (line.starts_with('.') || line.starts_with('\'')) {
                EXPECT_TRUE(requests.contains(line.substr(0, 3))) << line;
            }
        }
    }
}

TEST(man_pages, AreTheSameEveryTime) {
    EXPECT_EQ(page({"flash"}), page({"flash"}));
}

TEST(man_pages, OfUnknownNounsAreRefused) {
    expect_failure(run_command({"__man", "nonsense"}), WRONG_USAGE, {"nonsense"});
}

TEST(man_pages, AreWrittenForEveryNoun) {
    const SCRATCH scratch;
    ASSERT_EQ(run_command({"__man_pages", scratch.directory().string()}).exit_code, DONE);
    EXPECT_EQ(read_file(scratch.path("pgmdev.1")), page({}));
    EXPECT_EQ(read_file(scratch.path("pgmdev-hps.1")), page({"hps"}));
    const std::string top = shown(page({}));
    for (const auto& entry : std::filesystem::directory_iterator(scratch.directory())) {
        const std::string name = entry.path().stem().string();
        EXPECT_TRUE(contains(top, name + (name == "pgmdev" ? "" : "(1)"))) << name;
    }
    EXPECT_GT(scratch.file_count(), 8U);
    expect_failure(run_command({"__man_pages", scratch.path("missing")}), INTERNAL_ERROR, {"pgmdev.1"});
}
