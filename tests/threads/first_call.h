#pragma once

/// \file
/// Calls that many threads make first of all, at the same time.

#include <array>
#include <atomic>
#include <functional>
#include <ostream>
#include <string>
#include <thread>
#include <vector>

#include "support/start_line.h"

inline constexpr int THREADS = 8;

/// What eight threads get that ask at the same time.
inline std::vector<std::string> answers_to_all(const std::function<std::string()>& question) {
    START_LINE line(THREADS);
    std::vector<std::string> answers(THREADS);
    std::vector<std::thread> threads;
    threads.reserve(THREADS);
    for (std::string& answer : answers) {
        threads.emplace_back([&] {
            line.arrive_and_wait();
            answer = question();
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    return answers;
}

struct FIRST_CALL {
    const char* name;
    std::string (*ask)();
    const char* answer;
};

inline void PrintTo(const FIRST_CALL& call, std::ostream* stream) {
    *stream << call.name;
}

/// What each of eight threads gets wrong that make all of the calls, each beginning with another one, that many further on.
template <std::size_t COUNT>
std::vector<std::string> wrong_of_all_at_once(const std::array<FIRST_CALL, COUNT>& calls, std::size_t further) {
    std::atomic<std::size_t> next{0};
    return answers_to_all([&] {
        const std::size_t first = next.fetch_add(further);
        std::string names;
        for (std::size_t i = 0; i < COUNT; ++i) {
            const FIRST_CALL& call = calls.at((first + i) % COUNT);
            names += call.ask() == call.answer ? "" : std::string(call.name) + " ";
        }
        return names;
    });
}
