#include "generated_texts.h"

#include <algorithm>
#include <cstdio>
#include <stdexcept>
#include <string_view>
#include <utility>
#include <vector>

#include "text_digest.h"

namespace {

constexpr const char* BANNER = "// Written by ddb_generator from the device catalog. Do not edit.\n\n";
constexpr const char* BOOT_FLASH_BANNER = "// Written by ddb_generator from the tables of boot flash. Do not edit.\n\n";
constexpr std::size_t LINE_LENGTH = 120;

// Sources are of many megabytes: what is in them is added where it stays.

/// Adds the definition of an array whose initialisers are `text_of` each item, in lines of bounded length.
template <typename ITEMS, typename TEXT_OF>
void add_array(std::string& source, const std::string& declaration, const ITEMS& items, TEXT_OF text_of) {
    source += declaration + " = {\n";
    std::size_t column = 0;
    for (const auto& item : items) {
        const std::string initialiser = text_of(item) + ",";
        if (column + initialiser.size() > LINE_LENGTH) {
            source += '\n';
            column = 0;
        }
        source += initialiser;
        column += initialiser.size();
    }
    source += items.empty() ? "0" : "";  // no array is empty in C++
    source += "\n};\n";
}

template <typename ITEMS>
void add_number_array(std::string& source, const std::string& declaration, const ITEMS& items) {
    add_array(source, declaration, items, [](auto number) { return std::to_string(number); });
}

std::string unsigned_number(std::uint64_t number) {
    return std::to_string(number) + "U";
}

void add_unsigned_array(std::string& source, const std::string& declaration, const std::vector<std::uint64_t>& items) {
    add_array(source, declaration, items, unsigned_number);
}

void add_constant(std::string& source, const std::string& name, std::size_t value) {
    source += "const DWORD " + name + " = " + std::to_string(value) + ";\n";
}

/// A character of names in a literal; a digit may follow.
void add_literal_character(std::string& source, char character) {
    if (character != '\0') {
        source += character;
    } else {
        source += "\\000";
    }
}

/// A text as one literal, in lines: compilers read it much more quickly than as many characters.
void add_text(std::string& source, const std::string& declaration, const std::string& text) {
    constexpr std::size_t CHARACTERS_A_LINE = 100;
    source += "#pragma GCC diagnostic ignored \"-Woverlength-strings\"\n" + declaration + " =";
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (i % CHARACTERS_A_LINE == 0) {
            source += i == 0 ? "\n    \"" : "\"\n    \"";
        }
        add_literal_character(source, text[i]);
    }
    source += "\";\n";
}

void add_data_set(std::string& source, const std::string& name, const DATA_SET& data) {
    add_number_array(source, "const BYTE " + name + "_DATA[]", data.packed);
    add_constant(source, name + "_CMP_LENGTH", data.packed.size());
    add_constant(source, name + "_LENGTH", data.unpacked_length);
}

/// The digest of its stream, and the CRC that is in it.
void add_digest(std::string& source, const std::string& name, const DATA_SET& data) {
    const std::string_view stream(reinterpret_cast<const char*>(data.packed.data()), data.packed.size());
    source += "const std::uint64_t " + name + "_DIGEST = " + unsigned_number(text_digest(stream)) + ";\n";
    add_constant(source, name + "_CRC", data.crc);
}

void add_indexed_text(std::string& source, const std::string& name, const INDEXED_GRAMMAR& indexed) {
    add_text(source, "const char " + name + "_TEXT[]", indexed.text);
    add_number_array(source, "const std::uint32_t " + name + "_INDEX[]", indexed.index);
    add_constant(source, name + "_INDEX_LENGTH", indexed.index.size());
}

void add_numbers(std::string& source, const std::string& name, const std::vector<std::uint32_t>& numbers) {
    add_number_array(source, "const DWORD " + name + "_NUMBERS[]", numbers);
    add_constant(source, name + "_NUMBERS_LENGTH", numbers.size());
}

void add_hashed_numbers(std::string& source, const std::string& name, const HASHED_NUMBERS& numbers) {
    add_unsigned_array(source, "const HASHED_PART " + name + "[]", numbers.entries);
    if (!numbers.higher.empty()) {
        add_number_array(source, "const std::uint16_t " + name + "_HIGHER[]", numbers.higher);
    }
}

std::string hashed_numbers_initialiser(const std::string& name, const HASHED_NUMBERS& numbers) {
    return "{" + name + ", " + (numbers.higher.empty() ? "nullptr" : name + "_HIGHER") + ", " +
           std::to_string(numbers.entries.size()) + "}";
}

