#include "pgmdev_flash_ini.h"

#include <algorithm>
#include <memory>
#include <optional>
#include <span>
#include <vector>

#include "doubts.h"
#include "file_info.h"
#include "file_reader.h"
#include "fio.h"
#include "gen.h"
#include "msg.h"
#include "parameters/container_info.h"
#include "parameters/numbers.h"
#include "report.h"

// The container file: a head of magic and entry count, a table of blocks, and the blocks back to back.

namespace {

constexpr std::string_view MAGIC = "PGMDEV_FLASH_INI";
constexpr DWORD MAGIC_SIZE = 16;
constexpr DWORD HEAD_SIZE = MAGIC_SIZE + 4;
constexpr DWORD ENTRY_SIZE = 8;
constexpr QWORD LARGEST_WRITTEN = 0xFFFFFFFF;             // offsets have 32 bits
constexpr QWORD LARGEST_COPIED = LARGEST_FILE_WITH_INFO;  // far more than parameters take
static_assert(MAGIC.size() == MAGIC_SIZE);

/// The lines that reports state for the checks of the written image, which share a text: fixed, since programs that read
/// reports tell them apart by these.
enum IMAGE_LINE { MAGIC_LINE = 256, COUNT_LINE = 265, OFFSET_LINE = 281, SIZE_LINE = 289 };

std::string container_path() {
    return gen_get_module_path() + "/pgm_flash.ini";
}

/// An entry of the block table. Offset and size of an absent block are 0.
struct ENTRY {
    DWORD offset = 0;
    DWORD size = 0;
};

DWORD little_endian(const BYTE* bytes) {
    return bytes[0] | DWORD{bytes[1]} << 8 | DWORD{bytes[2]} << 16 | DWORD{bytes[3]} << 24;
}

/// What a file turns out to be.
enum class CONTAINER_STATE {
    ABSENT,      ///< there is no such file
    UNREADABLE,  ///< the system did not let it be read, whatever it holds
    DAMAGED,     ///< it is no container, or not as a container must be
    SOUND
};

/// The container as it was when it was opened.
class CONTAINER_FILE {
public:
    /// `further` is a block besides those that this version writes that may be read.
    explicit CONTAINER_FILE(const std::string& path, DWORD further = 0)
        : m_file(fio_get_unc_full_path(path)), m_further_index(further), m_state(examine()) {}

    CONTAINER_STATE state() const { return m_state; }

    /// Whether it has blocks that this version does not write.
    bool has_more() const { return m_has_more; }

    /// The bytes of the whole file; nothing when it cannot be read, which then is its state, or is no file that anybody
    /// wants a copy of in memory.
    std::optional<std::vector<BYTE>> whole() {
        if (m_file.size() > LARGEST_COPIED) {
            return std::nullopt;
        }
        std::vector<BYTE> bytes(m_file.size());
        if (!m_file.read_at(0, bytes)) {
            m_state = CONTAINER_STATE::UNREADABLE;
            return std::nullopt;
        }
        return bytes;
    }

    /// Reads a block; null when there is none, or when the file cannot be read, which then is its state.
    std::unique_ptr<BYTE[]> read(DWORD which, DWORD& size) {
        size = 0;
        const ENTRY entry = which < m_entries.size() ? m_entries[which] : m_further;
        if (m_state != CONTAINER_STATE::SOUND || entry.size == 0) {
            return nullptr;
        }
        auto block = std::make_unique<BYTE[]>(entry.size);
        if (!m_file.read_at(entry.offset, {block.get(), entry.size})) {
            m_state = CONTAINER_STATE::UNREADABLE;
            return nullptr;
        }
        size = entry.size;
        return block;
    }

private:
    /// Checks the whole table. Nothing is taken on trust: its present blocks must fill the file from the table's end to
    /// its own.
    CONTAINER_STATE examine() {
        if (!m_file.is_open()) {
            return m_file.is_absent() ? CONTAINER_STATE::ABSENT : CONTAINER_STATE::UNREADABLE;
        }
        const QWORD length = m_file.size();
        if (length == 0) {
            return CONTAINER_STATE::SOUND;  // nothing is lost with an empty file
        }
        if (length <= HEAD_SIZE) {
            return CONTAINER_STATE::DAMAGED;
        }
        std::array<BYTE, HEAD_SIZE> head{};
        if (!m_file.read_at(0, head)) {
            return CONTAINER_STATE::UNREADABLE;
        }
        const DWORD count = little_endian(&head[MAGIC_SIZE]);
        const QWORD table_end = HEAD_SIZE + QWORD{ENTRY_SIZE} * count;
        if (!std::equal(MAGIC.begin(), MAGIC.end(), head.begin()) || table_end > length) {
            return CONTAINER_STATE::DAMAGED;
        }
        return examine_table(count, table_end);
    }

