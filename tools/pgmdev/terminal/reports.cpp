#include "terminal/reports.h"

namespace {

std::optional<MSG_INTERNAL_ERROR_REPORT>& kept_report() {
    static std::optional<MSG_INTERNAL_ERROR_REPORT> report;
    return report;
}

}  // namespace

MSG_INTERNAL_ERROR::HANDLER remember_reports() {
    kept_report();  // outlives the handler
    return MSG_INTERNAL_ERROR::set_handler([](const MSG_INTERNAL_ERROR_REPORT& report) {
        kept_report() = report;
        throw MSG_INTERNAL_ERROR_EXCEPTION(report);
    });
}

std::optional<MSG_INTERNAL_ERROR_REPORT> last_report() {
    return kept_report();
}

void forget_report() {
    kept_report().reset();
}
