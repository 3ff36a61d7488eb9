#include <iostream>
#include <sstream>
#include <type_traits>

#include "flash/records.h"
#include "flash/source.h"
#include "packed/file.h"
#include "pgmdev_flash_manager.h"
#include "report.h"

// Compiling the source table, and the debug listing.

namespace {

constexpr const char* SOURCE = "pgm/pgmdev/pgmdev_flash_manager";
/// Refuses a table at its first fault.
FAULT_SINK refuse(const FIO_PATH& csv_file) {
    return refusing_sink(csv_file, SOURCE);
}

}  // namespace

DWORD PGMDEV_FLASH_MANAGER::check_flash_file(FIO_PATH csv_file, DWORD& device_count) {
    device_count = 0;
    bool readable = false;
    const std::vector<SOURCE_LINE> lines = read_source_table(csv_file, false, readable);
    const FLASH_LAYOUT layout = check_flash_layout(lines, readable, refuse(csv_file));
    device_count = layout.record_count;
    return static_cast<DWORD>(layout.payload_size);
}

void PGMDEV_FLASH_MANAGER::generate_flash_database(FIO_PATH csv_file, FIO_PATH pcf_file) {
    // Both passes go over the same lines in memory, so that a file that changes meanwhile cannot outgrow the buffer.
    bool readable = false;
    const std::vector<SOURCE_LINE> lines = read_source_table(csv_file, false, readable);
    const FLASH_LAYOUT layout = check_flash_layout(lines, readable, refuse(csv_file));
    PGMDEV_REQUIRE(layout.payload_size > 0, "pure_memory_size > 0", SOURCE);

    const QWORD memory_size = PACKED_HEAD_SIZE + layout.payload_size;
    PGMDEV_REQUIRE(memory_size <= 0xFFFFFFFF, "index == memory_size", SOURCE);  // the size field has 32 bits
    const BYTE_BUFFER image(new BYTE[memory_size]());
    DWORD index = 0;
    PACKED_WRITER writer(image.get(), memory_size, index, FLASH_FORMAT);
    writer.put_heads(static_cast<DWORD>(layout.payload_size), layout.record_count, TOTAL_DATABASE_MEMBER);
    for (std::size_t row = FLASH_HEADER_LINES; row < lines.size(); ++row) {
        check_flash_cells(lines[row], refuse(csv_file));
        write_flash_members(writer, lines[row].cells);
        writer.put_text(PACKED_RECORD_END);
    }
    writer.put_text(PACKED_DATABASE_END);
    PGMDEV_REQUIRE(index == memory_size, "index == memory_size", SOURCE);
    write_packed_file(pcf_file, image.get(), index, FLASH_FORMAT);
}

void PGMDEV_FLASH_MANAGER::dump_to_database(BYTE** buffer, DWORD& index, std::vector<std::string> cells) {
    PACKED_WRITER writer(*buffer, PACKED_TRUSTED_SIZE, index, FLASH_FORMAT);
    write_flash_members(writer, cells);
}

void PGMDEV_FLASH_MANAGER::print_database(DWORD index) {
    PGMDEV_REQUIRE(m_flash_database != nullptr, "m_flash_database != NULL", SOURCE);
    std::ostringstream line;
    line << "Flash Manager Debug " << index << "\n\t";
    const char* separator = "";
    for (const PGMDEV_SFL_FLASH_MEMBER& member : PGMDEV_SFL_FLASH_MEMBERS) {
        line << separator;
        separator = " ";
        std::visit(
            [&](auto field) {
                const auto& value = m_flash_database[index].*field;
                if constexpr (std::is_same_v<std::remove_cvref_t<decltype(value)>, std::string>) {
                    line << value;
                } else {
                    line << static_cast<DWORD>(value);
                }
            },
            member.field);
    }
    line << "\n";
    std::cout << line.str() << std::flush;
}
