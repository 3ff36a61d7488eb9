#pragma once

/// \file
/// By which variables of its environment a program is told that has been loaded with starving_allocator.cpp.

/// Numbers, from 1: the allocations between them, both included, fail. Without them, none does.
inline constexpr const char* FIRST_FAILING_ALLOCATION = "STARVED_PROGRAM_FIRST";
inline constexpr const char* LAST_FAILING_ALLOCATION = "STARVED_PROGRAM_LAST";

/// A file that receives, at the end, how many there were before `main` and in all.
inline constexpr const char* ALLOCATION_COUNTS_FILE = "STARVED_PROGRAM_COUNTS";
