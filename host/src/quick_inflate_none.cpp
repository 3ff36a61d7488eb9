#include "quick_inflate.h"

bool quick_inflate(BYTE* /*destination*/, DWORD* /*destination_length*/, const BYTE* /*source*/,
                   DWORD /*source_length*/) {
    return false;
}
