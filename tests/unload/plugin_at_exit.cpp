// A static object of a program that uses a plug-in, and what it got from it, after everything that the plug-in brought
// with it was cleaned up: the plug-in came later, so its static objects go earlier.

#include <cstdio>
#include <cstdlib>

#include "support/loaded_library.h"

namespace {

constexpr int STORES = 9;
constexpr int FLASH_DEVICES = 10 + 27;

class LATE_USER {
public:
    LATE_USER() = default;
    ~LATE_USER() {
        if (m_plugin != nullptr && !answers()) {
            std::_Exit(EXIT_FAILURE);
        }
    }
    LATE_USER(const LATE_USER&) = delete;
    LATE_USER& operator=(const LATE_USER&) = delete;

    void load() { m_plugin = new LOADED_LIBRARY(TEST_PLUGIN); }  // to the end of the process

    bool answers() const {
        const int stores = m_plugin->function("use_every_store")();
        const int flash_devices = m_plugin->function("read_remembered_lists")();
        std::printf("%d stores, %d flash devices\n", stores, flash_devices);
        return stores == STORES && flash_devices == FLASH_DEVICES;
    }

private:
    const LOADED_LIBRARY* m_plugin = nullptr;
} late_user;

}  // namespace

int main() {
    late_user.load();
    return late_user.answers() ? EXIT_SUCCESS : EXIT_FAILURE;
}
