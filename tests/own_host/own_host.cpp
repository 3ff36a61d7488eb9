// A host that keeps its databases in a place of its own, and whose reporter returns to the reporting operation.

#include <cstdio>

#include "gen.h"
#include "msg.h"

std::string gen_get_device_db_fullpath() {
    return DATABASES;
}

void MSG_INTERNAL_ERROR::report(const char* condition, const char* module, const char* file, int /*line*/) {
    std::printf("own host: %s reports %s in %s\n", module, condition, file);
}
