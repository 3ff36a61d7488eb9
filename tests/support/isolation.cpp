#include "isolation.h"

#include <gtest/gtest.h>

#include <cstdlib>

// Tests are not to see how the machine they run on is configured, nor are the commands that they start.

namespace {

void set_environment(const char* name, const char* value) {
#if defined(_WIN32)
    _putenv_s(name, value);
#else
    setenv(name, value, 1);
#endif
}

class ISOLATION : public testing::Environment {
public:
    void SetUp() override {
        set_environment("TESSARY_CONFIG_FILE", "tests-have-no-configuration-file");
        for (const char* name : {"TESSARY_DEBUG_LEVEL", "PGM_USER_SFL_FLASH_INFO", "PGM_USER_SFL_FLASH_INFO_DEBUG"}) {
            set_environment(name, "");
        }
        for (const auto& [name, value] : ISOLATING_VARIABLES) {
            set_environment(name, value);
        }
    }
};

const testing::Environment* const isolation = testing::AddGlobalTestEnvironment(new ISOLATION);

}  // namespace
