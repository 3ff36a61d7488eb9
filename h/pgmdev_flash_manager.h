#pragma once

/// \file
/// The serial flash database: which flash answered an identification read, and how to drive it.
///
/// Conventions of this class:
/// - A device position is the place of a device in the caller's scan chain, counted from 0.
/// - A violated precondition or a damaged file is reported as an internal error (msg.h) with the module "PGMDEV" and
///   the source file "pgm/pgmdev/pgmdev_flash_manager"; the operation ends there, by exception, and leaks nothing.
///   A file with another magic is reported, but does not end it: nothing is loaded. Not found is a result, never an
///   error.
/// - A manager is used by one thread at a time. Different managers are independent, except that copies share their
///   arrays.

#include <array>
#include <string>
#include <vector>

#include "fio.h"
#include "pgmdev_export.h"
#include "pgmdev_sfl_flash_info.h"
#include "pgmdev_shares.h"
#include "pgmdev_types.h"

class PGMDEV_EXPORT PGMDEV_FLASH_MANAGER {
public:
    /// Members of a record.
    static constexpr DWORD TOTAL_DATABASE_MEMBER = PGMDEV_SFL_FLASH_MEMBERS.size();

    /// Loads "programmer/pgm_flash.pcf" of the device-database directory and creates the map of `device_count` device
    /// positions, all of them unmapped. A `device_count` of 0 is reported after the load. With `empty` nothing is read
    /// and no map is made: such a manager compiles source tables.
    ///
    /// `unused` has no effect. With `print_on_load` every record is listed on standard output after the load.
    PGMDEV_FLASH_MANAGER(bool unused, DWORD device_count, bool empty, bool print_on_load);

    /// A copy shares the records and the map with its source; they live until the last owner goes.
    PGMDEV_FLASH_MANAGER(const PGMDEV_FLASH_MANAGER& other);
    PGMDEV_FLASH_MANAGER& operator=(const PGMDEV_FLASH_MANAGER& other);
    ~PGMDEV_FLASH_MANAGER();

    /// Finds the record that matches what the flash behind a device answered, and maps the device to it. The first
    /// matching record wins. Without a match the device is left unmapped and the result is false.
    ///
    /// With `silicon_id` only records of that kind are considered, and only their silicon-ID byte is compared; without
    /// it only the others, by memory ID, memory type (unless its index is 255) and manufacturer ID. `id_bytes` covers
    /// 256 bytes: a record may name any of them. Pad a shorter response with zeros.
    ///
    /// It looks at one record after another. Who asks often, of records that stay as they are, has PGMDEV_FLASH_INDEX
    /// (pgmdev_flash_candidates.h) find them in the same time however many there are, and set_flash_mapping_index map.
    bool flash_id_database_mapping(bool silicon_id, DWORD device_index, BYTE* id_bytes);

    /// The record index that a device is mapped to. An unmapped device gives INVALID_DWORD when `allow_invalid`, and is
    /// reported otherwise.
    DWORD get_flash_mapping_index(DWORD device, bool allow_invalid);

    /// Maps a device to a record of the caller's choice.
    void set_flash_mapping_index(DWORD device, DWORD index);

    /// The first default record of that device name, without regard to case; null when there is none. The record
    /// belongs to the manager.
    const PGMDEV_SFL_FLASH_INFO* get_default_flash(std::string device_name);

    /// The number of records, and the records themselves, which belong to the manager; 0 and null when empty.
    DWORD get_flash_count();
    const PGMDEV_SFL_FLASH_INFO* get_flash_database();

