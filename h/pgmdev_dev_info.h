#pragma once

/// \file
/// The device programming profile, and the description of its members.
///
/// A profile tells the programmer how a group of devices is treated: the flows and file formats that it supports, JTAG
/// timings, key sizes, the quirks of its active-serial interface, and the numbers behind its bitstreams. It is keyed by
/// exactly one of its first four members; the other three hold the values of "none".

#include <array>
#include <stdexcept>
#include <string>
#include <string_view>
#include <variant>

#include "dstr.h"
#include "pgmdev_cell.h"
#include "pgmdev_manager_type.h"
#include "pgmdev_types.h"

/// One profile. A default-constructed one has empty texts, and 0 or false everywhere else.
struct PGMDEV_DEVICE_INFO {
    /// Family that the profile governs, DEV_FAMILY_INVALID unless keyed by family.
    DEV_FAMILY_ENUM family = DEV_FAMILY_INVALID;
    /// Programmer-file name of the devices that it governs, empty unless keyed by it.
    std::string pcf;
    /// Device that it governs (in a table only the generic one), DEV_DEVICE_INVALID unless keyed by device.
    DEV_DEVICE_ENUM device = DEV_DEVICE_INVALID;
    /// Part that it governs (in a table only the generic one), DEV_PART_INVALID unless keyed by part.
    int part = 0;
    /// Programming files hold the bitstream as the device takes it: it is not converted.
    bool skip_pof_bitstream_conversion = false;
    /// The user memory on the die is programmed without flash options.
    bool no_flash_option_for_unvm = false;
    /// Bitstreams come from the block generator only when its switch is on.
    bool ini_fbgen_flow = false;
    /// Takes partial bitstreams of the old file format.
    bool support_legacy_f2p = false;
    /// Configures from compressed programming files.
    bool support_cpf = false;
    /// Can be programmed in the block-at-a-time flow.
    bool support_ba_flow = false;
    /// Has option bits.
    bool support_ob = false;
    /// Can be configured through a download cable without flash.
    bool support_download_mode = false;
    /// Has a system-level debug hub on its JTAG chain.
    bool support_sld = false;
    /// Configures from an active-serial flash.
    bool support_asc = false;
    /// Switch that enables active serial; empty: needs none.
    std::string support_asc_ini;
    /// Can choose its bitstream for remote update.
    bool support_remote_local_update = false;
    /// Bitstreams need the padding mask of the Quillon controller.
    bool need_quillon_padding_mask = false;
    /// Encryption is offered without a switch.
    bool support_aes_wo_ini = false;
    /// The QCD4 download cable cannot configure it.
    bool unsupported_by_qcd4 = false;
    /// The Quillon configuration controller cannot configure it.
    bool unsupported_by_quillon = false;
    /// The last frame of a bitstream may be short.
    bool allow_partial_frame = false;
    /// JTAG waits in Run-Test/Idle while the device initialises.
    bool jtag_program_initialize_in_rti = false;
    /// JTAG releases the auto-programming function before configuring.
    bool issue_apf_disengage = false;
    /// Time the device needs to clear its memory before it takes data.
    DWORD jtag_program_initialize_microsec = 0;
    /// Idle bits before the bitstream.
    DWORD jtag_configuration_prepad_bits = 0;
    /// Clock cycles after the bitstream until the device runs.
    DWORD jtag_program_startup_tck = 0;
    /// Length of the key fuse register.
    DWORD aes_n_fuse_bits = 0;
    /// First key bit in that register.
    DWORD aes_fuse_bit_location = 0;
    /// Length of a key kept without power.
    DWORD aes_n_nv_key_bits = 0;
    /// Length of a key kept on battery.
    DWORD aes_n_v_key_bits = 0;
    /// Length of the answer to a key check.
    DWORD aes_n_verify_bits = 0;
    /// Length of the initialisation vector.
    DWORD n_iv_bits = 0;
    /// Family whose key-programming algorithm applies; INVALID_DWORD: none.
    DWORD ekp_alg_family = 0;
    /// Configuration clocks for each bit of a compressed passive-serial bitstream.
    BYTE ps_cmp_dclk_ratio = 0;
    /// Configuration clocks for each byte, compressed, 8 bits wide.
    BYTE fpp_cmp_dclk_ratio = 0;
    /// Configuration clocks for each word, compressed, 16 bits wide; 0: no such mode.
    BYTE fppx16_cmp_dclk_ratio = 0;
    /// Configuration clocks for each word, compressed, 32 bits wide; 0: no such mode.
    BYTE fppx32_cmp_dclk_ratio = 0;
    /// First block of the bitstream that is compressed; INVALID_DWORD: none.
    DWORD cmp_fbgen_start_block = 0;
    /// Last block that is compressed; INVALID_DWORD: none.
    DWORD cmp_fbgen_end_block = 0;
    /// Compressed bitstreams are padded to a multiple of this.
    DWORD cmp_end_padding_alignement = 0;
    /// That padding is ones, not zeros.
    bool cmp_end_pad_with_one = false;
    /// Takes programming files for partial reconfiguration.
    bool support_prpof = false;
    /// JTAG needs the factory instruction before private ones.
    bool need_factory_instr = false;
    /// JTAG configures the pins before boundary scan.
    bool need_config_io_instr = false;
    /// Clock cycles to wait after that.
    DWORD n_tck_ticks_after_config_io = 0;
    /// Programmed through packets, not through registers.
    bool advanced_family = false;
    /// The configuration block samples active-serial data late.
    bool as_cb_hold_time_issue = false;
    /// The configuration block sends 4-byte addresses.
    bool as_cb_4byte_addressing = false;
    /// The configuration block reads the header first and the rest from a second address.
    bool as_read_in_two_steps = false;
    /// Second address of such a read.
    DWORD as_second_offset_addr = 0;
    /// Bytes to insert before the second address, 1 data line.
    DWORD asx1_second_offset_extra_bytes = 0;
    /// Bytes to insert before the second address, 4 data lines.
    DWORD asx4_second_offset_extra_bytes = 0;
    /// Dummy cycles that active serial starts with.
    BYTE asc_dummy_cycle = 0;
    /// Dummy clocks of a fast read, 1 data line, up to 128 Mbit.
    BYTE spi_dummy_clk_x1_128mb = 0;
    /// Dummy clocks of a fast read, 1 data line, from 256 Mbit.
    BYTE spi_dummy_clk_x1_256mb = 0;
    /// Dummy clocks of a fast read, 4 data lines, up to 128 Mbit.
    BYTE spi_dummy_clk_x4_128mb = 0;
    /// Dummy clocks of a fast read, 4 data lines, from 256 Mbit.
    BYTE spi_dummy_clk_x4_256mb = 0;
    /// Flashes that can be chained.
    DWORD supported_max_cascaded_asc_count = 0;
    /// Smallest flash that holds a bitstream; 0: any.
    DWORD as_minimum_flash_density = 0;
    /// Bitstreams do not pass the block generator.
    bool skip_fbgen = false;
    /// Configuration device that the tool proposes; empty: none.
    std::string cfg_dev;
    /// Padding behind the pin settings, configuration over PCI Express.
    DWORD cvp_post_iocsr_padding_cbws = 0;
    /// Padding behind the pin settings, configuration by the processor.
    DWORD hps_post_iocsr_padding_cbws = 0;
    /// Padding before the core, plain, over PCI Express.
    DWORD cvp_pre_core_padding_cbws = 0;
    /// Padding before the core, compressed, over PCI Express.
    DWORD cvp_pre_cmp_core_padding_cbws = 0;
    /// Padding before the core, encrypted, over PCI Express.
    DWORD cvp_pre_enc_core_padding_cbws = 0;
    /// Block with which the core begins, over PCI Express; INVALID_DWORD: no such mode.
    DWORD fbgen_cvp_core_start_block = 0;
    /// Block with which the core begins, by the processor; INVALID_DWORD: no such mode.
    DWORD fbgen_hps_core_start_block = 0;
    /// Remote update works with configuration over PCI Express.
    bool support_ru_cvp = false;
    /// Remote update works with configuration by the processor.
    bool support_ru_hps = false;
    /// The tool can load a factory image into it to reach its flash.
    bool support_fi = false;
    /// That image must be loaded twice.
    bool fi_program_twice = false;
    /// A secure device manager configures it.
    bool use_sdm = false;
    /// Data lines of its configuration flash.
    DWORD flash_width_bits = 0;
    /// Configuration scheme that the tool proposes; INVALID_DWORD: the scheme of the project.
    DWORD default_prog_mode = 0;
    /// Block in which the manager's firmware is stored.
    DWORD cmf_flash_block_size = 0;
    /// Supply voltage of its active-serial pins; empty: not stated.
    std::string asc_voltage;
    /// Configures from SD and MMC cards.
    bool support_sdmmc = false;
    /// Checks signed bitstreams of the vendor-authorised boot.
    bool support_vab = false;
    /// Offers secure data storage.
    bool support_sdos = false;
    /// Devices of one identification code are told apart by a second one.
    bool use_subidcode = false;
    /// Placeholder that nothing reads.
    std::string dummy_string;
    /// Placeholder that nothing reads.
    BYTE dummy_byte = 0;
    /// Placeholder that nothing reads.
    WORD dummy_word = 0;
    /// Placeholder that nothing reads.
    DWORD dummy_dword = 0;
    /// Placeholder that nothing reads.
    bool dummy_bool = false;

