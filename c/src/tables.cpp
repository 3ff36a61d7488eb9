#include "pgmdev_c_tables.h"

#include <algorithm>
#include <array>
#include <memory>
#include <variant>

#include "member_tables.h"
#include "pgmdev_cell.h"
#include "pgmdev_dev_info_manager.h"
#include "pgmdev_dev_info_table.h"
#include "pgmdev_flash_manager.h"
#include "pgmdev_flash_table.h"
#include "table_faults.h"

struct pgmdev_table {
    std::variant<PGMDEV_FLASH_TABLE, PGMDEV_DEV_INFO_TABLE> content;
    pgmdev_records records;
    pgmdev_records faults;
};

namespace {

pgmdev_records records_of(const PGMDEV_FLASH_TABLE& table) {
    return flash_records(table.records());
}

pgmdev_records records_of(const PGMDEV_DEV_INFO_TABLE& table) {
    return profile_records(table.records());
}

template <class TABLE>
std::unique_ptr<pgmdev_table> made_of(const TABLE& table, const std::string& file) {
    pgmdev_records faults = no_faults();
    for (const PGMDEV_TABLE_FAULT& fault : table.faults()) {
        add_fault(faults, fault, TABLE::describe(fault, file));
    }
    return std::make_unique<pgmdev_table>(pgmdev_table{table, records_of(table), std::move(faults)});
}

template <class TABLE>
std::unique_ptr<pgmdev_table> from_source(const std::string& file) {
    return made_of(TABLE::from_source(FIO_PATH(file)), file);
}

template <class TABLE>
std::unique_ptr<pgmdev_table> from_database(const std::string& file) {
    const TABLE table = TABLE::from_database(FIO_PATH(file));
    if (table.payload_size() == 0) {  // which was reported, and is no end
        throw FAILURE(PGMDEV_STATUS_REPORTED, "the file is no database of that type");
    }
    return made_of(table, file);
}

void compile_flash(const std::string& csv_file, const std::string& pcf_file) {
    PGMDEV_FLASH_MANAGER(false, 1, true, false).generate_flash_database(FIO_PATH(csv_file), FIO_PATH(pcf_file));
}

void compile_profiles(const std::string& csv_file, const std::string& pcf_file) {
    PGMDEV_DEV_INFO_MANAGER(true).generate_device_database(FIO_PATH(csv_file), FIO_PATH(pcf_file));
}

struct TABLE_TYPE {
    std::vector<MEMBER> (*members)();
    std::unique_ptr<pgmdev_table> (*from_source)(const std::string& file);
    std::unique_ptr<pgmdev_table> (*from_database)(const std::string& file);
    void (*compile)(const std::string& csv_file, const std::string& pcf_file);
};

/// By pgmdev_table_type.
constexpr std::array<TABLE_TYPE, PGMDEV_TABLE_TYPES> TABLE_TYPES{{
    {flash_members, from_source<PGMDEV_FLASH_TABLE>, from_database<PGMDEV_FLASH_TABLE>, compile_flash},
    {profile_members, from_source<PGMDEV_DEV_INFO_TABLE>, from_database<PGMDEV_DEV_INFO_TABLE>, compile_profiles},
}};

const TABLE_TYPE& table_type_at(pgmdev_table_type type) {
    require_argument(type < TABLE_TYPES.size(), "there is no table of that type");
    return TABLE_TYPES.at(type);
}

/// A value of a table, as a cell of a source table spells it.
std::string cell_of(const MEMBER& member, const DATUM& value) {
    const auto base = member.base == 16 ? PGMDEV_NUMBER_BASE::BASE_16 : PGMDEV_NUMBER_BASE::BASE_10;
    switch (value.kind) {
        case PGMDEV_KIND_BOOL:
            return pgmdev_cell(value.number != 0, base);
        case PGMDEV_KIND_NUMBER:
            return pgmdev_cell(static_cast<DWORD>(value.number), base);
        case PGMDEV_KIND_ENUMERATOR:
            return value.text.empty() ? std::to_string(value.number) : value.text;
        default:
            return value.text;
    }
}

bool is_same(const DATUM& left, const DATUM& right) {
    return left.kind == right.kind && left.number == right.number && left.text == right.text;
}

}  // namespace

