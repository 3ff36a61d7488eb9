#pragma once

/// \file
/// The members of a device profile as the tests know them: one list, independent of the library's own.

#include <array>
#include <string>
#include <vector>

#include "pgmdev_dev_info.h"

namespace dev_info_reference {

using CELLS = std::vector<std::string>;

inline std::string value_text(const std::string& text) {
    return text;
}
inline std::string value_text(bool flag) {
    return flag ? "1" : "0";
}
template <class NUMBER>
std::string value_text(NUMBER number) {
    return std::to_string(static_cast<unsigned>(number));
}

struct COLUMN {
    const char* name;
    const char* kind;
    std::string (*value)(const PGMDEV_DEVICE_INFO& record);  ///< numbers in decimal, flags as 0 and 1
};

#define MEMBER(name, kind)                                                          \
    COLUMN {                                                                        \
#name, kind, [](const PGMDEV_DEVICE_INFO& r) { return value_text(r.name); } \
    }

// clang-format off
inline constexpr std::array COLUMNS{
    MEMBER(family, "DEVID_ENUM"),
    MEMBER(pcf, "DEVID_STR"),
    MEMBER(device, "DEVID_ENUM"),
    MEMBER(part, "DEVID_ENUM"),
    MEMBER(skip_pof_bitstream_conversion, "bool"),
    MEMBER(no_flash_option_for_unvm, "bool"),
    MEMBER(ini_fbgen_flow, "bool"),
    MEMBER(support_legacy_f2p, "bool"),
    MEMBER(support_cpf, "bool"),
    MEMBER(support_ba_flow, "bool"),
    MEMBER(support_ob, "bool"),
    MEMBER(support_download_mode, "bool"),
    MEMBER(support_sld, "bool"),
    MEMBER(support_asc, "bool"),
    MEMBER(support_asc_ini, "STL_STRING"),
    MEMBER(support_remote_local_update, "bool"),
    MEMBER(need_quillon_padding_mask, "bool"),
    MEMBER(support_aes_wo_ini, "bool"),
    MEMBER(unsupported_by_qcd4, "bool"),
    MEMBER(unsupported_by_quillon, "bool"),
    MEMBER(allow_partial_frame, "bool"),
    MEMBER(jtag_program_initialize_in_rti, "bool"),
    MEMBER(issue_apf_disengage, "bool"),
    MEMBER(jtag_program_initialize_microsec, "DWORD"),
    MEMBER(jtag_configuration_prepad_bits, "DWORD"),
    MEMBER(jtag_program_startup_tck, "DWORD"),
    MEMBER(aes_n_fuse_bits, "DWORD"),
    MEMBER(aes_fuse_bit_location, "DWORD"),
    MEMBER(aes_n_nv_key_bits, "DWORD"),
    MEMBER(aes_n_v_key_bits, "DWORD"),
    MEMBER(aes_n_verify_bits, "DWORD"),
    MEMBER(n_iv_bits, "DWORD"),
    MEMBER(ekp_alg_family, "ENUM"),
    MEMBER(ps_cmp_dclk_ratio, "BYTE"),
    MEMBER(fpp_cmp_dclk_ratio, "BYTE"),
    MEMBER(fppx16_cmp_dclk_ratio, "BYTE"),
    MEMBER(fppx32_cmp_dclk_ratio, "BYTE"),
    MEMBER(cmp_fbgen_start_block, "ENUM"),
    MEMBER(cmp_fbgen_end_block, "ENUM"),
    MEMBER(cmp_end_padding_alignement, "DWORD"),
    MEMBER(cmp_end_pad_with_one, "bool"),
    MEMBER(support_prpof, "bool"),
    MEMBER(need_factory_instr, "bool"),
    MEMBER(need_config_io_instr, "bool"),
    MEMBER(n_tck_ticks_after_config_io, "DWORD"),
    MEMBER(advanced_family, "bool"),
    MEMBER(as_cb_hold_time_issue, "bool"),
    MEMBER(as_cb_4byte_addressing, "bool"),
    MEMBER(as_read_in_two_steps, "bool"),
    MEMBER(as_second_offset_addr, "DWORD"),
    MEMBER(asx1_second_offset_extra_bytes, "DWORD"),
    MEMBER(asx4_second_offset_extra_bytes, "DWORD"),
    MEMBER(asc_dummy_cycle, "BYTE"),
    MEMBER(spi_dummy_clk_x1_128mb, "BYTE"),
    MEMBER(spi_dummy_clk_x1_256mb, "BYTE"),
    MEMBER(spi_dummy_clk_x4_128mb, "BYTE"),
    MEMBER(spi_dummy_clk_x4_256mb, "BYTE"),
    MEMBER(supported_max_cascaded_asc_count, "DWORD"),
    MEMBER(as_minimum_flash_density, "DWORD"),
    MEMBER(skip_fbgen, "bool"),
    MEMBER(cfg_dev, "STL_STRING"),
    MEMBER(cvp_post_iocsr_padding_cbws, "DWORD"),
    MEMBER(hps_post_iocsr_padding_cbws, "DWORD"),
    MEMBER(cvp_pre_core_padding_cbws, "DWORD"),
    MEMBER(cvp_pre_cmp_core_padding_cbws, "DWORD"),
    MEMBER(cvp_pre_enc_core_padding_cbws, "DWORD"),
    MEMBER(fbgen_cvp_core_start_block, "ENUM"),
    MEMBER(fbgen_hps_core_start_block, "ENUM"),
    MEMBER(support_ru_cvp, "bool"),
    MEMBER(support_ru_hps, "bool"),
    MEMBER(support_fi, "bool"),
    MEMBER(fi_program_twice, "bool"),
    MEMBER(use_sdm, "bool"),
    MEMBER(flash_width_bits, "DWORD"),
    MEMBER(default_prog_mode, "ENUM"),
    MEMBER(cmf_flash_block_size, "DWORD"),
    MEMBER(asc_voltage, "STL_STRING"),
    MEMBER(support_sdmmc, "bool"),
    MEMBER(support_vab, "bool"),
    MEMBER(support_sdos, "bool"),
    MEMBER(use_subidcode, "bool"),
    MEMBER(dummy_string, "STL_STRING"),
    MEMBER(dummy_byte, "BYTE"),
    MEMBER(dummy_word, "WORD"),
    MEMBER(dummy_dword, "DWORD"),
    MEMBER(dummy_bool, "bool"),
};
// clang-format on

#undef MEMBER

inline constexpr std::size_t MEMBERS = COLUMNS.size();
static_assert(MEMBERS == 86);

/// The members of a record as texts.
inline CELLS values(const PGMDEV_DEVICE_INFO& r) {
    CELLS all;
    for (const COLUMN& column : COLUMNS) {
        all.push_back(column.value(r));
    }
    return all;
}

}  // namespace dev_info_reference
