#pragma once

#include <string>
#include <vector>

class QTL_TOKENIZER {
public:
    QTL_TOKENIZER(std::string separators, bool keep_empty, std::string quotes, std::string escapes,
                  std::string comments, bool fold_case);

    std::vector<std::string> tokenize(std::string line);

private:
    std::string m_separators;
    bool m_keep_empty;
};
