#include "support/faulty_system.h"

#include <fcntl.h>
#include <sys/random.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <climits>
#include <cstdarg>
#include <cstdio>
#include <string>
#include <string_view>
#include <utility>

#include "support/interposed_posix.h"
#include "support/recorded_calls.h"

namespace {

struct STATE {
    bool calls_armed = false;
    bool all_later = false;
    bool slow = false;
    std::size_t calls_left = 0;
    int error = 0;
    const char* failed_call = "";
    unsigned slow_count = 0;
    bool no_unnamed_files = false;
    void (*alter_status)(struct stat& status) = nullptr;
    std::string_view failing_name;
    int error_of_name = 0;
    std::size_t calls_of_name = 0;
};

thread_local STATE g_state;

/// Whether this call is to fail; sets `errno` then.
bool is_to_fail(const char* name) {
    if (name == g_state.failing_name) {
        ++g_state.calls_of_name;
        errno = g_state.error_of_name;
        return true;
    }
    if (!g_state.calls_armed) {
        return false;
    }
    if (g_state.calls_left > 1) {
        --g_state.calls_left;
        return false;
    }
    const bool first = g_state.calls_left == 1;
    if (!first && !g_state.all_later) {
        return false;
    }
    if (first) {
        g_state.calls_left = 0;
        g_state.failed_call = name;
    }
    errno = g_state.error;
    return true;
}

bool is_interrupted() {
    if (g_state.slow && ++g_state.slow_count % 2 == 0) {
        errno = EINTR;
        return true;
    }
    return false;
}

std::size_t allowed(std::size_t count) {
    return g_state.slow && count > 1 ? 1 : count;
}

/// The recorder of this thread. It records nothing that it does itself.
thread_local RECORDED_CALLS* g_recorder = nullptr;

class RECORDING {
public:
    RECORDING() : m_recorder(std::exchange(g_recorder, nullptr)), m_error(errno) {}
    ~RECORDING() {
        g_recorder = m_recorder;
        errno = m_error;
    }
    RECORDING(const RECORDING&) = delete;
    RECORDING& operator=(const RECORDING&) = delete;

    void add(const RECORDED_CALL& call) {
        if (m_recorder != nullptr) {
            m_recorder->add(call);
        }
    }

private:
    RECORDED_CALLS* m_recorder;
    int m_error;
};

std::string target_of(const std::string& link) {
    char path[PATH_MAX];
    const ssize_t length = ::readlink(link.c_str(), path, sizeof path);
    return {path, length < 0 ? std::size_t{0} : static_cast<std::size_t>(length)};
}

std::string path_of(int file) {
    return target_of("/proc/self/fd/" + std::to_string(file));
}

}  // namespace

// The names of the parameters in the headers are reserved.
// NOLINTBEGIN(readability-inconsistent-declaration-parameter-name)
INTERPOSED int open(const char* path, int flags, ...) {
    std::va_list rest;
    va_start(rest, flags);
    const bool is_unnamed = (flags & O_TMPFILE) == O_TMPFILE;
    const mode_t mode = is_unnamed || (flags & O_CREAT) != 0 ? va_arg(rest, mode_t) : 0;
    va_end(rest);
    static auto* const real = next<int(const char*, int, ...)>("open");
    if (is_to_fail("open") || is_interrupted()) {
        return -1;
    }
    if (is_unnamed && g_state.no_unnamed_files) {
        errno = EOPNOTSUPP;
        return -1;
    }
    const bool exists = g_recorder == nullptr || ::access(path, F_OK) == 0;
    const int file = real(path, flags, mode);
    if (g_recorder != nullptr && file >= 0 && (is_unnamed || !exists || (flags & O_TRUNC) != 0)) {
        const auto created = is_unnamed ? RECORDED_CALL::CREATE_UNNAMED : RECORDED_CALL::CREATE;
        RECORDING().add({exists && !is_unnamed ? RECORDED_CALL::RESIZE : created, path_of(file), "", 0});
    }
    return file;
}

