#include "files/container.h"

#include <fmt/core.h>

#include <algorithm>
#include <string_view>

#include "file_info.h"
#include "files/file_bytes.h"
#include "files/inspection.h"
#include "files/origins.h"
#include "fio.h"

namespace {

// The head of a container: magic, number of blocks, offset and size of each.
constexpr std::string_view MAGIC = "PGMDEV_FLASH_INI";
constexpr std::size_t HEAD_SIZE = MAGIC.size() + 4;
constexpr std::size_t ENTRY_SIZE = 8;
constexpr std::size_t MOST_ENTRIES = 0x10000;  // of which anything is looked at

DWORD little_endian(const std::string& bytes, std::size_t position) {
    DWORD value = 0;
    for (std::size_t i = 4; i-- > 0;) {
        value = value << 8 | static_cast<BYTE>(bytes[position + i]);
    }
    return value;
}

/// What is wrong with the container; "" when nothing is.
std::string damage_of(const INSPECTED_FILE& file) {
    if (!file.beginning.starts_with(MAGIC)) {
        return "it is no parameter container";
    }
    if (file.beginning.size() < HEAD_SIZE) {
        return fmt::format("it is cut after {} bytes", file.size);
    }
    const DWORD count = little_endian(file.beginning, MAGIC.size());
    const std::size_t table_end = HEAD_SIZE + ENTRY_SIZE * std::size_t{count};
    if (count == 0 || file.beginning.size() < table_end) {
        return fmt::format("its table of {} blocks is cut", count);
    }
    QWORD expected = table_end;
    for (DWORD i = 0; i < count; ++i) {
        const DWORD offset = little_endian(file.beginning, HEAD_SIZE + ENTRY_SIZE * i);
        const DWORD size = little_endian(file.beginning, HEAD_SIZE + ENTRY_SIZE * i + 4);
        if ((offset == 0) != (size == 0) || (offset != 0 && offset != expected)) {
            return fmt::format("block {} is not where it must be", i);
        }
        expected += size;
    }
    return expected == file.size ? "" : fmt::format("its blocks end at {}, the file at {} bytes", expected, file.size);
}

/// Why a container without damage may be another one than was written; "" when nothing says so.
std::string doubt_of(const std::string& path) {
    const std::string info = info_file_of(path);
    const INFO_STATE state =
        read_with_info(fio_get_unc_full_path(path), fio_get_unc_full_path(info)).state(CONTAINER_DIGEST_KEY, sha256_of);
    switch (state) {
        case INFO_STATE::DIFFERS:
            return fmt::format("{} tells of another one", info);
        case INFO_STATE::UNREADABLE:
            return fmt::format("{} is damaged, or cannot be read", info);
        default:
            return "";
    }
}

FAILURE failure_of(const CONTAINER& container, const char* aim) {
    const PLACE place = container_place();
    const bool damaged = container.state == CONTAINER::DAMAGED;
    return {damaged ? FAILURE_CODE::CONTAINER_DAMAGED : FAILURE_CODE::CONTAINER_UNREADABLE,
            fmt::format("the parameter container cannot be {}, since {}", aim, container.what),
            place.path,
            place.tried,
            damaged ? "restore it from a copy; to give it up, remove or rename it"
                    : "make it a file that you may read and write, or name another directory with --module-dir",
            {}};
}

FAILURE doubt_about(const CONTAINER& container) {
    return {
        FAILURE_CODE::CONTAINER_DOUBTFUL,
        fmt::format("the parameter container is doubtful, since {}: it was damaged, or written by another program",
                    container.doubt),
        container_place().path,
        container_place().tried,
        "see what it holds with params list and hps spi; if that is right, remove that text, or change the container "
        "with --force, which keeps a copy of it as pgm_flash.ini.bak",
        {}};
}

bool is_unusable(const CONTAINER& container) {
    return container.state == CONTAINER::DAMAGED || container.state == CONTAINER::UNREADABLE;
}

void require_sound_container(const CONTAINER& container, const char* aim) {
    if (is_unusable(container)) {
        throw COMMAND_FAILURE(failure_of(container, aim));
    }
}

}  // namespace

CONTAINER examine_container() {
    const INSPECTED_FILE file = inspect_file(container_place().path, HEAD_SIZE + ENTRY_SIZE * MOST_ENTRIES);
    if (file.missing) {
        return {};
    }
    if (!file.obstacle.empty()) {
        return {CONTAINER::UNREADABLE, file.obstacle, ""};
    }
    if (file.size == 0) {
        return {CONTAINER::SOUND, "", doubt_of(container_place().path)};  // nothing is lost with an empty file
    }
    if (const std::string damage = damage_of(file); !damage.empty()) {
        return {CONTAINER::DAMAGED, damage, ""};
    }
    CONTAINER container{CONTAINER::SOUND, "", doubt_of(container_place().path)};
    container.block_count = little_endian(file.beginning, MAGIC.size());
    for (DWORD i = 0; i < container.block_count; ++i) {
        const bool present = little_endian(file.beginning, HEAD_SIZE + ENTRY_SIZE * i) != 0;
        container.present.push_back(present);
        container.has_more = container.has_more || (present && i >= PGMDEV_FLASH_INI_MAX);
    }
    return container;
}

bool is_unread_block(PGMDEV_FLASH_INI_ENUM which) {
    const CONTAINER container = examine_container();
    return container.state == CONTAINER::UNREADABLE || (which < container.present.size() && container.present[which]);
}

FAILURE unread_block(const std::string& name) {
    const PLACE place = container_place();
    return {FAILURE_CODE::CONTAINER_UNREADABLE,
            fmt::format("the block \"{}\" is there, and could not be read", name),
            place.path,
            place.tried,
            "try again",
            {}};
}

void require_readable_container() {
    const CONTAINER container = examine_container();
    require_sound_container(container, "read");
    if (!container.doubt.empty()) {
        warn_of(doubt_about(container));
    }
}

void require_changeable_container(bool force) {
    const CONTAINER container = examine_container();
    require_sound_container(container, "changed");
    if (container.has_more) {
        throw COMMAND_FAILURE({FAILURE_CODE::CONTAINER_OF_ANOTHER_VERSION,
                               "the parameter container cannot be changed: it has blocks that this version would lose",
                               container_place().path,
                               container_place().tried,
                               "change it with the version that wrote it, or name another directory with --module-dir",
                               {}});
    }
    if (!container.doubt.empty() && !force) {
        throw COMMAND_FAILURE(doubt_about(container));
    }
}

ARGUMENT force_container_option() {
    return {"--force", "Change a doubtful container, too; a copy of it is kept", ARGUMENT::FLAG};
}

CONTAINER_LOCK::CONTAINER_LOCK() {
    if (!m_lock.is_held()) {
        throw COMMAND_FAILURE({FAILURE_CODE::CONTAINER_BUSY,
                               "the parameter container cannot be changed, since another program is changing it",
                               container_place().path,
                               container_place().tried,
                               "try again when that program has ended",
                               {}});
    }
}

void warn_of_container() {
    const CONTAINER container = examine_container();
    if (is_unusable(container)) {
        warn_of(failure_of(container, "read"));
    } else if (!container.doubt.empty()) {
        warn_of(doubt_about(container));
    }
}
