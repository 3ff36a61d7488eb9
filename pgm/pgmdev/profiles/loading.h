#pragma once

/// \file
/// Loading into a manager of profiles that stays as it was should the loading fail.

#include <algorithm>
#include <array>
#include <tuple>
#include <vector>

#include "pgmdev_dev_info_manager.h"
#include "profiles/records.h"

/// Lives while a manager that has no records takes some, and the tables that go with them. Unless that is done when this
/// ends, the manager gets back what it had: no records, the entries of its tables, the parts of its list.
class PGMDEV_DEV_INFO_MANAGER::LOADING {
public:
    explicit LOADING(PGMDEV_DEV_INFO_MANAGER& manager)
        : m_manager(manager),
          m_counts{manager.m_version, manager.m_device_count, manager.m_type_count, manager.m_index},
          m_known_parts(manager.m_pgm_parts.size()) {
        const auto counts = index_table_counts();
        for (std::size_t i = 0; i < counts.size(); ++i) {
            const DWORD* table = *manager.tables()[i];
            m_entry_counts[i] = table != nullptr ? counts[i] : 0;
            if (std::any_of(table, table + m_entry_counts[i], [](DWORD entry) { return entry != INVALID_DWORD; })) {
                m_entries[i].assign(table, table + counts[i]);
            }
        }
    }
    ~LOADING() {
        if (m_done) {
            return;
        }
        m_manager.drop_parts(m_known_parts);
        m_manager.m_database_shares.release(m_manager.m_device_database);
        std::tie(m_manager.m_version, m_manager.m_device_count, m_manager.m_type_count, m_manager.m_index) = m_counts;
        for (std::size_t i = 0; i < m_entries.size(); ++i) {
            DWORD* table = *m_manager.tables()[i];
            std::fill_n(table, m_entry_counts[i], INVALID_DWORD);
            std::copy(m_entries[i].begin(), m_entries[i].end(), table);
        }
    }
    LOADING(const LOADING&) = delete;
    LOADING& operator=(const LOADING&) = delete;

    void done() { m_done = true; }

private:
    PGMDEV_DEV_INFO_MANAGER& m_manager;
    std::tuple<DWORD, DWORD, DWORD, DWORD> m_counts;
    std::array<DWORD, 3> m_entry_counts{};
    std::array<std::vector<DWORD>, 3> m_entries;  ///< of a table in which a record governs something
    std::size_t m_known_parts;
    bool m_done = false;
};
