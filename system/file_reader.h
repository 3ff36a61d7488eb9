#pragma once

/// \file
/// Reading files so that a fault of the system is never taken for the end, or for the absence, of a file.

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <span>
#include <string>

/// Which things of that name are read.
enum class FILE_KINDS {
    REGULAR,     ///< files; not directories, devices and pipes, which have no end or none that can be waited for
    STREAMS_TOO  ///< pipes and devices as well
};

/// A file open for reading. It stays the same file when another one takes its name.
class FILE_READER {
public:
    /// Opens the file. Where a file that is being replaced lets nobody open it for a moment, this waits.
    explicit FILE_READER(const std::filesystem::path& path, FILE_KINDS kinds = FILE_KINDS::REGULAR);
    ~FILE_READER();
    FILE_READER(const FILE_READER&) = delete;
    FILE_READER& operator=(const FILE_READER&) = delete;

    bool is_open() const noexcept { return m_handle != CLOSED; }

    /// Whether the system says that there is no such file. False for every other reason that kept it from being opened.
    bool is_absent() const noexcept { return m_absent; }

    /// The length when the file was opened; 0 for what is no regular file.
    std::uint64_t size() const noexcept { return m_size; }

    /// Reads as many bytes from that place of a regular file; false when they are not all there, or cannot be read.
    bool read_at(std::uint64_t offset, std::span<unsigned char> bytes) const;

    /// Reads the next bytes, at least one, into `bytes`; `count` receives how many, 0 at the end. False when that fails.
    bool read_some(std::span<char> bytes, std::size_t& count) const;

private:
    static constexpr std::intptr_t CLOSED = -1;

    std::intptr_t m_handle = CLOSED;  ///< the system's
    std::uint64_t m_size = 0;
    bool m_absent = false;
};

/// What became of reading a whole file.
enum class READ_RESULT { READ, ABSENT, FAILED };

/// Reads the file to its end. One of more than `limit` bytes has failed, too; nothing of what has failed is left in
/// `contents`.
READ_RESULT read_whole_file(const std::filesystem::path& path, std::size_t limit, FILE_KINDS kinds,
                            std::string& contents);

/// Whether a file that is there may be read and written, by trying to open it. Where a file that is being replaced lets nobody
/// open it for a moment, this waits.
bool may_read_and_write(const std::filesystem::path& file);
