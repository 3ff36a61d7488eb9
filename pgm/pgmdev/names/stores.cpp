#include "names/stores.h"

#include <atomic>
#include <mutex>
#include <utility>

#include "gen.h"
#include "report.h"
#include "static_mutex.h"
#include "stl.h"

namespace {

/// A store that is built on first use. It has nothing to destroy: a static object that outlives the clean-up may still
/// ask for a store.
template <class STORE>
class STORE_ON_DEMAND {
public:
    /// `build` returns the new store or throws.
    template <class BUILD>
    const STORE* get(BUILD build) {
        if (const STORE* store = m_store.load(std::memory_order_acquire)) {
            return store;
        }
        const std::scoped_lock lock(m_building);
        if (m_store.load(std::memory_order_relaxed) == nullptr) {
            m_store.store(build().release(), std::memory_order_release);
        }
        return m_store.load(std::memory_order_relaxed);
    }

    void free() { delete m_store.exchange(nullptr); }

private:
    std::atomic<const STORE*> m_store{nullptr};
    STATIC_MUTEX m_building;
};

constinit STORE_ON_DEMAND<GRAMMAR_STORE> grammar_store;
constinit STORE_ON_DEMAND<OPN_STORE> opn_store;

struct CLEAN_UP {
    ~CLEAN_UP() { free_ddb_stores(); }
} clean_up;

const GRAMMAR_TABLE& table_of(const GRAMMAR_STORE* mgr, PGMDEV_DDB_GRAMMAR_ENUM type) {
    PGMDEV_REQUIRE(mgr != nullptr, "mgr != NULL", DDB_SOURCE);
    PGMDEV_REQUIRE(type < PGMDEV_DDB_GRAMMAR_ENUM::MAX, "type < PGMDEV_DDB_GRAMMAR_ENUM::MAX", DDB_SOURCE);
    const GRAMMAR_TABLE* mapping = mgr->tables[static_cast<std::size_t>(type)].get();
    PGMDEV_REQUIRE(mapping != nullptr, "mapping != NULL", DDB_SOURCE);
    return *mapping;
}

}  // namespace

const GRAMMAR_STORE* get_grammar_store() {
    return grammar_store.get([] { return build_grammar_store(ddb_grammar_data()); });
}

const OPN_STORE* get_opn_store() {
    return opn_store.get([] { return build_opn_store(ddb_opn_data()); });
}

void free_ddb_stores() {
    grammar_store.free();
    opn_store.free();
}

void normalize_name(const std::string& name) {
    std::string normal = gen_remove_leading_and_trailing_white_spaces(name);
    stl_toupper(normal);
    if (normal != name) {
        const_cast<std::string&>(name) = std::move(normal);
    }
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

const std::vector<DWORD>& opn_list(const OPN_STORE* store) {
    PGMDEV_REQUIRE(store != nullptr, "mgr != NULL", DDB_SOURCE);
    PGMDEV_REQUIRE(store->map != nullptr, "M_MAP != NULL", DDB_SOURCE);
    return *store->map;
}
