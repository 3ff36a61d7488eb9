#include "table_faults.h"

pgmdev_records no_faults() {
    return pgmdev_records({text_member("severity"), number_member("line"), number_member("column"), text_member("row"),
                           text_member("member"), text_member("cell"), text_member("condition"),
                           text_member("expected"), text_member("text")});
}

void add_fault(pgmdev_records& faults, const PGMDEV_TABLE_FAULT& fault, std::string text) {
    const bool is_warning = fault.severity == PGMDEV_TABLE_FAULT::SEVERITY::WARNING;
    faults.add({text_value(is_warning ? "WARNING" : "FAULT"), number_value(fault.line), number_value(fault.column),
                text_value(fault.row), text_value(fault.member), text_value(fault.cell), text_value(fault.condition),
                text_value(fault.expected), text_value(std::move(text))});
}
