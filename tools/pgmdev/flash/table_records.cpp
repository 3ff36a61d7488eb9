#include "flash/table_records.h"

#include <fmt/core.h>

#include <algorithm>
#include <map>

#include "files/database.h"
#include "flash/aliases.h"
#include "flash/database.h"
#include "flash/output.h"
#include "flash_evidence.h"
#include "pgmdev_flash_notes.h"
#include "pgmdev_version.h"
#include "stl.h"

namespace {

std::string folded(std::string text) {
    stl_tolower(text);
    return text;
}

/// The bytes of the response that are compared, in their order.
std::string identification(const PGMDEV_SFL_FLASH_INFO& r) {
    std::vector<std::pair<BYTE, BYTE>> bytes{{r.memory_id_index, r.memory_id}};
    if (!r.silicon_id) {
        bytes.emplace_back(r.mfc_id_index, r.mfc_id);
        if (r.memory_type_index != PGMDEV_SFL_FLASH_INFO::NONE) {
            bytes.emplace_back(r.memory_type_index, r.memory_type);
        }
    }
    std::sort(bytes.begin(), bytes.end());
    std::string text = r.silicon_id ? " silicon ID" : "";
    for (const auto& [index, value] : bytes) {
        text += fmt::format(" {}:{:02X}", index, value);
    }
    return text;
}

}  // namespace

PACKED_SCHEMA FLASH_RECORDS::schema() {
    return {.magic = FLASH_DATABASE_KIND.magic,
            .stamp = FLASH_DATABASE_KIND.stamp(),
            .version = PGMDEV_VERSION::body_version(),
            .members = packed_members(PGMDEV_SFL_FLASH_MEMBERS),
            .text_tags = {PGMDEV_MANAGER_STRING},
            .number_tags = {PGMDEV_MANAGER_DWORD},
            .indexes = {},
            .name_of = {}};
}

std::string FLASH_RECORDS::key(const RECORD& record) {
    return record.device_name + identification(record);
}

std::string FLASH_RECORDS::match_key(const RECORD& record) {
    return folded(record.device_name) + identification(record);
}

std::string FLASH_RECORDS::cell(const PGMDEV_SFL_FLASH_MEMBER& member, const RECORD& record) {
    return std::visit([&](auto field) { return pgmdev_cell(record.*field, member.base); }, member.field);
}

JSON FLASH_RECORDS::values(const RECORD& record) {
    JSON object = JSON::object();
    add_members(object, record);
    return object;
}

std::vector<NOTES_FAULTS> FLASH_RECORDS::notes_beside(const std::string& csv_file, const PGMDEV_FLASH_TABLE& table) {
    std::vector<NOTES_FAULTS> notes;
    const PGMDEV_FLASH_NOTES beside = PGMDEV_FLASH_NOTES::beside_source(csv_file);
    if (table.records().empty()) {  // it has faults of its own: no row could be told from one that is missing
        for (const auto& file : {beside.ambiguities_file(), beside.identifications_file()}) {
            if (!file.file.empty()) {
                notes.push_back({file.file, file.faults});
            }
        }
    } else {
        for (const auto& each : beside.faults_with(table.records())) {
            notes.push_back({each.file, each.faults});
        }
    }
    notes.push_back(flash_alias_faults(csv_file, table.records()));
    notes.push_back(left_out_flash_faults(csv_file, table.records()));
    return notes;
}

std::vector<NOTES_COPY> FLASH_RECORDS::notes_of(const std::string& csv_file, const std::string& pcf_file) {
    const std::vector<std::string> sources = PGMDEV_FLASH_NOTES::files_of_source(csv_file);
    const std::vector<std::string> copies = PGMDEV_FLASH_NOTES::files_of_database(pcf_file);
    std::vector<NOTES_COPY> files;
    for (std::size_t i = 0; i < sources.size(); ++i) {
        files.push_back({sources[i], copies[i]});
    }
    for (const char* list : {FLASH_ALIASES_LIST, FLASH_LEFT_OUT_LIST, FLASH_SOURCES_LIST}) {
        files.push_back({beside_flash_source(csv_file, list), beside_flash_database(pcf_file, list)});
    }
    return files;
}

std::vector<std::string> FLASH_RECORDS::key_faults(const std::vector<RECORD>& records) {
    std::map<std::string, std::pair<std::string, DWORD>> names;  // by folded name: the name, and its default rows
    for (const RECORD& record : records) {
        auto& [name, defaults] = names[folded(record.device_name)];
        name = record.device_name;
        defaults += record.default_dev ? 1 : 0;
    }
    std::vector<std::string> faults;
    for (const auto& [key, name] : names) {
        if (name.second != 1) {
            faults.push_back(fmt::format("{} has {} default rows", name.first, name.second));
        }
    }
    return faults;
}
