#include "generator.h"

#include <algorithm>
#include <exception>
#include <filesystem>
#include <fstream>
#include <ostream>
#include <stdexcept>

#include "catalog.h"
#include "data_set.h"
#include "generated_texts.h"
#include "grammar.h"
#include "host_tables.h"

namespace {

namespace fs = std::filesystem;

constexpr const char* USAGE =
    "Usage: ddb_generator --check CATALOG\n"
    "       ddb_generator CATALOG DATA-SOURCE HOST-SOURCE PART-LIST\n"
    "\n"
    "Checks the device catalog in the directory CATALOG. Without --check it then writes the source of the data that "
    "is\n"
    "compiled into the library, the source of the tables behind the host's device libraries, and the part list.\n"
    "\n"
    "Exit codes: 0 done, 1 faults in the catalog, 2 wrong usage, 3 the output cannot be made or written.\n"
    "Example: ddb_generator --check data/catalog\n";

/// Replaces a file as a whole, so that a build that is broken off leaves no half a file.
void write_file(const fs::path& path, const std::string& text) {
    if (path.has_parent_path()) {
        fs::create_directories(path.parent_path());
    }
    fs::path temporary = path;
    temporary += ".new";
    std::ofstream file(temporary, std::ios::binary);
    file << text;
    file.close();
    if (!file) {
        std::error_code ignored;
        fs::remove(temporary, ignored);
        throw std::runtime_error(temporary.generic_string() + ": cannot be written");
    }
    fs::rename(temporary, path);
}

/// The part numbers by ordering-code index; 0: no part.
std::vector<std::uint32_t> ordering_codes(const CATALOG& catalog) {
    std::vector<std::uint32_t> parts(static_cast<std::size_t>(catalog.ordering_entries));
    for (const CATALOG_PART& part : catalog.parts) {
        if (part.ordering_index >= 0) {
            parts[static_cast<std::size_t>(part.ordering_index)] = static_cast<std::uint32_t>(part.number);
        }
    }
    return parts;
}

DATA_SET proven_grammar(const GRAMMAR& grammar) {
    DATA_SET data = seal(encode_grammar(grammar));
    if (decode_grammar(unseal(data)) != grammar) {
        throw std::runtime_error("the output does not read back: the grammar differs");
    }
    return data;
}

DATA_SET proven_ordering_codes(const std::vector<std::uint32_t>& parts) {
    DATA_SET data = seal(encode_ordering_codes(parts));
    if (decode_ordering_codes(unseal(data)) != parts) {
        throw std::runtime_error("the output does not read back: the ordering codes differ");
    }
    return data;
}

void print_summary(const CATALOG& catalog, const GRAMMAR& grammar, std::ostream& output) {
    const auto codes = std::count_if(catalog.parts.begin(), catalog.parts.end(),
                                     [](const CATALOG_PART& part) { return part.ordering_index >= 0; });
    output << catalog.families.size() << " families, " << catalog.devices.size() << " devices, " << catalog.parts.size()
           << " ordering names, " << codes << " ordering codes in " << catalog.ordering_entries
           << " entries\nfree from: part " << catalog.last_part + 1 << ", ordering-code index "
           << catalog.last_ordering_index + 1 << "\ngrammar (keys/entries):";
    for (std::size_t table = 0; table < GRAMMAR_TABLE_COUNT; ++table) {
        output << (table == 0 ? " " : ", ") << grammar[table].size() << "/"
               << entry_count(grammar, static_cast<GRAMMAR_TABLE_ID>(table));
    }
    output << '\n';
}

int generate(const std::vector<std::string>& arguments, bool check_only, std::ostream& output, std::ostream& errors) {
    const fs::path directory(arguments[check_only ? 1 : 0]);
    FAULTS faults;
    const CATALOG catalog = read_catalog(directory, faults);
    const GRAMMAR grammar = faults.empty() ? build_grammar(catalog, directory, faults) : GRAMMAR();
    if (!faults.empty()) {
        faults.print(errors);
        return GENERATOR_CATALOG_FAULTS;
    }
    const std::string data = data_source(proven_grammar(grammar), proven_ordering_codes(ordering_codes(catalog)));
    const std::string host = host_source(build_host_tables(catalog));
    if (check_only) {
        print_summary(catalog, grammar, output);
    } else {
        write_file(arguments[1], data);
        write_file(arguments[2], host);
        write_file(arguments[3], part_list(catalog));
    }
    return GENERATOR_DONE;
}

}  // namespace

int run_generator(const std::vector<std::string>& arguments, std::ostream& output, std::ostream& errors) {
    const bool check_only = arguments.size() == 2 && arguments[0] == "--check";
    if (arguments.size() == 1 && arguments[0] == "--help") {
        output << USAGE;
        return GENERATOR_DONE;
    }
    if (!check_only && (arguments.size() != 4 || arguments[0].starts_with("--"))) {
        errors << USAGE;
        return GENERATOR_WRONG_USAGE;
    }
    try {
        return generate(arguments, check_only, output, errors);
    } catch (const std::exception& error) {
        errors << "ddb_generator: " << error.what() << '\n';
        return GENERATOR_FAILED;
    }
}
