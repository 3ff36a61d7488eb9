#pragma once

/// \file
/// The ordering-code list: which part an ordering-code index stands for.

#include <memory>
#include <span>
#include <vector>

#include "names/container.h"
#include "pgmdev_types.h"

/// Part numbers of the device library by ordering-code index. Most indexes stand for no part and hold 0.
struct OPN_STORE {
    std::vector<DWORD> own;  ///< empty where they are compiled in
    std::span<const DWORD> map;
};

/// Builds the store from a data set, or reports what is wrong with it. What is known of its stream is taken for granted.
std::unique_ptr<OPN_STORE> build_opn_store(const COMPILED_DATA_SET& set);
