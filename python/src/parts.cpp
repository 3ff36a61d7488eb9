#include "bindings.h"
#include "dev.h"
#include "names/part_values.h"
#include "pgmdev_mgr.h"
#include "pgmdev_part_index.h"
#include "unlocked.h"
#include "upper_name.h"
#include "values.h"

// The device library, ordering codes, and parts by less specific names.

namespace {

template <class IDENTIFIER>
py::object name_of(int number) {
    return to_python(upper_name(static_cast<IDENTIFIER>(number)));
}

py::list part_numbers(const TEXT& family, const TEXT& device, const TEXT& package, const TEXT& pins, const TEXT& speed,
                      const TEXT& temperature, bool orderable, bool production, bool hidden) {
    std::vector<int> numbers;
    unlocked([&] {
        return DEV_PART_MANAGER().filter_part_list(&numbers, family, device, package, pins, speed, orderable,
                                                   production, hidden, temperature);
    });
    return list_of(numbers);
}

py::object hash_or_none(QWORD hash) {
    return hash == PGMDEV_MGR::INVALID_NAME_HASH ? py::none() : to_python(hash);
}

void bind_identifiers(py::module_& module) {
    module.attr("PART_MAX") = DEV_PART_MAX;
    module.attr("DEVICE_MAX") = static_cast<int>(DEV_DEVICE_MAX);
    module.attr("DEVICE_GENERIC") = static_cast<int>(DEV_DEVICE_GENERIC);
    module.attr("FAMILY_MAX") = static_cast<int>(DEV_FAMILY_MAX);
    module.attr("FAMILY_GENERIC") = static_cast<int>(DEV_FAMILY_GENERIC);
    module.def("part_text", name_of<int>);
    module.def("part_name", [](int part) { return to_python(dstr_get_user_string(part)); });
    module.def("is_device",
               [](int device) { return dstr_is_valid_dev_device_enum(static_cast<DEV_DEVICE_ENUM>(device)); });
    module.def("device_text", name_of<DEV_DEVICE_ENUM>);
    module.def("family_text", name_of<DEV_FAMILY_ENUM>);
    module.def("part_number", [](const TEXT& name) { return dstr_get_dev_part_enum_by_string(name.text().c_str()); });
    module.def("device_number", [](const TEXT& name) {
        return static_cast<int>(dstr_get_dev_device_enum_by_string(name.text().c_str()));
    });
    module.def("family_number", [](const TEXT& name) {
        return static_cast<int>(dstr_get_dev_family_enum_by_string(name.text().c_str()));
    });
    module.def("device_of_part", [](int part) { return static_cast<int>(DEV_PART_MANAGER().get_device_of(part)); });
    module.def("family_of_device", [](int device) {
        return static_cast<int>(DEV_PART_MANAGER().get_family_of(static_cast<DEV_DEVICE_ENUM>(device)));
    });
}

}  // namespace

void bind_parts(py::module_& module) {
    bind_identifiers(module);
    module.def("part_numbers", part_numbers);
    module.def("part_values", [] {
        const PART_VALUES& values = part_values();
        return py::make_tuple(list_of(values.packages), list_of(values.pins), list_of(values.speeds),
                              list_of(values.temperatures));
    });
    module.def("opn", [](DWORD index) { return to_python(PGMDEV_MGR::get_opn(index)); });
    module.def("opn_index", [](const TEXT& name) {
        return index_or_none(unlocked([&] { return PGMDEV_MGR::get_opn_enum(name); }));
    });
    module.def("opn_hash",
               [](const TEXT& name) { return hash_or_none(unlocked([&] { return PGMDEV_MGR::get_opn_hash(name); })); });
    module.def("opn_from_hash",
               [](QWORD hash) { return to_python(unlocked([&] { return PGMDEV_MGR::get_opn_from_hash(hash); })); });
    module.def("part_from_device", [](const TEXT& name) {
        return to_python(unlocked([&] { return PGMDEV_MGR::get_part_name_from_dev(name); }));
    });
    module.def("part_from_pcf", [](const TEXT& name) {
        return to_python(unlocked([&] { return PGMDEV_PART_INDEX().get_part_name_from_pcf(name); }));
    });
    module.def("possible_full_name", [](const TEXT& name) {
        return to_python(unlocked([&] { return PGMDEV_PART_INDEX().get_possible_full_name(name); }));
    });
}
