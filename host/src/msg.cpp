#include "msg.h"

#include <algorithm>
#include <climits>
#include <cstdarg>
#include <cstdio>
#include <memory>
#include <utility>

#include "cfg.h"
#include "pgm_common.h"
#include "printable_text.h"
#include "unloading.h"

namespace {

std::string format_text(const char* format, std::va_list arguments) HOST_PRINTF_LIKE(1, 0);

std::string format_text(const char* format, std::va_list arguments) {
    std::va_list again;
    va_copy(again, arguments);
    const int length = std::vsnprintf(nullptr, 0, format, again);
    va_end(again);
    if (length < 0) {
        return format;  // an encoding error: the bare format says more than nothing
    }
    std::string text(static_cast<std::size_t>(length), '\0');
    std::vsnprintf(text.data(), text.size() + 1, format, arguments);
    return text;
}

void log_and_throw(const MSG_INTERNAL_ERROR_REPORT& report) {
    std::fprintf(stderr, "Internal Error: %s, %s, line %d: %s\n", report.module.c_str(), report.file.c_str(),
                 report.line, printable_lines(report.condition).c_str());
    throw MSG_INTERNAL_ERROR_EXCEPTION(report);
}

/// A function that a program installs. While it is called it may install another one: it lives until it has returned.
template <class FUNCTION>
class INSTALLED {
public:
    explicit operator bool() const { return m_function != nullptr; }

    template <class... ARGUMENTS>
    void call(const ARGUMENTS&... arguments) const {
        const std::shared_ptr<FUNCTION> called = m_function;
        (*called)(arguments...);
    }

    /// Installs another one, or none, and returns the one that was; of one that is being called, a copy.
    FUNCTION exchange(FUNCTION function) {
        std::shared_ptr<FUNCTION> next = function ? std::make_shared<FUNCTION>(std::move(function)) : nullptr;
        const std::shared_ptr<FUNCTION> previous = std::exchange(m_function, std::move(next));
        if (previous == nullptr) {
            return {};
        }
        return previous.use_count() == 1 ? std::move(*previous) : *previous;
    }

private:
    std::shared_ptr<FUNCTION> m_function;  ///< null: none
};

struct RECEIVERS {
    INSTALLED<MSG_INTERNAL_ERROR::HANDLER> errors;
    INSTALLED<MSG_DEBUG_SINK> debug_messages;
};

// Found by a report that is made while other static objects are still being built, or are being destroyed.
INSTALLED<MSG_INTERNAL_ERROR::HANDLER>& error_handler() {
    return lasting<RECEIVERS>().errors;
}

INSTALLED<MSG_DEBUG_SINK>& debug_sink() {
    return lasting<RECEIVERS>().debug_messages;
}

void hand_over(const MSG_INTERNAL_ERROR_REPORT& report) {
    if (error_handler()) {
        error_handler().call(report);
    } else {
        log_and_throw(report);
    }
}

int debug_level() {
    bool valid = false;
    const std::string text = cfg_get_value("TESSARY_DEBUG_LEVEL");
    const DWORD level = PGM_COMMON::convert_string_to_dword(text, true, &valid, nullptr, false);
    return valid ? static_cast<int>(std::min<DWORD>(level, INT_MAX)) : 0;
}

}  // namespace

MSG_INTERNAL_ERROR_EXCEPTION::MSG_INTERNAL_ERROR_EXCEPTION(MSG_INTERNAL_ERROR_REPORT report)
    : std::runtime_error(report.condition), m_report(std::move(report)) {}
MSG_INTERNAL_ERROR_EXCEPTION::MSG_INTERNAL_ERROR_EXCEPTION(const MSG_INTERNAL_ERROR_EXCEPTION&) = default;
MSG_INTERNAL_ERROR_EXCEPTION& MSG_INTERNAL_ERROR_EXCEPTION::operator=(const MSG_INTERNAL_ERROR_EXCEPTION&) = default;
MSG_INTERNAL_ERROR_EXCEPTION::~MSG_INTERNAL_ERROR_EXCEPTION() = default;

void MSG_INTERNAL_ERROR::report(const char* condition, const char* module, const char* file, int line) {
    hand_over({condition, module, file, line});
}

void MSG_INTERNAL_ERROR::report_varg(const char* module, const char* file, int line, const char* format, ...) {
    std::va_list arguments;
    va_start(arguments, format);
    std::string text = format_text(format, arguments);
    va_end(arguments);
    hand_over({std::move(text), module, file, line});
}

MSG_INTERNAL_ERROR::HANDLER MSG_INTERNAL_ERROR::set_handler(HANDLER handler) {
    return error_handler().exchange(std::move(handler));
}

bool msg_is_debug_on(const char* /*logger*/, int level) {
    return static_cast<bool>(debug_sink()) || level <= debug_level();
}

void msg_local_vdebug(const char* logger, int level, const char* format, ...) {
    if (!msg_is_debug_on(logger, level)) {
        return;
    }
    std::va_list arguments;
    va_start(arguments, format);
    const std::string text = format_text(format, arguments);
    va_end(arguments);
    if (debug_sink()) {
        debug_sink().call(std::string(logger), level, text);
    } else {
        std::fprintf(stderr, "%s debug %d: %s\n", logger, level, printable_lines(text).c_str());
    }
}

MSG_DEBUG_SINK msg_set_debug_sink(MSG_DEBUG_SINK sink) {
    return debug_sink().exchange(std::move(sink));
}
