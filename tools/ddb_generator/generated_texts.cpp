#include "generated_texts.h"

#include <algorithm>
#include <cstdio>
#include <stdexcept>
#include <utility>
#include <vector>

namespace {

constexpr const char* BANNER = "// Written by ddb_generator from the device catalog. Do not edit.\n\n";
constexpr const char* BOOT_FLASH_BANNER = "// Written by ddb_generator from the tables of boot flash. Do not edit.\n\n";
constexpr std::size_t LINE_LENGTH = 120;

/// Text in lines of bounded length, broken between items.
class WRAPPED_TEXT {
public:
    void add(const std::string& item) {
        if (m_column + item.size() > LINE_LENGTH) {
            m_text += '\n';
            m_column = 0;
        }
        m_text += item;
        m_column += item.size();
    }
    const std::string& text() const { return m_text; }

private:
    std::string m_text;
    std::size_t m_column = 0;
};

/// The definition of an array whose initialisers are `text_of` each item.
template <typename ITEMS, typename TEXT_OF>
std::string array(const std::string& declaration, const ITEMS& items, TEXT_OF text_of) {
    WRAPPED_TEXT text;
    for (const auto& item : items) {
        text.add(text_of(item) + ",");
    }
    return declaration + " = {\n" + (items.empty() ? "0" : text.text()) + "\n};\n";  // no array is empty in C++
}

template <typename ITEMS>
std::string number_array(const std::string& declaration, const ITEMS& items) {
    return array(declaration, items, [](auto number) { return std::to_string(number); });
}

std::string constant(const std::string& name, std::size_t value) {
    return "const DWORD " + name + " = " + std::to_string(value) + ";\n";
}

std::string data_set_source(const std::string& name, const DATA_SET& data) {
    return number_array("const BYTE " + name + "_DATA[]", data.packed) +
           constant(name + "_CMP_LENGTH", data.packed.size()) + constant(name + "_LENGTH", data.unpacked_length);
}

std::string index_source(const std::string& name, const INDEX_NUMBERS& index, std::uint32_t crc) {
    return number_array("const std::uint32_t " + name + "_INDEX[]", index) +
           constant(name + "_INDEX_LENGTH", index.size()) + constant(name + "_INDEXED_CRC", crc);
}

std::string unsigned_array(const std::string& declaration, const std::vector<std::uint64_t>& items) {
    return array(declaration, items, [](std::uint64_t number) { return std::to_string(number) + "U"; });
}

std::string hashed_numbers_source(const std::string& name, const HASHED_NUMBERS& numbers) {
    return unsigned_array("const HASHED_PART " + name + "[]", numbers.entries) +
           (numbers.higher.empty() ? "" : number_array("const std::uint16_t " + name + "_HIGHER[]", numbers.higher));
}

std::string hashed_numbers_initialiser(const std::string& name, const HASHED_NUMBERS& numbers) {
    return "{" + name + ", " + (numbers.higher.empty() ? "nullptr" : name + "_HIGHER") + ", " +
           std::to_string(numbers.entries.size()) + "}";
}

std::string digests_source(const DIGEST_TABLES& digests) {
    std::string all_names;
    for (const std::uint8_t byte : digests.all_names) {
        all_names += std::to_string(byte) + ",";
    }
    return "namespace {\n\n" + hashed_numbers_source("NAMES", digests.names) +
           hashed_numbers_source("DENOTING", digests.denoting) +
           unsigned_array("const std::uint64_t CHECKS[]", digests.checks) +
           "\n}  // namespace\n\nconstinit const PART_DIGESTS PGMDDB_PART_DIGESTS = {{" + all_names + "}, " +
           std::to_string(digests.parts) + ", " + hashed_numbers_initialiser("NAMES", digests.names) + ", " +
           hashed_numbers_initialiser("DENOTING", digests.denoting) + ", CHECKS};\n";
}

/// A row of names as a literal, with its NULs written out up to the last name.
std::string row_literal(const std::array<char, NAME_ROW_SIZE>& row) {
    std::size_t end = row.size();
    while (end > 0 && row[end - 1] == '\0') {
        --end;
    }
    std::string literal = "    \"";
    for (std::size_t i = 0; i < end; ++i) {
        literal += row[i] != '\0' ? std::string(1, row[i]) : "\\000";  // a digit may follow
    }
    return literal + "\",\n";
}

std::string names_source(const std::string& prefix, const NUMBERED_NAMES& names) {
    return number_array("const std::uint32_t " + prefix + "_NAMES[]", names.addresses) +
           number_array("const std::uint32_t " + prefix + "_ALIASES[]", names.aliases) +
           number_array("const std::uint32_t " + prefix + "_SLOTS[]", names.slots);
}

std::string names_initialiser(const std::string& prefix, const NUMBERED_NAMES& names) {
    const NAME_TABLE table = names.table();
    return "    {" + prefix + "_NAMES, " + std::to_string(table.count) + ", " + prefix + "_ALIASES, " + prefix +
           "_SLOTS, " + std::to_string(table.slot_mask) + "},\n";
}

std::string facts_source(const std::string& declaration, const std::vector<FACT_TEXTS>& facts) {
    return array(declaration, facts, [](const FACT_TEXTS& texts) {
        return "{" + std::to_string(texts.first) + "," + std::to_string(texts.second) + "}";
    });
}

std::string part_facts_source(const std::vector<PART_FACTS>& facts) {
    return array("const PART_FACTS PARTS[]", facts, [](const PART_FACTS& part) {
        return "{" + std::to_string(part.device) + "," + std::to_string(part.package) + "," +
               std::to_string(part.grade) + "," + std::to_string(part.flags) + "}";
    });
}

std::string part_line(const CATALOG& catalog, const CATALOG_PART& part) {
    const CATALOG_DEVICE& device = catalog.devices[part.device];
    const std::string pcf = device.programmer_part.empty() ? "NONE" : device.programmer_part;
    const std::string ordering_code = part.ordering_index < 0 ? "-" : std::to_string(part.ordering_index);
    return part.name + " " + device.name + " " + catalog.families[device.family].name + " " +
           std::to_string(part.number) + " " + ordering_code + " " + part.status + " " + pcf + "\n";
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

std::string data_source(const DATA_SET& grammar, const INDEX_NUMBERS& index, const DATA_SET& ordering_codes,
                        const DIGEST_TABLES& digests) {
    return std::string(BANNER) + "#include \"names/compiled_in_data.h\"\n#include \"names/compiled_in_digests.h\"\n\n" +
           data_set_source("PGMDDB_GRAMMAR", grammar) + index_source("PGMDDB_GRAMMAR", index, grammar.crc) + "\n" +
           data_set_source("PGMDDB_OPN", ordering_codes) + "\n" + digests_source(digests);
}

std::string boot_flash_source(const BOOT_FLASH& flash) {
    const auto list_source = [](const std::string& name, const BOOT_FLASH_LIST& list) {
        return number_array("const BYTE " + name + "_RECORDS[]", list.records) +
               constant(name + "_RECORDS_LENGTH", list.records.size());
    };
    return std::string(BOOT_FLASH_BANNER) + "#include \"hps/built_in_records.h\"\n\n" +
           list_source("HPS_NAND", flash.nand) + "\n" + list_source("HPS_SPI", flash.spi);
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
        source += row_literal(row);
    }
    source += "};\n";
    source += names_source("FAMILY", tables.families);
    source += names_source("DEVICE", tables.devices);
    source += names_source("PART", tables.parts);
    source += number_array("const std::uint8_t DEVICE_FAMILIES[]", tables.device_families);
    source += part_facts_source(tables.part_facts);
    source += facts_source("const FACT_TEXTS PACKAGES[]", tables.packages);
    source += facts_source("const FACT_TEXTS GRADES[]", tables.grades);
    source += "\n}  // namespace\n\nconstinit const DSTR_CATALOG DSTR_TABLES = {\n    {NAMES},\n";
    source += names_initialiser("FAMILY", tables.families);
    source += names_initialiser("DEVICE", tables.devices);
    source += names_initialiser("PART", tables.parts);
    source += "    DEVICE_FAMILIES,\n    PARTS,\n    {PACKAGES, " + std::to_string(tables.packages.size()) +
              "},\n    {GRADES, " + std::to_string(tables.grades.size()) + "},\n};\n";
    return source;
}

std::string part_list(const CATALOG& catalog) {
    std::vector<const CATALOG_PART*> parts;
    for (const CATALOG_PART& part : catalog.parts) {
        if (part.number != 0) {
            parts.push_back(&part);
        }
    }
    std::sort(parts.begin(), parts.end(),
              [](const auto* left, const auto* right) { return left->number < right->number; });
    std::string list =
        std::string(BANNER) + "// part, device, family, part number, ordering-code index, status, programmer part\n";
    for (const CATALOG_PART* part : parts) {
        list += part_line(catalog, *part);
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
