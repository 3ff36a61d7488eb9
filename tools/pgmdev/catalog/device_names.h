#pragma once

/// \file
/// What the commands about device names share.

#include <functional>
#include <string>
#include <vector>

#include "dstr.h"
#include "upper_name.h"

/// In order, each once.
std::vector<std::string> without_repetitions(std::vector<std::string> names);

/// The names that a command knows, for telling the user which one was meant; each list is made once.
const std::vector<std::string>& part_names();
const std::vector<std::string>& package_and_programming_names();
const std::vector<std::string>& programmer_part_names();
const std::vector<std::string>& converted_names();  ///< what names of parts and devices are converted to
const std::vector<std::string>& device_names();
const std::vector<std::string>& family_names();

/// The answer of an operation that reports when it finds nothing: such reports are kept from the user, to whom not
/// finding is a result. Reports that end the operation are shown as everywhere.
std::string ask_quietly(const std::function<std::string()>& operation);
