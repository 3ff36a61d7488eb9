#include <fmt/core.h>

#include <algorithm>
#include <array>
#include <filesystem>
#include <system_error>

#include "files/inspection.h"
#include "fio.h"
#include "flash/database.h"
#include "flash/identify_sfdp.h"
#include "gen.h"
#include "terminal/answer.h"
#include "terminal/failure.h"
#include "terminal/text_table.h"
#include "utf8_path.h"

// What the kernel of Linux found: below /sys/bus/spi/devices each flash with a driver has a directory spi-nor with the
// files jedec_id, manufacturer, partname and sfdp, the latter ones if they are known.

namespace {

namespace fs = std::filesystem;

constexpr std::size_t LARGEST_SYSFS_TEXT = 4096;  ///< one page, as much as the kernel gives
constexpr std::size_t LARGEST_SYSFS_DUMP = std::size_t{1} << 20;
constexpr std::size_t MOST_SPI_DEVICES = 4096;

/// One flash that the kernel found.
struct FOUND_FLASH {
    std::string device;  ///< "spi0.0"
    std::string jedec_id;
    std::string manufacturer;
    std::string partname;
    std::vector<std::string> problems;  ///< what could not be read or understood, sentences
    KNOWN_FLASH known;
};

/// A file of a flash, without the line feed; "" when there is none. What cannot be read becomes a problem.
std::string sysfs_file(const fs::path& directory, const char* name, std::size_t most, FOUND_FLASH& flash) {
    const INSPECTED_FILE file = inspect_file(utf8_from_path(directory / name), most + 1);
    if (file.missing) {
        return "";
    }
    if (!file.obstacle.empty()) {
        flash.problems.push_back(fmt::format("{} cannot be read: {}", name, file.obstacle));
        return "";
    }
    if (file.beginning.size() > most) {
        flash.problems.push_back(fmt::format("{} is larger than {} bytes, and is not used", name, most));
        return "";
    }
    return file.beginning;
}

std::string sysfs_text(const fs::path& directory, const char* name, FOUND_FLASH& flash) {
    return gen_remove_leading_and_trailing_white_spaces(sysfs_file(directory, name, LARGEST_SYSFS_TEXT, flash));
}

void take_response(FOUND_FLASH& flash) {
    if (flash.jedec_id.empty()) {
        flash.problems.emplace_back("the kernel gives no jedec_id");
        return;
    }
    try {
        flash.known.response = response_bytes(flash.jedec_id);
    } catch (const USAGE_ERROR& error) {
        flash.problems.emplace_back(std::string("jedec_id is no identification: ") + error.what());
    }
}

void take_sfdp(const std::string& dump, FOUND_FLASH& flash) {
    if (dump.empty()) {
        return;
    }
    const std::vector<BYTE> bytes(dump.begin(), dump.end());
    PGMDEV_FLASH_SFDP sfdp = PGMDEV_FLASH_SFDP::from_bytes(bytes);
    if (sfdp.refusal()) {
        flash.problems.push_back("sfdp is refused: " + PGMDEV_FLASH_SFDP::describe(*sfdp.refusal()));
    } else {
        flash.known.sfdp = std::move(sfdp);
    }
}

/// `directory` is that of a device on an SPI bus, which need not be a flash.
std::optional<FOUND_FLASH> flash_of(const fs::path& directory) {
    const fs::path details = directory / "spi-nor";
    std::error_code error;
    const fs::file_status status = fs::status(details, error);
    if (!fs::is_directory(status)) {
        return std::nullopt;
    }
    FOUND_FLASH flash;
    flash.device = utf8_from_path(directory.filename());
    flash.jedec_id = sysfs_text(details, "jedec_id", flash);
    flash.manufacturer = sysfs_text(details, "manufacturer", flash);
    flash.partname = sysfs_text(details, "partname", flash);
    take_response(flash);
    take_sfdp(sysfs_file(details, "sfdp", LARGEST_SYSFS_DUMP, flash), flash);
    return flash;
}

COMMAND_FAILURE unreadable_directory(const fs::path& directory, const std::string& why, EXIT_CODE result) {
    return COMMAND_FAILURE({"system_flash_unreadable",
                            "the flash that the system found cannot be listed: " + why,
                            utf8_from_path(directory),
                            {},
                            "name a directory that exists and that you may read",
                            {}},
                           result);
}

/// The directory with the devices: of the system, or below the DIR that is given, whichever of its parents that stands for.
fs::path spi_directory(const std::vector<std::string>& given) {
    constexpr std::array<const char*, 2> PLACES{"sys/bus/spi/devices", "bus/spi/devices"};
    if (given.size() > 1) {
        throw USAGE_ERROR("expected at most one directory with --system");
    }
    if (given.empty()) {
#if defined(_WIN32)
        throw USAGE_ERROR(
            "--system needs Linux, whose kernel tells what flash it found: name a directory with a copy of its /sys");
#else
        return fs::path("/") / PLACES[0];
#endif
    }
    const fs::path root = fio_get_unc_full_path(FIO_PATH(given.front()).fullpath());
    std::error_code error;
    const fs::file_status status = fs::status(root, error);
    if (!fs::is_directory(status)) {
        const bool missing = status.type() == fs::file_type::not_found;
        throw unreadable_directory(given.front(),
                                   missing              ? "there is no such directory"
                                   : fs::exists(status) ? "it is no directory"
                                                        : as_clause(error.message()),
                                   EXIT_USAGE);
    }
    for (const char* place : PLACES) {
        if (fs::exists(root / place, error)) {
            return root / place;
        }
    }
    return root;
}

/// The devices in their order; none where the kernel has no SPI bus.
std::vector<fs::path> spi_devices(const fs::path& directory) {
    std::error_code error;
    std::vector<fs::path> paths;
    if (fs::status(directory, error).type() == fs::file_type::not_found) {
        return paths;
    }
    fs::directory_iterator entry(directory, error);
    for (; !error && entry != fs::directory_iterator() && paths.size() < MOST_SPI_DEVICES; entry.increment(error)) {
        paths.push_back(entry->path());
    }
    if (error) {
        throw unreadable_directory(directory, as_clause(error.message()), EXIT_INTERNAL_ERROR);
    }
    std::sort(paths.begin(), paths.end());
    return paths;
}

/// What to say when no device is a flash.
std::string nothing_found(const fs::path& directory, std::size_t devices) {
    const std::string place = utf8_from_path(directory);
    if (devices == 0) {
        return "no serial NOR flash: the kernel has no SPI device, " + place + " is empty or missing";
    }
    return fmt::format("no serial NOR flash: no driver has bound one of the {} SPI devices in {}", devices, place);
}

std::string found_title(const FOUND_FLASH& flash) {
    std::string title = flash.device;
    for (const std::string& part : {flash.jedec_id, flash.manufacturer, flash.partname}) {
        title += part.empty() ? "" : ", " + part;
    }
    return printable(title);
}

void print_found(const std::vector<FOUND_FLASH>& found) {
    for (const FOUND_FLASH& flash : found) {
        fmt::print("{}", &flash == found.data() ? "" : "\n");
        print_known_flash(found_title(flash), flash.known);
        for (const std::string& problem : flash.problems) {
            fmt::print("  {}\n", printable(problem));
        }
    }
}

JSON found_json(const FOUND_FLASH& flash) {
    JSON object{{"device", flash.device},
                {"jedec_id", flash.jedec_id},
                {"manufacturer", flash.manufacturer},
                {"partname", flash.partname},
                {"problems", flash.problems}};
    object["flash"] = known_flash_json(flash.known);
    return object;
}

}  // namespace

