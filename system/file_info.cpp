#include "file_info.h"

std::string_view without_margins(std::string_view text) {
    constexpr std::string_view WHITE_SPACE = " \t\n\r\v\f";
    const std::size_t begin = text.find_first_not_of(WHITE_SPACE);
    return begin == std::string_view::npos ? std::string_view()
                                           : text.substr(begin, text.find_last_not_of(WHITE_SPACE) - begin + 1);
}

INFO_STATE judge_info(std::string_view info, std::string_view digest_key, std::string_view digest) {
    std::string_view stated;
    std::string_view replaced;
    for_each_info_value(info, [&](std::string_view key, std::string_view value) {
        if (key == digest_key) {
            stated = value;
        } else if (key == REPLACED_DIGEST_KEY) {
            replaced = value;
        }
    });
    return stated.empty()       ? INFO_STATE::UNREADABLE
           : stated == digest   ? INFO_STATE::MATCHES
           : replaced == digest ? INFO_STATE::OLDER
                                : INFO_STATE::DIFFERS;
}

FILE_WITH_INFO read_with_info(const std::filesystem::path& file, const std::filesystem::path& info) {
    // Who replaces the file writes the text before and behind it: a file that is read while the text stays the same is
    // one that the text knows.
    constexpr int ATTEMPTS = 10;
    for (int i = 0; i < ATTEMPTS; ++i) {
        FILE_WITH_INFO found;
        found.info_result = read_whole_file(info, LARGEST_INFO, FILE_KINDS::REGULAR, found.info);
        if (found.info_result != READ_RESULT::READ) {
            return found;
        }
        found.file_result = read_whole_file(file, LARGEST_FILE_WITH_INFO, FILE_KINDS::REGULAR, found.file);
        std::string again;
        if (read_whole_file(info, LARGEST_INFO, FILE_KINDS::REGULAR, again) == READ_RESULT::READ &&
            again == found.info) {
            return found;
        }
    }
    return {};
}
