#pragma once

/// \file
/// The blocks of the container, as the verbs of `params` name, read and write them.

#include <memory>
#include <span>
#include <string>
#include <vector>

#include "pgmdev_flash_ini.h"
#include "terminal/command.h"
#include "terminal/json.h"
#include "terminal/schema.h"

/// One block as it was read; null when it is absent.
struct BLOCK {
    std::unique_ptr<BYTE[]> data;
    DWORD size = 0;

    /// A block that is there and cannot be read throws COMMAND_FAILURE.
    explicit BLOCK(PGMDEV_FLASH_INI_ENUM which);
    std::span<const BYTE> bytes() const { return {data.get(), size}; }
};

/// What people call a block: its name, or "block 3" for one behind those that have names.
std::string block_name(PGMDEV_FLASH_INI_ENUM which);

/// The block of that number or name, for reading: also one behind those that this version writes.
PGMDEV_FLASH_INI_ENUM readable_block(const std::string& text);

/// The same, for writing.
PGMDEV_FLASH_INI_ENUM writable_block(const std::string& text);

JSON block_json(PGMDEV_FLASH_INI_ENUM which, const BLOCK& block);
std::vector<SCHEMA_MEMBER> block_members();
JSON block_schema();

/// Says that a block is absent; `answer` is what programs are told of it.
void report_absent(PGMDEV_FLASH_INI_ENUM which, const JSON& answer, COMMAND& command);

/// Replaces a block, or removes it when there are no bytes.
void replace_block(PGMDEV_FLASH_INI_ENUM which, std::vector<BYTE> bytes, const COMMAND& command);
