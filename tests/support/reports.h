#pragma once

/// \file
/// Internal errors in tests: provoked, recorded, and expected by their texts.

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

#include "msg.h"

/// Records every internal error while it lives and ends operations as the reference host does, but quietly.
class REPORTS {
public:
    REPORTS()
        : m_previous(MSG_INTERNAL_ERROR::set_handler([this](const MSG_INTERNAL_ERROR_REPORT& report) {
              m_reports.push_back(report);
              throw MSG_INTERNAL_ERROR_EXCEPTION(report);
          })) {}
    ~REPORTS() { MSG_INTERNAL_ERROR::set_handler(m_previous); }
    REPORTS(const REPORTS&) = delete;
    REPORTS& operator=(const REPORTS&) = delete;

    const std::vector<MSG_INTERNAL_ERROR_REPORT>& all() const { return m_reports; }

private:
    MSG_INTERNAL_ERROR::HANDLER m_previous;
    std::vector<MSG_INTERNAL_ERROR_REPORT> m_reports;
};

/// Has internal errors reported to somebody who takes note and returns, while it lives: what ends an operation is then the
/// library.
class RETURNING_REPORTER {
public:
    RETURNING_REPORTER()
        : m_previous(MSG_INTERNAL_ERROR::set_handler(
              [this](const MSG_INTERNAL_ERROR_REPORT& report) { m_modules.push_back(report.module); })) {}
    ~RETURNING_REPORTER() { MSG_INTERNAL_ERROR::set_handler(m_previous); }
    RETURNING_REPORTER(const RETURNING_REPORTER&) = delete;
    RETURNING_REPORTER& operator=(const RETURNING_REPORTER&) = delete;

    /// The module that each report names.
    const std::vector<std::string>& modules() const { return m_modules; }

private:
    MSG_INTERNAL_ERROR::HANDLER m_previous;
    std::vector<std::string> m_modules;
};

/// The condition text of the internal error that ends `operation`; "(no report)" when it runs to its end.
inline std::string report_of(const std::function<void()>& operation) {
    const REPORTS reports;
    try {
        operation();
    } catch (const MSG_INTERNAL_ERROR_EXCEPTION& error) {
        return error.what();
    }
    return "(no report)";
}

/// Expects `statement` to end with the internal error `condition`.
#define EXPECT_REPORT(statement, condition) EXPECT_EQ(report_of([&] { statement; }), condition)