pgmdev_status pgmdev_table_members(pgmdev_table_type type, pgmdev_records** members, pgmdev_error** error) {
    return guarded(error, [&]() -> pgmdev_status {
        emptied(members);
        *members = new pgmdev_records(table_type_at(type).members());
        return PGMDEV_STATUS_OK;
    });
}

pgmdev_status pgmdev_table_from_source(pgmdev_table_type type, const char* csv_file, pgmdev_table** table,
                                       pgmdev_error** error) {
    return guarded(error, [&]() -> pgmdev_status {
        emptied(table);
        *table = table_type_at(type).from_source(required_text(csv_file)).release();
        return PGMDEV_STATUS_OK;
    });
}

pgmdev_status pgmdev_table_from_database(pgmdev_table_type type, const char* pcf_file, pgmdev_table** table,
                                         pgmdev_error** error) {
    return guarded(error, [&]() -> pgmdev_status {
        emptied(table);
        *table = table_type_at(type).from_database(required_text(pcf_file)).release();
        return PGMDEV_STATUS_OK;
    });
}

void pgmdev_table_free(pgmdev_table* table) {
    delete table;
}

const pgmdev_records* pgmdev_table_records(const pgmdev_table* table) {
    return table != nullptr ? &table->records : nullptr;
}

const pgmdev_records* pgmdev_table_faults(const pgmdev_table* table) {
    return table != nullptr ? &table->faults : nullptr;
}

bool pgmdev_table_has_faults(const pgmdev_table* table) {
    return table != nullptr && std::visit([](const auto& content) { return content.has_faults(); }, table->content);
}

size_t pgmdev_table_payload_size(const pgmdev_table* table) {
    return table != nullptr ? std::visit([](const auto& content) { return content.payload_size(); }, table->content)
                            : 0;
}

pgmdev_status pgmdev_table_source_text(const pgmdev_table* table, pgmdev_string** text, pgmdev_error** error) {
    return guarded(error, [&]() -> pgmdev_status {
        emptied(text);
        std::string obstacle;
        std::string source =
            std::visit([&](const auto& content) { return content.source_text(obstacle); }, opened(table).content);
        if (give_text(text, std::move(source)) != PGMDEV_STATUS_OK) {
            throw FAILURE(PGMDEV_STATUS_REFUSED, obstacle);
        }
        return PGMDEV_STATUS_OK;
    });
}

pgmdev_status pgmdev_table_compare(const pgmdev_table* left, const pgmdev_table* right, pgmdev_records** differences,
                                   pgmdev_error** error) {
    return guarded(error, [&]() -> pgmdev_status {
        emptied(differences);
        require_argument(opened(left).content.index() == opened(right).content.index(),
                         "the tables are not of one type");
        const std::vector<MEMBER>& members = left->records.members;
        const std::size_t most = std::max(left->records.count(), right->records.count());
        const std::size_t common = std::min(left->records.count(), right->records.count());
        pgmdev_records found(
            {number_member("record"), text_member("member"), text_member("left"), text_member("right")});
        for (std::size_t record = 0; record < common; ++record) {
            for (std::size_t member = 0; member < members.size(); ++member) {
                const DATUM& one = left->records.at(record, member);
                const DATUM& other = right->records.at(record, member);
                if (!is_same(one, other)) {
                    found.add({number_value(record), text_value(members[member].name),
                               text_value(cell_of(members[member], one)), text_value(cell_of(members[member], other))});
                }
            }
        }
        for (std::size_t record = common; record < most; ++record) {
            found.add({number_value(record), DATUM(), DATUM(), DATUM()});
        }
        *differences = new pgmdev_records(std::move(found));
        return PGMDEV_STATUS_OK;
    });
}

pgmdev_status pgmdev_table_compile(pgmdev_table_type type, const char* csv_file, const char* pcf_file,
                                   pgmdev_error** error) {
    return guarded(error, [&]() -> pgmdev_status {
        table_type_at(type).compile(required_text(csv_file), required_text(pcf_file));
        return PGMDEV_STATUS_OK;
    });
}
