#include "msg.h"

#include <atomic>
#include <optional>

#include "bindings.h"
#include "interpreter_end.h"
#include "unlocked.h"
#include "values.h"

// Reports become exceptions of Python, debug messages calls of a function of Python.

namespace {

/// The last report in this thread.
thread_local std::optional<MSG_INTERNAL_ERROR_REPORT> last_report;

/// Who is told of debug messages: a function of level and text; null: nobody.
PyObject* listener = nullptr;

/// The same without the interpreter's lock. The receiver stays for the rest of the process, for the host does not bear that
/// one is taken back while threads tell it something.
std::atomic<bool> is_listening = false;

/// With bare references, for a thread that is ended in the middle of the call must not give any back. Whatever fails is not
/// the library's to bear, which is in the middle of something.
void call_listener(int level, const std::string& text) {
    PyObject* const function = listener;
    if (function == nullptr) {
        return;
    }
    Py_INCREF(function);
    PyObject* const message = decoded(text);
    PyObject* const answer = message != nullptr ? PyObject_CallFunction(function, "iO", level, message) : nullptr;
    if (answer == nullptr) {
        py::error_already_set().discard_as_unraisable("a debug message of pgmdev");
    }
    Py_XDECREF(answer);
    Py_XDECREF(message);
    Py_DECREF(function);
}

void tell_listener(const std::string& /*logger*/, int level, const std::string& text) {
    if (!is_listening) {
        return;
    }
    std::optional<py::gil_scoped_acquire> locked;  // outside of what a thread that waits for the end leaves
    or_wait_for_the_end([&] {
        locked.emplace();
        call_listener(level, text);
    });
}

/// With None, nobody is told any more.
void listen(const py::object& function) {
    is_listening = !function.is_none();
    PyObject* const before = std::exchange(listener, is_listening ? function.inc_ref().ptr() : nullptr);
    Py_XDECREF(before);
}

void raise_internal_error(const MSG_INTERNAL_ERROR_REPORT& report) {
    // Interned: the interpreter keeps the names by which attributes are asked for, each that is another object.
    const auto name = py::reinterpret_steal<py::object>(PyUnicode_InternFromString("InternalError"));
    const py::object type = py::getattr(py::module_::import("pgmdev._errors"), name);
    const py::object error =
        type(to_python(report.condition), to_python(report.module), to_python(report.file), report.line);
    PyErr_SetObject(type.ptr(), error.ptr());
}

}  // namespace

LOCK_RELEASED::~LOCK_RELEASED() {
    or_wait_for_the_end([this] { PyEval_RestoreThread(m_state); });
}

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
    msg_set_debug_sink(tell_listener);
    module.def("listen", listen);
}
