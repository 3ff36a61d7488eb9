#include "flash_database.h"

#include <algorithm>

#include "gen.h"
#include "member_tables.h"
#include "pgmdev_flash_table.h"
#include "table_faults.h"

LOADED_FLASH::LOADED_FLASH(const std::string& path) : PGMDEV_FLASH_MANAGER(false, 0, true, false) {
    initialize_flash_database(FIO_PATH(path));
    if (m_flash_database == nullptr) {  // which was reported, and is no end
        throw FAILURE(PGMDEV_STATUS_REPORTED, "the file is no flash database");
    }
}

namespace {

pgmdev_records faults_of(const PGMDEV_FLASH_NOTES& notes) {
    pgmdev_records faults = no_faults();
    for (const PGMDEV_FLASH_NOTES::FILE_FAULTS* file : {&notes.ambiguities_file(), &notes.identifications_file()}) {
        for (const PGMDEV_TABLE_FAULT& fault : file->faults) {
            add_fault(faults, fault, PGMDEV_FLASH_TABLE::describe(fault, file->file));
        }
    }
    return faults;
}

}  // namespace

pgmdev_flash_database::pgmdev_flash_database(const std::string& path)
    : file(FIO_PATH(path).fullpath()),
      loaded(path),
      notes(PGMDEV_FLASH_NOTES::beside_database(path)),
      index(loaded.all().data(), static_cast<DWORD>(loaded.all().size())),
      records(flash_records(loaded.all())),
      notes_faults(faults_of(notes)) {}

std::size_t pgmdev_flash_database::default_record(std::string_view device_name) const {
    const auto all = loaded.all();
    const auto found = std::find_if(all.begin(), all.end(), [device_name](const PGMDEV_SFL_FLASH_INFO& record) {
        return record.default_dev && gen_stricmp(record.device_name, device_name) == 0;
    });
    return found != all.end() ? static_cast<std::size_t>(found - all.begin()) : PGMDEV_NO_RECORD;
}

pgmdev_status pgmdev_flash_open(const char* path, pgmdev_flash_database** database, pgmdev_error** error) {
    return guarded(error, [&]() -> pgmdev_status {
        emptied(database);
        *database = new pgmdev_flash_database(
            path != nullptr ? path : gen_get_device_db_fullpath() + "/programmer/pgm_flash.pcf");
        return PGMDEV_STATUS_OK;
    });
}

void pgmdev_flash_free(pgmdev_flash_database* database) {
    delete database;
}

const pgmdev_records* pgmdev_flash_records(const pgmdev_flash_database* database) {
    return database != nullptr ? &database->records : nullptr;
}

const pgmdev_records* pgmdev_flash_notes_faults(const pgmdev_flash_database* database) {
    return database != nullptr ? &database->notes_faults : nullptr;
}

pgmdev_status pgmdev_flash_find(const pgmdev_flash_database* database, const char* device_name, size_t* record,
                                pgmdev_error** error) {
    return guarded(error, [&]() -> pgmdev_status {
        emptied(record, PGMDEV_NO_RECORD);
        const std::string name = required_text(device_name);
        *record = opened(database).default_record(name);
        return *record != PGMDEV_NO_RECORD ? PGMDEV_STATUS_OK : PGMDEV_STATUS_NOT_FOUND;
    });
}
