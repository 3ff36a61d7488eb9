#pragma once

/// \file
/// What the commands about device names share.

#include <functional>
#include <string>
#include <vector>

#include "dstr.h"

/// Calls `use` for the number of every part.
void for_each_part(const std::function<void(int part)>& use);

/// The names that a command knows, for telling the user which one was meant.
std::vector<std::string> part_names();
std::vector<std::string> package_and_programming_names();
std::vector<std::string> programmer_part_names();
std::vector<std::string> device_names();

/// "; did you mean A, B", for the names that differ from `name` by few characters added, left out, replaced or swapped,
/// the most similar first; "" when there are none.
std::string did_you_mean(std::string name, std::vector<std::string> candidates);

/// The answer of an operation that reports when it finds nothing: such reports are kept from the user, to whom not
/// finding is a result. Reports that end the operation are shown as everywhere.
std::string ask_quietly(const std::function<std::string()>& operation);
