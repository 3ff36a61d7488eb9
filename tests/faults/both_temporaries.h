#pragma once

/// \file
/// Tests that run with temporaries that have no name until they are to take one, and on a system that has no such files.

#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <utility>

#include "support/faulty_system.h"

enum class TEMPORARIES { UNNAMED, NAMED };

class BOTH_TEMPORARIES : public testing::TestWithParam<TEMPORARIES> {
    const std::optional<NO_UNNAMED_FILES> m_names = GetParam() == TEMPORARIES::NAMED
                                                        ? std::optional<NO_UNNAMED_FILES>(std::in_place)
                                                        : std::optional<NO_UNNAMED_FILES>();
};

inline const auto BOTH_KINDS = testing::Values(TEMPORARIES::UNNAMED, TEMPORARIES::NAMED);

inline std::string name_of_kind(const testing::TestParamInfo<TEMPORARIES>& kind) {
    return kind.param == TEMPORARIES::NAMED ? "Named" : "Unnamed";
}
