#include "unloading.h"

namespace {

bool g_unloading = false;

}  // namespace

bool library_is_unloading() {
    return g_unloading;
}

// A library that is unloaded has its functions of this kind called before its static objects are destroyed. At the end of
// the process, all static objects are destroyed before any of these functions is called.
__attribute__((destructor)) static void note_unloading() {
    g_unloading = true;
}
