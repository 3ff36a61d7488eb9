#include <fmt/format.h>

#include <stdexcept>

#include "fio.h"
#include "pgmdev_dev_info_table.h"
#include "profile/commands.h"
#include "terminal/fault_output.h"

namespace {

JSON sizes_json(const PGMDEV_DEV_INFO_TABLE& table) {
    return {{"records", table.records().size()}, {"payload_size", table.payload_size()}};
}

void print_sizes(const PGMDEV_DEV_INFO_TABLE& table) {
    fmt::print("{} records, {} bytes of payload\n", table.records().size(), table.payload_size());
}

}  // namespace

void check_profile_table(const std::string& csv_file, COMMAND& command) {
    const PGMDEV_DEV_INFO_TABLE table = PGMDEV_DEV_INFO_TABLE::from_source(csv_file);
    if (table.has_faults()) {
        command.result = EXIT_INTERNAL_ERROR;
    }
    print_faults(table.faults(), csv_file, PGMDEV_DEV_INFO_TABLE::describe);
    if (command.json) {
        JSON document = sizes_json(table);
        document["faults"] = faults_json(table.faults(), "row");
        print_json(document);
    } else if (!table.has_faults()) {
        print_sizes(table);
    }
}

void compile_profile_table(const std::string& csv_file, const std::string& pcf_file, COMMAND& command) {
    const PGMDEV_DEV_INFO_TABLE table = PGMDEV_DEV_INFO_TABLE::from_source(csv_file);
    FIO_REPLACEMENT output(pcf_file);
    if (table.has_faults()) {
        print_faults(table.faults(), csv_file, PGMDEV_DEV_INFO_TABLE::describe);
    }
    PGMDEV_DEV_INFO_MANAGER compiler(true);
    if (table.records().empty()) {
        // The format is broken: the compiler itself says which condition stops it.
        compiler.generate_device_database(csv_file, output.temporary());
    }
    if (table.has_faults()) {
        throw std::runtime_error(csv_file + " has faults: " + pcf_file + " is left as it was");
    }
    compiler.generate_device_database(csv_file, output.temporary());
    const PGMDEV_DEV_INFO_TABLE read_back = PGMDEV_DEV_INFO_TABLE::from_database(output.temporary());
    if (read_back.records() != table.records() || read_back.payload_size() != table.payload_size()) {
        throw std::runtime_error("what was compiled from " + csv_file + " reads back differently");
    }
    if (!output.commit()) {
        throw std::runtime_error(pcf_file + " cannot be replaced");
    }
    if (command.json) {
        print_json(sizes_json(table));
    } else {
        print_sizes(table);
    }
}
