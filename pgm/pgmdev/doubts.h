#pragma once

/// \file
/// Doubts about files that are read all the same: whether a file is the one that the text beside it, FILE.info, tells of.

#include <span>
#include <string>
#include <string_view>

#include "pgmdev_types.h"

/// The digest of the bytes, as such texts have it: lower-case hexadecimal digits.
std::string digest_text(std::span<const BYTE> bytes);

/// Says on the debug channel when the file is not the one that the text beside it tells of. Where nobody hears that, or the
/// host cannot tell, the file is not looked at.
void tell_doubts(const std::string& path, std::string_view digest_key);
