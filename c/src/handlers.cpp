#include "errors.h"
#include "msg.h"
#include "unloading.h"

namespace {

/// Hands reports to a program, and ends operations as the host does.
struct REPORT_RECEIVER {
    pgmdev_report_handler handler;
    void* user;

    void operator()(const MSG_INTERNAL_ERROR_REPORT& report) const {
        const pgmdev_report known{sizeof(pgmdev_report), report.condition.c_str(), report.module.c_str(),
                                  report.file.c_str(), report.line};
        handler(&known, user);
        throw MSG_INTERNAL_ERROR_EXCEPTION(report);
    }
};

struct DEBUG_RECEIVER {
    pgmdev_debug_handler handler;
    void* user;

    void operator()(const std::string& logger, int level, const std::string& text) const {
        handler(logger.c_str(), level, text.c_str(), user);
    }
};

/// The host, which may stay loaded longer, must not call what is no more.
class RECEIVERS_TAKEN_BACK {
public:
    RECEIVERS_TAKEN_BACK() = default;
    ~RECEIVERS_TAKEN_BACK() {
        if (!library_is_unloading()) {
            return;
        }
        MSG_INTERNAL_ERROR::HANDLER reports = MSG_INTERNAL_ERROR::set_handler({});
        if (reports.target<REPORT_RECEIVER>() == nullptr) {
            MSG_INTERNAL_ERROR::set_handler(std::move(reports));
        }
        MSG_DEBUG_SINK messages = msg_set_debug_sink({});
        if (messages.target<DEBUG_RECEIVER>() == nullptr) {
            msg_set_debug_sink(std::move(messages));
        }
    }
    RECEIVERS_TAKEN_BACK(const RECEIVERS_TAKEN_BACK&) = delete;
    RECEIVERS_TAKEN_BACK& operator=(const RECEIVERS_TAKEN_BACK&) = delete;
};

const RECEIVERS_TAKEN_BACK receivers_taken_back;

}  // namespace

pgmdev_status pgmdev_set_report_handler(pgmdev_report_handler handler, void* user, pgmdev_error** error) {
    return guarded(error, [&]() -> pgmdev_status {
        MSG_INTERNAL_ERROR::set_handler(handler != nullptr ? REPORT_RECEIVER{handler, user}
                                                           : MSG_INTERNAL_ERROR::HANDLER());
        return PGMDEV_STATUS_OK;
    });
}

pgmdev_status pgmdev_set_debug_handler(pgmdev_debug_handler handler, void* user, pgmdev_error** error) {
    return guarded(error, [&]() -> pgmdev_status {
        msg_set_debug_sink(handler != nullptr ? DEBUG_RECEIVER{handler, user} : MSG_DEBUG_SINK());
        return PGMDEV_STATUS_OK;
    });
}
