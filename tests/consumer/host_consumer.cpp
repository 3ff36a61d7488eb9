// Uses the installed host by itself.

#include <cstdio>

#include "gen.h"

int main() {
    std::puts(gen_get_device_db_fullpath().c_str());
    return 0;
}
