#pragma once

/// \file
/// The border between exceptions and statuses: what the library throws ends here and becomes an error object.

#include <stdexcept>
#include <string>

#include "pgmdev_c_base.h"

/// Ends a function with a status of its own.
class FAILURE : public std::runtime_error {
public:
    FAILURE(pgmdev_status status, const std::string& message) : std::runtime_error(message), m_status(status) {}

    pgmdev_status status() const noexcept { return m_status; }

private:
    pgmdev_status m_status;
};

/// Refuses the arguments of a call unless `holds`; the message says what is wrong with them.
inline void require_argument(bool holds, const char* message) {
    if (!holds) {
        throw FAILURE(PGMDEV_STATUS_INVALID_ARGUMENT, message);
    }
}

/// A text that the caller must give.
std::string required_text(const char* text);

/// What receives a result, emptied.
template <class RESULT>
RESULT* emptied(RESULT* place, RESULT nothing = {}) {
    require_argument(place != nullptr, "there is nothing that could receive the result");
    *place = nothing;
    return place;
}

/// An object that the caller has opened.
template <class OBJECT>
OBJECT& opened(OBJECT* object) {
    require_argument(object != nullptr, "the object is a null pointer");
    return *object;
}

/// The status that the exception being handled stands for, and the object for `error`, if that is wanted.
pgmdev_status status_of_exception(pgmdev_error** error) noexcept;

/// Runs what gives a status; nothing is thrown out of it.
template <class OPERATION>
pgmdev_status guarded(pgmdev_error** error, OPERATION operation) noexcept {
    if (error != nullptr) {
        *error = nullptr;
    }
    try {
        return operation();
    } catch (...) {
        return status_of_exception(error);
    }
}
