#pragma once

/// \file
/// The examination of a user's encoded flash description: how far it holds, step by step. The manager takes the record
/// of one that holds to the end and was signed; the explanation says of any where it breaks.

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "pgmdev_sfl_flash_info.h"
#include "user_flash/codec.h"
#include "user_flash/text.h"

struct USER_FLASH_EXAMINATION {
    USER_FLASH_CODING decoded;                ///< the text, or the line that says why there is none
    std::optional<USER_FLASH_PIECES> pieces;  ///< of the text, in which they lie

    std::vector<std::string> values;  ///< of the members, up to the first that is missing
    std::size_t assigned = 0;         ///< members of `record` whose values were accepted, in order
    PGMDEV_SFL_FLASH_INFO record;

    bool plausible = false;  ///< complete, and its values are those that a flash can have

    bool has_pieces() const { return pieces && !pieces->body.empty() && !pieces->password.empty(); }
    bool has_all_values() const { return values.size() == USER_FLASH_VALUES; }
    bool is_complete() const { return assigned == USER_FLASH_VALUES; }

    USER_FLASH_EXAMINATION() = default;
    USER_FLASH_EXAMINATION(const USER_FLASH_EXAMINATION&) = delete;  // its pieces lie in its text
    USER_FLASH_EXAMINATION& operator=(const USER_FLASH_EXAMINATION&) = delete;
};

/// Examines what `examination.decoded` holds, as far as it is sound, but for the password, for which the host is asked its
/// version (codec.h). Of several descriptions the first one counts.
void examine_user_flash(USER_FLASH_EXAMINATION& examination);
