#include "bindings.h"
#include "pgmdev_device_grammar_mgr.h"
#include "pgmdev_mgr.h"
#include "values.h"

// Spellings of device names, and names of enumerators. Questions take less than the interpreter's lock costs, but the
// first one, which opens the data.

namespace {

using GRAMMAR = PGMDEV_DEVICE_GRAMMAR_MGR;

struct CONVERSION {
    const char* name;
    std::string (*convert)(const std::string& name);
};

constexpr std::array CONVERSIONS{
    CONVERSION{"pgm_part_pcf", GRAMMAR::get_pgm_part_pcf},
    CONVERSION{"pgm_family_pcf", GRAMMAR::get_pgm_family_pcf},
    CONVERSION{"dev_part_pcf", GRAMMAR::get_dev_part_pcf},
    CONVERSION{"dev_family_pcf", GRAMMAR::get_dev_family_pcf},
    CONVERSION{"pcf_family_pcf", GRAMMAR::get_pcf_family_pcf},
    CONVERSION{"family", GRAMMAR::get_family},
    CONVERSION{"pcf_device", GRAMMAR::get_pcf_device},
};

/// A question is given a text of its own, for the grammar converts it to upper case.
py::tuple pair_of(void (*ask)(const std::string&, std::string&, std::string&), const TEXT& name) {
    std::string part;
    std::string family;
    ask(std::string(name.text()), part, family);
    return py::make_tuple(to_python(part), to_python(family));
}

PGM_ENUM_TYPE enum_type(DWORD number) {
    return static_cast<PGM_ENUM_TYPE>(number);
}

py::object enum_name(DWORD type, DWORD value) {
    std::string name;
    return PGMDEV_MGR::pgm_check_type_enum_supported(enum_type(type), value, &name) ? to_python(name) : py::none();
}

py::object enum_value(DWORD type, const TEXT& name) {
    DWORD value = 0;
    return PGMDEV_MGR::pgm_check_type_name_supported(enum_type(type), name, &value) ? to_python(value) : py::none();
}

}  // namespace

void bind_names(py::module_& module) {
    for (const CONVERSION& each : CONVERSIONS) {
        module.def(each.name,
                   [convert = each.convert](const TEXT& name) { return to_python(convert(std::string(name.text()))); });
    }
    module.def("package_name", [](const TEXT& name, bool no_fallback) {
        return to_python(GRAMMAR::get_package_name(std::string(name.text()), no_fallback));
    });
    module.def("pgm_name", [](const TEXT& name, bool skip_package, bool no_fallback) {
        return to_python(GRAMMAR::get_pgm_name(std::string(name.text()), skip_package, no_fallback));
    });
    module.def("dev_pcfs", [](const TEXT& name) { return pair_of(GRAMMAR::get_dev_pcfs, name); });
    module.def("pgm_pcfs", [](const TEXT& name) { return pair_of(GRAMMAR::get_pgm_pcfs, name); });
    module.def("use_full_name", [](const TEXT& name) { return GRAMMAR::use_full_name(std::string(name.text())); });
    module.def("use_package_name",
               [](const TEXT& name) { return GRAMMAR::use_package_name(std::string(name.text())); });
    module.def("enum_name", enum_name);
    module.def("enum_value", enum_value);
}
