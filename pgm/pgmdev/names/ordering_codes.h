#pragma once

/// \file
/// The ordering-code list: which part an ordering-code index stands for.

#include <memory>
#include <vector>

#include "names/container.h"
#include "pgmdev_types.h"

/// Part numbers of the device library by ordering-code index. Most indexes stand for no part and hold 0.
struct OPN_STORE {
    std::unique_ptr<const std::vector<DWORD>> map;
};

/// Builds the store from a data set, or reports what is wrong with it.
std::unique_ptr<OPN_STORE> build_opn_store(const COMPILED_DATA_SET& set);
