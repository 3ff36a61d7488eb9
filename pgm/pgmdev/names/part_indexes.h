#pragma once

/// \file
/// Indexes behind the questions for parts: they find at once what otherwise takes a walk over all parts.
///
/// A walk answers sooner than an index is made, so questions do without until the walks have taken about as long as
/// making it; so do questions for programmer-file names with a host that has the parts of the catalog (catalog_parts.h),
/// while with other parts a walk for one of those mostly goes over all of them. Then whichever thread asks next makes it, as
/// the stores are made; it is only read from then on, and freed with the stores.
///
/// An index takes for granted that the host goes on giving the answers that it gave when the index was made: the same
/// parts with the same names in the same order. The grammar cannot change, for the stores are only read.

#include <deque>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "names/number_index.h"
#include "names/text_index.h"

/// Names of parts by other names. Texts that are not kept must live as long as the index.
class PART_NAME_INDEX {
public:
    /// The first part name that was added under `name`, or none.
    std::optional<std::string> find(std::string_view name) const;

    // Building: what comes first, stays.
    bool has(std::string_view name) const { return place_of(name) != nullptr; }
    void add(std::string_view name, std::string_view part_name);
    std::string_view keep(std::string text) { return m_kept.emplace_back(std::move(text)); }

private:
    const DWORD* place_of(std::string_view name) const;

    struct ENTRY {
        std::string_view name;
        std::string_view part_name;
    };

    std::deque<std::string> m_kept;
    std::vector<ENTRY> m_entries;
    TEXT_INDEX m_places;  ///< in m_entries, by name
};

enum class INDEX_WANTED { NOW, WHEN_IT_PAYS };

// Each is null while walks are the better choice, but not when it is wanted now. Keys are in upper case.
const PART_NAME_INDEX* parts_by_programmer_file_name(INDEX_WANTED wanted);
const PART_NAME_INDEX* parts_by_possible_name(INDEX_WANTED wanted);
const NUMBER_INDEX* parts_by_hash(INDEX_WANTED wanted);           ///< part numbers by hash of the name
const NUMBER_INDEX* ordering_codes_by_part(INDEX_WANTED wanted);  ///< ordering-code indexes by part number

/// Frees all indexes; the next questions are first ones again, also for catalog_parts.h. No other thread may be using them.
void free_part_indexes();
