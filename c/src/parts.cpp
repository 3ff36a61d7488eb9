#include "dev.h"
#include "pgmdev_c_names.h"
#include "pgmdev_device_grammar_mgr.h"
#include "pgmdev_mgr.h"
#include "pgmdev_part_index.h"
#include "records.h"
#include "structures.h"
#include "upper_name.h"

// Parts: by less specific names, by ordering codes, and as lists.

struct pgmdev_part_index {
    PGMDEV_PART_INDEX index;
};

namespace {

using SPELLINGS = PGMDEV_DEVICE_GRAMMAR_MGR;

std::string or_any(const char* text) {
    return text != nullptr ? text : "ANY";
}

std::vector<int> part_numbers(const pgmdev_part_filter& filter) {
    std::vector<int> numbers;
    DEV_PART_MANAGER().filter_part_list(&numbers, or_any(filter.family), or_any(filter.device), or_any(filter.package),
                                        or_any(filter.pins), or_any(filter.speed), filter.orderable, filter.production,
                                        filter.hidden, or_any(filter.temperature));
    return numbers;
}

/// Which parts, by number, pass a filter.
std::vector<bool> marked_parts(bool orderable, bool production, bool hidden) {
    pgmdev_part_filter filter{};
    filter.orderable = orderable;
    filter.production = production;
    filter.hidden = hidden;
    std::vector<bool> marked(static_cast<std::size_t>(DEV_PART_MAX));
    for (const int part : part_numbers(filter)) {
        marked[static_cast<std::size_t>(part)] = true;
    }
    return marked;
}

pgmdev_records listed_parts(const pgmdev_part_filter& filter) {
    const std::vector<bool> shown = marked_parts(false, false, false);
    const std::vector<bool> orderable = marked_parts(true, false, true);
    const std::vector<bool> production = marked_parts(false, true, true);
    const DEV_PART_MANAGER manager;
    pgmdev_records parts({number_member("number"), text_member("name"), text_member("device"), text_member("family"),
                          text_member("package_name"), text_member("pgm_name"), text_member("pgm_part_pcf"),
                          text_member("pgm_family_pcf"), flag_member("orderable"), flag_member("production"),
                          flag_member("hidden")});
    for (const int part : part_numbers(filter)) {
        const auto place = static_cast<std::size_t>(part);
        const DEV_DEVICE_ENUM device = manager.get_device_of(part);
        const std::string name = upper_name(part);
        std::string part_pcf;
        std::string family_pcf;
        SPELLINGS::get_pgm_pcfs(name, part_pcf, family_pcf);
        parts.add({number_value(place), text_value(name), text_value(upper_name(device)),
                   text_value(upper_name(manager.get_family_of(device))),
                   text_value(SPELLINGS::get_package_name(name, true)),
                   text_value(SPELLINGS::get_pgm_name(name, false, true)), text_value(part_pcf), text_value(family_pcf),
                   flag_value(orderable[place]), flag_value(production[place]), flag_value(!shown[place])});
    }
    return parts;
}

/// A part that a question leads to.
pgmdev_status give_part(pgmdev_string** part, const char* name, std::string (*question)(std::string),
                        pgmdev_error** error) {
    return guarded(error, [&] {
        emptied(part);
        return give_text(part, question(required_text(name)));
    });
}

pgmdev_status give_indexed_part(const pgmdev_part_index* index, pgmdev_string** part, const char* name,
                                std::string (PGMDEV_PART_INDEX::*question)(std::string) const, pgmdev_error** error) {
    return guarded(error, [&] {
        emptied(part);
        return give_text(part, (opened(index).index.*question)(required_text(name)));
    });
}

}  // namespace

pgmdev_status pgmdev_opn_name(uint32_t index, pgmdev_string** name, pgmdev_error** error) {
    return guarded(error, [&] {
        emptied(name);
        return give_text(name, PGMDEV_MGR::get_opn(index));
    });
}

pgmdev_status pgmdev_opn_index(const char* name, uint32_t* index, pgmdev_error** error) {
    return guarded(error, [&]() -> pgmdev_status {
        emptied(index);
        const DWORD found = PGMDEV_MGR::get_opn_enum(required_text(name));
        if (found == INVALID_DWORD) {
            return PGMDEV_STATUS_NOT_FOUND;
        }
        *index = found;
        return PGMDEV_STATUS_OK;
    });
}

