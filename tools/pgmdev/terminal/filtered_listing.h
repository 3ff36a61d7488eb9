#pragma once

/// \file
/// Lists of which the user chooses rows, by a pattern for names among others.

#include <functional>
#include <string>
#include <vector>

#include "terminal/listing.h"

/// The verb with a pattern that names must fit.
VERB with_pattern(VERB verb);

/// The pattern that is given; if none is, every name fits it.
class GIVEN_PATTERN {
public:
    explicit GIVEN_PATTERN(const ARGUMENTS& given);

    bool fits(const std::string& name) const;

private:
    std::string m_pattern;
};

/// " with a name like ...", or "" when no pattern is given.
std::string given_pattern_text(const ARGUMENTS& given);

/// What may have been meant by a pattern that no name fits, if it has no wildcard: the similar names, and those that begin
/// with it, of which there are as many as `rows` counts for the pattern that they fit.
std::string did_you_mean_by_pattern(const ARGUMENTS& given,
                                    const std::function<std::vector<std::string>(const std::string& name)>& similar,
                                    const std::function<std::ptrdiff_t(const ARGUMENTS& given)>& rows);

/// Shows the rows as print_listing does. That there are none is a result, "not found", and `missing()` says it to people.
void print_filtered_listing(const JSON& row, const std::vector<JSON>& rows, const TEXT_TABLE& table,
                            const std::function<std::string()>& missing, const ARGUMENTS& given, COMMAND& command);
