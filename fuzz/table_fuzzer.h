#pragma once

/// \file
/// Any text as a source table: faults are collected, nothing is reported, and a table without faults can be written.

#include <cstddef>
#include <cstdint>
#include <string>

#include "fio.h"
#include "input.h"
#include "pgmdev_table_fault.h"
#include "scratch_files.h"

template <class TABLE>
void examine_table(const std::uint8_t* data, std::size_t size) {
    const TABLE table = TABLE::from_source(FIO_PATH(scratch_files().write("table.csv", text_of(data, size))));
    for (const PGMDEV_TABLE_FAULT& fault : table.faults()) {
        static_cast<void>(TABLE::describe(fault, "table"));
    }
    std::string obstacle;
    static_cast<void>(table.source_text(obstacle));
}
