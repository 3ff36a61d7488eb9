#pragma once

/// \file
/// What a person who typed an unknown name may have meant.

#include <functional>
#include <string>
#include <vector>

/// Names that differ from `name` by few characters added, left out, replaced or swapped, in any case, the most similar
/// first; only those that `may_be_meant` accepts, when there is one: it is asked of the most similar ones.
std::vector<std::string> nearest(const std::string& name, const std::vector<std::string>& candidates,
                                 const std::function<bool(const std::string& candidate)>& may_be_meant = {});

/// Names that begin with `name`, or are the beginning of it, in their order: for names that people cut short.
std::vector<std::string> longer_or_shorter(const std::string& name, const std::vector<std::string>& candidates);

/// "; did you mean A, B", or "" when there are no names, and when the user wants no hints.
std::string did_you_mean(const std::vector<std::string>& names);