void add_digests(std::string& source, const DIGEST_TABLES& digests) {
    source += "namespace {\n\n";
    add_hashed_numbers(source, "NAMES", digests.names);
    add_hashed_numbers(source, "DENOTING", digests.denoting);
    add_unsigned_array(source, "const std::uint64_t CHECKS[]", digests.checks);
    source += "\n}  // namespace\n\nconstinit const PART_DIGESTS PGMDDB_PART_DIGESTS = {{";
    source += unsigned_number(digests.all_names.first) + ", " + unsigned_number(digests.all_names.second);
    source += "}, " + std::to_string(digests.parts) + ", " + hashed_numbers_initialiser("NAMES", digests.names) + ", " +
              hashed_numbers_initialiser("DENOTING", digests.denoting) + ", CHECKS};\n";
}

/// Adds a row of names as a literal, with its NULs written out up to the last name.
void add_row_literal(std::string& source, const std::array<char, NAME_ROW_SIZE>& row) {
    std::size_t end = row.size();
    while (end > 0 && row[end - 1] == '\0') {
        --end;
    }
    source += "    \"";
    for (std::size_t i = 0; i < end; ++i) {
        add_literal_character(source, row[i]);
    }
    source += "\",\n";
}

void add_names(std::string& source, const std::string& prefix, const NUMBERED_NAMES& names) {
    add_number_array(source, "const std::uint32_t " + prefix + "_NAMES[]", names.addresses);
    add_number_array(source, "const std::uint32_t " + prefix + "_ALIASES[]", names.aliases);
    add_number_array(source, "const std::uint32_t " + prefix + "_SLOTS[]", names.slots);
}

std::string names_initialiser(const std::string& prefix, const NUMBERED_NAMES& names) {
    const NAME_TABLE table = names.table();
    return "    {" + prefix + "_NAMES, " + std::to_string(table.count) + ", " + prefix + "_ALIASES, " + prefix +
           "_SLOTS, " + std::to_string(table.slot_mask) + "},\n";
}

void add_facts(std::string& source, const std::string& declaration, const std::vector<FACT_TEXTS>& facts) {
    add_array(source, declaration, facts, [](const FACT_TEXTS& texts) {
        return "{" + std::to_string(texts.first) + "," + std::to_string(texts.second) + "}";
    });
}

void add_part_facts(std::string& source, const std::vector<PART_FACTS>& facts) {
    add_array(source, "const PART_FACTS PARTS[]", facts, [](const PART_FACTS& part) {
        return "{" + std::to_string(part.device) + "," + std::to_string(part.package) + "," +
               std::to_string(part.grade) + "," + std::to_string(part.flags) + "}";
    });
}

void add_part_spans(std::string& source, const std::vector<PART_SPAN>& spans) {
    add_array(source, "const PART_SPAN DEVICE_PARTS[]", spans, [](const PART_SPAN& span) {
        return "{" + std::to_string(span.first) + "," + std::to_string(span.end) + "}";
    });
}

void add_part_line(std::string& list, const CATALOG& catalog, const CATALOG_PART& part) {
    const CATALOG_DEVICE& device = catalog.devices[part.device];
    const std::string ordering_code = part.ordering_index < 0 ? "-" : std::to_string(part.ordering_index);
    const std::string number = std::to_string(part.number);
    const std::string programmer_part = device.programmer_part.empty() ? "NONE" : device.programmer_part;
    for (const std::string* cell : {&part.name, &device.name, &catalog.families[device.family].name, &number,
                                    &ordering_code, &part.status, &programmer_part}) {
        list += *cell;
        list += cell != &programmer_part ? ' ' : '\n';
    }
}

/// The values of a member, each once, shorter ones first: so numbers ascend.
template <class ROW>
std::string value_list(const std::vector<ROW>& rows, std::string ROW::*member) {
    std::vector<std::string> values;
    values.reserve(rows.size());
    for (const ROW& row : rows) {
        values.push_back(row.*member);
    }
    std::sort(values.begin(), values.end(), [](const std::string& left, const std::string& right) {
        return std::pair(left.size(), left) < std::pair(right.size(), right);
    });
    values.erase(std::unique(values.begin(), values.end()), values.end());
    std::string text;
    for (const std::string& value : values) {
        text += (text.empty() ? "\"" : ", \"") + value + "\"";
    }
    return "        {" + text + "},\n";
}

}  // namespace

