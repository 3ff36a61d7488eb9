#include <fmt/core.h>

#include <algorithm>
#include <map>
#include <memory>

#include "files/container.h"
#include "files/inspection.h"
#include "files/origins.h"
#include "files/output.h"
#include "hps/edit.h"
#include "terminal/did_you_mean.h"
#include "terminal/input.h"

// The lists are read as the managers read them, and written back whole.

namespace {

/// Encodes a list as a block: the stamp, then the records.
template <class FLASH>
std::vector<BYTE> encode(const std::vector<const typename FLASH::RECORD*>& records) {
    std::vector<BYTE> block(FLASH::STAMP.begin(), FLASH::STAMP.end());
    for (const auto* record : records) {
        pgmdev_append_hps_record(block, FLASH::MEMBERS, *record);
    }
    return block;
}

/// The user's list, for changing. Writing it back must lose nothing: a block of another version, or with something
/// behind its last whole record, is left alone.
template <class FLASH>
std::vector<const typename FLASH::RECORD*> editable_list(bool force) {
    require_changeable_container(force);
    const auto& list = FLASH::MANAGER::get_mgr()->get_user_list();
    std::vector<const typename FLASH::RECORD*> records(list.begin(), list.end());
    DWORD size = 0;
    const std::unique_ptr<BYTE[]> block(PGMDEV_FLASH_INI::read_flash_ini_data(FLASH::BLOCK, size));
    if (block != nullptr) {
        const std::vector<BYTE> known = encode<FLASH>(records);
        if (!std::equal(known.begin(), known.end(), block.get(), block.get() + size)) {
            throw COMMAND_FAILURE(
                {FAILURE_CODE::BLOCK_OF_ANOTHER_VERSION,
                 fmt::format("the block \"{}\" cannot be changed: it holds more than this version reads",
                             PGMDEV_FLASH_INI_NAMES[FLASH::BLOCK]),
                 container_place().path,
                 container_place().tried,
                 fmt::format("to give it up: params remove {}", static_cast<DWORD>(FLASH::BLOCK)),
                 {}});
        }
    }
    return records;
}

template <class FLASH>
void write_list(const std::vector<const typename FLASH::RECORD*>& records) {
    std::vector<BYTE> block;
    if (!records.empty()) {
        block = encode<FLASH>(records);
    }
    forget_system_reason();
    if (!PGMDEV_FLASH_INI::write_flash_ini_data(FLASH::BLOCK, block.empty() ? nullptr : block.data(),
                                                static_cast<DWORD>(block.size()))) {
        throw output_failure(container_place());
    }
}

/// Reads the text of one field; what the library finds wrong with it is shown to the user with the field's name.
QWORD checked_number(std::string_view name, PGMDEV_PARAM_TYPE type, const std::string& text, const FIELD_CHECK& check) {
    constexpr DWORD RANGES = 1;
    const DWORD ranges[]{RANGES, check.lowest, check.highest};
    QWORD value = 0;
    std::string error;
    if (text.empty()) {
        throw USAGE_ERROR(fmt::format("{}: a number is missing", name));
    }
    if (!PGMDEV_FLASH_INI::convert_string_to_qword(type, value, false, text, check.power_of_two, ranges, nullptr, false,
                                                   1, error)) {
        throw USAGE_ERROR(fmt::format("{}: {} (\"{}\")", name, error, text));
    }
    return value;
}

bool checked_bool(std::string_view name, const std::string& text) {
    const std::optional<bool> flag = flag_named(text);
    if (!flag) {
        throw USAGE_ERROR(fmt::format("{}: expected 0, 1, false or true (\"{}\")", name, text));
    }
    return *flag;
}

template <class FLASH>
void set_field(typename FLASH::RECORD& record, const PGMDEV_HPS_MEMBER<typename FLASH::RECORD>& member,
               const std::string& text) {
    const FIELD_CHECK check = field_check(FLASH::CHECKS, member.name);
    std::visit(
        [&](auto field) {
            auto& value = record.*field;
            using VALUE = std::remove_reference_t<decltype(value)>;
            if constexpr (std::is_same_v<VALUE, std::string>) {
                value = text;
            } else if constexpr (std::is_same_v<VALUE, bool>) {
                value = checked_bool(member.name, text);
            } else {
                value = static_cast<VALUE>(checked_number(member.name, member.type(), text, check));
            }
        },
        member.field);
}

template <class FLASH>
std::map<std::string, std::string, std::less<>> fields_of(const std::vector<std::string>& assignments) {
    std::map<std::string, std::string, std::less<>> fields;
    for (const std::string& assignment : assignments) {
        const std::size_t equals = assignment.find('=');
        const std::string name = assignment.substr(0, equals);
        const auto known = [&name](const auto& member) { return member.name == name; };
        if (equals == std::string::npos) {
            throw USAGE_ERROR(fmt::format("expected FIELD=VALUE, found \"{}\"", assignment));
        }
        if (std::none_of(FLASH::MEMBERS.begin(), FLASH::MEMBERS.end(), known)) {
            std::vector<std::string> names;
            names.reserve(FLASH::MEMBERS.size());
            for (const auto& member : FLASH::MEMBERS) {
                names.emplace_back(member.name);
            }
            throw USAGE_ERROR(
                fmt::format("there is no field \"{}\"{}; --help lists them", name, nearest_hint(name, names)));
        }
        if (!fields.emplace(name, assignment.substr(equals + 1)).second) {
            throw USAGE_ERROR(fmt::format("{}: given twice", name));
        }
    }
    return fields;
}

template <class FLASH>
typename FLASH::RECORD new_record(const std::vector<std::string>& assignments, std::optional<std::size_t> like) {
    typename FLASH::RECORD record;
    auto fields = fields_of<FLASH>(assignments);
    if (like) {
        const auto& list = FLASH::MANAGER::get_mgr()->get_list();
        if (*like >= list.size()) {
            throw USAGE_ERROR(fmt::format("--like: the list has {} entries", list.size()));
        }
        record = *list[*like];
    } else {
        for (const FIELD_DEFAULT& given : FLASH::DEFAULTS) {
            fields.emplace(given.name, given.value);
        }
    }
    std::string missing;
    for (const auto& member : FLASH::MEMBERS) {
        if (const auto field = fields.find(member.name); field != fields.end()) {
            set_field<FLASH>(record, member, field->second);
        } else if (!like) {
            missing += fmt::format(" {}", member.name);
        }
    }
    if (!missing.empty()) {
        throw USAGE_ERROR("these fields are missing:" + missing);
    }
    return record;
}

template <class FLASH>
void show_entry(std::size_t index, const typename FLASH::RECORD& record, const char* done, const COMMAND& command) {
    if (command.json) {
        print_json(entry_json<FLASH>(index, record, true));
    } else {
        fmt::print("Entry {} {}\n", index, done);
    }
}

/// Refuses an entry that is not among the first `count`, which are the user's.
template <class FLASH>
void require_entry_of_user(std::size_t index, std::size_t count) {
    if (index < count) {
        return;
    }
    const bool built_in = index < FLASH::MANAGER::get_mgr()->get_list().size();
    const std::string what = fmt::format("entry {} {}", index, built_in ? "is built in and stays" : "does not exist");
    const std::string advice =
        built_in ? fmt::format("hps add {} --like {} makes one of your own of it", FLASH::VERB_NAME, index)
                 : fmt::format("hps {} lists all", FLASH::VERB_NAME);
    throw COMMAND_FAILURE(
        {built_in ? FAILURE_CODE::ENTRY_BUILT_IN : FAILURE_CODE::ENTRY_MISSING, what, "", {}, advice, {}},
        EXIT_NOT_FOUND);
}

}  // namespace

