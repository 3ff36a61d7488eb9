#include <cerrno>
#include <system_error>

#include "files/inspection.h"

std::string system_reason() {
    return errno != 0 ? std::generic_category().message(errno) : "";
}

void forget_system_reason() {
    errno = 0;
}