pgmdev_status pgmdev_opn_hash(const char* name, uint64_t* hash, pgmdev_error** error) {
    return guarded(error, [&]() -> pgmdev_status {
        emptied(hash);
        const QWORD found = PGMDEV_MGR::get_opn_hash(required_text(name));
        if (found == PGMDEV_MGR::INVALID_NAME_HASH) {
            return PGMDEV_STATUS_NOT_FOUND;
        }
        *hash = found;
        return PGMDEV_STATUS_OK;
    });
}

pgmdev_status pgmdev_opn_from_hash(uint64_t hash, pgmdev_string** name, pgmdev_error** error) {
    return guarded(error, [&] {
        emptied(name);
        return give_text(name, PGMDEV_MGR::get_opn_from_hash(hash));
    });
}

pgmdev_status pgmdev_part_from_device(const char* device, pgmdev_string** part, pgmdev_error** error) {
    return give_part(part, device, PGMDEV_MGR::get_part_name_from_dev, error);
}

pgmdev_status pgmdev_part_from_pcf(const char* pcf, pgmdev_string** part, pgmdev_error** error) {
    return give_part(part, pcf, PGMDEV_MGR::get_part_name_from_pcf, error);
}

pgmdev_status pgmdev_part_complete(const char* name, pgmdev_string** part, pgmdev_error** error) {
    return give_part(part, name, PGMDEV_MGR::get_possible_full_name, error);
}

pgmdev_status pgmdev_part_index_open(pgmdev_part_index** index, pgmdev_error** error) {
    return guarded(error, [&]() -> pgmdev_status {
        emptied(index);
        *index = new pgmdev_part_index;
        return PGMDEV_STATUS_OK;
    });
}

pgmdev_status pgmdev_part_index_from_pcf(const pgmdev_part_index* index, const char* pcf, pgmdev_string** part,
                                         pgmdev_error** error) {
    return give_indexed_part(index, part, pcf, &PGMDEV_PART_INDEX::get_part_name_from_pcf, error);
}

pgmdev_status pgmdev_part_index_complete(const pgmdev_part_index* index, const char* name, pgmdev_string** part,
                                         pgmdev_error** error) {
    return give_indexed_part(index, part, name, &PGMDEV_PART_INDEX::get_possible_full_name, error);
}

void pgmdev_part_index_free(pgmdev_part_index* index) {
    delete index;
}

pgmdev_status pgmdev_part_list(const pgmdev_part_filter* filter, pgmdev_records** parts, pgmdev_error** error) {
    return guarded(error, [&]() -> pgmdev_status {
        emptied(parts);
        *parts = new pgmdev_records(listed_parts(filter != nullptr ? handed_in(filter) : pgmdev_part_filter{}));
        return PGMDEV_STATUS_OK;
    });
}

pgmdev_status pgmdev_device_list(pgmdev_records** devices, pgmdev_error** error) {
    return guarded(error, [&]() -> pgmdev_status {
        emptied(devices);
        const DEV_PART_MANAGER manager;
        pgmdev_records found({number_member("number"), text_member("name"), text_member("family"),
                              text_member("dev_part_pcf"), text_member("dev_family_pcf")});
        for (int number = DEV_DEVICE_INVALID + 1; number < DEV_DEVICE_GENERIC; ++number) {
            const auto device = static_cast<DEV_DEVICE_ENUM>(number);
            const std::string name = upper_name(device);
            if (name.empty()) {
                continue;  // a number that the catalog leaves out
            }
            std::string part_pcf;
            std::string family_pcf;
            SPELLINGS::get_dev_pcfs(name, part_pcf, family_pcf);
            found.add({number_value(static_cast<uint64_t>(number)), text_value(name),
                       text_value(upper_name(manager.get_family_of(device))), text_value(part_pcf),
                       text_value(family_pcf)});
        }
        *devices = new pgmdev_records(std::move(found));
        return PGMDEV_STATUS_OK;
    });
}

pgmdev_status pgmdev_family_list(pgmdev_records** families, pgmdev_error** error) {
    return guarded(error, [&]() -> pgmdev_status {
        emptied(families);
        pgmdev_records found({number_member("number"), text_member("name"), text_member("pcf_family_pcf")});
        for (int number = DEV_FAMILY_INVALID + 1; number < DEV_FAMILY_GENERIC; ++number) {
            const std::string name = upper_name(static_cast<DEV_FAMILY_ENUM>(number));
            if (!name.empty()) {
                found.add({number_value(static_cast<uint64_t>(number)), text_value(name),
                           text_value(SPELLINGS::get_pcf_family_pcf(name))});
            }
        }
        *families = new pgmdev_records(std::move(found));
        return PGMDEV_STATUS_OK;
    });
}
