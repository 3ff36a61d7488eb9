#include "names/clean_up.h"

#include "names/part_indexes.h"
#include "names/stores.h"
#include "unloading.h"

namespace {

struct CLEAN_UP {
    ~CLEAN_UP() {
        if (library_is_unloading()) {
            free_stores_and_indexes();
        }
    }
} clean_up;

}  // namespace

void free_stores_and_indexes() {
    free_part_indexes();
    free_stores();
}
