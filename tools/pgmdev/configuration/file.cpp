#include "configuration/file.h"

#include "file_reader.h"
#include "files/inspection.h"
#include "fio.h"

CONFIGURATION_FILE read_configuration_file(const std::string& path) {
    constexpr std::size_t LARGEST = std::size_t{1} << 20;  // as of the host, which reads none that is larger
    const INSPECTED_FILE inspected = inspect_file(path, 0);
    CONFIGURATION_FILE file;
    file.exists = !inspected.missing;
    if (!file.exists) {
        return file;
    }
    file.obstacle = inspected.obstacle;
    file.is_whole = file.obstacle.empty() && read_whole_file(fio_get_unc_full_path(path), LARGEST, FILE_KINDS::REGULAR,
                                                             file.text) == READ_RESULT::READ;
    return file;
}