INTERPOSED int close(int file) {
    static auto* const real = next<int(int)>("close");
    const bool fails = is_to_fail("close");
    const int error = errno;
    const int result = real(file);  // which it is, whatever else there is to tell
    errno = fails ? error : errno;
    return fails ? -1 : result;
}

INTERPOSED ssize_t read(int file, void* bytes, std::size_t count) {
    static auto* const real = next<ssize_t(int, void*, std::size_t)>("read");
    return is_to_fail("read") || is_interrupted() ? -1 : real(file, bytes, allowed(count));
}

INTERPOSED ssize_t pread(int file, void* bytes, std::size_t count, off_t offset) {
    static auto* const real = next<ssize_t(int, void*, std::size_t, off_t)>("pread");
    return is_to_fail("pread") || is_interrupted() ? -1 : real(file, bytes, allowed(count), offset);
}

INTERPOSED ssize_t write(int file, const void* bytes, std::size_t count) {
    static auto* const real = next<ssize_t(int, const void*, std::size_t)>("write");
    if (is_to_fail("write") || is_interrupted()) {
        return errno == 0 ? 0 : -1;
    }
    const ssize_t written = real(file, bytes, allowed(count));
    if (g_recorder != nullptr && written > 0) {
        const auto length = static_cast<std::size_t>(written);
        const auto end = static_cast<std::size_t>(::lseek(file, 0, SEEK_CUR));
        RECORDING().add({RECORDED_CALL::WRITE, path_of(file), {static_cast<const char*>(bytes), length}, end - length});
    }
    return written;
}

INTERPOSED int stat(const char* path, struct stat* status) {
    static auto* const real = next<int(const char*, struct stat*)>("stat");
    const int result = is_to_fail("stat") ? -1 : real(path, status);
    if (result == 0 && g_state.alter_status != nullptr) {
        g_state.alter_status(*status);
    }
    return result;
}

INTERPOSED int lstat(const char* path, struct stat* status) {
    static auto* const real = next<int(const char*, struct stat*)>("lstat");
    return is_to_fail("lstat") ? -1 : real(path, status);
}

INTERPOSED int fstat(int file, struct stat* status) {
    static auto* const real = next<int(int, struct stat*)>("fstat");
    return is_to_fail("fstat") ? -1 : real(file, status);
}

INTERPOSED off_t lseek(int file, off_t offset, int whence) {
    static auto* const real = next<off_t(int, off_t, int)>("lseek");
    return is_to_fail("lseek") ? -1 : real(file, offset, whence);
}

/// Tests are not waiting for a disk: nothing of them is to outlast a loss of power.
INTERPOSED int fsync(int file) {
    if (is_to_fail("fsync") || is_interrupted()) {
        return -1;
    }
    const int result = ::fcntl(file, F_GETFD) < 0 ? -1 : 0;
    if (g_recorder != nullptr && result == 0) {
        RECORDING().add({RECORDED_CALL::SYNC, path_of(file), "", 0});
    }
    return result;
}

INTERPOSED int fchmod(int file, mode_t mode) {
    static auto* const real = next<int(int, mode_t)>("fchmod");
    return is_to_fail("fchmod") ? -1 : real(file, mode);
}

INTERPOSED int rename(const char* from, const char* to) {
    static auto* const real = next<int(const char*, const char*)>("rename");
    if (is_to_fail("rename")) {
        return -1;
    }
    const int result = real(from, to);
    if (g_recorder != nullptr && result == 0) {
        RECORDING().add({RECORDED_CALL::RENAME, from, to, 0});
    }
    return result;
}

INTERPOSED int linkat(int from_place, const char* from, int to_place, const char* to, int flags) noexcept {
    static auto* const real = next<int(int, const char*, int, const char*, int)>("linkat");
    if (is_to_fail("linkat")) {
        return -1;
    }
    const int result = real(from_place, from, to_place, to, flags);
    if (g_recorder != nullptr && result == 0) {
        RECORDING().add({RECORDED_CALL::LINK, target_of(from), to, 0});
    }
    return result;
}

