#pragma once

/// \file
/// Names of one kind, none of which may be given twice.

#include <map>
#include <optional>
#include <string>

#include "faults.h"
#include "source_rows.h"

/// Knows names without regard to case, and where each was given.
class NAME_REGISTRY {
public:
    /// `what` names the kind in faults.
    explicit NAME_REGISTRY(const char* what) : m_what(what) {}

    /// Adds a name for the thing with that index. A name that is there already is a fault; false then.
    bool add(const std::string& name, std::size_t index, const SOURCE_PLACE& place, FAULTS& faults) {
        if (!is_free(name, place, faults)) {
            return false;
        }
        m_entries.emplace(upper_case(name), ENTRY{index, place});
        return true;
    }

    /// Whether the name can be added. A name that is there already is a fault.
    bool is_free(const std::string& name, const SOURCE_PLACE& place, FAULTS& faults) const {
        const auto entry = m_entries.find(upper_case(name));
        if (entry != m_entries.end()) {
            faults.add(place,
                       std::string(m_what) + " \"" + name + "\" is already given at " + text_of(entry->second.place));
        }
        return entry == m_entries.end();
    }

    /// The index for the name. A name that is not there is a fault.
    std::optional<std::size_t> find(const std::string& name, const SOURCE_PLACE& place, FAULTS& faults) const {
        const auto entry = m_entries.find(upper_case(name));
        if (entry == m_entries.end()) {
            faults.add(place, std::string(m_what) + " \"" + name + "\" is not known");
            return std::nullopt;
        }
        return entry->second.index;
    }

private:
    struct ENTRY {
        std::size_t index;
        SOURCE_PLACE place;
    };

    const char* m_what;
    std::map<std::string, ENTRY> m_entries;
};
