#include <gtest/gtest.h>
#include <sys/mman.h>
#include <sys/resource.h>

#include <algorithm>
#include <cstring>
#include <fstream>
#include <functional>
#include <numeric>
#include <set>

#include "dstr.h"
#include "msg.h"
#include "pgmdev/flash/fixture.h"
#include "pgmdev/parameters/container_text.h"
#include "pgmdev/parameters/fixture.h"
#include "pgmdev_dev_info_table.h"
#include "pgmdev_flash_table.h"
#include "run.h"
#include "torture/child.h"
#include "torture/settings.h"

// Shipped files with every byte, every bit and every length wrong: reported, or told to be another by `verify`, in little
// memory. A sweep takes the cases in an order that is spread over the file, and goes on where it stopped the last time.

namespace fs = std::filesystem;

namespace {

constexpr std::size_t CASES_OF_A_BYTE = 11;  // eight bits, 00, FF, and an end before it

/// Where bytes are to be damaged.
using PLACES = std::vector<std::size_t>;

PLACES all_places(const std::string& bytes) {
    PLACES places(bytes.size());
    std::iota(places.begin(), places.end(), 0U);
    return places;
}

/// Of the payload of a database a byte of each class: its head, the first two records and the last one, and where the index
/// tables begin and end. Others are read by the same code.
PLACES places_of_classes(const std::string& payload) {
    constexpr std::string_view RECORD_END = "END1";
    constexpr std::size_t SOME = 32;
    std::vector<std::size_t> ends;
    for (std::size_t end = payload.find(RECORD_END); end != std::string::npos;
         end = payload.find(RECORD_END, end + 1)) {
        ends.push_back(end + RECORD_END.size());
    }
    std::set<std::size_t> places;
    const auto add = [&](std::size_t begin, std::size_t end) {
        for (std::size_t place = begin; place < std::min(end, payload.size()); ++place) {
            places.insert(place);
        }
    };
    add(0, ends.at(1));
    add(ends.at(ends.size() - 2), ends.back() + SOME);
    std::size_t table = ends.back() + RECORD_END.size();
    for (const int entries : {int{DEV_FAMILY_MAX}, int{DEV_DEVICE_MAX}, DEV_PART_MAX}) {
        table += 5 + 4 * static_cast<std::size_t>(entries);
        add(table - SOME, table + SOME);
    }
    return {places.begin(), places.end()};
}

/// Nothing when the case changes nothing.
std::optional<std::string> damaged(const std::string& sound, const PLACES& places, std::size_t number) {
    const std::size_t place = places.at(number / CASES_OF_A_BYTE);
    const std::size_t kind = number % CASES_OF_A_BYTE;
    std::string file = sound;
    if (kind < 8) {
        file[place] = static_cast<char>(file[place] ^ (1 << kind));
    } else if (kind < 10) {
        file[place] = kind == 8 ? '\0' : '\xFF';
    } else {
        file.resize(place);
    }
    return file == sound ? std::nullopt : std::optional(file);
}

long peak_kilobytes() {
    rusage usage{};
    ::getrusage(RUSAGE_SELF, &usage);
    return usage.ru_maxrss;
}

/// Where a sweep is, as its process and the test see it, and what the process has found.
struct PROGRESS {
    std::size_t position;
    char finding[200];
};

/// A position that outlives the program.
class REMEMBERED {
public:
    explicit REMEMBERED(const std::string& name) : m_file(fs::path(torture::state_directory()) / name) {
        std::ifstream(m_file) >> m_position;
    }
    std::size_t position() const { return m_position; }
    void keep(std::size_t position) const { std::ofstream(m_file) << position << "\n"; }

private:
    fs::path m_file;
    std::size_t m_position = 0;
};

class Damage : public testing::Test {
protected:
    /// Judges a damaged file: what is wrong with how it was taken, or null.
    using JUDGE = std::function<const char*(const std::string& path)>;

    static constexpr int DONE = 0;
    static constexpr long MOST_KILOBYTES = 64L * 1024;

