#pragma once

/// \file
/// Messages: internal errors, and the debug channel.
///
/// An internal error is a violated precondition or a failed consistency check. It is reported as the text of the
/// condition that did not hold, with the module, the source file and the line of the check.
///
/// What happens then is the host's choice. The reference host writes one line to standard error and throws
/// MSG_INTERNAL_ERROR_EXCEPTION; a program may install a handler of its own. Handlers and sinks are set while no other
/// thread is using the library. One that is being called may install another: it lives until it has returned.

#include <functional>
#include <stdexcept>
#include <string>

#include "host_export.h"

/// One internal error, as it was reported.
struct MSG_INTERNAL_ERROR_REPORT {
    std::string condition;  ///< the condition that did not hold, or the formatted text
    std::string module;     ///< id of the reporting module, such as "PGMDEV"
    std::string file;       ///< source file of the check, without ending
    int line = 0;           ///< line of the check
};

/// How the reference host ends an operation that reported an internal error. `what()` is the condition text.
class HOST_EXPORT MSG_INTERNAL_ERROR_EXCEPTION : public std::runtime_error {
public:
    explicit MSG_INTERNAL_ERROR_EXCEPTION(MSG_INTERNAL_ERROR_REPORT report);
    MSG_INTERNAL_ERROR_EXCEPTION(const MSG_INTERNAL_ERROR_EXCEPTION&);
    MSG_INTERNAL_ERROR_EXCEPTION& operator=(const MSG_INTERNAL_ERROR_EXCEPTION&);
    ~MSG_INTERNAL_ERROR_EXCEPTION() override;

    const MSG_INTERNAL_ERROR_REPORT& report() const noexcept { return m_report; }

private:
    MSG_INTERNAL_ERROR_REPORT m_report;
};

class HOST_EXPORT MSG_INTERNAL_ERROR {
public:
    using HANDLER = std::function<void(const MSG_INTERNAL_ERROR_REPORT&)>;

    /// Reports that `condition` did not hold. With the reference host's own handler it does not return.
    static void report(const char* condition, const char* module, const char* file, int line);

    /// The same with a printf-style text instead of a condition.
    static void report_varg(const char* module, const char* file, int line, const char* format, ...)
        HOST_PRINTF_LIKE(4, 5);

    /// Installs `handler` for all reports that follow and returns the one it replaces. An empty handler stands for the
    /// reference host's own: log, then throw.
    static HANDLER set_handler(HANDLER handler);
};

/// Writes a printf-style message to the debug channel.
///
/// `logger` names the module, `level` the depth of detail (1 is the coarsest). Messages up to the level in the
/// configuration value "TESSARY_DEBUG_LEVEL" (0 when unset: silence) go to standard error, a line each.
HOST_EXPORT void msg_local_vdebug(const char* logger, int level, const char* format, ...) HOST_PRINTF_LIKE(3, 4);

#if !defined(PGMHOST_HAS_THE_LEAST)
/// Whether such a message goes anywhere: for what takes time to find out only to be said there.
HOST_EXPORT bool msg_is_debug_on(const char* logger, int level);
#endif

/// Receives every debug message, whatever its level, instead of standard error.
using MSG_DEBUG_SINK = std::function<void(const std::string& logger, int level, const std::string& text)>;

/// Installs `sink` and returns the one it replaces; an empty sink stands for standard error.
HOST_EXPORT MSG_DEBUG_SINK msg_set_debug_sink(MSG_DEBUG_SINK sink);
