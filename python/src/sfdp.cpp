#include "bindings.h"
#include "member_lists.h"
#include "pgmdev_flash_sfdp.h"
#include "unlocked.h"

// What a flash says of itself.

namespace {

using SFDP = PGMDEV_FLASH_SFDP;

template <class VALUE>
py::object or_none(const std::optional<VALUE>& value) {
    return value ? to_python(*value) : py::none();
}

py::object texts_or_none(const std::optional<std::vector<std::string>>& texts) {
    return texts ? py::object(list_of(*texts)) : py::none();
}

py::object times(const std::optional<SFDP::DURATION>& time) {
    return time ? py::object(py::make_tuple(to_python(time->typical), to_python(time->longest))) : py::none();
}

py::dict basic_values(const SFDP::BASIC_TABLE& basic) {
    py::dict values;
    values["density_bits"] = or_none(basic.density_bits);
    values["address_bytes"] = SFDP::address_text(basic.address_code);
    values["erase_4k_uniform"] = to_python(basic.erase_4k_uniform);
    values["erase_4k_opcode"] = or_none(basic.erase_4k_opcode);
    values["write_granularity_bytes"] = to_python(basic.write_granularity);
    values["dtr"] = to_python(basic.dtr);
    values["fast_reads"] = list_of(basic.fast_reads, [](const SFDP::FAST_READ& read) {
        return py::make_tuple(to_python(read.mode), to_python(read.opcode), to_python(read.mode_clocks),
                              to_python(read.wait_clocks));
    });
    values["erase_types"] = list_of(basic.erase_types, [](const SFDP::ERASE_TYPE& type) {
        return py::make_tuple(to_python(type.number), to_python(type.bytes), to_python(type.opcode), times(type.ms),
                              or_none(type.opcode_4byte));
    });
    values["page_bytes"] = to_python(basic.page_size());
    values["page_bytes_known"] = to_python(basic.page_bytes.has_value());
    values["page_program_us"] = times(basic.page_program_us);
    values["first_byte_us"] = times(basic.first_byte_us);
    values["next_byte_us"] = times(basic.next_byte_us);
    values["chip_erase_ms"] = times(basic.chip_erase_ms);
    values["status_polling"] = texts_or_none(basic.status_polling);
    values["quad_enable"] =
        basic.quad_enable
            ? py::object(py::make_tuple(to_python(basic.quad_enable->code), to_python(basic.quad_enable->meaning)))
            : py::none();
    values["soft_reset"] = texts_or_none(basic.soft_reset);
    values["enter_4byte"] = texts_or_none(basic.enter_4byte);
    values["exit_4byte"] = texts_or_none(basic.exit_4byte);
    return values;
}

py::object four_byte_values(const std::optional<SFDP::FOUR_BYTE_TABLE>& table) {
    if (!table) {
        return py::none();
    }
    py::dict opcodes;
    for (const auto& [type, opcode] : table->erase_opcodes) {
        opcodes[to_python(type)] = to_python(opcode);
    }
    return py::make_tuple(to_python(table->word1), to_python(table->word2), list_of(table->support), opcodes);
}

py::object sector_map_values(const SFDP::SECTOR_MAP& map) {
    return py::make_tuple(to_python(map.id), list_of(map.regions, [](const SFDP::REGION& region) {
                              return py::make_tuple(to_python(region.offset), to_python(region.bytes),
                                                    list_of(region.erase_types));
                          }));
}

/// The whole; of a dump that is refused only why.
py::dict read_sfdp(const std::string& dump) {
    const SFDP sfdp = unlocked([&] {
        return SFDP::from_bytes({reinterpret_cast<const BYTE*>(dump.data()), dump.size()});
    });
    py::dict values;
    if (const auto& refusal = sfdp.refusal()) {
        values["refusal"] =
            py::make_tuple(to_python(refusal->offset), to_python(refusal->field), to_python(refusal->found),
                           to_python(refusal->expected), to_python(SFDP::describe(*refusal)));
        return values;
    }
    values = basic_values(sfdp.basic());
    values["major"] = to_python(sfdp.major());
    values["minor"] = to_python(sfdp.minor());
    values["standard"] = to_python(sfdp.standard());
    values["access_protocol"] = to_python(sfdp.access_protocol());
    values["basic_dwords"] = to_python(sfdp.basic().header.words);
    values["headers"] = list_of(sfdp.headers(), [](const SFDP::HEADER& header) {
        return py::make_tuple(to_python(header.id), to_python(SFDP::table_name(header.id)), to_python(header.major),
                              to_python(header.minor), to_python(header.words), to_python(header.offset));
    });
    values["four_byte_instructions"] = four_byte_values(sfdp.four_byte());
    values["map_commands"] = list_of(sfdp.map_commands(), [](const SFDP::MAP_COMMAND& command) {
        return py::make_tuple(to_python(command.opcode), or_none(command.address_bytes), to_python(command.address),
                              or_none(command.wait_clocks), to_python(command.mask));
    });
    values["sector_maps"] = list_of(sfdp.sector_maps(), sector_map_values);
    values["hybrid"] = to_python(sfdp.hybrid());
    values["warnings"] = list_of(sfdp.warnings());
    return values;
}

/// Values of the record, what was assumed, and what is in the way of a record.
py::tuple derive_record(const std::string& dump, const std::string& identification) {
    const SFDP sfdp = SFDP::from_bytes({reinterpret_cast<const BYTE*>(dump.data()), dump.size()});
    const SFDP::DERIVED_RECORD derived =
        sfdp.record({reinterpret_cast<const BYTE*>(identification.data()), identification.size()});
    const auto assumed = list_of(derived.assumed, [](const auto& each) {
        return py::make_tuple(to_python(each.first), to_python(each.second));
    });
    return py::make_tuple(values_of(derived.record, PGMDEV_SFL_FLASH_MEMBERS), assumed, to_python(derived.obstacle));
}

}  // namespace

void bind_sfdp(py::module_& module) {
    module.def("read_sfdp", read_sfdp);
    module.def("derive_record", derive_record);
}
