#include "files/output.h"

#include <fmt/core.h>

#include <filesystem>

#include "file_kind.h"
#include "files/inspection.h"
#include "utf8_path.h"

namespace fs = std::filesystem;

namespace {

COMMAND_FAILURE refusal(const PLACE& place, std::string message, std::string advice) {
    return COMMAND_FAILURE({FAILURE_CODE::REFUSED, std::move(message), place.path, place.tried, std::move(advice), {}},
                           EXIT_USAGE);
}

/// Why the file cannot be written, as far as its place tells; otherwise what the system has said.
std::string obstacle(const std::string& path, std::string reason) {
    std::error_code error;
    const fs::path native = fio_get_unc_full_path(path);
    // Not of the native path: what is above "\\?\C:\file" is the volume, and no directory.
    const fs::path above = path_from_utf8(FIO_PATH(path).fullpath()).parent_path();
    const fs::path directory = fio_get_unc_full_path(utf8_from_path(above));
    const fs::file_type type = file_type_of(native, error);
    if (type == fs::file_type::directory) {
        return "it is a directory";
    }
    if (fs::exists(fs::file_status(type)) && type != fs::file_type::regular) {
        return "it is no regular file";
    }
    if (type == fs::file_type::regular && fs::hard_link_count(native, error) == 0) {
        return "it has been removed and is only open";
    }
    const fs::file_type parent = file_type_of(directory, error);
    if (parent != fs::file_type::directory) {
        return fs::exists(fs::file_status(parent)) ? "what should be its directory is none"
                                                   : "its directory does not exist";
    }
    const std::string forbidden = reason_not_to_write(native);  // calls behind the one that failed may have failed, too
    return as_clause(forbidden.empty() ? reason : forbidden);
}

/// Refuses to replace one of the inputs, also by another name of it.
void confirm_no_input(const PLACE& output, const std::vector<std::string>& inputs, const UNREADABLE_INPUT& unreadable) {
    for (const std::string& input : inputs) {
        std::error_code error;
        const fs::path native = fio_get_unc_full_path(input);
        const fs::file_type type = file_type_of(native, error);
        if (type == fs::file_type::not_found) {
            continue;
        }
        if (type == fs::file_type::none) {  // it may be what would be replaced
            throw unreadable(input, as_clause(error.message()));
        }
        forget_system_reason();
        const bool is_input = are_same_file(fio_get_unc_full_path(output.path), native, error);
        if (error) {
            throw output_failure(output);
        }
        if (is_input) {
            throw refusal(output, "the output would replace an input", "name another file");
        }
    }
}

}  // namespace

void confirm_output(const PLACE& output, const std::vector<std::string>& inputs, const std::string& kind,
                    std::string_view beginning, bool force, const UNREADABLE_INPUT& unreadable) {
    const std::string& path = output.path;
    forget_system_reason();
    std::error_code error;
    const fs::file_type type = file_type_of(fio_get_unc_full_path(path), error);
    if (type == fs::file_type::none) {  // the system does not tell what would be replaced
        throw output_failure(output);
    }
    if (type == fs::file_type::not_found) {
        return;
    }
    confirm_no_input(output, inputs, unreadable);
    if (force || type != fs::file_type::regular) {
        return;  // what is there and no file is left alone, with its reason
    }
    const INSPECTED_FILE file = inspect_file(path, beginning.size());
    const bool is_kind = !beginning.empty() && file.beginning == beginning;
    if (file.obstacle.empty() && (file.size == 0 || is_kind)) {
        return;
    }
    throw refusal(output,
                  "the output would replace a file that " +
                      (file.obstacle.empty() ? fmt::format("is no {}", kind)
                                             : fmt::format("cannot be read, since {}", file.obstacle)),
                  "name another file, or insist with --force");
}

OUTPUT_FILE::OUTPUT_FILE(PLACE place) : m_place(std::move(place)) {
    forget_system_reason();
    m_replacement.emplace(m_place.path);
    if (temporary().fullpath().empty()) {
        throw failure();
    }
}

void OUTPUT_FILE::write(std::span<const BYTE> contents) {
    forget_system_reason();
    if (!m_replacement->write(contents)) {
        throw failure();
    }
}

void OUTPUT_FILE::commit() {
    forget_system_reason();
    if (!m_replacement->commit()) {
        throw failure();
    }
}

COMMAND_FAILURE OUTPUT_FILE::failure(std::optional<MSG_INTERNAL_ERROR_REPORT> report) const {
    return output_failure(m_place, std::move(report));
}

COMMAND_FAILURE output_failure(const PLACE& place, std::optional<MSG_INTERNAL_ERROR_REPORT> report) {
    const std::string reason = system_reason();  // before it is lost
    return COMMAND_FAILURE(
        {FAILURE_CODE::OUTPUT_NOT_WRITABLE,
         fmt::format("the output cannot be written, since {}", obstacle(place.path, reason)), place.path, place.tried,
         "name a place that you may write to; the old file, if any, is as it was", std::move(report)});
}
