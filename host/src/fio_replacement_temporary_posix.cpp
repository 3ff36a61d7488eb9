#include "fio_replacement_temporary_posix.h"

#include <dirent.h>
#include <sys/random.h>

#include <array>
#include <atomic>
#include <ctime>
#include <memory>
#include <string>
#include <string_view>

#include "descriptor_posix.h"
#include "replacing.h"
#include "temporary_name.h"
#include "utf8_path.h"

namespace fs = std::filesystem;

namespace {

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

/// Takes a name in the directory that nothing has; empty when `take`, which gets its path, fails for another reason. What
/// takes memory comes before.
template <class TAKE>
FIO_PATH take_random_name(const fs::path& directory, const TAKE& take) {
    constexpr int ATTEMPTS = 100;
    for (int i = 0; i < ATTEMPTS; ++i) {
        FIO_PATH path(utf8_from_path(directory / temporary_name(random_number())));
        if (take(path.fullpath().c_str())) {
            return path;
        }
        if (errno != EEXIST) {
            break;
        }
    }
    return {};
}

/// Creates a new empty file in the directory; empty when that cannot be done.
FIO_PATH create_named(const fs::path& directory, mode_t mode) {
    return take_random_name(directory, [mode](const char* path) {
        return static_cast<bool>(DESCRIPTOR(open_file(path, O_WRONLY | O_CREAT | O_EXCL, mode)));
    });
}

/// Creates a new empty file in the directory that has no name, so that nothing of it outlives the process. False where
/// the system has no such files, or no paths of what is open. A file that anybody may write gets a name at once: some
/// kernels (before 5.19) ask the user's mask about no others on some file systems.
bool create_unnamed(const fs::path& directory, mode_t mode, FIO_PATH& path, int& descriptor) {
    constexpr mode_t UNMASKED = 0666;
    DESCRIPTOR file(open_file(directory.c_str(), O_TMPFILE | O_RDWR, mode));
    struct stat opened {};
    if (!file || ::fstat(file.number(), &opened) != 0 || (opened.st_mode & 0777) == UNMASKED) {
        return false;
    }
    FIO_PATH way("/proc/self/fd/" + std::to_string(file.number()));
    struct stat found {};
    if (::stat(way.fullpath().c_str(), &found) != 0 || !is_same_file(opened, found)) {
        return false;
    }
    path = std::move(way);
    descriptor = file.release();
    return true;
}

bool copy_contents(int from, int to) {
    std::array<BYTE, 16384> chunk{};
    ssize_t count = 1;
    for (off_t offset = 0; count > 0; offset += count) {
        count = uninterrupted([&] { return ::pread(from, chunk.data(), chunk.size(), offset); });
        if (count > 0 && !write_all(to, {chunk.data(), static_cast<std::size_t>(count)})) {
            return false;
        }
    }
    return count == 0;
}

/// Copies a file without a name to one in the directory that has one, and is open for writing; -1 when that cannot be done.
int create_copy(int unnamed, const fs::path& directory, FIO_PATH& copy) {
    struct stat status {};
    if (::fstat(unnamed, &status) != 0) {
        return -1;
    }
    copy = create_named(directory, status.st_mode & 0777);
    if (copy.fullpath().empty()) {
        return -1;
    }
    DESCRIPTOR opened(open_named(copy));
    if (!opened || !copy_contents(unnamed, opened.number())) {
        discard(copy, NAMED);
        return -1;
    }
    return opened.release();
}

}  // namespace

void create_temporary(const fs::path& directory, mode_t mode, FIO_PATH& path, int& unnamed) {
    sweep(directory);
    if (!create_unnamed(directory, mode, path, unnamed)) {
        path = create_named(directory, mode);
    }
}

int open_named(const FIO_PATH& file, int flags) {
    return open_file(file.fullpath().c_str(), O_WRONLY | O_NOFOLLOW | flags);
}

int give_name(FIO_PATH& file, int& unnamed, const fs::path& directory) {
    FIO_PATH named = take_random_name(directory, [&file](const char* name) {
        return ::linkat(AT_FDCWD, file.fullpath().c_str(), AT_FDCWD, name, AT_SYMLINK_FOLLOW) == 0;
    });
    int opened = unnamed;
    if (named.fullpath().empty()) {
        opened = create_copy(unnamed, directory, named);
        if (opened < 0) {
            return opened;
        }
        ::close(unnamed);
    }
    file = std::move(named);
    unnamed = NAMED;
    return opened;
}

bool overwrite(const FIO_PATH& file, int unnamed, std::span<const BYTE> contents) {
    if (unnamed != NAMED) {
        return ::lseek(unnamed, 0, SEEK_SET) == 0 && uninterrupted([=] { return ::ftruncate(unnamed, 0); }) == 0 &&
               write_all(unnamed, contents);
    }
    DESCRIPTOR opened(open_named(file, O_TRUNC));
    return opened && write_all(opened.number(), contents) && opened.close();
}

void discard(const FIO_PATH& file, int unnamed) {
    if (unnamed == NAMED) {
        ::unlink(file.fullpath().c_str());
    } else {
        ::close(unnamed);
    }
}
