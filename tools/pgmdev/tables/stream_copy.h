#pragma once

/// \file
/// Tables and databases through pipes, which can be read but once: to tell what they are takes a look first.

#include <optional>
#include <string>

#include "files/scratch_directory.h"
#include "terminal/failure.h"

/// A file that the user has named; what a pipe or device gives is kept in a file of its own as long as this lives. One that
/// cannot be read throws COMMAND_FAILURE.
class STREAM_COPY {
public:
    STREAM_COPY(const std::string& file, const std::string& argument);

    /// The file, or the copy.
    const std::string& path() const { return m_path; }

    /// What `read` gives. A failure that names the copy names what the user has named.
    template <class READ>
    auto told_of(READ read) const try {
        return read();
    } catch (const COMMAND_FAILURE& error) {
        FAILURE failure = error.failure();
        failure.path = failure.path == m_path ? m_file : failure.path;
        throw COMMAND_FAILURE(std::move(failure), error.result());
    }

private:
    std::string m_file;
    std::string m_path;
    std::optional<SCRATCH_DIRECTORY> m_scratch;
};
