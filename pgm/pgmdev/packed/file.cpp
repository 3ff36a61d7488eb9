#include "packed/file.h"

#include <algorithm>
#include <array>
#include <fstream>
#include <string_view>
#include <vector>

#include "packed/codec.h"
#include "packed/inflate.h"
#include "replaced_file.h"
#include "report.h"
#include "zlib_wrapper.h"

namespace {

bool read_bytes(std::istream& input, BYTE* destination, QWORD count) {
    input.read(reinterpret_cast<char*>(destination), static_cast<std::streamsize>(count));
    return input.good() && static_cast<QWORD>(input.gcount()) == count;
}

}  // namespace

WORD packed_checksum(const BYTE* /*data*/, unsigned long /*size*/) {
    return 0;
}

BYTE_BUFFER packed_compress(const BYTE* data, DWORD offset, DWORD count, DWORD& out_count,
                            const PACKED_FORMAT& format) {
    PGMDEV_REQUIRE(offset < count, "offset < count", format.file);
    DWORD length = count * 10;  // ample for every body: only very short ones grow, by some bytes
    const BYTE_BUFFER scratch(new BYTE[length]);
    PGMDEV_REQUIRE(zlib_compress(scratch.get(), &length, data + offset, count - offset) == ZLIB_OK,
                   "zlib_compress(new_data, &new_memory_count, &data[offset], count - offset) == ZLIB_OK", format.file);
    BYTE_BUFFER result(new BYTE[QWORD{offset} + length]);
    std::copy_n(data, offset, result.get());
    std::copy_n(scratch.get(), length, result.get() + offset);
    out_count = offset + length;
    return result;
}

BYTE_BUFFER packed_decompress(const BYTE* data, DWORD compressed_size, DWORD original_size,
                              const PACKED_FORMAT& format) {
    PGMDEV_REQUIRE(compressed_size > 0 && original_size > 0, "decompressed_count > 0 && original_count > 0",
                   format.file);
    INFLATED body = inflate_bounded(data, compressed_size, original_size);
    PGMDEV_REQUIRE(body.good, "zlib_uncompress(decompressed_data, &new_dcmp_size, data, decompressed_count) == ZLIB_OK",
                   format.file);
    PGMDEV_REQUIRE(body.length == original_size, "new_dcmp_size == original_count", format.file);
    return std::move(body.data);
}

PACKED_BODY read_packed_file(const FIO_PATH& path, const PACKED_FORMAT& format) {
    FIO_STATUS status;
    PGMDEV_REQUIRE(
        FIO_FILE_SYSTEM::exists(path.fullpath().c_str()) && FIO_FILE_SYSTEM::status(path.fullpath().c_str(), &status),
        format.missing_file, format.file);
    std::ifstream input;
    if (status.regular) {  // a directory or a pipe would open, too
        input = open_replaced_file(fio_get_unc_full_path(path.fullpath()), std::ios::ate);
    }
    PGMDEV_REQUIRE(status.regular && input.good(), "input.good()", format.file);
    // The file may have been replaced since its status was taken. What counts is the one that is open.
    const std::streamoff end = input.tellg();
    PGMDEV_REQUIRE(end >= 0 && input.seekg(0), "input.good()", format.file);
    const auto file_size = static_cast<QWORD>(end);
    PGMDEV_REQUIRE(file_size > PACKED_HEAD_SIZE + PACKED_CHECKSUM_SIZE, "file_size > (8 + 32 + 4 + 2)", format.file);

    std::array<BYTE, PACKED_HEAD_SIZE> head{};
    PGMDEV_REQUIRE(read_bytes(input, head.data(), head.size()), "input.good()", format.file);
    const std::string_view text(reinterpret_cast<const char*>(head.data()), head.size());
    if (text.substr(0, PACKED_MAGIC_SIZE) != format.magic) {
        pgmdev_report_soft(format.wrong_magic, format.file, PGMDEV_LINE);
        return {};
    }
    PGMDEV_REQUIRE(PGMDEV_DEV_INFO_CSV_MD5.size() == PACKED_STAMP_SIZE, "PGMDEV_DEV_INFO_CSV_MD5.size() == 32",
                   format.file);
    PGMDEV_REQUIRE(text.substr(PACKED_MAGIC_SIZE, PACKED_STAMP_SIZE) == format.stamp,
                   "Mismatch ID between flash file and reader", format.file);
    DWORD index = PACKED_MAGIC_SIZE + PACKED_STAMP_SIZE;
    const DWORD body_size = PACKED_READER(head.data(), head.size(), index, format).untagged_dword();

    // No stream of a body below 4 GiB is longer than that; what lies behind the end of the stream is not looked at.
    const QWORD stored = file_size - PACKED_HEAD_SIZE - PACKED_CHECKSUM_SIZE;
    const auto stream_size = static_cast<DWORD>(std::min<QWORD>(stored, 0xFFFFFFFF));
    const BYTE_BUFFER stream(new BYTE[stream_size]);
    PGMDEV_REQUIRE(read_bytes(input, stream.get(), stream_size), "input.good()", format.file);
    return {packed_decompress(stream.get(), stream_size, body_size, format), body_size};
}

void write_packed_file(const FIO_PATH& path, const BYTE* image, DWORD count, const PACKED_FORMAT& format) {
    DWORD length = 0;
    const BYTE_BUFFER compressed = packed_compress(image, PACKED_HEAD_SIZE, count, length, format);
    std::vector<BYTE> file(compressed.get(), compressed.get() + length);
    const WORD checksum = packed_checksum(file.data(), length);
    file.push_back(static_cast<BYTE>(checksum));
    file.push_back(static_cast<BYTE>(checksum >> 8));

    FIO_REPLACEMENT replacement(path);
    PGMDEV_REQUIRE(replacement.write(file) && replacement.commit(), "status", format.file);
}
