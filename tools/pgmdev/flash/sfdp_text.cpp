#include "flash/sfdp_text.h"

#include <fmt/core.h>

#include <string_view>
#include <vector>

#include "flash/output.h"
#include "flash/sfdp_json.h"
#include "terminal/size_text.h"
#include "terminal/wrapped.h"

namespace {

using TEXTS = std::vector<std::string>;

/// One below the other, under one label.
void print_lines(std::string_view label, const TEXTS& lines) {
    constexpr std::size_t COLUMN = 18;
    for (const std::string& line : lines) {
        print_labelled(label.empty() ? "" : fmt::format("  {}", label), COLUMN, line);
        label = "";
    }
}

std::string listed(const TEXTS& texts, const char* none) {
    std::string all;
    for (const std::string& text : texts) {
        all += (all.empty() ? "" : ", ") + text;
    }
    return all.empty() ? none : all;
}

std::string listed(const std::optional<TEXTS>& texts, const char* none) {
    return texts ? listed(*texts, none) : "not told";
}

TEXTS table_lines(const PGMDEV_FLASH_SFDP& sfdp) {
    TEXTS lines;
    for (const PGMDEV_FLASH_SFDP::HEADER& header : sfdp.headers()) {
        lines.push_back(fmt::format("{:04X} {} {}.{}, {} words at {:X}h", header.id,
                                    PGMDEV_FLASH_SFDP::table_name(header.id), header.major, header.minor, header.words,
                                    header.offset));
    }
    return lines;
}

TEXTS erase_lines(const PGMDEV_FLASH_SFDP& sfdp) {
    TEXTS lines;
    for (const PGMDEV_FLASH_SFDP::ERASE_TYPE& type : sfdp.basic().erase_types) {
        lines.push_back(fmt::format("{}: {} with {:02X}{}{}", type.number, bytes_text(type.bytes), type.opcode,
                                    type.opcode_4byte ? fmt::format(" (4-byte {:02X})", *type.opcode_4byte) : "",
                                    type.ms ? ", " + duration_text(*type.ms, "ms") : ""));
    }
    if (const auto& time = sfdp.basic().chip_erase_ms) {
        lines.push_back("whole die, " + duration_text(*time, "ms"));
    }
    return lines;
}

TEXTS program_lines(const PGMDEV_FLASH_SFDP::BASIC_TABLE& basic) {
    TEXTS lines{fmt::format("pages of {}{}{}", bytes_text(basic.page_size()),
                            basic.page_bytes ? "" : " (not told: all such chips have them)",
                            basic.page_program_us ? ", " + duration_text(*basic.page_program_us, "us") : "")};
    if (basic.first_byte_us && basic.next_byte_us) {
        lines.push_back("first byte " + duration_text(*basic.first_byte_us, "us"));
        lines.push_back("each further byte " + duration_text(*basic.next_byte_us, "us"));
    }
    return lines;
}

TEXTS read_lines(const PGMDEV_FLASH_SFDP::BASIC_TABLE& basic) {
    TEXTS lines;
    for (const PGMDEV_FLASH_SFDP::FAST_READ& read : basic.fast_reads) {
        lines.push_back(fmt::format("{} with {:02X}, {} dummy clocks ({} mode, {} wait)", read.mode, read.opcode,
                                    read.mode_clocks + read.wait_clocks, read.mode_clocks, read.wait_clocks));
    }
    if (basic.dtr) {
        lines.emplace_back("also on both edges of the clock");
    }
    return lines;
}

std::string types_text(const std::vector<BYTE>& types) {
    TEXTS texts;
    for (const BYTE type : types) {
        texts.push_back(std::to_string(type));
    }
    return listed(texts, "none");
}

TEXTS map_lines(const PGMDEV_FLASH_SFDP& sfdp) {
    TEXTS lines;
    for (const PGMDEV_FLASH_SFDP::MAP_COMMAND& command : sfdp.map_commands()) {
        lines.push_back(
            fmt::format("in use: read {:02X} at {:X}h, mask {:02X}", command.opcode, command.address, command.mask));
    }
    for (const PGMDEV_FLASH_SFDP::SECTOR_MAP& map : sfdp.sector_maps()) {
        for (const PGMDEV_FLASH_SFDP::REGION& region : map.regions) {
            lines.push_back(fmt::format("map {}: {} from {:X}h, erase types {}", map.id, bytes_text(region.bytes),
                                        region.offset, types_text(region.erase_types)));
        }
    }
    return lines;
}

}  // namespace

std::string bytes_text(QWORD bytes) {
    constexpr QWORD KIB = 1024;
    constexpr QWORD MIB = KIB * KIB;
    if (bytes != 0 && bytes % MIB == 0) {
        return fmt::format("{} MiB", bytes / MIB);
    }
    return bytes != 0 && bytes % KIB == 0 ? fmt::format("{} KiB", bytes / KIB) : fmt::format("{} bytes", bytes);
}

std::string duration_text(const PGMDEV_FLASH_SFDP::DURATION& time, const char* unit) {
    return fmt::format("{} {} typical, {} {} at most", time.typical, unit, time.longest, unit);
}

void print_sfdp(const std::string& title, const PGMDEV_FLASH_SFDP& sfdp) {
    const PGMDEV_FLASH_SFDP::BASIC_TABLE& basic = sfdp.basic();
    print_sentence(fmt::format("{}: SFDP {}.{} ({})", title, sfdp.major(), sfdp.minor(), sfdp.standard()));
    print_lines("tables", table_lines(sfdp));
    print_lines("size", {basic.density_bits ? fmt::format("{}, {} bytes", size_text(*basic.density_bits), basic.bytes())
                                            : std::string("not known")});
    print_lines("addresses", {PGMDEV_FLASH_SFDP::address_text(basic.address_code) + " bytes"});
    print_lines("4-byte mode",
                {"on by " + listed(basic.enter_4byte, "nothing"), "off by " + listed(basic.exit_4byte, "nothing")});
    if (sfdp.four_byte()) {
        print_lines("4-byte opcodes", {listed(sfdp.four_byte()->support, "none")});
    }
    print_lines("erase", erase_lines(sfdp));
    print_lines("sector map", map_lines(sfdp));
    print_lines("program", program_lines(basic));
    print_lines("written by", {basic.write_granularity == 1 ? "single bytes" : "64 bytes or more at once"});
    print_lines("fast read", read_lines(basic));
    print_lines("quad enable", {basic.quad_enable ? basic.quad_enable->meaning : std::string("not told")});
    print_lines("ready by", {listed(basic.status_polling, "nothing")});
    print_lines("soft reset", {listed(basic.soft_reset, "none")});
    print_lines("warnings", sfdp.warnings());
}

void print_derived_record(const PGMDEV_FLASH_SFDP::DERIVED_RECORD& derived) {
    if (!derived.obstacle.empty()) {
        print_sentence("No record follows: " + derived.obstacle);
        return;
    }
    fmt::print("Record that follows, as a row of the source table:\n{}\n", source_row(derived.record));
    fmt::print("and by member:\n");
    for (const PGMDEV_SFL_FLASH_MEMBER& member : PGMDEV_SFL_FLASH_MEMBERS) {
        const auto cell = [&](auto field) { return pgmdev_cell(derived.record.*field, member.base); };
        fmt::print("{}={}\n", member.name, std::visit(cell, member.field));
    }
    fmt::print("Assumed, since the chip does not tell it:\n");
    for (const auto& [member, taken] : derived.assumed) {
        constexpr std::size_t COLUMN = 22;
        print_labelled(fmt::format("  {}", member), COLUMN, taken);
    }
}
