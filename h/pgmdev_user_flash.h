#pragma once

/// \file
/// A user's own serial flash, as one encoded text: made from a dialogue, and explained.
///
/// The text is the value of a configuration key. PGMDEV_FLASH_MANAGER makes the flash that it describes record 0, or
/// silently goes on without it; this class says why.

#include <functional>
#include <iosfwd>
#include <span>
#include <string>
#include <vector>

#include "pgmdev_export.h"
#include "pgmdev_sfl_flash_info.h"

class PGMDEV_EXPORT PGMDEV_USER_FLASH {
public:
    /// The configuration key that carries the encoded text. The switch of this name with "_DEBUG" behind it makes the
    /// manager write what it finds in the text to standard output.
    static constexpr const char* CONFIGURATION_KEY = "PGM_USER_SFL_FLASH_INFO";

    /// Decodes a text and finds everything for which a manager would refuse it. Reports and prints nothing. Of a text
    /// with several descriptions the first one counts, as it does for the manager.
    static PGMDEV_USER_FLASH from_encoded(const std::string& encoded);

    /// The same for all descriptions of a text, in their order. The first one, which is always there, is what
    /// from_encoded gives: a manager takes it or none.
    static std::vector<PGMDEV_USER_FLASH> all_from_encoded(const std::string& encoded);

    /// Holds the dialogue of PGMDEV_FLASH_MANAGER::gen_flash_ini on these streams. The encoded text; "" when the
    /// dialogue ended without one.
    static std::string define(std::istream& answers, std::ostream& prompts);

    /// An answer that the dialogue does not take.
    struct REFUSED_ANSWER {
        std::string question;  ///< the prompt
        std::string answer;
        std::string accepted;  ///< what would be taken, for people
    };

    /// The same dialogue for a person. A byte-order mark may stand before the first line, and lines may end in CR LF; a
    /// name or voltage with one of the characters @ # ; which would tear the description apart, is refused. `ask_again`
    /// hears of every refused answer and says whether the question is put again, or the dialogue ends.
    static std::string define(std::istream& answers, std::ostream& prompts,
                              const std::function<bool(const REFUSED_ANSWER&)>& ask_again);

    /// The text that the dialogue would give for these flash devices, one to MOST_FLASHES, signed by this build; "" for
    /// another number of them, for names that a text cannot carry, and where the text could not be decoded again, since it
    /// is too long or repeats itself too often. Names are signed in the case that they have, and read in upper case.
    /// Without memory, also where it is zlib that lacks it, std::bad_alloc is thrown.
    static std::string encode(std::span<const PGMDEV_SFL_FLASH_INFO> flashes);
    static constexpr std::size_t MOST_FLASHES = 3;

    /// A member that is not that of a flash.
    struct IMPLAUSIBLE_MEMBER {
        std::string member;
        std::string found;     ///< in decimal
        std::string expected;  ///< for people
    };

    /// Every member for which a manager would refuse a flash.
    static std::vector<IMPLAUSIBLE_MEMBER> implausible(const PGMDEV_SFL_FLASH_INFO& flash);

    const std::string& body() const noexcept { return m_body; }          ///< the values; "" when nothing decodes
    const std::string& password() const noexcept { return m_password; }  ///< as the text has it
    bool password_valid() const noexcept { return m_password_valid; }    ///< whether this build signed the body

    /// Whether the value of every member was accepted and is in `record`; otherwise the values before the first refused
    /// one are.
    bool complete() const noexcept { return m_complete; }
    bool plausible() const noexcept { return m_plausible; }  ///< complete, with values that a flash can have
    const PGMDEV_SFL_FLASH_INFO& record() const noexcept { return m_record; }

    /// Why a manager does not take the flash, a sentence each; empty when it does.
    const std::vector<std::string>& faults() const noexcept { return m_faults; }

private:
    PGMDEV_USER_FLASH() = default;
    static PGMDEV_USER_FLASH from_decoded(const std::string& text);

    std::string m_body;
    std::string m_password;
    bool m_password_valid = false;
    bool m_complete = false;
    bool m_plausible = false;
    PGMDEV_SFL_FLASH_INFO m_record;
    std::vector<std::string> m_faults;
};
