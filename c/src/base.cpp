#include "pgmdev_c_base.h"

#include <array>

#include "cfg.h"
#include "errors.h"
#include "gen.h"
#include "records.h"

namespace {

struct DIRECTORY {
    std::string (*path)();
    void (*set)(const std::string&);
};

constexpr std::array DIRECTORIES{
    DIRECTORY{gen_get_tessary_path, gen_set_tessary_path},
    DIRECTORY{gen_get_device_db_fullpath, gen_set_device_db_fullpath},
    DIRECTORY{gen_get_module_path, gen_set_module_path},
};

const DIRECTORY& directory_at(pgmdev_directory directory) {
    require_argument(directory < DIRECTORIES.size(), "there is no directory of that number");
    return DIRECTORIES.at(directory);
}

}  // namespace

uint32_t pgmdev_c_interface(void) {
    return PGMDEV_C_INTERFACE;
}

const char* pgmdev_string_data(const pgmdev_string* string) {
    return string != nullptr ? string->bytes.c_str() : "";
}

size_t pgmdev_string_size(const pgmdev_string* string) {
    return string != nullptr ? string->bytes.size() : 0;
}

void pgmdev_string_free(pgmdev_string* string) {
    delete string;
}

pgmdev_status pgmdev_set_configuration(const char* key, const char* value, pgmdev_error** error) {
    return guarded(error, [&]() -> pgmdev_status {
        if (value != nullptr) {
            cfg_set_value(required_text(key), value);
        } else {
            cfg_clear_value(required_text(key));
        }
        return PGMDEV_STATUS_OK;
    });
}

pgmdev_status pgmdev_configuration(const char* key, pgmdev_string** value, pgmdev_error** error) {
    return guarded(error, [&] {
        emptied(value);
        return give_text(value, cfg_get_value(required_text(key)));
    });
}

pgmdev_status pgmdev_set_directory(pgmdev_directory directory, const char* path, pgmdev_error** error) {
    return guarded(error, [&]() -> pgmdev_status {
        directory_at(directory).set(path != nullptr ? path : "");
        return PGMDEV_STATUS_OK;
    });
}

pgmdev_status pgmdev_directory_path(pgmdev_directory directory, pgmdev_string** path, pgmdev_error** error) {
    return guarded(error, [&] {
        emptied(path);
        return give_text(path, directory_at(directory).path());
    });
}
