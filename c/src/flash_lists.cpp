#include "flash_lists.h"

#include "file_reader.h"
#include "flash_database.h"
#include "gen.h"
#include "near_names.h"

namespace {

/// No list that people maintain comes near; a device that never ends does.
constexpr std::size_t LARGEST_LIST = std::size_t{1} << 28;

/// A list beside the database; without lines when it is not there.
CSV_LINES list_beside(const pgmdev_flash_database& database, const char* list) {
    const std::string file = database.file + "." + list;
    std::string text;
    if (read_whole_file(fio_get_unc_full_path(FIO_PATH(file).fullpath()), LARGEST_LIST, FILE_KINDS::REGULAR, text) ==
        READ_RESULT::FAILED) {
        throw FAILURE(PGMDEV_STATUS_FAILED, "the list " + file + " cannot be read");
    }
    return CSV_LINES(std::move(text));
}

pgmdev_records further_records(const pgmdev_flash_database& database, const CSV_LINES& list) {
    pgmdev_records names(
        {text_member("name"), text_member("device_name"), text_member("reason"), number_member("record", 64)});
    for (const FLASH_ALIAS& alias : aliases_of(list)) {
        const std::size_t record = database.default_record(alias.device_name);
        names.add({text_value(alias.name), text_value(alias.device_name), text_value(alias.reason),
                   record != PGMDEV_NO_RECORD ? number_value(uint64_t{record}) : DATUM()});
    }
    return names;
}

/// The first of these further names, in any case; their count for none.
std::size_t index_of_name(const pgmdev_records& names, const std::string& wanted) {
    const std::size_t member = names.index_of("name");
    std::size_t index = 0;
    while (index < names.count() && gen_stricmp(names.at(index, member).text, wanted) != 0) {
        ++index;
    }
    return index;
}

}  // namespace

template <class MADE, class MAKE>
const MADE& FLASH_LISTS::once(std::unique_ptr<const MADE>& place, MAKE make) const {
    {
        const std::lock_guard lock(m_mutex);
        if (place != nullptr) {
            return *place;
        }
    }
    auto made = std::make_unique<const MADE>(make());
    const std::lock_guard lock(m_mutex);
    if (place == nullptr) {  // of two threads that made one, the first
        place = std::move(made);
    }
    return *place;
}

const FURTHER_NAMES& FLASH_LISTS::further_names(const pgmdev_flash_database& database) const {
    return once(m_further_names, [&database] {
        CSV_LINES list = list_beside(database, FLASH_ALIASES_LIST);
        pgmdev_records records = further_records(database, list);
        return FURTHER_NAMES{std::move(list), std::move(records)};
    });
}

std::vector<FLASH_SUPPORT> FLASH_LISTS::evidence_of(const pgmdev_flash_database& database, std::size_t record) const {
    const FLASH_EVIDENCE& evidence =
        once(m_evidence, [&database] { return FLASH_EVIDENCE(list_beside(database, FLASH_SOURCES_LIST)); });
    const std::lock_guard lock(m_asking);
    return evidence.of(database.loaded.all()[record]);
}

pgmdev_status pgmdev_flash_further_names(const pgmdev_flash_database* database, const pgmdev_records** names,
                                         pgmdev_error** error) {
    return guarded(error, [&]() -> pgmdev_status {
        emptied(names);
        *names = &opened(database).lists.further_names(*database).records;
        return PGMDEV_STATUS_OK;
    });
}

pgmdev_status pgmdev_flash_find_any(const pgmdev_flash_database* database, const char* name, size_t* record,
                                    size_t* further_name, pgmdev_error** error) {
    return guarded(error, [&]() -> pgmdev_status {
        if (further_name != nullptr) {
            *further_name = PGMDEV_NO_RECORD;
        }
        emptied(record, PGMDEV_NO_RECORD);
        const std::string wanted = required_text(name);
        *record = opened(database).default_record(wanted);
        if (*record != PGMDEV_NO_RECORD) {
            return PGMDEV_STATUS_OK;
        }
        const pgmdev_records& names = database->lists.further_names(*database).records;
        const std::size_t found = index_of_name(names, wanted);
        const DATUM shared = found < names.count() ? names.at(found, names.index_of("record")) : DATUM();
        if (shared.kind == PGMDEV_KIND_NONE) {
            return PGMDEV_STATUS_NOT_FOUND;
        }
        *record = static_cast<std::size_t>(shared.number);
        if (further_name != nullptr) {
            *further_name = found;
        }
        return PGMDEV_STATUS_OK;
    });
}

pgmdev_status pgmdev_flash_evidence(const pgmdev_flash_database* database, size_t record, pgmdev_answer** evidence,
                                    pgmdev_error** error) {
    return guarded(error, [&]() -> pgmdev_status {
        emptied(evidence);
        require_argument(record < opened(database).loaded.all().size(), "there is no record of that index");
        pgmdev_records groups({text_member("group"), text_member("evidence")});
        pgmdev_records sources({number_member("group"), text_member("source")});
        for (const FLASH_SUPPORT& support : database->lists.evidence_of(*database, record)) {
            for (const std::string& source : support.sources) {
                sources.add({number_value(groups.count()), text_value(source)});
            }
            groups.add({text_value(support.group), text_value(support.evidence)});
        }
        if (groups.count() == 0) {
            return PGMDEV_STATUS_NOT_FOUND;
        }
        auto found = std::make_unique<pgmdev_answer>();
        found->lists.push_back({"groups", std::move(groups)});
        found->lists.push_back({"sources", std::move(sources)});
        *evidence = found.release();
        return PGMDEV_STATUS_OK;
    });
}

pgmdev_status pgmdev_flash_suggestions(const pgmdev_flash_database* database, const char* name,
                                       pgmdev_records** suggestions, pgmdev_error** error) {
    return guarded(error, [&]() -> pgmdev_status {
        emptied(suggestions);
        const std::string unknown = required_text(name);
        const CSV_LINES& further = opened(database).lists.further_names(*database).list;
        *suggestions =
            new pgmdev_records(names_list(probably_meant(unknown, names_of_flash(database->loaded.all(), further))));
        return PGMDEV_STATUS_OK;
    });
}
