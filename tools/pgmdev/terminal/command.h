#pragma once

/// \file
/// What the nouns of the command share.

#include <CLI/App.hpp>
#include <nlohmann/json.hpp>
#include <string>

/// JSON objects whose keys stay in the order in which they were added.
using JSON = nlohmann::ordered_json;

enum EXIT_CODE { EXIT_DONE = 0, EXIT_NOT_FOUND = 1, EXIT_USAGE = 2, EXIT_INTERNAL_ERROR = 3 };

/// The state of one run of the command.
struct COMMAND {
    bool json = false;             ///< answer in JSON instead of text for people
    EXIT_CODE result = EXIT_DONE;  ///< becomes the exit code
};

/// Thrown for arguments that make no sense; the message is for the user.
class USAGE_ERROR : public std::runtime_error {
    using std::runtime_error::runtime_error;
};

/// One JSON document, readable: indented, ending in a line feed. Bytes that are no UTF-8 become replacement characters.
void print_json(const JSON& document);
/// One JSON document on one line, for batches.
void print_json_line(const JSON& document);
/// An answer in JSON: a line of a batch, or a document of its own.
void print_json_answer(const JSON& answer, bool batch);

void add_flash_commands(CLI::App& app, COMMAND& command);
void add_hps_commands(CLI::App& app, COMMAND& command);
void add_params_commands(CLI::App& app, COMMAND& command);
void add_profile_commands(CLI::App& app, COMMAND& command);
void add_name_commands(CLI::App& app, COMMAND& command);
void add_part_commands(CLI::App& app, COMMAND& command);
void add_opn_commands(CLI::App& app, COMMAND& command);
void add_enum_commands(CLI::App& app, COMMAND& command);
