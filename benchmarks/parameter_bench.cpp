#include <benchmark/benchmark.h>

#include <array>
#include <charconv>
#include <cstring>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "pgmdev_flash_ini.h"

// The values of a block of the parameter container: a record of the user's SPI flash list there and back, and numbers that
// people type.

namespace {

struct VALUES {
    std::string maker = "MICRON";
    std::string device = "QSPI_256";
    QWORD bits = QWORD{1} << 28U;
    std::array<DWORD, 8> numbers{0x19BA20, 0xFFFFFF, 0, 0, 65536, 256, 240, 1};
    bool flag = true;

    bool operator==(const VALUES&) const = default;
};

constexpr std::size_t COUNT = 12;

struct FIELDS {
    std::array<PGMDEV_PARAM_TYPE, COUNT> types{PGMDEV_PARAM_STRING, PGMDEV_PARAM_STRING, PGMDEV_PARAM_QWORD,
                                               PGMDEV_PARAM_DWORD,  PGMDEV_PARAM_DWORD,  PGMDEV_PARAM_DWORD,
                                               PGMDEV_PARAM_DWORD,  PGMDEV_PARAM_DWORD,  PGMDEV_PARAM_DWORD,
                                               PGMDEV_PARAM_DWORD,  PGMDEV_PARAM_DWORD,  PGMDEV_PARAM_BOOL};
    std::array<void*, COUNT> values;

    explicit FIELDS(VALUES& of)
        : values{&of.maker,      &of.device,     &of.bits,       of.numbers.data(), &of.numbers[1], &of.numbers[2],
                 &of.numbers[3], &of.numbers[4], &of.numbers[5], &of.numbers[6],    &of.numbers[7], &of.flag} {}
};

std::vector<BYTE> encoded(FIELDS& fields) {
    DWORD size = 0;
    for (std::size_t i = 0; i < COUNT; ++i) {
        PGMDEV_FLASH_INI::calculate_flash_ini_data_size(size, fields.types[i], fields.values[i]);
    }
    std::vector<BYTE> block(size);
    DWORD position = 0;
    for (std::size_t i = 0; i < COUNT; ++i) {
        PGMDEV_FLASH_INI::fillup_flash_ini_data(block.data(), position, fields.types[i], fields.values[i]);
    }
    return block;
}

void EncodeValues(benchmark::State& state) {
    VALUES values;
    FIELDS fields(values);
    for ([[maybe_unused]] auto _ : state) {
        benchmark::DoNotOptimize(encoded(fields));
    }
}
BENCHMARK(EncodeValues);

void DecodeValues(benchmark::State& state) {
    VALUES values;
    FIELDS fields(values);
    const std::vector<BYTE> block = encoded(fields);
    VALUES read{"", "", 0, {}, false};
    FIELDS places(read);
    for ([[maybe_unused]] auto _ : state) {
        DWORD position = 0;
        if (!PGMDEV_FLASH_INI::assign_flash_ini_data(block.data(), position, static_cast<DWORD>(block.size()), COUNT,
                                                     places.types.data(), places.values.data()) ||
            read != values) {
            state.SkipWithError("not what was written");
        }
    }
}
BENCHMARK(DecodeValues);

std::string encoded_as_json(const VALUES& values) {
    return nlohmann::json{values.maker, values.device, values.bits, values.numbers, values.flag}.dump();
}

void EncodeValuesAsJson(benchmark::State& state) {
    const VALUES values;
    for ([[maybe_unused]] auto _ : state) {
        benchmark::DoNotOptimize(encoded_as_json(values));
    }
}
BENCHMARK(EncodeValuesAsJson);

void DecodeValuesFromJson(benchmark::State& state) {
    const VALUES values;
    const std::string text = encoded_as_json(values);
    for ([[maybe_unused]] auto _ : state) {
        const nlohmann::json document = nlohmann::json::parse(text);
        const VALUES read{document[0], document[1], document[2], document[3], document[4]};
        if (read != values) {
            state.SkipWithError("not what was written");
        }
    }
}
BENCHMARK(DecodeValuesFromJson);

/// The limit: numbers and texts copied as they lie in memory.
struct PLAIN {
    std::array<char, 16> maker{}, device{};
    QWORD bits = 0;
    std::array<DWORD, 8> numbers{};
    bool flag = false;
};

std::vector<BYTE> copied(const VALUES& values) {
    PLAIN plain;
    values.maker.copy(plain.maker.data(), plain.maker.size());
    values.device.copy(plain.device.data(), plain.device.size());
    plain.bits = values.bits;
    plain.numbers = values.numbers;
    plain.flag = values.flag;
    std::vector<BYTE> block(sizeof plain);
    std::memcpy(block.data(), &plain, sizeof plain);
    return block;
}

void CopyValues(benchmark::State& state) {
    VALUES values;
    for ([[maybe_unused]] auto _ : state) {
        benchmark::DoNotOptimize(values);  // the compiler does not know them
        benchmark::DoNotOptimize(copied(values));
    }
}
BENCHMARK(CopyValues);

void CopyValuesBack(benchmark::State& state) {
    const VALUES values;
    const std::vector<BYTE> block = copied(values);
    VALUES read{"", "", 0, {}, false};
    for ([[maybe_unused]] auto _ : state) {
        benchmark::DoNotOptimize(block.data());
        PLAIN plain;
        std::memcpy(&plain, block.data(), sizeof plain);
        read.maker = plain.maker.data();
        read.device = plain.device.data();
        read.bits = plain.bits;
        read.numbers = plain.numbers;
        read.flag = plain.flag;
        if (read != values) {
            state.SkipWithError("not what was copied");
        }
    }
}
BENCHMARK(CopyValuesBack);

void ConvertNumber(benchmark::State& state) {
    QWORD sum = 0;
    for ([[maybe_unused]] auto _ : state) {
        bool valid = false;
        sum += PGMDEV_FLASH_INI::convert_string_to_qword("0x40000000", true, &valid);
        benchmark::DoNotOptimize(sum);
    }
}
BENCHMARK(ConvertNumber);

void ConvertNumberByCharconv(benchmark::State& state) {
    QWORD sum = 0;
    for ([[maybe_unused]] auto _ : state) {
        std::string text = "0x40000000";
        benchmark::DoNotOptimize(text);
        QWORD number = 0;
        std::from_chars(text.data() + 2, text.data() + text.size(), number, 16);
        sum += number;
        benchmark::DoNotOptimize(sum);
    }
}
BENCHMARK(ConvertNumberByCharconv);

}  // namespace
