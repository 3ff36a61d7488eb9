#include "qtl.h"

#include "msg.h"

QTL_TOKENIZER::QTL_TOKENIZER(const std::string& separators, bool keep_empty, const std::string& quotes,
                             const std::string& escapes, const std::string& comments, bool fold_case)
    : m_separators(separators), m_keep_empty(keep_empty) {
    if (!quotes.empty() || !escapes.empty() || !comments.empty() || fold_case) {
        MSG_INTERNAL_ERROR::report("quotes.empty() && escapes.empty() && comments.empty() && !fold_case", "QTL",
                                   "host/src/qtl", __LINE__);
    }
}

std::vector<std::string> QTL_TOKENIZER::tokenize(const std::string& line) const {
    std::vector<std::string> cells;
    for (std::size_t begin = 0;;) {
        const std::size_t separator = line.find_first_of(m_separators, begin);
        const std::size_t end = separator == std::string::npos ? line.size() : separator;
        if (m_keep_empty || end > begin) {
            cells.push_back(line.substr(begin, end - begin));
        }
        if (separator == std::string::npos) {
            return cells;
        }
        begin = separator + 1;
    }
}
