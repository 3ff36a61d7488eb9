#include "records/compiler.h"

void write_packed_image(const FIO_PATH& path, const PACKED_IMAGE& image, const PACKED_FORMAT& format) {
    PGMDEV_REQUIRE(image.index == image.size, "index == memory_size", format.file);
    write_packed_file(path, image.data.get(), image.index, format);
}
