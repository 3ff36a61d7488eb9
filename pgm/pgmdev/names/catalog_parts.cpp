#include "names/catalog_parts.h"

#include <algorithm>
#include <atomic>
#include <string_view>
#include <vector>

#include "names/compiled_in_digests.h"
#include "names/parts.h"
#include "names/stores.h"

namespace {

enum class HOST_PARTS { UNKNOWN, OF_CATALOG, OTHERS };

/// Threads that come first together find out the same.
constinit std::atomic<HOST_PARTS> host_parts{HOST_PARTS::UNKNOWN};

int end_of_host_parts() {
    return std::min(DEV_PART_GENERIC, DEV_PART_MAX);
}

/// Asks the host, if it has that service, which hosts need not have: a template, so that its name may mean nothing.
template <class WORD>
bool host_says_its_names_are(WORD first, WORD second) {
    std::string (*const name_of_part)(int) = dstr_get_user_string;
    if constexpr (requires { dstr_are_part_names(name_of_part, first, second); }) {
        return dstr_are_part_names(name_of_part, first, second);
    } else {
        return false;
    }
}

HOST_PARTS find_out_host_parts() {
    if (DEV_PART_INVALID != 0 || end_of_host_parts() != PGMDDB_PART_DIGESTS.parts + 1) {
        return HOST_PARTS::OTHERS;
    }
    const NAME_LIST_DIGEST& wanted = PGMDDB_PART_DIGESTS.all_names;
    const bool same = host_says_its_names_are(wanted.first, wanted.second) || digest_of_host_parts() == wanted;
    return same ? HOST_PARTS::OF_CATALOG : HOST_PARTS::OTHERS;
}

/// The first part with that name in upper case; 0: none.
int catalog_part_named(const std::string& name, QWORD hash) {
    return PGMDDB_PART_DIGESTS.names.find(
        hash, [&name](std::size_t place) { return upper_part_name(PGMDDB_PART_DIGESTS.names.part_at(place)) == name; });
}

void add_parts_named(std::vector<int>& parts, const std::string& name) {
    PGMDDB_PART_DIGESTS.names.find(part_name_hash(name), [&](std::size_t place) {
        if (const int part = PGMDDB_PART_DIGESTS.names.part_at(place); upper_part_name(part) == name) {
            parts.push_back(part);
        }
        return false;  // all of them
    });
}

}  // namespace

NAME_LIST_DIGEST digest_of_host_parts() {
    // Several names at a time: what has just been written into a string is slow to be read as words.
    constexpr int AT_A_TIME = 4;
    const int end = end_of_host_parts();
    NAME_LIST_DIGEST all_names;
    int part = DEV_PART_INVALID + 1;
    for (; part + AT_A_TIME <= end; part += AT_A_TIME) {
        for (const std::string& name : {dstr_get_user_string(part), dstr_get_user_string(part + 1),
                                        dstr_get_user_string(part + 2), dstr_get_user_string(part + 3)}) {
            all_names.add(name);
        }
    }
    for (; part < end; ++part) {
        all_names.add(dstr_get_user_string(part));
    }
    return all_names;
}

bool host_has_catalog_parts() {
    HOST_PARTS known = host_parts.load(std::memory_order_relaxed);
    if (known == HOST_PARTS::UNKNOWN) {
        known = find_out_host_parts();
        host_parts.store(known, std::memory_order_relaxed);
    }
    return known == HOST_PARTS::OF_CATALOG;
}

int catalog_part_by_hash(QWORD hash) {
    return PGMDDB_PART_DIGESTS.names.find(hash, [](std::size_t /*place*/) { return true; });
}

std::optional<std::string> catalog_part_denoted(const std::string& name) {
    const NAME_DIGEST digest = name_digest(sha256_of(name).get());
    const int named = catalog_part_named(name, digest.hash);
    const int denoted = denoted_part(PGMDDB_PART_DIGESTS, digest);
    if (named != 0 && (denoted == 0 || named < denoted)) {
        return name;
    }
    return denoted != 0 ? std::optional(upper_part_name(denoted)) : std::nullopt;
}

std::string catalog_part_with_programmer_file_name(const std::string& pcf_name) {
    const GRAMMAR_STORE* grammar = get_grammar_store();
    std::vector<int> parts;
    for (const std::string_view pgm_name : entries_of(grammar, PGMDEV_DDB_GRAMMAR_ENUM::PGM_PART_PCF, pcf_name)) {
        if (key_of(grammar, PGMDEV_DDB_GRAMMAR_ENUM::PGM_PART_PCF, pgm_name) == pcf_name) {
            add_parts_named(parts, std::string(pgm_name));
        }
    }
    int first = 0;
    if (!parts.empty()) {
        DEV_PART_MANAGER manager;
        for_each_preferred_part(manager, "ANY", [&](int part) {
            const bool found = std::find(parts.begin(), parts.end(), part) != parts.end();
            first = found ? part : 0;
            return found;
        });
    }
    return first != 0 ? upper_part_name(first) : std::string();
}

void forget_host_parts() {
    host_parts = HOST_PARTS::UNKNOWN;
}
