#pragma once

/// \file
/// Counting the fields of a record, so that a field without a row in the member table does not compile.

#include <cstddef>
#include <utility>

/// Stands for a value of any type; only in what is never evaluated.
struct ANY_VALUE {
    template <class T>
    operator T&() const&;  // NOLINT(google-explicit-constructor)
    template <class T>
    operator T&&() const&&;  // NOLINT(google-explicit-constructor)
};

template <class RECORD, std::size_t... PLACES>
constexpr bool takes_values(std::index_sequence<PLACES...> /*as many values*/) {
    return requires {
        RECORD{(void(PLACES), ANY_VALUE{})...};
    };
}

/// How many fields an aggregate has: the largest number of values that it can be initialised from.
template <class RECORD, std::size_t KNOWN = 0>
constexpr std::size_t field_count() {
    if constexpr (takes_values<RECORD>(std::make_index_sequence<KNOWN + 1>())) {
        return field_count<RECORD, KNOWN + 1>();
    } else {
        return KNOWN;
    }
}
