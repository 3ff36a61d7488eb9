#include "tables/fault_output.h"

#include <fmt/core.h>

#include "terminal/schema.h"
#include "terminal/standard_error.h"

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

JSON fault_schema(const std::string& row_key) {
    return object_schema({{"severity", choice_schema({"fault", "warning"})},
                          {"line", number_schema()},
                          {"column", number_schema()},
                          {row_key, text_schema()},
                          {"member", text_schema()},
                          {"cell", text_schema()},
                          {"condition", text_schema()},
                          {"expected", text_schema()}});
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
        print_error("{}", describe(fault, csv_file));
    }
}
