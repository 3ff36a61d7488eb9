#include "faults.h"

#include <ostream>

std::string text_of(const SOURCE_PLACE& place) {
    return place.line == 0 ? place.file : place.file + ":" + std::to_string(place.line);
}

void FAULTS::print(std::ostream& output) const {
    for (const std::string& line : m_lines) {
        output << line << '\n';
    }
}
