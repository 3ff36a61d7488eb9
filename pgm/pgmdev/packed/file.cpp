#include "packed/file.h"

#include <algorithm>
#include <array>
#include <string_view>
#include <vector>

#include "file_reader.h"
#include "packed/codec.h"
#include "packed/inflate.h"
#include "report.h"
#include "zlib_wrapper.h"

namespace {

/// Memory that is taken for a database whatever it holds: 1 MiB, but for what decompressing takes besides.
constexpr QWORD ROOM_FOR_ANY = (QWORD{1} << 20) - (QWORD{1} << 16);

/// The bytes of a stream of a body of that length, at most: deflate stores what it cannot shorten.
QWORD longest_stream(QWORD body_size) {
    return 2 * body_size + (QWORD{1} << 16);
}

/// What a stream may hold before anything is known of its contents: together they are four times the stream, and some.
QWORD modest_size(DWORD stream_size) {
    return std::min(3 * QWORD{stream_size} + ROOM_FOR_ANY, QWORD{PACKED_BODY_MAX});
}

/// Before memory is taken for a body that is stated to be much larger than the file, its beginning must be plausible: of
/// this version, and with no more records than there is room for, since each of their members takes a tag and a byte at
/// least. How many members the body states does not matter. Nor may it be longer than any body.
void require_plausible_body(const BYTE* stream, DWORD stream_size, DWORD body_size, const PACKED_FORMAT& format) {
    const QWORD modest = modest_size(stream_size);
    if (body_size <= modest) {
        return;
    }
    const INFLATED beginning = inflate_bounded(stream, stream_size, modest);
    if (!beginning.longer) {
        return;  // it is damaged, or shorter than stated, which takes no more memory to find out
    }
    DWORD index = 0;
    const PACKED_BODY_HEAD head = PACKED_READER(beginning.data.get(), PACKED_BODY_HEAD_SIZE, index, format).body_head();
    PGMDEV_REQUIRE(head.record_count <= body_size / (2 * format.members), "index < data_size", format.file);
    PGMDEV_REQUIRE(body_size <= PACKED_BODY_MAX, PACKED_BODY_TOO_LONG, format.file);
}

}  // namespace

WORD packed_checksum(const BYTE* /*data*/, unsigned long /*size*/) {
    return 0;
}

BYTE_BUFFER packed_compress(const BYTE* data, DWORD offset, DWORD count, DWORD& out_count,
                            const PACKED_FORMAT& format) {
    PGMDEV_REQUIRE(offset < count, "offset < count", format.file);
    // Ample for every body: what deflate cannot shorten it stores, in blocks with a head of some bytes.
    const QWORD ample = QWORD{count} + count / 64 + 1024;
    PGMDEV_REQUIRE(offset + ample <= 0xFFFFFFFF, "offset < count", format.file);
    auto length = static_cast<DWORD>(ample);
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
    const QWORD modest = modest_size(compressed_size);
    INFLATED body = inflate_bounded(data, compressed_size, std::min<QWORD>(original_size, modest));
    if (body.longer && original_size > modest) {
        body.data.reset();  // not both at once
        body = inflate_bounded(data, compressed_size, original_size);
    }
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
    // The file may have been replaced since its status was taken. What counts is the one that is open.
    const FILE_READER input(fio_get_unc_full_path(path.fullpath()));
    PGMDEV_REQUIRE(status.regular && input.is_open(), "input.good()", format.file);
    const QWORD file_size = input.size();
    PGMDEV_REQUIRE(file_size > PACKED_HEAD_SIZE + PACKED_CHECKSUM_SIZE, "file_size > (8 + 32 + 4 + 2)", format.file);

    std::array<BYTE, PACKED_HEAD_SIZE> head{};
    PGMDEV_REQUIRE(input.read_at(0, head), "input.good()", format.file);
    const std::string_view text(reinterpret_cast<const char*>(head.data()), head.size());
    if (text.substr(0, PACKED_MAGIC_SIZE) != format.magic) {
        pgmdev_report_soft(format.wrong_magic, format.file, PGMDEV_LINE);
        return {};
    }
    PGMDEV_REQUIRE(text.substr(PACKED_MAGIC_SIZE, PACKED_STAMP_SIZE) == format.stamp,
                   "Mismatch ID between flash file and reader", format.file);
    DWORD index = PACKED_MAGIC_SIZE + PACKED_STAMP_SIZE;
    const DWORD body_size = PACKED_READER(head.data(), head.size(), index, format).untagged_dword();

    // What lies behind the end of the stream is not looked at.
    const QWORD stored = file_size - PACKED_HEAD_SIZE - PACKED_CHECKSUM_SIZE;
    const auto stream_size = static_cast<DWORD>(std::min(stored, longest_stream(std::min(body_size, PACKED_BODY_MAX))));
    const BYTE_BUFFER stream(new BYTE[stream_size]);
    PGMDEV_REQUIRE(input.read_at(PACKED_HEAD_SIZE, {stream.get(), stream_size}), "input.good()", format.file);
    require_plausible_body(stream.get(), stream_size, body_size, format);
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
