#include "names/conversions.h"

namespace {

using TABLE = PGMDEV_DDB_GRAMMAR_ENUM;

}  // namespace

PGM_NAME pgm_name_of(const GRAMMAR_STORE* store, std::string_view name, bool skip_package_conversion) {
    PGM_NAME result{"", key_of(store, TABLE::PGM_NAME, name)};
    if (result.pgm_name.empty() && !skip_package_conversion) {
        result.package_name = key_of(store, TABLE::PACKAGE_NAME, name);
        if (!result.package_name.empty()) {
            normalize_name(result.package_name);
            result.pgm_name = key_of(store, TABLE::PGM_NAME, result.package_name);
        }
    }
    return result;
}

std::vector<std::string_view> names_with_key(const GRAMMAR_STORE* store, TABLE type, std::string_view key) {
    std::vector<std::string_view> names = entries_of(store, type, key);
    if (!store->entries_have_one_key) {
        std::erase_if(names, [&](std::string_view name) { return key_of(store, type, name) != key; });
    }
    return names;
}

std::vector<std::string_view> names_with_pgm_name(const GRAMMAR_STORE* store, std::string_view pgm_name) {
    const std::vector<std::string_view> direct = names_with_key(store, TABLE::PGM_NAME, pgm_name);
    std::vector<std::string_view> names = direct;
    for (const std::string_view package_name : direct) {
        for (const std::string_view name : names_with_key(store, TABLE::PACKAGE_NAME, package_name)) {
            if (key_of(store, TABLE::PGM_NAME, name).empty()) {
                names.push_back(name);
            }
        }
    }
    return names;
}

std::vector<std::string_view> names_with_pgm_pcf(const GRAMMAR_STORE* store, TABLE type, std::string_view pcf) {
    std::vector<std::string_view> names;
    for (const std::string_view converted : names_with_key(store, type, pcf)) {
        const std::vector<std::string_view> with_pgm_name = names_with_pgm_name(store, converted);
        names.insert(names.end(), with_pgm_name.begin(), with_pgm_name.end());
        if (pgm_name_of(store, converted, false).pgm_name.empty()) {
            names.push_back(converted);
        }
    }
    return names;
}
