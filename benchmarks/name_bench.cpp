#include <benchmark/benchmark.h>
#include <gcrypt.h>
#include <sqlite3.h>
#include <zlib.h>

#include <algorithm>
#include <array>
#include <memory>
#include <random>
#include <stdexcept>
#include <unordered_map>

#include "dstr.h"
#include "gen.h"
#include "names/clean_up.h"
#include "names/compiled_in_data.h"
#include "names/part_indexes.h"
#include "names/stores.h"
#include "pgmdev_device_grammar_mgr.h"
#include "pgmdev_mgr.h"
#include "pgmdev_part_index.h"
#include "stl.h"

// Looking up names, opening the data and taking hashes, each beside a bare limit or a peer in the same run.

namespace {

constexpr auto TABLE = PGMDEV_DDB_GRAMMAR_ENUM::PACKAGE_NAME;  // the largest

/// Full names and their package names.
using PAIRS = std::vector<std::pair<std::string, std::string>>;

const PAIRS& pairs() {
    static const PAIRS PAIRS_OF_TABLE = [] {
        PAIRS all;
        for (int part = DEV_PART_INVALID + 1; part < DEV_PART_GENERIC; ++part) {
            std::string name = dstr_get_user_string(part);
            std::string package_name = reverse_lookup(get_grammar_store(), TABLE, name);
            if (!package_name.empty()) {
                all.emplace_back(std::move(name), std::move(package_name));
            }
        }
        return all;
    }();
    return PAIRS_OF_TABLE;
}

/// Asks for one name after another, in no order, as a user may have typed them.
template <class FIND>
void ask_for_names(benchmark::State& state, FIND find) {
    std::vector<std::string> names;
    for (const auto& [name, package_name] : pairs()) {
        names.push_back(" " + name);
        stl_tolower(names.back());
    }
    std::shuffle(names.begin(), names.end(), std::mt19937(1));
    std::size_t next = 0;
    std::string query;
    for ([[maybe_unused]] auto _ : state) {
        query = names[next];
        next = next + 1 < names.size() ? next + 1 : 0;
        find(query);
    }
}

void FindInHashMap(benchmark::State& state) {
    const std::unordered_map<std::string, std::string> map(pairs().begin(), pairs().end());
    ask_for_names(state, [&map](std::string& query) {
        normalize_name(query);
        benchmark::DoNotOptimize(map.find(query));
    });
}
BENCHMARK(FindInHashMap);

void ReverseLookup(benchmark::State& state) {
    ask_for_names(
        state, [](std::string& query) { benchmark::DoNotOptimize(reverse_lookup(get_grammar_store(), TABLE, query)); });
}
BENCHMARK(ReverseLookup);

void GetPackageName(benchmark::State& state) {
    ask_for_names(state, [](std::string& query) {
        benchmark::DoNotOptimize(PGMDEV_DEVICE_GRAMMAR_MGR::get_package_name(query, false));
    });
}
BENCHMARK(GetPackageName);

/// The same look-up in an indexed table in memory, by a prepared query.
class SQL_TABLE {
public:
    SQL_TABLE() {
        require(sqlite3_open(":memory:", &m_database) == SQLITE_OK);
        execute("CREATE TABLE names(entry TEXT PRIMARY KEY, key TEXT) WITHOUT ROWID; BEGIN");
        prepare("INSERT INTO names VALUES(?, ?)");
        for (const auto& [name, package_name] : pairs()) {
            bind(1, name);
            bind(2, package_name);
            require(sqlite3_step(m_statement) == SQLITE_DONE);
            sqlite3_reset(m_statement);
        }
        execute("COMMIT; ANALYZE");
        prepare("SELECT key FROM names WHERE entry = ?");
    }
    ~SQL_TABLE() {
        sqlite3_finalize(m_statement);
        sqlite3_close(m_database);
    }
    SQL_TABLE(const SQL_TABLE&) = delete;
    SQL_TABLE& operator=(const SQL_TABLE&) = delete;

    std::string find(const std::string& name) {
        bind(1, name);
        require(sqlite3_step(m_statement) == SQLITE_ROW);
        std::string key = reinterpret_cast<const char*>(sqlite3_column_text(m_statement, 0));
        sqlite3_reset(m_statement);
        return key;
    }

private:
    static void require(bool holds) {
        if (!holds) {
            throw std::runtime_error("SQLite");
        }
    }
    void execute(const char* text) { require(sqlite3_exec(m_database, text, nullptr, nullptr, nullptr) == SQLITE_OK); }
    void prepare(const char* text) {
        sqlite3_finalize(m_statement);
        require(sqlite3_prepare_v2(m_database, text, -1, &m_statement, nullptr) == SQLITE_OK);
    }
    void bind(int place, const std::string& text) {
        require(sqlite3_bind_text(m_statement, place, text.data(), static_cast<int>(text.size()), SQLITE_STATIC) ==
                SQLITE_OK);
    }

