#include "grammar.h"

#include "source_rows.h"

namespace {

struct TABLE_WORDS {
    const char* key;
    const char* entry;
};

constexpr std::array<TABLE_WORDS, GRAMMAR_TABLE_COUNT> WORDS{{{"package name", "ordering name"},
                                                              {"programming name", "package name"},
                                                              {"programmer part", "programming name"},
                                                              {"programmer family", "programming name"},
                                                              {"programmer part", "device"},
                                                              {"programmer family", "device"},
                                                              {"programmer family", "family"},
                                                              {"family", "programmer part"}}};

class GRAMMAR_BUILDER {
public:
    explicit GRAMMAR_BUILDER(FAULTS& faults) : m_faults(faults) {}

    /// Puts the entry under the key. That it is there already is fine, under another key not: nobody could tell which
    /// one a reverse lookup should find.
    void add(GRAMMAR_TABLE_ID table, const std::string& key, const std::string& entry, const SOURCE_PLACE& place) {
        LATEST& latest = m_latest[table];
        if (key == latest.key && entry == latest.entry) {
            return;  // as with most parts: they share their names with the one before
        }
        const std::string upper_key = upper_case(key);
        const std::string upper_entry = upper_case(entry);
        const auto [owner, added] = m_owners[table].try_emplace(upper_entry, OWNER{upper_key, place});
        if (added) {
            m_grammar[table][upper_key].push_back(upper_entry);
        } else if (owner->second.key != upper_key) {
            m_faults.add(place, std::string(WORDS[table].entry) + " \"" + upper_entry + "\" belongs to " +
                                    WORDS[table].key + " \"" + upper_key + "\" here, but to \"" + owner->second.key +
                                    "\" at " + text_of(owner->second.place));
            return;
        }
        latest = {key, entry};
    }

    /// The same for an entry that is there only once.
    void add_only(GRAMMAR_TABLE_ID table, const std::string& key, const std::string& entry) {
        LATEST& latest = m_latest[table];
        if (latest.entries == nullptr || key != latest.key) {
            latest.key = key;
            latest.entries = &m_grammar[table][upper_case(key)];
        }
        latest.entries->push_back(upper_case(entry));
    }

    GRAMMAR take() { return std::move(m_grammar); }

private:
    struct OWNER {
        std::string key;
        SOURCE_PLACE place;
    };

    /// What has been added last.
    struct LATEST {
        std::string key;
        std::string entry;
        std::vector<std::string>* entries = nullptr;
    };

    FAULTS& m_faults;
    GRAMMAR m_grammar;
    std::array<LATEST, GRAMMAR_TABLE_COUNT> m_latest;
    std::array<std::map<std::string, OWNER>, GRAMMAR_TABLE_COUNT> m_owners;
};

void add_families(GRAMMAR_BUILDER& builder, const CATALOG& catalog) {
    for (const CATALOG_FAMILY& family : catalog.families) {
        if (family.programmer_family != NO_PROGRAMMER_FAMILY) {
            builder.add(GRAMMAR_PCF_FAMILY_PCF, family.programmer_family, family.name, family.place);
        }
    }
}

void add_devices(GRAMMAR_BUILDER& builder, const CATALOG& catalog) {
    for (const CATALOG_DEVICE& device : catalog.devices) {
        if (device.programmer_part.empty()) {
            continue;
        }
        const CATALOG_FAMILY& family = catalog.families[device.family];
        builder.add(GRAMMAR_DEV_PART_PCF, device.programmer_part, device.name, device.place);
        builder.add(GRAMMAR_DEV_FAMILY_PCF, family.programmer_family, device.name, device.place);
        builder.add(GRAMMAR_FAMILY, family.name, device.programmer_part, device.place);
    }
}

void add_parts(GRAMMAR_BUILDER& builder, const CATALOG& catalog) {
    for (const CATALOG_PART& part : catalog.parts) {
        const CATALOG_DEVICE& device = catalog.devices[part.device];
        if (device.programmer_part.empty()) {
            continue;
        }
        const CATALOG_FAMILY& family = catalog.families[device.family];
        builder.add_only(GRAMMAR_PACKAGE_NAME, part.package_name, part.name);
        builder.add(GRAMMAR_PGM_NAME, part.programming_name, part.package_name, part.place);
        builder.add(GRAMMAR_PGM_PART_PCF, device.programmer_part, part.programming_name, part.place);
        builder.add(GRAMMAR_PGM_FAMILY_PCF, family.programmer_family, part.programming_name, part.place);
    }
}

/// A programmer family that leads to devices must lead to programming names, too.
void require_programming_names(const GRAMMAR& grammar, const CATALOG& catalog, FAULTS& faults) {
    for (const CATALOG_FAMILY& family : catalog.families) {
        if (grammar[GRAMMAR_DEV_FAMILY_PCF].contains(family.programmer_family) &&
            !grammar[GRAMMAR_PGM_FAMILY_PCF].contains(family.programmer_family)) {
            faults.add(family.place,
                       "programmer family \"" + family.programmer_family + "\" has devices but no programming names");
        }
    }
}

void require_no_empty_table(const GRAMMAR& grammar, const std::filesystem::path& directory, FAULTS& faults) {
    for (std::size_t table = 0; table < GRAMMAR_TABLE_COUNT; ++table) {
        if (grammar[table].empty()) {
            faults.add({directory.generic_string()}, std::string("no ") + WORDS[table].key + " has a " +
                                                         WORDS[table].entry + ": table " + std::to_string(table) +
                                                         " would be empty, which its format cannot say");
        }
    }
}

}  // namespace

GRAMMAR build_grammar(const CATALOG& catalog, const std::filesystem::path& directory, FAULTS& faults) {
    GRAMMAR_BUILDER builder(faults);
    add_families(builder, catalog);
    add_devices(builder, catalog);
    add_parts(builder, catalog);
    GRAMMAR grammar = builder.take();
    require_programming_names(grammar, catalog, faults);
    require_no_empty_table(grammar, directory, faults);
    return grammar;
}

std::size_t entry_count(const GRAMMAR& grammar, GRAMMAR_TABLE_ID table) {
    std::size_t count = 0;
    for (const auto& [key, entries] : grammar[table]) {
        count += entries.size();
    }
    return count;
}
