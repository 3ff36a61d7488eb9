#include <memory>

#include "member_tables.h"
#include "pgmdev_c_flash.h"
#include "pgmdev_user_flash.h"

namespace {

std::vector<PGMDEV_SFL_FLASH_INFO> flashes_from(const pgmdev_value* values, std::size_t count) {
    return records_from<PGMDEV_SFL_FLASH_INFO>(std::span<const PGMDEV_SFL_FLASH_MEMBER>(PGMDEV_SFL_FLASH_MEMBERS),
                                               values, count);
}

}  // namespace

pgmdev_status pgmdev_user_flash_decode(const char* encoded, pgmdev_answer** answer, pgmdev_error** error) {
    return guarded(error, [&]() -> pgmdev_status {
        emptied(answer);
        const std::vector<PGMDEV_USER_FLASH> all = PGMDEV_USER_FLASH::all_from_encoded(required_text(encoded));
        pgmdev_records descriptions({text_member("body"), text_member("password"), flag_member("password_valid"),
                                     flag_member("complete"), flag_member("plausible"), flag_member("taken")});
        pgmdev_records records(flash_members());
        pgmdev_records faults({number_member("description"), text_member("text")});
        for (const PGMDEV_USER_FLASH& flash : all) {
            const std::size_t place = descriptions.count();
            descriptions.add({text_value(flash.body()), text_value(flash.password()),
                              flag_value(flash.password_valid()), flag_value(flash.complete()),
                              flag_value(flash.plausible()), flag_value(place == 0 && flash.faults().empty())});
            records.add(flash_values(flash.record()));
            for (const std::string& fault : flash.faults()) {
                faults.add({number_value(place), text_value(fault)});
            }
        }
        auto found = std::make_unique<pgmdev_answer>();
        found->lists.push_back({"descriptions", std::move(descriptions)});
        found->lists.push_back({"records", std::move(records)});
        found->lists.push_back({"faults", std::move(faults)});
        *answer = found.release();
        return PGMDEV_STATUS_OK;
    });
}

pgmdev_status pgmdev_user_flash_encode(const pgmdev_value* values, size_t count, pgmdev_string** encoded,
                                       pgmdev_error** error) {
    return guarded(error, [&]() -> pgmdev_status {
        emptied(encoded);
        const std::vector<PGMDEV_SFL_FLASH_INFO> flashes = flashes_from(values, count);
        require_argument(!flashes.empty() && flashes.size() <= PGMDEV_USER_FLASH::MOST_FLASHES,
                         "a text describes one to three flashes");
        if (give_text(encoded, PGMDEV_USER_FLASH::encode(flashes)) != PGMDEV_STATUS_OK) {
            throw FAILURE(PGMDEV_STATUS_REFUSED, "a name is one that the text cannot carry");
        }
        return PGMDEV_STATUS_OK;
    });
}

pgmdev_status pgmdev_user_flash_check(const pgmdev_value* values, size_t count, pgmdev_records** implausible,
                                      pgmdev_error** error) {
    return guarded(error, [&]() -> pgmdev_status {
        emptied(implausible);
        const std::vector<PGMDEV_SFL_FLASH_INFO> flashes = flashes_from(values, count);
        require_argument(flashes.size() == 1, "count is not that of the members");
        pgmdev_records found({text_member("member"), text_member("found"), text_member("expected")});
        for (const auto& each : PGMDEV_USER_FLASH::implausible(flashes.front())) {
            found.add({text_value(each.member), text_value(each.found), text_value(each.expected)});
        }
        *implausible = new pgmdev_records(std::move(found));
        return PGMDEV_STATUS_OK;
    });
}
