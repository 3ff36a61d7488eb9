#include <dirent.h>
#include <fcntl.h>
#include <sys/random.h>
#include <sys/stat.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <ctime>
#include <memory>
#include <string>
#include <string_view>

#include "fio.h"
#include "replacing.h"
#include "standard_places.h"
#include "temporary_name.h"
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

/// Calls an operation of the system until no signal comes in between.
template <class OPERATION>
auto uninterrupted(OPERATION operation) {
    auto result = operation();
    while (result < 0 && errno == EINTR) {
        result = operation();
    }
    return result;
}

int open_file(const char* path, int flags, mode_t mode = 0) {
    return uninterrupted([=] { return ::open(path, flags | O_CLOEXEC, mode); });
}

bool synchronise(int descriptor) {
    return uninterrupted([=] { return ::fsync(descriptor); }) == 0;
}

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
/// and where that cannot be told or is a trap.
fs::path follow_links(fs::path path) {
    constexpr int LONGEST_CHAIN = 40;  // as the system itself allows
    for (int i = 0; i <= LONGEST_CHAIN; ++i) {
        struct stat status {};
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

/// A number that no other process guesses, and that two with the same number in their containers do not share.
std::uint64_t random_number() {
    std::uint64_t number = 0;
    if (::getrandom(&number, sizeof number, GRND_NONBLOCK) != sizeof number) {
        static std::atomic<std::uint64_t> counter{0};
        struct timespec now {};
        ::clock_gettime(CLOCK_REALTIME, &now);
        number = (static_cast<std::uint64_t>(now.tv_nsec) << 32U) ^ (static_cast<std::uint64_t>(::getpid()) << 16U) ^
                 ++counter;
    }
    return number;
}

/// Removes what writers have left behind that were ended before they could tidy up. Replacing a file takes seconds: what
/// is a day old has no owner. Not std::filesystem, which ends the process when it gets no memory for this.
void sweep(const fs::path& directory) {
    constexpr time_t DAY = time_t{24} * 60 * 60;
    const std::unique_ptr<DIR, int (*)(DIR*)> entries(::opendir(directory.c_str()), ::closedir);
    if (entries == nullptr) {
        return;
    }
    const int place = ::dirfd(entries.get());
    while (const dirent* entry = ::readdir(entries.get())) {
        struct stat status {};
        if (is_temporary_name(std::string_view(entry->d_name)) &&
            ::fstatat(place, entry->d_name, &status, AT_SYMLINK_NOFOLLOW) == 0 && S_ISREG(status.st_mode) &&
            status.st_uid == ::geteuid() && status.st_mtime + DAY < ::time(nullptr)) {
            ::unlinkat(place, entry->d_name, 0);
        }
    }
}

/// Creates a new empty file in the directory; empty when that cannot be done. What takes memory comes before.
FIO_PATH create_temporary(const fs::path& directory, mode_t mode) {
    constexpr int ATTEMPTS = 100;
    for (int i = 0; i < ATTEMPTS; ++i) {
        FIO_PATH path(utf8_from_path(directory / temporary_name(random_number())));
        if (DESCRIPTOR(open_file(path.fullpath().c_str(), O_WRONLY | O_CREAT | O_EXCL, mode))) {
            return path;
        }
        if (errno != EEXIST) {
            return {};
        }
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

/// Gives a new file the permissions and the owner of the one that it replaces, as far as the user may.
bool resemble(int descriptor, const struct stat& existing) {
    if (::fchown(descriptor, existing.st_uid, existing.st_gid) != 0) {
        // Only root may give files away, and nobody need be in the group.
        [[maybe_unused]] const int group = ::fchown(descriptor, static_cast<uid_t>(-1), existing.st_gid);
    }
    return ::fchmod(descriptor, existing.st_mode & 07777) == 0;
}

}  // namespace

bool write_in_place(const fs::path& target, std::span<const BYTE> contents) {
    const DESCRIPTOR file(open_file(target.c_str(), O_WRONLY | O_NOCTTY));
    struct stat existing {};
    if (!file || ::fstat(file.number(), &existing) != 0) {
        return false;
    }
    if (!S_ISREG(existing.st_mode)) {
        return write_all(file.number(), contents);
    }
    return take_room(file.number(), contents.size()) && write_all(file.number(), contents) &&
           uninterrupted([&] { return ::ftruncate(file.number(), static_cast<off_t>(contents.size())); }) == 0 &&
           synchronise(file.number());
}

bool overwrite(const FIO_PATH& file, std::span<const BYTE> contents) {
    const DESCRIPTOR opened(open_file(file.fullpath().c_str(), O_WRONLY | O_TRUNC));
    return opened && write_all(opened.number(), contents);
}

bool put_in_place(const FIO_PATH& file, const fs::path& target) {
    const fs::path directory = target.parent_path();  // what may fail comes before the change
    {
        const DESCRIPTOR opened(open_file(file.fullpath().c_str(), O_WRONLY));
        struct stat existing {};
        const bool replaces = ::stat(target.c_str(), &existing) == 0;
        if (!replaces && errno != ENOENT) {
            return false;
        }
        if (!opened || (replaces && !resemble(opened.number(), existing)) || !synchronise(opened.number())) {
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

void remove_file(const FIO_PATH& file) {
    ::unlink(file.fullpath().c_str());
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
    m_target = follow_links(named);
    if (m_target.empty()) {
        return;
    }
    if (!exists || !is_of_somebody_else(existing) || !may_write(m_target)) {
        const fs::path directory = m_target.parent_path();
        make_state_directory(directory);
        sweep(directory);
        m_temporary = create_temporary(directory, exists ? 0600 : 0666);  // nobody reads it who may not read the file
    }
    m_in_place = m_temporary.fullpath().empty() && exists && may_write(m_target);
}