INTERPOSED int fstatat(int directory, const char* path, struct stat* status, int flags) noexcept {
    static auto* const real = next<int(int, const char*, struct stat*, int)>("fstatat");
    return is_to_fail("fstatat") ? -1 : real(directory, path, status, flags);
}

INTERPOSED int fchown(int file, uid_t owner, gid_t group) noexcept {
    static auto* const real = next<int(int, uid_t, gid_t)>("fchown");
    return is_to_fail("fchown") ? -1 : real(file, owner, group);
}

INTERPOSED int ftruncate(int file, off_t length) noexcept {
    static auto* const real = next<int(int, off_t)>("ftruncate");
    if (is_to_fail("ftruncate") || is_interrupted()) {
        return -1;
    }
    const int result = real(file, length);
    if (g_recorder != nullptr && result == 0) {
        RECORDING().add({RECORDED_CALL::RESIZE, path_of(file), "", static_cast<std::size_t>(length)});
    }
    return result;
}

/// What the tests write in place is longer then.
INTERPOSED int posix_fallocate(int file, off_t offset, off_t length) {
    static auto* const real = next<int(int, off_t, off_t)>("posix_fallocate");
    if (is_to_fail("posix_fallocate")) {
        return errno;
    }
    const int error = real(file, offset, length);
    if (g_recorder != nullptr && error == 0) {
        RECORDING().add({RECORDED_CALL::RESIZE, path_of(file), "", static_cast<std::size_t>(offset + length)});
    }
    return error;
}

INTERPOSED ssize_t readlink(const char* path, char* target, std::size_t size) noexcept {
    static auto* const real = next<ssize_t(const char*, char*, std::size_t)>("readlink");
    return is_to_fail("readlink") ? -1 : real(path, target, size);
}

INTERPOSED ssize_t getrandom(void* bytes, std::size_t count, unsigned flags) {
    static auto* const real = next<ssize_t(void*, std::size_t, unsigned)>("getrandom");
    return is_to_fail("getrandom") ? -1 : real(bytes, count, flags);
}

INTERPOSED int unlink(const char* path) noexcept {
    static auto* const real = next<int(const char*)>("unlink");
    const int result = real(path);
    if (g_recorder != nullptr && result == 0) {
        RECORDING().add({RECORDED_CALL::UNLINK, path, "", 0});
    }
    return result;
}
// NOLINTEND(readability-inconsistent-declaration-parameter-name)

FAILING_CALL::FAILING_CALL(std::size_t number, int error, bool all_later) {
    g_state.failed_call = "";
    g_state.calls_left = number;
    g_state.error = error;
    g_state.all_later = all_later;
    g_state.calls_armed = true;
}

FAILING_CALL::~FAILING_CALL() {
    g_state.calls_armed = false;
}

bool FAILING_CALL::happened() const {
    return *g_state.failed_call != '\0';
}

const char* FAILING_CALL::name() const {
    return g_state.failed_call;
}

NO_UNNAMED_FILES::NO_UNNAMED_FILES() {
    g_state.no_unnamed_files = true;
}

NO_UNNAMED_FILES::~NO_UNNAMED_FILES() {
    g_state.no_unnamed_files = false;
}

ALTERED_STATUS::ALTERED_STATUS(void (*alter)(struct stat& status)) {
    g_state.alter_status = alter;
}

ALTERED_STATUS::~ALTERED_STATUS() {
    g_state.alter_status = nullptr;
}

FAILING_CALLS_OF::FAILING_CALLS_OF(const char* name, int error) {
    g_state.failing_name = name;
    g_state.error_of_name = error;
    g_state.calls_of_name = 0;
}

FAILING_CALLS_OF::~FAILING_CALLS_OF() {
    g_state.failing_name = {};
}

std::size_t FAILING_CALLS_OF::count() const {
    return g_state.calls_of_name;
}

SLOW_CALLS::SLOW_CALLS() {
    g_state.slow = true;
}

SLOW_CALLS::~SLOW_CALLS() {
    g_state.slow = false;
}

RECORDED_CALLS::RECORDED_CALLS() {
    g_recorder = this;
}

RECORDED_CALLS::~RECORDED_CALLS() {
    g_recorder = nullptr;
}
