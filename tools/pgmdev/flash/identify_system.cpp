#include <fmt/core.h>

#include <algorithm>
#include <array>
#include <filesystem>
#include <string_view>
#include <system_error>

#include "file_kind.h"
#include "files/inspection.h"
#include "fio.h"
#include "flash/identify_sfdp.h"
#include "flash/known_flash.h"
#include "gen.h"
#include "terminal/failure.h"
#include "utf8_path.h"

// What the kernel of Linux found: below /sys/bus/spi/devices each flash with a driver has a directory spi-nor with the
// files jedec_id, manufacturer, partname and sfdp, the latter ones if they are known.

namespace {

namespace fs = std::filesystem;

constexpr std::size_t LARGEST_SYSFS_TEXT = 4096;  ///< one page, as much as the kernel gives
constexpr std::size_t LARGEST_SYSFS_DUMP = std::size_t{1} << 20;
constexpr std::size_t MOST_SPI_DEVICES = 4096;

/// A file of a flash, without the line feed; "" when there is none. What cannot be read becomes a problem.
std::string sysfs_file(const fs::path& directory, const char* name, std::size_t most, KNOWN_FLASH& flash) {
    const INSPECTED_FILE file = inspect_file(utf8_from_path(directory / name), most + 1);
    if (file.missing) {
        return "";
    }
    if (!file.obstacle.empty()) {
        flash.system->problems.push_back(fmt::format("{} cannot be read: {}", name, file.obstacle));
        return "";
    }
    if (file.beginning.size() > most) {
        flash.system->problems.push_back(fmt::format("{} is larger than {} bytes, and is not used", name, most));
        return "";
    }
    return file.beginning;
}

std::string sysfs_text(const fs::path& directory, const char* name, KNOWN_FLASH& flash) {
    return gen_remove_leading_and_trailing_white_spaces(sysfs_file(directory, name, LARGEST_SYSFS_TEXT, flash));
}

/// The question that the kernel's response is; nothing when it gives none.
std::optional<FLASH_QUESTION> question_of(KNOWN_FLASH& flash) {
    flash.query = flash.system->jedec_id;
    if (flash.query.empty()) {
        flash.system->problems.emplace_back("the kernel gives no jedec_id");
        return std::nullopt;
    }
    try {
        return FLASH_QUESTION::parse(flash.query, false);
    } catch (const USAGE_ERROR& error) {
        flash.system->problems.emplace_back(std::string("jedec_id is no identification: ") + error.message());
        return std::nullopt;
    }
}

void take_sfdp(const std::string& dump, KNOWN_FLASH& flash) {
    if (dump.empty()) {
        return;
    }
    const std::vector<BYTE> bytes(dump.begin(), dump.end());
    PGMDEV_FLASH_SFDP sfdp = PGMDEV_FLASH_SFDP::from_bytes(bytes);
    if (sfdp.refusal()) {
        flash.system->problems.push_back("sfdp is refused: " + PGMDEV_FLASH_SFDP::describe(*sfdp.refusal()));
    } else {
        flash.sfdp = std::move(sfdp);
    }
}

/// `directory` is that of a device on an SPI bus, which need not be a flash.
std::optional<KNOWN_FLASH> flash_of(const fs::path& directory) {
    const fs::path details = directory / "spi-nor";
    std::error_code error;
    const fs::file_type type = file_type_of(details, error);
    const bool is_hidden = error && type != fs::file_type::not_found;
    if (type != fs::file_type::directory && !is_hidden) {
        return std::nullopt;
    }
    KNOWN_FLASH flash;
    flash.system.emplace();
    flash.system->device = utf8_from_path(directory.filename());
    if (is_hidden) {
        flash.system->problems.push_back("spi-nor cannot be read: " + as_clause(error.message()));
        return flash;
    }
    flash.system->jedec_id = sysfs_text(details, "jedec_id", flash);
    flash.system->manufacturer = sysfs_text(details, "manufacturer", flash);
    flash.system->partname = sysfs_text(details, "partname", flash);
    take_sfdp(sysfs_file(details, "sfdp", LARGEST_SYSFS_DUMP, flash), flash);
    return flash;
}

COMMAND_FAILURE unreadable_directory(const fs::path& directory, const std::string& why, EXIT_CODE result) {
    return COMMAND_FAILURE({FAILURE_CODE::SYSTEM_FLASH_UNREADABLE,
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
    fs::path root = fio_get_unc_full_path(FIO_PATH(given.front()).fullpath());
    std::error_code error;
    const fs::file_type root_type = file_type_of(root, error);
    if (root_type != fs::file_type::directory) {
        throw unreadable_directory(given.front(),
                                   root_type == fs::file_type::not_found ? "there is no such directory"
                                   : root_type != fs::file_type::none    ? "it is no directory"
                                                                         : as_clause(error.message()),
                                   EXIT_USAGE);
    }
    for (const char* place : PLACES) {
        const fs::file_type type = file_type_of(root / fs::path(place).make_preferred(), error);
        if (error && type != fs::file_type::not_found) {
            throw unreadable_directory(root / fs::path(place).make_preferred(), as_clause(error.message()),
                                       EXIT_INTERNAL_ERROR);
        }
        if (type == fs::file_type::directory) {
            return root / fs::path(place).make_preferred();
        }
    }
    return root;
}

/// The number whose digits a text begins with, without the zeros before it.
std::string_view number_of(std::string_view text) {
    text = text.substr(0, std::min(text.find_first_not_of("0123456789"), text.size()));
    text.remove_prefix(std::min(text.find_first_not_of('0'), text.size()));
    return text;
}

/// As people count: spi2.0 before spi10.0.
bool comes_before(std::string_view a, std::string_view b) {
    const auto digits = [](std::string_view text) {
        return std::min(text.find_first_not_of("0123456789"), text.size());
    };
    while (!a.empty() && !b.empty()) {
        if (digits(a) != 0 && digits(b) != 0) {
            const std::string_view x = number_of(a);
            const std::string_view y = number_of(b);
            if (x != y) {
                return x.size() != y.size() ? x.size() < y.size() : x < y;
            }
            a.remove_prefix(digits(a));
            b.remove_prefix(digits(b));
        } else if (a.front() != b.front()) {
            return a.front() < b.front();
        } else {
            a.remove_prefix(1);
            b.remove_prefix(1);
        }
    }
    return a.size() < b.size();
}

/// The devices in their order; none where the kernel has no SPI bus.
std::vector<fs::path> spi_devices(const fs::path& directory) {
    std::error_code error;
    std::vector<fs::path> paths;
    if (file_type_of(directory, error) == fs::file_type::not_found) {
        return paths;
    }
    fs::directory_iterator entry(directory, error);
    for (; !error && entry != fs::directory_iterator() && paths.size() < MOST_SPI_DEVICES; entry.increment(error)) {
        paths.push_back(entry->path());
    }
    if (error) {
        throw unreadable_directory(directory, as_clause(error.message()), EXIT_INTERNAL_ERROR);
    }
    std::sort(paths.begin(), paths.end(), [](const fs::path& a, const fs::path& b) {
        return comes_before(utf8_from_path(a.filename()), utf8_from_path(b.filename()));
    });
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

}  // namespace

void identify_system(const std::vector<std::string>& directories, COMMAND& command) {
    const fs::path directory = spi_directory(directories);
    const std::vector<fs::path> paths = spi_devices(directory);
    std::vector<KNOWN_FLASH> found;
    for (const fs::path& path : paths) {
        if (auto flash = flash_of(path)) {
            found.push_back(std::move(*flash));
        }
    }
    FLASH_IDENTIFIER identifier(std::max<DWORD>(static_cast<DWORD>(found.size()), 1));
    for (DWORD position = 0; position < found.size(); ++position) {
        if (const auto question = question_of(found[position])) {
            found[position].identification = identifier.identify(position, *question);
        } else if (const std::string& name = found[position].system->partname; !name.empty()) {
            found[position].identification = identifier.identify_named(position, {name});
        }
    }
    give_known_flash(found, identifier, nothing_found(directory, paths.size()), command);
}
