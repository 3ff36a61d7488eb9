#include "flash/sfdp_json.h"

#include <fmt/core.h>

#include "flash/output.h"

namespace {

using SFDP = PGMDEV_FLASH_SFDP;

std::string opcode_text(BYTE opcode) {
    return fmt::format("{:02X}", opcode);
}

JSON opcode_json(const std::optional<BYTE>& opcode) {
    return opcode ? JSON(opcode_text(*opcode)) : JSON();
}

template <class PART, class MAKE>
JSON array_of(const std::vector<PART>& parts, MAKE make) {
    JSON array = JSON::array();
    for (const PART& part : parts) {
        array.push_back(make(part));
    }
    return array;
}

JSON header_json(const SFDP::HEADER& header) {
    return {{"id", fmt::format("{:04X}", header.id)},
            {"name", SFDP::table_name(header.id)},
            {"revision", fmt::format("{}.{}", header.major, header.minor)},
            {"dwords", header.words},
            {"offset", header.offset}};
}

JSON fast_read_json(const SFDP::FAST_READ& read) {
    return {{"mode", read.mode},
            {"opcode", opcode_text(read.opcode)},
            {"mode_clocks", read.mode_clocks},
            {"wait_clocks", read.wait_clocks},
            {"dummy_clocks", static_cast<DWORD>(read.mode_clocks + read.wait_clocks)}};
}

JSON erase_type_json(const SFDP::ERASE_TYPE& type) {
    return {{"type", type.number},
            {"size_bytes", type.bytes},
            {"opcode", opcode_text(type.opcode)},
            {"typical_ms", type.ms ? JSON(type.ms->typical) : JSON()},
            {"max_ms", type.ms ? JSON(type.ms->longest) : JSON()},
            {"opcode_4byte", opcode_json(type.opcode_4byte)}};
}

JSON duration_json(const std::optional<SFDP::DURATION>& time, const char* typical, const char* longest) {
    return time ? JSON{{typical, time->typical}, {longest, time->longest}} : JSON();
}

JSON byte_program_json(const SFDP::BASIC_TABLE& basic) {
    if (!basic.first_byte_us || !basic.next_byte_us) {
        return {};
    }
    return {{"first_typical_us", basic.first_byte_us->typical},
            {"first_max_us", basic.first_byte_us->longest},
            {"next_typical_us", basic.next_byte_us->typical},
            {"next_max_us", basic.next_byte_us->longest}};
}

JSON four_byte_json(const SFDP::FOUR_BYTE_TABLE& table) {
    JSON opcodes = JSON::object();
    for (const auto& [type, opcode] : table.erase_opcodes) {
        opcodes[std::to_string(type)] = opcode_text(opcode);
    }
    return {{"dword1", table.word1}, {"dword2", table.word2}, {"support", table.support}, {"erase_opcodes", opcodes}};
}

JSON region_json(const SFDP::REGION& region) {
    return {{"offset", region.offset}, {"size_bytes", region.bytes}, {"erase_types", region.erase_types}};
}

JSON sector_map_json(const SFDP::SECTOR_MAP& map) {
    return {{"id", map.id}, {"regions", array_of(map.regions, region_json)}};
}

JSON map_command_json(const SFDP::MAP_COMMAND& command) {
    return {{"opcode", opcode_text(command.opcode)},
            {"address_bytes", command.address_bytes},
            {"address", command.address},
            {"wait_clocks", command.wait_clocks},
            {"mask", opcode_text(command.mask)}};
}

JSON quad_enable_json(const std::optional<SFDP::QUAD_ENABLE>& quad) {
    return quad ? JSON{{"code", quad->code}, {"meaning", quad->meaning}} : JSON();
}

JSON numbers_schema(const std::vector<std::string>& names) {
    std::vector<SCHEMA_MEMBER> members;
    members.reserve(names.size());
    for (const std::string& name : names) {
        members.push_back({name, number_schema()});
    }
    return or_null(object_schema(members));
}

JSON texts_or_null_schema() {
    return or_null(array_schema(text_schema()));
}

JSON four_byte_schema() {
    std::vector<SCHEMA_MEMBER> opcodes;
    for (const char* type : {"1", "2", "3", "4"}) {
        opcodes.push_back({type, text_schema(), false});
    }
    return or_null(object_schema({{"dword1", number_schema()},
                                  {"dword2", number_schema()},
                                  {"support", array_schema(text_schema())},
                                  {"erase_opcodes", object_schema(opcodes)}}));
}

JSON sector_map_schema() {
    const JSON region = object_schema(
        {{"offset", number_schema()}, {"size_bytes", number_schema()}, {"erase_types", array_schema(number_schema())}});
    return array_schema(object_schema({{"id", number_schema()}, {"regions", array_schema(region)}}));
}

}  // namespace

