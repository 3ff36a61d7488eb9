#include <benchmark/benchmark.h>
#include <libdeflate.h>
#include <zlib.h>

#include <memory>
#include <span>
#include <vector>

#include "names/clean_up.h"
#include "names/compiled_in_data.h"
#include "names/stores.h"
#include "peers/name_files.h"
#include "peers/name_maps.h"
#include "support/names.h"

// What the first question costs: making the compiled-in data ready, and what others take to be ready with the same names.

namespace {

/// A set of the compiled-in data.
struct DATA {
    const BYTE* stream;
    DWORD stream_length;
    DWORD length;
};

DATA grammar() {
    return {PGMDDB_GRAMMAR_DATA, PGMDDB_GRAMMAR_CMP_LENGTH, PGMDDB_GRAMMAR_LENGTH};
}

DATA ordering_codes() {
    return {PGMDDB_OPN_DATA, PGMDDB_OPN_CMP_LENGTH, PGMDDB_OPN_LENGTH};
}

void FirstUseOfGrammar(benchmark::State& state) {
    for ([[maybe_unused]] auto _ : state) {
        free_stores_and_indexes();
        benchmark::DoNotOptimize(get_grammar_store());
    }
}
BENCHMARK(FirstUseOfGrammar)->Unit(benchmark::kMicrosecond);

void FirstUseOfOrderingCodes(benchmark::State& state) {
    for ([[maybe_unused]] auto _ : state) {
        free_stores_and_indexes();
        benchmark::DoNotOptimize(get_opn_store());
    }
}
BENCHMARK(FirstUseOfOrderingCodes)->Unit(benchmark::kMicrosecond);

template <DATA (*set)()>
void InflateByZlib(benchmark::State& state) {
    const DATA data = set();
    for ([[maybe_unused]] auto _ : state) {
        const auto body = std::make_unique_for_overwrite<Bytef[]>(data.length);
        uLongf length = data.length;
        if (uncompress(body.get(), &length, data.stream, data.stream_length) != Z_OK) {
            state.SkipWithError("not inflated");
        }
        benchmark::DoNotOptimize(body.get());
    }
}
BENCHMARK(InflateByZlib<grammar>)->Unit(benchmark::kMicrosecond);
BENCHMARK(InflateByZlib<ordering_codes>)->Unit(benchmark::kMicrosecond);

template <DATA (*set)()>
void InflateByLibdeflate(benchmark::State& state) {
    const DATA data = set();
    for ([[maybe_unused]] auto _ : state) {
        const std::unique_ptr<libdeflate_decompressor, void (*)(libdeflate_decompressor*)> inflater(
            libdeflate_alloc_decompressor(), libdeflate_free_decompressor);
        const auto body = std::make_unique_for_overwrite<BYTE[]>(data.length);
        if (libdeflate_zlib_decompress(inflater.get(), data.stream, data.stream_length, body.get(), data.length,
                                       nullptr) != LIBDEFLATE_SUCCESS) {
            state.SkipWithError("not inflated");
        }
        benchmark::DoNotOptimize(body.get());
    }
}
BENCHMARK(InflateByLibdeflate<grammar>)->Unit(benchmark::kMicrosecond);
BENCHMARK(InflateByLibdeflate<ordering_codes>)->Unit(benchmark::kMicrosecond);

/// Opening a file with all names, and finding one.
template <class NAME_FILE>
void OpenAndFindName(benchmark::State& state) {
    static const std::string PATH = written_names<NAME_FILE>("grammar", grammar_pairs());
    const std::string& name = grammar_pairs()[grammar_pairs().size() / 4].first;
    for ([[maybe_unused]] auto _ : state) {
        NAME_FILE file(PATH);
        benchmark::DoNotOptimize(file.find(name));
    }
}
BENCHMARK(OpenAndFindName<SQLITE_FILE>)->Unit(benchmark::kMicrosecond);
BENCHMARK(OpenAndFindName<LMDB_FILE>)->Unit(benchmark::kMicrosecond);
BENCHMARK(OpenAndFindName<CDB_FILE>)->Unit(benchmark::kMicrosecond);
BENCHMARK(OpenAndFindName<TEXT_FILE>)->Unit(benchmark::kMicrosecond);
BENCHMARK(OpenAndFindName<JSON_FILE>)->Unit(benchmark::kMicrosecond);

void FillHashMapWithNames(benchmark::State& state) {
    const NAME_PAIRS& pairs = grammar_pairs();
    for ([[maybe_unused]] auto _ : state) {
        benchmark::DoNotOptimize(HASH_MAP(pairs));
    }
}
BENCHMARK(FillHashMapWithNames)->Unit(benchmark::kMicrosecond);

/// The ordering codes as four bytes each in a file.
void ReadNumbersFromFile(benchmark::State& state) {
    const std::span<const DWORD> parts = opn_list(get_opn_store());
    const std::string path = new_scratch_file("ordering_codes.bin");
    write_text(path, {reinterpret_cast<const char*>(parts.data()), parts.size() * sizeof(DWORD)});
    for ([[maybe_unused]] auto _ : state) {
        const std::string bytes = read_text(path);
        std::vector<DWORD> read(bytes.size() / sizeof(DWORD));
        std::memcpy(read.data(), bytes.data(), bytes.size());
        benchmark::DoNotOptimize(read.data());
    }
}
BENCHMARK(ReadNumbersFromFile)->Unit(benchmark::kMicrosecond);

void ParseNumbersAsJson(benchmark::State& state) {
    const std::span<const DWORD> parts = opn_list(get_opn_store());
    const std::string path = new_scratch_file("ordering_codes.json");
    write_text(path, nlohmann::json(std::vector<DWORD>(parts.begin(), parts.end())).dump());
    for ([[maybe_unused]] auto _ : state) {
        benchmark::DoNotOptimize(nlohmann::json::parse(read_text(path)).get<std::vector<DWORD>>());
    }
}
BENCHMARK(ParseNumbersAsJson)->Unit(benchmark::kMicrosecond);

}  // namespace
