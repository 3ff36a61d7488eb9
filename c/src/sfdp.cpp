#include <memory>
#include <optional>

#include "member_tables.h"
#include "pgmdev_c_flash.h"
#include "pgmdev_flash_sfdp.h"

// What a flash says of itself, as lists of records.

namespace {

using SFDP = PGMDEV_FLASH_SFDP;
using DURATION = std::optional<SFDP::DURATION>;

MEMBER opcode_member(std::string name) {
    return number_member(std::move(name), 8, "", 16);
}

DATUM typical(const DURATION& time) {
    return time ? number_value(time->typical) : DATUM();
}
DATUM longest(const DURATION& time) {
    return time ? number_value(time->longest) : DATUM();
}

void add_header(pgmdev_answer& answer, const SFDP& sfdp) {
    answer
        .add("sfdp", {number_member("major", 8), number_member("minor", 8), number_member("access_protocol", 8, "", 16),
                      text_member("standard"), flag_member("hybrid"), flag_member("polls_flag_status")})
        .add({number_value(sfdp.major()), number_value(sfdp.minor()), number_value(sfdp.access_protocol()),
              text_value(sfdp.standard()), flag_value(sfdp.hybrid()), flag_value(sfdp.polls_flag_status())});
    pgmdev_records& headers =
        answer.add("headers", {number_member("id", 16, "", 16), text_member("name"), number_member("major", 8),
                               number_member("minor", 8), number_member("words", 8), number_member("offset")});
    for (const SFDP::HEADER& header : sfdp.headers()) {
        headers.add({number_value(header.id), text_value(SFDP::table_name(header.id)), number_value(header.major),
                     number_value(header.minor), number_value(header.words), number_value(header.offset)});
    }
}

void add_basic_table(pgmdev_answer& answer, const SFDP::BASIC_TABLE& basic) {
    answer
        .add("basic", {number_member("density_bits", 64, "bits"), number_member("address_code", 8),
                       text_member("address_bytes"), flag_member("erase_4k_uniform"), opcode_member("erase_4k_opcode"),
                       number_member("write_granularity", 8, "bytes"), flag_member("dtr"),
                       number_member("page_size", 32, "bytes"), flag_member("page_size_known"),
                       number_member("page_program_typical", 32, "us"), number_member("page_program_longest", 32, "us"),
                       number_member("first_byte_typical", 32, "us"), number_member("first_byte_longest", 32, "us"),
                       number_member("next_byte_typical", 32, "us"), number_member("next_byte_longest", 32, "us"),
                       number_member("chip_erase_typical", 32, "ms"), number_member("chip_erase_longest", 32, "ms"),
                       number_member("quad_enable_code", 8), text_member("quad_enable")})
        .add({number_value(basic.density_bits), number_value(basic.address_code),
              text_value(SFDP::address_text(basic.address_code)), flag_value(basic.erase_4k_uniform),
              number_value(basic.erase_4k_opcode), number_value(basic.write_granularity), flag_value(basic.dtr),
              number_value(basic.page_size()), flag_value(basic.page_bytes.has_value()), typical(basic.page_program_us),
              longest(basic.page_program_us), typical(basic.first_byte_us), longest(basic.first_byte_us),
              typical(basic.next_byte_us), longest(basic.next_byte_us), typical(basic.chip_erase_ms),
              longest(basic.chip_erase_ms), basic.quad_enable ? number_value(basic.quad_enable->code) : DATUM(),
              basic.quad_enable ? text_value(basic.quad_enable->meaning) : DATUM()});
    pgmdev_records& reads =
        answer.add("fast_reads", {text_member("mode"), opcode_member("opcode"), number_member("mode_clocks", 8),
                                  number_member("wait_clocks", 8)});
    for (const SFDP::FAST_READ& read : basic.fast_reads) {
        reads.add({text_value(read.mode), number_value(read.opcode), number_value(read.mode_clocks),
                   number_value(read.wait_clocks)});
    }
    pgmdev_records& erases =
        answer.add("erase_types", {number_member("type", 8), number_member("size", 32, "bytes"),
                                   opcode_member("opcode"), number_member("typical", 32, "ms"),
                                   number_member("longest", 32, "ms"), opcode_member("opcode_4byte")});
    for (const SFDP::ERASE_TYPE& type : basic.erase_types) {
        erases.add({number_value(type.number), number_value(type.bytes), number_value(type.opcode), typical(type.ms),
                    longest(type.ms), number_value(type.opcode_4byte)});
    }
    const std::vector<std::string> unknown;
    answer.add_texts("status_polling", basic.status_polling.value_or(unknown));
    answer.add_texts("soft_reset", basic.soft_reset.value_or(unknown));
    answer.add_texts("enter_4byte", basic.enter_4byte.value_or(unknown));
    answer.add_texts("exit_4byte", basic.exit_4byte.value_or(unknown));
}

void add_four_byte_table(pgmdev_answer& answer, const SFDP& sfdp) {
    const SFDP::FOUR_BYTE_TABLE table = sfdp.four_byte().value_or(SFDP::FOUR_BYTE_TABLE());
    answer.add_texts("four_byte_instructions", table.support);
    pgmdev_records& erases = answer.add("four_byte_erase", {number_member("type", 8), opcode_member("opcode")});
    for (const auto& [type, opcode] : table.erase_opcodes) {
        erases.add({number_value(type), number_value(opcode)});
    }
}

void add_sector_maps(pgmdev_answer& answer, const SFDP& sfdp) {
    pgmdev_records& commands = answer.add(
        "map_commands", {opcode_member("opcode"), number_member("address_bytes", 8), number_member("address"),
                         number_member("wait_clocks", 8), number_member("mask", 8, "", 16)});
    for (const SFDP::MAP_COMMAND& command : sfdp.map_commands()) {
        commands.add({number_value(command.opcode), number_value(command.address_bytes), number_value(command.address),
                      number_value(command.wait_clocks), number_value(command.mask)});
    }
    pgmdev_records maps({number_member("id", 8)});
    pgmdev_records regions({number_member("map"), number_member("offset", 64, "bytes"),
                            number_member("size", 64, "bytes"), member_of_kind("erase_types", PGMDEV_KIND_BYTES)});
    for (const SFDP::SECTOR_MAP& map : sfdp.sector_maps()) {
        for (const SFDP::REGION& region : map.regions) {
            regions.add({number_value(maps.count()),
                         number_value(region.offset),
                         number_value(region.bytes),
                         {PGMDEV_KIND_BYTES, 0, std::string(region.erase_types.begin(), region.erase_types.end())}});
        }
        maps.add({number_value(map.id)});
    }
    answer.lists.push_back({"sector_maps", std::move(maps)});
    answer.lists.push_back({"regions", std::move(regions)});
}

void add_derived_record(pgmdev_answer& answer, const SFDP::DERIVED_RECORD& derived) {
    pgmdev_records& record = answer.add("record", flash_members());
    if (derived.obstacle.empty()) {
        record.add(flash_values(derived.record));
    }
    pgmdev_records& assumed = answer.add("assumed", {text_member("member"), text_member("taken")});
    for (const auto& [member, taken] : derived.assumed) {
        assumed.add({text_value(member), text_value(taken)});
    }
    pgmdev_records& obstacle = answer.add("obstacle", {text_member("text")});
    if (!derived.obstacle.empty()) {
        obstacle.add({text_value(derived.obstacle)});
    }
}

}  // namespace

