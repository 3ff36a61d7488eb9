#include "terminal/reports.h"

namespace {

std::optional<MSG_INTERNAL_ERROR_REPORT>& remembered() {
    static std::optional<MSG_INTERNAL_ERROR_REPORT> report;
    return report;
}

}  // namespace

void remember_reports() {
    remembered();  // outlives the handler
    MSG_INTERNAL_ERROR::set_handler([](const MSG_INTERNAL_ERROR_REPORT& report) {
        remembered() = report;
        throw MSG_INTERNAL_ERROR_EXCEPTION(report);
    });
}

std::optional<MSG_INTERNAL_ERROR_REPORT> last_report() {
    return remembered();
}

void forget_report() {
    remembered().reset();
}
