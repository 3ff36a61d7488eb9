#include "nouns.h"

#include <fmt/core.h>

#include <array>
#include <string>
#include <vector>

#include "files/container.h"
#include "hps/block_form.h"
#include "hps/edit.h"
#include "hps/lists.h"
#include "hps/port.h"
#include "pgmdev_hps_mgr.h"
#include "terminal/listing.h"
#include "terminal/size_text.h"
#include "terminal/text_table.h"

namespace {

using KIND = PGMDEV_HPS_STRUCTURE;

struct KIND_MEMBER {
    const char* name;
    DWORD KIND::*field;
    bool hex;  ///< people read it in hexadecimal
};

constexpr std::array KIND_MEMBERS{
    KIND_MEMBER{"id", &KIND::id, true},
    KIND_MEMBER{"core_count", &KIND::core_count, false},
    KIND_MEMBER{"spi_selects", &KIND::spi_selects, false},
    KIND_MEMBER{"nand_data_bits", &KIND::nand_data_bits, false},
    KIND_MEMBER{"on_chip_ram_base", &KIND::on_chip_ram_base, true},
    KIND_MEMBER{"on_chip_ram_byte", &KIND::on_chip_ram_byte, false},
    KIND_MEMBER{"clock_manager_base", &KIND::clock_manager_base, true},
    KIND_MEMBER{"reset_manager_base", &KIND::reset_manager_base, true},
    KIND_MEMBER{"pin_multiplex_base", &KIND::pin_multiplex_base, true},
    KIND_MEMBER{"watchdog_base", &KIND::watchdog_base, true},
    KIND_MEMBER{"uart_base", &KIND::uart_base, true},
    KIND_MEMBER{"spi_controller_base", &KIND::spi_controller_base, true},
    KIND_MEMBER{"spi_data_base", &KIND::spi_data_base, true},
    KIND_MEMBER{"nand_controller_base", &KIND::nand_controller_base, true},
    KIND_MEMBER{"nand_data_base", &KIND::nand_data_base, true},
};

JSON kind_schema() {
    std::vector<SCHEMA_MEMBER> members{{"index", number_schema()}, {"name", text_schema()}};
    for (const KIND_MEMBER& member : KIND_MEMBERS) {
        members.push_back({member.name, number_schema()});
    }
    members.push_back({"user", flag_schema()});
    return object_schema(members);
}

void list_kinds(const ARGUMENTS& given, const COMMAND& command) {
    const auto kinds = PGMDEV_HPS_MGR::get_kinds();
    // The kinds are few and have many members: a column for each.
    std::vector<std::string> heading{"index"};
    std::vector<std::string> names{"name"};
    for (std::size_t i = 0; i < kinds.size(); ++i) {
        heading.push_back(std::to_string(i));
        names.emplace_back(kinds[i].name);
    }
    TEXT_TABLE table(heading);
    table.add(names);
    for (const KIND_MEMBER& member : KIND_MEMBERS) {
        std::vector<std::string> row{member.name};
        for (const KIND& kind : kinds) {
            row.push_back(member.hex ? fmt::format("0x{:08X}", kind.*member.field)
                                     : fmt::format("{}", kind.*member.field));
        }
        table.add(row);
    }
    print_listing(kind_schema(), hps_kind_rows(), table, given, command);
}

const char* owner(bool user) {
    return user ? "user" : "built-in";
}

TEXT_TABLE table_of(const std::vector<PGMDEV_HPS_NAND_STRUCTURE*>& list, std::size_t user_count) {
    TEXT_TABLE table({"index", "from", "manufacturer", "device", "bytes"});
    for (std::size_t i = 0; i < list.size(); ++i) {
        const auto& flash = *list[i];
        table.add({std::to_string(i), owner(i < user_count), fmt::format("0x{:02X}", flash.manufacturer_id),
                   fmt::format("0x{:02X}", flash.device_id), std::to_string(flash.device_byte_size)});
    }
    return table;
}

TEXT_TABLE table_of(const std::vector<PGMDEV_HPS_SPI_STRUCTURE*>& list, std::size_t user_count) {
    TEXT_TABLE table({"index", "from", "manufacturer", "device", "silicon ID", "ext. ID", "size", "sector", "page",
                      "dies", "erase/program/read"});
    for (std::size_t i = 0; i < list.size(); ++i) {
        const auto& flash = *list[i];
        table.add({std::to_string(i), owner(i < user_count), flash.manufacturer_name, flash.device_name,
                   fmt::format("0x{:06X}", flash.silicon_id),
                   flash.ext_id_mask == 0 ? "-" : fmt::format("0x{:02X}", flash.ext_id),
                   size_text(flash.device_bit_size), std::to_string(flash.device_sector_byte),
                   std::to_string(flash.page_byte), std::to_string(flash.die_count),
                   fmt::format("{:02X}/{:02X}/{:02X}", flash.erase_opcode, flash.program_opcode, flash.read_opcode)});
    }
    return table;
}

template <class FLASH>
JSON listed_entry_schema() {
    return with_members(entry_schema<FLASH>(), port_members(PORT<FLASH>));
}

template <class FLASH>
void list_entries(const ARGUMENTS& given, const COMMAND& command) {
    warn_of_container();
    const KIND* kind = given.has("--hps") ? &chosen_kind(given.text("--hps")) : nullptr;
    const auto& manager = *FLASH::MANAGER::get_mgr();
    const auto& list = manager.get_list();
    const std::size_t user_count = manager.get_user_list().size();
    warn_of_list(FLASH::BLOCK, user_count == 0);
    std::vector<JSON> rows = hps_flash_rows<FLASH>();
    for (JSON& row : rows) {
        if (kind != nullptr) {
            add_port(row, *kind, PORT<FLASH>);
        }
    }
    if (kind != nullptr && !command.json && !given.has("--csv") && !given.has("--fields")) {
        print_port(*kind, PORT<FLASH>);
    }
    print_listing(kind != nullptr ? listed_entry_schema<FLASH>() : entry_schema<FLASH>(), rows,
                  table_of(list, user_count), given, command);
}

template <class FLASH>
VERB entries_verb(const char* name, const char* description, const char* example) {
    return with_list_options(
        VERB(name, description, example, list_entries<FLASH>)
            .takes({"--hps", "Also how a kind of system reaches them: its name, identification code or index",
                    ARGUMENT::OPTIONAL_TEXT, "NAME|ID"}),
        listed_entry_schema<FLASH>);
}

template <class FLASH>
std::string field_names() {
    std::string text = "Fields:";
    for (const auto& member : FLASH::MEMBERS) {
        text += fmt::format(" {}", member.name);
        for (const FIELD_DEFAULT& given : FLASH::DEFAULTS) {
            text += given.name == member.name ? fmt::format("={}", given.value) : "";
        }
    }
    return text;
}

/// The fields whose largest value "-1" stands for. Others have a limit of their own, or are powers of two.
template <class FLASH>
std::string fields_without_limit() {
    std::string text;
    for (const auto& member : FLASH::MEMBERS) {
        const FIELD_CHECK check = field_check(FLASH::CHECKS, member.name);
        const bool limited = member.type() == PGMDEV_PARAM_STRING || member.type() == PGMDEV_PARAM_BOOL ||
                             check.power_of_two || check.highest != NO_LIMIT;
        text += limited ? "" : fmt::format(" {}", member.name);
    }
    return text;
}

template <class FLASH>
void add(const ARGUMENTS& given, COMMAND& command) {
    add_entry<FLASH>(given.texts("FIELD=VALUE"), given.number("--like"), given.number("--before"), given.has("--force"),
                     command);
}

template <class FLASH>
void edit(const ARGUMENTS& given, COMMAND& command) {
    edit_entry<FLASH>(*given.number("INDEX"), given.texts("FIELD=VALUE"), given.has("--force"), command);
}

template <class FLASH>
void remove(const ARGUMENTS& given, COMMAND& command) {
    remove_entry<FLASH>(*given.number("INDEX"), given.has("--force"), command);
}

template <class FLASH>
VERB add_verb(const char* name, const char* example) {
    return VERB(name, "Add an entry to the user's list", example, add<FLASH>)
        .takes({"FIELD=VALUE", "Fields of the entry; numbers in decimal or as 0x...", ARGUMENT::OPTIONAL_TEXTS})
        .takes({"--like", "Take the fields that are not given from this entry of the list", ARGUMENT::OPTIONAL_NUMBER,
                "INDEX"})
        .takes({"--before", "Add it before this entry of the user's, instead of behind all of them",
                ARGUMENT::OPTIONAL_NUMBER, "INDEX"})
        .takes(force_container_option())
        .answers(entry_schema<FLASH>)
        .tells(field_names<FLASH>() + "\nFields shown with a value may be left out. -1 is the largest value of" +
               fields_without_limit<FLASH>() + ".\n");
}

template <class FLASH>
VERB edit_verb(const char* name, const char* example) {
    return VERB(name, "Change fields of an entry of the user's list", example, edit<FLASH>)
        .takes({"INDEX", "Index of the entry in the list", ARGUMENT::NUMBER})
        .takes({"FIELD=VALUE", "Fields to change, as hps add takes them", ARGUMENT::TEXTS})
        .takes(force_container_option())
        .answers(entry_schema<FLASH>);
}

template <class FLASH>
VERB remove_verb(const char* name) {
    return VERB(name, "Remove an entry of the user's list", fmt::format("pgmdev hps remove {} 0", name), remove<FLASH>)
        .takes({"INDEX", "Index of the entry in the list", ARGUMENT::NUMBER})
        .takes(force_container_option())
        .answers(entry_schema<FLASH>);
}

}  // namespace

