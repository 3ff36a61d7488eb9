#include "tables/verify_output.h"

#include <fmt/core.h>

#include <algorithm>
#include <array>

#include "tables/info_file.h"
#include "tables/packed_payload.h"
#include "terminal/json.h"
#include "terminal/printable.h"
#include "terminal/schema.h"

namespace {

constexpr std::array<const char*, 3> OUTCOMES{"passed", "FAILED", "skipped"};
constexpr std::array<const char*, 3> OUTCOMES_FOR_PROGRAMS{"passed", "failed", "skipped"};

/// Tells whether the database is the one that the text beside it describes.
INFO_FINDING check_origin(VERIFICATION& verification) {
    INFO_FINDING finding = check_info(verification.database);
    if (finding.state == INFO_STATE::MISSING) {
        verification.skip("origin", finding.message);
    } else {
        const bool known = finding.state == INFO_STATE::MATCHES || finding.state == INFO_STATE::OLDER;
        verification.add("origin", known, finding.message);
    }
    return finding;
}

}  // namespace

bool VERIFICATION::sound() const {
    return std::none_of(checks.begin(), checks.end(),
                        [](const TABLE_CHECK& check) { return check.outcome == TABLE_CHECK::FAILED; });
}

void VERIFICATION::add(std::string name, bool passed, std::string detail) {
    checks.push_back({std::move(name), passed ? TABLE_CHECK::PASSED : TABLE_CHECK::FAILED, std::move(detail)});
}

void VERIFICATION::skip(std::string name, std::string why) {
    checks.push_back({std::move(name), TABLE_CHECK::SKIPPED, std::move(why)});
}

void VERIFICATION::add(std::string name, const std::vector<std::string>& faults, std::string good) {
    std::string told;
    for (const std::string& fault : faults) {
        told += (told.empty() ? "" : "; ") + fault;
    }
    add(std::move(name), faults.empty(), faults.empty() ? std::move(good) : told);
}

VERIFICATION verify_structure(const std::string& database, std::vector<BYTE> bytes, const PACKED_SCHEMA& schema) {
    PACKED_FILE file = open_packed_file(std::move(bytes), schema);
    VERIFICATION verification{database, "", file.stamp, std::move(file.payload), std::move(file.checks)};
    if (verification.payload.empty()) {
        verification.skip("payload", "it could not be decompressed");
        return verification;
    }
    const std::vector<TABLE_CHECK> scanned = scan_payload(verification.payload, schema, {});
    verification.checks.insert(verification.checks.end(), scanned.begin(), scanned.end());
    return verification;
}

void print_verification(VERIFICATION verification, COMMAND& command) {
    const INFO_FINDING origin = check_origin(verification);
    if (!verification.sound()) {
        command.result = EXIT_INTERNAL_ERROR;
    }
    if (command.json) {
        JSON checks = JSON::array();
        for (const TABLE_CHECK& check : verification.checks) {
            checks.push_back(
                {{"check", check.name}, {"outcome", OUTCOMES_FOR_PROGRAMS[check.outcome]}, {"detail", check.detail}});
        }
        const bool known = origin.state == INFO_STATE::MATCHES || origin.state == INFO_STATE::DIFFERS;
        print_json({{"query", verification.database},
                    {"source", verification.source.empty() ? JSON() : JSON(verification.source)},
                    {"sound", verification.sound()},
                    {"stamp", verification.stamp.empty() ? JSON() : JSON(verification.stamp)},
                    {"compiled_from", known ? info_json(origin.info) : JSON()},
                    {"checks", checks}});
        return;
    }
    for (const TABLE_CHECK& check : verification.checks) {
        fmt::print("{:<8} {:<16} {}\n", OUTCOMES[check.outcome], check.name, printable(check.detail));
    }
    fmt::print("{} is {}\n", printable(verification.database), verification.sound() ? "sound" : "refused");
}

JSON verification_schema() {
    const JSON check = object_schema({{"check", text_schema()},
                                      {"outcome", choice_schema({"passed", "failed", "skipped"})},
                                      {"detail", text_schema()}});
    return object_schema({{"query", text_schema()},
                          {"source", or_null(text_schema())},
                          {"sound", flag_schema()},
                          {"stamp", or_null(text_schema())},
                          {"compiled_from", or_null(info_schema())},
                          {"checks", array_schema(check)}});
}
