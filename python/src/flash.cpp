#include <array>
#include <memory>

#include "bindings.h"
#include "flash_database.h"
#include "hex_pairs.h"
#include "member_lists.h"
#include "pgmdev_flash_table.h"
#include "unlocked.h"
#include "values.h"

// Serial flash: the database, and what a response says.

namespace {

constexpr std::array STANDINGS{"taken", "alike", "open", "passed_over", "ruled_out"};
constexpr std::array ODDITIES{"none",    "idle",     "stuck",   "continuation", "late", "first_byte_missing",
                              "shifted", "reversed", "repeated"};

py::tuple difference_values(const PGMDEV_FLASH_DIFFERENCE& difference) {
    return py::make_tuple(to_python(difference.member), PGMDEV_FLASH_CANDIDATES::risk_name(difference.risk),
                          to_python(difference.taken), to_python(difference.other), to_python(difference.harm));
}

py::tuple candidate_values(const PGMDEV_FLASH_CANDIDATE& candidate) {
    const auto compared = [](const PGMDEV_FLASH_COMPARED_BYTE& each) {
        return py::make_tuple(to_python(each.position), to_python(each.expected), to_python(each.given));
    };
    return py::make_tuple(to_python(candidate.index), STANDINGS.at(static_cast<std::size_t>(candidate.standing)),
                          list_of(candidate.compared, compared), list_of(candidate.differences, difference_values));
}

py::tuple ambiguity_values(const PGMDEV_FLASH_AMBIGUITY& ambiguity) {
    return py::make_tuple(list_of(ambiguity.chips), index_or_none(ambiguity.telling_byte),
                          to_python(ambiguity.told_apart_by), PGMDEV_FLASH_CANDIDATES::risk_name(ambiguity.risk),
                          to_python(ambiguity.harm));
}

py::object oddity_values(const PGMDEV_FLASH_ODDITY& oddity) {
    if (oddity.kind == PGMDEV_FLASH_ODDITY::KIND::NONE) {
        return py::none();
    }
    return py::make_tuple(ODDITIES.at(static_cast<std::size_t>(oddity.kind)), to_python(oddity.text),
                          index_or_none(oddity.index), to_python(oddity.is_fault()));
}

py::dict identify(const FLASH_DATABASE& database, const std::string& response, bool silicon_id) {
    const PGMDEV_FLASH_ANSWER answer = unlocked([&] { return database.answer(response, silicon_id); });
    py::dict values;
    values["index"] = index_or_none(answer.candidates.taken());
    values["sure"] = to_python(answer.is_sure());
    values["telling"] = to_python(answer.candidates.telling_count());
    values["missing_bytes"] = list_of(answer.candidates.missing_bytes());
    values["nearest"] = list_of(answer.candidates.nearest());
    values["oddity"] = oddity_values(answer.candidates.oddity());
    values["candidates"] = list_of(answer.candidates.candidates(), candidate_values);
    values["ambiguities"] = list_of(answer.ambiguities, ambiguity_values);
    values["contradictions"] = list_of(answer.contradictions, [](const PGMDEV_FLASH_CONTRADICTION& each) {
        return py::make_tuple(to_python(each.position), to_python(each.found), to_python(each.expected));
    });
    values["fitting"] = list_of(answer.fitting);
    return values;
}

/// The bytes that the text of a response spells, as the command reads it; None when it is none.
py::object bytes_of_text(const py::str& text) {
    const std::optional<std::vector<BYTE>> found = bytes_of_response(text_of(text));
    return found ? py::object(py::bytes(std::string(found->begin(), found->end()))) : py::none();
}

/// What is wrong with the notes beside the database, a line each.
py::list notes_faults(const FLASH_DATABASE& database) {
    py::list lines;
    for (const auto* file : {&database.notes().ambiguities_file(), &database.notes().identifications_file()}) {
        for (const PGMDEV_TABLE_FAULT& fault : file->faults) {
            lines.append(to_python(PGMDEV_FLASH_TABLE::describe(fault, file->file)));
        }
    }
    return lines;
}

}  // namespace

void bind_flash(py::module_& module) {
    module.def("bytes_of_response", bytes_of_text);
    module.attr("FLASH_MEMBERS") = member_list(PGMDEV_SFL_FLASH_MEMBERS);
    py::class_<FLASH_DATABASE>(module, "FlashDatabase")
        .def(py::init(
            [](const TEXT& pcf_file) { return unlocked([&] { return std::make_unique<FLASH_DATABASE>(pcf_file); }); }))
        .def("records",
             [](const FLASH_DATABASE& database) {
                 return list_of(database.records(),
                                [](const auto& record) { return values_of(record, PGMDEV_SFL_FLASH_MEMBERS); });
             })
        .def("identify", identify)
        .def("notes_faults", notes_faults);
}
