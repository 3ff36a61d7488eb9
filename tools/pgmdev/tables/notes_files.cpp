#include "tables/notes_files.h"

#include <algorithm>
#include <exception>
#include <system_error>
#include <utility>

#include "file_kind.h"
#include "files/file_bytes.h"
#include "files/inspection.h"
#include "fio.h"
#include "tables/fault_output.h"
#include "terminal/schema.h"
#include "terminal/standard_error.h"

namespace {

constexpr const char* NOTE_KEY = "note";

}  // namespace

bool NOTES_FAULTS::has_fault() const {
    return ::has_fault(faults);
}

bool has_fault(const std::vector<PGMDEV_TABLE_FAULT>& faults) {
    return std::any_of(faults.begin(), faults.end(), [](const PGMDEV_TABLE_FAULT& fault) {
        return fault.severity == PGMDEV_TABLE_FAULT::SEVERITY::FAULT;
    });
}

PGMDEV_TABLE_FAULT list_fault(const std::string& row, std::string expected, PGMDEV_TABLE_FAULT::SEVERITY severity) {
    PGMDEV_TABLE_FAULT fault;
    fault.severity = severity;
    fault.row = row;
    fault.expected = std::move(expected);
    return fault;
}

JSON notes_json(const std::vector<NOTES_FAULTS>& notes) {
    JSON array = JSON::array();
    for (const NOTES_FAULTS& each : notes) {
        array.push_back({{"file", each.file}, {"faults", faults_json(each.faults, NOTE_KEY)}});
    }
    return array;
}

JSON notes_schema() {
    return array_schema(object_schema({{"file", text_schema()}, {"faults", array_schema(fault_schema(NOTE_KEY))}}));
}

NOTES_COPIES::COPY::COPY(const std::string& place)
    : output(argument_place(place, "PCF")),
      path(place),
      was_missing(inspect_file(place, 0).missing),
      former(file_bytes(place)) {}

NOTES_COPIES::NOTES_COPIES(const std::vector<NOTES_COPY>& files) {
    for (const NOTES_COPY& file : files) {
        if (!inspect_file(file.source, 0).missing) {  // one that cannot be read ends the command
            m_copies.emplace_back(file.copy).output.write(required_file_bytes(file.source));
        } else if (FIO_FILE_SYSTEM::exists(file.copy.c_str())) {
            m_left.push_back(file.copy);
        }
    }
}

void NOTES_COPIES::commit() {
    for (COPY& copy : m_copies) {
        copy.output.commit();
        copy.is_in_place = true;
    }
    for (const std::string& left : m_left) {
        print_error("pgmdev: {} is not of this table, which has no such notes; remove it unless it is yours", left);
    }
}

void NOTES_COPIES::COPY::put_back() const {
    if (was_missing) {
        std::error_code error;
        remove_file(fio_get_unc_full_path(path), error);
        if (error) {
            throw std::system_error(error);
        }
        return;
    }
    OUTPUT_FILE replacement({path, {}});
    replacement.write(former.value());
    replacement.commit();
}

void NOTES_COPIES::restore() noexcept {
    for (const COPY& copy : m_copies) {
        try {
            if (copy.is_in_place) {
                copy.put_back();
            }
        } catch (const std::exception&) {
            warn_without_memory("notes of the new table stand beside the old database: compile again");
        }
    }
}
