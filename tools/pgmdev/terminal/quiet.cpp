#include "terminal/quiet.h"

namespace {

bool g_quiet = false;

}  // namespace

void be_quiet(bool quiet) {
    g_quiet = quiet;
}

bool is_quiet() {
    return g_quiet;
}