std::string data_source(const DATA_SET& grammar, const INDEXED_GRAMMAR& indexed, const DATA_SET& ordering_codes,
                        const std::vector<std::uint32_t>& numbers, const DIGEST_TABLES& digests) {
    std::string source = BANNER;
    source += "#include \"names/compiled_in_data.h\"\n#include \"names/compiled_in_digests.h\"\n\n";
    add_data_set(source, "PGMDDB_GRAMMAR", grammar);
    add_indexed_text(source, "PGMDDB_GRAMMAR", indexed);
    add_digest(source, "PGMDDB_GRAMMAR", grammar);
    source += '\n';
    add_data_set(source, "PGMDDB_OPN", ordering_codes);
    add_numbers(source, "PGMDDB_OPN", numbers);
    add_digest(source, "PGMDDB_OPN", ordering_codes);
    source += '\n';
    add_digests(source, digests);
    return source;
}

std::string boot_flash_source(const BOOT_FLASH& flash) {
    std::string source = BOOT_FLASH_BANNER;
    source += "#include \"hps/built_in_records.h\"\n\n";
    const auto add_list = [&source](const std::string& name, const BOOT_FLASH_LIST& list) {
        add_number_array(source, "const BYTE " + name + "_RECORDS[]", list.records);
        add_constant(source, name + "_RECORDS_LENGTH", list.records.size());
    };
    add_list("HPS_NAND", flash.nand);
    source += '\n';
    add_list("HPS_SPI", flash.spi);
    return source;
}

std::string host_source(const HOST_TABLES& tables) {
    const std::size_t generic_part = tables.part_facts.size() - 1;
    std::string source = std::string(BANNER) +
                         "#include \"dstr.h\"\n#include \"dstr_catalog.h\"\n\n"
                         "const int DEV_PART_INVALID = 0;\n"
                         "const int DEV_PART_GENERIC = " +
                         std::to_string(generic_part) +
                         ";\nconst int DEV_PART_MAX = " + std::to_string(generic_part + 1) + ";\n\nnamespace {\n\n";
    source += "const char NAMES[][NAME_ROW_SIZE] = {\n";
    for (const auto& row : tables.rows) {
        add_row_literal(source, row);
    }
    source += "};\n";
    add_names(source, "FAMILY", tables.families);
    add_names(source, "DEVICE", tables.devices);
    add_names(source, "PART", tables.parts);
    add_number_array(source, "const std::uint8_t DEVICE_FAMILIES[]", tables.device_families);
    add_part_facts(source, tables.part_facts);
    add_part_spans(source, tables.device_parts);
    add_facts(source, "const FACT_TEXTS PACKAGES[]", tables.packages);
    add_facts(source, "const FACT_TEXTS GRADES[]", tables.grades);
    source += "\n}  // namespace\n\nconstinit const DSTR_CATALOG DSTR_TABLES = {\n    {NAMES},\n";
    source += names_initialiser("FAMILY", tables.families);
    source += names_initialiser("DEVICE", tables.devices);
    source += names_initialiser("PART", tables.parts);
    source += "    DEVICE_FAMILIES,\n    PARTS,\n    DEVICE_PARTS,\n    {PACKAGES, " +
              std::to_string(tables.packages.size()) + "},\n    {GRADES, " + std::to_string(tables.grades.size()) +
              "},\n    {" + unsigned_number(tables.part_names.first) + ", " +
              unsigned_number(tables.part_names.second) + "},\n};\n";
    return source;
}

std::string part_list(const CATALOG& catalog) {
    std::vector<const CATALOG_PART*> by_number(static_cast<std::size_t>(catalog.last_part) + 1);
    for (const CATALOG_PART& part : catalog.parts) {
        if (part.number != 0) {
            by_number[static_cast<std::size_t>(part.number)] = &part;
        }
    }
    std::string list =
        std::string(BANNER) + "// part, device, family, part number, ordering-code index, status, programmer part\n";
    for (const CATALOG_PART* part : by_number) {
        if (part != nullptr) {
            add_part_line(list, catalog, *part);
        }
    }
    return list;
}

std::string part_values_source(const CATALOG& catalog) {
    std::string text = BANNER;
    text +=
        "#include \"names/part_values.h\"\n\nconst PART_VALUES& part_values() {\n    static const PART_VALUES "
        "values{\n";
    text += value_list(catalog.packages, &CATALOG_PACKAGE::type);
    text += value_list(catalog.packages, &CATALOG_PACKAGE::pins);
    text += value_list(catalog.grades, &CATALOG_GRADE::speed);
    text += value_list(catalog.grades, &CATALOG_GRADE::temperature);
    return text + "    };\n    return values;\n}\n";
}