    /// The members of the record that a device is mapped to (pgmdev_sfl_flash_info.h says what each one means). Asking
    /// for an unmapped device is reported.
    std::string sfl_get_manufacturer_name(DWORD device);
    std::string sfl_get_device_name(DWORD device);
    bool sfl_get_silicon_id(DWORD device);
    BYTE sfl_get_memory_id(DWORD device);
    BYTE sfl_get_memory_id_index(DWORD device);
    BYTE sfl_get_memory_type(DWORD device);
    BYTE sfl_get_memory_type_index(DWORD device);
    BYTE sfl_get_mfc_id(DWORD device);
    BYTE sfl_get_mfc_id_index(DWORD device);
    BYTE sfl_get_orvane_id(DWORD device);
    bool sfl_get_default_dev(DWORD device);
    std::string sfl_get_ini(DWORD device);
    bool sfl_get_extended_mode(DWORD device);
    bool sfl_get_micron_flow(DWORD device);
    bool sfl_get_spansion_flow(DWORD device);
    bool sfl_get_startup_protected(DWORD device);
    bool sfl_get_aai_mode(DWORD device);
    bool sfl_get_flag_status(DWORD device);
    BYTE sfl_get_die_count(DWORD device);
    DWORD sfl_get_device_bit_size(DWORD device);
    DWORD sfl_get_device_sector_byte(DWORD device);
    bool sfl_get_half_size(DWORD device);
    bool sfl_get_byte4_addressing(DWORD device);
    DWORD sfl_get_bulk_erase_time(DWORD device);
    DWORD sfl_get_sec_erase_time(DWORD device);
    DWORD sfl_get_program_utime(DWORD device);
    BYTE sfl_get_protection_mask(DWORD device);
    BYTE sfl_get_protection_value(DWORD device);
    BYTE sfl_get_unprotect_value(DWORD device);
    BYTE sfl_get_protection_division(DWORD device);
    BYTE sfl_get_bottom_value(DWORD device);
    bool sfl_get_sdm_support(DWORD device);
    std::string sfl_get_asc_voltage(DWORD device);

    /// The largest `program_utime`, in microseconds, over all mapped devices. None mapped is reported.
    DWORD sfl_get_chain_longest_program_utime();

    /// Compiles a source table into a packed database. The output is written only when everything has succeeded, and
    /// replaces an existing file in one step. An output that is no regular file, such as a pipe, is opened and written;
    /// so is a file that may be written in a directory that may not, which is not in one step then (fio.h). A table that
    /// is refused is reported with the condition that it breaks; the debug channel (level 1) and PGMDEV_FLASH_TABLE say
    /// where. It is the host that reports a number that is none. An output that cannot be written is reported as
    /// "status".
    void generate_flash_database(FIO_PATH csv_file, FIO_PATH pcf_file);

    /// The console dialogue, on standard input and output, in which a user describes up to three flash devices and
    /// receives them as one encoded text for the configuration value that pgmdev_user_flash.h names.
    void gen_flash_ini();

protected:
    // For integrators who derive from this class. Operations that take a bare pointer trust that the buffer behind it
    // holds what is read, or has room for what is written; `index` runs on from call to call. Loading and compiling
    // whole files use the same code with the buffer's bounds.

    /// The names of the members in record order.
    static const std::array<std::string, TOTAL_DATABASE_MEMBER> m_name_list;

    // Loading.
    void initialize_flash_database(FIO_PATH flash_file);  ///< loads a packed database; after a report all is as before
    bool parse_database(BYTE* payload);                   ///< parses an uncompressed body; the result is always false
    bool get_database(BYTE* payload, DWORD& cursor, DWORD slot);  ///< reads one record; whether it is enabled
    void null_info_database(PGMDEV_SFL_FLASH_INFO* record);       ///< clears a record
    void copy_ini_database();                                     ///< copies m_ini_flash_info into record 0
    void confirm_default_value(DWORD first);  ///< checks that each name among m_flash_count records has one default row
    bool enable_device(DWORD index);          ///< whether a record is enabled, by its `ini`

    // The user's own flash. The messages that these operations write go to standard output.
    std::string encode_ini(std::string text);        ///< packed into printable characters; "" and a message on failure
    std::string decode_ini(std::string encoded);     ///< the way back; "" and a message on failure
    std::string gen_ini_password(std::string text);  ///< the 16 letters that this build signs with
    bool cmp_ini_password(std::string text, std::string password);  ///< whether this build signed that text
    void parse_ext_flash_info();  ///< takes m_ini_flash_info from the configuration; cleared when that gives none
    bool get_string_from_ini(std::string text, std::string* value, QWORD& position);  ///< the next '@'-delimited value
    bool assign_ini(std::string* values);       ///< m_ini_flash_info from a value each, up to the first refused one
    void print_ini_database();                  ///< lists m_ini_flash_info on the debug channel
    bool prompt_flash_info(std::string& body);  ///< asks for one flash; appends it to `body`, on success only

