#include <filesystem>
#include <fstream>
#include <thread>
#if !defined(_WIN32)
#include <sys/stat.h>
#endif

#include "c/owned.h"
#include "support/plain_cells.h"
#include "support/scratch.h"

// The lists beside a flash database: further names, and what supports its records.

namespace {

const std::string INSTALLED = std::string(TEST_DEVICES_DIR) + "/programmer/pgm_flash.pcf";

/// A database with lists of the test's own.
class WITH_LISTS {
public:
    WITH_LISTS(const std::string& aliases, const std::string& sources)
        : m_path(m_scratch.write("Gerät/flash.pcf", read_file(INSTALLED))) {
        m_scratch.write("Gerät/flash.pcf.aliases.csv", aliases);
        m_scratch.write("Gerät/flash.pcf.sources.csv", sources);
        EXPECT_EQ(pgmdev_flash_open(m_path.c_str(), m_flash.place(), nullptr), PGMDEV_STATUS_OK);
    }

    const std::string& path() const { return m_path; }
    operator pgmdev_flash_database*() const { return m_flash; }

    std::size_t record_of(const char* name) const {
        std::size_t record = 0;
        EXPECT_EQ(pgmdev_flash_find(m_flash, name, &record, nullptr), PGMDEV_STATUS_OK) << name;
        return record;
    }

private:
    SCRATCH m_scratch;
    std::string m_path;
    C_FLASH m_flash;
};

/// Lines of a list as it is written, without the one with the names, cell by cell.
ROWS lines_of(const std::string& file) {
    ROWS rows;
    std::ifstream list(file);
    std::string line;
    for (std::getline(list, line); std::getline(list, line);) {
        rows.push_back(plain_cells(line));
    }
    return rows;
}

}  // namespace

TEST(CFlashLists, FurtherNamesAreThoseOfTheList) {
    C_FLASH flash;
    ASSERT_EQ(pgmdev_flash_open(nullptr, flash.place(), nullptr), PGMDEV_STATUS_OK);
    const pgmdev_records* names = nullptr;
    ASSERT_EQ(pgmdev_flash_further_names(flash, &names, nullptr), PGMDEV_STATUS_OK);
    EXPECT_EQ(member_names(names), (std::vector<std::string>{"name", "device_name", "reason", "record"}));
    const ROWS lines = lines_of(INSTALLED + ".aliases.csv");
    ASSERT_EQ(pgmdev_records_count(names), lines.size());
    EXPECT_GT(lines.size(), 800U);
    for (std::size_t i = 0; i < lines.size(); ++i) {
        std::size_t record = PGMDEV_NO_RECORD;
        const pgmdev_status status = pgmdev_flash_find(flash, lines[i][1].c_str(), &record, nullptr);
        std::vector<std::string> expected = lines[i];
        expected.push_back(status == PGMDEV_STATUS_OK ? std::to_string(record) : "-");
        ASSERT_EQ(row_of(names, i), expected);
    }
    const pgmdev_records* again = nullptr;
    ASSERT_EQ(pgmdev_flash_further_names(flash, &again, nullptr), PGMDEV_STATUS_OK);
    EXPECT_EQ(again, names);
}

TEST(CFlashLists, ARecordIsFoundByAFurtherName) {
    const WITH_LISTS flash(
        "\xEF\xBB\xBF"
        "alias,device_name,reason\r\n ONE , w25q64jv , a reason\n\nONE,M25P80,a later line\n"
        "TWO,W25Q64JV\nTHREE,NOSUCHCHIP,gone\nM25P16,W25Q64JV,has a row\n",
        "");
    const std::size_t record = flash.record_of("W25Q64JV");
    const pgmdev_records* names = nullptr;
    ASSERT_EQ(pgmdev_flash_further_names(flash, &names, nullptr), PGMDEV_STATUS_OK);
    EXPECT_EQ(rows_of(names), (ROWS{{"ONE", "w25q64jv", "a reason", std::to_string(record)},
                                    {"ONE", "M25P80", "a later line", std::to_string(flash.record_of("M25P80"))},
                                    {"THREE", "NOSUCHCHIP", "gone", "-"},
                                    {"M25P16", "W25Q64JV", "has a row", std::to_string(record)}}));
    struct QUESTION {
        const char* name;
        pgmdev_status status;
        std::size_t record;
        std::size_t further;
    };
    for (const QUESTION& each : {
             QUESTION{"one", PGMDEV_STATUS_OK, record, 0},
             QUESTION{"W25q64JV", PGMDEV_STATUS_OK, record, PGMDEV_NO_RECORD},
             QUESTION{"M25P16", PGMDEV_STATUS_OK, flash.record_of("M25P16"), PGMDEV_NO_RECORD},
             QUESTION{"TWO", PGMDEV_STATUS_NOT_FOUND, PGMDEV_NO_RECORD, PGMDEV_NO_RECORD},
             QUESTION{"THREE", PGMDEV_STATUS_NOT_FOUND, PGMDEV_NO_RECORD, PGMDEV_NO_RECORD},
             QUESTION{"", PGMDEV_STATUS_NOT_FOUND, PGMDEV_NO_RECORD, PGMDEV_NO_RECORD},
         }) {
        std::size_t found = 1;
        std::size_t further = 1;
        C_ERROR error;
        EXPECT_EQ(pgmdev_flash_find_any(flash, each.name, &found, &further, error.place()), each.status) << each.name;
        EXPECT_EQ(found, each.record) << each.name;
        EXPECT_EQ(further, each.further) << each.name;
        EXPECT_EQ(error, nullptr);
        EXPECT_EQ(pgmdev_flash_find_any(flash, each.name, &found, nullptr, nullptr), each.status) << each.name;
    }
}

