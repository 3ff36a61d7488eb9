#include "flash/database.h"

#include "files/database.h"
#include "files/file_bytes.h"
#include "files/inspection.h"
#include "utf8_path.h"

PGMDEV_FLASH_MANAGER open_flash_database(DWORD device_count) {
    return read_database(FLASH_DATABASE_KIND, flash_database_place(),
                         [device_count] { return PGMDEV_FLASH_MANAGER(false, device_count, false, false); });
}

CSV_LINES read_flash_list(const std::string& file) {
    return CSV_LINES(inspect_file(file, 0).missing ? "" : required_file_text(file, FILE_KINDS::REGULAR));
}

std::string beside_flash_source(const std::string& csv_file, const std::string& list) {
    return utf8_from_path(path_from_utf8(csv_file).replace_filename(list));
}

std::string beside_flash_database(const std::string& pcf_file, const std::string& list) {
    return pcf_file + "." + list;
}

std::string installed_flash_list(const std::string& list) {
    return beside_flash_database(flash_database_place().path, list);
}
