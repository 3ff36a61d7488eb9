#pragma once

/// \file
/// Operations that may report an internal error: the right answer to damage.

#include "msg.h"

/// Carries out the operation. A report ends it, and nothing else.
template <class OPERATION>
void up_to_a_report(const OPERATION& operation) {
    static const bool throws = [] {
        MSG_INTERNAL_ERROR::set_handler(
            [](const MSG_INTERNAL_ERROR_REPORT& report) { throw MSG_INTERNAL_ERROR_EXCEPTION(report); });
        return true;
    }();
    static_cast<void>(throws);
    try {
        operation();
    } catch (const MSG_INTERNAL_ERROR_EXCEPTION&) {
        // what it holds is released on the way
    }
}
