#include "profiles/records.h"

#include "report.h"

std::array<DWORD, INDEX_TABLES.size()> index_table_counts() {
    return {DEV_FAMILY_MAX, DEV_DEVICE_MAX, static_cast<DWORD>(DEV_PART_MAX)};
}

DWORD index_tables_size() {
    DWORD size = 0;
    for (const DWORD count : index_table_counts()) {
        size += 1 + 4 + count * 4;  // marker, count, entries
    }
    return size;
}

void read_index_table(PACKED_READER& reader, const INDEX_TABLE& table, std::span<DWORD> entries) {
    reader.confirm_tag(table.tag, table.wrong_tag);
    PGMDEV_REQUIRE(reader.untagged_dword() == entries.size(), table.wrong_count, DEV_INFO_MANAGER_FILE);
    reader.get_untagged_dwords(entries);
}

void write_index_table(PACKED_WRITER& writer, const INDEX_TABLE& table, std::span<const DWORD> entries) {
    writer.put_tag(table.tag);
    writer.put_untagged_dword(static_cast<DWORD>(entries.size()));
    for (const DWORD entry : entries) {
        writer.put_untagged_dword(entry);
    }
}
