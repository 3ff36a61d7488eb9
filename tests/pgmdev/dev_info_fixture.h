#pragma once

/// \file
/// Device profiles, bodies, files and source tables as the tests themselves write and read them: written plainly from
/// the description of the format, so that they can stand against the library's own code.

#include <algorithm>
#include <array>
#include <string>
#include <vector>

#include "dstr.h"
#include "pgmdev/flash_fixture.h"
#include "pgmdev_dev_info.h"

namespace dev_info_reference {

using flash_reference::deflated;
using flash_reference::inflated;
using flash_reference::le32;

using CELLS = std::vector<std::string>;

inline const std::string MAGIC = "PGMIO_DM";
inline const std::string STAMP = "6d91639bb2165ce50a6e050711c1137f";

struct COLUMN {
    const char* name;
    const char* kind;
};

// clang-format off
inline constexpr std::array<COLUMN, 86> COLUMNS{{
    {"family", "DEVID_ENUM"},
    {"pcf", "DEVID_STR"},
    {"device", "DEVID_ENUM"},
    {"part", "DEVID_ENUM"},
    {"skip_pof_bitstream_conversion", "bool"},
    {"no_flash_option_for_unvm", "bool"},
    {"ini_fbgen_flow", "bool"},
    {"support_legacy_f2p", "bool"},
    {"support_cpf", "bool"},
    {"support_ba_flow", "bool"},
    {"support_ob", "bool"},
    {"support_download_mode", "bool"},
    {"support_sld", "bool"},
    {"support_asc", "bool"},
    {"support_asc_ini", "STL_STRING"},
    {"support_remote_local_update", "bool"},
    {"need_quillon_padding_mask", "bool"},
    {"support_aes_wo_ini", "bool"},
    {"unsupported_by_qcd4", "bool"},
    {"unsupported_by_quillon", "bool"},
    {"allow_partial_frame", "bool"},
    {"jtag_program_initialize_in_rti", "bool"},
    {"issue_apf_disengage", "bool"},
    {"jtag_program_initialize_microsec", "DWORD"},
    {"jtag_configuration_prepad_bits", "DWORD"},
    {"jtag_program_startup_tck", "DWORD"},
    {"aes_n_fuse_bits", "DWORD"},
    {"aes_fuse_bit_location", "DWORD"},
    {"aes_n_nv_key_bits", "DWORD"},
    {"aes_n_v_key_bits", "DWORD"},
    {"aes_n_verify_bits", "DWORD"},
    {"n_iv_bits", "DWORD"},
    {"ekp_alg_family", "ENUM"},
    {"ps_cmp_dclk_ratio", "BYTE"},
    {"fpp_cmp_dclk_ratio", "BYTE"},
    {"fppx16_cmp_dclk_ratio", "BYTE"},
    {"fppx32_cmp_dclk_ratio", "BYTE"},
    {"cmp_fbgen_start_block", "ENUM"},
    {"cmp_fbgen_end_block", "ENUM"},
    {"cmp_end_padding_alignement", "DWORD"},
    {"cmp_end_pad_with_one", "bool"},
    {"support_prpof", "bool"},
    {"need_factory_instr", "bool"},
    {"need_config_io_instr", "bool"},
    {"n_tck_ticks_after_config_io", "DWORD"},
    {"advanced_family", "bool"},
    {"as_cb_hold_time_issue", "bool"},
    {"as_cb_4byte_addressing", "bool"},
    {"as_read_in_two_steps", "bool"},
    {"as_second_offset_addr", "DWORD"},
    {"asx1_second_offset_extra_bytes", "DWORD"},
    {"asx4_second_offset_extra_bytes", "DWORD"},
    {"asc_dummy_cycle", "BYTE"},
    {"spi_dummy_clk_x1_128mb", "BYTE"},
    {"spi_dummy_clk_x1_256mb", "BYTE"},
    {"spi_dummy_clk_x4_128mb", "BYTE"},
    {"spi_dummy_clk_x4_256mb", "BYTE"},
    {"supported_max_cascaded_asc_count", "DWORD"},
    {"as_minimum_flash_density", "DWORD"},
    {"skip_fbgen", "bool"},
    {"cfg_dev", "STL_STRING"},
    {"cvp_post_iocsr_padding_cbws", "DWORD"},
    {"hps_post_iocsr_padding_cbws", "DWORD"},
    {"cvp_pre_core_padding_cbws", "DWORD"},
    {"cvp_pre_cmp_core_padding_cbws", "DWORD"},
    {"cvp_pre_enc_core_padding_cbws", "DWORD"},
    {"fbgen_cvp_core_start_block", "ENUM"},
    {"fbgen_hps_core_start_block", "ENUM"},
    {"support_ru_cvp", "bool"},
    {"support_ru_hps", "bool"},
    {"support_fi", "bool"},
    {"fi_program_twice", "bool"},
    {"use_sdm", "bool"},
    {"flash_width_bits", "DWORD"},
    {"default_prog_mode", "ENUM"},
    {"cmf_flash_block_size", "DWORD"},
    {"asc_voltage", "STL_STRING"},
    {"support_sdmmc", "bool"},
    {"support_vab", "bool"},
    {"support_sdos", "bool"},
    {"use_subidcode", "bool"},
    {"dummy_string", "STL_STRING"},
    {"dummy_byte", "BYTE"},
    {"dummy_word", "WORD"},
    {"dummy_dword", "DWORD"},
    {"dummy_bool", "bool"},
}};

/// The members of a record as texts: numbers in decimal, flags as 0 and 1.
inline CELLS values(const PGMDEV_DEVICE_INFO& r) {
    const auto number = [](auto value) { return std::to_string(static_cast<unsigned long>(static_cast<unsigned>(value))); };
    const auto flag = [](bool value) { return std::string(value ? "1" : "0"); };
    return {
            number(r.family),
            r.pcf,
            number(r.device),
            number(r.part),
            flag(r.skip_pof_bitstream_conversion),
            flag(r.no_flash_option_for_unvm),
            flag(r.ini_fbgen_flow),
            flag(r.support_legacy_f2p),
            flag(r.support_cpf),
            flag(r.support_ba_flow),
            flag(r.support_ob),
            flag(r.support_download_mode),
            flag(r.support_sld),
            flag(r.support_asc),
            r.support_asc_ini,
            flag(r.support_remote_local_update),
            flag(r.need_quillon_padding_mask),
            flag(r.support_aes_wo_ini),
            flag(r.unsupported_by_qcd4),
            flag(r.unsupported_by_quillon),
            flag(r.allow_partial_frame),
            flag(r.jtag_program_initialize_in_rti),
            flag(r.issue_apf_disengage),
            number(r.jtag_program_initialize_microsec),
            number(r.jtag_configuration_prepad_bits),
            number(r.jtag_program_startup_tck),
            number(r.aes_n_fuse_bits),
            number(r.aes_fuse_bit_location),
            number(r.aes_n_nv_key_bits),
            number(r.aes_n_v_key_bits),
            number(r.aes_n_verify_bits),
            number(r.n_iv_bits),
            number(r.ekp_alg_family),
            number(r.ps_cmp_dclk_ratio),
            number(r.fpp_cmp_dclk_ratio),
            number(r.fppx16_cmp_dclk_ratio),
            number(r.fppx32_cmp_dclk_ratio),
            number(r.cmp_fbgen_start_block),
            number(r.cmp_fbgen_end_block),
            number(r.cmp_end_padding_alignement),
            flag(r.cmp_end_pad_with_one),
            flag(r.support_prpof),
            flag(r.need_factory_instr),
            flag(r.need_config_io_instr),
            number(r.n_tck_ticks_after_config_io),
            flag(r.advanced_family),
            flag(r.as_cb_hold_time_issue),
            flag(r.as_cb_4byte_addressing),
            flag(r.as_read_in_two_steps),
            number(r.as_second_offset_addr),
            number(r.asx1_second_offset_extra_bytes),
            number(r.asx4_second_offset_extra_bytes),
            number(r.asc_dummy_cycle),
            number(r.spi_dummy_clk_x1_128mb),
            number(r.spi_dummy_clk_x1_256mb),
            number(r.spi_dummy_clk_x4_128mb),
            number(r.spi_dummy_clk_x4_256mb),
            number(r.supported_max_cascaded_asc_count),
            number(r.as_minimum_flash_density),
            flag(r.skip_fbgen),
            r.cfg_dev,
            number(r.cvp_post_iocsr_padding_cbws),
            number(r.hps_post_iocsr_padding_cbws),
            number(r.cvp_pre_core_padding_cbws),
            number(r.cvp_pre_cmp_core_padding_cbws),
            number(r.cvp_pre_enc_core_padding_cbws),
            number(r.fbgen_cvp_core_start_block),
            number(r.fbgen_hps_core_start_block),
            flag(r.support_ru_cvp),
            flag(r.support_ru_hps),
            flag(r.support_fi),
            flag(r.fi_program_twice),
            flag(r.use_sdm),
            number(r.flash_width_bits),
            number(r.default_prog_mode),
            number(r.cmf_flash_block_size),
            r.asc_voltage,
            flag(r.support_sdmmc),
            flag(r.support_vab),
            flag(r.support_sdos),
            flag(r.use_subidcode),
            r.dummy_string,
            number(r.dummy_byte),
            number(r.dummy_word),
            number(r.dummy_dword),
            flag(r.dummy_bool),
    };
}
// clang-format on

inline std::string in_capitals(std::string text) {
    for (char& c : text) {
        c = c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
    }
    return text;
}

inline std::string family_name(int family) {
    return in_capitals(dstr_get_user_string(static_cast<DEV_FAMILY_ENUM>(family)));
}

/// The number that a cell stands for.
inline unsigned long number_of(std::size_t column, const std::string& cell) {
    const std::string name = COLUMNS[column].name;
    const std::string kind = COLUMNS[column].kind;
    if (name == "family") {
        return cell.empty() ? 0UL : static_cast<unsigned long>(dstr_get_dev_family_enum_by_string(cell.c_str()));
    }
    if (name == "device") {
        return cell == "GENERIC" ? 990UL : 0UL;
    }
    if (name == "part") {
        return static_cast<unsigned long>(cell == "GENERIC" ? DEV_PART_GENERIC : DEV_PART_INVALID);
    }
    if (kind == "ENUM") {
        const std::vector<std::pair<std::string, unsigned long>> rows{{"DEV_FAMILY_KESTREL", 6},
                                                                      {"DEV_FAMILY_OSPREY", 65},
                                                                      {"DEV_FAMILY_HERON", 61},
                                                                      {"DEV_FAMILY_MERLIN", 50},
                                                                      {"NPCF_BLOCK_CRAM", 37},
                                                                      {"NPCF_BLOCK_ERAM", 38},
                                                                      {"NPCF_BLOCK_CB_HEADER2", 6},
                                                                      {"PGMIO_AVST_X8", 20},
                                                                      {"DEV_FAMILY_PETREL", 54},
                                                                      {"DEV_FAMILY_PLOVER", 63},
                                                                      {"DEV_FAMILY_SHRIKE", 71},
                                                                      {"NPCF_BLOCK_POSTAMBLE", 39},
                                                                      {"", 0xFFFFFFFF}};
        for (const auto& [row, value] : rows) {
            if (row == cell) {
                return value;
            }
        }
        throw std::runtime_error("no enumerator " + cell);
    }
    return cell.empty() ? 0UL : std::stoul(cell, nullptr, cell.starts_with("0x") ? 16 : 10);
}

/// A cell as the body holds it.
inline std::string field(std::size_t column, const std::string& cell) {
    const std::string kind = COLUMNS[column].kind;
    if (kind == "DEVID_STR" || kind == "STL_STRING") {
        return std::string(1, kind == "DEVID_STR" ? '\1' : '\2') + static_cast<char>(cell.size()) + cell;
    }
    if (kind == "bool") {
        return {'\3', cell == "TRUE" ? '\1' : '\0'};
    }
    const std::string bytes = le32(number_of(column, cell));
    if (kind == "BYTE") {
        return '\4' + bytes.substr(0, 1);
    }
    if (kind == "WORD") {
        return '\5' + bytes.substr(0, 2);
    }
    return (kind == "DWORD" ? '\6' : '\7') + bytes;
}

/// A cell as `values` gives the member.
inline std::string value(std::size_t column, const std::string& cell) {
    const std::string kind = COLUMNS[column].kind;
    if (kind == "DEVID_STR" || kind == "STL_STRING") {
        return cell;
    }
    if (kind == "bool") {
        return cell == "TRUE" ? "1" : "0";
    }
    const unsigned long number = number_of(column, cell);
    return std::to_string(kind == "BYTE" ? number & 0xFF : kind == "WORD" ? number & 0xFFFF : number);
}

inline std::string record(const CELLS& cells) {
    std::string bytes;
    for (std::size_t i = 0; i < cells.size(); ++i) {
        bytes += field(i, cells[i]);
    }
    return bytes + "END1";
}

/// The body up to the index tables.
inline std::string records(const std::vector<CELLS>& rows) {
    std::string bytes = le32(1) + le32(rows.size()) + le32(86);
    for (const CELLS& row : rows) {
        bytes += record(row);
    }
    return bytes + "END2";
}

struct TABLES {
    std::vector<unsigned long> family = std::vector<unsigned long>(73, 0xFFFFFFFF);
    std::vector<unsigned long> device = std::vector<unsigned long>(991, 0xFFFFFFFF);
    std::vector<unsigned long> part = std::vector<unsigned long>(static_cast<std::size_t>(DEV_PART_MAX), 0xFFFFFFFF);
};

inline std::string table(char marker, const std::vector<unsigned long>& entries) {
    std::string bytes = marker + le32(entries.size());
    for (const unsigned long entry : entries) {
        bytes += le32(entry);
    }
    return bytes;
}

inline std::string tables(const TABLES& all) {
    return table('\10', all.family) + table('\12', all.device) + table('\13', all.part);
}

inline std::string file(const std::string& body) {
    return MAGIC + STAMP + le32(body.size()) + deflated(body) + std::string(2, '\0');
}

/// A row whose every cell differs from a cleared record, keyed by a family.
inline CELLS sample(const std::string& family = "KESTREL") {
    CELLS row;
    for (std::size_t i = 0; i < COLUMNS.size(); ++i) {
        const std::string kind = COLUMNS[i].kind;
        row.push_back(kind == "STL_STRING" ? "text" + std::to_string(i)
                      : kind == "bool"     ? "TRUE"
                      : kind == "BYTE"     ? std::to_string(i + 100)
                      : kind == "WORD"     ? std::to_string(i + 0x1200)
                      : kind == "DWORD"    ? std::to_string(i + 0x12345600)
                      : kind == "ENUM"     ? "NPCF_BLOCK_CRAM"
                                           : "");
    }
    row[0] = family;
    return row;
}

/// A row with no more than a key.
inline CELLS bare(std::size_t key, const std::string& cell) {
    CELLS row(86);
    row[key] = cell;
    return row;
}

constexpr std::size_t FAMILY = 0, PCF = 1, DEVICE = 2, PART = 3;

/// The 78 rows of a table without fault: every family in order, the generic device and part, four programmer files.
inline std::vector<CELLS> rows() {
    std::vector<CELLS> all;
    for (int family = 1; family <= 72; ++family) {
        all.push_back(bare(FAMILY, family_name(family)));
    }
    all.push_back(bare(DEVICE, "GENERIC"));
    all.push_back(bare(PART, "GENERIC"));
    for (const char* pcf : {"FILE_A", "FILE_B", "FILE_C", "FILE_D"}) {
        all.push_back(bare(PCF, pcf));
    }
    return all;
}

inline std::string joined(const CELLS& cells) {
    std::string line;
    for (std::size_t i = 0; i < cells.size(); ++i) {
        line += (i == 0 ? "" : ",") + cells[i];
    }
    return line;
}

inline CELLS type_row() {
    CELLS row;
    for (const COLUMN& column : COLUMNS) {
        row.emplace_back(column.kind);
    }
    return row;
}

inline CELLS name_row() {
    CELLS row;
    for (const COLUMN& column : COLUMNS) {
        row.emplace_back(column.name);
    }
    return row;
}

inline std::string source(const std::vector<CELLS>& data_rows) {
    std::string text = joined(type_row()) + "\n" + joined(name_row()) + "\n";
    for (const CELLS& row : data_rows) {
        text += joined(row) + "\n";
    }
    return text;
}

}  // namespace dev_info_reference
