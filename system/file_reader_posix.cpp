#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

#include "file_reader.h"

FILE_READER::FILE_READER(const std::filesystem::path& path, FILE_KINDS kinds) {
    // A pipe that nobody writes would keep an opener waiting, only to be refused.
    const int wait = kinds == FILE_KINDS::REGULAR ? O_NONBLOCK : 0;
    int descriptor = -1;
    do {
        descriptor = ::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NOCTTY | wait);
    } while (descriptor < 0 && errno == EINTR);
    if (descriptor < 0) {
        m_absent = errno == ENOENT || errno == ENOTDIR;  // or what should be a directory above it is a file
        return;
    }
    struct stat status {};
    const bool known = ::fstat(descriptor, &status) == 0;
    const bool regular = known && S_ISREG(status.st_mode);
    if (!known || S_ISDIR(status.st_mode) || (!regular && kinds == FILE_KINDS::REGULAR)) {
        ::close(descriptor);
        return;
    }
    m_handle = descriptor;
    m_size = regular ? static_cast<std::uint64_t>(status.st_size) : 0;
}

FILE_READER::~FILE_READER() {
    if (is_open()) {
        ::close(static_cast<int>(m_handle));
    }
}

bool FILE_READER::read_at(std::uint64_t offset, std::span<unsigned char> bytes) const {
    while (!bytes.empty()) {
        const ssize_t count =
            ::pread(static_cast<int>(m_handle), bytes.data(), bytes.size(), static_cast<off_t>(offset));
        if (count > 0) {
            bytes = bytes.subspan(static_cast<std::size_t>(count));
            offset += static_cast<std::uint64_t>(count);
        } else if (count == 0 || errno != EINTR) {
            return false;
        }
    }
    return true;
}

bool FILE_READER::read_some(std::span<char> bytes, std::size_t& count) const {
    for (;;) {
        const ssize_t read = ::read(static_cast<int>(m_handle), bytes.data(), bytes.size());
        if (read >= 0) {
            count = static_cast<std::size_t>(read);
            return true;
        }
        if (errno != EINTR) {
            count = 0;
            return false;
        }
    }
}
