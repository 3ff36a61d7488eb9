#include "params/typed_values.h"

#include <fmt/core.h>

#include <array>

#include "files/container.h"
#include "gen.h"
#include "hps/block_form.h"
#include "params/blocks.h"
#include "pgmdev_param_value.h"
#include "terminal/failure.h"
#include "terminal/input.h"
#include "terminal/text_table.h"

namespace {

struct TYPE_NAME {
    const char* name;
    PGMDEV_PARAM_TYPE type;
};

constexpr std::array TYPE_NAMES{
    TYPE_NAME{"STRING", PGMDEV_PARAM_STRING}, TYPE_NAME{"BOOL", PGMDEV_PARAM_BOOL},
    TYPE_NAME{"BYTE", PGMDEV_PARAM_BYTE},     TYPE_NAME{"WORD", PGMDEV_PARAM_WORD},
    TYPE_NAME{"DWORD", PGMDEV_PARAM_DWORD},   TYPE_NAME{"QWORD", PGMDEV_PARAM_QWORD},
};

const TYPE_NAME& type_named(const std::string& name) {
    for (const TYPE_NAME& type : TYPE_NAMES) {
        if (gen_stricmp(name, type.name) == 0) {
            return type;
        }
    }
    throw USAGE_ERROR(
        fmt::format("there is no type \"{}\"; there are STRING, BOOL, BYTE, WORD, DWORD and QWORD", name));
}

/// A value with the place where it begins.
struct PLACED_VALUE {
    DWORD offset;
    const char* type;
    std::string text;
};

/// The values of the block, record after record of those types, up to its end or the first that is cut. `end` tells
/// where they end.
std::vector<PLACED_VALUE> values_of(const BLOCK& block, const std::vector<std::string>& types, bool hex, DWORD& end) {
    std::vector<PLACED_VALUE> values;
    while (end < block.size) {
        for (const std::string& name : types) {
            const TYPE_NAME& type = type_named(name);
            PGMDEV_PARAM_VALUE value(type.type);
            DWORD position = end;
            if (!pgmdev_read_param(block.data.get(), block.size, position, value) || position > block.size) {
                return values;
            }
            values.push_back({end, type.name, PGMDEV_FLASH_INI::print_flash_ini_data(type.type, hex, value.object())});
            end = position;
        }
    }
    return values;
}

JSON values_schema() {
    std::vector<SCHEMA_MEMBER> members = block_members();
    members.push_back(
        {"values", array_schema(object_schema(
                       {{"offset", number_schema()}, {"type", text_schema()}, {"value", text_schema()}}))});
    members.push_back({"rest", number_schema()});
    return object_schema(members);
}

void show_values(const ARGUMENTS& given, COMMAND& command) {
    const PGMDEV_FLASH_INI_ENUM which = readable_block(given.text("BLOCK"));
    for (const std::string& type : given.texts("TYPE")) {
        type_named(type);
    }
    DWORD end = static_cast<DWORD>(given.number("--skip").value_or(0));
    require_readable_container();
    const BLOCK block(which);
    JSON answer = block_json(which, block);
    answer["values"] = JSON::array();
    if (block.data == nullptr) {
        answer["rest"] = 0U;
        report_absent(which, answer, command);
        return;
    }
    if (end > block.size) {
        throw USAGE_ERROR(fmt::format("--skip: the block has {} bytes", block.size));
    }
    const std::vector<PLACED_VALUE> values = values_of(block, given.texts("TYPE"), given.has("--hex"), end);
    if (command.json) {
        for (const PLACED_VALUE& value : values) {
            answer["values"].push_back({{"offset", value.offset}, {"type", value.type}, {"value", value.text}});
        }
        answer["rest"] = block.size - end;
        print_json(answer);
        return;
    }
    TEXT_TABLE table({"offset", "type", "value"});
    for (const PLACED_VALUE& value : values) {
        table.add({std::to_string(value.offset), value.type, value.text});
    }
    table.print();
    if (end < block.size) {
        fmt::print("{} bytes from {} on are no whole value of these types\n", block.size - end, end);
    }
}

/// A count and as many pairs of numbers, as conversions take them; null when there are none.
class NUMBER_PAIRS {
public:
    /// Pairs in a text, with commas between them.
    NUMBER_PAIRS(const std::string& all, const char* option, char separator) : m_numbers{0} {
        for (std::size_t begin = 0; begin < all.size();) {
            const std::string text = all.substr(begin, all.find(',', begin) - begin);
            begin += text.size() + 1;
            const std::size_t place = text.find(separator);
            if (place == std::string::npos) {
                throw USAGE_ERROR(fmt::format("{}: expected two numbers with {} between them, found \"{}\"", option,
                                              separator, text));
            }
            ++m_numbers.front();
            m_numbers.push_back(number(option, text.substr(0, place)));
            m_numbers.push_back(number(option, text.substr(place + 1)));
        }
    }
    const DWORD* get() const { return m_numbers.front() == 0 ? nullptr : m_numbers.data(); }

private:
    static DWORD number(const char* option, const std::string& text) {
        QWORD value = 0;
        std::string error;
        if (text.empty() || !PGMDEV_FLASH_INI::convert_string_to_qword(PGMDEV_PARAM_DWORD, value, false, text, false,
                                                                       nullptr, nullptr, false, 1, error)) {
            throw USAGE_ERROR(fmt::format("{}: \"{}\" is no number of 32 bits", option, text));
        }
        return static_cast<DWORD>(value);
    }

