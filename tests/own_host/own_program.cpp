// Uses the device data with this host, and says what came of it.

#include <cstdio>
#include <functional>
#include <map>
#include <memory>
#include <thread>

#include "dstr.h"
#include "msg.h"
#include "own_host.h"
#include "pgmdev_dev_info_manager.h"
#include "pgmdev_device_grammar_mgr.h"
#include "pgmdev_flash_ini.h"
#include "pgmdev_flash_manager.h"
#include "pgmdev_hps_nand_mgr.h"
#include "pgmdev_hps_spi_mgr.h"
#include "pgmdev_mgr.h"
#include "pgmdev_user_flash.h"

namespace {

void say(const std::string& what, const std::string& result) {
    std::printf("%s: %s\n", what.c_str(), result.c_str());
}

void say_all(const std::string& what, std::vector<std::string>& results) {
    for (const std::string& result : results) {
        say(what, result);
    }
    results.clear();
}

/// How an operation ends.
template <class OPERATION>
std::string end_of(OPERATION operation) {
    try {
        operation();
    } catch (const MSG_INTERNAL_ERROR_EXCEPTION& error) {
        return "ended by the library, " + error.condition;
    } catch (const OWN_FAILURE& failure) {
        return "ended by the host, " + failure.condition;
    }
    return "went on";
}

std::string joined(const std::vector<std::string>& cells) {
    std::string line;
    for (const std::string& cell : cells) {
        line += (line.empty() ? "" : ",") + cell;
    }
    return line + "\n";
}

using CELLS = std::map<std::string, std::string, std::less<>>;

std::string cell_of(const PGMDEV_SFL_FLASH_MEMBER& member, const CELLS& given) {
    if (const auto cell = given.find(member.name); cell != given.end()) {
        return cell->second;
    }
    if (member.kind == PGMDEV_MANAGER_STRING) {
        return "NONE";
    }
    return member.kind == PGMDEV_MANAGER_BOOL ? "FALSE" : "0";
}

/// A flash source table; a row for each name, whose memory IDs count up.
std::string flash_table(const std::vector<std::string>& names, const std::string& sector_byte) {
    std::vector<std::string> types;
    std::vector<std::string> members;
    for (const PGMDEV_SFL_FLASH_MEMBER& member : PGMDEV_SFL_FLASH_MEMBERS) {
        constexpr const char* TYPES[] = {"", "", "STL_STRING", "bool", "BYTE", "WORD", "DWORD"};
        types.emplace_back(TYPES[member.kind]);
        members.emplace_back(member.name);
    }
    const std::string ignored = joined(std::vector<std::string>(members.size(), "-"));
    std::string table = joined(types) + joined(members) + ignored + ignored + ignored + ignored + ignored + ignored;
    int id = 0x10;
    for (const std::string& name : names) {
        const CELLS given{{"device_name", name},
                          {"memory_id", std::to_string(id++)},
                          {"memory_id_index", "2"},
                          {"default_dev", "TRUE"},
                          {"device_sector_byte", sector_byte}};
        std::vector<std::string> cells;
        cells.reserve(members.size());
        for (const PGMDEV_SFL_FLASH_MEMBER& member : PGMDEV_SFL_FLASH_MEMBERS) {
            cells.push_back(cell_of(member, given));
        }
        table += joined(cells);
    }
    return table;
}

/// A profile source table: all families but one, the generic device and part, and five programmer files.
std::string profile_table(int missing_family) {
    std::vector<std::string> types;
    std::vector<std::string> members;
    for (const PGMDEV_DEVICE_INFO_MEMBER& member : PGMDEV_DEVICE_INFO_MEMBERS) {
        constexpr const char* TYPES[] = {"DEVID_ENUM", "DEVID_STR", "STL_STRING", "bool",
                                         "BYTE",       "WORD",      "DWORD",      "ENUM"};
        types.emplace_back(TYPES[member.kind]);
        members.emplace_back(member.name);
    }
    std::string table = joined(types) + joined(members);
    const std::string rest(members.size() - 4, ',');
    for (int family = 1; family < DEV_FAMILY_MAX; ++family) {
        const std::string name = family == DEV_FAMILY_GENERIC ? "GENERIC" : "FAMILY" + std::to_string(family);
        table.append(family == missing_family ? ",FILE_0,," : name + ",,,").append(rest).append("\n");
    }
    table += ",,GENERIC," + rest + "\n,,,GENERIC" + rest + "\n";
    for (const char* file : {"FILE_1", "FILE_2", "FILE_3", "FILE_\xC4"}) {
        table += std::string(",") + file + ",," + rest + "\n";
    }
    return table;
}

constexpr const char* FLASH_TABLE = "memory:flash.csv";
constexpr const char* FLASH_DATABASE = "memory:devices/programmer/pgm_flash.pcf";

std::string compile_flash(const std::string& table) {
    own_host_write(FLASH_TABLE, table);
    return end_of([] {
        PGMDEV_FLASH_MANAGER(false, 0, true, false)
            .generate_flash_database(FIO_PATH(FLASH_TABLE), FIO_PATH(FLASH_DATABASE));
    });
}

/// Signs and encodes descriptions.
class SIGNER : public PGMDEV_FLASH_MANAGER {
public:
    SIGNER() : PGMDEV_FLASH_MANAGER(false, 0, true, false) {}