TEST(CFlashLists, EvidenceIsThatOfTheRecord) {
    const WITH_LISTS flash("",
                           "device_name,compared,identification,times\n"
                           "W25Q64JV,17@2 40@1 EF@0,one:a,family\n"
                           "W25Q64JV,17@2 40@1 EF@0,two:b+c,datasheet:d\n"
                           "M25P80,13@2 20@1,one:a,family\n"
                           "M25P16,15@2 20@1 20@0,one:a\n"
                           "M25P32,16@2 20@1 20@0,rumour:a,sfdp:\n");
    C_ANSWER evidence;
    ASSERT_EQ(pgmdev_flash_evidence(flash, flash.record_of("W25Q64JV"), evidence.place(), nullptr), PGMDEV_STATUS_OK);
    ASSERT_EQ(pgmdev_answer_list_count(evidence), 2U);
    EXPECT_EQ(list_of(evidence, "groups"), (ROWS{{"identification", "two independent public sources"},  // the last line
                                                 {"times", "datasheet maximum"}}));
    EXPECT_EQ(list_of(evidence, "sources"), (ROWS{{"0", "b"}, {"0", "c"}, {"1", "d"}}));
    ASSERT_EQ(pgmdev_flash_evidence(flash, flash.record_of("M25P32"), evidence.place(), nullptr), PGMDEV_STATUS_OK);
    EXPECT_EQ(list_of(evidence, "groups"), (ROWS{{"identification", ""}, {"times", "chip's own SFDP"}}));
    EXPECT_EQ(list_of(evidence, "sources"), (ROWS{{"0", "a"}}));
    for (const char* name : {"M25P80", "M25P16", "M25P64"}) {  // another identification, another form, none
        EXPECT_EQ(pgmdev_flash_evidence(flash, flash.record_of(name), evidence.place(), nullptr),
                  PGMDEV_STATUS_NOT_FOUND)
            << name;
        EXPECT_EQ(evidence, nullptr);
    }
    C_ERROR error;
    const std::size_t count = pgmdev_records_count(pgmdev_flash_records(flash));
    EXPECT_EQ(pgmdev_flash_evidence(flash, count, evidence.place(), error.place()), PGMDEV_STATUS_INVALID_ARGUMENT);
    EXPECT_STREQ(pgmdev_error_message(error), "there is no record of that index");
}

TEST(CFlashLists, EveryShippedRecordHasEvidence) {
    C_FLASH flash;
    ASSERT_EQ(pgmdev_flash_open(nullptr, flash.place(), nullptr), PGMDEV_STATUS_OK);
    const std::size_t count = pgmdev_records_count(pgmdev_flash_records(flash));
    for (std::size_t i = 0; i < count; ++i) {
        C_ANSWER evidence;
        ASSERT_EQ(pgmdev_flash_evidence(flash, i, evidence.place(), nullptr), PGMDEV_STATUS_OK) << i;
        ASSERT_EQ(list_of(evidence, "groups").size(), 6U) << i;
    }
}

TEST(CFlashLists, WithoutListsThereAreNone) {
    const SCRATCH scratch;
    const std::string path = scratch.write("flash.pcf", read_file(INSTALLED));
    C_FLASH flash;
    ASSERT_EQ(pgmdev_flash_open(path.c_str(), flash.place(), nullptr), PGMDEV_STATUS_OK);
    const pgmdev_records* names = nullptr;
    ASSERT_EQ(pgmdev_flash_further_names(flash, &names, nullptr), PGMDEV_STATUS_OK);
    EXPECT_EQ(pgmdev_records_count(names), 0U);
    C_ANSWER evidence;
    EXPECT_EQ(pgmdev_flash_evidence(flash, 0, evidence.place(), nullptr), PGMDEV_STATUS_NOT_FOUND);
}

TEST(CFlashLists, AreBesideTheDatabaseWhateverTheCurrentDirectoryIs) {
    const SCRATCH scratch;
    scratch.write("flash.pcf", read_file(INSTALLED));
    scratch.write("flash.pcf.aliases.csv", "alias,device_name,reason\nANOTHER,W25Q64JV,alike\n");
    const std::filesystem::path before = std::filesystem::current_path();
    std::filesystem::current_path(scratch.path(""));
    C_FLASH flash;
    EXPECT_EQ(pgmdev_flash_open("flash.pcf", flash.place(), nullptr), PGMDEV_STATUS_OK);
    std::filesystem::current_path(before);
    std::size_t record = 0;
    EXPECT_EQ(pgmdev_flash_find_any(flash, "another", &record, nullptr, nullptr), PGMDEV_STATUS_OK);
}