JSON sfdp_json(const SFDP& sfdp) {
    const SFDP::BASIC_TABLE& basic = sfdp.basic();
    const JSON known_bytes = basic.density_bits ? JSON(basic.bytes()) : JSON();
    return {{"kind", "sfdp"},
            {"revision", fmt::format("{}.{}", sfdp.major(), sfdp.minor())},
            {"standard", sfdp.standard()},
            {"access_protocol", sfdp.access_protocol()},
            {"basic_dwords", basic.header.words},
            {"density_bits", basic.density_bits},
            {"size_bytes", known_bytes},
            {"address_bytes", SFDP::address_text(basic.address_code)},
            {"erase_4k_uniform", basic.erase_4k_uniform},
            {"erase_4k_opcode", opcode_json(basic.erase_4k_opcode)},
            {"write_granularity_bytes", basic.write_granularity},
            {"dtr", basic.dtr},
            {"fast_reads", array_of(basic.fast_reads, fast_read_json)},
            {"erase_types", array_of(basic.erase_types, erase_type_json)},
            {"page_bytes", basic.page_size()},
            {"page_bytes_known", basic.page_bytes.has_value()},
            {"page_program", duration_json(basic.page_program_us, "typical_us", "max_us")},
            {"byte_program", byte_program_json(basic)},
            {"chip_erase", duration_json(basic.chip_erase_ms, "typical_ms", "max_ms")},
            {"status_polling", basic.status_polling},
            {"quad_enable", quad_enable_json(basic.quad_enable)},
            {"soft_reset", basic.soft_reset},
            {"enter_4byte", basic.enter_4byte},
            {"exit_4byte", basic.exit_4byte},
            {"headers", array_of(sfdp.headers(), header_json)},
            {"four_byte_instructions", sfdp.four_byte() ? four_byte_json(*sfdp.four_byte()) : JSON()},
            {"map_commands", array_of(sfdp.map_commands(), map_command_json)},
            {"sector_maps", array_of(sfdp.sector_maps(), sector_map_json)},
            {"hybrid", sfdp.hybrid()},
            {"warnings", sfdp.warnings()}};
}

std::vector<SCHEMA_MEMBER> sfdp_members() {
    const JSON fast_read = object_schema({{"mode", text_schema()},
                                          {"opcode", text_schema()},
                                          {"mode_clocks", number_schema()},
                                          {"wait_clocks", number_schema()},
                                          {"dummy_clocks", number_schema()}});
    const JSON erase_type = object_schema({{"type", number_schema()},
                                           {"size_bytes", number_schema()},
                                           {"opcode", text_schema()},
                                           {"typical_ms", or_null(number_schema())},
                                           {"max_ms", or_null(number_schema())},
                                           {"opcode_4byte", or_null(text_schema())}});
    const JSON header = object_schema({{"id", text_schema()},
                                       {"name", text_schema()},
                                       {"revision", text_schema()},
                                       {"dwords", number_schema()},
                                       {"offset", number_schema()}});
    const JSON command = object_schema({{"opcode", text_schema()},
                                        {"address_bytes", or_null(number_schema())},
                                        {"address", number_schema()},
                                        {"wait_clocks", or_null(number_schema())},
                                        {"mask", text_schema()}});
    return {{"kind", choice_schema({"sfdp"})},
            {"revision", text_schema()},
            {"standard", text_schema()},
            {"access_protocol", number_schema()},
            {"basic_dwords", number_schema()},
            {"density_bits", or_null(number_schema())},
            {"size_bytes", or_null(number_schema())},
            {"address_bytes", choice_schema({"3", "3 or 4", "4", "reserved"})},
            {"erase_4k_uniform", flag_schema()},
            {"erase_4k_opcode", or_null(text_schema())},
            {"write_granularity_bytes", number_schema()},
            {"dtr", flag_schema()},
            {"fast_reads", array_schema(fast_read)},
            {"erase_types", array_schema(erase_type)},
            {"page_bytes", number_schema()},
            {"page_bytes_known", flag_schema()},
            {"page_program", numbers_schema({"typical_us", "max_us"})},
            {"byte_program", numbers_schema({"first_typical_us", "first_max_us", "next_typical_us", "next_max_us"})},
            {"chip_erase", numbers_schema({"typical_ms", "max_ms"})},
            {"status_polling", texts_or_null_schema()},
            {"quad_enable", or_null(object_schema({{"code", number_schema()}, {"meaning", text_schema()}}))},
            {"soft_reset", texts_or_null_schema()},
            {"enter_4byte", texts_or_null_schema()},
            {"exit_4byte", texts_or_null_schema()},
            {"headers", array_schema(header)},
            {"four_byte_instructions", four_byte_schema()},
            {"map_commands", array_schema(command)},
            {"sector_maps", sector_map_schema()},
            {"hybrid", flag_schema()},
            {"warnings", array_schema(text_schema())}};
}

std::string source_row(const PGMDEV_SFL_FLASH_INFO& record) {
    std::string row;
    for (const PGMDEV_SFL_FLASH_MEMBER& member : PGMDEV_SFL_FLASH_MEMBERS) {
        row += (row.empty() ? "" : ", ") +
               std::visit([&](auto field) { return pgmdev_cell(record.*field, member.base); }, member.field);
    }
    return row;
}

JSON derived_record_json(const SFDP::DERIVED_RECORD& derived) {
    if (!derived.obstacle.empty()) {
        return {};
    }
    JSON object = JSON::object();
    add_members(object, derived.record);
    JSON assumed = JSON::array();
    for (const auto& [member, taken] : derived.assumed) {
        assumed.push_back({{"member", member}, {"taken", taken}});
    }
    object["assumed"] = assumed;
    object["row"] = source_row(derived.record);
    return object;
}

JSON derived_record_schema() {
    std::vector<SCHEMA_MEMBER> members = record_members();
    members.push_back({"assumed", array_schema(object_schema({{"member", text_schema()}, {"taken", text_schema()}}))});
    members.push_back({"row", text_schema()});
    return or_null(object_schema(members));
}
