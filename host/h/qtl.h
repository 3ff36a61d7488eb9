#pragma once

/// \file
/// Splitting a line into cells.

#include <string>
#include <vector>

#include "host_export.h"

/// Splits lines at separator characters.
///
/// Without `keep_empty`, runs of separators count as one and no cell is empty. With it every separator character ends a
/// cell, so that empty cells, a trailing one included, are kept; an empty line is one empty cell.
///
/// Quotes, escapes, comments and folding of the case belong to the host tool's tokenizer; the reference host does not
/// offer them. Asking for one reports the internal error "quotes.empty() && escapes.empty() && comments.empty() &&
/// !fold_case".
class HOST_EXPORT QTL_TOKENIZER {
public:
    QTL_TOKENIZER(const std::string& separators, bool keep_empty, const std::string& quotes, const std::string& escapes,
                  const std::string& comments, bool fold_case);

    std::vector<std::string> tokenize(const std::string& line) const;

private:
    std::string m_separators;
    bool m_keep_empty;
};
