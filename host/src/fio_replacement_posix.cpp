#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>

#include "fio.h"
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

/// The permissions of the file that `target` names, or those that a new file gets.
mode_t permissions_for(const fs::path& target) {
    struct stat existing {};
    if (::stat(target.c_str(), &existing) == 0) {
        return existing.st_mode & 07777;
    }
    const mode_t mask = ::umask(0);
    ::umask(mask);
    return 0666 & ~mask;
}

}  // namespace

FIO_REPLACEMENT::FIO_REPLACEMENT(const FIO_PATH& target) : m_target(fio_get_unc_full_path(target.fullpath())) {
    std::error_code error;
    if (const fs::path linked = fs::weakly_canonical(m_target, error); !error) {
        m_target = linked;
    }
    if (fs::exists(m_target, error) && !fs::is_regular_file(m_target, error)) {
        return;
    }
    std::string name = (m_target.parent_path() / ".tessary-XXXXXX").string();
    const DESCRIPTOR file(::mkstemp(name.data()));
    if (!file) {
        return;
    }
    m_temporary = FIO_PATH(name);
    ::fchmod(file.number(), permissions_for(m_target));
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
    return file && write_all(file.number(), contents);
}

bool FIO_REPLACEMENT::commit() {
    if (m_temporary.fullpath().empty()) {
        return false;
    }
    {
        const DESCRIPTOR file(::open(m_temporary.fullpath().c_str(), O_WRONLY | O_CLOEXEC));
        if (!file || ::fsync(file.number()) != 0) {
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
