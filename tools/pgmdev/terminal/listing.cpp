#include "terminal/listing.h"

#include <fmt/core.h>

#include <algorithm>
#include <iterator>
#include <utility>

#include "gen.h"
#include "terminal/did_you_mean.h"
#include "terminal/printable.h"
#include "terminal/schema.h"

namespace {

std::string joined(const std::vector<std::string>& names) {
    std::string text;
    for (const std::string& name : names) {
        text += (text.empty() ? "" : ", ") + name;
    }
    return text;
}

/// Fields that are spelled nearly so, or else have it in their names.
std::vector<std::string> similar_fields(const std::string& name, const std::vector<std::string>& fields) {
    std::vector<std::string> similar = nearest(name, fields);
    if (similar.empty() && !name.empty()) {
        std::copy_if(fields.begin(), fields.end(), std::back_inserter(similar),
                     [&name](const std::string& field) { return field.find(name) != std::string::npos; });
    }
    return similar;
}

/// The field of a row that is called so, in any case.
std::string field_named(const std::string& name, const std::vector<std::string>& fields) {
    for (const std::string& field : fields) {
        if (gen_stricmp(field, name) == 0) {
            return field;
        }
    }
    const std::vector<std::string> similar = similar_fields(name, fields);
    throw USAGE_ERROR(fmt::format("there is no field \"{}\"{}", name,
                                  similar.empty() ? "; the fields are " + joined(fields) : did_you_mean(similar)));
}

std::vector<std::string> fields_of(const JSON& row, const ARGUMENTS& given) {
    std::vector<std::string> fields = member_names(row);
    if (!given.has("--fields")) {
        return fields;
    }
    std::vector<std::string> chosen;
    const std::string& text = given.text("--fields");
    for (std::size_t begin = 0; begin <= text.size();) {
        const std::size_t end = std::min(text.find(',', begin), text.size());
        const std::string name = gen_remove_leading_and_trailing_white_spaces(text.substr(begin, end - begin));
        chosen.push_back(field_named(name, fields));
        begin = end + 1;
    }
    return chosen;
}

/// Null where the row has none.
JSON member_of(const JSON& row, const std::string& field) {
    const auto& members = row.members();
    const auto found = std::find(members.names.begin(), members.names.end(), field);
    return found != members.names.end() ? members.values[static_cast<std::size_t>(found - members.names.begin())]
                                        : JSON();
}

JSON with_fields(const JSON& row, const std::vector<std::string>& fields) {
    JSON chosen = JSON::object();
    for (const std::string& field : fields) {
        chosen[field] = member_of(row, field);
    }
    return chosen;
}

std::vector<JSON> with_fields(const std::vector<JSON>& rows, const std::vector<std::string>& fields) {
    std::vector<JSON> chosen;
    chosen.reserve(rows.size());
    for (const JSON& row : rows) {
        chosen.push_back(with_fields(row, fields));
    }
    return chosen;
}

/// A text as it is, nothing for null, anything else as in JSON.
std::string cell_of(const JSON& value) {
    if (const auto* text = std::get_if<std::string>(&value.value())) {
        return *text;
    }
    return std::holds_alternative<std::nullptr_t>(value.value()) ? "" : json_text(value);
}

/// A cell for each of the fields, of which the same one may be asked for twice.
std::vector<std::string> cells_of(const JSON& row, const std::vector<std::string>& fields,
                                  std::string (*cell)(const JSON& value) = cell_of) {
    std::vector<std::string> cells;
    cells.reserve(fields.size());
    for (const std::string& field : fields) {
        cells.push_back(cell(member_of(row, field)));
    }
    return cells;
}

std::string csv_cell_of(const JSON& value) {
    const auto* text = std::get_if<std::string>(&value.value());
    return text != nullptr ? printable_cell(*text) : cell_of(value);
}

std::string quoted_if_needed(const std::string& cell) {
    if (cell.find_first_of(",\"\r\n") == std::string::npos) {
        return cell;
    }
    std::string quoted;
    for (const char c : cell) {
        quoted += c == '"' ? "\"\"" : std::string(1, c);
    }
    return '"' + quoted + '"';
}

void print_csv_record(const std::vector<std::string>& cells) {
    std::string record;
    for (std::size_t i = 0; i < cells.size(); ++i) {
        record += (i == 0 ? "" : ",") + quoted_if_needed(cells[i]);
    }
    fmt::print("{}\r\n", record);
}

}  // namespace

VERB with_list_options(VERB verb, JSON (*row)()) {
    return with_field_option(std::move(verb), row)
        .takes({"--csv", "Answer with CSV (RFC 4180), the names of the fields first", ARGUMENT::FLAG});
}

VERB with_field_option(VERB verb, JSON (*row)()) {
    verb.row = row;
    return std::move(verb)
        .answers([row] { return list_schema(row()); })
        .takes({"--fields", "Only these fields, as --json names them, in this order", ARGUMENT::OPTIONAL_TEXT,
                "NAME,..."});
}

std::vector<JSON> chosen_fields(const JSON& row, const std::vector<JSON>& rows, const ARGUMENTS& given) {
    return given.has("--fields") ? with_fields(rows, fields_of(row, given)) : rows;
}

void print_listing(const JSON& row, const std::vector<JSON>& rows, const TEXT_TABLE& table, const ARGUMENTS& given,
                   const COMMAND& command) {
    const std::vector<std::string> fields = fields_of(row, given);
    const bool csv = given.has("--csv");
    if (csv && command.json) {
        throw USAGE_ERROR("expected one of --csv and --json");
    }
    if (command.json) {
        print_json(chosen_fields(row, rows, given));
    } else if (csv) {
        print_csv_record(fields);
        for (const JSON& object : rows) {
            print_csv_record(cells_of(object, fields, csv_cell_of));
        }
    } else if (given.has("--fields")) {
        TEXT_TABLE chosen(fields);
        for (const JSON& object : rows) {
            chosen.add(cells_of(object, fields));
        }
        chosen.print();
    } else {
        table.print();
    }
}
