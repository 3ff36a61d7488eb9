#include <gtest/gtest.h>

#include <iomanip>
#include <sstream>

#include "pgmdev/user_flash/reference.h"
#include "pgmdev_user_flash.h"
#include "support/console.h"
#include "support/scratch.h"
#include "support/settings.h"

namespace {

namespace flash = flash_reference;
namespace ref = user_flash_reference;
using TEXTS = std::vector<std::string>;

/// A question, the answer that the tests give when they are after another one, the member it is about, and what a person
/// is told that it takes.
struct QUESTION {
    std::string prompt;
    std::string answer;
    std::string member;
    std::string accepted;
};

const std::vector<QUESTION> QUESTIONS{
    {"Manufacture Name : ", "Acme", "manufacturer_name", "1 to 19 characters, none of them @, # or ;"},
    {"Device Name : ", "ac25x80", "device_name", "1 to 19 characters, none of them @, # or ;"},
    {"Memory ID (hex) [1 - FE] : ", "14", "memory_id", "1 to FE in hexadecimal"},
    {"Memory ID Index [0/1/2] : ", "2", "memory_id_index", "0 to 2 in hexadecimal"},
    {"Memory Type (hex) [0 - FF] : ", "71", "memory_type", "0 to FF in hexadecimal"},
    {"Memory Type Index [-1/0/1/2] : ", "1", "memory_type_index", "0 to 2 in hexadecimal, or -1 for none"},
    {"Manufacturer ID (hex) [1 - FE] : ", "20", "mfc_id", "1 to FE in hexadecimal"},
    {"Manufacturer ID Index [0/1/2] : ", "0", "mfc_id_index", "0 to 2 in hexadecimal"},
    {"Support Extended Mode [Y/N] : ", "n", "extended_mode", "Y or N"},
    {"Micron flow [Y/N] : ", "n", "micron_flow", "Y or N"},
    {"Spansion flow [Y/N] : ", "n", "spansion_flow", "Y or N"},
    {"Protected after power-up [Y/N] : ", "n", "startup_protected", "Y or N"},
    {"Is AAI mode [Y/N] : ", "n", "aai_mode", "Y or N"},
    {"Read flag status [Y/N] : ", "n", "flag_status", "Y or N"},
    {"Die count [1/2] : ", "1", "die_count", "1 to 2 in hexadecimal"},
    {"Memory Density [1 - 2048 Mbit] : ", "8", "device_bit_size", "a power of two, 1 to 2048"},
    {"Sector Size [1 - 1024 Kbyte] : ", "64", "device_sector_byte", "a power of two, 1 to 1024"},
    {"Bulk Erase time [1 - 900 seconds] : ", "80", "bulk_erase_time", "1 to 900"},
    {"Sector Erase Time [1 - 60 seconds] : ", "3", "sec_erase_time", "1 to 60"},
    {"Page Program Time [1000 - 1000000 microseconds] : ", "5000", "program_utime", "1000 to 1000000"},
    {"Protection Mask (hex) [0 - FF] : ", "1c", "protection_mask", "0 to FF in hexadecimal"},
    {"Protection Value (hex) [0 - FF] : ", "1c", "protection_value", "0 to FF in hexadecimal"},
    {"Unprotect Value (hex) [0 - FF] : ", "0", "unprotect_value", "0 to FF in hexadecimal"},
    {"Protection Divisor (hex) [-1/3 - 20] : ", "7", "protection_division", "3 to 20 in hexadecimal, or -1 for none"},
    {"Bottom Value (bit location) [-1/0 - 7] : ", "5", "bottom_value", "0 to 7 in hexadecimal, or -1 for none"},
    {"SDM Support [Y/N] : ", "n", "sdm_support", "Y or N"},
    {"AS Configuration Voltage : ", "3.3v", "asc_voltage", "1 to 19 characters, none of them @, # or ;"},
};

/// The body that the answers above give.
const std::string BODY =
    "@ACME@AC25X80@0@20@2@113@1@32@0@32@1@NONE@0@0@0@0@0@0@1@8388608@65536@0@0@80@3@5000@28@28@0@7@5@0@3.3V@";

const std::string COUNT_PROMPT = "Number of 3rd party flash to define (max 3) : ";

std::string prompts(std::size_t count = 27) {
    std::string text;
    for (std::size_t i = 0; i < count; ++i) {
        text += QUESTIONS.at(i).prompt;
    }
    return text;
}

/// The answers as lines, some of them changed.
std::string answers(const ref::CHANGES& changes = {}) {
    std::string lines;
    for (const QUESTION& question : QUESTIONS) {
        std::string answer = question.answer;
        for (const auto& [member, changed] : changes) {
            answer = member == question.member ? changed : answer;
        }
        lines += answer + "\n";
    }
    return lines;
}

class UserFlashDialogue : public testing::Test {
protected:
    /// The values of the body that the answers give; empty when one was refused.
    TEXTS ask(const ref::CHANGES& changes) {
        const CONSOLE console(answers(changes));
        std::string body = "kept";
        const bool accepted = m_manager.prompt_flash_info(body);
        m_printed = console.output();
        if (!accepted) {
            EXPECT_EQ(body, "kept");
            return {};
        }
        EXPECT_EQ(m_printed, prompts() + "Prompt outcome: " + body + "\n");
        EXPECT_EQ(body.substr(0, 4), "kept");  // what is accepted comes behind it
        body.erase(0, 4);
        TEXTS values;
        std::size_t from = 1;
        for (std::size_t to = body.find('@', from); to != std::string::npos; to = body.find('@', from)) {
            values.push_back(body.substr(from, to - from));
            from = to + 1;
        }
        EXPECT_EQ(values.size(), 33U);
        EXPECT_EQ(from, body.size());
        return values;
    }

