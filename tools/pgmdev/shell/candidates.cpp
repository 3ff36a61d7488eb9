#include "shell/candidates.h"

#include <string_view>

#include "catalog/device_names.h"
#include "flash/aliases.h"
#include "flash/database.h"
#include "gen.h"
#include "names/enum_commands.h"
#include "names/part_values.h"
#include "pgmdev_device_grammar_mgr.h"
#include "pgmdev_flash_ini.h"
#include "pgmdev_hps_mgr.h"
#include "pgmdev_hps_nand_mgr.h"
#include "pgmdev_hps_spi_mgr.h"

namespace {

using NAMES = std::vector<std::string>;

/// A text of each enabled record of the flash database.
template <std::string PGMDEV_SFL_FLASH_INFO::*MEMBER>
NAMES flash_texts(const ARGUMENT_PLACE&) {
    PGMDEV_FLASH_MANAGER manager = open_flash_database(1);
    NAMES names;
    for (DWORD i = 0; i < manager.get_flash_count(); ++i) {
        names.push_back(manager.get_flash_database()[i].*MEMBER);
    }
    return without_repetitions(std::move(names));
}

/// The names of the flash database, aliases too.
NAMES flash_names(const ARGUMENT_PLACE& place) {
    return without_repetitions(with_flash_aliases(flash_texts<&PGMDEV_SFL_FLASH_INFO::device_name>(place)));
}

/// The names of the members of a record, with `end` behind each.
template <const auto& MEMBERS>
NAMES names_before(const std::string& end) {
    NAMES names;
    for (const auto& member : MEMBERS) {
        names.push_back(std::string(member.name) + end);
    }
    return names;
}

/// The parts whose names begin as what is typed. Their names in other schemes begin with the same letters.
NAMES parts_in_question(const std::string& beginning) {
    constexpr std::size_t ALIKE = 3;
    const std::string letters = gen_ascii_toupper(beginning.substr(0, ALIKE));
    NAMES names = part_names();
    std::erase_if(names, [&letters](const std::string& name) { return !name.starts_with(letters); });
    return names;
}

/// The package and programming names of the parts in question. Of all parts it would take too long: a user who has typed
/// less than a name's first letters gets other names.
NAMES packages(const std::string& beginning, const NAMES& parts) {
    constexpr std::size_t LEAST = 2;
    NAMES names;
    if (beginning.size() >= LEAST) {
        for (const std::string& part : parts) {
            names.push_back(PGMDEV_DEVICE_GRAMMAR_MGR::get_package_name(part, true));
            names.push_back(PGMDEV_DEVICE_GRAMMAR_MGR::get_pgm_name(part, false, true));
        }
    }
    return without_repetitions(std::move(names));
}

NAMES all_together(NAMES names, const NAMES& more) {
    names.insert(names.end(), more.begin(), more.end());
    return without_repetitions(std::move(names));
}

NAMES programmer_parts_of(NAMES names) {
    std::transform(names.begin(), names.end(), names.begin(), PGMDEV_DEVICE_GRAMMAR_MGR::get_pgm_part_pcf);
    return without_repetitions(std::move(names));
}

NAMES programmer_parts(const ARGUMENT_PLACE& place) {
    return programmer_parts_of(packages(place.beginning, parts_in_question(place.beginning)));
}

NAMES names_of_parts_and_packages(const ARGUMENT_PLACE& place) {
    const NAMES parts = parts_in_question(place.beginning);
    return all_together(parts, packages(place.beginning, parts));
}

NAMES all_device_names(const ARGUMENT_PLACE& place) {
    const NAMES parts = parts_in_question(place.beginning);
    const NAMES package_names = packages(place.beginning, parts);
    return all_together(all_together(parts, all_together(package_names, programmer_parts_of(package_names))),
                        device_names());
}

NAMES enumerators(const ARGUMENT_PLACE& place) {
    return place.given.empty() ? NAMES() : enumerator_names(place.given.front());
}

NAMES kinds_of_hps(const ARGUMENT_PLACE&) {
    NAMES names;
    for (const PGMDEV_HPS_STRUCTURE& kind : PGMDEV_HPS_MGR::get_kinds()) {
        names.emplace_back(kind.name);
    }
    return names;
}

NAMES block_names(const ARGUMENT_PLACE&) {
    return {PGMDEV_FLASH_INI_NAMES.begin(), PGMDEV_FLASH_INI_NAMES.end()};
}

/// Where names come from. An empty noun or verb stands for every one.
struct SOURCE {
    std::string_view noun;
    std::string_view verb;
    std::string_view argument;
    NAMES (*names)(const ARGUMENT_PLACE& place);
};

using AT = const ARGUMENT_PLACE&;

// The first that fits counts.
constexpr SOURCE SOURCES[]{
    {"flash", "", "NAME", flash_names},
    {"flash", "", "--maker", flash_texts<&PGMDEV_SFL_FLASH_INFO::manufacturer_name>},
    {"flash", "", "--voltage", flash_texts<&PGMDEV_SFL_FLASH_INFO::asc_voltage>},
    {"flash", "", "--like", flash_names},
    {"flash", "define", "FIELD=VALUE", [](AT) { return names_before<PGMDEV_SFL_FLASH_MEMBERS>("="); }},
    {"name", "", "NAME", all_device_names},
    {"part", "from-device", "NAME", [](AT) { return device_names(); }},
    {"part", "from-pcf", "NAME", programmer_parts},
    {"part", "complete", "NAME", names_of_parts_and_packages},
    {"part", "info", "NAME", all_device_names},
    {"opn", "", "NAME", [](AT) { return part_names(); }},
    {"profile", "", "--pcf", programmer_parts},
    {"enum", "", "TYPE", [](AT) { return enumeration_names(); }},
    {"enum", "value", "NAME", enumerators},
    {"params", "", "BLOCK", block_names},
    {"hps", "", "--hps", kinds_of_hps},
    {"hps", "add nand", "FIELD=VALUE", [](AT) { return names_before<PGMDEV_HPS_NAND_MEMBERS>("="); }},
    {"hps", "add spi", "FIELD=VALUE", [](AT) { return names_before<PGMDEV_HPS_SPI_MEMBERS>("="); }},
    {"hps", "edit nand", "FIELD=VALUE", [](AT) { return names_before<PGMDEV_HPS_NAND_MEMBERS>("="); }},
    {"hps", "edit spi", "FIELD=VALUE", [](AT) { return names_before<PGMDEV_HPS_SPI_MEMBERS>("="); }},
    {"", "", "--family", [](AT) { return family_names(); }},
    {"", "", "--device", [](AT) { return device_names(); }},
    {"", "", "--part", [](AT) { return part_names(); }},
    {"", "", "--package", [](AT) { return part_values().packages; }},
    {"", "", "--pins", [](AT) { return part_values().pins; }},
    {"", "", "--speed", [](AT) { return part_values().speeds; }},
    {"", "", "--temperature", [](AT) { return part_values().temperatures; }},
    {"part", "list", "PATTERN", [](AT) { return part_names(); }},
    {"opn", "list", "PATTERN", [](AT) { return part_names(); }},
    {"device", "list", "PATTERN", [](AT) { return device_names(); }},
    {"family", "list", "PATTERN", [](AT) { return family_names(); }},
    {"flash", "list", "PATTERN", flash_texts<&PGMDEV_SFL_FLASH_INFO::device_name>},
};

bool fits(std::string_view wanted, const std::string& name) {
    return wanted.empty() || wanted == name;
}

}  // namespace

std::vector<std::string> argument_candidates(const ARGUMENT_PLACE& place) {
    for (const SOURCE& source : SOURCES) {
        if (fits(source.noun, place.noun) && fits(source.verb, place.verb) && source.argument == place.argument) {
            return source.names(place);
        }
    }
    return {};
}

bool is_list_of_candidates(const std::string& argument) {
    return argument == "--fields";
}
