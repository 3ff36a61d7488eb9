#include "names/catalog_parts.h"

#include <algorithm>
#include <atomic>
#include <iterator>

#include "names/compiled_in_digests.h"
#include "names/parts.h"
#include "stl.h"

namespace {

enum class HOST_PARTS { UNKNOWN, OF_CATALOG, OTHERS };

/// Threads that come first together find out the same.
constinit std::atomic<HOST_PARTS> host_parts{HOST_PARTS::UNKNOWN};

HOST_PARTS find_out_host_parts() {
    const int end = std::min(DEV_PART_GENERIC, DEV_PART_MAX);
    if (DEV_PART_INVALID != 0 || end != PGMDDB_PART_DIGESTS.parts + 1) {
        return HOST_PARTS::OTHERS;
    }
    constexpr std::size_t LONGEST_USUAL_NAME = 24;
    std::string names;
    names.reserve(static_cast<std::size_t>(end) * LONGEST_USUAL_NAME);
    for_each_part([&names](int part) {
        names += dstr_get_user_string(part);
        names += '\0';
        return false;
    });
    stl_toupper(names);
    return std::equal(std::begin(PGMDDB_PART_DIGESTS.all_names), std::end(PGMDDB_PART_DIGESTS.all_names),
                      sha256_of(names).get())
               ? HOST_PARTS::OF_CATALOG
               : HOST_PARTS::OTHERS;
}

/// The part with that name in upper case; 0: none.
int catalog_part_named(const std::string& name, QWORD hash) {
    return PGMDDB_PART_DIGESTS.names.find(
        hash, [&name](std::size_t place) { return upper_part_name(PGMDDB_PART_DIGESTS.names.part_at(place)) == name; });
}

}  // namespace

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

void forget_host_parts() {
    host_parts = HOST_PARTS::UNKNOWN;
}
