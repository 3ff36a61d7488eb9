#pragma once

/// \file
/// The names of this build's catalog, and every operation on names once more: step by step, by walks over plain maps.

#include <string>
#include <unordered_map>
#include <vector>

#include "dstr.h"
#include "names/compiled_in_data.h"
#include "pgmdev/names/reference.h"
#include "stl.h"

namespace catalog_reference {

namespace ref = ddb_reference;

enum { PACKAGE_NAME, PGM_NAME, PGM_PART_PCF, PGM_FAMILY_PCF, DEV_PART_PCF, DEV_FAMILY_PCF, PCF_FAMILY_PCF, FAMILY };

inline const std::vector<ref::MAP>& tables() {
    static const std::vector<ref::MAP> TABLES =
        ref::read_grammar(ref::inflated(PGMDDB_GRAMMAR_DATA, PGMDDB_GRAMMAR_CMP_LENGTH, PGMDDB_GRAMMAR_LENGTH));
    return TABLES;
}

inline const std::vector<std::uint32_t>& opn_list() {
    static const std::vector<std::uint32_t> LIST =
        ref::read_opn(ref::inflated(PGMDDB_OPN_DATA, PGMDDB_OPN_CMP_LENGTH, PGMDDB_OPN_LENGTH));
    return LIST;
}

/// What a walk over the table finds for each of its entries, kept so that a test need not walk for every name.
inline std::string key_of(int table, const std::string& entry) {
    using KEYS = std::unordered_map<std::string, std::string>;
    static const std::vector<KEYS> ALL = [] {
        std::vector<KEYS> all;
        for (const ref::MAP& map : tables()) {
            all.push_back(ref::keys_by_walk(map));
        }
        return all;
    }();
    const KEYS& keys = ALL[static_cast<std::size_t>(table)];
    const auto found = keys.find(entry);
    return found != keys.end() ? found->second : "";
}

inline std::string normal(std::string name) {
    constexpr const char* WHITE = " \t\r\n\v\f";
    name.erase(0, name.find_first_not_of(WHITE));
    name.erase(name.find_last_not_of(WHITE) + 1);
    for (char& c : name) {
        c = c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
    }
    return name;
}

// The operations on names that are normal already.

inline std::string package_name(const std::string& name, bool no_fallback) {
    const std::string out = key_of(PACKAGE_NAME, name);
    return out.empty() && !no_fallback ? name : out;
}

inline std::string pgm_name(const std::string& name, bool skip_package_conversion, bool no_fallback) {
    std::string out = key_of(PGM_NAME, name);
    if (out.empty()) {
        if (!skip_package_conversion) {
            const std::string package = key_of(PACKAGE_NAME, name);
            out = package.empty() ? "" : key_of(PGM_NAME, package);
        }
        if (out.empty() && !no_fallback) {
            out = name;
        }
    }
    return out;
}

inline std::string family(const std::string& name) {
    if (std::string direct = key_of(FAMILY, name); !direct.empty()) {
        return direct;
    }
    std::string part = key_of(PGM_PART_PCF, name);
    part = part.empty() ? key_of(DEV_PART_PCF, name) : part;
    return part.empty() ? "" : key_of(FAMILY, part);
}

inline std::string pcf_device(const std::string& name) {
    const ref::MAP& map = tables()[DEV_PART_PCF];
    const auto found = map.find(name);
    return found != map.end() ? found->second.front() : "";
}

inline bool use_full_name(const std::string& name) {
    const std::string package = package_name(name, true);
    const std::string pgm = package.empty() ? "" : pgm_name(package, false, true);
    return !name.empty() && name == package && package == pgm;
}

inline bool use_package_name(const std::string& name) {
    const std::string package = package_name(name, false);
    return package == pgm_name(package, true, true);
}

/// The upper-case names of all parts; the first one is that of the part 1.
inline const std::vector<std::string>& parts() {
    static const std::vector<std::string> NAMES = [] {
        std::vector<std::string> names;
        for (int part = DEV_PART_INVALID + 1; part != DEV_PART_GENERIC && part != DEV_PART_MAX; ++part) {
            names.push_back(dstr_get_user_string(part));
            stl_toupper(names.back());
        }
        return names;
    }();
    return NAMES;
}

/// All names that there are: keys and entries of all tables, and parts.
inline const std::vector<std::string>& all_names() {
    static const std::vector<std::string> NAMES = [] {
        std::vector<std::string> names = parts();
        for (const ref::MAP& map : tables()) {
            for (const auto& [key, entries] : map) {
                names.push_back(key);
                names.insert(names.end(), entries.begin(), entries.end());
            }
        }
        std::sort(names.begin(), names.end());
        names.erase(std::unique(names.begin(), names.end()), names.end());
        return names;
    }();
    return NAMES;
}

}  // namespace catalog_reference
