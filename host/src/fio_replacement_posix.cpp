#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <string>

#include "fio.h"
#include "standard_places.h"
#include "utf8_path.h"

namespace fs = std::filesystem;

namespace {

/// A file descriptor that is closed when it goes.
class DESCRIPTOR {
public:
    explicit DESCRIPTOR(int number) : m_number(number) {}
    ~DESCRIPTOR() {
        if (m_number >= 0) {
            ::close(m_number);
        }
    }
    DESCRIPTOR(const DESCRIPTOR&) = delete;
    DESCRIPTOR& operator=(const DESCRIPTOR&) = delete;

    int number() const { return m_number; }
    explicit operator bool() const { return m_number >= 0; }

private:
    int m_number;
};

bool write_all(int descriptor, std::span<const BYTE> contents) {
    while (!contents.empty()) {
        const ssize_t written = ::write(descriptor, contents.data(), contents.size());
        if (written < 0 && errno != EINTR) {
            return false;
        }
        if (written > 0) {
            contents = contents.subspan(static_cast<std::size_t>(written));
        }
    }
    return true;
}

/// The file that `path` names once symbolic links are followed, whether it exists or not; empty for links in a circle.
fs::path follow_links(fs::path path) {
    constexpr int LONGEST_CHAIN = 40;  // as the system itself allows
    for (int i = 0; i < LONGEST_CHAIN; ++i) {
        std::error_code error;
        if (!fs::is_symlink(fs::symlink_status(path, error))) {
            return path;
        }
        const fs::path target = fs::read_symlink(path, error);
        if (error) {
            return {};
        }
        path = path.parent_path() / target;
    }
    return {};
}

/// Creates a new empty file in the directory; empty when that cannot be done.
fs::path create_temporary(const fs::path& directory) {
    static std::atomic<unsigned> counter{0};
    constexpr int ATTEMPTS = 100;
    for (int i = 0; i < ATTEMPTS; ++i) {
        fs::path path = directory / (".tessary-" + std::to_string(::getpid()) + "-" + std::to_string(++counter));
        if (DESCRIPTOR(::open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666))) {
            return path;
        }
        if (errno != EEXIST) {
            return {};
        }
    }
    return {};
}

bool may_write(const fs::path& file) {
    return static_cast<bool>(DESCRIPTOR(::open(file.c_str(), O_WRONLY | O_CLOEXEC)));
}

/// Whether the file would change its owner if another one took its name.
bool is_of_somebody_else(const fs::path& file) {
    struct stat existing {};
    const uid_t user = ::geteuid();
    return user != 0 && ::stat(file.c_str(), &existing) == 0 && existing.st_uid != user;
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
    if (full && ::ftruncate(descriptor, existing.st_size) != 0) {
        return false;
    }
    return !full;  // where room cannot be taken beforehand, writing will show
}

bool write_in_place(const fs::path& target, std::span<const BYTE> contents) {
    const DESCRIPTOR file(::open(target.c_str(), O_WRONLY | O_CLOEXEC | O_NOCTTY));
    struct stat existing {};
    if (!file || ::fstat(file.number(), &existing) != 0) {
        return false;
    }
    if (!S_ISREG(existing.st_mode)) {
        return write_all(file.number(), contents);
    }
    return take_room(file.number(), contents.size()) && write_all(file.number(), contents) &&
           ::ftruncate(file.number(), static_cast<off_t>(contents.size())) == 0 && ::fsync(file.number()) == 0;
}

/// Gives a new file the permissions and the owner of the one that it replaces, as far as the user may.
bool resemble(int descriptor, const struct stat& existing) {
    if (::fchown(descriptor, existing.st_uid, existing.st_gid) != 0) {
        (void)!::fchown(descriptor, static_cast<uid_t>(-1), existing.st_gid);  // only root may give files away
    }
    return ::fchmod(descriptor, existing.st_mode & 07777) == 0;
}

}  // namespace

FIO_REPLACEMENT::FIO_REPLACEMENT(const FIO_PATH& target) {
    if (target.fullpath().empty()) {
        return;
    }
    const fs::path named = fio_get_unc_full_path(target.fullpath());
    std::error_code error;
    const fs::file_status existing = fs::status(named, error);
    if (fs::is_directory(existing)) {
        return;
    }
    if (fs::exists(existing) && !fs::is_regular_file(existing)) {
        m_target = named;  // what is open in a process is named by links that lead nowhere
        m_in_place = true;
        return;
    }
    m_target = follow_links(named);
    if (m_target.empty()) {
        return;
    }
    if (!is_of_somebody_else(m_target) || !may_write(m_target)) {
        make_state_directory(m_target.parent_path());
        m_temporary = FIO_PATH(utf8_from_path(create_temporary(m_target.parent_path())));
    }
    m_in_place = m_temporary.fullpath().empty() && may_write(m_target);
}

FIO_REPLACEMENT::~FIO_REPLACEMENT() {
    if (!m_temporary.fullpath().empty()) {
        ::unlink(m_temporary.fullpath().c_str());
    }
}

bool FIO_REPLACEMENT::write(std::span<const BYTE> contents) {
    if (m_in_place) {
        m_contents.assign(contents.begin(), contents.end());
        return true;
    }
    if (m_temporary.fullpath().empty()) {
        return false;
    }
    const DESCRIPTOR file(::open(m_temporary.fullpath().c_str(), O_WRONLY | O_TRUNC | O_CLOEXEC));
    m_failed = !file || !write_all(file.number(), contents);
    return !m_failed;
}

bool FIO_REPLACEMENT::commit() {
    if (m_in_place) {
        m_in_place = false;
        return write_in_place(m_target, m_contents);
    }
    if (m_temporary.fullpath().empty() || m_failed) {
        return false;
    }
    {
        const DESCRIPTOR file(::open(m_temporary.fullpath().c_str(), O_WRONLY | O_CLOEXEC));
        struct stat existing {};
        const bool replaces = ::stat(m_target.c_str(), &existing) == 0;
        if (!file || (replaces && !resemble(file.number(), existing)) || ::fsync(file.number()) != 0) {
            return false;
        }
    }
    if (::rename(m_temporary.fullpath().c_str(), m_target.c_str()) != 0) {
        return false;
    }
    m_temporary = FIO_PATH();
    // The new name itself reaches the disk with its directory. Where a directory cannot be synchronised, the file is
    // whole all the same.
    const DESCRIPTOR directory(::open(m_target.parent_path().c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (directory) {
        ::fsync(directory.number());
    }
    return true;
}
