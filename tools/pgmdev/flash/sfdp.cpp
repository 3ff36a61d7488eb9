#include "flash/sfdp.h"

#include <fmt/core.h>

#include "flash/sfdp_dump.h"
#include "flash/sfdp_json.h"
#include "flash/sfdp_text.h"
#include "terminal/answer.h"
#include "terminal/input.h"

namespace {

constexpr std::size_t LONGEST_TITLE = 64;

/// The name of a dump for people, who need no hundreds of digits.
std::string dump_title(const std::string& argument) {
    return argument == "-" ? "Standard input"
                           : argument.substr(0, LONGEST_TITLE) + (argument.size() > LONGEST_TITLE ? "..." : "");
}

void show_sfdp(const ARGUMENTS& given, COMMAND& command) {
    const std::string& dump = given.text("DUMP");
    const ID_RESPONSE id = given.has("--id") ? parse_id_response(given.text("--id")) : ID_RESPONSE();
    const PGMDEV_FLASH_SFDP sfdp = sfdp_of(dump);
    const PGMDEV_FLASH_SFDP::DERIVED_RECORD derived = sfdp.record({id.data(), id.count});
    ANSWER answer;
    answer.content = sfdp_json(sfdp);
    answer.content["record"] = derived_record_json(derived);
    answer.print = [&] {
        print_sfdp(dump_title(dump), sfdp);
        fmt::print("\n");
        print_derived_record(derived);
    };
    give_answer(dump, answer, command);
}

JSON shown_sfdp_schema() {
    std::vector<SCHEMA_MEMBER> members = sfdp_members();
    members.push_back({"record", derived_record_schema()});
    return question_schema(members, {});
}

}  // namespace

VERB flash_sfdp_verb() {
    return VERB("sfdp", "What a flash says of itself (SFDP, opcode 5A), and the record that follows",
                "pgmdev flash sfdp chip.sfdp --id EF4018", show_sfdp)
        .takes(
            {"DUMP",
             "File with the bytes from address 0 on, such as /sys/bus/spi/devices/spi0.0/spi-nor/sfdp, or with a text "
             "of hexadecimal digits; or such digits; - reads standard input to its end"})
        .takes({"--id", "What the flash answers to the identification, for the record", ARGUMENT::OPTIONAL_TEXT, "HEX"})
        .answers(shown_sfdp_schema);
}
