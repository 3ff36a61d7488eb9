#include "bindings.h"
#include "names_of_kinds.h"
#include "pgmdev_part_index.h"
#include "unlocked.h"
#include "values.h"
#include "wildcard.h"

// Patterns, and what may have been meant by names that are not there.

namespace {

/// Names as the command suggests them for one that has no spellings.
py::list name_suggestions(const TEXT& name) {
    return list_of(unlocked([&name] {
        const NAME_KINDS kinds{.part = true, .package_or_programming = true, .programmer_part = true, .device = true};
        return nearest_names(name, kinds, converted_for(kinds, PGMDEV_PART_INDEX::get_converted_names));
    }));
}

/// Names as the command suggests them for one that stands for no part; `has_parts` tells of a name whether it stands for some.
py::list part_suggestions(const TEXT& name, const py::function& has_parts) {
    NEAR_NAMES near = unlocked([&name] {
        const NAME_KINDS kinds{
            .part = true, .package_or_programming = true, .programmer_part = true, .device = true, .family = true};
        return near_names(name, kinds, converted_for(kinds, PGMDEV_PART_INDEX::get_converted_names));
    });
    return list_of(
        near.best([&has_parts](const std::string& each) { return has_parts(to_python(each)).cast<bool>(); }));
}

}  // namespace

void bind_suggestions(py::module_& module) {
    module.def("fits_pattern", [](const py::str& text, const py::str& pattern) {
        return fits_pattern(text_of(text), text_of(pattern));
    });
    module.def("name_suggestions", name_suggestions);
    module.def("part_suggestions", part_suggestions);
}
