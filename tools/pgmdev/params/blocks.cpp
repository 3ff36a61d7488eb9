#include "params/blocks.h"

#include <fmt/core.h>

#include <charconv>

#include "files/container.h"
#include "files/inspection.h"
#include "files/origins.h"
#include "files/output.h"
#include "gen.h"
#include "terminal/standard_error.h"

namespace {

USAGE_ERROR no_such_block(const std::string& text, const char* more) {
    // NOLINTNEXTLINE(modernize-return-braced-init-list): explicit
    return USAGE_ERROR(fmt::format(R"(there is no block "{}"; the blocks are 0 "{}", 1 "{}" and 2 "{}"{})", text,
                                   PGMDEV_FLASH_INI_NAMES[0], PGMDEV_FLASH_INI_NAMES[1], PGMDEV_FLASH_INI_NAMES[2],
                                   more));
}

/// The block of that number or name, whether this version writes it or not.
PGMDEV_FLASH_INI_ENUM parse_block(const std::string& text, const char* more) {
    const std::string name = gen_remove_leading_and_trailing_white_spaces(text);
    for (DWORD i = 0; i < PGMDEV_FLASH_INI_MAX; ++i) {
        if (gen_stricmp(name, PGMDEV_FLASH_INI_NAMES[i]) == 0) {
            return static_cast<PGMDEV_FLASH_INI_ENUM>(i);
        }
    }
    DWORD number = 0;
    const char* const end = name.data() + name.size();
    const auto [last, error] = std::from_chars(name.data(), end, number);
    if (error != std::errc() || last != end) {
        throw no_such_block(text, more);
    }
    return static_cast<PGMDEV_FLASH_INI_ENUM>(number);
}

}  // namespace

BLOCK::BLOCK(PGMDEV_FLASH_INI_ENUM which) {
    data.reset(PGMDEV_FLASH_INI::read_flash_ini_data(which, size));
    if (data == nullptr && is_unread_block(which)) {
        throw COMMAND_FAILURE(unread_block(block_name(which)));
    }
}

std::string block_name(PGMDEV_FLASH_INI_ENUM which) {
    return which < PGMDEV_FLASH_INI_MAX ? std::string(PGMDEV_FLASH_INI_NAMES[which])
                                        : fmt::format("block {}", static_cast<DWORD>(which));
}

PGMDEV_FLASH_INI_ENUM readable_block(const std::string& text) {
    constexpr const char* MORE = ", and those that the container has behind them";
    const PGMDEV_FLASH_INI_ENUM which = parse_block(text, MORE);
    if (which >= PGMDEV_FLASH_INI_MAX && which >= examine_container().block_count) {
        throw no_such_block(text, MORE);
    }
    return which;
}

PGMDEV_FLASH_INI_ENUM writable_block(const std::string& text) {
    const PGMDEV_FLASH_INI_ENUM which = parse_block(text, "");
    if (which >= PGMDEV_FLASH_INI_MAX) {
        throw no_such_block(text, "");
    }
    return which;
}

JSON block_json(PGMDEV_FLASH_INI_ENUM which, const BLOCK& block) {
    return {{"block", static_cast<DWORD>(which)},
            {"name", block_name(which)},
            {"present", block.data != nullptr},
            {"size", block.size}};
}

std::vector<SCHEMA_MEMBER> block_members() {
    return {{"block", number_schema()}, {"name", text_schema()}, {"present", flag_schema()}, {"size", number_schema()}};
}

JSON block_schema() {
    return object_schema(block_members());
}

void report_absent(PGMDEV_FLASH_INI_ENUM which, const JSON& answer, COMMAND& command) {
    print_error("pgmdev: {}/pgm_flash.ini holds no block \"{}\"", gen_get_module_path(), block_name(which));
    command.result = EXIT_NOT_FOUND;
    if (command.json) {
        print_json(answer);
    }
}

void replace_block(PGMDEV_FLASH_INI_ENUM which, std::vector<BYTE> bytes, const COMMAND& command) {
    forget_system_reason();
    if (!PGMDEV_FLASH_INI::write_flash_ini_data(which, bytes.empty() ? nullptr : bytes.data(),
                                                static_cast<DWORD>(bytes.size()))) {
        throw output_failure(container_place());
    }
    if (command.json) {
        print_json(block_json(which, BLOCK(which)));
    } else if (bytes.empty()) {
        fmt::print("Block \"{}\" removed\n", block_name(which));
    } else {
        fmt::print("Block \"{}\" written, {} bytes\n", block_name(which), bytes.size());
    }
}
