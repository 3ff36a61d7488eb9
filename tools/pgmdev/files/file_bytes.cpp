#include "files/file_bytes.h"

#include <fmt/core.h>

#include <memory>
#include <string_view>
#include <utility>

#include "file_reader.h"
#include "files/inspection.h"
#include "fio.h"
#include "gen.h"
#include "pgm_common.h"
#include "utf8_path.h"

namespace {

/// No database that people maintain comes near; a device that never ends does.
constexpr std::size_t LARGEST_FILE = std::size_t{1} << 28;

/// What the magics of all packed databases begin with.
constexpr std::string_view PACKED_BEGINNING = "PGMIO_";

constexpr const char* DATABASE_EXTENSION = ".pcf";

std::optional<std::string> file_text(const std::string& path, FILE_KINDS kinds) {
    std::string text;
    const READ_RESULT result =
        read_whole_file(fio_get_unc_full_path(FIO_PATH(path).fullpath()), LARGEST_FILE, kinds, text);
    return result == READ_RESULT::READ ? std::optional(std::move(text)) : std::nullopt;
}

}  // namespace

COMMAND_FAILURE unreadable_file(const std::string& path, const std::string& obstacle) {
    return COMMAND_FAILURE({FAILURE_CODE::FILE_UNREADABLE,
                            fmt::format("the file cannot be read{}", obstacle.empty() ? "" : ", since " + obstacle),
                            path,
                            {},
                            "name a file that exists and that you may read",
                            {}});
}

std::optional<std::vector<BYTE>> file_bytes(const std::string& path) {
    const auto text = file_text(path, FILE_KINDS::REGULAR);
    return text ? std::optional(std::vector<BYTE>(text->begin(), text->end())) : std::nullopt;
}

std::string required_file_text(const std::string& path, FILE_KINDS kinds) {
    auto text = file_text(path, kinds);
    if (!text) {
        throw unreadable_file(path, inspect_file(path, 0).obstacle);
    }
    return std::move(*text);
}

std::vector<BYTE> required_file_bytes(const std::string& path) {
    const std::string text = required_file_text(path, FILE_KINDS::REGULAR);
    return {text.begin(), text.end()};
}

bool is_packed_database(const std::string& path) {
    if (gen_stricmp(utf8_from_path(path_from_utf8(path).extension()), DATABASE_EXTENSION) == 0 &&
        !inspect_file(path, 0).obstacle.empty()) {
        return true;
    }
    return !is_stream(path) && inspect_file(path, PACKED_BEGINNING.size()).beginning == PACKED_BEGINNING;
}

std::string sha256_of(std::span<const BYTE> bytes) {
    constexpr DWORD DIGEST_SIZE = 32;
    const std::unique_ptr<BYTE[]> digest(PGM_COMMON::get_block_sha(bytes.data(), bytes.size(), DIGEST_SIZE));
    std::string text;
    for (DWORD i = 0; i < DIGEST_SIZE; ++i) {
        text += fmt::format("{:02x}", digest[i]);
    }
    return text;
}
