#include "about/version.h"

#include <fmt/core.h>

#include <array>
#include <string_view>

#include "pgmdev_hps_nand_mgr.h"
#include "pgmdev_hps_spi_mgr.h"
#include "pgmdev_version.h"
#include "terminal/schema.h"

// The build defines PGMDEV_COMMAND_VERSION.

namespace {

/// A kind of file or block that this build reads.
struct FORMAT {
    std::string_view key;
    std::string_view label;
    std::string stamp;
    bool packed;  ///< a packed database, whose body has a version
};

std::array<FORMAT, 4> formats() {
    return {{{"flash_database", "flash database", PGMDEV_VERSION::flash_stamp(), true},
             {"profile_database", "profile database", PGMDEV_VERSION::dev_info_stamp(), true},
             {"hps_spi_block", "SPI flash list", std::string(PGMDEV_HPS_SPI_STAMP), false},
             {"hps_nand_block", "NAND flash list", std::string(PGMDEV_HPS_NAND_STAMP), false}}};
}

}  // namespace

JSON version_json() {
    JSON all = JSON::object();
    for (const FORMAT& format : formats()) {
        JSON object{{"stamp", format.stamp}};
        if (format.packed) {
            object["body_version"] = PGMDEV_VERSION::body_version();
        }
        all[format.key] = object;
    }
    return {{"command", PGMDEV_COMMAND_VERSION},
            {"library", PGMDEV_VERSION::library()},
            {"catalog", PGMDEV_VERSION::catalog()},
            {"formats", all}};
}

JSON version_schema() {
    std::vector<SCHEMA_MEMBER> all;
    for (const FORMAT& format : formats()) {
        std::vector<SCHEMA_MEMBER> members{{"stamp", text_schema()}};
        if (format.packed) {
            members.push_back({"body_version", number_schema()});
        }
        all.push_back({std::string(format.key), object_schema(members)});
    }
    return object_schema({{"command", text_schema()},
                          {"library", text_schema()},
                          {"catalog", text_schema()},
                          {"formats", object_schema(all)}});
}

void print_version() {
    fmt::print("pgmdev {}\n", PGMDEV_COMMAND_VERSION);
    fmt::print("library           {}\n", PGMDEV_VERSION::library());
    fmt::print("catalog           {}\n", PGMDEV_VERSION::catalog());
    for (const FORMAT& format : formats()) {
        fmt::print("{:<16}  stamp {}", format.label, format.stamp);
        fmt::print("{}\n", format.packed ? fmt::format(", body version {}", PGMDEV_VERSION::body_version()) : "");
    }
}

GLOBAL_OPTION version_option() {
    const auto show = [](const std::string&, const COMMAND& command) {
        if (command.json) {
            print_json(version_json());
        } else {
            print_version();
        }
    };
    GLOBAL_OPTION option{"--version", "", "The versions of the command, the library, the catalog and the formats",
                         show};
    option.instead = true;
    option.schema = version_schema;
    return option;
}