TEST(CFlashLists, AListThatCannotBeReadIsAnErrorUntilItCan) {
    const SCRATCH scratch;
    const std::string path = scratch.write("flash.pcf", read_file(INSTALLED));
    const std::string list = path + ".aliases.csv";
    std::filesystem::create_directory(list);
    C_FLASH flash;
    ASSERT_EQ(pgmdev_flash_open(path.c_str(), flash.place(), nullptr), PGMDEV_STATUS_OK);
    const pgmdev_records* names = nullptr;
    C_ERROR error;
    EXPECT_EQ(pgmdev_flash_further_names(flash, &names, error.place()), PGMDEV_STATUS_FAILED);
    EXPECT_EQ(names, nullptr);
    EXPECT_EQ(pgmdev_error_message(error), "the list " + list + " cannot be read");
    std::size_t record = 0;
    EXPECT_EQ(pgmdev_flash_find_any(flash, "W25Q64FV", &record, nullptr, nullptr), PGMDEV_STATUS_FAILED);
    EXPECT_EQ(record, PGMDEV_NO_RECORD);
    EXPECT_EQ(pgmdev_flash_find_any(flash, "W25Q64JV", &record, nullptr, nullptr), PGMDEV_STATUS_OK);
    C_RECORDS suggestions;
    EXPECT_EQ(pgmdev_flash_suggestions(flash, "W25Q64FV", suggestions.place(), nullptr), PGMDEV_STATUS_FAILED);
    std::filesystem::remove(list);
    scratch.write("flash.pcf.aliases.csv", "alias,device_name,reason\nW25Q64FV,W25Q64JV,alike\n");
    EXPECT_EQ(pgmdev_flash_find_any(flash, "W25Q64FV", &record, nullptr, nullptr), PGMDEV_STATUS_OK);
}

#if !defined(_WIN32)
TEST(CFlashLists, APipeInThePlaceOfAListIsNotWaitedFor) {
    const SCRATCH scratch;
    const std::string path = scratch.write("flash.pcf", read_file(INSTALLED));
    ASSERT_EQ(::mkfifo((path + ".aliases.csv").c_str(), 0600), 0);
    C_FLASH flash;
    ASSERT_EQ(pgmdev_flash_open(path.c_str(), flash.place(), nullptr), PGMDEV_STATUS_OK);
    const pgmdev_records* names = nullptr;
    C_ERROR error;
    EXPECT_EQ(pgmdev_flash_further_names(flash, &names, error.place()), PGMDEV_STATUS_FAILED);
    EXPECT_EQ(pgmdev_error_message(error), "the list " + path + ".aliases.csv cannot be read");
}
#endif

TEST(CFlashLists, ThreadsThatAskFirstGetTheSame) {
    C_FLASH flash;
    ASSERT_EQ(pgmdev_flash_open(nullptr, flash.place(), nullptr), PGMDEV_STATUS_OK);
    constexpr std::size_t THREADS = 4;
    std::vector<const pgmdev_records*> lists(THREADS);
    std::vector<std::size_t> groups(THREADS);
    std::vector<std::thread> threads;
    for (std::size_t i = 0; i < THREADS; ++i) {
        threads.emplace_back([&, i] {
            pgmdev_flash_further_names(flash, &lists[i], nullptr);
            for (std::size_t record = 0; record < 20; ++record) {
                C_ANSWER evidence;
                pgmdev_flash_evidence(flash, record, evidence.place(), nullptr);
                groups[i] += pgmdev_records_count(pgmdev_answer_list(evidence, "groups"));
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    EXPECT_NE(lists[0], nullptr);
    EXPECT_EQ(lists, std::vector<const pgmdev_records*>(THREADS, lists[0]));
    EXPECT_EQ(groups, std::vector<std::size_t>(THREADS, std::size_t{6} * 20));
}

#if defined(_WIN32)

TEST(CFlashLists, AreBesideADatabaseWhosePathIsFreeOfTheLengthLimit) {
    const SCRATCH scratch;
    const std::string file = scratch.write("flash.pcf", read_file(INSTALLED));
    scratch.write("flash.pcf.aliases.csv", "alias,device_name,reason\nANOTHER,W25Q64JV,alike\n");
    C_FLASH flash;
    const std::string verbatim = R"(\\?\)" + file;
    EXPECT_EQ(pgmdev_flash_open(verbatim.c_str(), flash.place(), nullptr), PGMDEV_STATUS_OK);
    std::size_t record = 0;
    EXPECT_EQ(pgmdev_flash_find_any(flash, "another", &record, nullptr, nullptr), PGMDEV_STATUS_OK);
}

#endif