std::vector<JSON> hps_kind_rows() {
    const auto kinds = PGMDEV_HPS_MGR::get_kinds();
    std::vector<JSON> rows;
    for (std::size_t i = 0; i < kinds.size(); ++i) {
        JSON& row = rows.emplace_back(JSON{{"index", i}, {"name", kinds[i].name}});
        for (const KIND_MEMBER& member : KIND_MEMBERS) {
            row[member.name] = kinds[i].*member.field;
        }
        row["user"] = false;
    }
    return rows;
}

NOUN_CONTENTS hps_contents() {
    static constexpr const char* ADD_NAND =
        "pgmdev hps add nand manufacturer_id=0xEC device_id=0xD3 device_byte_size=0x40000000";
    static constexpr const char* ADD_SPI =
        "pgmdev hps add spi --like 26 device_name=QSPI_256 silicon_id=0x1940C8 device_bit_size=0x10000000";
    static constexpr const char* EDIT_NAND = "pgmdev hps edit nand 0 device_byte_size=0x80000000";
    static constexpr const char* EDIT_SPI = "pgmdev hps edit spi 0 sec_erase_time=2000";
    std::vector<VERB> verbs = list_of(
        with_list_options(VERB("kinds", "The kinds of hard processor systems", "pgmdev --json hps kinds", list_kinds),
                          kind_schema),
        entries_verb<HPS_NAND>("nand", "The NAND flash devices: the user's own, then the built-in ones",
                               "pgmdev hps nand --hps \"HPS 2\""),
        entries_verb<HPS_SPI>("spi", "The SPI flash devices: the user's own, then the built-in ones",
                              "pgmdev --json hps spi"));
    std::vector<NOUN> groups = list_of(
        NOUN{"add", "Add a flash device to the user's list in pgm_flash.ini", ADD_NAND,
             [] {
                 return NOUN_CONTENTS{list_of(add_verb<HPS_NAND>("nand", ADD_NAND), add_verb<HPS_SPI>("spi", ADD_SPI))};
             }},
        NOUN{"edit", "Change a flash device of the user's list in pgm_flash.ini", EDIT_SPI,
             [] {
                 return NOUN_CONTENTS{
                     list_of(edit_verb<HPS_NAND>("nand", EDIT_NAND), edit_verb<HPS_SPI>("spi", EDIT_SPI))};
             }},
        NOUN{"remove", "Remove a flash device from the user's list in pgm_flash.ini", "pgmdev hps remove spi 0",
             [] { return NOUN_CONTENTS{list_of(remove_verb<HPS_NAND>("nand"), remove_verb<HPS_SPI>("spi"))}; }});
    return {std::move(verbs), std::move(groups)};
}
