#include "flash/chip_value.h"

#include <fmt/core.h>

#include <algorithm>
#include <array>
#include <bit>
#include <limits>

#include "gen.h"

namespace {

using RECORD = PGMDEV_SFL_FLASH_INFO;
using MEMBER = PGMDEV_SFL_FLASH_MEMBER;
using ASKED = PGMDEV_SFL_FLASH_QUESTION::ANSWER;

constexpr QWORD KILO = 1024;
constexpr QWORD MEGA = KILO * KILO;
constexpr QWORD GIGA = MEGA * KILO;
constexpr QWORD BITS = 8;
constexpr std::string_view TEARING = "@#;";

/// A unit that people write, as a fraction of the member's.
struct WRITTEN_UNIT {
    std::string_view of;  ///< unit of the member
    std::string_view name;
    QWORD numerator;
    QWORD denominator = 1;
};

// As data sheets write them, in UTF-8: with the sign of its own, or with the letter.
constexpr std::string_view MICRO_SECONDS = "\xC2\xB5s";
constexpr std::string_view GREEK_MU_SECONDS = "\xCE\xBCs";

// The first of each size is the one that is told to people.
constexpr std::array WRITTEN_UNITS{WRITTEN_UNIT{"bits", "Gbit", GIGA},
                                   WRITTEN_UNIT{"bits", "Mbit", MEGA},
                                   WRITTEN_UNIT{"bits", "Kbit", KILO},
                                   WRITTEN_UNIT{"bits", "bits", 1},
                                   WRITTEN_UNIT{"bits", "bit", 1},
                                   WRITTEN_UNIT{"bits", "Gibit", GIGA},
                                   WRITTEN_UNIT{"bits", "Mibit", MEGA},
                                   WRITTEN_UNIT{"bits", "Kibit", KILO},
                                   WRITTEN_UNIT{"bits", "GiB", GIGA* BITS},
                                   WRITTEN_UNIT{"bits", "MiB", MEGA* BITS},
                                   WRITTEN_UNIT{"bits", "KiB", KILO* BITS},
                                   WRITTEN_UNIT{"bits", "GB", GIGA* BITS},
                                   WRITTEN_UNIT{"bits", "MB", MEGA* BITS},
                                   WRITTEN_UNIT{"bits", "KB", KILO* BITS},
                                   WRITTEN_UNIT{"bits", "Mbyte", MEGA* BITS},
                                   WRITTEN_UNIT{"bits", "bytes", BITS},
                                   WRITTEN_UNIT{"bytes", "Mbyte", MEGA},
                                   WRITTEN_UNIT{"bytes", "Kbyte", KILO},
                                   WRITTEN_UNIT{"bytes", "bytes", 1},
                                   WRITTEN_UNIT{"bytes", "byte", 1},
                                   WRITTEN_UNIT{"bytes", "B", 1},
                                   WRITTEN_UNIT{"bytes", "MiB", MEGA},
                                   WRITTEN_UNIT{"bytes", "KiB", KILO},
                                   WRITTEN_UNIT{"bytes", "MB", MEGA},
                                   WRITTEN_UNIT{"bytes", "KB", KILO},
                                   WRITTEN_UNIT{"s", "s", 1},
                                   WRITTEN_UNIT{"s", "seconds", 1},
                                   WRITTEN_UNIT{"s", "min", 60},
                                   WRITTEN_UNIT{"s", "ms", 1, 1000},
                                   WRITTEN_UNIT{"s", "us", 1, 1000000},
                                   WRITTEN_UNIT{"s", MICRO_SECONDS, 1, 1000000},
                                   WRITTEN_UNIT{"s", GREEK_MU_SECONDS, 1, 1000000},
                                   WRITTEN_UNIT{"us", "us", 1},
                                   WRITTEN_UNIT{"us", "microseconds", 1},
                                   WRITTEN_UNIT{"us", MICRO_SECONDS, 1},
                                   WRITTEN_UNIT{"us", GREEK_MU_SECONDS, 1},
                                   WRITTEN_UNIT{"us", "ms", 1000},
                                   WRITTEN_UNIT{"us", "s", 1000000}};

/// As in 64Mb: data sheets mean bits by it, others bytes, eight times as much.
bool may_be_bits_or_bytes(std::string_view text) {
    return text.ends_with('b');
}

const WRITTEN_UNIT* find_unit(const MEMBER& member, const std::string& name) {
    const auto* const found = std::find_if(WRITTEN_UNITS.begin(), WRITTEN_UNITS.end(), [&](const WRITTEN_UNIT& unit) {
        return unit.of == member.unit && gen_stricmp(unit.name, name) == 0 && !may_be_bits_or_bytes(name);
    });
    return found != WRITTEN_UNITS.end() ? found : nullptr;
}

/// The unit in which the question asks for the member.
std::string unit_of_question(const MEMBER& member) {
    const auto* const found = std::find_if(WRITTEN_UNITS.begin(), WRITTEN_UNITS.end(), [&](const WRITTEN_UNIT& unit) {
        return unit.of == member.unit && unit.denominator == 1 && unit.numerator == member.question.unit;
    });
    return found != WRITTEN_UNITS.end() ? std::string(found->name) : "";
}

bool is_time(const MEMBER& member) {
    return member.unit == "s" || member.unit == "us";
}

bool has_none(const MEMBER& member) {
    return member.question.answer == ASKED::HEX_OR_NONE;
}

std::string number_text(const MEMBER& member, QWORD number) {
    return member.base == PGMDEV_NUMBER_BASE::BASE_16 ? fmt::format("{:X}", number) : std::to_string(number);
}

/// What is written, rounded up to the member's unit.
struct QUANTITY {
    QWORD number = 0;
    bool exact = true;
};

constexpr QWORD MOST = std::numeric_limits<DWORD>::max();

std::optional<QUANTITY> hexadecimal(const std::string& digits) {
    constexpr std::size_t MOST_DIGITS = 8;
    const bool valid = !digits.empty() && digits.size() <= MOST_DIGITS &&
                       digits.find_first_not_of("0123456789abcdefABCDEF") == std::string::npos;
    return valid ? std::optional(QUANTITY{std::stoull(digits, nullptr, 16)}) : std::nullopt;
}

/// "0.7 ms": digits, perhaps with a fraction, and a unit.
std::optional<QUANTITY> decimal(const MEMBER& member, const std::string& text) {
    constexpr std::size_t MOST_DIGITS = 10;
    constexpr std::string_view DIGITS = "0123456789";
    const std::size_t end = text.find_first_not_of("0123456789.");
    const std::string number = text.substr(0, end);
    const std::size_t point = number.find('.');
    const std::string whole = number.substr(0, point);
    const std::string fraction = point == std::string::npos ? "" : number.substr(point + 1);
    std::string name = end == std::string::npos ? "" : text.substr(end);
    name = gen_remove_leading_and_trailing_white_spaces(name);
    const WRITTEN_UNIT* const unit = find_unit(member, name);
    if (whole.empty() || whole.size() + fraction.size() > MOST_DIGITS ||
        fraction.find_first_not_of(DIGITS) != std::string::npos || (!name.empty() && unit == nullptr)) {
        return std::nullopt;
    }
    QWORD divisor = unit == nullptr ? 1 : unit->denominator;
    for (std::size_t i = 0; i < fraction.size(); ++i) {
        divisor *= 10;
    }
    // The largest product of 10 digits and a unit has 34 + 33 bits: what does not fit is too large anyway.
    const QWORD digits = std::stoull(whole + fraction);
    const QWORD numerator = unit == nullptr ? 1 : unit->numerator;
    if (digits > std::numeric_limits<QWORD>::max() / numerator) {
        return QUANTITY{MOST + 1};
    }
    const QWORD product = digits * numerator;
    return QUANTITY{product / divisor + (product % divisor != 0 ? 1 : 0), product % divisor == 0};
}

std::optional<QUANTITY> quantity_of(const MEMBER& member, const std::string& text) {
    if (has_none(member) && (text == "-1" || gen_stricmp(text, "none") == 0)) {
        return QUANTITY{RECORD::NONE};
    }
    if (text.starts_with("0x") || text.starts_with("0X")) {
        return hexadecimal(text.substr(2));
    }
    return member.base == PGMDEV_NUMBER_BASE::BASE_16 ? hexadecimal(text) : decimal(member, text);
}

bool is_in_range(const MEMBER& member, QWORD number) {
    const PGMDEV_SFL_FLASH_QUESTION& question = member.question;
    if (question.answer == ASKED::GIVEN) {
        return number <= std::numeric_limits<BYTE>::max();
    }
    const bool is_power = question.answer != ASKED::POWER_OF_TWO || std::has_single_bit(number);
    return (has_none(member) && number == RECORD::NONE) || (number >= QWORD{question.least} * question.unit &&
                                                            number <= QWORD{question.most} * question.unit && is_power);
}

/// What to write instead.
std::string advice_for(const MEMBER& member, const std::string& text, const std::optional<QUANTITY>& given) {
    const std::string unit = unit_of_question(member);
    const std::string name(member.name);
    if (!given && text.find(',') != std::string::npos) {
        return "a number has no comma; a fraction stands behind a decimal point";
    }
    if (!given && (member.unit == "bits" || member.unit == "bytes") && may_be_bits_or_bytes(text)) {
        const std::string number = text.substr(0, text.size() - 1);
        return member.unit == "bits" ? fmt::format("b may be bits or bytes: write {0}={1}bit or {0}={1}B", name, number)
                                     : fmt::format("b may be bits or bytes: {}={}B if bytes are meant", name, number);
    }
    if (!given) {
        return member.unit.empty() ? "" : fmt::format("a number without a unit counts {}", member.unit);
    }
    if (is_time(member)) {
        const QWORD least = std::max<QWORD>(given->number, member.question.least);
        if (least > member.question.most) {
            return "no longer time can be described";
        }
        return fmt::format("write {}={}{}: it is the longest time that is waited for, so a longer one does no harm",
                           name, least, unit);
    }
    const bool is_bare = text.find_first_not_of("0123456789") == std::string::npos;
    if (!member.unit.empty() && is_bare && given->number <= member.question.most) {
        return fmt::format("without a unit it counts {}: write {}={}{}", member.unit, name, text, unit);
    }
    return "";
}

std::optional<bool> flag_of(const std::string& text) {
    constexpr std::array<std::string_view, 5> YES{"yes", "y", "true", "1", "on"};
    constexpr std::array<std::string_view, 5> NO{"no", "n", "false", "0", "off"};
    const auto is_word = [&text](std::string_view word) { return gen_stricmp(text, word) == 0; };
    if (std::any_of(YES.begin(), YES.end(), is_word)) {
        return true;
    }
    return std::any_of(NO.begin(), NO.end(), is_word) ? std::optional(false) : std::nullopt;
}

bool is_text_value(const MEMBER& member, const std::string& text) {
    const auto is_control = [](char c) { return static_cast<unsigned char>(c) < ' '; };
    const std::size_t most = member.question.answer == ASKED::GIVEN ? RECORD::NONE : member.question.most;
    return !text.empty() && text.size() <= most && text.find_first_of(TEARING) == std::string::npos &&
           std::none_of(text.begin(), text.end(), is_control);
}

/// The voltage that is meant by a number with a comma in it, "3,3V"; "": the text is none.
std::string voltage_with_comma(const std::string& text) {
    constexpr std::string_view DIGITS = "0123456789";
    const std::string upper = gen_ascii_toupper(text);
    std::string number = upper.substr(0, upper.find_last_not_of(" V") + 1);
    const std::size_t comma = number.find(',');
    const std::size_t other = number.find_first_not_of(DIGITS);
    if (comma == std::string::npos || comma != other || comma == 0 || comma + 1 == number.size() ||
        number.find_first_not_of(DIGITS, comma + 1) != std::string::npos) {
        return "";
    }
    number[comma] = '.';
    return number + "V";
}

/// A number of volts without blanks before its unit, as tables spell it: "3.3V" for "3.3 V". Other texts as they are.
std::string volts_in_one_word(const std::string& text) {
    const std::size_t end = text.find_first_not_of("0123456789.");
    const bool is_number = end != 0 && end != std::string::npos;
    std::string unit = is_number ? text.substr(end) : "";
    unit = gen_remove_leading_and_trailing_white_spaces(unit);
    return gen_stricmp(unit, "V") == 0 ? text.substr(0, end) + unit : text;
}

// Whether the value was taken; `advice` is told when it was not.

bool take(std::string& value, const MEMBER& member, const std::string& text, std::string& advice) {
    const bool is_voltage = member.name == "asc_voltage";
    const std::string meant = is_voltage ? voltage_with_comma(text) : "";
    advice = meant.empty() ? "" : fmt::format("volts have a decimal point: write {}={}", member.name, meant);
    const std::string kept = is_voltage ? volts_in_one_word(text) : text;
    const bool taken = is_text_value(member, kept) && meant.empty();
    value = taken ? gen_ascii_toupper(kept) : value;
    return taken;
}

bool take(bool& value, const MEMBER&, const std::string& text, std::string&) {
    const std::optional<bool> flag = flag_of(text);
    value = flag.value_or(value);
    return flag.has_value();
}

template <class NUMBER>
bool take(NUMBER& value, const MEMBER& member, const std::string& text, std::string& advice) {
    const std::optional<QUANTITY> given = quantity_of(member, text);
    if (!given || !given->exact || !is_in_range(member, given->number)) {
        advice = advice_for(member, text, given);
        return false;
    }
    value = static_cast<NUMBER>(given->number);
    return true;
}

}  // namespace

