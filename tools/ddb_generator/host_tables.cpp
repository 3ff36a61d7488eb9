#include "host_tables.h"

#include <algorithm>
#include <bit>
#include <stdexcept>
#include <string_view>
#include <unordered_map>

#include "dstr.h"

namespace {

constexpr std::string_view GENERIC_NAME = "Generic";

class TABLES_BUILDER {
public:
    TABLES_BUILDER() { m_tables.rows.emplace_back(); }  // address 0 is the empty text

    /// The address of a text, which is added unless it is there already. It is only found again if it is remembered; then it
    /// must live as long as this.
    std::uint32_t address_of(std::string_view text, bool remembered = true) {
        if (const auto known = m_addresses.find(text); known != m_addresses.end()) {
            return known->second;
        }
        if (m_next % NAME_ROW_SIZE + text.size() + 1 > NAME_ROW_SIZE) {
            m_next = static_cast<std::uint32_t>(m_tables.rows.size() * NAME_ROW_SIZE);
        }
        if (m_next == m_tables.rows.size() * NAME_ROW_SIZE) {
            m_tables.rows.emplace_back();
        }
        std::copy(text.begin(), text.end(), &m_tables.rows.back()[m_next % NAME_ROW_SIZE]);
        const std::uint32_t address = m_next;
        m_next += static_cast<std::uint32_t>(text.size()) + 1;
        if (remembered) {
            m_addresses.emplace(text, address);
        }
        return address;
    }

    /// Names by number.
    NUMBERED_NAMES names(const std::vector<std::string_view>& by_number) {
        NUMBERED_NAMES names;
        names.slots.resize(std::bit_ceil(2 * by_number.size()));
        for (const std::string_view name : by_number) {
            add(names, name, true);
        }
        return names;
    }

    /// Names of parts, and further ones with the numbers that they stand for. None is another's, and there are too many to
    /// remember them for what else they might be.
    NUMBERED_NAMES part_names(const std::vector<std::string_view>& by_number, const CATALOG& catalog) {
        NUMBERED_NAMES names;
        names.slots.resize(std::bit_ceil(2 * (by_number.size() + catalog.aliases.size())));
        for (const std::string_view name : by_number) {
            add(names, name, false);
        }
        for (const CATALOG_ALIAS& alias : catalog.aliases) {
            add(names, alias.name, false);
            names.aliases.push_back(static_cast<std::uint32_t>(catalog.parts[alias.part].number));
        }
        return names;
    }

    HOST_TABLES& tables() { return m_tables; }

private:
    /// A name under the next number.
    void add(NUMBERED_NAMES& names, std::string_view name, bool remembered) {
        const auto number = static_cast<std::uint32_t>(names.addresses.size());
        names.addresses.push_back(name.empty() ? 0 : address_of(name, remembered));
        if (!name.empty()) {
            const std::size_t mask = names.slots.size() - 1;
            std::size_t slot = name_hash(name) & mask;
            while (names.slots[slot] != 0) {
                slot = (slot + 1) & mask;
            }
            names.slots[slot] = number;
        }
    }

