#include "catalog/device_names.h"

#include <algorithm>
#include <utility>

#include "msg.h"
#include "pgmdev_device_grammar_mgr.h"
#include "pgmdev_part_index.h"

namespace {

/// Ends operations as every handler of ours does, but shows nothing, while it lives.
class QUIET_REPORTS {
public:
    QUIET_REPORTS()
        : m_previous(MSG_INTERNAL_ERROR::set_handler(
              [](const MSG_INTERNAL_ERROR_REPORT& report) { throw MSG_INTERNAL_ERROR_EXCEPTION(report); })) {}
    ~QUIET_REPORTS() { MSG_INTERNAL_ERROR::set_handler(m_previous); }
    QUIET_REPORTS(const QUIET_REPORTS&) = delete;
    QUIET_REPORTS& operator=(const QUIET_REPORTS&) = delete;

private:
    MSG_INTERNAL_ERROR::HANDLER m_previous;
};

std::vector<std::string> all_part_names() {
    std::vector<std::string> names;
    names.reserve(static_cast<std::size_t>(DEV_PART_GENERIC));
    for (int part = DEV_PART_INVALID + 1; part != DEV_PART_GENERIC && part != DEV_PART_MAX; ++part) {
        names.push_back(upper_name(part));
    }
    return names;
}

std::vector<std::string> all_package_and_programming_names() {
    std::vector<std::string> names;
    for (const std::string& part : part_names()) {
        names.push_back(PGMDEV_DEVICE_GRAMMAR_MGR::get_package_name(part, true));
        names.push_back(PGMDEV_DEVICE_GRAMMAR_MGR::get_pgm_name(part, false, true));
    }
    return without_repetitions(std::move(names));
}

std::vector<std::string> all_programmer_part_names() {
    std::vector<std::string> names;
    for (const std::string& name : package_and_programming_names()) {
        names.push_back(PGMDEV_DEVICE_GRAMMAR_MGR::get_pgm_part_pcf(name));
    }
    return without_repetitions(std::move(names));
}

std::vector<std::string> all_device_names() {
    std::vector<std::string> names;
    for (int device = DEV_DEVICE_INVALID + 1; device < DEV_DEVICE_GENERIC; ++device) {
        names.push_back(upper_name(static_cast<DEV_DEVICE_ENUM>(device)));
    }
    return names;
}

std::vector<std::string> all_family_names() {
    std::vector<std::string> names;
    for (int family = DEV_FAMILY_INVALID + 1; family < DEV_FAMILY_MAX; ++family) {
        names.push_back(upper_name(static_cast<DEV_FAMILY_ENUM>(family)));
    }
    return names;
}

}  // namespace

std::vector<std::string> without_repetitions(std::vector<std::string> names) {
    std::sort(names.begin(), names.end());
    names.erase(std::unique(names.begin(), names.end()), names.end());
    return names;
}

const std::vector<std::string>& part_names() {
    static const std::vector<std::string> names = all_part_names();
    return names;
}

const std::vector<std::string>& package_and_programming_names() {
    static const std::vector<std::string> names = all_package_and_programming_names();
    return names;
}

const std::vector<std::string>& programmer_part_names() {
    static const std::vector<std::string> names = all_programmer_part_names();
    return names;
}

const std::vector<std::string>& converted_names() {
    static const std::vector<std::string> names = PGMDEV_PART_INDEX::get_converted_names();
    return names;
}

const std::vector<std::string>& device_names() {
    static const std::vector<std::string> names = all_device_names();
    return names;
}

const std::vector<std::string>& family_names() {
    static const std::vector<std::string> names = all_family_names();
    return names;
}

std::string ask_quietly(const std::function<std::string()>& operation) {
    try {
        const QUIET_REPORTS quiet;
        return operation();
    } catch (const MSG_INTERNAL_ERROR_EXCEPTION& error) {  // a report that ended the operation
        const MSG_INTERNAL_ERROR_REPORT& report = error.report();
        MSG_INTERNAL_ERROR::report(report.condition.c_str(), report.module.c_str(), report.file.c_str(), report.line);
        throw;
    }
}
