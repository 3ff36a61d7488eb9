#include "parameters/container_info.h"

#include <filesystem>

#include "doubts.h"
#include "file_kind.h"
#include "msg.h"
#include "pgmdev_version.h"
#include "report.h"

namespace {

std::string line_of(std::string_view key, const std::string& value) {
    return std::string(key) + " = " + value + "\n";
}

std::span<const BYTE> bytes_of(const std::string& text) {
    return {reinterpret_cast<const BYTE*>(text.data()), text.size()};
}

/// Removes the text; whether it is gone. What is there under its name and is no file stays.
bool remove_text(const std::string& path) {
    const std::filesystem::path file = fio_get_unc_full_path(path);
    std::error_code error;
    if (file_type_of(file, error) == std::filesystem::file_type::regular) {
        remove_file(file, error);
    }
    return file_type_of(file, error) == std::filesystem::file_type::not_found;
}

}  // namespace

INFO_STATE container_info_state(const std::string& container, const std::string& digest) {
    std::string info;
    switch (read_whole_file(fio_get_unc_full_path(info_file_of(container)), LARGEST_INFO, FILE_KINDS::REGULAR, info)) {
        case READ_RESULT::ABSENT:
            return INFO_STATE::MISSING;
        case READ_RESULT::FAILED:
            return INFO_STATE::UNREADABLE;
        default:
            return judge_info(info, CONTAINER_DIGEST_KEY, digest);
    }
}

CONTAINER_INFO::CONTAINER_INFO(const std::string& container, std::span<const BYTE> bytes,
                               const std::string& replaced_digest)
    : m_path(info_file_of(container)), m_passing(m_path), m_lasting(m_path) {
    const std::string lasting = line_of("container", container.substr(container.rfind('/') + 1)) +
                                line_of(CONTAINER_DIGEST_KEY, digest_text(bytes)) +
                                line_of("written_by", "pgmdev " + PGMDEV_VERSION::library());
    m_is_to_settle = !replaced_digest.empty() && m_lasting.write(bytes_of(lasting));
    m_passing_text = lasting + (replaced_digest.empty() ? "" : line_of(REPLACED_DIGEST_KEY, replaced_digest));
}

void CONTAINER_INFO::announce() {
    if (m_passing.write(bytes_of(m_passing_text)) && m_passing.commit()) {
        return;
    }
    if (!remove_text(m_path)) {
        msg_local_vdebug(PGMDEV_MODULE, 1, "%s could not be replaced: it tells of an older container", m_path.c_str());
    }
}

void CONTAINER_INFO::settle() noexcept {
    try {
        if (m_is_to_settle) {
            m_lasting.commit();
        }
    } catch (...) {
        // The container is in its place, and the text that was announced fits it.
    }
}
