#include "pgmdev_c_names.h"
#include "pgmdev_mgr.h"
#include "records.h"

namespace {

PGM_ENUM_TYPE type_of(pgmdev_enumeration enumeration) {
    require_argument(enumeration < PGM_ENUM_TYPE_MAX, "there is no enumeration of that number");
    return static_cast<PGM_ENUM_TYPE>(enumeration);
}

}  // namespace

pgmdev_status pgmdev_enum_name(pgmdev_enumeration enumeration, uint32_t value, pgmdev_string** name,
                               pgmdev_error** error) {
    return guarded(error, [&]() -> pgmdev_status {
        emptied(name);
        std::string found;
        const bool known = PGMDEV_MGR::pgm_check_type_enum_supported(type_of(enumeration), value, &found);
        return known ? give_text(name, found) : pgmdev_status{PGMDEV_STATUS_NOT_FOUND};
    });
}

pgmdev_status pgmdev_enum_value(pgmdev_enumeration enumeration, const char* name, uint32_t* value,
                                pgmdev_error** error) {
    return guarded(error, [&]() -> pgmdev_status {
        emptied(value);
        DWORD found = 0;
        if (!PGMDEV_MGR::pgm_check_type_name_supported(type_of(enumeration), required_text(name), &found)) {
            return PGMDEV_STATUS_NOT_FOUND;
        }
        *value = found;
        return PGMDEV_STATUS_OK;
    });
}

pgmdev_status pgmdev_enum_list(pgmdev_enumeration enumeration, pgmdev_records** enumerators, pgmdev_error** error) {
    return guarded(error, [&]() -> pgmdev_status {
        emptied(enumerators);
        pgmdev_records found({number_member("value"), text_member("name")});
        const PGM_ENUM_TYPE type = type_of(enumeration);
        std::string name;
        for (DWORD value = 1; PGMDEV_MGR::pgm_check_type_enum_supported(type, value, &name); ++value) {
            found.add({number_value(value), text_value(name)});
        }
        *enumerators = new pgmdev_records(std::move(found));
        return PGMDEV_STATUS_OK;
    });
}
