#include "generator.h"

#include <algorithm>
#include <array>
#include <exception>
#include <filesystem>
#include <fstream>
#include <new>
#include <optional>
#include <ostream>
#include <stdexcept>
#include <string_view>

#include "boot_flash.h"
#include "catalog.h"
#include "catalog_against.h"
#include "data_set.h"
#include "generated_texts.h"
#include "grammar.h"
#include "host_tables.h"
#include "indexed_grammar.h"
#include "part_digests.h"
#include "printable_text.h"

namespace {

namespace fs = std::filesystem;

constexpr const char* USAGE =
    "Usage: ddb_generator --check CATALOG [--against OLD-CATALOG]\n"
    "       ddb_generator CATALOG DATA-SOURCE HOST-SOURCE PART-LIST\n"
    "       ddb_generator --part-values CATALOG VALUES-SOURCE\n"
    "       ddb_generator --check-hps HPS\n"
    "       ddb_generator --hps HPS RECORDS-SOURCE\n"
    "\n"
    "Checks the device catalog in the directory CATALOG. Without --check it then writes the source of the data that "
    "is\n"
    "compiled into the library, the source of the tables behind the host's device libraries, and the part list.\n"
    "With --part-values it writes the source of the values that parts are filtered by.\n"
    "With --against, numbers that stood for another name in the directory OLD-CATALOG are faults, too.\n"
    "With --check-hps and --hps it checks the tables of boot flash in the directory HPS, and writes the source of the\n"
    "records that are compiled into the library.\n"
    "\n"
    "Exit codes: 0 done, 1 faults in the files read, 2 wrong usage, 3 the output cannot be made or written.\n"
    "Examples: ddb_generator --check data/catalog\n"
    "          ddb_generator --check data/catalog --against ../released/data/catalog\n"
    "          ddb_generator --check-hps data/hps\n";

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
    std::error_code error;
    if (file) {
        fs::rename(temporary, path, error);
    }
    if (!file || error) {
        std::error_code ignored;
        fs::remove(temporary, ignored);
        throw std::runtime_error(temporary.generic_string() + ": cannot be written");
    }
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

/// What is made of a catalog without fault, and proven.
struct CATALOG_PRODUCTS {
    CATALOG catalog;
    GRAMMAR grammar;
    DATA_SET packed_grammar;
    INDEXED_GRAMMAR indexed_grammar;
    std::vector<std::uint32_t> ordering_codes;
    DATA_SET packed_ordering_codes;
    DIGEST_TABLES digests;
    HOST_TABLES host;
};

/// Nothing when the catalog has faults.
std::optional<CATALOG_PRODUCTS> make_products(const fs::path& directory, FAULTS& faults) {
    CATALOG_PRODUCTS made;
    made.catalog = read_catalog(directory, faults);
    if (faults.empty()) {
        made.grammar = build_grammar(made.catalog, directory, faults);
    }
    if (!faults.empty()) {
        return std::nullopt;
    }
    made.packed_grammar = seal(encode_grammar(made.grammar));
    const BYTES body = unseal(made.packed_grammar);
    prove_grammar(body, made.grammar);
    made.indexed_grammar = proven_index(made.grammar, body);
    made.ordering_codes = ordering_codes(made.catalog);
    made.packed_ordering_codes = proven_ordering_codes(made.ordering_codes);
    made.digests = build_digest_tables(made.catalog);
    made.host = build_host_tables(made.catalog);
    return made;
}

using ARGUMENTS = std::vector<std::string>;

void check_catalog(const ARGUMENTS& arguments, FAULTS& faults, std::ostream& output) {
    if (const auto made = make_products(arguments[1], faults)) {
        print_summary(made->catalog, made->grammar, output);
    }
}

void check_catalog_against(const ARGUMENTS& arguments, FAULTS& faults, std::ostream& output) {
    const auto made = make_products(arguments[1], faults);
    const CATALOG old = read_catalog(arguments[3], faults);
    if (faults.empty()) {
        compare_numbers(made->catalog, old, faults);
    }
    if (faults.empty()) {
        print_summary(made->catalog, made->grammar, output);
    }
}

void generate_catalog(const ARGUMENTS& arguments, FAULTS& faults, std::ostream& /*output*/) {
    if (const auto made = make_products(arguments[0], faults)) {
        write_file(arguments[1], data_source(made->packed_grammar, made->indexed_grammar, made->packed_ordering_codes,
                                             made->ordering_codes, made->digests));
        write_file(arguments[2], host_source(made->host));
        write_file(arguments[3], part_list(made->catalog));
    }
}

void generate_part_values(const ARGUMENTS& arguments, FAULTS& faults, std::ostream& /*output*/) {
    const CATALOG catalog = read_catalog(arguments[1], faults);
    if (faults.empty()) {
        write_file(arguments[2], part_values_source(catalog));
    }
}

void check_boot_flash(const ARGUMENTS& arguments, FAULTS& faults, std::ostream& output) {
    const BOOT_FLASH flash = read_boot_flash(arguments[1], faults);
    if (faults.empty()) {
        output << flash.nand.count << " NAND and " << flash.spi.count << " SPI flash devices\n";
    }
}

void generate_boot_flash(const ARGUMENTS& arguments, FAULTS& faults, std::ostream& /*output*/) {
    const BOOT_FLASH flash = read_boot_flash(arguments[1], faults);
    if (faults.empty()) {
        write_file(arguments[2], boot_flash_source(flash));
    }
}

/// One way to run the generator: the first argument, unless it is a directory, the third, if it is an option, and the
/// number of all.
struct USE {
    std::string_view option;
    std::string_view further_option;
    std::size_t arguments;
    void (*run)(const ARGUMENTS& arguments, FAULTS& faults, std::ostream& output);
};

constexpr std::array<USE, 6> USES{{{"--check", "", 2, check_catalog},
                                   {"--check", "--against", 4, check_catalog_against},
                                   {"", "", 4, generate_catalog},
                                   {"--part-values", "", 3, generate_part_values},
                                   {"--check-hps", "", 2, check_boot_flash},
                                   {"--hps", "", 3, generate_boot_flash}}};

}  // namespace

int run_generator(const std::vector<std::string>& arguments, std::ostream& output, std::ostream& errors) {
    if (arguments.size() == 1 && arguments[0] == "--help") {
        output << USAGE;
        return GENERATOR_DONE;
    }
    const auto* const use = std::find_if(USES.begin(), USES.end(), [&](const USE& candidate) {
        return arguments.size() == candidate.arguments &&
               (candidate.option.empty() ? !arguments[0].starts_with("--") : arguments[0] == candidate.option) &&
               (candidate.further_option.empty() || arguments[2] == candidate.further_option);
    });
    if (use == USES.end()) {
        errors << USAGE;
        return GENERATOR_WRONG_USAGE;
    }
    FAULTS faults;
    try {
        use->run(arguments, faults, output);
    } catch (const std::bad_alloc&) {
        throw;  // which the program says without memory
    } catch (const std::exception& error) {
        errors << "ddb_generator: " << printable(error.what()) << '\n';
        return GENERATOR_FAILED;
    }
    faults.print(errors);
    return faults.empty() ? GENERATOR_DONE : GENERATOR_FAULTS;
}
