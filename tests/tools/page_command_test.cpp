#include <filesystem>

#include "command_fixture.h"
#include "support/scratch.h"

// The verb `page`: what it writes, and what it leaves alone. What the page says is tested in a browser (tests/page/).

namespace {

namespace fs = std::filesystem;

const std::string BEGINNING = "<!doctype html>\n<!-- A page of pgmdev: ";

PROCESS_RESULT write_page(const std::string& directory, const std::vector<std::string>& more = {}) {
    std::vector<std::string> arguments{"--json", "page", directory};
    arguments.insert(arguments.end(), more.begin(), more.end());
    return run_command(arguments);
}

}  // namespace

TEST(page, WritesOneDocumentThatNamesItsOwnParts) {
    const SCRATCH scratch;
    const std::string directory = scratch.path("page");
    fs::create_directory(directory);
    const std::string file = scratch.write("page/index.html", BEGINNING + "of an older version -->");
    const PROCESS_RESULT result = write_page(directory);
    ASSERT_EQ(result.exit_code, DONE) << result.errors;
    const JSON answer = json_of(result.output);
    const std::string page = read_file(file);
    ASSERT_EQ(answer.at("files").size(), 1U);
    EXPECT_EQ(answer.at("files")[0].at("path"), file);
    EXPECT_EQ(answer.at("files")[0].at("size"), page.size());
    const JSON rows = json_of(run_command({"--json", "flash", "list", "--all-rows"}).output);
    EXPECT_EQ(answer.at("records"), rows.size());
    EXPECT_EQ(answer.at("profiles"), json_of(run_command({"--json", "profile", "list"}).output).size());
    EXPECT_TRUE(page.starts_with(BEGINNING));
    EXPECT_EQ(count_of(page, "<script"), 4U);  // three of data, one that runs
    EXPECT_EQ(count_of(page, "</script>"), 4U);
    EXPECT_EQ(count_of(page, "http://"), 1U);  // the name of SVG
    EXPECT_EQ(count_of(page, "https://"), 0U);
    EXPECT_EQ(count_of(page, "innerHTML"), 0U);
    EXPECT_TRUE(contains(page, "content=\"default-src 'none'; style-src 'sha256-"));
}

TEST(page, ReplacesNothingButItsLike) {
    const SCRATCH scratch;
    const std::string file = scratch.write("index.html", "<!doctype html>\n<p>Somebody's own");
    const JSON error = json_failure(write_page(scratch.directory().string()), WRONG_USAGE, "refused");
    EXPECT_EQ(error.at("path"), file);
    EXPECT_EQ(read_file(file), "<!doctype html>\n<p>Somebody's own");
}

TEST(page, TellsWhereItCannotBeWritten) {
    const SCRATCH scratch;
    const std::string none = scratch.path("none/page");
    const JSON error = json_failure(write_page(none), INTERNAL_ERROR, "output_not_writable");
    EXPECT_EQ(error.at("path"), none);
    EXPECT_TRUE(contains(error.at("message"), "its directory does not exist")) << error;
    const std::string file = scratch.write("file", "text");
    const JSON file_error = json_failure(write_page(file), INTERNAL_ERROR, "output_not_writable");
    EXPECT_TRUE(contains(file_error.at("message"), "what should be its directory is none")) << file_error;
    EXPECT_EQ(read_file(file), "text");
}

TEST(page, NeedsTheDatabases) {
    const SCRATCH scratch;
    json_failure(write_page(scratch.path("page"), {"--db-dir", scratch.directory().string()}), INTERNAL_ERROR,
                 "database_missing");
    EXPECT_FALSE(fs::exists(scratch.path("page/index.html")));
}
