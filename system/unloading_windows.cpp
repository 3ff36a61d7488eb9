#include "unloading.h"

#include <windows.h>

namespace {

bool g_unloading = false;

}  // namespace

bool library_is_unloading() {
    return g_unloading;
}

/// What the system calls when a library comes and goes, before its static objects are destroyed. `reserved` is null for a
/// library that is unloaded while the process goes on.
extern "C" BOOL WINAPI DllMain(HINSTANCE /*library*/, DWORD reason, LPVOID reserved) {
    if (reason == DLL_PROCESS_DETACH && reserved == nullptr) {
        g_unloading = true;
    }
    return TRUE;
}
