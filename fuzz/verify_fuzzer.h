#pragma once

/// \file
/// Any bytes as the payload of a packed database that the command is to verify: it tells what is wrong with them, and
/// compiles records in which nothing is wrong again. Its command line is the same each time, so the verb is called itself.

#include <CLI/CLI.hpp>
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "command.h"
#include "database_fuzzer.h"
#include "gen.h"
#include "nouns.h"
#include "terminal/failure.h"

inline constexpr const char* VERIFIED_DATABASE = "verified.pcf";

/// The verb `verify` of a noun, and its arguments.
class VERIFYING {
public:
    explicit VERIFYING(std::string_view noun) : m_verb(verb_of(noun)) {
        m_arguments.bind(m_verb.arguments, m_app);
        m_app.parse(VERIFIED_DATABASE);
        gen_set_tessary_path(FUZZ_INSTALLATION_DIR);
    }

    void verify() {
        COMMAND command;
        up_to_a_report([&] {
            try {
                m_verb.run(m_arguments, command);
            } catch (const COMMAND_FAILURE&) {
                // such as for a file that is no database
            }
        });
    }

private:
    template <class ITEM>
    static const ITEM& named(const std::vector<ITEM>& items, std::string_view name) {
        return *std::find_if(items.begin(), items.end(), [name](const ITEM& item) { return item.name == name; });
    }
    static const VERB& verb_of(std::string_view noun) {
        return named(named(whole_command().all.groups(), noun).verbs(), "verify");
    }

    const VERB& m_verb;
    CLI::App m_app;
    ARGUMENTS m_arguments;
};

inline void verify_payload(const char* noun, std::string_view magic, std::string_view stamp,
                           const std::uint8_t* payload, std::size_t size) {
    if (size == 0) {
        return;
    }
    static VERIFYING verifying(noun);
    enter_working_directory();
    scratch_files().write(std::string("inner/") + VERIFIED_DATABASE, packed_file(magic, stamp, payload, size));
    verifying.verify();
}