    CONTAINER_STATE examine_table(DWORD count, QWORD expected) {
        constexpr DWORD ENTRIES_AT_ONCE = 1U << 13U;
        std::vector<BYTE> bytes;
        for (DWORD i = 0; i < count; ++i) {
            if (i % ENTRIES_AT_ONCE == 0) {
                bytes.resize(std::size_t{ENTRY_SIZE} * std::min(count - i, ENTRIES_AT_ONCE));
                if (!m_file.read_at(HEAD_SIZE + QWORD{ENTRY_SIZE} * i, bytes)) {
                    return CONTAINER_STATE::UNREADABLE;
                }
            }
            const BYTE* place = &bytes[std::size_t{ENTRY_SIZE} * (i % ENTRIES_AT_ONCE)];
            const ENTRY entry{little_endian(place), little_endian(place + 4)};
            if ((entry.offset == 0) != (entry.size == 0) || (entry.offset != 0 && entry.offset != expected)) {
                return CONTAINER_STATE::DAMAGED;
            }
            expected += entry.size;
            if (expected > m_file.size()) {
                return CONTAINER_STATE::DAMAGED;
            }
            if (i < m_entries.size()) {
                m_entries[i] = entry;
                continue;
            }
            m_has_more = m_has_more || entry.size != 0;
            if (i == m_further_index) {
                m_further = entry;
            }
        }
        return expected == m_file.size() ? CONTAINER_STATE::SOUND : CONTAINER_STATE::DAMAGED;
    }

    FILE_READER m_file;
    DWORD m_further_index;
    std::array<ENTRY, PGMDEV_FLASH_INI_MAX> m_entries;
    ENTRY m_further;
    bool m_has_more = false;
    CONTAINER_STATE m_state;
};

/// A block on its way into the file; without data it is absent.
struct BLOCK {
    const BYTE* data = nullptr;
    DWORD size = 0;
    std::unique_ptr<BYTE[]> kept;  ///< holds the data of a block that was read
};

/// The bytes of the file, written from the front. None is written outside.
class FILE_IMAGE {
public:
    explicit FILE_IMAGE(QWORD file_size) : m_bytes(file_size) {}

    void put(std::span<const BYTE> bytes, int line) {
        if (bytes.size() > m_bytes.size() - m_index) {
            pgmdev_report("file_index < file_size", FLASH_INI_FILE, line);
        }
        std::copy(bytes.begin(), bytes.end(), m_bytes.begin() + static_cast<std::ptrdiff_t>(m_index));
        m_index += bytes.size();
    }

    void put_dword(DWORD value, int line) {
        const std::array<BYTE, 4> bytes{static_cast<BYTE>(value), static_cast<BYTE>(value >> 8),
                                        static_cast<BYTE>(value >> 16), static_cast<BYTE>(value >> 24)};
        put(bytes, line);
    }

