#include "page/page.h"

#include <fmt/core.h>

#include <filesystem>
#include <system_error>

#include "file_kind.h"
#include "files/database.h"
#include "files/inspection.h"
#include "files/origins.h"
#include "files/output.h"
#include "page/data.h"
#include "page/document.h"
#include "terminal/printable.h"
#include "terminal/schema.h"
#include "utf8_path.h"

namespace {

constexpr const char* DIRECTORY = "OUTPUT_DIR";

/// Makes the directory of the file if its own directory is there.
void require_directory(const PLACE& directory, const PLACE& file) {
    std::error_code error;
    const std::filesystem::path path(fio_get_unc_full_path(directory.path));
    forget_system_reason();
    if (!is_a_directory(path) && !make_directory(path, error)) {
        const bool is_there = std::filesystem::exists(std::filesystem::file_status(file_type_of(path, error)));
        throw output_failure(is_there ? file : directory);
    }
}

/// How many rows a list in columns has.
QWORD rows_of(JSON list) {
    return std::get<QWORD>(list["rows"].value());
}

void write_page(const ARGUMENTS& given, COMMAND& command) {
    const std::string& directory = given.text(DIRECTORY);
    const std::string file = utf8_from_path(path_from_utf8(directory) / "index.html");
    const PLACE output_place = argument_place(file, DIRECTORY);
    require_directory(argument_place(directory, DIRECTORY), output_place);
    const PLACE database = flash_database_place();
    confirm_output(output_place, {database.path}, "page of pgmdev", PAGE_BEGINNING, given.has("--force"),
                   [&database](const std::string&, const std::string&) {
                       return database_failure(FLASH_DATABASE_KIND, database, {});
                   });
    PAGE_DATA data{page_flash_data(), page_tables_data(), page_names_data()};
    const std::string page = page_document(data);
    OUTPUT_FILE output(output_place);
    output.write({reinterpret_cast<const BYTE*>(page.data()), page.size()});
    output.commit();

    const QWORD records = rows_of(data.flash["records"]);
    const QWORD profiles = rows_of(data.tables["profiles"]);
    const QWORD names = rows_of(data.names);
    if (command.json) {
        const std::vector<JSON> files{JSON{{"path", file}, {"size", page.size()}}};
        print_json({{"files", files}, {"records", records}, {"profiles", profiles}, {"names", names}});
    } else {
        fmt::print("{}: {} bytes with {} flash records, {} profiles, {} names\n", printable(file), page.size(), records,
                   profiles, names);
    }
}

JSON page_schema() {
    const JSON file = object_schema({{"path", text_schema()}, {"size", number_schema()}});
    return object_schema({{"files", array_schema(file)},
                          {"records", number_schema()},
                          {"profiles", number_schema()},
                          {"names", number_schema()}});
}

}  // namespace

VERB page_verb() {
    return VERB("page", "Write a page for browsers: all chips, profiles and names, to look up without a network",
                "pgmdev page tessary-page", write_page)
        .takes({DIRECTORY, "Directory for the page, index.html, which is made where it is missing"})
        .takes({"--force", "Replace an index.html that is no such page", ARGUMENT::FLAG})
        .tells(
            "The page is one file, opens from any place, asks no network, and answers as flash identify, flash show,\n"
            "flash sfdp and part info do.\n")
        .answers(page_schema);
}
