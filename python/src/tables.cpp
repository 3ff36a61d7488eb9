#include "bindings.h"
#include "member_lists.h"
#include "pgmdev_dev_info_manager.h"
#include "pgmdev_dev_info_manager_auto_export.h"
#include "pgmdev_dev_info_table.h"
#include "pgmdev_flash_manager.h"
#include "pgmdev_flash_table.h"
#include "printable_text.h"
#include "unlocked.h"

// Source tables and packed databases as their maintainers see them.

namespace {

py::tuple record_values(const PGMDEV_SFL_FLASH_INFO& record) {
    return values_of(record, PGMDEV_SFL_FLASH_MEMBERS);
}

/// Identifiers and enumerators as names, those without a name as numbers, None for none.
py::tuple record_values(const PGMDEV_DEVICE_INFO& record) {
    py::tuple values = values_of(record, PGMDEV_DEVICE_INFO_MEMBERS);
    std::size_t place = 0;
    for (const PGMDEV_DEVICE_INFO_MEMBER& member : PGMDEV_DEVICE_INFO_MEMBERS) {
        bool nameable = false;
        if (member.kind == PGMDEV_MANAGER_DEVID_ENUM || member.kind == PGMDEV_MANAGER_ENUM) {
            const std::string cell = pgmdev_device_info_cell(member, record, nameable);
            if (nameable) {
                values[place] = cell.empty() ? py::object(py::none()) : to_python(cell);
            }
        }
        ++place;
    }
    return values;
}

py::tuple fault_values(const PGMDEV_TABLE_FAULT& fault) {
    return py::make_tuple(fault.severity == PGMDEV_TABLE_FAULT::SEVERITY::FAULT ? "fault" : "warning",
                          to_python(fault.line), to_python(fault.column), to_python(fault.row), to_python(fault.member),
                          to_python(fault.cell), to_python(fault.condition), to_python(fault.expected));
}

template <class TABLE>
py::dict table_values(const TABLE& table) {
    py::dict values;
    values["records"] = list_of(table.records(), [](const auto& record) { return record_values(record); });
    values["faults"] = list_of(table.faults(), fault_values);
    values["payload_size"] = to_python(table.payload_size());
    if constexpr (std::is_same_v<TABLE, PGMDEV_DEV_INFO_TABLE>) {
        values["family_table"] = list_of(table.family_table(), index_or_none);
        values["device_table"] = list_of(table.device_table(), index_or_none);
        values["part_table"] = list_of(table.part_table(), index_or_none);
    }
    return values;
}

template <class TABLE>
py::dict from_source(const TEXT& csv_file) {
    return table_values(unlocked([&] { return TABLE::from_source(FIO_PATH(csv_file.text())); }));
}

template <class TABLE>
py::dict from_database(const TEXT& pcf_file) {
    return table_values(unlocked([&] { return TABLE::from_database(FIO_PATH(pcf_file.text())); }));
}

/// The source table, and what is in the way of one.
template <class TABLE>
py::tuple source_text(const TEXT& pcf_file) {
    std::string obstacle;
    const std::string text =
        unlocked([&] { return TABLE::from_database(FIO_PATH(pcf_file.text())).source_text(obstacle); });
    return py::make_tuple(to_python(text), to_python(obstacle));
}

template <class TABLE>
void bind_table(py::module_& module, const std::string& kind) {
    module.def((kind + "_from_source").c_str(), from_source<TABLE>);
    module.def((kind + "_from_database").c_str(), from_database<TABLE>);
    module.def((kind + "_source_text").c_str(), source_text<TABLE>);
}

}  // namespace

void bind_tables(py::module_& module) {
    module.attr("PROFILE_MEMBERS") = member_list(PGMDEV_DEVICE_INFO_MEMBERS);
    bind_table<PGMDEV_FLASH_TABLE>(module, "flash");
    bind_table<PGMDEV_DEV_INFO_TABLE>(module, "profile");
    module.def("printable", [](const TEXT& text) { return to_python(printable(text.text())); });
    module.def("compile_flash", [](const TEXT& csv_file, const TEXT& pcf_file) {
        unlocked([&] {
            PGMDEV_FLASH_MANAGER(false, 1, true, false)
                .generate_flash_database(FIO_PATH(csv_file.text()), FIO_PATH(pcf_file.text()));
        });
    });
    module.def("compile_profile", [](const TEXT& csv_file, const TEXT& pcf_file) {
        unlocked([&] {
            PGMDEV_DEV_INFO_MANAGER(true).generate_device_database(FIO_PATH(csv_file.text()),
                                                                   FIO_PATH(pcf_file.text()));
        });
    });
}