    bool operator==(const PGMDEV_DEVICE_INFO&) const = default;
};

/// One member of the record. Together these are its schema: everything that reads, writes, sizes or lists records goes
/// over the table below.
struct PGMDEV_DEVICE_INFO_MEMBER {
    using FIELD = std::variant<DEV_FAMILY_ENUM PGMDEV_DEVICE_INFO::*, DEV_DEVICE_ENUM PGMDEV_DEVICE_INFO::*,
                               int PGMDEV_DEVICE_INFO::*, std::string PGMDEV_DEVICE_INFO::*, bool PGMDEV_DEVICE_INFO::*,
                               BYTE PGMDEV_DEVICE_INFO::*, WORD PGMDEV_DEVICE_INFO::*, DWORD PGMDEV_DEVICE_INFO::*>;

    std::string_view name;
    /// Kind of the column. It says how the member is stored, too, except that identifiers (PGMDEV_MANAGER_DEVID_ENUM)
    /// are stored like enumerators.
    PGMDEV_MANAGER_TYPE kind;
    FIELD field;              ///< where it is
    std::string_view unit;    ///< of its numbers; "" when they count nothing
    PGMDEV_NUMBER_BASE base;  ///< in which people write them

    /// A kind that does not fit the field does not compile.
    constexpr PGMDEV_DEVICE_INFO_MEMBER(std::string_view member_name, PGMDEV_MANAGER_TYPE member_kind,
                                        FIELD member_field, std::string_view member_unit,
                                        PGMDEV_NUMBER_BASE member_base = PGMDEV_NUMBER_BASE::BASE_10)
        : name(member_name), kind(member_kind), field(member_field), unit(member_unit), base(member_base) {
        constexpr std::array FITTING{PGMDEV_MANAGER_DEVID_ENUM, PGMDEV_MANAGER_DEVID_ENUM, PGMDEV_MANAGER_DEVID_ENUM,
                                     PGMDEV_MANAGER_STRING,     PGMDEV_MANAGER_BOOL,       PGMDEV_MANAGER_BYTE,
                                     PGMDEV_MANAGER_WORD,       PGMDEV_MANAGER_DWORD};  // by alternative of the field
        const PGMDEV_MANAGER_TYPE fitting = FITTING[field.index()];
        if (kind != fitting && !(fitting == PGMDEV_MANAGER_STRING && kind == PGMDEV_MANAGER_DEVID_STR) &&
            !(fitting == PGMDEV_MANAGER_DWORD && kind == PGMDEV_MANAGER_ENUM)) {
            throw std::logic_error("the kind of a member does not fit its field");
        }
    }
};