template <class FLASH>
void add_entry(const std::vector<std::string>& assignments, std::optional<std::size_t> like,
               std::optional<std::size_t> before, bool force, const COMMAND& command) {
    const CONTAINER_LOCK lock;  // before the list is read
    const typename FLASH::RECORD record = new_record<FLASH>(assignments, like);
    auto records = editable_list<FLASH>(force);
    const std::size_t place = before.value_or(records.size());
    if (before) {
        require_entry_of_user<FLASH>(place, records.size());
    }
    records.insert(records.begin() + static_cast<std::ptrdiff_t>(place), &record);
    write_list<FLASH>(records);
    show_entry<FLASH>(place, record, "added", command);
}

template <class FLASH>
void edit_entry(std::size_t index, const std::vector<std::string>& assignments, bool force, const COMMAND& command) {
    const CONTAINER_LOCK lock;  // before the list is read
    auto records = editable_list<FLASH>(force);
    require_entry_of_user<FLASH>(index, records.size());
    const typename FLASH::RECORD record = new_record<FLASH>(assignments, index);
    records[index] = &record;
    write_list<FLASH>(records);
    show_entry<FLASH>(index, record, "changed", command);
}

template <class FLASH>
void remove_entry(std::size_t index, bool force, const COMMAND& command) {
    const CONTAINER_LOCK lock;  // before the list is read
    auto records = editable_list<FLASH>(force);
    require_entry_of_user<FLASH>(index, records.size());
    const typename FLASH::RECORD record = *records[index];
    records.erase(records.begin() + static_cast<std::ptrdiff_t>(index));
    write_list<FLASH>(records);
    show_entry<FLASH>(index, record, "removed", command);
}

template void add_entry<HPS_NAND>(const std::vector<std::string>&, std::optional<std::size_t>,
                                  std::optional<std::size_t>, bool, const COMMAND&);
template void add_entry<HPS_SPI>(const std::vector<std::string>&, std::optional<std::size_t>,
                                 std::optional<std::size_t>, bool, const COMMAND&);
template void edit_entry<HPS_NAND>(std::size_t, const std::vector<std::string>&, bool, const COMMAND&);
template void edit_entry<HPS_SPI>(std::size_t, const std::vector<std::string>&, bool, const COMMAND&);
template void remove_entry<HPS_NAND>(std::size_t, bool, const COMMAND&);
template void remove_entry<HPS_SPI>(std::size_t, bool, const COMMAND&);