    std::string sealed(const std::string& body) { return encode_ini(body + "#" + gen_ini_password(body) + ";"); }
};

void use_flash() {
    say("a table of this host's numbers", compile_flash(flash_table({"SMALL", "LARGE"}, "64k")));
    PGMDEV_FLASH_MANAGER flash(false, 1, false, false);
    BYTE response[256] = {0, 0, 0x11};
    say("found", flash.flash_id_database_mapping(false, 0, response) ? flash.sfl_get_device_name(0) : "nothing");
    say("its sectors", std::to_string(flash.sfl_get_device_sector_byte(0)));
    say_all("debug format", own_host().debug_formats);

    own_host_set_value(PGMDEV_USER_FLASH::CONFIGURATION_KEY,
                       SIGNER().sealed("@MINE@CHIP@0@20@2@113@1@31@0@32@1@NONE@0@0@0@0@0@0@1@8388608@65536@0@0@60@1@"
                                       "5000@28@0@0@255@5@0@3V@"));
    {
        PGMDEV_FLASH_MANAGER with_mine(false, 1, false, true);
        say("record 0", with_mine.get_flash_database()[0].device_name);
    }
    say("debug formats", std::to_string(own_host().debug_formats.size()));
    own_host().debug_formats.resize(3);
    say_all("debug format", own_host().debug_formats);
    own_host_set_value(PGMDEV_USER_FLASH::CONFIGURATION_KEY, "");
}

void fail() {
    for (const bool throws : {false, true}) {
        own_host().reporter_throws = throws;
        say("a manager for nobody", end_of([] { const PGMDEV_FLASH_MANAGER nobody(false, 0, false, false); }));
        say("a table with no number", compile_flash(flash_table({"SMALL"}, "64m")));
        own_host_write(FLASH_DATABASE, "");
        say("no database", end_of([] { const PGMDEV_FLASH_MANAGER none(false, 1, false, false); }));
        say_all("report", own_host().reports);
    }
    // Whether two names are one is this host's to say.
    compile_flash(flash_table({"BL\xC4U", "bl\xE4u"}, "64k"));
    say("two of one name", end_of([] { const PGMDEV_FLASH_MANAGER both(false, 1, false, false); }));
    own_host().reports.clear();
    own_host().debug_formats.clear();

    // A reporter that looks up a name, and in the end an operation that reports.
    own_host().reporting = [](const std::string&) {
        own_host().reporting = nullptr;
        say("while reporting", PGMDEV_DEVICE_GRAMMAR_MGR::get_pgm_name(std::string("KES50C6"), false, true));
    };
    say("a name that is none", PGMDEV_MGR::get_possible_full_name("none"));
    own_host().reports.clear();
}

void use_profiles() {
    own_host_write("memory:/h/pgm_parts.txt", "// parts\nKES50C6 Device7 a b c d file_\xE4\n");
    own_host_write("memory:profiles.csv", profile_table(17));
    PGMDEV_DEV_INFO_MANAGER compiler(true);
    say("profiles", end_of([&] {
            compiler.generate_device_database(FIO_PATH("memory:profiles.csv"),
                                              FIO_PATH("memory:devices/programmer/pgm_dev_info.pcf"));
        }));
    say_all("mail", own_host().mails);
    PGMDEV_DEV_INFO_MANAGER profiles;
    const std::unique_ptr<PGMDEV_DEVICE_INFO> family(profiles.get_db_by_family(DEV_FAMILY_KESTREL));
    say("the profile of a family", dstr_get_user_string(family->family));
    const std::unique_ptr<PGMDEV_DEVICE_INFO> part(profiles.get_db_by_part(1));
    say("the profile of a part", part->pcf == "FILE_\xC4" ? "that of its file" : "another");
}

void use_container() {
    BYTE block[] = {1, 2, 3};
    say("a block",
        PGMDEV_FLASH_INI::write_flash_ini_data(PGMDEV_FLASH_INI_SFL_FLASH, block, 3) ? "written" : "refused");
    say("the container", std::to_string(own_host_read("memory:module/pgm_flash.ini").size()) + " bytes");
    DWORD size = 0;
    const std::unique_ptr<BYTE[]> read(PGMDEV_FLASH_INI::read_flash_ini_data(PGMDEV_FLASH_INI_SFL_FLASH, size));
    say("read back", size == 3 && read[2] == 3 ? "the same" : "something else");
    QWORD value = 0;
    std::string error;
    PGMDEV_FLASH_INI::convert_string_to_qword(PGMDEV_PARAM_QWORD, value, false, "18446744073709551616", false, nullptr,
                                              nullptr, false, 1, error);
    say("65 bits", error);
}

/// While the library makes a list of boot flash it calls this host, which asks for the lists itself, and has another
/// thread do so.
void use_boot_flash() {
    const PGMDEV_HPS_SPI_MGR* meanwhile = nullptr;
    own_host().asking = [&meanwhile] {
        meanwhile = PGMDEV_HPS_SPI_MGR::get_mgr();
        std::thread([] {
            say("NAND flash, by another thread", std::to_string(PGMDEV_HPS_NAND_MGR::get_mgr()->get_list().size()));
        }).join();
    };
    const PGMDEV_HPS_SPI_MGR* manager = PGMDEV_HPS_SPI_MGR::get_mgr();
    say("SPI flash", std::to_string(manager->get_list().size()));
    say("its manager", manager == meanwhile ? "the only one" : "another one");
    PGMDEV_HPS_SPI_MGR::delete_mgr();
    PGMDEV_HPS_NAND_MGR::delete_mgr();
}

void use_names() {
    say("a part", PGMDEV_MGR::get_possible_full_name("kes50"));
    say("by its device", PGMDEV_MGR::get_part_name_from_dev("Device8"));
    say("by its hash", PGMDEV_MGR::get_opn_from_hash(PGMDEV_MGR::get_opn_hash("KES50I7")));
    own_host().reporter_throws = true;
    say("an unknown device", PGMDEV_MGR::get_part_name_from_dev("Device0"));
    say_all("report", own_host().reports);
}

}  // namespace

int main() {
    say("all of it", end_of([] {
            use_flash();
            fail();
            use_profiles();
            use_container();
            use_boot_flash();
            use_names();
        }));
    say_all("report", own_host().reports);
    return 0;
}