    // Compiling.
    DWORD check_flash_file(FIO_PATH csv_file, DWORD& device_count);  ///< checks the layout; the body's size in bytes
    void dump_to_database(BYTE** buffer, DWORD& index, std::vector<std::string> cells);  ///< writes one row
    void print_database(DWORD index);  ///< lists one record on standard output

    // Reading packed values.
    DWORD get_dword(const BYTE* data, DWORD& index);
    void get_bool_data(const BYTE* data, DWORD& index, bool* value);
    void get_byte_data(const BYTE* data, DWORD& index, BYTE* value);
    void get_word_data(const BYTE* data, DWORD& index, WORD* value);
    void get_dword_data(const BYTE* data, DWORD& index, DWORD* value);
    void get_string_data(const BYTE* data, DWORD& index, std::string* value);
    void confirm_data_type_end(const BYTE* data, DWORD& index);
    void confirm_database_end(const BYTE* data, DWORD& index);

    // Writing packed values.
    void dump_dword_database(BYTE** data, DWORD& index, DWORD value);
    void dump_bool_to_database(BYTE** data, DWORD& index, std::string text);
    void dump_value_to_database(BYTE** data, DWORD& index, std::string text, DWORD count);
    void dump_string_to_database(BYTE** data, DWORD& index, std::string text);

    // Compression. The results are allocated with new BYTE[]; the caller frees them with delete[]. compress_data gives the
    // first `offset` bytes as they are, and behind them those up to `count` as one zlib stream: `out_count` bytes in all.
    // decompress_data takes a zlib stream of `decompressed_count` bytes, whose contents must have `original_count`.
    WORD calculate_crc16(const unsigned char* data, unsigned long size);  ///< the checksum slot of a file: always 0
    BYTE* compress_data(const BYTE* data, DWORD offset, DWORD count, DWORD& out_count);
    BYTE* decompress_data(const BYTE* data, DWORD decompressed_count, DWORD original_count);

    // Conversions.
    bool is_power_of_two(DWORD value);

    /// Signed decimal; "-1" for INVALID_DWORD, and with `byte_value` for 255.
    std::string to_string(DWORD value, bool byte_value);

    /// The low 32 bits of what atoi reads; `in_range` receives whether these are at most `max`.
    DWORD get_number_from_string(std::string text, DWORD max, bool& in_range);

    /// As PGM_COMMON::convert_string_to_dword, not empty, with hex.
    DWORD get_dword_from_string(std::string text, bool* ok);

    bool get_boolean_from_string(std::string text, bool& valid);  ///< "1" or "0"

    DWORD m_print_on_load = 0;               ///< not 0: list every record after the load
    DWORD m_version = 0;                     ///< of the loaded body
    DWORD m_device_count = 0;                ///< device positions
    DWORD m_flash_count = 0;                 ///< valid records
    DWORD m_ini_count = 0;                   ///< 1 while slot 0 is held back for m_ini_flash_info
    DWORD m_type_count = 0;                  ///< members per record, as the file says
    DWORD* m_device_to_flash_map = nullptr;  ///< new[]: record index per device position, INVALID_DWORD: none
    PGMDEV_SFL_FLASH_INFO* m_flash_database = nullptr;  ///< new[]: the records
    PGMDEV_SFL_FLASH_INFO m_ini_flash_info;             ///< the user's own flash; an empty device_name: none

private:
    const PGMDEV_SFL_FLASH_INFO& mapped_record(DWORD device);
    const PGMDEV_SFL_FLASH_INFO& record_at(DWORD index) const;
    void require_mapping(DWORD device) const;
    bool accept_ext_flash_info();
    void parse_body(const BYTE* body, QWORD size);
    bool read_record(const BYTE* body, QWORD size, DWORD& cursor, DWORD slot);
    class LOADED;
    void make_map();
    void release() noexcept;

    // A deriving class may put arrays of its own (new[]) into the two pointers above, as pgmdev_shares.h says.
    PGMDEV_SHARES<PGMDEV_SFL_FLASH_INFO[]> m_database_shares;
    PGMDEV_SHARES<DWORD[]> m_map_shares;
    const PGMDEV_SFL_FLASH_INFO* m_counted_database = nullptr;  ///< the array that m_slots counts
    DWORD m_slots = 0;                                          ///< records, used or not, in the array that was loaded
};
