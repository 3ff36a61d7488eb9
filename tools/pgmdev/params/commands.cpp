#include "nouns.h"

#include <fmt/core.h>

#include <algorithm>
#include <span>
#include <vector>

#include "file_reader.h"
#include "files/container.h"
#include "files/inspection.h"
#include "files/origins.h"
#include "files/output.h"
#include "fio.h"
#include "hps/block_form.h"
#include "params/blocks.h"
#include "params/typed_values.h"
#include "pgmdev_flash_ini.h"
#include "terminal/failure.h"
#include "terminal/json.h"
#include "terminal/listing.h"
#include "terminal/schema.h"
#include "terminal/text_table.h"

namespace {

JSON block_with_data_schema() {
    std::vector<SCHEMA_MEMBER> members = block_members();
    members.push_back({"data", text_schema()});
    return object_schema(members);
}

void list_blocks(const ARGUMENTS& given, const COMMAND& command) {
    require_readable_container();
    std::vector<JSON> rows;
    TEXT_TABLE table({"block", "name", "bytes"});
    for (DWORD i = 0; i < std::max<DWORD>(PGMDEV_FLASH_INI_MAX, examine_container().block_count); ++i) {
        const auto which = static_cast<PGMDEV_FLASH_INI_ENUM>(i);
        const BLOCK block(which);
        rows.push_back(block_json(which, block));
        table.add(
            {std::to_string(i), block_name(which), block.data != nullptr ? std::to_string(block.size) : "absent"});
    }
    print_listing(block_schema(), rows, table, given, command);
}

std::string hex_text(std::span<const BYTE> bytes, const char* separator) {
    std::string text;
    for (const BYTE byte : bytes) {
        text += fmt::format("{}{:02x}", text.empty() ? "" : separator, byte);
    }
    return text;
}

void print_dump(std::span<const BYTE> bytes) {
    constexpr std::size_t BYTES_PER_LINE = 16;
    for (std::size_t i = 0; i < bytes.size(); i += BYTES_PER_LINE) {
        const auto line = bytes.subspan(i, std::min(BYTES_PER_LINE, bytes.size() - i));
        std::string text;
        for (const BYTE byte : line) {
            text += byte >= ' ' && byte <= '~' ? static_cast<char>(byte) : '.';
        }
        fmt::print("{:08x}  {:<{}}  |{}|\n", i, hex_text(line, " "), 3 * BYTES_PER_LINE - 1, text);
    }
}

void read_block(const ARGUMENTS& given, COMMAND& command) {
    const PGMDEV_FLASH_INI_ENUM which = readable_block(given.text("BLOCK"));
    const std::string& file = given.text("FILE");
    const bool to_file = given.has("FILE");
    require_readable_container();
    if (to_file) {
        confirm_output(argument_place(file, "FILE"), {container_place().path},
                       fmt::format("block \"{}\"", block_name(which)), block_stamp(which), given.has("--force"));
    }
    const BLOCK block(which);
    JSON answer = block_json(which, block);
    answer["data"] = hex_text(block.bytes(), "");
    if (block.data == nullptr) {
        report_absent(which, answer, command);
        return;
    }
    if (to_file) {
        OUTPUT_FILE output(argument_place(file, "FILE"));
        output.write(block.bytes());
        output.commit();
    }
    if (command.json) {
        print_json(answer);
    } else if (!to_file) {
        print_dump(block.bytes());
    }
}

COMMAND_FAILURE unreadable(const std::string& path, const std::string& obstacle) {
    return COMMAND_FAILURE({FAILURE_CODE::FILE_UNREADABLE,
                            fmt::format("the file cannot be read, since {}", obstacle),
                            path,
                            {"argument FILE"},
                            "name a file with the bytes of the block",
                            {}},
                           EXIT_USAGE);
}

std::vector<BYTE> read_whole(const std::string& path) {
    constexpr QWORD MOST_BYTES = QWORD{1} << 28;  // as of other files that are read whole
    const INSPECTED_FILE inspected = inspect_file(path, 0);
    if (!inspected.obstacle.empty()) {
        throw unreadable(path, inspected.obstacle);
    }
    if (inspected.size == 0 || inspected.size > MOST_BYTES) {
        throw USAGE_ERROR(path + (inspected.size == 0 ? " is empty; params remove removes a block" : " is too large"));
    }
    std::string text;
    forget_system_reason();
    if (read_whole_file(fio_get_unc_full_path(path), MOST_BYTES, FILE_KINDS::REGULAR, text) != READ_RESULT::READ) {
        throw unreadable(path, as_clause(system_reason()));
    }
    return {text.begin(), text.end()};
}

void write_block(const ARGUMENTS& given, const COMMAND& command) {
    const PGMDEV_FLASH_INI_ENUM which = writable_block(given.text("BLOCK"));
    const CONTAINER_LOCK lock;
    require_changeable_container(given.has("--force"));
    const std::string& file = given.text("FILE");
    std::vector<BYTE> bytes = read_whole(file);
    const std::string fault = given.has("--raw") ? "" : block_fault(which, bytes);
    if (!fault.empty()) {
        throw COMMAND_FAILURE({FAILURE_CODE::REFUSED,
                               fmt::format("the file is no block \"{}\": {}", block_name(which), fault),
                               file,
                               {"argument FILE"},
                               "name another file, or insist with --raw",
                               {}},
                              EXIT_USAGE);
    }
    replace_block(which, std::move(bytes), command);
}

void remove_block(const ARGUMENTS& given, COMMAND& command) {
    const PGMDEV_FLASH_INI_ENUM which = writable_block(given.text("BLOCK"));
    const CONTAINER_LOCK lock;
    require_changeable_container(given.has("--force"));
    if (const BLOCK block(which); block.data == nullptr) {
        report_absent(which, block_json(which, block), command);
        return;
    }
    replace_block(which, {}, command);
}

}  // namespace

NOUN_CONTENTS params_contents() {
    const ARGUMENT block{"BLOCK", R"(Number or name of the block: 0 "SFL FLASH", 1 "HPS SPI", 2 "HPS NAND")"};
    return {list_of(
        with_list_options(VERB("list", "All blocks and their sizes", "pgmdev --json params list", list_blocks),
                          block_schema),
        VERB("read", "Show a block, or copy it into a file", "pgmdev params read \"HPS SPI\" spi.bin", read_block)
            .takes(block)
            .takes({"FILE", "File that receives the bytes instead of a listing", ARGUMENT::OPTIONAL_TEXT})
            .takes({"--force", "Replace a file that is no such block, too", ARGUMENT::FLAG})
            .answers(block_with_data_schema),
        show_values_verb(block), set_values_verb(block),
        VERB("write", "Replace a block and keep the others", "pgmdev params write 1 spi.bin", write_block)
            .takes(block)
            .takes({"FILE", "File with the bytes of the block"})
            .takes({"--raw", "Whatever form the bytes have", ARGUMENT::FLAG})
            .takes(force_container_option())
            .answers(block_schema),
        VERB("remove", "Remove a block and keep the others", "pgmdev params remove 1", remove_block)
            .takes(block)
            .takes(force_container_option())
            .answers(block_schema))};
}
