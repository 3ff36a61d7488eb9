#include "flash/show.h"

#include <fmt/core.h>

#include <algorithm>
#include <optional>

#include "configuration/keys.h"
#include "flash/aliases.h"
#include "flash/database.h"
#include "flash/evidence.h"
#include "flash/output.h"
#include "flash/rows.h"
#include "gen.h"
#include "terminal/answer.h"
#include "terminal/did_you_mean.h"
#include "terminal/input.h"
#include "terminal/printable.h"

namespace {

/// The rows to choose from: loaded once for all questions of a run.
class SOURCE {
public:
    explicit SOURCE(bool every_row) : m_every_row(every_row), m_programs(open_flash_database(1)) {}

    bool has_every_row() const { return m_every_row; }
    std::size_t count() { return m_every_row ? all().size() : m_programs.get_flash_count(); }
    const PGMDEV_SFL_FLASH_INFO& record(std::size_t place) {
        return m_every_row ? all()[place].record : m_programs.get_flash_database()[place];
    }
    FLASH_ROW row(std::size_t place) {
        return m_every_row ? all()[place] : enabled_flash_row(m_programs, static_cast<DWORD>(place));
    }

    /// The records of all rows, whether these are to be chosen from or not.
    const std::vector<PGMDEV_SFL_FLASH_INFO>& all_records() {
        if (!m_table) {
            m_table = flash_table();
        }
        return m_table->records();
    }
    const FLASH_EVIDENCE& evidence() {
        if (!m_evidence) {
            m_evidence.emplace(read_flash_list(installed_flash_list(FLASH_SOURCES_LIST)));
        }
        return *m_evidence;
    }

private:
    const std::vector<FLASH_ROW>& all() {
        if (!m_all) {
            m_all = all_flash_rows(m_programs);
        }
        return *m_all;
    }

    bool m_every_row;
    PGMDEV_FLASH_MANAGER m_programs;
    std::optional<std::vector<FLASH_ROW>> m_all;
    std::optional<PGMDEV_FLASH_TABLE> m_table;
    std::optional<FLASH_EVIDENCE> m_evidence;
};

bool is_default_of(const PGMDEV_SFL_FLASH_INFO& record, const std::string& name) {
    return record.default_dev && gen_stricmp(record.device_name, name) == 0;
}

/// The default record of a name.
std::optional<FLASH_ROW> find_by_name(SOURCE& source, const std::string& name) {
    for (std::size_t place = 0; place < source.count(); ++place) {
        if (is_default_of(source.record(place), name)) {
            return source.row(place);
        }
    }
    return std::nullopt;
}

ANSWER answer_with(SOURCE& source, const FLASH_ROW& row, const std::optional<FLASH_ALIAS>& alias = std::nullopt) {
    const bool every_row = source.has_every_row();
    const std::vector<FLASH_SUPPORT> support = source.evidence().of(row.record);
    ANSWER answer;
    answer.content = row_json(row, every_row);
    if (alias) {
        answer.content["alias"] = {{"name", alias->name}, {"reason", alias->reason}};
    }
    if (!support.empty()) {
        answer.content["evidence"] = support_json(support);
    }
    answer.is_block = true;
    answer.print = [row, every_row, alias, support] {
        if (alias) {
            fmt::print("{}\n", printable(fmt::format("{} shares the record of {}: {}", alias->name,
                                                     row.record.device_name, alias->reason)));
        }
        print_members(row.index, row.record);
        if (every_row) {
            fmt::print("{:<20}  {}\n", "row", row.row.value());
            fmt::print("{:<20}  {}\n", "enabled", row.is_enabled() ? "yes" : "no");
            fmt::print("{:<20}  {}\n", "switch", row.enabling_switch.empty() ? "-" : printable(row.enabling_switch));
        }
        print_support(support);
    };
    return answer;
}

/// What to say of a name that no row has.
std::string missing_name(SOURCE& source, const std::string& name) {
    if (!source.has_every_row()) {
        for (const PGMDEV_SFL_FLASH_INFO& record : source.all_records()) {
            if (is_default_of(record, name)) {
                return fmt::format("the flash \"{}\" is switched off: --set {}=on enables it, --all-rows shows it",
                                   name, enabling_switch_of(record));
            }
        }
    }
    return no_flash_named(name);
}

ANSWER by_name(SOURCE& source, const std::string& name) {
    if (const auto row = find_by_name(source, name)) {
        return answer_with(source, *row);
    }
    if (const std::optional<FLASH_ALIAS> alias = find_flash_alias(name)) {
        if (const auto row = find_by_name(source, alias->device_name)) {
            return answer_with(source, *row, alias);
        }
    }
    std::vector<std::string> names;
    for (std::size_t place = 0; place < source.count(); ++place) {
        if (source.record(place).default_dev) {
            names.push_back(source.record(place).device_name);
        }
    }
    ANSWER answer;
    answer.found = false;
    answer.content = {{"index", nullptr}, {"device_name", name}};
    if (const std::optional<std::string> why = why_flash_is_left_out(name)) {
        answer.content["left_out"] = *why;
    }
    answer.missing = missing_name(source, name);
    answer.candidates = probably_meant(name, with_flash_aliases(std::move(names)));
    return answer;
}

ANSWER by_index(SOURCE& source, const std::string& text) {
    const DWORD index = parse_dword(text, source.has_every_row() ? "a row" : "the index of a record");
    if (index < source.count()) {
        return answer_with(source, source.row(index));
    }
    ANSWER answer;
    answer.found = false;
    answer.content = {{"index", nullptr}};
    answer.missing =
        fmt::format("there is no {} {}: {}", source.has_every_row() ? "row" : "record", index,
                    source.count() == 0 ? "there are none" : fmt::format("the last is {}", source.count() - 1));
    return answer;
}

void show(const ARGUMENTS& given, COMMAND& command) {
    if (given.has("NAME") == given.has("--index")) {
        throw USAGE_ERROR("expected one of NAME and --index");
    }
    SOURCE source(given.has("--all-rows"));
    const auto ask = given.has("NAME") ? by_name : by_index;
    answer_each(given.text(given.has("NAME") ? "NAME" : "--index"), command,
                [&](const std::string& question) { return ask(source, question); });
}

JSON shown_flash_schema() {
    std::vector<SCHEMA_MEMBER> members = any_row_members();
    members.push_back({"alias", object_schema({{"name", text_schema()}, {"reason", text_schema()}}), false});
    members.push_back({"evidence", support_schema(), false});
    return question_schema(members, {"index"}, {{"left_out", text_schema(), false}});
}

}  // namespace

VERB flash_show_verb() {
    return VERB("show", "One record: the default one of a device name, or that of an index",
                "pgmdev flash show W25Q64JV", show)
        .takes({"NAME", "Device name, in any case; - reads one name per line", ARGUMENT::OPTIONAL_TEXT})
        .takes({"--index", "Index as flash list tells it, with --all-rows the row; - reads one per line",
                ARGUMENT::OPTIONAL_TEXT, "INDEX"})
        .takes({"--all-rows", "Of all rows, switched-off ones, too", ARGUMENT::FLAG})
        .answers(shown_flash_schema);
}