    std::size_t index() const { return m_index; }
    std::span<const BYTE> bytes() const { return m_bytes; }

private:
    std::vector<BYTE> m_bytes;
    std::size_t m_index = 0;
};

using BLOCKS = std::array<BLOCK, PGMDEV_FLASH_INI_MAX>;

FILE_IMAGE build_image(const BLOCKS& blocks, QWORD file_size) {
    FILE_IMAGE image(file_size);
    image.put({reinterpret_cast<const BYTE*>(MAGIC.data()), MAGIC.size()}, MAGIC_LINE);
    image.put_dword(PGMDEV_FLASH_INI_MAX, COUNT_LINE);
    DWORD offset = HEAD_SIZE + ENTRY_SIZE * PGMDEV_FLASH_INI_MAX;
    for (const BLOCK& block : blocks) {
        image.put_dword(block.size != 0 ? offset : 0, OFFSET_LINE);
        image.put_dword(block.size, SIZE_LINE);
        offset += block.size;
    }
    PGMDEV_REQUIRE(image.index() <= file_size, "file_index <= file_size", FLASH_INI_FILE);
    for (const BLOCK& block : blocks) {
        image.put({block.data, block.size}, PGMDEV_LINE);
    }
    PGMDEV_REQUIRE(image.index() == file_size, "file_index == file_size", FLASH_INI_FILE);
    return image;
}

/// Whether the file is there, and may not be written. It is not to be replaced by way of its directory against its
/// protection.
bool is_protected(const std::string& path) {
    return !may_read_and_write(fio_get_unc_full_path(path));
}

/// Says on the debug channel why the container stays as it was.
bool refuse_to_write(const std::string& path, const char* reason) {
    msg_local_vdebug(PGMDEV_MODULE, 1, "%s", (path + ": not written, since " + reason).c_str());
    return false;
}

bool keep_copy(const std::optional<std::vector<BYTE>>& container, const std::string& path) {
    FIO_REPLACEMENT copy(path + ".bak");
    return container && copy.write(*container) && copy.commit();
}

/// Keeps a copy of a container that is damaged, or may be, or of which the writer would lose something, and tells its
/// digest if it is a good one. False when it is not to be replaced; the debug channel says why.
bool part_with(CONTAINER_FILE& container, const std::string& path, std::string& good_digest) {
    const auto whole = container.whole();
    if (container.state() == CONTAINER_STATE::UNREADABLE) {
        return refuse_to_write(path, "the file that is there cannot be read");
    }
    const std::string digest = whole ? digest_text(*whole) : "";
    const bool is_lossy = container.state() == CONTAINER_STATE::DAMAGED || container.has_more();
    const bool may_be_damaged = whole && is_doubtful(container_info_state(path, digest));
    if ((is_lossy || may_be_damaged) && !keep_copy(whole, path)) {
        if (is_lossy) {
            return refuse_to_write(path, "no copy of the damaged file could be kept");
        }
        // Who cannot replace the text must be able to go on, and what can be read is not lost.
        msg_local_vdebug(PGMDEV_MODULE, 1, "%s is doubtful, and no copy of it could be kept", path.c_str());
    }
    good_digest = container.state() == CONTAINER_STATE::DAMAGED || may_be_damaged ? "" : digest;
    return true;
}

/// What the new container is made of.
struct COLLECTED {
    BLOCKS blocks;
    QWORD file_size = HEAD_SIZE + ENTRY_SIZE * PGMDEV_FLASH_INI_MAX;
    std::string replaced_digest;  ///< of the container that goes; "" for none that anybody should take for a good one
};

/// What the file is to hold, of which it has the other blocks already. Nothing when it is not to be written; the debug
/// channel says why. The file is closed afterwards: on Windows, one that is open is not replaced.
std::optional<COLLECTED> collect_blocks(const std::string& path, DWORD which, const BLOCK& changed) {
    CONTAINER_FILE container(path);
    const CONTAINER_STATE state = container.state();
    if (state == CONTAINER_STATE::UNREADABLE || (state != CONTAINER_STATE::ABSENT && is_protected(path))) {
        refuse_to_write(path, "the file that is there cannot be read and written");
        return std::nullopt;
    }
    COLLECTED all;
    for (DWORD i = 0; i < all.blocks.size(); ++i) {
        BLOCK& block = all.blocks[i];
        if (i == which) {
            block.data = changed.data;
            block.size = changed.size;
        } else {
            block.kept = container.read(i, block.size);
            block.data = block.kept.get();
        }
        all.file_size += block.size;
    }
    if (container.state() == CONTAINER_STATE::UNREADABLE || all.file_size > LARGEST_WRITTEN) {
        refuse_to_write(path, "the file that is there cannot be read, or the new one would be too large");
        return std::nullopt;
    }
    if (state != CONTAINER_STATE::ABSENT && !part_with(container, path, all.replaced_digest)) {
        return std::nullopt;
    }
    return all;
}

/// Puts a block in the place of the one that the file has, and writes it anew; the caller has the lock.
bool replace_block(const std::string& path, DWORD which, const BLOCK& changed) {
    const auto collected = collect_blocks(path, which, changed);
    if (!collected) {
        return false;
    }
    const FILE_IMAGE image = build_image(collected->blocks, collected->file_size);
    FIO_REPLACEMENT replacement(path);
    if (!replacement.write(image.bytes())) {
        return false;
    }
    CONTAINER_INFO info(path, image.bytes(), collected->replaced_digest);
    info.announce();
    if (!replacement.commit()) {
        return false;
    }
    info.settle();
    return true;
}

}  // namespace

BYTE* PGMDEV_FLASH_INI::read_flash_ini_data(PGMDEV_FLASH_INI_ENUM which, DWORD& size) {
    size = 0;
    const std::string path = container_path();
    auto block = CONTAINER_FILE(path, which).read(which, size);
    tell_doubts(path, CONTAINER_DIGEST_KEY);
    return block.release();
}

// NOLINTNEXTLINE(readability-non-const-parameter): programs that were linked before call it like this
bool PGMDEV_FLASH_INI::write_flash_ini_data(PGMDEV_FLASH_INI_ENUM which, BYTE* data, DWORD size) {
    if (which >= PGMDEV_FLASH_INI_MAX) {
        return false;
    }
    PGMDEV_REQUIRE(size == 0 || data != nullptr, "data != NULL", FLASH_INI_FILE);
    PGMDEV_REQUIRE(size != 0 || data == nullptr, "data == NULL", FLASH_INI_FILE);
    const std::string path = container_path();
    const PGMDEV_FLASH_INI_LOCK lock;  // writers of other blocks wait, so that each keeps what the other has written
    if (!lock.is_held()) {
        return refuse_to_write(path, "its lock was not to be had for 10 seconds");
    }
    return replace_block(path, which, {data, size, nullptr});
}
