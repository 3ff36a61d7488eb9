#pragma once

/// \file
/// The text of a user's flash description, body#password; where the body holds the members between '@' characters.

#include <array>
#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "pgmdev_sfl_flash_info.h"

inline constexpr std::size_t USER_FLASH_VALUES = PGMDEV_SFL_FLASH_MEMBERS.size();

inline constexpr char USER_FLASH_VALUE_MARK = '@';
inline constexpr char USER_FLASH_BODY_END = '#';
inline constexpr char USER_FLASH_TEXT_END = ';';

/// The two pieces of the first description of a text.
struct USER_FLASH_PIECES {
    std::string_view body;
    std::string_view password;
};

/// Nothing when the text has no '#', or no ';' behind it.
std::optional<USER_FLASH_PIECES> split_user_flash(std::string_view text);

/// The next value, as it is spelled; `position` moves to the '@' behind it. Nothing, and no move, when there is none.
std::optional<std::string_view> next_user_flash_value(std::string_view body, QWORD& position);

/// Takes the members of a record from their values, in order, up to the first that is refused: its number, counted from
/// 0, or USER_FLASH_VALUES when all are accepted.
std::size_t assign_user_flash(std::span<const std::string, USER_FLASH_VALUES> values, PGMDEV_SFL_FLASH_INFO& record);

/// The body of a description: what assign_user_flash takes the record from. Sizes are spelled as signed numbers, which the
/// largest one needs.
std::string user_flash_body(const PGMDEV_SFL_FLASH_INFO& record);

/// What assign_user_flash accepts for a member that does not take everything, a flag or a byte, for people.
std::string_view accepted_user_flash_values(const PGMDEV_SFL_FLASH_MEMBER& member);

/// What makes a described flash plausible.
struct USER_FLASH_RULE {
    std::string_view member;    ///< the member that the rule is about
    std::string_view expected;  ///< what the member should be, for people
    bool (*holds)(const PGMDEV_SFL_FLASH_INFO& record);
};

/// All rules; a plausible record keeps every one.
std::span<const USER_FLASH_RULE> user_flash_rules();
bool is_plausible_user_flash(const PGMDEV_SFL_FLASH_INFO& record);
