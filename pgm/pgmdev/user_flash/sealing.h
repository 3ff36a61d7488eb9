#pragma once

/// \file
/// From a described flash to the encoded text.

#include <string>

#include "user_flash/codec.h"

/// The description with this build's password behind it.
std::string sealed_user_flash(const std::string& body);

/// The printable form of a text of descriptions, which has been decoded again and compared. No text and no failure when
/// nothing is left of it.
USER_FLASH_CODING encode_checked_user_flash(const std::string& text);
