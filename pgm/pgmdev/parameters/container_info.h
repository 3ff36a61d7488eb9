#pragma once

/// \file
/// The text beside the parameter container, which tells by a digest whether the container is what was written last.

#include <span>
#include <string>

#include "file_info.h"
#include "fio.h"
#include "pgmdev_types.h"

/// What the text tells of the container with that digest.
INFO_STATE container_info_state(const std::string& container, const std::string& digest);

/// Replaces the text together with the container, so that at no moment it calls a good one doubtful. It is no failure when
/// that does not work: the text goes then, which means nothing.
class CONTAINER_INFO {
public:
    /// `replaced_digest` is that of the container that goes; "" for none that anybody should take for a good one.
    CONTAINER_INFO(const std::string& container, std::span<const BYTE> bytes, const std::string& replaced_digest);

    /// Before the container takes its place: the text becomes one that tells of both.
    void announce();

    /// Behind that: it tells of the new one alone. Does not fail; where it cannot, the text goes on telling of both.
    void settle() noexcept;

private:
    std::string m_path;
    std::string m_passing_text;
    FIO_REPLACEMENT m_passing;
    FIO_REPLACEMENT m_lasting;
    bool m_is_to_settle;
};
