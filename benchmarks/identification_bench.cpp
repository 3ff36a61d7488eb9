#include <benchmark/benchmark.h>

#include <algorithm>
#include <unordered_map>

#include "peers/sqlite.h"
#include "pgmdev_flash_candidates.h"
#include "support/responses.h"

// Which of 1,000 flash records a response belongs to, beside a bare array, a hash map and SQLite.

namespace {

template <class IDENTIFY>
void ask_for_responses(benchmark::State& state, IDENTIFY identify) {
    std::vector<RESPONSE> asked = responses();
    std::size_t next = 0;
    for ([[maybe_unused]] auto _ : state) {
        benchmark::DoNotOptimize(identify(asked[next]));
        next = next + 1 < asked.size() ? next + 1 : 0;
    }
}

void IdentifyByManager(benchmark::State& state) {
    ask_for_responses(
        state, [](RESPONSE& response) { return flash_1000().flash_id_database_mapping(false, 0, response.data()); });
}
BENCHMARK(IdentifyByManager);

void IdentifyByIndex(benchmark::State& state) {
    const PGMDEV_FLASH_INDEX index(flash_1000().get_flash_database(), flash_1000().get_flash_count());
    ask_for_responses(state, [&index](RESPONSE& response) { return index.taken(false, response.data(), 5); });
}
BENCHMARK(IdentifyByIndex);

/// What a record compares, and nothing else.
struct COMPARED {
    bool silicon;
    BYTE id, id_index, type, type_index, maker, maker_index;

    bool matches(const RESPONSE& response) const {
        return !silicon && response[id_index] == id && (type_index == 255 || response[type_index] == type) &&
               response[maker_index] == maker;
    }
};

std::vector<COMPARED> compared_bytes() {
    std::vector<COMPARED> all;
    for (DWORD i = 0; i < flash_1000().get_flash_count(); ++i) {
        const PGMDEV_SFL_FLASH_INFO& record = flash_1000().get_flash_database()[i];
        all.push_back({record.silicon_id, record.memory_id, record.memory_id_index, record.memory_type,
                       record.memory_type_index, record.mfc_id, record.mfc_id_index});
    }
    return all;
}

void WalkBareArray(benchmark::State& state) {
    const std::vector<COMPARED> records = compared_bytes();
    ask_for_responses(state, [&records](const RESPONSE& response) {
        return std::find_if(records.begin(), records.end(),
                            [&response](const COMPARED& record) { return record.matches(response); });
    });
}
BENCHMARK(WalkBareArray);

/// By the three bytes that nearly all records compare.
DWORD common_bytes(const RESPONSE& response) {
    return response[0] | DWORD{response[1]} << 8U | DWORD{response[2]} << 16U;
}

void FindResponseInHashMap(benchmark::State& state) {
    std::unordered_map<DWORD, std::size_t> places;
    for (const RESPONSE& response : responses()) {
        places.emplace(common_bytes(response), places.size());
    }
    ask_for_responses(state,
                      [&places](const RESPONSE& response) { return places.find(common_bytes(response))->second; });
}
BENCHMARK(FindResponseInHashMap);

void FindResponseInSqlite(benchmark::State& state) {
    SQLITE_DATABASE database(":memory:");
    database.execute("CREATE TABLE responses(bytes INTEGER PRIMARY KEY, place INTEGER); BEGIN");
    SQLITE_STATEMENT insert(database, "INSERT OR IGNORE INTO responses VALUES(?, ?)");
    sqlite3_int64 place = 0;
    for (const RESPONSE& response : responses()) {
        insert.bind(1, sqlite3_int64{common_bytes(response)});
        insert.bind(2, ++place);
        insert.step();
        insert.reset();
    }
    database.execute("COMMIT");
    SQLITE_STATEMENT find(database, "SELECT place FROM responses WHERE bytes = ?");
    ask_for_responses(state, [&find](const RESPONSE& response) {
        find.bind(1, sqlite3_int64{common_bytes(response)});
        SQLITE_DATABASE::require(find.step());
        const sqlite3_int64 found = find.number(0);
        find.reset();
        return found;
    });
}
BENCHMARK(FindResponseInSqlite);

}  // namespace
