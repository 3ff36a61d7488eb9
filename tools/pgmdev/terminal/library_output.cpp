#include "terminal/library_output.h"

#include <iostream>
#include <string>

#include "printable_text.h"

namespace {

/// Shows what is printed there on standard error, line by line.
class SHOWN_ON_STANDARD_ERROR : public std::streambuf {
    int_type overflow(int_type c) override {
        if (c != traits_type::eof()) {
            m_line += traits_type::to_char_type(c);
        }
        return c != '\n' || sync() == 0 ? traits_type::not_eof(c) : traits_type::eof();
    }

    int sync() override {
        if (m_line.empty()) {  // before each character that is read from standard input
            return 0;
        }
        const std::string text = printable_lines(m_line);
        m_line.clear();
        const auto length = static_cast<std::streamsize>(text.size());
        std::streambuf& errors = *std::cerr.rdbuf();  // std::cerr itself would have this flushed before
        return errors.sputn(text.data(), length) == length ? errors.pubsync() : -1;
    }

    std::string m_line;
};

SHOWN_ON_STANDARD_ERROR& shown() {
    static SHOWN_ON_STANDARD_ERROR buffer;
    return buffer;
}

std::ostream& answers() {
    static std::ostream stream(std::cout.rdbuf());
    return stream;
}

}  // namespace

LIBRARY_OUTPUT::LIBRARY_OUTPUT() : m_former(answers().rdbuf()) {
    std::cout.rdbuf(&shown());
}

LIBRARY_OUTPUT::~LIBRARY_OUTPUT() {
    std::cout.flush();
    std::cout.rdbuf(m_former);
}

std::ostream& answer_stream() {
    return answers();
}
