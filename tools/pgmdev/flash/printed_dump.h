#pragma once

/// \file
/// Dumps as debuggers print them, and as sources of programs have them.

#include <string>
#include <string_view>

/// The same bytes as a dump that bytes_of_hex_text() reads, if they are printed like this:
///
///     0x20000000: 53 46 44 50 06 01 ...            OpenOCD, mdb; words likewise: mdw
///     0x20000000 <area>:  0x53  0x46  0x44 ...     GDB, x/64xb; words likewise: x/16xw
///     20000000 = 53 46 44 50 06 01 ...  SFDP..     J-Link, mem
///     uint8_t area[] = {0x53, 0x46, 0x44, ...};    sources of programs in C: what is in the first braces, without comments
///     0x53 0x46 0x44 0x50 0x6 0x1                  single digits behind "0x"
///
/// What is not, stays as it is, so that the reader of dumps may refuse it.
std::string plain_dump_of(std::string_view text);
