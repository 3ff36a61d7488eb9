#pragma once

#include <string>
#include <unordered_map>

#include "support/names.h"

/// The limit for names in memory.
class HASH_MAP {
public:
    explicit HASH_MAP(const NAME_PAIRS& pairs) : m_keys(pairs.begin(), pairs.end()) {}
    std::string find(const std::string& name) const { return m_keys.find(name)->second; }

private:
    std::unordered_map<std::string, std::string> m_keys;
};
