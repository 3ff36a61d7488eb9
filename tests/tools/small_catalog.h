#pragma once

/// \file
/// A small correct catalog for tests of the generator, and the generator run on it.

#include <map>
#include <string>

#include "support/scratch.h"
#include "tools/generator_run.h"

/// Two families, three devices, eight numbered parts. Part number 5 is not in use.
class SMALL_CATALOG {
public:
    SMALL_CATALOG() {
        m_files["families.txt"] =
            "# families\n"
            "1  Finch  FINCH_PCF\n"
            "2  Robin  NONE\n";
        m_files["packages.txt"] =
            "F100  FBGA  100\n"
            "Q44   PQFP  44\n";
        m_files["grades.txt"] =
            "C6  6  COMMERCIAL\n"
            "I7  7  INDUSTRIAL\n";
        m_files["devices.txt"] =
            "device 1 FINCH-1 Finch FIN_1\n"
            "  parts 1 FIN1{,L} F100 C6,I7 production\n"
            "  parts - FIN1 Q44 C6 discontinued\n"
            "  alias FIN1-F100-C6 FIN1F100C6\n"
            "device 2 ROBIN-1 Robin ROB\n"
            "  parts 6 ROB1 (Q44) (C6) sample,hidden\n"
            "  parts 7 ROB2 (Q44) C6 announced\n"
            "device 9 ROBIN-2 Robin -\n"
            "  parts 8 ROB3 F100 I7 discontinued\n";
        m_files["ordering-codes.txt"] =
            "entries 20\n"
            "3 FIN1{,L}F100C6\n"
            "9 ROB3F100I7\n";
    }

    void set(const std::string& file, const std::string& text) { m_files[file] = text; }
    void remove(const std::string& file) { m_files.erase(file); }

    /// Replaces a text of a file.
    void replace(const std::string& file, const std::string& from, const std::string& to) {
        std::string& text = m_files.at(file);
        const std::size_t position = text.find(from);
        ASSERT_NE(position, std::string::npos) << from;
        text.replace(position, from.size(), to);
    }

    std::string directory() const {
        for (const auto& [name, text] : m_files) {
            m_scratch.write("catalog/" + name, text);
        }
        return m_scratch.path("catalog");
    }
    std::string output(const std::string& name) const { return m_scratch.path("out/" + name); }

    GENERATOR_RUN check() const { return run({"--check", directory()}); }
    GENERATOR_RUN generate() const {
        return run({directory(), output("data.cpp"), output("host.cpp"), output("h/pgm_parts.txt")});
    }

    /// The faults, one in each line, as if told from inside the catalog's directory; "." is the directory itself.
    std::string faults() const { return told_inside(directory(), check().errors); }

private:
    SCRATCH m_scratch;
    std::map<std::string, std::string> m_files;
};