// clang-format off
/// All members in order: the order of the fields in the packed database, and of the columns of the source table.
inline constexpr auto PGMDEV_DEVICE_INFO_MEMBERS = [] {
    using INFO = PGMDEV_DEVICE_INFO;
    return std::to_array<PGMDEV_DEVICE_INFO_MEMBER>({
        {"family", PGMDEV_MANAGER_DEVID_ENUM, &INFO::family, ""},
        {"pcf", PGMDEV_MANAGER_DEVID_STR, &INFO::pcf, ""},
        {"device", PGMDEV_MANAGER_DEVID_ENUM, &INFO::device, ""},
        {"part", PGMDEV_MANAGER_DEVID_ENUM, &INFO::part, ""},
        {"skip_pof_bitstream_conversion", PGMDEV_MANAGER_BOOL, &INFO::skip_pof_bitstream_conversion, ""},
        {"no_flash_option_for_unvm", PGMDEV_MANAGER_BOOL, &INFO::no_flash_option_for_unvm, ""},
        {"ini_fbgen_flow", PGMDEV_MANAGER_BOOL, &INFO::ini_fbgen_flow, ""},
        {"support_legacy_f2p", PGMDEV_MANAGER_BOOL, &INFO::support_legacy_f2p, ""},
        {"support_cpf", PGMDEV_MANAGER_BOOL, &INFO::support_cpf, ""},
        {"support_ba_flow", PGMDEV_MANAGER_BOOL, &INFO::support_ba_flow, ""},
        {"support_ob", PGMDEV_MANAGER_BOOL, &INFO::support_ob, ""},
        {"support_download_mode", PGMDEV_MANAGER_BOOL, &INFO::support_download_mode, ""},
        {"support_sld", PGMDEV_MANAGER_BOOL, &INFO::support_sld, ""},
        {"support_asc", PGMDEV_MANAGER_BOOL, &INFO::support_asc, ""},
        {"support_asc_ini", PGMDEV_MANAGER_STRING, &INFO::support_asc_ini, ""},
        {"support_remote_local_update", PGMDEV_MANAGER_BOOL, &INFO::support_remote_local_update, ""},
        {"need_quillon_padding_mask", PGMDEV_MANAGER_BOOL, &INFO::need_quillon_padding_mask, ""},
        {"support_aes_wo_ini", PGMDEV_MANAGER_BOOL, &INFO::support_aes_wo_ini, ""},
        {"unsupported_by_qcd4", PGMDEV_MANAGER_BOOL, &INFO::unsupported_by_qcd4, ""},
        {"unsupported_by_quillon", PGMDEV_MANAGER_BOOL, &INFO::unsupported_by_quillon, ""},
        {"allow_partial_frame", PGMDEV_MANAGER_BOOL, &INFO::allow_partial_frame, ""},
        {"jtag_program_initialize_in_rti", PGMDEV_MANAGER_BOOL, &INFO::jtag_program_initialize_in_rti, ""},
        {"issue_apf_disengage", PGMDEV_MANAGER_BOOL, &INFO::issue_apf_disengage, ""},
        {"jtag_program_initialize_microsec", PGMDEV_MANAGER_DWORD, &INFO::jtag_program_initialize_microsec, "us"},
        {"jtag_configuration_prepad_bits", PGMDEV_MANAGER_DWORD, &INFO::jtag_configuration_prepad_bits, "bits"},
        {"jtag_program_startup_tck", PGMDEV_MANAGER_DWORD, &INFO::jtag_program_startup_tck, "TCK cycles"},
        {"aes_n_fuse_bits", PGMDEV_MANAGER_DWORD, &INFO::aes_n_fuse_bits, "bits"},
        {"aes_fuse_bit_location", PGMDEV_MANAGER_DWORD, &INFO::aes_fuse_bit_location, "bit position"},
        {"aes_n_nv_key_bits", PGMDEV_MANAGER_DWORD, &INFO::aes_n_nv_key_bits, "bits"},
        {"aes_n_v_key_bits", PGMDEV_MANAGER_DWORD, &INFO::aes_n_v_key_bits, "bits"},
        {"aes_n_verify_bits", PGMDEV_MANAGER_DWORD, &INFO::aes_n_verify_bits, "bits"},
        {"n_iv_bits", PGMDEV_MANAGER_DWORD, &INFO::n_iv_bits, "bits"},
        {"ekp_alg_family", PGMDEV_MANAGER_ENUM, &INFO::ekp_alg_family, ""},
        {"ps_cmp_dclk_ratio", PGMDEV_MANAGER_BYTE, &INFO::ps_cmp_dclk_ratio, "clocks per bit"},
        {"fpp_cmp_dclk_ratio", PGMDEV_MANAGER_BYTE, &INFO::fpp_cmp_dclk_ratio, "clocks per byte"},
        {"fppx16_cmp_dclk_ratio", PGMDEV_MANAGER_BYTE, &INFO::fppx16_cmp_dclk_ratio, "clocks per word"},
        {"fppx32_cmp_dclk_ratio", PGMDEV_MANAGER_BYTE, &INFO::fppx32_cmp_dclk_ratio, "clocks per word"},
        {"cmp_fbgen_start_block", PGMDEV_MANAGER_ENUM, &INFO::cmp_fbgen_start_block, ""},
        {"cmp_fbgen_end_block", PGMDEV_MANAGER_ENUM, &INFO::cmp_fbgen_end_block, ""},
        {"cmp_end_padding_alignement", PGMDEV_MANAGER_DWORD, &INFO::cmp_end_padding_alignement, "bytes"},
        {"cmp_end_pad_with_one", PGMDEV_MANAGER_BOOL, &INFO::cmp_end_pad_with_one, ""},
        {"support_prpof", PGMDEV_MANAGER_BOOL, &INFO::support_prpof, ""},
        {"need_factory_instr", PGMDEV_MANAGER_BOOL, &INFO::need_factory_instr, ""},
        {"need_config_io_instr", PGMDEV_MANAGER_BOOL, &INFO::need_config_io_instr, ""},
        {"n_tck_ticks_after_config_io", PGMDEV_MANAGER_DWORD, &INFO::n_tck_ticks_after_config_io, "TCK cycles"},
        {"advanced_family", PGMDEV_MANAGER_BOOL, &INFO::advanced_family, ""},
        {"as_cb_hold_time_issue", PGMDEV_MANAGER_BOOL, &INFO::as_cb_hold_time_issue, ""},
        {"as_cb_4byte_addressing", PGMDEV_MANAGER_BOOL, &INFO::as_cb_4byte_addressing, ""},
        {"as_read_in_two_steps", PGMDEV_MANAGER_BOOL, &INFO::as_read_in_two_steps, ""},
        {"as_second_offset_addr", PGMDEV_MANAGER_DWORD, &INFO::as_second_offset_addr, "bytes"},
        {"asx1_second_offset_extra_bytes", PGMDEV_MANAGER_DWORD, &INFO::asx1_second_offset_extra_bytes, "bytes"},
        {"asx4_second_offset_extra_bytes", PGMDEV_MANAGER_DWORD, &INFO::asx4_second_offset_extra_bytes, "bytes"},
        {"asc_dummy_cycle", PGMDEV_MANAGER_BYTE, &INFO::asc_dummy_cycle, "clocks"},
        {"spi_dummy_clk_x1_128mb", PGMDEV_MANAGER_BYTE, &INFO::spi_dummy_clk_x1_128mb, "clocks"},
        {"spi_dummy_clk_x1_256mb", PGMDEV_MANAGER_BYTE, &INFO::spi_dummy_clk_x1_256mb, "clocks"},
        {"spi_dummy_clk_x4_128mb", PGMDEV_MANAGER_BYTE, &INFO::spi_dummy_clk_x4_128mb, "clocks"},
        {"spi_dummy_clk_x4_256mb", PGMDEV_MANAGER_BYTE, &INFO::spi_dummy_clk_x4_256mb, "clocks"},
        {"supported_max_cascaded_asc_count", PGMDEV_MANAGER_DWORD, &INFO::supported_max_cascaded_asc_count, "flashes"},
        {"as_minimum_flash_density", PGMDEV_MANAGER_DWORD, &INFO::as_minimum_flash_density, "Mbit"},
        {"skip_fbgen", PGMDEV_MANAGER_BOOL, &INFO::skip_fbgen, ""},
        {"cfg_dev", PGMDEV_MANAGER_STRING, &INFO::cfg_dev, ""},
        {"cvp_post_iocsr_padding_cbws", PGMDEV_MANAGER_DWORD, &INFO::cvp_post_iocsr_padding_cbws, "configuration words"},
        {"hps_post_iocsr_padding_cbws", PGMDEV_MANAGER_DWORD, &INFO::hps_post_iocsr_padding_cbws, "configuration words"},
        {"cvp_pre_core_padding_cbws", PGMDEV_MANAGER_DWORD, &INFO::cvp_pre_core_padding_cbws, "configuration words"},
        {"cvp_pre_cmp_core_padding_cbws", PGMDEV_MANAGER_DWORD, &INFO::cvp_pre_cmp_core_padding_cbws, "configuration words"},
        {"cvp_pre_enc_core_padding_cbws", PGMDEV_MANAGER_DWORD, &INFO::cvp_pre_enc_core_padding_cbws, "configuration words"},
        {"fbgen_cvp_core_start_block", PGMDEV_MANAGER_ENUM, &INFO::fbgen_cvp_core_start_block, ""},
        {"fbgen_hps_core_start_block", PGMDEV_MANAGER_ENUM, &INFO::fbgen_hps_core_start_block, ""},
        {"support_ru_cvp", PGMDEV_MANAGER_BOOL, &INFO::support_ru_cvp, ""},
        {"support_ru_hps", PGMDEV_MANAGER_BOOL, &INFO::support_ru_hps, ""},
        {"support_fi", PGMDEV_MANAGER_BOOL, &INFO::support_fi, ""},
        {"fi_program_twice", PGMDEV_MANAGER_BOOL, &INFO::fi_program_twice, ""},
        {"use_sdm", PGMDEV_MANAGER_BOOL, &INFO::use_sdm, ""},
        {"flash_width_bits", PGMDEV_MANAGER_DWORD, &INFO::flash_width_bits, "bits"},
        {"default_prog_mode", PGMDEV_MANAGER_ENUM, &INFO::default_prog_mode, ""},
        {"cmf_flash_block_size", PGMDEV_MANAGER_DWORD, &INFO::cmf_flash_block_size, "bytes"},
        {"asc_voltage", PGMDEV_MANAGER_STRING, &INFO::asc_voltage, ""},
        {"support_sdmmc", PGMDEV_MANAGER_BOOL, &INFO::support_sdmmc, ""},
        {"support_vab", PGMDEV_MANAGER_BOOL, &INFO::support_vab, ""},
        {"support_sdos", PGMDEV_MANAGER_BOOL, &INFO::support_sdos, ""},
        {"use_subidcode", PGMDEV_MANAGER_BOOL, &INFO::use_subidcode, ""},
        {"dummy_string", PGMDEV_MANAGER_STRING, &INFO::dummy_string, ""},
        {"dummy_byte", PGMDEV_MANAGER_BYTE, &INFO::dummy_byte, ""},
        {"dummy_word", PGMDEV_MANAGER_WORD, &INFO::dummy_word, ""},
        {"dummy_dword", PGMDEV_MANAGER_DWORD, &INFO::dummy_dword, ""},
        {"dummy_bool", PGMDEV_MANAGER_BOOL, &INFO::dummy_bool, ""},
    });
}();
// clang-format on

/// The stamp of the source table with these members: 32 hexadecimal digits that change when the members do. A database of
/// another stamp is refused. That of the library that a program runs with: `PGMDEV_VERSION::dev_info_stamp`.
inline constexpr std::string_view PGMDEV_DEV_INFO_CSV_MD5 = "6d91639bb2165ce50a6e050711c1137f";
