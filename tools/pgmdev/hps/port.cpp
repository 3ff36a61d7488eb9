#include "hps/port.h"

#include <fmt/core.h>

#include <vector>

#include "gen.h"
#include "pgm_common.h"
#include "terminal/command.h"

namespace {

/// Whether the text stands for the kind at that index.
bool stands_for(const std::string& text, std::size_t index, const PGMDEV_HPS_STRUCTURE& kind) {
    bool is_number = false;
    const DWORD number = PGM_COMMON::convert_string_to_dword(text, true, &is_number, nullptr, true);
    return gen_stricmp(text, kind.name) == 0 || (is_number && (number == kind.id || number == index));
}

}  // namespace

const PGMDEV_HPS_STRUCTURE& chosen_kind(const std::string& text) {
    const std::string wanted = gen_remove_leading_and_trailing_white_spaces(text);
    const auto kinds = PGMDEV_HPS_MGR::get_kinds();
    std::string known;
    for (std::size_t i = 0; i < kinds.size(); ++i) {
        if (stands_for(wanted, i, kinds[i]) && PGMDEV_HPS_MGR::get_mgr()->set_current_hps(kinds[i].id)) {
            return *PGMDEV_HPS_MGR::get_mgr()->get_current_hps();
        }
        known += fmt::format("{}{} (0x{:08X})", known.empty() ? "" : ", ", kinds[i].name, kinds[i].id);
    }
    throw USAGE_ERROR(fmt::format("no kind of hard processor system is called \"{}\"; there are {}", text, known));
}

void add_port(JSON& object, const PGMDEV_HPS_STRUCTURE& kind, const BOOT_PORT& port) {
    object["hps"] = kind.name;
    for (const BOOT_PORT::MEMBER& member : port.members) {
        object[member.name] = kind.*member.field;
    }
}

std::vector<SCHEMA_MEMBER> port_members(const BOOT_PORT& port) {
    std::vector<SCHEMA_MEMBER> members{{"hps", text_schema()}};
    for (const BOOT_PORT::MEMBER& member : port.members) {
        members.push_back({member.name, number_schema()});
    }
    return members;
}

void print_port(const PGMDEV_HPS_STRUCTURE& kind, const BOOT_PORT& port) {
    std::string text = fmt::format("{} (0x{:08X})", kind.name, kind.id);
    for (const BOOT_PORT::MEMBER& member : port.members) {
        text += member.hex ? fmt::format(", {} 0x{:08X}", member.name, kind.*member.field)
                           : fmt::format(", {} {}", member.name, kind.*member.field);
    }
    fmt::print("{}\n\n", text);
}
