#include "flash/log.h"

#include <fmt/core.h>

#include <array>
#include <istream>
#include <string_view>
#include <utility>

#include "flash/log_dump.h"
#include "flash/log_line.h"
#include "flash/log_words.h"
#include "text_lines.h"
#include "utf_8_input.h"

namespace {

constexpr std::size_t MOST_CHARACTERS = std::size_t{16} << 20;
constexpr std::size_t LONGEST_LINE = 4096;

/// The digits of an identification alone: logs have many lines with less.
constexpr std::size_t SHORTEST_LINE = 6;

/// How far apart the lines of one identification may stand.
constexpr std::size_t MOST_LINES_BETWEEN = 4;

/// The lines of a log, as much of them as is looked at.
class LOG_LINES {
public:
    explicit LOG_LINES(std::istream& log) : m_log([&log] { return log.get(); }) {}

    /// False at the end.
    bool next(std::string& line) {
        const bool any = read(line);
        if (m_is_first) {
            m_is_first = false;
            line.erase(0, line.size() - without_byte_order_mark(line).size());
        }
        return any;
    }

    bool is_malformed() const { return m_is_malformed; }

private:
    bool read(std::string& line) {
        line.clear();
        bool any = false;
        while (m_left != 0) {
            const int c = m_log.next();
            if (c < 0) {
                m_is_malformed = c == UTF_8_INPUT::MALFORMED;
                break;
            }
            --m_left;
            any = true;
            if (c == '\n') {
                break;
            }
            if (line.size() < LONGEST_LINE && c != '\r') {
                line += static_cast<char>(c);
            }
        }
        return any;
    }

    UTF_8_INPUT m_log;
    std::size_t m_left = MOST_CHARACTERS;
    bool m_is_first = true;
    bool m_is_malformed = false;
};

/// What a line says of the bytes in the next one.
struct LINE_BEFORE {
    bool announces = false;       ///< that they are an identification
    bool expects = false;         ///< that they were expected, and may not be what was seen
    bool asks_for_other = false;  ///< that they are none; short lines between do not matter
};

/// An identification that is told a field in each line.
class SPREAD_IDENTIFICATION {
public:
    /// The bytes when the line completes them.
    std::vector<BYTE> take(const std::string& line, std::size_t number) {
        for (std::size_t form = 0; form < FORMS.size(); ++form) {
            PROGRESS& progress = m_progress[form];
            for (std::size_t field = 0; field < FORMS[form].size(); ++field) {
                const std::vector<BYTE> bytes = field_in(line, FORMS[form][field]);
                const bool continues = field == progress.fields && number - progress.line <= MOST_LINES_BETWEEN;
                if (bytes.empty() || bytes.size() > 2 || (field != 0 && !continues)) {
                    continue;
                }
                progress.bytes.resize(field == 0 ? 0 : progress.bytes.size());
                progress.bytes.insert(progress.bytes.end(), bytes.begin(), bytes.end());
                progress.fields = field + 1;
                progress.line = number;
                if (progress.bytes.size() >= LEAST_IDENTIFICATION) {
                    return progress.bytes;
                }
                break;
            }
        }
        return {};
    }

private:
    using FORM = std::array<std::string_view, 3>;
    static constexpr std::string_view NOTHING = "\n";
    static constexpr std::array<FORM, 4> FORMS{
        FORM{"jedec id", "memory type", "capacity"},
        FORM{"manufacturer id", "memory type", "capacity"},
        FORM{"manufacturer id", "device id", NOTHING},
        FORM{"manufacturer:", "device:", NOTHING},
    };

    /// How much of a form the lines have told.
    struct PROGRESS {
        std::size_t fields = 0;
        std::size_t line = 0;  ///< of the last of them
        std::vector<BYTE> bytes;
    };

    std::array<PROGRESS, FORMS.size()> m_progress;
};

/// Looks at the lines of a log, one after another, and keeps what identifies a flash best.
class LOG_SEARCH {
public:
    void look_at(const std::string& text) {
        ++m_number;
        if (text.size() < SHORTEST_LINE) {
            pass_over(text);
            return;
        }
        const std::string line = without_what_was_expected(text);
        const std::vector<BYTE> dump = m_before.expects ? received_in(line) : dump_in(line);
        const std::vector<BYTE> bytes = identification_of(line, dump);
        using enum LOG_FINDING::KIND;
        if (bytes.size() >= LEAST_IDENTIFICATION) {
            keep({BYTES, m_number, text, bytes, {}});
        } else if (const std::vector<std::string> names = names_in(line); !names.empty()) {
            keep({NAME, m_number, text, {}, names});
        } else if (!dump.empty() && !m_before.asks_for_other) {
            keep({DUMP, m_number, text, dump, {}});
        }
        m_before.expects = announces_what_was_expected(text);
        m_before.announces = bytes.empty() && !m_before.expects && announces_identification(line);
        m_before.asks_for_other = asks_for_no_identification(line);
    }

    std::vector<LOG_FINDING> take_best() { return std::move(m_best); }

private:
    void pass_over(const std::string& text) {
        if (text.find_first_not_of(" \t") != std::string::npos) {  // blank lines part nothing
            m_before.announces = m_before.expects = false;
        }
    }

    /// The identification that a line tells, or completes, or that it dumps behind a line that has announced it.
    std::vector<BYTE> identification_of(const std::string& line, const std::vector<BYTE>& dump) {
        std::vector<BYTE> bytes = identification_in(line);
        if (bytes.size() < LEAST_IDENTIFICATION) {
            bytes = m_spread.take(line, m_number);
        }
        return bytes.empty() && m_before.announces ? dump : bytes;
    }

    /// Of the kinds only the best one is kept.
    void keep(LOG_FINDING finding) {
        if (!m_best.empty() && finding.kind < m_best.front().kind) {
            m_best.clear();
        }
        if (m_best.empty() || finding.kind == m_best.front().kind) {
            m_best.push_back(std::move(finding));
        }
    }

    SPREAD_IDENTIFICATION m_spread;
    LINE_BEFORE m_before;
    std::size_t m_number = 0;  ///< of the line
    std::vector<LOG_FINDING> m_best;
};

}  // namespace

std::string LOG_FINDING::response() const {
    std::string digits;
    for (const BYTE byte : bytes) {
        digits += fmt::format("{:02X}", byte);
    }
    return digits;
}

std::optional<std::vector<LOG_FINDING>> find_in_log(std::istream& log) {
    LOG_SEARCH search;
    LOG_LINES lines(log);
    for (std::string text; lines.next(text);) {
        search.look_at(text);
    }
    return lines.is_malformed() ? std::nullopt : std::optional(search.take_best());
}
