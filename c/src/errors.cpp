#include "errors.h"

#include <array>
#include <memory>
#include <new>

#include "msg.h"

namespace {

struct ERROR_TEXTS {
    std::string message;
    std::string condition;
    std::string module;
    std::string file;
};

constexpr std::array STATUS_NAMES{
    "OK", "NOT_FOUND", "INVALID_ARGUMENT", "NO_MEMORY", "REPORTED", "REFUSED", "NOT_WRITTEN", "BUSY", "FAILED"};

}  // namespace

struct pgmdev_error {
    pgmdev_status status;
    const ERROR_TEXTS* texts;  ///< null: there was no memory for any
    int32_t line;
};

namespace {

pgmdev_error out_of_memory{PGMDEV_STATUS_NO_MEMORY, nullptr, 0};

const char* text_of(const pgmdev_error* error, const std::string ERROR_TEXTS::*text) {
    return error != nullptr && error->texts != nullptr ? (error->texts->*text).c_str() : "";
}

/// An error object, where one is wanted, of what was reported, if it was. When there is no memory for it, that is the error.
pgmdev_status give_error(pgmdev_error** error, pgmdev_status status, const char* message,
                         const MSG_INTERNAL_ERROR_REPORT* report = nullptr) noexcept {
    if (error == nullptr) {
        return status;
    }
    try {
        auto texts = std::make_unique<ERROR_TEXTS>();
        texts->message = message;
        if (report != nullptr) {
            texts->condition = report->condition;
            texts->module = report->module;
            texts->file = report->file;
        }
        *error = new pgmdev_error{status, texts.get(), report != nullptr ? report->line : 0};
        static_cast<void>(texts.release());
    } catch (const std::bad_alloc&) {
        *error = &out_of_memory;
        return PGMDEV_STATUS_NO_MEMORY;
    }
    return status;
}

}  // namespace

std::string required_text(const char* text) {
    require_argument(text != nullptr, "a text is a null pointer");
    return text;
}

pgmdev_status status_of_exception(pgmdev_error** error) noexcept {
    try {
        throw;
    } catch (const FAILURE& failure) {
        return give_error(error, failure.status(), failure.what());
    } catch (const MSG_INTERNAL_ERROR_EXCEPTION& reported) {
        return give_error(error, PGMDEV_STATUS_REPORTED, reported.what(), &reported.report());
    } catch (const std::bad_alloc&) {
        if (error != nullptr) {
            *error = &out_of_memory;
        }
        return PGMDEV_STATUS_NO_MEMORY;
    } catch (const std::exception& other) {
        return give_error(error, PGMDEV_STATUS_FAILED, other.what());
    } catch (...) {
        return give_error(error, PGMDEV_STATUS_FAILED, "something that is no error was thrown");
    }
}

const char* pgmdev_status_name(pgmdev_status status) {
    return status < STATUS_NAMES.size() ? STATUS_NAMES.at(status) : "UNKNOWN";
}

pgmdev_status pgmdev_error_status(const pgmdev_error* error) {
    return error != nullptr ? error->status : pgmdev_status{PGMDEV_STATUS_OK};
}

const char* pgmdev_error_message(const pgmdev_error* error) {
    return error == &out_of_memory ? "there is no memory" : text_of(error, &ERROR_TEXTS::message);
}

const char* pgmdev_error_condition(const pgmdev_error* error) {
    return text_of(error, &ERROR_TEXTS::condition);
}

const char* pgmdev_error_module(const pgmdev_error* error) {
    return text_of(error, &ERROR_TEXTS::module);
}

const char* pgmdev_error_file(const pgmdev_error* error) {
    return text_of(error, &ERROR_TEXTS::file);
}

int32_t pgmdev_error_line(const pgmdev_error* error) {
    return error != nullptr ? error->line : 0;
}

void pgmdev_error_free(pgmdev_error* error) {
    if (error != nullptr && error != &out_of_memory) {
        delete error->texts;
        delete error;
    }
}
