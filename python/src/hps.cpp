#include <array>

#include "bindings.h"
#include "member_lists.h"
#include "pgmdev_hps_mgr.h"
#include "pgmdev_hps_nand_mgr.h"
#include "pgmdev_hps_spi_mgr.h"

// Hard processor systems and their boot flash. The lists live until they are read anew, which must not happen while
// somebody reads them: the interpreter's lock is kept.

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
template <class MANAGER, class MEMBERS>
py::tuple entries(const MEMBERS& members) {
    const auto& manager = *MANAGER::get_mgr();
    const auto values = list_of(manager.get_list(), [&](const auto* entry) { return values_of(*entry, members); });
    return py::make_tuple(values, manager.get_user_list().size());
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
    module.def("hps_reload", [] {
        PGMDEV_HPS_NAND_MGR::delete_mgr();
        PGMDEV_HPS_SPI_MGR::delete_mgr();
    });
}
