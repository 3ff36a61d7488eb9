#pragma once

#include "host_types.h"

enum { ZLIB_OK = 0 };

int zlib_compress(BYTE* destination, DWORD* destination_length, const BYTE* source, DWORD source_length);
int zlib_uncompress(BYTE* destination, DWORD* destination_length, const BYTE* source, DWORD source_length);
