#pragma once

/// \file
/// What a person who typed an unknown name may have meant: "; did you mean A, B", or "" when nothing comes to mind.

#include <string>
#include <vector>

/// Names that differ from `name` by few characters added, left out, replaced or swapped, the most similar first.
std::string did_you_mean(std::string name, std::vector<std::string> candidates);

/// Names that begin with `name`, or are the beginning of it, in their order: for names that people cut short.
std::string did_you_mean_longer_or_shorter(const std::string& name, const std::vector<std::string>& candidates);