    HOST_TABLES m_tables;
    std::unordered_map<std::string_view, std::uint32_t> m_addresses;
    std::uint32_t m_next = 1;
};

/// Fills names of numbered things into a list that ends with the generic one.
template <typename THINGS>
std::vector<std::string_view> names_by_number(const THINGS& things, int generic) {
    std::vector<std::string_view> names(static_cast<std::size_t>(generic) + 1);
    for (const auto& thing : things) {
        if (thing.number != 0) {
            names[static_cast<std::size_t>(thing.number)] = thing.name;
        }
    }
    names.back() = GENERIC_NAME;
    return names;
}

std::vector<std::uint8_t> device_families(const CATALOG& catalog) {
    std::vector<std::uint8_t> families(DEV_DEVICE_MAX, DEV_FAMILY_GENERIC);
    families[DEV_DEVICE_INVALID] = DEV_FAMILY_INVALID;
    for (const CATALOG_DEVICE& device : catalog.devices) {
        families[static_cast<std::size_t>(device.number)] =
            static_cast<std::uint8_t>(catalog.families[device.family].number);
    }
    return families;
}

std::vector<PART_FACTS> part_facts(const CATALOG& catalog) {
    const auto flag = [](bool set, std::uint8_t value) { return set ? value : 0; };
    std::vector<PART_FACTS> facts(static_cast<std::size_t>(catalog.last_part) + 2,
                                  PART_FACTS{DEV_DEVICE_GENERIC, 0, 0, 0});
    facts[0].device = DEV_DEVICE_INVALID;
    for (const CATALOG_PART& part : catalog.parts) {
        if (part.number != 0) {
            const int flags = PART_IS_REAL | flag(part.ordering_index >= 0, PART_IS_ORDERABLE) |
                              flag(part.production, PART_IS_PRODUCTION) | flag(part.hidden, PART_IS_HIDDEN);
            facts[static_cast<std::size_t>(part.number)] = {
                static_cast<std::uint16_t>(catalog.devices[part.device].number),
                static_cast<std::uint8_t>(part.package), static_cast<std::uint8_t>(part.grade),
                static_cast<std::uint8_t>(flags)};
        }
    }
    return facts;
}

std::vector<PART_SPAN> device_parts(const std::vector<PART_FACTS>& facts) {
    std::vector<PART_SPAN> spans(DEV_DEVICE_MAX, PART_SPAN{0, 0});
    for (std::uint32_t part = 1; part < facts.size(); ++part) {
        PART_SPAN& span = spans[facts[part].device];
        span = {span.end == 0 ? part : span.first, part + 1};
    }
    return spans;
}

/// Looks up every name by number and every number by name, as the libraries will.
void prove(const HOST_TABLES& tables, const NUMBERED_NAMES& names, const std::vector<std::string_view>& expected) {
    const NAME_POOL pool = tables.pool();
    const NAME_TABLE table = names.table();
    for (std::size_t number = 0; number < expected.size(); ++number) {
        if (name_of(pool, table, static_cast<int>(number)) != expected[number] ||
            (!expected[number].empty() && number_of(pool, table, expected[number]) != static_cast<int>(number))) {
            throw std::runtime_error("the output does not read back: name \"" + std::string(expected[number]) + "\"");
        }
    }
}

}  // namespace

NAME_TABLE NUMBERED_NAMES::table() const {
    return {addresses.data(), static_cast<std::uint32_t>(addresses.size() - aliases.size()), aliases.data(),
            slots.data(), static_cast<std::uint32_t>(slots.size() - 1)};
}

NAME_POOL HOST_TABLES::pool() const {
    static_assert(sizeof(rows[0]) == NAME_ROW_SIZE);
    return {reinterpret_cast<const char(*)[NAME_ROW_SIZE]>(rows.data())};
}

HOST_TABLES build_host_tables(const CATALOG& catalog) {
    const std::vector<std::string_view> families = names_by_number(catalog.families, DEV_FAMILY_GENERIC);
    const std::vector<std::string_view> devices = names_by_number(catalog.devices, DEV_DEVICE_GENERIC);
    const std::vector<std::string_view> parts = names_by_number(catalog.parts, catalog.last_part + 1);

    TABLES_BUILDER builder;
    HOST_TABLES& tables = builder.tables();
    tables.families = builder.names(families);
    tables.devices = builder.names(devices);
    tables.parts = builder.part_names(parts, catalog);
    std::for_each(parts.begin() + 1, parts.end() - 1, [&](std::string_view name) { tables.part_names.add(name); });
    tables.device_families = device_families(catalog);
    tables.part_facts = part_facts(catalog);
    tables.device_parts = device_parts(tables.part_facts);
    for (const CATALOG_PACKAGE& package : catalog.packages) {
        tables.packages.push_back({builder.address_of(package.type), builder.address_of(package.pins)});
    }
    for (const CATALOG_GRADE& grade : catalog.grades) {
        tables.grades.push_back({builder.address_of(grade.speed), builder.address_of(grade.temperature)});
    }
    prove(tables, tables.families, families);
    prove(tables, tables.devices, devices);
    prove(tables, tables.parts, parts);
    for (const CATALOG_ALIAS& alias : catalog.aliases) {
        if (number_of(tables.pool(), tables.parts.table(), alias.name) != catalog.parts[alias.part].number) {
            throw std::runtime_error("the output does not read back: alias \"" + alias.name + "\"");
        }
    }
    return std::move(tables);
}
