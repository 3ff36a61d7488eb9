#pragma once

/// \file
/// The options that go with every verb as they stand among the arguments: for explanations, which must be possible even
/// when the arguments make no sense.

#include <string>
#include <string_view>
#include <vector>

/// To be called for each run, before anything is explained.
void remember_arguments(const std::vector<std::string>& arguments);

/// The values given for an option that takes one, in order; until the next run.
const std::vector<std::string>& given_values(std::string_view option);

/// Whether an option without a value is among the arguments.
bool is_given(std::string_view option);
