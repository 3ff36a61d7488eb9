#include <algorithm>
#include <vector>

#include "bindings.h"
#include "member_lists.h"
#include "pgmdev_user_flash.h"
#include "unlocked.h"

// A flash of the user's own, as one text.

namespace {

py::tuple description_values(const PGMDEV_USER_FLASH& flash) {
    const py::object record =
        flash.complete() ? py::object(values_of(flash.record(), PGMDEV_SFL_FLASH_MEMBERS)) : py::none();
    return py::make_tuple(to_python(flash.body()), to_python(flash.password()), to_python(flash.password_valid()),
                          to_python(flash.plausible()), record, list_of(flash.faults()));
}

/// Of any text: characters that no such text has are a fault of it.
py::list decode(const py::str& given) {
    const std::string encoded = text_of(given);
    const auto all = unlocked([&] { return PGMDEV_USER_FLASH::all_from_encoded(encoded); });
    return list_of(all, description_values);
}

py::object encode(const py::list& records) {
    std::vector<PGMDEV_SFL_FLASH_INFO> flashes;
    std::transform(records.begin(), records.end(), std::back_inserter(flashes), [](py::handle record) {
        return record_of<PGMDEV_SFL_FLASH_INFO>(py::reinterpret_borrow<py::tuple>(record), PGMDEV_SFL_FLASH_MEMBERS);
    });
    return to_python(unlocked([&] { return PGMDEV_USER_FLASH::encode(flashes); }));
}

py::list implausible(const py::tuple& record) {
    const auto flash = record_of<PGMDEV_SFL_FLASH_INFO>(record, PGMDEV_SFL_FLASH_MEMBERS);
    return list_of(PGMDEV_USER_FLASH::implausible(flash), [](const PGMDEV_USER_FLASH::IMPLAUSIBLE_MEMBER& each) {
        return py::make_tuple(to_python(each.member), to_python(each.found), to_python(each.expected));
    });
}

}  // namespace

void bind_user_flash(py::module_& module) {
    module.attr("USER_FLASH_KEY") = PGMDEV_USER_FLASH::CONFIGURATION_KEY;
    module.def("decode_user_flash", decode);
    module.def("encode_user_flash", encode);
    module.def("implausible", implausible);
}
