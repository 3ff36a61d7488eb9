#include "files/inspection.h"

#include <algorithm>
#include <filesystem>
#include <fstream>

#include "fio.h"

namespace {

/// A piece at a time: there are seldom as many bytes as may be, and the size that files of /sys tell is not theirs.
std::string read_beginning(std::istream& stream, std::size_t bytes) {
    constexpr std::size_t PIECE = std::size_t{1} << 14;
    std::string beginning;
    while (stream && beginning.size() < bytes) {
        const std::size_t before = beginning.size();
        beginning.resize(std::min(before + PIECE, bytes));
        stream.read(&beginning[before], static_cast<std::streamsize>(beginning.size() - before));
        beginning.resize(before + static_cast<std::size_t>(stream.gcount()));
    }
    return beginning;
}

}  // namespace

std::string as_clause(const std::string& reason) {
    return reason.empty() ? "the system refuses it and gives no reason" : "the system says \"" + reason + "\"";
}

INSPECTED_FILE inspect_file(const std::string& path, std::size_t bytes) {
    INSPECTED_FILE file;
    forget_system_reason();
    FIO_STATUS status;
    std::error_code error;
    const std::filesystem::path native = fio_get_unc_full_path(path);
    const std::filesystem::file_type type = std::filesystem::status(native, error).type();
    if (type == std::filesystem::file_type::not_found) {
        file.missing = true;
        file.obstacle = "there is no such file";
    } else if (error || !FIO_FILE_SYSTEM::status(path.c_str(), &status)) {
        file.obstacle = as_clause(error ? error.message() : system_reason());
    } else if (type == std::filesystem::file_type::directory) {
        file.obstacle = "it is a directory";
    } else if (!status.regular) {
        file.obstacle = "it is no regular file";
    } else {
        std::ifstream stream(native, std::ios::binary);
        const std::string reason = system_reason();
        if (!stream.is_open()) {
            file.obstacle = as_clause(reason);
            return file;
        }
        file.size = status.size;
        file.beginning = read_beginning(stream, bytes);
    }
    return file;
}

bool is_stream(const std::string& path) {
    using std::filesystem::file_type;
    std::error_code error;
    const file_type type = std::filesystem::status(fio_get_unc_full_path(path), error).type();
    return type == file_type::fifo || type == file_type::character || type == file_type::socket;
}
