#include <optional>

#include "descriptor_posix.h"
#include "fio.h"
#include "fio_replacement_temporary_posix.h"
#include "replacing.h"
#include "standard_places.h"

namespace fs = std::filesystem;

namespace {

bool synchronise(int descriptor) {
    return uninterrupted([=] { return ::fsync(descriptor); }) == 0;
}

/// Whether following the link would do what somebody else has laid out: in a directory such as /tmp, where everybody may
/// make links, only one's own and those of the directory's owner are followed. The system itself does so only when it is
/// the one that follows.
bool is_trap(const fs::path& link, const struct stat& status) {
    struct stat directory {};
    if (::stat(link.parent_path().c_str(), &directory) != 0) {
        return true;
    }
    const bool anybody_writes = (directory.st_mode & S_IWOTH) != 0;
    return anybody_writes && status.st_uid != ::geteuid() && status.st_uid != directory.st_uid;
}

/// The file that `path` names once symbolic links are followed, whether it exists or not; empty for links in a circle,
/// and where that cannot be told or is a trap. `status` receives what is there, or nothing.
fs::path follow_links(fs::path path, struct stat& status) {
    constexpr int LONGEST_CHAIN = 40;  // as the system itself allows
    for (int i = 0; i <= LONGEST_CHAIN; ++i) {
        status = {};
        if (::lstat(path.c_str(), &status) != 0) {
            return errno == ENOENT ? path : fs::path();
        }
        if (!S_ISLNK(status.st_mode)) {
            return path;
        }
        std::error_code error;
        const fs::path target = fs::read_symlink(path, error);
        if (error || is_trap(path, status)) {
            return {};
        }
        path = path.parent_path() / target;
    }
    return {};
}

bool may_write(const fs::path& file) {
    return static_cast<bool>(DESCRIPTOR(open_file(file.c_str(), O_WRONLY)));
}

/// Whether the file would change its owner if another one took its name.
bool is_of_somebody_else(const struct stat& existing) {
    const uid_t user = ::geteuid();
    return user != 0 && existing.st_uid != user;
}

/// Whether that file is what the path names; nothing where that cannot be told. One that has lost its name by then, since
/// somebody has replaced it, is not found again; one that is open in a process always is.
std::optional<bool> is_found(const fs::path& path, const struct stat& file) {
    struct stat found {};
    if (::stat(path.c_str(), &found) == 0) {
        return is_same_file(file, found);
    }
    return errno == ENOENT ? std::optional(false) : std::nullopt;
}

/// Takes the room that a file is going to need, so that a full disk shows before anything is lost.
bool take_room(int descriptor, std::size_t size) {
    struct stat existing {};
    const auto needed = static_cast<off_t>(size);
    if (::fstat(descriptor, &existing) != 0 || existing.st_size >= needed) {
        return true;
    }
    const int error = ::posix_fallocate(descriptor, 0, needed);
    const bool full = error == ENOSPC || error == EDQUOT || error == EFBIG;
    if (!full) {
        return true;  // where room cannot be taken beforehand, writing will show
    }
    [[maybe_unused]] const int cut = ::ftruncate(descriptor, existing.st_size);  // what was there stays in any case
    errno = error;                                                               // for whoever asks why
    return false;
}

/// Permissions for a file that does not have the group for which these are: its own may do no more than everybody.
mode_t without_group(mode_t mode) {
    constexpr mode_t TO_GROUP = 3;  // bits from the place of everybody
    return mode & ~(S_ISGID | (S_IRWXG & ~((mode & S_IRWXO) << TO_GROUP)));
}

/// Gives a new file the permissions and the owner of the one that it replaces, as far as the user may.
bool resemble(int descriptor, const struct stat& existing) {
    if (::fchown(descriptor, existing.st_uid, existing.st_gid) != 0) {
        // Only root may give files away.
        [[maybe_unused]] const int given = ::fchown(descriptor, static_cast<uid_t>(-1), existing.st_gid);
    }
    struct stat made {};
    if (::fstat(descriptor, &made) != 0) {
        return false;
    }
    const mode_t mode = existing.st_mode & 07777;
    return ::fchmod(descriptor, made.st_gid == existing.st_gid ? mode : without_group(mode)) == 0;
}

}  // namespace

bool write_in_place(const fs::path& target, std::span<const BYTE> contents) {
    DESCRIPTOR file(open_file(target.c_str(), O_WRONLY | O_NOCTTY));
    struct stat existing {};
    if (!file || ::fstat(file.number(), &existing) != 0) {
        return false;
    }
    if (!S_ISREG(existing.st_mode)) {
        return write_all(file.number(), contents) && file.close();
    }
    return take_room(file.number(), contents.size()) && write_all(file.number(), contents) &&
           uninterrupted([&] { return ::ftruncate(file.number(), static_cast<off_t>(contents.size())); }) == 0 &&
           synchronise(file.number()) && file.close();
}

bool put_in_place(FIO_PATH& file, int& unnamed, const fs::path& target) {
    const fs::path directory = target.parent_path();  // what may fail comes before the change
    {
        const DESCRIPTOR opened(unnamed == NAMED ? open_named(file) : give_name(file, unnamed, directory));
        if (!opened) {
            return false;
        }
        struct stat existing {};
        const bool replaces = ::stat(target.c_str(), &existing) == 0;
        if (!replaces && errno != ENOENT) {
            return false;
        }
        if ((replaces && !resemble(opened.number(), existing)) || !synchronise(opened.number())) {
            return false;
        }
    }
    if (::rename(file.fullpath().c_str(), target.c_str()) != 0) {
        return false;
    }
    // The new name itself reaches the disk with its directory. Where a directory cannot be synchronised, the file is
    // whole all the same.
    const DESCRIPTOR names(open_file(directory.c_str(), O_RDONLY | O_DIRECTORY));
    if (names) {
        synchronise(names.number());
    }
    return true;
}

FIO_REPLACEMENT::FIO_REPLACEMENT(const FIO_PATH& target) {
    if (target.fullpath().empty()) {
        return;
    }
    const fs::path named = fio_get_unc_full_path(target.fullpath());
    struct stat existing {};
    const bool exists = ::stat(named.c_str(), &existing) == 0;
    if ((!exists && errno != ENOENT) || (exists && S_ISDIR(existing.st_mode))) {
        return;
    }
    if (exists && !S_ISREG(existing.st_mode)) {
        m_target = named;  // what is open in a process is named by links that lead nowhere
        m_in_place = true;
        return;
    }
    struct stat followed {};
    m_target = follow_links(named, followed);
    if (m_target.empty()) {
        return;
    }
    if (exists && existing.st_nlink == 0 && !is_same_file(existing, followed)) {
        const std::optional<bool> found_again = is_found(named, existing);
        if (found_again != false) {
            m_target = named;  // likewise
            m_in_place = found_again.has_value();
            return;
        }
    }
    if (!exists || !is_of_somebody_else(existing) || !may_write(m_target)) {
        const fs::path directory = m_target.parent_path();
        make_state_directory(directory);
        // Nobody reads it who may not read the file.
        create_temporary(directory, exists ? 0600 : 0666, m_temporary, m_unnamed);
    }
    m_in_place = m_temporary.fullpath().empty() && exists && may_write(m_target);
}
