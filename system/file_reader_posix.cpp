#include <sys/stat.h>

#include "file_reader.h"
#include "open_file_posix.h"

FILE_READER::FILE_READER(const std::filesystem::path& path, FILE_KINDS kinds) {
    // A pipe that nobody writes would keep an opener waiting, only to be refused.
    const int wait = kinds == FILE_KINDS::REGULAR ? O_NONBLOCK : 0;
    const int descriptor = open_file(path.c_str(), O_RDONLY | O_NOCTTY | wait);
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
        const ssize_t count = uninterrupted([&] {
            return ::pread(static_cast<int>(m_handle), bytes.data(), bytes.size(), static_cast<off_t>(offset));
        });
        if (count <= 0) {
            return false;
        }
        bytes = bytes.subspan(static_cast<std::size_t>(count));
        offset += static_cast<std::uint64_t>(count);
    }
    return true;
}

bool FILE_READER::read_some(std::span<char> bytes, std::size_t& count) const {
    const ssize_t read = uninterrupted([&] { return ::read(static_cast<int>(m_handle), bytes.data(), bytes.size()); });
    count = read > 0 ? static_cast<std::size_t>(read) : 0;
    return read >= 0;
}

bool may_read_and_write(const std::filesystem::path& file) {
    const int descriptor = open_file(file.c_str(), O_RDWR);
    if (descriptor >= 0) {
        ::close(descriptor);
    }
    return descriptor >= 0;
}
