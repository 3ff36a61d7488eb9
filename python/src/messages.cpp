#include "msg.h"

#include <optional>

#include "bindings.h"
#include "unlocked.h"
#include "values.h"

// Reports become exceptions of Python, debug messages calls of a function of Python.

namespace {

/// The last report in this thread.
thread_local std::optional<MSG_INTERNAL_ERROR_REPORT> last_report;

/// Who is told of debug messages: a function of level and text; null: nobody. A bare pointer, for the host copies and
/// destroys what it is given without the interpreter's lock.
PyObject* listener = nullptr;

void tell_listener(const std::string& /*logger*/, int level, const std::string& text) {
    const py::gil_scoped_acquire locked;
    if (listener == nullptr) {
        return;
    }
    try {
        py::reinterpret_borrow<py::object>(listener)(level, to_python(text));
    } catch (py::error_already_set& error) {
        error.discard_as_unraisable("a debug message of pgmdev");
    }
}

/// With None, messages go where the host sends them without a listener.
void listen(const py::object& function) {
    Py_CLEAR(listener);
    if (function.is_none()) {
        msg_set_debug_sink({});
        return;
    }
    listener = function.inc_ref().ptr();
    msg_set_debug_sink(tell_listener);
}

void raise_internal_error(const MSG_INTERNAL_ERROR_REPORT& report) {
    const py::object type = py::module_::import("pgmdev._errors").attr("InternalError");
    const py::object error =
        type(to_python(report.condition), to_python(report.module), to_python(report.file), report.line);
    PyErr_SetObject(type.ptr(), error.ptr());
}

}  // namespace

void forget_report() {
    last_report.reset();
}

void throw_report() {
    if (last_report) {
        throw MSG_INTERNAL_ERROR_EXCEPTION(*std::exchange(last_report, std::nullopt));
    }
}

void bind_messages(py::module_& module) {
    // Like the host's own handler, without its line on standard error.
    MSG_INTERNAL_ERROR::set_handler([](const MSG_INTERNAL_ERROR_REPORT& report) {
        last_report = report;
        throw MSG_INTERNAL_ERROR_EXCEPTION(report);
    });
    py::register_local_exception_translator([](std::exception_ptr error) {
        try {
            std::rethrow_exception(std::move(error));
        } catch (const MSG_INTERNAL_ERROR_EXCEPTION& reported) {
            raise_internal_error(reported.report());
        }
    });
    module.def("listen", listen);
}