    std::vector<DWORD> m_numbers;
};

/// How texts become numbers.
struct CONVERSION {
    bool hex;
    bool power_of_two;
    bool exponent;
    DWORD multiple;
    NUMBER_PAIRS ranges;
    NUMBER_PAIRS invalid_hits;

    explicit CONVERSION(const ARGUMENTS& given)
        : hex(given.has("--hex")),
          power_of_two(given.has("--power-of-two")),
          exponent(given.has("--exponent")),
          multiple(static_cast<DWORD>(given.number("--multiple").value_or(1))),
          ranges(given.text("--range"), "--range", '-'),
          invalid_hits(given.text("--invalid-hit"), "--invalid-hit", '=') {
        if (multiple == 0) {
            throw USAGE_ERROR("--multiple: expected a number from 1 to 4294967295");
        }
    }

    QWORD number(PGMDEV_PARAM_TYPE type, const std::string& text) const {
        QWORD value = 0;
        std::string error;
        if (text.empty()) {
            throw USAGE_ERROR("a number is missing");
        }
        if (!PGMDEV_FLASH_INI::convert_string_to_qword(type, value, hex, text, power_of_two, ranges.get(),
                                                       invalid_hits.get(), exponent, multiple, error)) {
            throw USAGE_ERROR(fmt::format("{} (\"{}\")", error, text));
        }
        return value;
    }
};

bool flag_of(const std::string& text) {
    const std::optional<bool> flag = flag_named(text);
    if (!flag) {
        throw USAGE_ERROR(fmt::format("expected 0, 1, false or true, found \"{}\"", text));
    }
    return *flag;
}

PGMDEV_PARAM_VALUE value_of(const std::string& assignment, const CONVERSION& conversion) {
    const std::size_t equals = assignment.find('=');
    if (equals == std::string::npos) {
        throw USAGE_ERROR(fmt::format("expected TYPE=VALUE, found \"{}\"", assignment));
    }
    PGMDEV_PARAM_VALUE value(type_named(assignment.substr(0, equals)).type);
    const std::string text = assignment.substr(equals + 1);
    if (value.type() == PGMDEV_PARAM_STRING) {
        value.set_text(text);
    } else if (value.type() == PGMDEV_PARAM_BOOL) {
        value.set_number(flag_of(text) ? 1 : 0);
    } else {
        value.set_number(conversion.number(value.type(), text));
    }
    return value;
}

void set_values(const ARGUMENTS& given, const COMMAND& command) {
    const PGMDEV_FLASH_INI_ENUM which = writable_block(given.text("BLOCK"));
    const CONVERSION conversion(given);
    std::vector<PGMDEV_PARAM_VALUE> values;
    for (const std::string& assignment : given.texts("TYPE=VALUE")) {
        values.push_back(value_of(assignment, conversion));
    }
    const CONTAINER_LOCK lock;
    require_changeable_container(given.has("--force"));
    std::vector<BYTE> bytes;
    for (PGMDEV_PARAM_VALUE& value : values) {
        pgmdev_append_param(bytes, value.type(), value.object());
    }
    if (const std::string fault = block_fault(which, bytes); !fault.empty()) {
        throw USAGE_ERROR(fmt::format("the values are no block \"{}\": {}; hps add and hps edit change that list",
                                      block_name(which), fault));
    }
    replace_block(which, std::move(bytes), command);
}

}  // namespace

VERB show_values_verb(const ARGUMENT& block) {
    return VERB("show", "A block as typed values", "pgmdev params show 0 STRING DWORD QWORD --hex", show_values)
        .takes(block)
        .takes({"TYPE", "Types of the values of a record: STRING, BOOL, BYTE, WORD, DWORD, QWORD", ARGUMENT::TEXTS})
        .takes({"--hex", "Numbers in hexadecimal", ARGUMENT::FLAG})
        .takes(
            {"--skip", "Bytes before the first record, such as the 32 of a stamp", ARGUMENT::OPTIONAL_NUMBER, "BYTES"})
        .answers(values_schema);
}

VERB set_values_verb(const ARGUMENT& block) {
    return VERB("set", "Replace a block by typed values and keep the others",
                "pgmdev params set 0 STRING=W25Q64 DWORD=0x800000 --power-of-two", set_values)
        .takes(block)
        .takes({"TYPE=VALUE", "Values in their order; numbers in decimal or as 0x..., -1 for the largest",
                ARGUMENT::TEXTS})
        .takes({"--hex", "Numbers are hexadecimal, also without 0x", ARGUMENT::FLAG})
        .takes({"--power-of-two", "Only powers of two", ARGUMENT::FLAG})
        .takes({"--range", "Only numbers in one of these ranges, with commas between them", ARGUMENT::OPTIONAL_TEXT,
                "LOW-HIGH"})
        .takes({"--invalid-hit", "No number whose bits in MASK are PATTERN, for none of these", ARGUMENT::OPTIONAL_TEXT,
                "MASK=PATTERN"})
        .takes({"--exponent", "A number stands for that power of two, unless it is the largest", ARGUMENT::FLAG})
        .takes({"--multiple", "A number stands for that many times this", ARGUMENT::OPTIONAL_NUMBER, "NUMBER"})
        .takes(force_container_option())
        .answers(block_schema);
}
