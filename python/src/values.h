#pragma once

/// \file
/// What all bindings share: values of the library as values of Python.
///
/// The bindings give texts, numbers, lists and tuples. The Python package above them makes objects with names of these.

#include <pybind11/pybind11.h>

#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

#include "pgmdev_types.h"

namespace py = pybind11;

/// Bytes that are no UTF-8, as damaged files have them, come through as Python lets file names through. A new reference;
/// null, with an error of Python, when there is no memory.
inline PyObject* decoded(std::string_view text) noexcept {
    return PyUnicode_DecodeUTF8(text.data(), static_cast<Py_ssize_t>(text.size()), "surrogateescape");
}

inline py::object to_python(std::string_view text) {
    PyObject* const made = decoded(text);
    if (made == nullptr) {
        throw py::error_already_set();
    }
    return py::reinterpret_steal<py::object>(made);
}

/// The way back.
inline std::string text_of(py::handle text) {
    const auto bytes =
        py::reinterpret_steal<py::bytes>(PyUnicode_AsEncodedString(text.ptr(), "utf-8", "surrogateescape"));
    if (!bytes) {
        throw py::error_already_set();
    }
    return bytes;
}

/// A name, a path or a setting from Python: a text or, of a path, its bytes. The library and the system take a zero byte for
/// the end of such a text, so that one within it would make another one of it: that is refused, as Python refuses it.
class TEXT {
public:
    TEXT() = default;
    explicit TEXT(std::string text) : m_text(std::move(text)) {
        if (m_text.find('\0') != std::string::npos) {
            throw py::value_error("embedded null character");
        }
    }

    operator const std::string&() const { return m_text; }
    const std::string& text() const { return m_text; }

private:
    std::string m_text;
};

namespace pybind11::detail {

template <>
struct type_caster<TEXT> {
    PYBIND11_TYPE_CASTER(TEXT, const_name("str"));

    bool load(handle given, bool /*convert*/) {
        if (PyUnicode_Check(given.ptr())) {
            value = TEXT(text_of(given));
        } else if (PyBytes_Check(given.ptr())) {
            value = TEXT(std::string(reinterpret_borrow<py::bytes>(given)));
        } else {
            return false;
        }
        return true;
    }
};

}  // namespace pybind11::detail

inline py::object to_python(const std::string& text) {
    return to_python(std::string_view(text));
}

inline py::object to_python(const char* text) {
    return to_python(std::string_view(text));
}

inline py::object to_python(bool value) {
    return py::bool_(value);
}

inline py::object to_python(QWORD value) {
    return py::reinterpret_steal<py::object>(PyLong_FromUnsignedLongLong(value));
}

inline py::object to_python(DWORD value) {
    return to_python(QWORD{value});
}

inline py::object to_python(WORD value) {
    return to_python(QWORD{value});
}

inline py::object to_python(BYTE value) {
    return to_python(QWORD{value});
}

inline py::object to_python(int value) {
    return py::reinterpret_steal<py::object>(PyLong_FromLong(value));
}

/// None for the number that stands for nothing.
inline py::object index_or_none(DWORD index) {
    return index == INVALID_DWORD ? py::none() : to_python(index);
}

/// A list with what `make` makes of each.
template <class RANGE, class MAKE>
py::list list_of(const RANGE& range, MAKE make) {
    py::list list;
    for (const auto& each : range) {
        list.append(make(each));
    }
    return list;
}

template <class RANGE>
py::list list_of(const RANGE& range) {
    return list_of(range, [](const auto& each) { return to_python(each); });
}

/// The values of a record in the order of its member table.
template <class RECORD, class MEMBERS>
py::tuple values_of(const RECORD& record, const MEMBERS& members) {
    py::tuple values(members.size());
    std::size_t place = 0;
    for (const auto& member : members) {
        values[place++] = std::visit([&record](auto field) { return to_python(record.*field); }, member.field);
    }
    return values;
}
