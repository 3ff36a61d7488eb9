#pragma once

#include <string>
#include <vector>

#include "terminal/command_line.h"

/// The option of that name, if it is one with a value; null otherwise.
const GLOBAL_OPTION* option_with_value(const std::vector<GLOBAL_OPTION>& options, const std::string& argument);

/// How far words lead: from noun to noun, to a verb.
class WAY_TO_VERB {
public:
    explicit WAY_TO_VERB(const COMMAND_TABLE& table) : m_table(table), m_noun(&table.all) {}

    /// Goes on to a verb or a group; false: the noun has none of that name. Nothing lies behind a verb.
    bool enter(const std::string& word);

    /// Whether the next argument is the value of this one, "--option".
    bool takes_value(const std::string& option) const;

    const NOUN& noun() const { return *m_noun; }
    const VERB* verb() const { return m_verb; }  ///< null: none is reached

private:
    const COMMAND_TABLE& m_table;
    const NOUN* m_noun;
    const VERB* m_verb = nullptr;
};
