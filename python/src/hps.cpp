#include <array>

#include "bindings.h"
#include "hps_fields.h"
#include "member_lists.h"
#include "pgmdev_hps_mgr.h"
#include "pgmdev_hps_nand_mgr.h"
#include "pgmdev_hps_spi_mgr.h"

// Hard processor systems and their boot flash. The lists live until they are read anew, which must not happen while
// somebody reads them: the interpreter's lock is kept, and nothing of Python's is made meanwhile, for that may collect
// garbage, whose finalizers may do anything.

namespace {

using KIND = PGMDEV_HPS_STRUCTURE;

struct KIND_MEMBER {
    const char* name;
    DWORD KIND::*field;
};

constexpr std::array KIND_MEMBERS{
    KIND_MEMBER{"id", &KIND::id},
    KIND_MEMBER{"core_count", &KIND::core_count},
    KIND_MEMBER{"spi_selects", &KIND::spi_selects},
    KIND_MEMBER{"nand_data_bits", &KIND::nand_data_bits},
    KIND_MEMBER{"on_chip_ram_base", &KIND::on_chip_ram_base},
    KIND_MEMBER{"on_chip_ram_byte", &KIND::on_chip_ram_byte},
    KIND_MEMBER{"clock_manager_base", &KIND::clock_manager_base},
    KIND_MEMBER{"reset_manager_base", &KIND::reset_manager_base},
    KIND_MEMBER{"pin_multiplex_base", &KIND::pin_multiplex_base},
    KIND_MEMBER{"watchdog_base", &KIND::watchdog_base},
    KIND_MEMBER{"uart_base", &KIND::uart_base},
    KIND_MEMBER{"spi_controller_base", &KIND::spi_controller_base},
    KIND_MEMBER{"spi_data_base", &KIND::spi_data_base},
    KIND_MEMBER{"nand_controller_base", &KIND::nand_controller_base},
    KIND_MEMBER{"nand_data_base", &KIND::nand_data_base},
};

py::dict kind_values(const KIND& kind) {
    py::dict values;
    values["name"] = to_python(kind.name);
    for (const KIND_MEMBER& member : KIND_MEMBERS) {
        values[member.name] = to_python(kind.*member.field);
    }
    return values;
}

/// All entries, and how many of them are the user's own.
template <class MANAGER, class RECORD, std::size_t COUNT>
py::tuple entries(const std::array<PGMDEV_HPS_MEMBER<RECORD>, COUNT>& members) {
    const MANAGER& manager = *MANAGER::get_mgr();
    const std::size_t user_count = manager.get_user_list().size();
    std::vector<RECORD> records;
    records.reserve(manager.get_list().size());
    for (const RECORD* record : manager.get_list()) {
        records.push_back(*record);
    }
    const auto values = list_of(records, [&members](const RECORD& record) { return values_of(record, members); });
    return py::make_tuple(values, user_count);
}

template <class RECORD, class MEMBERS>
RECORD entry_of(py::handle values, const MEMBERS& members) {
    return record_of<RECORD>(py::reinterpret_borrow<py::tuple>(values), members);
}

/// What a number must be that this one is not; "" when nothing is wrong with it.
template <class VALUE>
std::string number_fault(const FIELD_CHECK& check, VALUE number) {
    switch (check.fault_of(number, sizeof number)) {
        case FIELD_CHECK::FAULT::NONE:
            break;
        case FIELD_CHECK::FAULT::OUT_OF_RANGE:
            return "from " + std::to_string(check.lowest) + " to " + std::to_string(check.highest_of(sizeof number));
        case FIELD_CHECK::FAULT::NO_POWER_OF_TWO:
            return "a power of two";
    }
    return "";
}

/// Why no boot flash can have these values; "" when it can.
template <class RECORD, class MEMBERS, class CHECKS>
std::string entry_fault(const py::tuple& values, const MEMBERS& members, const CHECKS& checks) {
    const auto record = entry_of<RECORD>(values, members);
    for (const auto& member : members) {
        const std::string expected = std::visit(
            [&]<class VALUE>(VALUE RECORD::*field) -> std::string {
                if constexpr (std::is_same_v<VALUE, std::string>) {
                    return (record.*field).find('\0') == std::string::npos ? "" : "a text without zero bytes";
                } else {
                    return number_fault(field_check(checks, member.name), record.*field);
                }
            },
            member.field);
        if (!expected.empty()) {
            return std::string(member.name) + " must be " + expected;
        }
    }
    return "";
}

/// The entries as a block of the parameter container.
template <class RECORD, class MEMBERS>
py::bytes entries_block(std::string_view stamp, const MEMBERS& members, const py::list& entries) {
    std::vector<BYTE> block(stamp.begin(), stamp.end());
    for (const py::handle entry : entries) {
        pgmdev_append_hps_record(block, members, entry_of<RECORD>(entry, members));
    }
    return {reinterpret_cast<const char*>(block.data()), block.size()};
}

py::object current_kind() {
    const KIND* current = PGMDEV_HPS_MGR::get_mgr()->get_current_hps();
    return current != nullptr ? py::object(kind_values(*current)) : py::none();
}

}  // namespace

void bind_hps(py::module_& module) {
    module.attr("NAND_MEMBERS") = member_list(PGMDEV_HPS_NAND_MEMBERS);
    module.attr("SPI_MEMBERS") = member_list(PGMDEV_HPS_SPI_MEMBERS);
    py::list kind_members;
    for (const KIND_MEMBER& member : KIND_MEMBERS) {
        kind_members.append(member.name);
    }
    module.attr("KIND_MEMBERS") = kind_members;
    module.def("hps_kinds", [] { return list_of(PGMDEV_HPS_MGR::get_kinds(), kind_values); });
    module.def("hps_current", current_kind);
    module.def("hps_set_current", [](DWORD id) { return PGMDEV_HPS_MGR::get_mgr()->set_current_hps(id); });
    module.def("hps_nand", [] { return entries<PGMDEV_HPS_NAND_MGR>(PGMDEV_HPS_NAND_MEMBERS); });
    module.def("hps_spi", [] { return entries<PGMDEV_HPS_SPI_MGR>(PGMDEV_HPS_SPI_MEMBERS); });
    module.def("hps_nand_fault", [](const py::tuple& values) {
        return entry_fault<PGMDEV_HPS_NAND_STRUCTURE>(values, PGMDEV_HPS_NAND_MEMBERS, HPS_NAND_CHECKS);
    });
    module.def("hps_spi_fault", [](const py::tuple& values) {
        return entry_fault<PGMDEV_HPS_SPI_STRUCTURE>(values, PGMDEV_HPS_SPI_MEMBERS, HPS_SPI_CHECKS);
    });
    module.def("hps_nand_block", [](const py::list& entries) {
        return entries_block<PGMDEV_HPS_NAND_STRUCTURE>(PGMDEV_HPS_NAND_STAMP, PGMDEV_HPS_NAND_MEMBERS, entries);
    });
    module.def("hps_spi_block", [](const py::list& entries) {
        return entries_block<PGMDEV_HPS_SPI_STRUCTURE>(PGMDEV_HPS_SPI_STAMP, PGMDEV_HPS_SPI_MEMBERS, entries);
    });
    module.def("hps_reload", [] {
        PGMDEV_HPS_NAND_MGR::delete_mgr();
        PGMDEV_HPS_SPI_MGR::delete_mgr();
    });
}
