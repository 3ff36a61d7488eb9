#include <benchmark/benchmark.h>

#include <unordered_map>

#include "names/stores.h"
#include "peers/name_files.h"
#include "peers/name_maps.h"
#include "pgmdev_device_grammar_mgr.h"
#include "support/names.h"

// The package name of a full name, and the full names of a package name, by the library and by what else one could take.

namespace {

constexpr auto TABLE = PGMDEV_DDB_GRAMMAR_ENUM::PACKAGE_NAME;  // the largest

void ReverseLookup(benchmark::State& state) {
    const GRAMMAR_STORE* store = get_grammar_store();
    ask_for_names(state, [store](std::string& query) { return reverse_lookup(store, TABLE, query); });
}
BENCHMARK(ReverseLookup);

void GetPackageName(benchmark::State& state) {
    ask_for_names(state, [](std::string& query) { return PGMDEV_DEVICE_GRAMMAR_MGR::get_package_name(query, false); });
}
BENCHMARK(GetPackageName);

/// Everybody has to take the names as they are typed.
template <class PEER>
void ask_peer(benchmark::State& state, PEER& peer) {
    ask_for_names(state, [&peer](std::string& query) {
        normalize_name(query);
        return peer.find(query);
    });
}

template <class MAP>
void FindInMemory(benchmark::State& state) {
    static MAP map(package_names());
    ask_peer(state, map);
}
BENCHMARK(FindInMemory<HASH_MAP>);
BENCHMARK(FindInMemory<PERFECT_HASH>);
BENCHMARK(FindInMemory<SQLITE_IN_MEMORY>);

template <class NAME_FILE>
void FindInFile(benchmark::State& state) {
    static NAME_FILE file(written_names<NAME_FILE>("package_names", package_names()));
    ask_peer(state, file);
}
BENCHMARK(FindInFile<SQLITE_FILE>);
BENCHMARK(FindInFile<LMDB_FILE>);
BENCHMARK(FindInFile<CDB_FILE>);
BENCHMARK(FindInFile<TEXT_FILE>);
BENCHMARK(FindInFile<JSON_FILE>);

// From a key to all that it stands for.

void ForwardLookup(benchmark::State& state) {
    const GRAMMAR_STORE* store = get_grammar_store();
    ask_for(state, typed_package_names(), [store](std::string& query) { return forward_lookup(store, TABLE, query); });
}
BENCHMARK(ForwardLookup);

void ForwardFindInMultimap(benchmark::State& state) {
    std::unordered_map<std::string, std::vector<std::string>> full_names;
    for (const auto& [name, package_name] : package_names()) {
        full_names[package_name].push_back(name);
    }
    ask_for(state, typed_package_names(), [&full_names](std::string& query) {
        normalize_name(query);
        return std::vector<std::string>(full_names.find(query)->second);
    });
}
BENCHMARK(ForwardFindInMultimap);

void ForwardFindInSqlite(benchmark::State& state) {
    SQLITE_DATABASE database(":memory:");
    database.execute("CREATE TABLE names(key TEXT, place INTEGER, entry TEXT, PRIMARY KEY(key, place)) WITHOUT ROWID");
    database.execute("BEGIN");
    SQLITE_STATEMENT insert(database, "INSERT INTO names VALUES(?, ?, ?)");
    sqlite3_int64 place = 0;
    for (const auto& [name, package_name] : package_names()) {
        insert.bind(1, package_name);
        insert.bind(2, ++place);
        insert.bind(3, name);
        insert.step();
        insert.reset();
    }
    database.execute("COMMIT; ANALYZE");
    SQLITE_STATEMENT find(database, "SELECT entry FROM names WHERE key = ? ORDER BY place");
    ask_for(state, typed_package_names(), [&find](std::string& query) {
        normalize_name(query);
        find.bind(1, query);
        std::vector<std::string> names;
        while (find.step()) {
            names.emplace_back(find.text(0));
        }
        find.reset();
        return names;
    });
}
BENCHMARK(ForwardFindInSqlite);

}  // namespace
