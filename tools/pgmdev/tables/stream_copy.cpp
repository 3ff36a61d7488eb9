#include "tables/stream_copy.h"

#include <span>

#include "files/inspection.h"
#include "files/output.h"
#include "files/source.h"

namespace {

/// All that the pipe gives, to its end.
std::string contents_of(const std::string& stream, const std::string& argument) try {
    return required_file_text(stream, FILE_KINDS::STREAMS_TOO);
} catch (const COMMAND_FAILURE&) {
    throw unreadable_table(stream, argument, "what it gives is too much, or ends in an error", {});
}

}  // namespace

STREAM_COPY::STREAM_COPY(const std::string& file, const std::string& argument) : m_file(file), m_path(file) {
    if (!is_stream(file)) {
        return;
    }
    const std::string contents = contents_of(file, argument);
    m_path = m_scratch.emplace().path("copy");
    OUTPUT_FILE copy({m_path, {}});
    copy.write(std::span(reinterpret_cast<const BYTE*>(contents.data()), contents.size()));
    copy.commit();
}
