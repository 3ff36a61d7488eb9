#include "pgmdev_device_grammar_mgr.h"

#include "names/conversions.h"
#include "names/grammar_trace.h"
#include "names/stores.h"

namespace {

using TABLE = PGMDEV_DDB_GRAMMAR_ENUM;

std::string look_up(TABLE table, const std::string& name) {
    return reverse_lookup(get_grammar_store(), table, name);
}

}  // namespace

std::string PGMDEV_DEVICE_GRAMMAR_MGR::get_pgm_part_pcf(const std::string& name) {
    return look_up(TABLE::PGM_PART_PCF, name);
}

std::string PGMDEV_DEVICE_GRAMMAR_MGR::get_pgm_family_pcf(const std::string& name) {
    return look_up(TABLE::PGM_FAMILY_PCF, name);
}

std::string PGMDEV_DEVICE_GRAMMAR_MGR::get_dev_part_pcf(const std::string& name) {
    return look_up(TABLE::DEV_PART_PCF, name);
}

std::string PGMDEV_DEVICE_GRAMMAR_MGR::get_dev_family_pcf(const std::string& name) {
    return look_up(TABLE::DEV_FAMILY_PCF, name);
}

std::string PGMDEV_DEVICE_GRAMMAR_MGR::get_pcf_family_pcf(const std::string& name) {
    return look_up(TABLE::PCF_FAMILY_PCF, name);
}

std::string PGMDEV_DEVICE_GRAMMAR_MGR::get_package_name(const std::string& name, bool no_fallback) {
    std::string out = look_up(TABLE::PACKAGE_NAME, name);
    if (out.empty() && !no_fallback) {
        out = name;
    }
    trace_package_name(name, out);
    return out;
}

std::string PGMDEV_DEVICE_GRAMMAR_MGR::get_pgm_name(const std::string& name, bool skip_package_conversion,
                                                    bool no_fallback) {
    const GRAMMAR_STORE* store = get_grammar_store();
    normalize_name(name);
    const PGM_NAME found = pgm_name_of(store, name, skip_package_conversion);
    std::string out(found.pgm_name);
    if (out.empty() && !no_fallback) {
        out = name;
    }
    trace_pgm_name(name, skip_package_conversion, found.package_name, out);
    return out;
}

std::string PGMDEV_DEVICE_GRAMMAR_MGR::get_family(const std::string& name) {
    std::string family = look_up(TABLE::FAMILY, name);
    if (!family.empty()) {
        return family;
    }
    std::string part_pcf = get_pgm_part_pcf(name);
    if (part_pcf.empty()) {
        part_pcf = get_dev_part_pcf(name);
    }
    return part_pcf.empty() ? std::string() : look_up(TABLE::FAMILY, part_pcf);
}

std::string PGMDEV_DEVICE_GRAMMAR_MGR::get_pcf_device(const std::string& pcf_name) {
    const std::vector<std::string> devices = forward_lookup(get_grammar_store(), TABLE::DEV_PART_PCF, pcf_name);
    return devices.empty() ? std::string() : devices.front();
}

void PGMDEV_DEVICE_GRAMMAR_MGR::get_dev_pcfs(const std::string& name, std::string& part_pcf, std::string& family_pcf) {
    part_pcf = get_dev_part_pcf(name);
    family_pcf = get_dev_family_pcf(name);
}

void PGMDEV_DEVICE_GRAMMAR_MGR::get_pgm_pcfs(const std::string& name, std::string& part_pcf, std::string& family_pcf) {
    std::string pgm_name = get_pgm_name(name, false, false);  // normalised by the next look-up
    part_pcf = get_pgm_part_pcf(pgm_name);
    family_pcf = get_pgm_family_pcf(pgm_name);
}

bool PGMDEV_DEVICE_GRAMMAR_MGR::use_full_name(const std::string& name) {
    std::string package_name = get_package_name(name, true);  // normalised by the next look-up
    const std::string pgm_name = package_name.empty() ? std::string() : get_pgm_name(package_name, false, true);
    return !name.empty() && name == package_name && package_name == pgm_name;
}

bool PGMDEV_DEVICE_GRAMMAR_MGR::use_package_name(const std::string& name) {
    std::string package_name = get_package_name(name, false);  // normalised by the next look-up
    return package_name == get_pgm_name(package_name, true, true);
}
