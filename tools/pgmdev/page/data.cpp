#include "page/data.h"

#include <algorithm>
#include <string>
#include <vector>

#include "about/version.h"
#include "files/origins.h"
#include "flash/aliases.h"
#include "flash/database.h"
#include "flash/evidence.h"
#include "flash/rows.h"
#include "hps/lists.h"
#include "names/part_info.h"
#include "names/spellings.h"
#include "page/columns.h"
#include "pgmdev_dev_info_manager.h"
#include "pgmdev_flash_notes.h"
#include "profile/look_up.h"
#include "profile/output.h"

namespace {

/// Stands for the name itself among its spellings; no name has it.
constexpr const char* OWN_NAME = "=";

JSON member_json(std::string_view name, std::string_view unit, PGMDEV_NUMBER_BASE base) {
    return {{"name", name}, {"unit", unit}, {"hex", base == PGMDEV_NUMBER_BASE::BASE_16}};
}

template <class MEMBERS>
JSON members_json(const MEMBERS& members) {
    JSON array = JSON::array();
    for (const auto& member : members) {
        array.push_back(member_json(member.name, member.unit, member.base));
    }
    return array;
}

/// Those that programs use by index, then those that are switched off.
std::vector<FLASH_ROW> rows_of_page() {
    const std::vector<FLASH_ROW> all = all_flash_rows();
    std::vector<FLASH_ROW> rows = enabled_flash_rows();
    for (const FLASH_ROW& row : all) {
        if (row.index) {
            rows.at(*row.index).row = row.row;
        } else {
            rows.push_back(row);
        }
    }
    return rows;
}

/// A flash of the user's own has no evidence, nor has a row that the list leaves out: null for each group.
JSON evidence_data(const std::vector<FLASH_ROW>& rows) {
    const FLASH_EVIDENCE evidence(read_flash_list(installed_flash_list(FLASH_SOURCES_LIST)));
    std::vector<JSON> support;
    support.reserve(rows.size());
    JSON none = JSON::object();
    for (const FLASH_ROW& row : rows) {
        support.push_back(support_json(evidence.of(row.record)));
        for (const std::string& group : support.back().members().names) {
            none[group] = JSON();
        }
    }
    if (none.members().names.empty()) {
        return {};
    }
    for (JSON& groups : support) {
        if (groups.members().names.empty()) {
            groups = none;
        }
    }
    return in_columns(support);
}

JSON aliases_data() {
    std::vector<JSON> aliases;
    for (const FLASH_ALIAS& alias : flash_aliases()) {
        aliases.push_back({{"name", alias.name}, {"device_name", alias.device_name}, {"reason", alias.reason}});
    }
    return in_columns(aliases);
}

JSON left_out_data() {
    std::vector<JSON> chips;
    for (const LEFT_OUT_FLASH& chip : left_out_flash()) {
        chips.push_back({{"name", chip.name}, {"reason", chip.reason}});
    }
    return in_columns(chips);
}

JSON ambiguity_json(const PGMDEV_FLASH_AMBIGUITY& ambiguity) {
    const bool decides = ambiguity.telling_byte != INVALID_DWORD;
    JSON response = JSON::array();
    for (const BYTE byte : ambiguity.response) {
        response.push_back(byte);
    }
    return {{"response", response},
            {"chips", ambiguity.chips},
            {"telling_byte", decides ? JSON(ambiguity.telling_byte) : JSON()},
            {"told_apart_by", ambiguity.told_apart_by},
            {"risk", PGMDEV_FLASH_CANDIDATES::risk_name(ambiguity.risk)},
            {"harm", ambiguity.harm}};
}

}  // namespace

JSON page_flash_data() {
    const std::vector<FLASH_ROW> rows = rows_of_page();
    std::vector<JSON> records;
    records.reserve(rows.size());
    for (const FLASH_ROW& row : rows) {
        records.push_back(row_json(row, true));
    }
    const PGMDEV_FLASH_NOTES notes = PGMDEV_FLASH_NOTES::beside_database(flash_database_place().path);
    JSON ambiguities = JSON::array();
    for (const PGMDEV_FLASH_AMBIGUITY& ambiguity : notes.ambiguities()) {
        ambiguities.push_back(ambiguity_json(ambiguity));
    }
    JSON identifications = JSON::array();
    for (const PGMDEV_FLASH_NOTES::IDENTIFICATION& each : notes.identifications()) {
        identifications.push_back({{"device_name", each.device_name}, {"bytes", each.bytes}});
    }
    return {{"members", members_json(PGMDEV_SFL_FLASH_MEMBERS)},
            {"records", in_columns(records)},
            {"evidence", evidence_data(rows)},
            {"aliases", aliases_data()},
            {"left_out", left_out_data()},
            {"ambiguities", ambiguities},
            {"identifications", identifications}};
}

JSON page_tables_data() {
    PROFILE_DATABASE profiles;
    std::vector<JSON> records;
    for (DWORD index = 0; index < profiles.count(); ++index) {
        const PGMDEV_DEVICE_INFO& record = profiles.get_device_database()[index];
        JSON& row = records.emplace_back(JSON{{"index", index}, {"key", key_text(record)}});
        add_members(row, record);
    }
    return {{"version", version_json()},
            {"hps_kinds", in_columns(hps_kind_rows())},
            {"hps_spi", in_columns(hps_flash_rows<HPS_SPI>())},
            {"hps_nand", in_columns(hps_flash_rows<HPS_NAND>())},
            {"profile_members", members_json(PGMDEV_DEVICE_INFO_MEMBERS)},
            {"profiles", in_columns(records)}};
}

JSON page_names_data() {
    std::vector<JSON> rows = facts_of_all_names();
    for (JSON& row : rows) {
        const std::string name = std::get<std::string>(row["name"].value());
        for (const SPELLING& spelling : spellings_of("")) {
            JSON& value = row[spelling.key];
            const auto* text = std::get_if<std::string>(&value.value());
            if (text != nullptr && *text == name && spelling.key != std::string("name")) {
                value = OWN_NAME;
            }
        }
    }
    return in_columns(rows);
}
