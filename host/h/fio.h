#pragma once

/// \file
/// File I/O: paths, file status, and files that are replaced as a whole.
///
/// Path texts are UTF-8 on every system (on systems whose file names are plain bytes, those bytes).

#include <filesystem>
#include <span>
#include <string>
#include <vector>

#include "host_export.h"
#include "host_types.h"

/// A path, made absolute when it is constructed.
class HOST_EXPORT FIO_PATH {
public:
    FIO_PATH() = default;
    FIO_PATH(const std::string& path);  // NOLINT(google-explicit-constructor): callers pass texts
    FIO_PATH(const char* path);         // NOLINT(google-explicit-constructor)

    /// The absolute path; "" for an empty one.
    const std::string& fullpath() const noexcept { return m_full_path; }

private:
    std::string m_full_path;
};

/// What FIO_FILE_SYSTEM::status tells.
struct FIO_STATUS {
    QWORD size = 0;        ///< length of a regular file in bytes, 0 for anything else
    bool regular = false;  ///< whether it is a regular file (not a directory, pipe or device)
};

class HOST_EXPORT FIO_FILE_SYSTEM {
public:
    /// Whether something of that name exists.
    static bool exists(const char* path);

    /// Fills `status`; false when the system does not tell.
    static bool status(const char* path, FIO_STATUS* status);
};

/// The form of a path to open a stream with: absolute, and on Windows wide and free of the length limit.
HOST_EXPORT std::filesystem::path fio_get_unc_full_path(const std::string& path);

/// Replaces a file as a whole: at every moment other readers see the old file or the new one, whole. On Windows a reader
/// that opens the file in the very moment of the change is refused with a sharing violation and may try again; a reader
/// that has the file open delays the change for a second or two, then the commit fails.
///
/// The contents go into a temporary file in the same directory, which takes the file's name in one step when `commit`
/// is called, after it has reached the disk. Without a successful commit the old file stays as it was and the temporary
/// goes with this object. Nobody can read a temporary who may not read the file. On Linux it has no name before `commit`
/// where the file system has such files, and so goes with a process that is ended. Elsewhere it has a random name and may
/// be left behind by such a process: then it goes when it is a day old and somebody replaces a file in that directory.
///
/// An existing file keeps its permissions and its owner, and a symbolic link keeps pointing to the file it names (on
/// Windows the file takes the permissions of its directory, and the link itself is replaced). Where the user may not give
/// the new file the group of the old one, the group that it has may do no more than everybody.
///
/// Some files are opened and written by `commit` instead, in place and without a temporary file, so that readers may see
/// a part of the contents:
/// - a pipe or a device, which just receives them; a pipe that nobody reads keeps `commit` waiting;
/// - a file that has no name (any more), named by the system's link to what is open in a process;
/// - a file that may be written, in a directory in which no file may be created (as far as that shows before `commit`);
/// - a file of somebody else that may be written, since it is to stay theirs.
///
/// Room for the contents of such a file is taken before the first of its bytes is changed, but whatever else fails while
/// it is written leaves it damaged.
///
/// Refused are directories; links of somebody else in a directory that everybody may write to; and whatever stands there
/// when a fault of the system leaves open whether it is a file, or whether there is anything.
class HOST_EXPORT FIO_REPLACEMENT {
public:
    /// Creates the temporary file, empty, where there is to be one.
    explicit FIO_REPLACEMENT(const FIO_PATH& target);
    ~FIO_REPLACEMENT();
    FIO_REPLACEMENT(const FIO_REPLACEMENT&) = delete;
    FIO_REPLACEMENT& operator=(const FIO_REPLACEMENT&) = delete;

    /// The temporary file, which this process can open by that path; empty when it could not be created, and when the
    /// target is written in place.
    const FIO_PATH& temporary() const noexcept { return m_temporary; }

    /// Writes the whole contents into the temporary file, or keeps them for `commit`; false when that failed.
    bool write(std::span<const BYTE> contents);

    /// Flushes the temporary file to the disk and gives it the target's name, or writes the target in place; false when
    /// that, or a write, failed.
    bool commit();

private:
    std::filesystem::path m_target;
    FIO_PATH m_temporary;
    bool m_in_place = false;       ///< the target is written by `commit` itself
    int m_unnamed = -1;            ///< the number under which the temporary is open as long as it has no name
    std::vector<BYTE> m_contents;  ///< for the target that is written in place
    bool m_failed = false;         ///< the last write did not succeed
};
