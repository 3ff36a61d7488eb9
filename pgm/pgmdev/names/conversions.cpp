#include "names/conversions.h"

PGM_NAME pgm_name_of(const GRAMMAR_STORE* store, std::string_view name, bool skip_package_conversion) {
    using TABLE = PGMDEV_DDB_GRAMMAR_ENUM;
    PGM_NAME result{"", key_of(store, TABLE::PGM_NAME, name)};
    if (result.pgm_name.empty() && !skip_package_conversion) {
        result.package_name = key_of(store, TABLE::PACKAGE_NAME, name);
        if (!result.package_name.empty()) {
            result.pgm_name = key_of(store, TABLE::PGM_NAME, result.package_name);
        }
    }
    return result;
}
