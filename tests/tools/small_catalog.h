#pragma once

/// \file
/// A small correct catalog for tests of the generator, and the generator run on it.

#include <string>

#include "tools/small_tables.h"

/// Two families, three devices, eight numbered parts. Part number 5 is not in use.
class SMALL_CATALOG : public SMALL_TABLES {
public:
    SMALL_CATALOG() : SMALL_TABLES("catalog") {
        set("families.txt",
            "# families\n"
            "1  Finch  FINCH_PCF\n"
            "2  Robin  NONE\n");
        set("packages.txt",
            "F100  FBGA  100\n"
            "Q44   PQFP  44\n");
        set("grades.txt",
            "C6  6  COMMERCIAL\n"
            "I7  7  INDUSTRIAL\n");
        set("devices.txt",
            "device 1 FINCH-1 Finch FIN_1\n"
            "  parts 1 FIN1{,L} F100 C6,I7 production\n"
            "  parts - FIN1 Q44 C6 discontinued\n"
            "  alias FIN1-F100-C6 FIN1F100C6\n"
            "device 2 ROBIN-1 Robin ROB\n"
            "  parts 6 ROB1 (Q44) (C6) sample,hidden\n"
            "  parts 7 ROB2 (Q44) C6 announced\n"
            "device 9 ROBIN-2 Robin -\n"
            "  parts 8 ROB3 F100 I7 discontinued\n");
        set("ordering-codes.txt",
            "entries 20\n"
            "3 FIN1{,L}F100C6\n"
            "9 ROB3F100I7\n");
    }

    GENERATOR_RUN check() const { return run({"--check", directory()}); }
    GENERATOR_RUN generate() const {
        return run({directory(), output("data.cpp"), output("host.cpp"), output("h/pgm_parts.txt")});
    }

    /// The faults, one in each line, as if told from inside the catalog's directory; "." is the directory itself.
    std::string faults() const { return told_inside(directory(), check().errors); }
};
