#include "tables/fault_output.h"

#include <fmt/core.h>

#include "terminal/text_table.h"

JSON fault_json(const PGMDEV_TABLE_FAULT& fault, const std::string& row_key) {
    return {{"severity", fault.severity == PGMDEV_TABLE_FAULT::SEVERITY::FAULT ? "fault" : "warning"},
            {"line", fault.line},
            {"column", fault.column},
            {row_key, fault.row},
            {"member", fault.member},
            {"cell", fault.cell},
            {"condition", fault.condition},
            {"expected", fault.expected}};
}

JSON faults_json(const std::vector<PGMDEV_TABLE_FAULT>& faults, const std::string& row_key) {
    JSON array = JSON::array();
    for (const PGMDEV_TABLE_FAULT& fault : faults) {
        array.push_back(fault_json(fault, row_key));
    }
    return array;
}

void print_faults(const std::vector<PGMDEV_TABLE_FAULT>& faults, const std::string& csv_file,
                  std::string (*describe)(const PGMDEV_TABLE_FAULT&, const std::string&)) {
    for (const PGMDEV_TABLE_FAULT& fault : faults) {
        fmt::print(stderr, "{}\n", printable(describe(fault, csv_file)));
    }
}
