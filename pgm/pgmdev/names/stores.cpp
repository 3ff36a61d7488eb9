#include "names/stores.h"

#include <algorithm>
#include <utility>

#include "gen.h"
#include "names/on_demand.h"
#include "report.h"
#include "stl.h"

namespace {

constinit ON_DEMAND<GRAMMAR_STORE> grammar_store;
constinit ON_DEMAND<OPN_STORE> opn_store;

const GRAMMAR_TABLE& table_of(const GRAMMAR_STORE* mgr, PGMDEV_DDB_GRAMMAR_ENUM type) {
    PGMDEV_REQUIRE(mgr != nullptr, "mgr != NULL", DDB_MGR_FILE);
    PGMDEV_REQUIRE(type < PGMDEV_DDB_GRAMMAR_ENUM::MAX, "type < PGMDEV_DDB_GRAMMAR_ENUM::MAX", DDB_MGR_FILE);
    const GRAMMAR_TABLE* mapping = mgr->tables[static_cast<std::size_t>(type)].get();
    PGMDEV_REQUIRE(mapping != nullptr, "mapping != NULL", DDB_MGR_FILE);
    return *mapping;
}

/// Whatever the host takes for white space or a small letter: all that is not ASCII may be one.
bool may_not_be_normal(char character) {
    return character <= ' ' || character > '~' || (character >= 'a' && character <= 'z');
}

}  // namespace

const GRAMMAR_STORE* get_grammar_store() {
    return grammar_store.get([] { return build_grammar_store(grammar_data_set()); });
}

const OPN_STORE* get_opn_store() {
    return opn_store.get([] { return build_opn_store(opn_data_set()); });
}

void free_stores() {
    grammar_store.free();
    opn_store.free();
}

void normalize_name(const std::string& name) {
    if (std::none_of(name.begin(), name.end(), may_not_be_normal)) {
        return;
    }
    std::string normal = gen_remove_leading_and_trailing_white_spaces(name);
    stl_toupper(normal);
    if (normal != name) {
        const_cast<std::string&>(name) = std::move(normal);
    }
}

std::string_view key_of(const GRAMMAR_STORE* store, PGMDEV_DDB_GRAMMAR_ENUM type, std::string_view name) {
    return table_of(store, type).key_of(name);
}

std::string reverse_lookup(const GRAMMAR_STORE* store, PGMDEV_DDB_GRAMMAR_ENUM type, const std::string& name) {
    const GRAMMAR_TABLE& table = table_of(store, type);
    normalize_name(name);
    return std::string(table.key_of(name));
}

std::vector<std::string> forward_lookup(const GRAMMAR_STORE* store, PGMDEV_DDB_GRAMMAR_ENUM type,
                                        const std::string& name) {
    const GRAMMAR_TABLE& table = table_of(store, type);
    normalize_name(name);
    const auto entries = table.entries_of(name);
    return {entries.begin(), entries.end()};
}

std::vector<std::string_view> entries_of(const GRAMMAR_STORE* store, PGMDEV_DDB_GRAMMAR_ENUM type,
                                         std::string_view key) {
    return table_of(store, type).entries_of(key);
}

std::vector<std::string_view> keys_of(const GRAMMAR_STORE* store, PGMDEV_DDB_GRAMMAR_ENUM type) {
    return table_of(store, type).keys();
}

std::span<const DWORD> opn_list(const OPN_STORE* store) {
    PGMDEV_REQUIRE(store != nullptr, "mgr != NULL", DDB_MGR_FILE);
    PGMDEV_REQUIRE(store->map.data() != nullptr, "M_MAP != NULL", DDB_MGR_FILE);
    return store->map;
}
