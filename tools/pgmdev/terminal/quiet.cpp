#include "terminal/quiet.h"

namespace {

bool g_quiet = false;

}  // namespace

void be_quiet() {
    g_quiet = true;
}

bool is_quiet() {
    return g_quiet;
}
