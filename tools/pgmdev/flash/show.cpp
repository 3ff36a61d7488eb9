#include "flash/show.h"

#include <fmt/core.h>

#include <algorithm>
#include <optional>

#include "flash/aliases.h"
#include "flash/database.h"
#include "flash/evidence.h"
#include "flash/output.h"
#include "flash/rows.h"
#include "gen.h"
#include "terminal/answer.h"
#include "terminal/did_you_mean.h"
#include "terminal/input.h"

namespace {

/// The rows to choose from: made once for all questions of a run.
struct SOURCE {
    bool every_row;
    std::vector<FLASH_ROW> rows;
    mutable std::optional<std::vector<FLASH_ROW>> every_one = {};  ///< all rows, once somebody asks for them
    FLASH_EVIDENCE evidence = FLASH_EVIDENCE(installed_flash_list(FLASH_SOURCES_LIST));

    const std::vector<FLASH_ROW>& all() const {
        if (!every_one) {
            every_one = all_flash_rows();
        }
        return *every_one;
    }
};

/// The default record of a name.
const FLASH_ROW* find_by_name(const std::vector<FLASH_ROW>& rows, const std::string& name) {
    const auto found = std::find_if(rows.begin(), rows.end(), [&name](const FLASH_ROW& row) {
        return row.record.default_dev && gen_stricmp(row.record.device_name, name) == 0;
    });
    return found != rows.end() ? &*found : nullptr;
}

ANSWER answer_with(const SOURCE& source, const FLASH_ROW& row, const std::optional<FLASH_ALIAS>& alias = std::nullopt) {
    const bool every_row = source.every_row;
    const std::vector<FLASH_SUPPORT> support = source.evidence.of(row.record);
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
            fmt::print("{} shares the record of {}: {}\n", alias->name, row.record.device_name, alias->reason);
        }
        print_members(row.index, row.record);
        if (every_row) {
            fmt::print("{:<20}  {}\n", "row", row.row.value());
            fmt::print("{:<20}  {}\n", "enabled", row.is_enabled() ? "yes" : "no");
            fmt::print("{:<20}  {}\n", "switch", row.enabling_switch.empty() ? "-" : row.enabling_switch);
        }
        print_support(support);
    };
    return answer;
}

/// What to say of a name that no row has.
std::string missing_name(const SOURCE& source, const std::string& name) {
    if (!source.every_row) {
        if (const FLASH_ROW* row = find_by_name(source.all(), name)) {
            return fmt::format("the flash \"{}\" is switched off: --set {}=on enables it, --all-rows shows it", name,
                               row->enabling_switch);
        }
    }
    return fmt::format("no flash is named \"{}\"", name);
}

ANSWER by_name(const SOURCE& source, const std::string& name) {
    if (const FLASH_ROW* row = find_by_name(source.rows, name)) {
        return answer_with(source, *row);
    }
    if (const std::optional<FLASH_ALIAS> alias = find_flash_alias(name)) {
        if (const FLASH_ROW* row = find_by_name(source.rows, alias->device_name)) {
            return answer_with(source, *row, alias);
        }
    }
    std::vector<std::string> names;
    for (const FLASH_ROW& row : source.rows) {
        if (row.record.default_dev) {
            names.push_back(row.record.device_name);
        }
    }
    ANSWER answer;
    answer.found = false;
    answer.content = {{"index", nullptr}, {"device_name", name}};
    answer.missing = missing_name(source, name);
    answer.candidates = longer_or_shorter(name, with_flash_aliases(std::move(names)));
    return answer;
}

ANSWER by_index(const SOURCE& source, const std::string& text) {
    const DWORD index = parse_dword(text, source.every_row ? "a row" : "the index of a record");
    if (index < source.rows.size()) {
        return answer_with(source, source.rows[index]);
    }
    ANSWER answer;
    answer.found = false;
    answer.content = {{"index", nullptr}};
    answer.missing = fmt::format("there is no {} {}: the last is {}", source.every_row ? "row" : "record", index,
                                 static_cast<int>(source.rows.size()) - 1);
    return answer;
}

void show(const ARGUMENTS& given, COMMAND& command) {
    if (given.has("NAME") == given.has("--index")) {
        throw USAGE_ERROR("expected one of NAME and --index");
    }
    const bool every_row = given.has("--all-rows");
    const SOURCE source{every_row, every_row ? all_flash_rows() : enabled_flash_rows()};
    const auto ask = given.has("NAME") ? by_name : by_index;
    answer_each(given.text(given.has("NAME") ? "NAME" : "--index"), command,
                [&](const std::string& question) { return ask(source, question); });
}

JSON shown_flash_schema() {
    std::vector<SCHEMA_MEMBER> members = any_row_members();
    members.push_back({"alias", object_schema({{"name", text_schema()}, {"reason", text_schema()}}), false});
    members.push_back({"evidence", support_schema(), false});
    return question_schema(members, {"index"});
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
