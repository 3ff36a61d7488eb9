#include "catalog/nearest_names.h"

#include "catalog/device_names.h"

NEAR_NAMES near_names(const std::string& name, const NAME_KINDS& kinds) {
    return near_names(name, kinds, converted_for(kinds, converted_names));
}

std::vector<std::string> nearest_names(const std::string& name, const NAME_KINDS& kinds) {
    return nearest_names(name, kinds, converted_for(kinds, converted_names));
}

std::vector<std::string> nearest_parts(const std::string& name) {
    return nearest_names(name, {.part = true});
}

std::vector<std::string> nearest_devices(const std::string& name) {
    return nearest_names(name, {.device = true});
}

std::vector<std::string> nearest_families(const std::string& name) {
    return nearest(name, family_names());
}
