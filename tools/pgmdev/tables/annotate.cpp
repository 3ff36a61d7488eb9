#include "tables/annotate.h"

#include <fmt/core.h>

#include <algorithm>
#include <vector>

#include "tables/packed_file.h"
#include "tables/packed_payload.h"
#include "terminal/printable.h"
#include "terminal/schema.h"
#include "terminal/standard_error.h"

namespace {

std::string hex_of(std::span<const BYTE> bytes) {
    std::string text;
    for (const BYTE byte : bytes) {
        text += fmt::format("{:02X}", byte);
    }
    return text;
}

/// A part of the file before the payload, or behind it.
struct HEAD_FIELD {
    std::size_t offset;
    std::size_t size;
    const char* name;
    std::string text;
};

std::vector<HEAD_FIELD> head_of(const PACKED_FILE& file) {
    const std::string text(file.bytes.begin(), file.bytes.end());
    const std::size_t size_place = PACKED_MAGIC_LENGTH + PACKED_STAMP_LENGTH;
    const std::size_t end = file.bytes.size() - PACKED_CHECKSUM_LENGTH;
    return {{0, PACKED_MAGIC_LENGTH, "magic", text.substr(0, PACKED_MAGIC_LENGTH)},
            {PACKED_MAGIC_LENGTH, PACKED_STAMP_LENGTH, "stamp", file.stamp},
            {size_place, PACKED_HEAD_LENGTH - size_place, "payload size", fmt::format("{} bytes", file.stated_size)},
            {PACKED_HEAD_LENGTH, end - PACKED_HEAD_LENGTH, "payload", "one zlib stream"},
            {end, PACKED_CHECKSUM_LENGTH, "checksum slot", hex_of(std::span(file.bytes).subspan(end))}};
}

JSON field_json(const PACKED_FIELD& field) {
    return {{"offset", field.offset},       {"size", field.bytes.size()},
            {"bytes", hex_of(field.bytes)}, {"tag", field.tag.empty() ? JSON() : JSON(field.tag)},
            {"record", field.record},       {"member", field.member},
            {"element", field.element},     {"value", field.value}};
}

void print_field(const PACKED_FIELD& field) {
    const std::string owner = field.record    ? fmt::format("record {}", *field.record)
                              : field.element ? fmt::format("entry {}", *field.element)
                                              : "";
    fmt::print("{:08x}  {:<12}  {:<10}  {:<34}  {}  [{}]\n", field.offset, owner, field.tag, field.member,
               printable(field.text), hex_of(field.bytes));
}

}  // namespace

void annotate_database(const std::string& pcf_file, std::vector<BYTE> bytes, const PACKED_SCHEMA& schema,
                       COMMAND& command) {
    PACKED_FILE file = open_packed_file(std::move(bytes), schema);
    const bool whole = file.checks.front().outcome == TABLE_CHECK::PASSED;
    JSON head = JSON::array();
    for (const HEAD_FIELD& field : whole ? head_of(file) : std::vector<HEAD_FIELD>()) {
        if (command.json) {
            head.push_back(
                {{"offset", field.offset}, {"size", field.size}, {"member", field.name}, {"value", field.text}});
        } else {
            fmt::print("{:08x}  file          {:>6} bytes  {:<17}  {}\n", field.offset, field.size, field.name,
                       printable(field.text));
        }
    }
    JSON fields = JSON::array();
    std::vector<TABLE_CHECK> checks = std::move(file.checks);
    if (!file.payload.empty()) {
        const auto scanned = scan_payload(file.payload, schema, [&](const PACKED_FIELD& field) {
            command.json ? fields.push_back(field_json(field)) : print_field(field);
        });
        checks.insert(checks.end(), scanned.begin(), scanned.end());
    }
    JSON faults = JSON::array();
    for (const TABLE_CHECK& check : checks) {
        if (check.outcome == TABLE_CHECK::FAILED) {
            command.result = EXIT_INTERNAL_ERROR;
            faults.push_back({{"check", check.name}, {"detail", check.detail}});
            print_error("pgmdev: {}: {}: {}", pcf_file, check.name, check.detail);
        }
    }
    if (command.json) {
        print_json({{"query", pcf_file}, {"found", true}, {"head", head}, {"payload", fields}, {"faults", faults}});
    }
}

JSON annotation_schema() {
    const JSON head = object_schema(
        {{"offset", number_schema()}, {"size", number_schema()}, {"member", text_schema()}, {"value", text_schema()}});
    const JSON value = any_of({text_schema(), flag_schema(), or_null(number_schema())});
    const JSON field = object_schema({{"offset", number_schema()},
                                      {"size", number_schema()},
                                      {"bytes", text_schema()},
                                      {"tag", or_null(text_schema())},
                                      {"record", or_null(number_schema())},
                                      {"member", text_schema()},
                                      {"element", or_null(number_schema())},
                                      {"value", value}});
    const JSON fault = object_schema({{"check", text_schema()}, {"detail", text_schema()}});
    return object_schema({{"query", text_schema()},
                          {"found", flag_schema()},
                          {"head", array_schema(head)},
                          {"payload", array_schema(field)},
                          {"faults", array_schema(fault)}});
}
