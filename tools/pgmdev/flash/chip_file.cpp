#include "flash/chip_file.h"

#include <fmt/core.h>

#include <algorithm>
#include <iostream>
#include <iterator>
#include <optional>
#include <utility>

#include "file_reader.h"
#include "files/inspection.h"
#include "fio.h"
#include "gen.h"
#include "terminal/input.h"
#include "text_lines.h"
#include "utf8_path.h"
#include "utf_8_input.h"

namespace {

constexpr std::size_t MOST_FILE_BYTES = std::size_t{1} << 20;
constexpr const char* ASSIGNMENT = "field = value";

/// Standard input to its end, or one character more than a description has.
std::string text_of_input() {
    std::string text(MOST_FILE_BYTES + 1, '\0');
    text.resize(
        static_cast<std::size_t>(std::cin.rdbuf()->sgetn(text.data(), static_cast<std::streamsize>(text.size()))));
    require_readable_input();
    return text;
}

COMMAND_FAILURE unreadable_description(const std::string& file, const std::string& why) {
    return COMMAND_FAILURE({FAILURE_CODE::FILE_UNREADABLE,
                            "the description cannot be read: " + why,
                            file,
                            {},
                            "name a text file of at most 1 MiB that you may read",
                            {}});
}

/// Why a file was not read.
std::string obstacle_to(const std::string& file) {
    const std::string obstacle = file == "-" || is_stream(file) ? "" : inspect_file(file, 0).obstacle;
    return obstacle.empty() ? "it has more than 1 MiB, or ends in an error" : obstacle;
}

std::string text_of_file(const std::string& file) {
    std::string text;
    bool is_read = false;
    if (file == "-") {
        text = text_of_input();
        is_read = text.size() <= MOST_FILE_BYTES;
    } else {
        is_read = read_whole_file(fio_get_unc_full_path(FIO_PATH(file).fullpath()), MOST_FILE_BYTES,
                                  FILE_KINDS::STREAMS_TOO, text) == READ_RESULT::READ;
    }
    if (!is_read) {
        throw unreadable_description(file, obstacle_to(file));
    }
    std::optional<std::string> readable = as_utf_8(std::move(text));
    if (!readable) {
        throw unreadable_description(file, MALFORMED_UTF_16);
    }
    if (readable->find('\0') != std::string::npos) {
        throw unreadable_description(file, "it is UTF-16, or no text: save it as UTF-8");
    }
    return *std::move(readable);
}

/// Puts the lines of a file together to chips.
class CHIP_READER {
public:
    CHIP_READER(std::string directory, std::vector<FIELD_FAULT>& faults)
        : m_directory(std::move(directory)), m_faults(faults) {}

    void take(const std::string& line, const std::string& place, std::size_t number) {
        const std::string text = gen_remove_leading_and_trailing_white_spaces(line.substr(0, line.find('#')));
        const std::size_t equals = text.find('=');
        if (text.empty()) {
            m_behind_blank = m_behind_blank || line.find('#') == std::string::npos;
        } else if (text.front() == '[' && text.back() == ']') {
            m_begins = true;
        } else if (equals == std::string::npos || equals == 0) {
            m_faults.push_back({place, "", text, ASSIGNMENT, "", number});
        } else {
            add({place, gen_remove_leading_and_trailing_white_spaces(text.substr(0, equals)),
                 gen_remove_leading_and_trailing_white_spaces(text.substr(equals + 1)), number});
        }
    }

    std::vector<CHIP_TEXT> chips;

private:
    void add(CHIP_ENTRY entry) {
        const auto is_same = [&entry](const CHIP_ENTRY& other) { return gen_stricmp(entry.name, other.name) == 0; };
        const bool again = !chips.empty() && m_behind_blank &&
                           std::any_of(chips.back().entries.begin(), chips.back().entries.end(), is_same);
        if (chips.empty() || m_begins || again) {
            chips.push_back({m_directory, {}});
        }
        m_begins = false;
        m_behind_blank = false;
        chips.back().entries.push_back(std::move(entry));
    }

    std::string m_directory;
    std::vector<FIELD_FAULT>& m_faults;
    bool m_begins = true;
    bool m_behind_blank = false;
};

}  // namespace

CHIP_TEXT chip_of_arguments(const std::vector<std::string>& assignments, std::vector<FIELD_FAULT>& faults) {
    CHIP_TEXT chip;
    for (const std::string& assignment : assignments) {
        const std::size_t equals = assignment.find('=');
        if (equals == std::string::npos || equals == 0) {
            const INSPECTED_FILE inspected = inspect_file(assignment, 0);
            const bool is_file = !inspected.missing && inspected.obstacle.empty();
            faults.push_back(
                {"", "", assignment, "FIELD=VALUE", is_file ? fmt::format("a file is written @{}", assignment) : ""});
            continue;
        }
        chip.entries.push_back({"", gen_remove_leading_and_trailing_white_spaces(assignment.substr(0, equals)),
                                gen_remove_leading_and_trailing_white_spaces(assignment.substr(equals + 1))});
    }
    return chip;
}

std::vector<CHIP_TEXT> chips_of_file(const std::string& file, std::vector<FIELD_FAULT>& faults) {
    const std::string text(without_byte_order_mark(text_of_file(file)));
    const std::string name = utf8_from_path(path_from_utf8(file).filename());
    CHIP_READER reader(file.substr(0, file.size() - name.size()), faults);
    std::size_t number = 0;
    for (std::size_t begin = 0; begin < text.size();) {
        const std::size_t end = std::min(text.find('\n', begin), text.size());
        ++number;
        reader.take(text.substr(begin, end - begin), fmt::format("{}:{}", file, number), number);
        begin = end + 1;
    }
    return reader.chips;
}

bool names_chip_file(const std::string& argument) {
    return argument.size() > 1 && argument.front() == '@';
}
