#include "catalog/nearest_names.h"

#include "catalog/device_names.h"

namespace {

const std::vector<std::string>& converted_for(const NAME_KINDS& kinds) {
    static const std::vector<std::string> none;
    return kinds.may_be_converted() ? converted_names() : none;
}

}  // namespace

NEAR_NAMES near_names(const std::string& name, const NAME_KINDS& kinds) {
    return near_names(name, kinds, converted_for(kinds));
}

std::vector<std::string> nearest_names(const std::string& name, const NAME_KINDS& kinds) {
    return nearest_names(name, kinds, converted_for(kinds));
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