    Damage() {
        void* const memory =
            ::mmap(nullptr, sizeof(PROGRESS), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
        m_progress = static_cast<PROGRESS*>(memory);
    }
    ~Damage() override { ::munmap(m_progress, sizeof(PROGRESS)); }

    /// `whole` makes the file of what is damaged: itself, or what surrounds it.
    void sweep(const std::string& name, const std::string& sound, const PLACES& places, const std::string& file_name,
               const std::function<std::string(std::string)>& whole, const JUDGE& judge) {
        constexpr std::size_t STRIDE = 1000003;
        const std::size_t total = places.size() * CASES_OF_A_BYTE;
        ASSERT_EQ(std::gcd(STRIDE, total), 1U);
        const REMEMBERED remembered(name);
        const std::size_t begin = remembered.position() < total ? remembered.position() : 0;
        const std::string path = m_scratch.path(file_name);
        const auto end_of_time = std::chrono::steady_clock::now() + std::chrono::seconds(torture::seconds());
        m_progress->position = begin;
        torture::CHILD child([&] {
            MSG_INTERNAL_ERROR::set_handler(
                [](const MSG_INTERNAL_ERROR_REPORT& report) { throw MSG_INTERNAL_ERROR_EXCEPTION(report); });
            m_scratch.write(file_name, whole(sound));
            judge(path);
            const long usual = peak_kilobytes();
            std::size_t& position = m_progress->position;
            for (; position < total && std::chrono::steady_clock::now() < end_of_time; ++position) {
                if (const auto file = damaged(sound, places, position * STRIDE % total)) {
                    m_scratch.write(file_name, whole(*file));
                    const char* finding = judge(path);
                    if (finding == nullptr && peak_kilobytes() - usual > MOST_KILOBYTES) {
                        finding = "it took too much memory";
                    }
                    if (finding != nullptr) {
                        std::strncpy(m_progress->finding, finding, sizeof m_progress->finding - 1);
                        ::_exit(1);
                    }
                }
            }
        });
        const bool good = child.wait();
        const std::size_t position = m_progress->position;
        if (!good) {
            fs::copy_file(path, fs::path(torture::state_directory()) / ("damaged-" + name),
                          fs::copy_options::overwrite_existing);
        }
        ASSERT_TRUE(good) << name << ", case " << position * STRIDE % total << ": "
                          << (*m_progress->finding == '\0' ? "the process ended" : m_progress->finding);
        remembered.keep(position < total ? position : 0);
        std::cout << name << ": cases " << begin << " to " << position << " of " << total << std::endl;
    }

    /// A database: reported when it is loaded, or verified not to be the one that was compiled.
    template <class TABLE>
    JUDGE database_judge(const std::string& noun, const std::string& shipped) {
        const std::string info = read_file(std::string(TEST_DEVICES_DIR) + "/programmer/" + shipped + ".info");
        m_scratch.write(shipped + ".info", info);
        const std::string sound = read_file(std::string(TEST_DEVICES_DIR) + "/programmer/" + shipped);
        return [noun, sound](const std::string& path) -> const char* {
            try {
                TABLE::from_database(FIO_PATH(path));
            } catch (const MSG_INTERNAL_ERROR_EXCEPTION&) {
                return nullptr;
            }
            const bool is_sound = run_pgmdev({noun, "verify", path}) == DONE;
            return is_sound && read_file(path) != sound ? "it is damaged, and verified to be sound" : nullptr;
        };
    }

    template <class TABLE>
    void sweep_database(const std::string& noun, const std::string& shipped) {
        const std::string sound = read_file(std::string(TEST_DEVICES_DIR) + "/programmer/" + shipped);
        const JUDGE judge = database_judge<TABLE>(noun, shipped);
        sweep(
            noun + "-file", sound, all_places(sound), shipped, [](std::string file) { return file; }, judge);
        constexpr std::size_t HEAD = 44;
        const std::size_t size = ini_reference::get32(sound, HEAD - 4);
        const std::string payload = flash_reference::inflated(sound.substr(HEAD, sound.size() - HEAD - 2), size);
        const std::string before = sound.substr(0, HEAD - 4);
        const auto packed = [before](const std::string& bytes) {
            return before + ini_reference::le32(bytes.size()) + flash_reference::deflated(bytes) + std::string(2, '\0');
        };
        sweep(noun + "-classes", payload, places_of_classes(payload), shipped, packed, judge);
        sweep(noun + "-payload", payload, all_places(payload), shipped, packed, judge);
    }

    SCRATCH m_scratch;
    PROGRESS* m_progress = nullptr;
};

TEST_F(Damage, FlashDatabase) {
    sweep_database<PGMDEV_FLASH_TABLE>("flash", "pgm_flash.pcf");
}

TEST_F(Damage, ProfileDatabase) {
    sweep_database<PGMDEV_DEV_INFO_TABLE>("profile", "pgm_dev_info.pcf");
}

/// A container of which every block is in use, its head and its lengths damaged too: a block is read whole or not at all,
/// and the command refuses to change it.
TEST_F(Damage, Container) {
    const std::vector<std::string> in_directory{"--module-dir", m_scratch.directory().string()};
    const auto command = [&in_directory](std::vector<std::string> arguments) {
        arguments.insert(arguments.begin(), in_directory.begin(), in_directory.end());
        return run_pgmdev(arguments);
    };
    ASSERT_EQ(command({"hps", "add", "nand", "manufacturer_id=0xEC", "device_id=211", "device_byte_size=0x40000000"}),
              DONE);
    ASSERT_EQ(command({"hps", "add", "spi", "--like", "26", "device_name=QSPI_256", "silicon_id=0x1940C8",
                       "device_bit_size=0x10000000"}),
              DONE);
    const std::string file = read_file(m_scratch.path("pgm_flash.ini"));
    const auto spi = ini_reference::read_block(file, 1);
    const auto nand = ini_reference::read_block(file, 2);
    ASSERT_TRUE(spi && nand);
    const std::string sound = ini_reference::file({"values of others", spi, nand});
    m_scratch.write("pgm_flash.ini.info", ini_reference::info(sound));
    sweep(
        "container", sound, all_places(sound), "pgm_flash.ini", [](std::string bytes) { return bytes; },
        [command, sound](const std::string& path) -> const char* {
            const std::string bytes = read_file(path);
            const MODULE_DIRECTORY directory(fs::path(path).parent_path().string());
            for (unsigned which = 0; which < PGMDEV_FLASH_INI_MAX; ++which) {
                if (FLASH_INI_DIRECTORY::read(which) != ini_reference::read_block(bytes, which)) {
                    return "a block is not what the file says";
                }
            }
            const int result = command({"params", "list"});
            if (result < 0 || result > 3) {
                return "the command ended strangely";
            }
            constexpr int REFUSED = 3;
            if (bytes != sound && (command({"params", "remove", "0"}) != REFUSED || read_file(path) != bytes)) {
                return "it is damaged, and was changed";
            }
            return nullptr;
        });
}

}  // namespace