std::optional<FIELD_FAULT> take_chip_value(RECORD& record, const MEMBER& member, const std::string& text) {
    std::string advice;
    const bool taken = std::visit([&](auto field) { return take(record.*field, member, text, advice); }, member.field);
    return taken ? std::nullopt
                 : std::optional(FIELD_FAULT{"", std::string(member.name), text, accepted_chip_values(member), advice});
}

std::string accepted_chip_values(const MEMBER& member) {
    const PGMDEV_SFL_FLASH_QUESTION& question = member.question;
    if (member.type() == PGMDEV_MANAGER_BOOL) {
        return "yes or no";
    }
    if (member.type() == PGMDEV_MANAGER_STRING) {
        return question.answer == ASKED::GIVEN
                   ? "a text without @, # and ;"
                   : fmt::format("{} to {} characters, none of them @, # or ;", question.least, question.most);
    }
    const DWORD most = question.answer == ASKED::GIVEN ? RECORD::NONE : question.most;
    std::string text = fmt::format("{} to {}", number_text(member, question.least), number_text(member, most));
    if (question.answer == ASKED::POWER_OF_TWO) {
        text = "a power of two, " + text;
    }
    const std::string unit = unit_of_question(member);
    text += unit.empty() ? "" : " " + unit;
    text += member.base == PGMDEV_NUMBER_BASE::BASE_16 ? " in hexadecimal" : "";
    return text + (has_none(member) ? ", or none" : "");
}

bool raise_chip_time(RECORD& record, const MEMBER& member) {
    DWORD RECORD::*const* const time = std::get_if<DWORD RECORD::*>(&member.field);
    if (!is_time(member) || time == nullptr || record.**time >= member.question.least) {
        return false;
    }
    record.** time = member.question.least;
    return true;
}

const MEMBER* find_flash_member(const std::string& name) {
    const auto* const found =
        std::find_if(PGMDEV_SFL_FLASH_MEMBERS.begin(), PGMDEV_SFL_FLASH_MEMBERS.end(),
                     [&name](const MEMBER& member) { return gen_stricmp(member.name, name) == 0; });
    return found != PGMDEV_SFL_FLASH_MEMBERS.end() ? found : nullptr;
}
