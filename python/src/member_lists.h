#pragma once

/// \file
/// Member tables as Python sees them, and records that come from Python.

#include <string>
#include <type_traits>
#include <variant>

#include "pgmdev_cell.h"
#include "pgmdev_manager_type.h"
#include "values.h"

/// How Python writes the type of a value: of an identifier or enumerator it is the name, a number without one, or none.
template <class VALUE>
constexpr const char* PYTHON_TYPE = std::is_same_v<VALUE, std::string> ? "str"
                                    : std::is_same_v<VALUE, bool>      ? "bool"
                                                                       : "int";

inline constexpr const char* NAMED_TYPE = "str | int | None";

/// A tuple for each member: name, type, unit, whether people write it in hexadecimal.
template <class MEMBERS>
py::list member_list(const MEMBERS& members) {
    return list_of(members, [](const auto& member) {
        const char* type =
            std::visit([]<class RECORD, class VALUE>(VALUE RECORD::*) { return PYTHON_TYPE<VALUE>; }, member.field);
        std::string_view unit;
        bool hex = false;
        if constexpr (requires { member.base; }) {
            unit = member.unit;
            hex = member.base == PGMDEV_NUMBER_BASE::BASE_16;
        }
        if constexpr (requires { member.kind; }) {
            if (member.kind == PGMDEV_MANAGER_DEVID_ENUM || member.kind == PGMDEV_MANAGER_ENUM) {
                type = NAMED_TYPE;
            }
        }
        return py::make_tuple(to_python(member.name), type, to_python(unit), to_python(hex));
    });
}

/// The record with these values, which are as many as its members.
template <class RECORD, class MEMBERS>
RECORD record_of(const py::tuple& values, const MEMBERS& members) {
    if (values.size() != members.size()) {
        throw py::value_error("a record has " + std::to_string(members.size()) + " values");
    }
    RECORD record;
    std::size_t place = 0;
    for (const auto& member : members) {
        const py::object value = values[place++];
        std::visit(
            [&]<class VALUE>(VALUE RECORD::*field) {
                try {
                    if constexpr (std::is_same_v<VALUE, std::string>) {
                        if (!py::isinstance<py::str>(value)) {
                            throw py::cast_error();
                        }
                        record.*field = text_of(value);
                    } else if (value.is_none()) {  // which counts as false elsewhere
                        throw py::cast_error();
                    } else if (!std::is_same_v<VALUE, bool> && PyIndex_Check(value.ptr()) == 0) {
                        throw py::cast_error();  // a fraction, of which the cast would take the whole part
                    } else {
                        record.*field = value.cast<VALUE>();
                    }
                } catch (const py::cast_error&) {
                    throw py::value_error(std::string(member.name) +
                                          " does not take this value: " + std::string(py::repr(value)));
                }
            },
            member.field);
    }
    return record;
}
