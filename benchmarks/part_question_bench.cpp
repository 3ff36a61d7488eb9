#include <benchmark/benchmark.h>

#include <string_view>
#include <unordered_map>

#include "dstr.h"
#include "names/clean_up.h"
#include "names/part_indexes.h"
#include "peers/name_maps.h"
#include "pgmdev_mgr.h"
#include "pgmdev_part_index.h"
#include "sha256.h"
#include "stl.h"
#include "support/names.h"

// Questions for parts, each as the first one of a process, the only one once the stores are there, and one of many.

namespace {

void first_of_all() {
    free_stores_and_indexes();
}

void nothing_was_asked() {
    free_part_indexes();
}

void many_were_asked() {}

template <void (*before)()>
void GetOpnFromHash(benchmark::State& state) {
    ask_for_names(state, [](std::string& query) {
        const QWORD hash = PGMDEV_MGR::get_opn_hash(query.substr(1));
        before();
        return PGMDEV_MGR::get_opn_from_hash(hash);
    });
}
BENCHMARK(GetOpnFromHash<first_of_all>);
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
        return PGMDEV_MGR::get_opn_enum(query.substr(1));
    });
}
BENCHMARK(GetOpnEnum<first_of_all>);
BENCHMARK(GetOpnEnum<nothing_was_asked>);
BENCHMARK(GetOpnEnum<many_were_asked>);

template <void (*before)()>
void GetPartNameFromPcf(benchmark::State& state) {
    ask_for(state, typed_programmer_file_names(), [](std::string& query) {
        before();
        return PGMDEV_MGR::get_part_name_from_pcf(query.substr(1));
    });
}
BENCHMARK(GetPartNameFromPcf<first_of_all>);
BENCHMARK(GetPartNameFromPcf<nothing_was_asked>);
BENCHMARK(GetPartNameFromPcf<many_were_asked>);

template <void (*before)()>
void GetPossibleFullName(benchmark::State& state) {
    ask_for(state, typed_package_names(), [](std::string& query) {
        before();
        return PGMDEV_MGR::get_possible_full_name(query.substr(1));
    });
}
BENCHMARK(GetPossibleFullName<first_of_all>);
BENCHMARK(GetPossibleFullName<nothing_was_asked>);
BENCHMARK(GetPossibleFullName<many_were_asked>);

void AskPartIndexForFullName(benchmark::State& state) {
    const PGMDEV_PART_INDEX index;
    ask_for(state, typed_package_names(),
            [&index](std::string& query) { return index.get_possible_full_name(query.substr(1)); });
}
BENCHMARK(AskPartIndexForFullName);

// What is behind them.

void DigestOfName(benchmark::State& state) {
    ask_for_names(state, [](std::string& query) { return sha256(std::string_view(query).substr(1)); });
}
BENCHMARK(DigestOfName);

/// A hash of 48 bits to a name by a hash map, with a digest to get the hash, as the question above needs one.
void FindNumberInHashMap(benchmark::State& state) {
    std::unordered_map<QWORD, std::string> names;
    for (int part = DEV_PART_INVALID + 1; part < DEV_PART_GENERIC; ++part) {
        const std::string name = dstr_get_user_string(part);
        names.emplace(PGMDEV_MGR::get_opn_hash(name), name);
    }
    ask_for_names(
        state, [&names](std::string& query) { return names.find(PGMDEV_MGR::get_opn_hash(query.substr(1)))->second; });
}
BENCHMARK(FindNumberInHashMap);

/// The way that names are typed is the hash map's matter, too.
void ask_hash_map(benchmark::State& state, const HASH_MAP& map, const std::vector<std::string>& names) {
    ask_for(state, names, [&map](std::string& query) {
        std::string name = query.substr(1);
        stl_toupper(name);
        return map.find(name);
    });
}

void FindFullNameInHashMap(benchmark::State& state) {
    static const HASH_MAP NAMES(package_names());
    ask_hash_map(state, NAMES, typed_names());
}
BENCHMARK(FindFullNameInHashMap);

/// The first full name of a package name.
void FindPackageNameInHashMap(benchmark::State& state) {
    static const HASH_MAP NAMES([] {
        NAME_PAIRS pairs;
        for (const auto& [name, package_name] : package_names()) {
            pairs.emplace_back(package_name, name);
        }
        return pairs;
    }());
    ask_hash_map(state, NAMES, typed_package_names());
}
BENCHMARK(FindPackageNameInHashMap);

/// The part of a programmer-file name, "" for most.
void FindProgrammerFileNameInHashMap(benchmark::State& state) {
    static const HASH_MAP NAMES([] {
        NAME_PAIRS pairs;
        for (const std::string& typed : typed_programmer_file_names()) {
            std::string name = typed.substr(1);
            stl_toupper(name);
            pairs.emplace_back(name, PGMDEV_MGR::get_part_name_from_pcf(name));
        }
        return pairs;
    }());
    ask_hash_map(state, NAMES, typed_programmer_file_names());
}
BENCHMARK(FindProgrammerFileNameInHashMap);

void DigestsOfAllParts(benchmark::State& state) {
    for ([[maybe_unused]] auto _ : state) {
        for (const auto& [name, package_name] : package_names()) {
            benchmark::DoNotOptimize(sha256(name));
        }
    }
}
BENCHMARK(DigestsOfAllParts)->Unit(benchmark::kMicrosecond);

void WalkOverParts(benchmark::State& state) {
    for ([[maybe_unused]] auto _ : state) {
        for (int part = DEV_PART_INVALID + 1; part < DEV_PART_GENERIC; ++part) {
            benchmark::DoNotOptimize(dstr_get_user_string(part));
        }
    }
}
BENCHMARK(WalkOverParts)->Unit(benchmark::kMicrosecond);

}  // namespace
