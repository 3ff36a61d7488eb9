#include <array>
#include <span>

#include "dstr.h"
#include "gen.h"
#include "member_tables.h"
#include "pgmdev_c_profiles.h"
#include "pgmdev_dev_info_table.h"
#include "stl.h"

struct pgmdev_profile_database {
    PGMDEV_DEV_INFO_TABLE table;
    pgmdev_records records;
};

namespace {

/// What profiles are asked for by, by pgmdev_profile_key.
struct KEY {
    const std::vector<DWORD>& (PGMDEV_DEV_INFO_TABLE::*governing)() const noexcept;
    int (*number)(const std::string& name);  ///< 0: there is none of that name
    std::string (*name)(int number);
};

constexpr std::array<KEY, PGMDEV_PROFILE_KEYS> KEYS{{
    {&PGMDEV_DEV_INFO_TABLE::family_table,
     [](const std::string& name) { return static_cast<int>(dstr_get_dev_family_enum_by_string(name.c_str())); },
     [](int number) { return dstr_get_user_string(static_cast<DEV_FAMILY_ENUM>(number)); }},
    {&PGMDEV_DEV_INFO_TABLE::device_table,
     [](const std::string& name) { return static_cast<int>(dstr_get_dev_device_enum_by_string(name.c_str())); },
     [](int number) { return dstr_get_user_string(static_cast<DEV_DEVICE_ENUM>(number)); }},
    {&PGMDEV_DEV_INFO_TABLE::part_table,
     [](const std::string& name) {
         const int part = dstr_get_dev_part_enum_by_string(name.c_str());
         return part != DEV_PART_INVALID ? part : 0;
     },
     [](int number) { return dstr_get_user_string(number); }},
}};

const KEY& key_at(pgmdev_profile_key key) {
    require_argument(key < KEYS.size(), "there is no key of that number");
    return KEYS.at(key);
}

/// The record that governs what has that number; 0 is nothing.
pgmdev_status give_governing(const pgmdev_profile_database& database, const KEY& key, uint64_t number, size_t* record) {
    const std::vector<DWORD>& governing = (database.table.*key.governing)();
    if (number == 0 || number >= governing.size() || governing[number] == INVALID_DWORD) {
        return PGMDEV_STATUS_NOT_FOUND;
    }
    *record = governing[number];
    return PGMDEV_STATUS_OK;
}

}  // namespace

pgmdev_status pgmdev_profile_open(const char* path, pgmdev_profile_database** database, pgmdev_error** error) {
    return guarded(error, [&]() -> pgmdev_status {
        emptied(database);
        const std::string file = path != nullptr ? path : gen_get_device_db_fullpath() + "/programmer/pgm_dev_info.pcf";
        const PGMDEV_DEV_INFO_TABLE table = PGMDEV_DEV_INFO_TABLE::from_database(FIO_PATH(file));
        if (table.payload_size() == 0) {  // which was reported, and is no end
            throw FAILURE(PGMDEV_STATUS_REPORTED, "the file is no profile database");
        }
        *database = new pgmdev_profile_database{table, profile_records(table.records())};
        return PGMDEV_STATUS_OK;
    });
}

void pgmdev_profile_free(pgmdev_profile_database* database) {
    delete database;
}

const pgmdev_records* pgmdev_profile_records(const pgmdev_profile_database* database) {
    return database != nullptr ? &database->records : nullptr;
}

pgmdev_status pgmdev_profile_find(const pgmdev_profile_database* database, pgmdev_profile_key key, const char* name,
                                  size_t* record, pgmdev_error** error) {
    return guarded(error, [&] {
        emptied(record, PGMDEV_NO_RECORD);
        const KEY& asked = key_at(key);
        const int number = asked.number(required_text(name));
        return give_governing(opened(database), asked, static_cast<uint64_t>(number), record);
    });
}

pgmdev_status pgmdev_profile_find_number(const pgmdev_profile_database* database, pgmdev_profile_key key,
                                         uint32_t number, size_t* record, pgmdev_error** error) {
    return guarded(error, [&] {
        emptied(record, PGMDEV_NO_RECORD);
        return give_governing(opened(database), key_at(key), number, record);
    });
}

pgmdev_status pgmdev_profile_governed(const pgmdev_profile_database* database, pgmdev_profile_key key,
                                      pgmdev_records** governed, pgmdev_error** error) {
    return guarded(error, [&]() -> pgmdev_status {
        emptied(governed);
        const KEY& asked = key_at(key);
        const std::vector<DWORD>& governing = (opened(database).table.*asked.governing)();
        pgmdev_records found({number_member("number"), text_member("name"), number_member("record")});
        for (std::size_t number = 1; number < governing.size(); ++number) {
            if (governing[number] != INVALID_DWORD) {
                std::string name = asked.name(static_cast<int>(number));
                stl_toupper(name);
                found.add({number_value(number), text_value(name), number_value(governing[number])});
            }
        }
        *governed = new pgmdev_records(std::move(found));
        return PGMDEV_STATUS_OK;
    });
}