pgmdev_status pgmdev_sfdp_decode(const uint8_t* bytes, size_t size, const uint8_t* id, size_t id_size,
                                 pgmdev_answer** answer, pgmdev_error** error) {
    return guarded(error, [&]() -> pgmdev_status {
        emptied(answer);
        require_argument((bytes != nullptr || size == 0) && (id != nullptr || id_size == 0),
                         "the bytes are a null pointer");
        const SFDP sfdp = SFDP::from_bytes({bytes, size});
        auto found = std::make_unique<pgmdev_answer>();
        if (const auto& refusal = sfdp.refusal()) {
            found
                ->add("refusal",
                      {number_member("offset"), text_member("field"), text_member("found"), text_member("expected")})
                .add({number_value(refusal->offset), text_value(refusal->field), text_value(refusal->found),
                      text_value(refusal->expected)});
            *answer = found.release();
            throw FAILURE(PGMDEV_STATUS_REFUSED, SFDP::describe(*refusal));
        }
        add_header(*found, sfdp);
        add_basic_table(*found, sfdp.basic());
        add_four_byte_table(*found, sfdp);
        add_sector_maps(*found, sfdp);
        found->add_texts("warnings", sfdp.warnings());
        add_derived_record(*found, sfdp.record({id, id_size}));
        *answer = found.release();
        return PGMDEV_STATUS_OK;
    });
}
