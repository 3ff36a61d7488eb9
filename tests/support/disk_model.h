#pragma once

/// \file
/// What a disk may hold when the power fails: of files that were not synchronised any part of what was written, and of
/// names that were given, changed or taken away any that their directory was not synchronised behind.

#include <map>
#include <string>
#include <vector>

#include "support/recorded_calls.h"

/// Contents by path.
using DISK = std::map<std::string, std::string>;

class DISK_MODEL {
public:
    /// All of it has reached the disk.
    explicit DISK_MODEL(const DISK& files);

    void apply(const RECORDED_CALL& call);

    /// What programs see as long as the power is there.
    DISK seen() const;

    /// Everything that the disk may hold when it fails now.
    std::vector<DISK> possible() const;

private:
    /// What is behind a name.
    struct BODY {
        std::string now;
        std::string kept;  ///< when it was last synchronised
    };
    using NAMES = std::map<std::string, std::size_t>;  ///< place of the body by path

    /// A change of names: `gone` goes, and `come` is the name of a body; each may be "".
    struct CHANGE {
        std::string gone;
        std::string come;
        std::size_t body;
    };

    void change(const CHANGE& change);
    void keep_names_of(const std::string& directory);
    static void carry_out(const CHANGE& change, NAMES& names);

    std::vector<BODY> m_bodies;
    NAMES m_now;
    NAMES m_kept;
    NAMES m_unnamed;                ///< by what the system calls them: no disk has them by that
    std::vector<CHANGE> m_pending;  ///< behind m_kept
};
