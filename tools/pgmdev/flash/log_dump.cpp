#include "flash/log_dump.h"

#include <algorithm>
#include <array>
#include <optional>
#include <utility>

#include "flash/hex_text.h"
#include "flash/log_words.h"
#include "gen.h"

namespace {

using BYTES = std::vector<BYTE>;

/// Whether the word is an offset of a dump that begins there: nothing but zeros, four at least, or a colon behind it.
bool is_first_offset(std::string word) {
    word.erase(0, word.starts_with("0x") ? 2 : 0);
    const bool marked = word.ends_with(':');
    word.erase(word.find_last_not_of(':') + 1);
    return word.find_first_not_of('0') == std::string::npos && (word.size() >= 4 || (marked && !word.empty()));
}

/// What stands before bytes that were received: none of them stands before what was sent, or before addresses.
constexpr std::array RECEIVED_WORDS{
    std::string_view("read"), std::string_view("rx"),       std::string_view("recv"),  std::string_view("received"),
    std::string_view("resp"), std::string_view("response"), std::string_view("reply"), std::string_view("answer")};

/// And what stands before bytes that were sent.
constexpr std::array SENT_WORDS{std::string_view("write"), std::string_view("tx"),  std::string_view("sent"),
                                std::string_view("send"),  std::string_view("cmd"), std::string_view("command")};

/// Commands that a flash answers with an identification.
constexpr std::array<BYTE, 5> IDENTIFYING_COMMANDS{0x9F, 0x9E, 0xAF, 0xAB, 0x90};

/// No flash answers with more, the lengths of what is further in it included.
constexpr std::size_t LONGEST_ANSWER = 20;

/// The words behind one of `words` and a sign, with which a line begins, or which a time in brackets stands before.
template <std::size_t COUNT>
std::vector<std::string> tokens_behind(const std::string& line, const std::array<std::string_view, COUNT>& words) {
    std::string text = gen_remove_leading_and_trailing_white_spaces(line);
    if (text.starts_with('[')) {
        text.erase(0, std::min(text.find(']'), text.size() - 1) + 1);
    }
    const std::size_t sign = text.find_first_of(":=");
    const std::string word = gen_remove_leading_and_trailing_white_spaces(text.substr(0, sign));
    const bool found = sign != std::string::npos && std::find(words.begin(), words.end(), word) != words.end();
    return found ? tokens_of(std::string_view(text).substr(sign + 1)) : std::vector<std::string>();
}

/// The bytes of a line that has nothing but "read: 0xef 0x40 0x18": it does not say what they are, so that anything else
/// in it may say that they are no identification.
BYTES received_bytes_in(const std::string& line) {
    BYTES all;
    for (const std::string& token : tokens_behind(line, RECEIVED_WORDS)) {
        const BYTES bytes = bytes_of(token);
        if (!token.starts_with("0x") || bytes.size() != 1) {
            return {};
        }
        all.push_back(bytes.front());
    }
    return all.size() < LEAST_IDENTIFICATION || all.size() > LONGEST_ANSWER ? BYTES() : all;
}

/// The bytes of a line of a hex dump, the first one of the dump.
BYTES dumped_in(std::string text) {
    const std::size_t begin = std::min(text.find_first_not_of(" \t"), text.size());
    const std::size_t end = std::min(text.find_first_of(" \t\r", begin), text.size());
    const std::string first = text.substr(begin, end - begin);
    const bool has_offset = end < text.size() && is_first_offset(first);
    if (has_offset) {
        if (auto numbers = bytes_of_dump_words(gen_remove_leading_and_trailing_white_spaces(text))) {
            return *std::move(numbers);
        }
    }
    text.erase(0, has_offset ? end : begin);
    text.erase(std::min(text.find("  ", text.find_first_not_of(" \t")), text.size()));  // characters, or a gap
    const std::vector<std::string> words = tokens_of(text);
    if (first == "0000000" && has_offset && !words.empty() && words.front().size() == 4) {
        return {};  // numbers of two bytes, in another order, of which something is wrong
    }
    BYTES all;
    for (const std::string& word : words) {
        const BYTES bytes = bytes_of(word);
        if (bytes.empty() || (!has_offset && bytes.size() != 1 && words.size() > 1)) {
            return {};
        }
        all.insert(all.end(), bytes.begin(), bytes.end());
    }
    return all;
}

/// Whether a flash tells by these bytes of a line what it is able to do; a dump may print them as numbers.
bool describes_itself(const BYTES& bytes, const std::string& line) {
    const auto dumped = bytes_of_hex_text(line, line.size());
    return begins_as_sfdp(bytes) || (dumped && begins_as_sfdp(*dumped));
}

/// The bytes of a line without what is sent before an identification; none when they are something else.
BYTES as_identification(BYTES all, const std::string& line) {
    all = without_command(std::move(all), true);
    return all.size() < LEAST_IDENTIFICATION || describes_itself(all, line) ? BYTES() : all;
}

}  // namespace

std::vector<BYTE> received_in(const std::string& line) {
    const std::string text = lower_line(line);
    return as_identification(received_bytes_in(text), text);
}

std::vector<BYTE> dump_in(const std::string& line) {
    const std::string text = lower_line(line);
    BYTES all = received_bytes_in(text);
    return as_identification(all.empty() ? dumped_in(text) : std::move(all), text);
}

bool asks_for_no_identification(const std::string& line) {
    const std::vector<std::string> sent = tokens_behind(lower_line(line), SENT_WORDS);
    const BYTES command = sent.empty() ? BYTES() : bytes_of(sent.front());
    return !command.empty() && std::find(IDENTIFYING_COMMANDS.begin(), IDENTIFYING_COMMANDS.end(), command.front()) ==
                                   IDENTIFYING_COMMANDS.end();
}
