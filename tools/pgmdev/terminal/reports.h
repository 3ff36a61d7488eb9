#pragma once

/// \file
/// Internal errors that the library reports: kept for the failure that they lead to.

#include <optional>

#include "msg.h"

/// From now on every report ends the operation by MSG_INTERNAL_ERROR_EXCEPTION, and is remembered. Gives the handler that
/// reports went to before.
MSG_INTERNAL_ERROR::HANDLER remember_reports();

/// The last report; nothing when there was none since the last call of forget_report.
std::optional<MSG_INTERNAL_ERROR_REPORT> last_report();

/// The last report has been told.
void forget_report();