    sqlite3* m_database = nullptr;
    sqlite3_stmt* m_statement = nullptr;
};

void FindInSqlite(benchmark::State& state) {
    SQL_TABLE table;
    ask_for_names(state, [&table](std::string& query) {
        normalize_name(query);
        benchmark::DoNotOptimize(table.find(query));
    });
}
BENCHMARK(FindInSqlite);

void InflateGrammar(benchmark::State& state) {
    for ([[maybe_unused]] auto _ : state) {
        const auto data = std::make_unique<Bytef[]>(PGMDDB_GRAMMAR_LENGTH);
        uLongf length = PGMDDB_GRAMMAR_LENGTH;
        uncompress(data.get(), &length, PGMDDB_GRAMMAR_DATA, PGMDDB_GRAMMAR_CMP_LENGTH);
        benchmark::DoNotOptimize(data.get());
    }
}
BENCHMARK(InflateGrammar)->Unit(benchmark::kMicrosecond);

void FirstUseOfGrammar(benchmark::State& state) {
    for ([[maybe_unused]] auto _ : state) {
        free_stores_and_indexes();
        benchmark::DoNotOptimize(get_grammar_store());
    }
}
BENCHMARK(FirstUseOfGrammar)->Unit(benchmark::kMicrosecond);

void DigestsOfAllParts(benchmark::State& state) {
    std::vector<std::string> names;
    for (int part = DEV_PART_INVALID + 1; part < DEV_PART_GENERIC; ++part) {
        names.push_back(dstr_get_user_string(part));
    }
    PGMDEV_MGR::get_opn_hash(names.front());  // makes the digest library ready
    for ([[maybe_unused]] auto _ : state) {
        for (const std::string& name : names) {
            std::array<BYTE, 32> digest;
            gcry_md_hash_buffer(GCRY_MD_SHA256, digest.data(), name.data(), name.size());
            benchmark::DoNotOptimize(digest);
        }
    }
}
BENCHMARK(DigestsOfAllParts)->Unit(benchmark::kMicrosecond);

// Questions for parts, each as the only one and as one of many.

/// Forgets what many questions have made worth while.
void nothing_was_asked() {
    free_part_indexes();
}

void many_were_asked() {}

template <void (*before)()>
void GetOpnFromHash(benchmark::State& state) {
    ask_for_names(state, [](std::string& query) {
        before();
        benchmark::DoNotOptimize(PGMDEV_MGR::get_opn_from_hash(PGMDEV_MGR::get_opn_hash(query.substr(1))));
    });
}
BENCHMARK(GetOpnFromHash<nothing_was_asked>);
BENCHMARK(GetOpnFromHash<many_were_asked>);

template <void (*before)()>
void GetOpnFromUnknownHash(benchmark::State& state) {
    for ([[maybe_unused]] auto _ : state) {
        before();
        benchmark::DoNotOptimize(PGMDEV_MGR::get_opn_from_hash(0));
    }
}
BENCHMARK(GetOpnFromUnknownHash<nothing_was_asked>);
BENCHMARK(GetOpnFromUnknownHash<many_were_asked>);

template <void (*before)()>
void GetOpnEnum(benchmark::State& state) {
    ask_for_names(state, [](std::string& query) {
        before();
        benchmark::DoNotOptimize(PGMDEV_MGR::get_opn_enum(query.substr(1)));
    });
}
BENCHMARK(GetOpnEnum<nothing_was_asked>);
BENCHMARK(GetOpnEnum<many_were_asked>);

template <void (*before)()>
void GetPartNameFromPcf(benchmark::State& state) {
    for ([[maybe_unused]] auto _ : state) {
        before();
        benchmark::DoNotOptimize(PGMDEV_MGR::get_part_name_from_pcf("NO_SUCH_PART"));
    }
}
BENCHMARK(GetPartNameFromPcf<nothing_was_asked>);
BENCHMARK(GetPartNameFromPcf<many_were_asked>);

template <void (*before)()>
void GetPossibleFullName(benchmark::State& state) {
    ask_for_names(state, [](std::string& query) {
        before();
        normalize_name(query);
        benchmark::DoNotOptimize(PGMDEV_MGR::get_possible_full_name(query));
    });
}
BENCHMARK(GetPossibleFullName<nothing_was_asked>);
BENCHMARK(GetPossibleFullName<many_were_asked>);

// What the indexes behind them take, and what they answer without anything around them.

void AskPartIndexForFullName(benchmark::State& state) {
    const PGMDEV_PART_INDEX index;
    ask_for_names(state, [&index](std::string& query) {
        normalize_name(query);
        benchmark::DoNotOptimize(index.get_possible_full_name(query));
    });
}
BENCHMARK(AskPartIndexForFullName);

void AskPartIndexForPcf(benchmark::State& state) {
    const PGMDEV_PART_INDEX index;
    for ([[maybe_unused]] auto _ : state) {
        benchmark::DoNotOptimize(index.get_part_name_from_pcf("NO_SUCH_PART"));
    }
}
BENCHMARK(AskPartIndexForPcf);

template <class INDEX, INDEX* (*index)(INDEX_WANTED)>
void MakeIndex(benchmark::State& state) {
    for ([[maybe_unused]] auto _ : state) {
        free_part_indexes();
        benchmark::DoNotOptimize(index(INDEX_WANTED::NOW));
    }
}
BENCHMARK(MakeIndex<const PART_NAME_INDEX, parts_by_programmer_file_name>)->Unit(benchmark::kMicrosecond);
BENCHMARK(MakeIndex<const PART_NAME_INDEX, parts_by_possible_name>)->Unit(benchmark::kMicrosecond);
BENCHMARK(MakeIndex<const NUMBER_INDEX, parts_by_hash>)->Unit(benchmark::kMicrosecond);
BENCHMARK(MakeIndex<const NUMBER_INDEX, ordering_codes_by_part>)->Unit(benchmark::kMicrosecond);

}  // namespace