void identify_system(const ARGUMENTS& given, COMMAND& command) {
    const fs::path directory = spi_directory(given.texts("HEX"));
    const std::vector<fs::path> paths = spi_devices(directory);
    PGMDEV_FLASH_MANAGER manager = open_flash_database(1);
    std::vector<FOUND_FLASH> found;
    JSON array = JSON::array();
    for (const fs::path& path : paths) {
        if (auto flash = flash_of(path)) {
            flash->known.mapped = map_response(manager, flash->known.response, false);
            array.push_back(found_json(*flash));
            found.push_back(std::move(*flash));
        }
    }
    ANSWER answer;
    answer.found = !found.empty() && std::all_of(found.begin(), found.end(), [](const FOUND_FLASH& flash) {
        return flash.known.mapped.record != nullptr;
    });
    answer.content = {{"chips", array}};
    answer.print = [&] { print_found(found); };
    if (found.empty()) {
        answer.missing = nothing_found(directory, paths.size());
    }
    give_answer(utf8_from_path(directory), answer, command);
}

JSON identify_system_schema() {
    const JSON chip = object_schema({{"device", text_schema()},
                                     {"jedec_id", text_schema()},
                                     {"manufacturer", text_schema()},
                                     {"partname", text_schema()},
                                     {"problems", array_schema(text_schema())},
                                     {"flash", object_schema(known_flash_members())}});
    return question_schema({{"chips", array_schema(chip)}}, {"chips"});
}
