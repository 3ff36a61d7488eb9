#include "flash/log.h"

#include <fmt/core.h>

#include <array>
#include <istream>
#include <string_view>

#include "flash/log_line.h"

namespace {

constexpr std::size_t MOST_CHARACTERS = std::size_t{16} << 20;
constexpr std::size_t LONGEST_LINE = 4096;

/// How far apart the lines of one identification may stand.
constexpr std::size_t MOST_LINES_BETWEEN = 4;

/// A line of the log, as much of it as is looked at; false at the end.
bool read_line(std::istream& log, std::string& line, std::size_t& left) {
    line.clear();
    bool any = false;
    for (int c = 0; left != 0 && (c = log.get()) != std::istream::traits_type::eof(); --left) {
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

/// An identification that is told a field in each line.
class SPREAD_IDENTIFICATION {
public:
    /// The bytes when the line completes them.
    std::vector<BYTE> take(const std::string& line, std::size_t number) {
        for (const auto& form : FORMS) {
            for (std::size_t i = 0; i < form.size(); ++i) {
                const std::vector<BYTE> bytes = field_in(line, form[i]);
                if (bytes.empty() || bytes.size() > 2) {
                    continue;
                }
                const bool continues = m_form == &form && i == m_fields && number - m_line <= MOST_LINES_BETWEEN;
                if (i != 0 && !continues) {
                    continue;
                }
                m_bytes.resize(i == 0 ? 0 : m_bytes.size());
                m_bytes.insert(m_bytes.end(), bytes.begin(), bytes.end());
                m_form = &form;
                m_fields = i + 1;
                m_line = number;
                return m_bytes.size() >= LEAST_IDENTIFICATION ? m_bytes : std::vector<BYTE>();
            }
        }
        return {};
    }

private:
    using FORM = std::array<std::string_view, 3>;
    static constexpr std::array<FORM, 2> FORMS{
        FORM{"jedec id", "memory type", "memory capacity"},
        FORM{"manufacturer:", "device:", "-"},
    };

    const FORM* m_form = nullptr;
    std::size_t m_fields = 0;
    std::size_t m_line = 0;
    std::vector<BYTE> m_bytes;
};

}  // namespace

std::string LOG_FINDING::response() const {
    std::string digits;
    for (const BYTE byte : bytes) {
        digits += fmt::format("{:02X}", byte);
    }
    return digits;
}

std::vector<LOG_FINDING> find_in_log(std::istream& log) {
    std::vector<LOG_FINDING> best;
    const auto add = [&best](LOG_FINDING finding) {
        if (!best.empty() && finding.kind < best.front().kind) {
            best.clear();
        }
        if (best.empty() || finding.kind == best.front().kind) {
            best.push_back(std::move(finding));
        }
    };
    SPREAD_IDENTIFICATION spread;
    std::size_t number = 0;
    std::size_t left = MOST_CHARACTERS;
    for (std::string line; read_line(log, line, left);) {
        ++number;
        std::vector<BYTE> bytes = identification_in(line);
        if (bytes.size() < LEAST_IDENTIFICATION) {
            bytes = spread.take(line, number);
        }
        using enum LOG_FINDING::KIND;
        if (bytes.size() >= LEAST_IDENTIFICATION) {
            add({BYTES, number, line, bytes, {}});
        } else if (const std::vector<std::string> names = names_in(line); !names.empty()) {
            add({NAME, number, line, {}, names});
        } else if (bytes = dump_in(line); !bytes.empty()) {
            add({DUMP, number, line, bytes, {}});
        }
    }
    return best;
}
