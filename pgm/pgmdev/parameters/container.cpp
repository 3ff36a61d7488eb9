#include "pgmdev_flash_ini.h"

#include <algorithm>
#include <fstream>
#include <memory>
#include <span>
#include <vector>

#include "fio.h"
#include "gen.h"
#include "parameters/numbers.h"
#include "replaced_file.h"
#include "report.h"

// The container file: a head of magic and entry count, a table of blocks, and the blocks back to back.

namespace {

constexpr std::string_view MAGIC = "PGMDEV_FLASH_INI";
constexpr DWORD MAGIC_SIZE = 16;
constexpr DWORD HEAD_SIZE = MAGIC_SIZE + 4;
constexpr DWORD ENTRY_SIZE = 8;
constexpr QWORD SMALLEST_FILE = MAGIC_SIZE + 1;
constexpr QWORD LARGEST_WRITTEN = 0xFFFFFFFF;  // offsets have 32 bits
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

bool read_bytes(std::istream& file, std::span<BYTE> bytes) {
    file.read(reinterpret_cast<char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
    return file.good();
}

DWORD little_endian(const BYTE* bytes) {
    return bytes[0] | DWORD{bytes[1]} << 8 | DWORD{bytes[2]} << 16 | DWORD{bytes[3]} << 24;
}

/// Checks the whole table and gives one entry of it; false when anything is wrong. Nothing is taken on trust: the table
/// is read entry by entry, and its present blocks must fill the file from the table's end to its own.
bool find_entry(std::istream& file, QWORD length, DWORD which, ENTRY& found) {
    std::array<BYTE, HEAD_SIZE> head{};
    if (!read_bytes(file, head) || !std::equal(MAGIC.begin(), MAGIC.end(), head.begin()) || HEAD_SIZE >= length) {
        return false;
    }
    const DWORD count = little_endian(&head[MAGIC_SIZE]);
    QWORD expected = HEAD_SIZE + QWORD{ENTRY_SIZE} * count;
    if (which >= count || expected >= length) {
        return false;
    }
    for (DWORD i = 0; i < count; ++i) {
        std::array<BYTE, ENTRY_SIZE> bytes{};
        if (!read_bytes(file, bytes)) {
            return false;
        }
        const ENTRY entry{little_endian(bytes.data()), little_endian(&bytes[4])};
        if ((entry.offset == 0) != (entry.size == 0) || (entry.offset != 0 && entry.offset != expected)) {
            return false;
        }
        expected += entry.size;
        if (expected > length) {
            return false;
        }
        if (i == which) {
            found = entry;
        }
    }
    // A present block therefore begins behind the table and ends inside the file.
    return expected == length && found.offset != 0;
}

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

FILE_IMAGE build_image(const std::array<BLOCK, PGMDEV_FLASH_INI_MAX>& blocks, QWORD file_size) {
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

/// Whether the file is there, and may not be read and written. What it holds is neither to be taken for lost, nor to be
/// replaced by way of its directory against its protection.
bool is_withheld(const std::string& path) {
    FIO_STATUS status;
    return FIO_FILE_SYSTEM::exists(path.c_str()) &&
           (!FIO_FILE_SYSTEM::status(path.c_str(), &status) || !status.regular ||
            !open_replaced_file(fio_get_unc_full_path(path), std::ios::out).is_open());
}

}  // namespace

BYTE* PGMDEV_FLASH_INI::read_flash_ini_data(PGMDEV_FLASH_INI_ENUM which, DWORD& size) {
    size = 0;
    const std::string path = container_path();
    FIO_STATUS status;
    if (!FIO_FILE_SYSTEM::exists(path.c_str()) || !FIO_FILE_SYSTEM::status(path.c_str(), &status) ||
        status.size < SMALLEST_FILE) {
        return nullptr;
    }
    std::ifstream file = open_replaced_file(fio_get_unc_full_path(path), std::ios::ate);
    if (!file.is_open()) {
        return nullptr;
    }
    // The file may have been replaced since its status was taken. What counts is the one that is open.
    const std::streamoff length = file.tellg();
    ENTRY entry;
    if (length < 0 || !file.seekg(0) || !find_entry(file, static_cast<QWORD>(length), which, entry) ||
        !file.seekg(entry.offset)) {
        return nullptr;
    }
    auto block = std::make_unique<BYTE[]>(entry.size);
    if (!read_bytes(file, {block.get(), entry.size})) {
        return nullptr;
    }
    size = entry.size;
    return block.release();
}

bool PGMDEV_FLASH_INI::write_flash_ini_data(PGMDEV_FLASH_INI_ENUM which, BYTE* data, DWORD size) {
    if (which >= PGMDEV_FLASH_INI_MAX) {
        return false;
    }
    PGMDEV_REQUIRE(size == 0 || data != nullptr, "data != NULL", FLASH_INI_FILE);
    PGMDEV_REQUIRE(size != 0 || data == nullptr, "data == NULL", FLASH_INI_FILE);
    if (is_withheld(container_path())) {
        return false;
    }

    std::array<BLOCK, PGMDEV_FLASH_INI_MAX> blocks;
    QWORD file_size = HEAD_SIZE + ENTRY_SIZE * PGMDEV_FLASH_INI_MAX;
    for (DWORD i = 0; i < blocks.size(); ++i) {
        BLOCK& block = blocks[i];
        block.kept.reset(read_flash_ini_data(static_cast<PGMDEV_FLASH_INI_ENUM>(i), block.size));
        block.data = block.kept.get();
        if (i == which) {
            block = {data, size, nullptr};
        }
        file_size += block.size;
    }
    if (file_size > LARGEST_WRITTEN) {
        return false;
    }
    FIO_REPLACEMENT replacement(container_path());
    return replacement.write(build_image(blocks, file_size).bytes()) && replacement.commit();
}
