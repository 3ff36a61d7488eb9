#include "files/inspection.h"

#include <algorithm>
#include <array>
#include <filesystem>
#include <span>

#include "file_kind.h"
#include "file_reader.h"
#include "fio.h"

std::string as_clause(const std::string& reason) {
    return reason.empty() ? "the system refuses it and gives no reason" : "the system says \"" + reason + "\"";
}

namespace {

/// Reads the file as far as so many of its bytes; false when the system refuses that. The end of the file is where no more
/// comes: files of the kernel say that they have one page, or nothing.
bool read_beginning(const FILE_READER& reader, std::size_t bytes, INSPECTED_FILE& file) {
    std::array<char, std::size_t{1} << 14> piece{};  // no memory is taken for more than there is
    file.size = reader.size();
    while (file.beginning.size() < bytes) {
        std::size_t count = 0;
        if (!reader.read_some(std::span(piece).first(std::min(piece.size(), bytes - file.beginning.size())), count)) {
            return false;
        }
        file.beginning.append(piece.data(), count);
        if (count == 0) {
            file.size = file.beginning.size();
            return true;
        }
    }
    file.size = std::max<QWORD>(file.size, file.beginning.size());
    return true;
}

}  // namespace

INSPECTED_FILE inspect_file(const std::string& path, std::size_t bytes) {
    INSPECTED_FILE file;
    forget_system_reason();
    std::error_code error;
    const std::filesystem::path native = fio_get_unc_full_path(path);
    const std::filesystem::file_type type = file_type_of(native, error);
    if (type == std::filesystem::file_type::not_found) {
        file.missing = true;
        file.obstacle = "there is no such file";
    } else if (error) {
        file.obstacle = as_clause(error.message());
    } else if (type == std::filesystem::file_type::directory) {
        file.obstacle = "it is a directory";
    } else if (type != std::filesystem::file_type::regular) {
        file.obstacle = "it is no regular file";
    } else {
        const FILE_READER reader(native);
        if (!reader.is_open() || !read_beginning(reader, bytes, file)) {
            file.obstacle = as_clause(system_reason());
            file.size = 0;
            file.beginning.clear();
        }
    }
    return file;
}

bool is_stream(const std::string& path) {
    using std::filesystem::file_type;
    std::error_code error;
    const file_type type = file_type_of(fio_get_unc_full_path(path), error);
    return type == file_type::fifo || type == file_type::character || type == file_type::socket;
}
