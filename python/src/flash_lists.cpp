#include "bindings.h"
#include "flash_aliases.h"
#include "flash_database.h"
#include "flash_evidence.h"
#include "near_names.h"
#include "values.h"

// The lists beside a flash database: further names, and what supports its records. Python reads the files.

namespace {

py::list all_aliases(const CSV_LINES& list) {
    return list_of(aliases_of(list), [](const FLASH_ALIAS& alias) {
        return py::make_tuple(to_python(alias.name), to_python(alias.device_name), to_python(alias.reason));
    });
}

py::list suggestions(const CSV_LINES& list, const FLASH_DATABASE& database, const py::str& name) {
    return list_of(probably_meant(text_of(name), names_of_flash(database.records(), list)));
}

/// The interpreter's lock is kept, for the list sorts its lines when it is asked.
py::list evidence_of(const FLASH_EVIDENCE& evidence, const FLASH_DATABASE& database, std::size_t index) {
    if (index >= database.records().size()) {
        throw py::index_error("there is no record of that index");
    }
    return list_of(evidence.of(database.records()[index]), [](const FLASH_SUPPORT& support) {
        return py::make_tuple(to_python(support.group), to_python(support.evidence), list_of(support.sources));
    });
}

}  // namespace

void bind_flash_lists(py::module_& module) {
    py::class_<CSV_LINES>(module, "FlashAliases")
        .def(py::init([](const py::bytes& list) { return CSV_LINES(std::string(list)); }))
        .def("all", all_aliases)
        .def("suggestions", suggestions);
    py::class_<FLASH_EVIDENCE>(module, "FlashEvidence")
        .def(py::init([](const py::bytes& list) { return FLASH_EVIDENCE(CSV_LINES(std::string(list))); }))
        .def("of", evidence_of);
}