    /// The whole dialogue.
    std::string define(const std::string& lines) {
        const CONSOLE console(lines);
        m_manager.gen_flash_ini();
        return console.output();
    }

    USER_FLASH_PROBE m_manager;
    std::string m_printed;
    TOOL_VERSION m_version{"7.1.0", 2, 345};
};

/// What is printed while the program has a width set, which is for its own next output.
template <class PRINTING>
std::string printed_beside_a_width(PRINTING printing, const std::string& lines) {
    const CONSOLE console(lines);
    std::cout << std::setw(5) << std::setfill('.');
    printing();
    std::cout << "own" << std::setfill(' ');
    return console.output();
}

TEST_F(UserFlashDialogue, LeavesTheProgramTheWidthOfItsOwnOutput) {
    const std::string text = ref::sealed(BODY);
    EXPECT_EQ(printed_beside_a_width([&] { m_manager.gen_flash_ini(); }, "1\n" + answers()),
              COUNT_PROMPT + prompts() + "Prompt outcome: " + BODY + "\nRaw: " + text +
                  "\nINI : " + ref::encoded(text) + "\n..own");
    EXPECT_EQ(printed_beside_a_width([&] { m_manager.gen_flash_ini(); }, "x\n"),
              COUNT_PROMPT + "Invalid input or too many flash to define\n..own");
    std::string body;
    EXPECT_EQ(printed_beside_a_width([&] { m_manager.prompt_flash_info(body); }, "\n"),
              prompts(1) + "Empty name or name too long\nInvalid input\n..own");
    EXPECT_EQ(printed_beside_a_width([&] { m_manager.encode_ini("x"); }, ""),
              "Fail to generate INI because of compression failure\n..own");
}

TEST_F(UserFlashDialogue, AsksAndAnswersWordForWord) {
    const std::string text = ref::sealed(BODY);
    EXPECT_EQ(
        define("1\n" + answers()),
        "Number of 3rd party flash to define (max 3) : Manufacture Name : Device Name : Memory ID (hex) [1 - FE] : "
        "Memory ID Index [0/1/2] : Memory Type (hex) [0 - FF] : Memory Type Index [-1/0/1/2] : "
        "Manufacturer ID (hex) [1 - FE] : Manufacturer ID Index [0/1/2] : Support Extended Mode [Y/N] : "
        "Micron flow [Y/N] : Spansion flow [Y/N] : Protected after power-up [Y/N] : Is AAI mode [Y/N] : "
        "Read flag status [Y/N] : Die count [1/2] : Memory Density [1 - 2048 Mbit] : "
        "Sector Size [1 - 1024 Kbyte] : Bulk Erase time [1 - 900 seconds] : Sector Erase Time [1 - 60 seconds] : "
        "Page Program Time [1000 - 1000000 microseconds] : Protection Mask (hex) [0 - FF] : "
        "Protection Value (hex) [0 - FF] : Unprotect Value (hex) [0 - FF] : "
        "Protection Divisor (hex) [-1/3 - 20] : Bottom Value (bit location) [-1/0 - 7] : SDM Support [Y/N] : "
        "AS Configuration Voltage : Prompt outcome: " +
            BODY + "\nRaw: " + text + "\nINI : " + ref::encoded(text) + "\n");
}

TEST_F(UserFlashDialogue, PutsUpToThreeIntoOneText) {
    std::string lines = "3\n";
    std::string text;
    std::string expected = COUNT_PROMPT;
    for (const std::string name : {"ONE", "TWO", "THREE"}) {
        lines += answers({{"device_name", name}});
        std::string body = BODY;
        body.replace(body.find("AC25X80"), 7, name);
        text += ref::sealed(body);
        expected.append(prompts()).append("Prompt outcome: ").append(body);
        expected.append("\nRaw: ").append(text).append("\n");
    }
    EXPECT_EQ(define(lines), expected + "INI : " + ref::encoded(text) + "\n");
}

TEST_F(UserFlashDialogue, GivesWhatTheLoaderTakes) {
    const SCRATCH scratch;
    scratch.write("programmer/pgm_flash.pcf", flash::file(flash::payload({flash::sample()})));
    const DEVICE_DB_DIRECTORY directory(scratch.directory().string());
    for (const std::string count : {"1", "2", "3", "0x3"}) {
        const std::string output = define(count + "\n" + answers({{"memory_type_index", "-1"}}) +
                                          answers({{"device_name", "2ND"}}) + answers({{"device_name", "3RD"}}));
        std::string encoded = output.substr(output.rfind("INI : ") + 6);
        encoded.pop_back();
        const SETTING setting(ref::KEY, encoded);
        PGMDEV_FLASH_MANAGER manager(false, 1, false, false);
        ASSERT_EQ(manager.get_flash_count(), 2U);
        PGMDEV_SFL_FLASH_INFO expected = ref::record();
        expected.orvane_id = 32;
        expected.memory_type_index = 255;
        EXPECT_EQ(manager.get_flash_database()[0], expected);
    }
}

TEST_F(UserFlashDialogue, RefusesACountThatIsNoNumber) {
    for (const std::string line : {"\n", "", "x\n", "-1\n", "1 \n", "4294967296\n"}) {
        EXPECT_EQ(define(line), COUNT_PROMPT + "Invalid input or too many flash to define\n") << line;
    }
}

TEST_F(UserFlashDialogue, EndsSilentlyAtAnotherCount) {
    for (const std::string line : {"0\n", "4\n", "4294967295\n"}) {
        EXPECT_EQ(define(line), COUNT_PROMPT) << line;
    }
}

TEST_F(UserFlashDialogue, EndsWithTheFirstDeviceThatFails) {
    std::string lines = "2\n" + answers() + answers({{"device_name", ""}});
    EXPECT_EQ(define(lines), COUNT_PROMPT + prompts() + "Prompt outcome: " + BODY + "\nRaw: " + ref::sealed(BODY) +
                                 "\n" + prompts(2) +
                                 "Empty name or name too long\nInvalid input\n"
                                 "Invalid input or too many flash to define\n");
}

TEST_F(UserFlashDialogue, TakesTheEndOfInputForAnEmptyAnswer) {
    const std::string all = answers();
    std::size_t end = 0;
    for (std::size_t given = 0; given < 27; ++given) {
        const std::string expected = COUNT_PROMPT + prompts(given + 1) +
                                     (given < 2 ? "Empty name or name too long\n" : "") +
                                     "Invalid input\nInvalid input or too many flash to define\n";
        EXPECT_EQ(define("1\n" + all.substr(0, end)), expected) << given;
        end = all.find('\n', end) + 1;
    }
    // The last line needs no end.
    EXPECT_NE(define("1\n" + all.substr(0, all.size() - 1)).find("INI : "), std::string::npos);
}

TEST_F(UserFlashDialogue, FindsThatATextDoesNotSurvive) {
    // A zero byte ends the decoded text.
    const std::string output = define("1\n" + answers({{"asc_voltage", std::string("3\0V", 3)}}));
    EXPECT_TRUE(output.ends_with("\nFail to generate INI because fail to counter-check cmp-encode-decode-decmp\n"));
    EXPECT_EQ(output.find("INI : "), std::string::npos);
}

struct ANSWERS {
    std::string member;
    TEXTS refused;
    std::vector<std::pair<std::string, std::string>> accepted;  ///< answer, value
};

TEST_F(UserFlashDialogue, KeepsEveryQuestionToItsBounds) {
    const std::string longest(19, 'n');
    const std::string upper(19, 'N');
    const TEXTS bad_names{"", longest + "n"};
    const TEXTS no_hex{"", "G", "-1", "0x1", " 1", "1 ", "100000000"};
    const TEXTS no_flag{"", "yes", "YN", "1", "0", " y", "J"};
    const auto with = [](TEXTS texts, const TEXTS& more) {
        texts.insert(texts.end(), more.begin(), more.end());
        return texts;
    };
    std::vector<ANSWERS> all{
        {"manufacturer_name", bad_names, {{"a", "A"}, {longest, upper}, {" two words ", " TWO WORDS "}}},
        {"device_name", bad_names, {{"a", "A"}, {longest, upper}}},
        {"asc_voltage", bad_names, {{"1", "1"}, {longest, upper}}},
        {"memory_id", with(no_hex, {"0", "FF", "100", "FFFFFFFF"}), {{"1", "1"}, {"fe", "254"}, {"0014", "20"}}},
        {"memory_id_index", with(no_hex, {"3", "FF", "FFFFFFFF"}), {{"2", "2"}, {"02", "2"}}},
        {"memory_type", with(no_hex, {"100", "FFFFFFFE"}), {{"0", "0"}, {"ff", "255"}, {"FFFFFFFF", "255"}}},
        {"memory_type_index", {"", "3", "-2", "FF", "--1", "0x1"}, {{"1", "1"}, {"-1", "255"}, {"ffffffff", "255"}}},
        {"mfc_id", with(no_hex, {"0", "ff", "FFFFFFFF"}), {{"1", "1"}, {"FE", "254"}}},
        {"mfc_id_index", with(no_hex, {"3", "FFFFFFFF"}), {{"0", "0"}}},
        {"die_count", with(no_hex, {"0", "3", "10", "FFFFFFFF"}), {{"1", "1"}, {"2", "2"}}},
        {"device_bit_size",
         {"", "0", "3", "4096", "2049", "-1", "8 ", "4294967295"},
         {{"1", "1048576"}, {"2", "2097152"}, {"128", "134217728"}, {"0x100", "268435456"}, {"2048", "-2147483648"}}},
        {"device_sector_byte", {"", "0", "3", "2048", "1025", "-1"}, {{"1", "1024"}, {"1024", "1048576"}}},
        {"bulk_erase_time", {"", "0", "901", "-1", "1s", "4294967295"}, {{"1", "1"}, {"900", "900"}, {"0x384", "900"}}},
        {"sec_erase_time", {"", "0", "61", "-1", "4294967295"}, {{"1", "1"}, {"60", "60"}}},
        {"program_utime", {"", "999", "1000001", "4294967295"}, {{"1000", "1000"}, {"1000000", "1000000"}}},
        {"protection_division",
         {"", "2", "21", "FF", "-2", "0x7", "FFFFFFFE"},
         {{"3", "3"}, {"20", "32"}, {"1f", "31"}, {"-1", "255"}, {"FFFFFFFF", "255"}}},
        {"bottom_value", {"", "8", "FF", "-2"}, {{"0", "0"}, {"7", "7"}, {"-1", "255"}, {"FFFFFFFF", "255"}}},
    };
    for (const std::string member : {"protection_mask", "protection_value", "unprotect_value"}) {
        all.push_back({member, with(no_hex, {"100", "FFFFFFFE"}), {{"0", "0"}, {"FF", "255"}, {"ffffffff", "255"}}});
    }
    for (const std::string member : {"extended_mode", "micron_flow", "spansion_flow", "startup_protected", "aai_mode",
                                     "flag_status", "sdm_support"}) {
        all.push_back({member, no_flag, {{"Y", "1"}, {"N", "0"}, {"y", "1"}, {"n", "0"}}});
    }
    ASSERT_EQ(all.size(), QUESTIONS.size());
    for (const ANSWERS& question : all) {
        std::size_t number = 0;
        while (QUESTIONS.at(number).member != question.member) {
            ++number;
        }
        for (const std::string& answer : question.refused) {
            EXPECT_TRUE(ask({{question.member, answer}}).empty()) << question.member << " " << answer;
            EXPECT_EQ(m_printed,
                      prompts(number + 1) + (number < 2 ? "Empty name or name too long\n" : "") + "Invalid input\n")
                << question.member << " " << answer;
        }
        for (const auto& [answer, value] : question.accepted) {
            const TEXTS values = ask({{question.member, answer}});
            ASSERT_FALSE(values.empty()) << question.member << " " << answer;
            EXPECT_EQ(values[ref::place(question.member)], value) << question.member << " " << answer;
        }
    }
}

TEST_F(UserFlashDialogue, TellsAPersonWhatEachQuestionTakes) {
    std::string lines = "1\n";
    TEXTS expected;
    for (const QUESTION& question : QUESTIONS) {
        lines += "#\n" + question.answer + "\n";
        expected.push_back(question.prompt + "# " + question.accepted);
    }
    std::istringstream in(lines);
    std::ostringstream out;
    TEXTS told;
    EXPECT_EQ(PGMDEV_USER_FLASH::define(in, out,
                                        [&](const PGMDEV_USER_FLASH::REFUSED_ANSWER& refused) {
                                            told.push_back(refused.question + refused.answer + " " + refused.accepted);
                                            return true;
                                        }),
              ref::encoded(ref::sealed(BODY)));
    EXPECT_EQ(told, expected);
}

TEST_F(UserFlashDialogue, AsksForLongAddressesAboveTheReachOfShortOnes) {
    EXPECT_EQ(ask({{"device_bit_size", "128"}})[ref::place("byte4_addressing")], "0");
    EXPECT_EQ(ask({{"device_bit_size", "256"}})[ref::place("byte4_addressing")], "1");
    EXPECT_EQ(ask({{"device_bit_size", "2048"}})[ref::place("byte4_addressing")], "1");
}

TEST_F(UserFlashDialogue, ReadsTheLargestSizeBackAsItIs) {
    TEXTS values = ask({{"device_bit_size", "2048"}});
    ASSERT_TRUE(m_manager.assign_ini(values.data()));
    EXPECT_EQ(m_manager.m_ini_flash_info.device_bit_size, 0x80000000U);
}

TEST_F(UserFlashDialogue, WantsDifferentIndexesOnceAllIsAnswered) {
    const std::string message = "Memory ID, Memory Type and Manufacturer ID index cannot be at the same location";
    const std::vector<std::array<std::string, 3>> same{
        {"2", "1", "2"}, {"2", "2", "0"}, {"2", "0", "0"}, {"1", "1", "1"}, {"2", "-1", "2"}};
    const std::string told = prompts() + message;
    for (const auto& [id, type, mfc] : same) {
        const ref::CHANGES changes{{"memory_id_index", id}, {"memory_type_index", type}, {"mfc_id_index", mfc}};
        EXPECT_TRUE(ask(changes).empty()) << id << type << mfc;
        EXPECT_EQ(m_printed, told);
        EXPECT_EQ(define("1\n" + answers(changes)),
                  COUNT_PROMPT + told + "Invalid input or too many flash to define\n");
    }
    for (const auto& [id, type, mfc] :
         std::vector<std::array<std::string, 3>>{{"0", "1", "2"}, {"1", "2", "0"}, {"0", "-1", "1"}}) {
        EXPECT_FALSE(ask({{"memory_id_index", id}, {"memory_type_index", type}, {"mfc_id_index", mfc}}).empty());
    }
}

}  // namespace
