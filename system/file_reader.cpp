#include "file_reader.h"

#include <algorithm>
#include <vector>

READ_RESULT read_whole_file(const std::filesystem::path& path, std::size_t limit, FILE_KINDS kinds,
                            std::string& contents) {
    constexpr std::size_t CHUNK = std::size_t{1} << 16;
    contents.clear();
    const FILE_READER file(path, kinds);
    if (!file.is_open()) {
        return file.is_absent() ? READ_RESULT::ABSENT : READ_RESULT::FAILED;
    }
    if (file.size() > limit) {
        return READ_RESULT::FAILED;
    }
    std::string text;
    text.reserve(static_cast<std::size_t>(file.size()));
    // A small file takes no more than its length, and a byte for whatever has been written behind it since.
    std::vector<char> chunk(
        file.size() == 0 ? CHUNK : static_cast<std::size_t>(std::min<std::uint64_t>(file.size() + 1, CHUNK)));
    std::size_t count = 0;
    do {
        if (!file.read_some(chunk, count) || count > limit - text.size()) {
            return READ_RESULT::FAILED;
        }
        text.append(chunk.data(), count);
    } while (count != 0);
    contents = std::move(text);
    return READ_RESULT::READ;
}
