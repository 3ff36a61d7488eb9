#include "faults.h"

#include <ostream>

#include "printable_text.h"

std::string text_of(const SOURCE_PLACE& place) {
    std::string text = place.file.text();
    for (const int number : {place.line, place.column}) {
        text += number == 0 ? "" : ":" + std::to_string(number);
    }
    return text;
}

void FAULTS::add(const SOURCE_PLACE& place, const std::string& text) {
    if (m_lines.size() == MOST_LINES) {
        ++m_further;
        return;
    }
    m_lines.push_back(text_of(place) + ": " + text);
}

void FAULTS::print(std::ostream& output) const {
    for (const std::string& line : m_lines) {
        output << printable(line) << '\n';
    }
    if (m_further != 0) {
        output << "and " << m_further << " further fault" << (m_further == 1 ? "" : "s") << '\n';
    }
}
