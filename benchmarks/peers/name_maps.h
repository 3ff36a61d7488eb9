#pragma once

/// \file
/// What else one could keep names in: memory. Each is made by the constructor and asked by `find`, as files of names are.

#include <cmph.h>

#include <memory>
#include <string>
#include <vector>

#include "peers/hash_map.h"
#include "peers/name_files.h"
#include "support/names.h"

/// A perfect hash (compress, hash and displace), and a look whether it led to the name.
class PERFECT_HASH {
public:
    explicit PERFECT_HASH(const NAME_PAIRS& pairs) {
        std::vector<char*> names;
        for (const auto& [name, key] : pairs) {
            names.push_back(const_cast<char*>(name.c_str()));
        }
        const auto count = static_cast<cmph_uint32>(names.size());
        cmph_io_adapter_t* source = cmph_io_vector_adapter(names.data(), count);
        cmph_config_t* config = cmph_config_new(source);
        cmph_config_set_algo(config, CMPH_CHD);
        m_hash.reset(cmph_new(config));
        cmph_config_destroy(config);
        cmph_io_vector_adapter_destroy(source);
        if (m_hash == nullptr) {
            throw std::runtime_error("cmph");
        }
        m_pairs.resize(cmph_size(m_hash.get()));
        for (const auto& pair : pairs) {
            m_pairs[place_of(pair.first)] = pair;
        }
    }
    std::string find(const std::string& name) const {
        const auto& [found, key] = m_pairs[place_of(name)];
        return found == name ? key : "";
    }

private:
    std::size_t place_of(const std::string& name) const {
        return cmph_search(m_hash.get(), name.data(), static_cast<cmph_uint32>(name.size()));
    }

    struct DESTROY {
        void operator()(cmph_t* hash) const { cmph_destroy(hash); }
    };
    std::unique_ptr<cmph_t, DESTROY> m_hash;
    NAME_PAIRS m_pairs;
};

class SQLITE_IN_MEMORY : public SQLITE_NAMES {
public:
    explicit SQLITE_IN_MEMORY(const NAME_PAIRS& pairs) : SQLITE_NAMES(":memory:") { fill(pairs); }
};
