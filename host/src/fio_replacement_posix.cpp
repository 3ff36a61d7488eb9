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

}  // namespace

FIO_REPLACEMENT::FIO_REPLACEMENT(const FIO_PATH& target) {
    if (target.fullpath().empty()) {
        return;
    }
    m_target = follow_links(fio_get_unc_full_path(target.fullpath()));
    std::error_code error;
    if (m_target.empty() || (fs::exists(m_target, error) && !fs::is_regular_file(m_target, error))) {
        return;
    }
    make_state_directory(m_target.parent_path());
    m_temporary = FIO_PATH(utf8_from_path(create_temporary(m_target.parent_path())));
}

FIO_REPLACEMENT::~FIO_REPLACEMENT() {
    if (!m_temporary.fullpath().empty()) {
        ::unlink(m_temporary.fullpath().c_str());
    }
}

bool FIO_REPLACEMENT::write(std::span<const BYTE> contents) {
    if (m_temporary.fullpath().empty()) {
        return false;
    }
    const DESCRIPTOR file(::open(m_temporary.fullpath().c_str(), O_WRONLY | O_TRUNC | O_CLOEXEC));
    m_failed = !file || !write_all(file.number(), contents);
    return !m_failed;
}

bool FIO_REPLACEMENT::commit() {
    if (m_temporary.fullpath().empty() || m_failed) {
        return false;
    }
    {
        const DESCRIPTOR file(::open(m_temporary.fullpath().c_str(), O_WRONLY | O_CLOEXEC));
        struct stat existing {};
        const bool replaces = ::stat(m_target.c_str(), &existing) == 0;
        if (!file || (replaces && ::fchmod(file.number(), existing.st_mode & 07777) != 0) ||
            ::fsync(file.number()) != 0) {
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
