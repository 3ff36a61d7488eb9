#include "member_tables.h"

#include "pgmdev_dev_info_manager_auto_export.h"

namespace {

bool has_names(const PGMDEV_DEVICE_INFO_MEMBER& member) {
    return member.kind == PGMDEV_MANAGER_DEVID_ENUM || member.kind == PGMDEV_MANAGER_ENUM;
}

/// What an identifier or an enumerator is called in source tables; "" where it has no name.
std::string name_of(const PGMDEV_DEVICE_INFO_MEMBER& member, const PGMDEV_DEVICE_INFO& record) {
    bool nameable = false;
    std::string cell = pgmdev_device_info_cell(member, record, nameable);
    return nameable ? cell : "";
}

DATUM profile_value(const PGMDEV_DEVICE_INFO_MEMBER& member, const PGMDEV_DEVICE_INFO& record) {
    return std::visit(
        [&](auto field) {
            const auto& value = record.*field;
            using FIELD = std::remove_cvref_t<decltype(value)>;
            if constexpr (std::is_same_v<FIELD, std::string> || std::is_same_v<FIELD, bool>) {
                return value_of(value);
            } else {
                const auto number = static_cast<DWORD>(value);
                return has_names(member) ? DATUM{PGMDEV_KIND_ENUMERATOR, number, name_of(member, record)}
                                         : number_value(number);
            }
        },
        member.field);
}

void require_kind(const pgmdev_value& value, pgmdev_kind kind) {
    require_argument(value.kind == kind, "a value is not of the kind of its member");
    require_argument(value.reserved == 0, "a value says something that this version does not know");
}

}  // namespace

std::vector<MEMBER> profile_members() {
    std::vector<MEMBER> members = members_of(std::span<const PGMDEV_DEVICE_INFO_MEMBER>(PGMDEV_DEVICE_INFO_MEMBERS));
    for (std::size_t i = 0; i < members.size(); ++i) {
        if (has_names(PGMDEV_DEVICE_INFO_MEMBERS[i])) {
            members[i].kind = PGMDEV_KIND_ENUMERATOR;
        }
    }
    return members;
}

std::vector<DATUM> profile_values(const PGMDEV_DEVICE_INFO& record) {
    std::vector<DATUM> values;
    values.reserve(PGMDEV_DEVICE_INFO_MEMBERS.size());
    for (const PGMDEV_DEVICE_INFO_MEMBER& member : PGMDEV_DEVICE_INFO_MEMBERS) {
        values.push_back(profile_value(member, record));
    }
    return values;
}

pgmdev_records flash_records(std::span<const PGMDEV_SFL_FLASH_INFO> records) {
    pgmdev_records all(flash_members());
    for (const PGMDEV_SFL_FLASH_INFO& record : records) {
        all.add(flash_values(record));
    }
    return all;
}

pgmdev_records profile_records(std::span<const PGMDEV_DEVICE_INFO> records) {
    pgmdev_records all(profile_members());
    for (const PGMDEV_DEVICE_INFO& record : records) {
        all.add(profile_values(record));
    }
    return all;
}

uint64_t number_from(const pgmdev_value& value, pgmdev_kind kind, uint64_t most) {
    require_kind(value, kind);
    require_argument(value.number <= most, "a number is larger than its member can be");
    return value.number;
}

std::string text_from(const pgmdev_value& value) {
    require_kind(value, PGMDEV_KIND_TEXT);
    return value.text != nullptr ? value.text : "";
}
