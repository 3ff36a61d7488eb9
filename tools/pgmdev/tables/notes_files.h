#pragma once

/// \file
/// The notes beside a source table: checked and compiled with it, so that table and notes travel together.

#include <deque>
#include <optional>
#include <string>
#include <vector>

#include "files/output.h"
#include "pgmdev_table_fault.h"
#include "terminal/json.h"

/// What is wrong with one of them.
struct NOTES_FAULTS {
    std::string file;
    std::vector<PGMDEV_TABLE_FAULT> faults;

    bool has_fault() const;
};

/// Whether one of them is more than a warning.
bool has_fault(const std::vector<PGMDEV_TABLE_FAULT>& faults);

/// A fault of a list that goes with a table: about one of its rows, or "".
PGMDEV_TABLE_FAULT list_fault(const std::string& row, std::string expected,
                              PGMDEV_TABLE_FAULT::SEVERITY severity = PGMDEV_TABLE_FAULT::SEVERITY::FAULT);

/// As an array of objects, and its schema.
JSON notes_json(const std::vector<NOTES_FAULTS>& notes);
JSON notes_schema();

/// A file of notes, and the one beside the database that it becomes.
struct NOTES_COPY {
    std::string source;
    std::string copy;
};

/// The copies, written and ready to take their places. Notes that are not there are left out; where the database has some
/// of that kind already, standard error says that they are not of this table.
class NOTES_COPIES {
public:
    explicit NOTES_COPIES(const std::vector<NOTES_COPY>& files);
    void commit();

    /// Puts back what has been beside the database, which has stayed the old one; a warning tells where that cannot be done.
    void restore() noexcept;

private:
    struct COPY {
        explicit COPY(const std::string& place);
        void put_back() const;

        OUTPUT_FILE output;
        std::string path;
        bool was_missing;
        std::optional<std::vector<BYTE>> former;  ///< nothing: it was missing, or could not be read
        bool is_in_place = false;
    };

    std::deque<COPY> m_copies;        // whose elements stay where they are
    std::vector<std::string> m_left;  ///< beside the database, and none beside the table
};
