#pragma once

#include "command_fixture.h"

/// A module directory, and the command run on it.
class HPS_DIRECTORY {
public:
    PROCESS_RESULT run(std::vector<std::string> arguments) const {
        arguments.insert(arguments.begin(), {"--module-dir", m_scratch.directory().string()});
        return run_command(arguments);
    }
    JSON json(std::vector<std::string> arguments) const {
        arguments.insert(arguments.begin(), "--json");
        const PROCESS_RESULT result = run(arguments);
        EXPECT_EQ(result.exit_code, DONE) << result.errors;
        return json_of(result.output);
    }
    std::string file() const { return read_file(m_scratch.directory() / "pgm_flash.ini"); }
    const SCRATCH& scratch() const { return m_scratch; }

private:
    SCRATCH m_scratch;
};

inline const std::vector<std::string> ADD_NAND{
    "hps", "add", "nand", "manufacturer_id=0xEC", "device_id=211", "device_byte_size=0x140000000"};
