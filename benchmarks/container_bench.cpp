#include <benchmark/benchmark.h>
#include <fcntl.h>
#include <unistd.h>

#include <cstdio>
#include <filesystem>
#include <memory>

#include "gen.h"
#include "peers/lmdb.h"
#include "peers/sqlite.h"
#include "pgmdev_flash_ini.h"
#include "support/scratch.h"

// Reading and writing a block of the parameter container, beside a file that is replaced in one step, SQLite and LMDB. All
// of them keep what was written when the power fails.

namespace {

constexpr DWORD BLOCK_SIZE = 1000;
const std::string BLOCK(BLOCK_SIZE, 'x');

// Its own directory, since the container takes the name that it has in the directory of a library.
void begin_container() {
    const std::string directory = new_scratch_file("container");
    std::filesystem::create_directory(directory);
    gen_set_module_path(directory);
}

bool write_block() {
    std::string block = BLOCK;
    return PGMDEV_FLASH_INI::write_flash_ini_data(PGMDEV_FLASH_INI_SFL_FLASH, reinterpret_cast<BYTE*>(block.data()),
                                                  BLOCK_SIZE);
}

void WriteBlock(benchmark::State& state) {
    begin_container();
    for ([[maybe_unused]] auto _ : state) {
        if (!write_block()) {
            state.SkipWithError("not written");
        }
    }
}
BENCHMARK(WriteBlock)->Unit(benchmark::kMicrosecond)->UseRealTime();

void ReadBlock(benchmark::State& state) {
    begin_container();
    if (!write_block()) {
        state.SkipWithError("not written");
    }
    for ([[maybe_unused]] auto _ : state) {
        DWORD size = 0;
        const std::unique_ptr<BYTE[]> block(PGMDEV_FLASH_INI::read_flash_ini_data(PGMDEV_FLASH_INI_SFL_FLASH, size));
        if (size != BLOCK_SIZE) {
            state.SkipWithError("not read");
        }
    }
}
BENCHMARK(ReadBlock)->Unit(benchmark::kMicrosecond)->UseRealTime();

bool synchronised(int file) {
    const bool done = ::fsync(file) == 0;
    ::close(file);
    return done;
}

/// As little as it takes: a new file, the name, and its directory.
bool replace_file(const std::string& path) {
    const std::string temporary = path + ".new";
    const int file = ::open(temporary.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0600);
    const bool written = ::write(file, BLOCK.data(), BLOCK.size()) == static_cast<ssize_t>(BLOCK.size());
    if (!synchronised(file) || !written || std::rename(temporary.c_str(), path.c_str()) != 0) {
        return false;
    }
    return synchronised(::open(BENCHMARK_SCRATCH_DIR, O_RDONLY | O_DIRECTORY | O_CLOEXEC));
}

void ReplaceFile(benchmark::State& state) {
    const std::string path = new_scratch_file("replaced");
    for ([[maybe_unused]] auto _ : state) {
        if (!replace_file(path)) {
            state.SkipWithError("not written");
        }
    }
}
BENCHMARK(ReplaceFile)->Unit(benchmark::kMicrosecond)->UseRealTime();

void ReadWholeFile(benchmark::State& state) {
    const std::string path = new_scratch_file("read");
    write_text(path, BLOCK);
    for ([[maybe_unused]] auto _ : state) {
        benchmark::DoNotOptimize(read_text(path));
    }
}
BENCHMARK(ReadWholeFile)->Unit(benchmark::kMicrosecond)->UseRealTime();

/// A new file is written for each run.
struct SQLITE_BLOCKS {
    static std::string new_file() {
        std::filesystem::remove(new_scratch_file("blocks.sqlite") + "-wal");
        return new_scratch_file("blocks.sqlite");
    }

    SQLITE_DATABASE database{new_file()};

    SQLITE_BLOCKS() {
        database.execute(
            "PRAGMA journal_mode = WAL; PRAGMA synchronous = FULL;"
            "CREATE TABLE blocks(number INTEGER PRIMARY KEY, block BLOB)");
    }
    void write() {
        SQLITE_STATEMENT insert(database, "INSERT OR REPLACE INTO blocks VALUES(0, ?)");
        insert.bind(1, std::string_view(BLOCK));
        insert.step();
    }
};

void WriteBlockBySqlite(benchmark::State& state) {
    SQLITE_BLOCKS blocks;
    for ([[maybe_unused]] auto _ : state) {
        blocks.write();
    }
}
BENCHMARK(WriteBlockBySqlite)->Unit(benchmark::kMicrosecond)->UseRealTime();

/// Opened anew for each, as the container is.
void ReadBlockBySqlite(benchmark::State& state) {
    SQLITE_BLOCKS blocks;
    blocks.write();
    const std::string path = sqlite3_db_filename(blocks.database.handle(), "main");
    for ([[maybe_unused]] auto _ : state) {
        SQLITE_DATABASE database(path);
        SQLITE_STATEMENT select(database, "SELECT block FROM blocks WHERE number = 0");
        SQLITE_DATABASE::require(select.step());
        benchmark::DoNotOptimize(std::string(select.text(0)));
    }
}
BENCHMARK(ReadBlockBySqlite)->Unit(benchmark::kMicrosecond)->UseRealTime();

std::string new_lmdb_file() {
    std::filesystem::remove(new_scratch_file("blocks.lmdb") + "-lock");
    return new_scratch_file("blocks.lmdb");
}

void write_by_lmdb(LMDB_ENVIRONMENT& environment) {
    LMDB_TRANSACTION transaction(environment);
    transaction.put("0", BLOCK);
    transaction.commit();
}

void WriteBlockByLmdb(benchmark::State& state) {
    LMDB_ENVIRONMENT environment(new_lmdb_file());
    for ([[maybe_unused]] auto _ : state) {
        write_by_lmdb(environment);
    }
}
BENCHMARK(WriteBlockByLmdb)->Unit(benchmark::kMicrosecond)->UseRealTime();

void ReadBlockByLmdb(benchmark::State& state) {
    const std::string path = new_lmdb_file();
    {
        LMDB_ENVIRONMENT environment(path);
        write_by_lmdb(environment);
    }
    for ([[maybe_unused]] auto _ : state) {
        LMDB_ENVIRONMENT environment(path, MDB_RDONLY);
        benchmark::DoNotOptimize(std::string(LMDB_TRANSACTION(environment, MDB_RDONLY).get("0")));
    }
}
BENCHMARK(ReadBlockByLmdb)->Unit(benchmark::kMicrosecond)->UseRealTime();

}  // namespace
