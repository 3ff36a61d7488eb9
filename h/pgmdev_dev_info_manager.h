#pragma once

/// \file
/// The device-information database: which programming profile governs a family, a device or a part.
///
/// Conventions of this class:
/// - A violated precondition or a damaged file is reported as an internal error (msg.h) with the module "PGMDEV" and
///   the source file "pgm/pgmdev/pgmdev_dev_info_manager" (copying and listing records:
///   "h/pgmdev_dev_info_manager_auto_export"); the operation ends there, by exception, and leaks nothing. A file with
///   another magic is reported, but does not end it: nothing is loaded. Not found is a result, never an error.
/// - A manager is used by one thread at a time: a look-up, too, changes it. Different managers are independent, except
///   that copies share their arrays.

#include <array>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "dstr.h"
#include "fio.h"
#include "pgmdev_dev_info.h"
#include "pgmdev_export.h"
#include "pgmdev_shares.h"
#include "pgmdev_types.h"

/// A line of the part list.
struct PGMDEV_PGM_PART {
    int part = 0;                                 ///< part number
    DEV_DEVICE_ENUM device = DEV_DEVICE_INVALID;  ///< device that it is sold as
    std::string pcf;                              ///< name of its programmer file
};

class PGMDEV_EXPORT PGMDEV_DEV_INFO_MANAGER {
public:
    /// Records of a valid database: what the compiler accepts, and what searches go over.
    static constexpr DWORD TOTAL_DATABASE_DEVICE = 78;
    /// Members of a record.
    static constexpr DWORD TOTAL_DEVICE_DATABASE_MEMBER = PGMDEV_DEVICE_INFO_MEMBERS.size();

    /// Loads "programmer/pgm_dev_info.pcf" of the device-database directory. With `no_load` nothing is read: such a
    /// manager compiles a source table.
    ///
    /// `debug_mode` lists what was loaded on the debug channel (level 2): 1 every record, 2 the record of each family,
    /// 3 of each device, 4 of each part; 0 nothing.
    PGMDEV_DEV_INFO_MANAGER(bool no_load = false, DWORD debug_mode = 0);  // NOLINT(google-explicit-constructor)

    /// A copy shares the records, the index tables and the part list with its source; they live until the last owner
    /// goes.
    PGMDEV_DEV_INFO_MANAGER(const PGMDEV_DEV_INFO_MANAGER& other);
    PGMDEV_DEV_INFO_MANAGER& operator=(const PGMDEV_DEV_INFO_MANAGER& other);
    ~PGMDEV_DEV_INFO_MANAGER();

    /// The records, which belong to the manager; null when nothing is loaded.
    const PGMDEV_DEVICE_INFO* get_device_database();

    /// A copy of the profile that governs the family, device or part; null when none does. The caller deletes it.
    PGMDEV_DEVICE_INFO* get_db_by_family(DEV_FAMILY_ENUM family);
    PGMDEV_DEVICE_INFO* get_db_by_device(DEV_DEVICE_ENUM device);
    PGMDEV_DEVICE_INFO* get_db_by_part(int part);

    /// Compiles a source table into a packed database, with the help of the part list "h/pgm_parts.txt" of the
    /// installation. The output is written only when everything has succeeded, and replaces an existing file in one
    /// step, or is opened and written, as PGMDEV_FLASH_MANAGER says; the manager then holds what was compiled. A table
    /// that is refused is reported with the condition that it breaks; the debug channel (level 1) and
    /// PGMDEV_DEV_INFO_TABLE say where. For each family without a row a notification is sent
    /// (PGM_COMMON::send_auto_email_file), and compiling goes on.
    void generate_device_database(FIO_PATH csv, FIO_PATH output);

protected:
    // For integrators who derive from this class. Operations that take a bare pointer trust that the buffer behind it
    // holds what is read, or has room for what is written; `index` runs on from call to call. Loading and compiling
    // whole files use the same code with the buffer's bounds.

    /// The names of the members in record order.
    static const std::array<std::string, TOTAL_DEVICE_DATABASE_MEMBER> m_db_name_list;

    // Loading.

    /// Loads a packed database; after a report all is as before.
    void initialize_device_database(FIO_PATH device_file);

    bool parse_database(unsigned char* data, bool generating);        ///< parses an uncompressed body; always false
    void get_database(const BYTE* data, DWORD& index, DWORD record);  ///< reads the members of one record
    void get_table(const BYTE* data, DWORD& index);                   ///< reads the three index tables
    DWORD get_table_size();                                           ///< their size in bytes
    PGMDEV_DEVICE_INFO* copy_database();                  ///< a copy of record m_index; the caller deletes it
    void print_database(DWORD record, std::string name);  ///< lists one record on the debug channel

    // Searching the records one by one; each sets m_index. An invalid identifier is reported unless `allow_invalid`.
    bool search_family(DEV_FAMILY_ENUM family, bool allow_invalid);
    bool search_device(DEV_DEVICE_ENUM device, bool allow_invalid);
    bool search_part(int part, bool allow_invalid);
    bool search_pcf_for_device(DEV_DEVICE_ENUM device);  ///< by the programmer file that the part list gives it
    bool search_pcf_for_part(int part);

    // Compiling.
    DWORD check_device_file(FIO_PATH csv, DWORD& device_count);  ///< checks the layout; the record section's size
    void dump_to_database(BYTE** data, DWORD& index, std::vector<std::string> tokens);  ///< writes one row
    void parse_pgm_parts();                         ///< reads the part list behind what m_pgm_parts holds
    void print_table(BYTE** data, DWORD& index);    ///< computes the index tables, keeps them, and writes them
    DWORD get_dword_from_string(std::string text);  ///< as PGM_COMMON::convert_string_to_dword, empty is 0, with hex

    /// The name of a "family", "device" or "part" as tables spell it; "" for one that tables cannot name. Another type
    /// name is reported, and gives "".
    std::string convert_id_enum_to_string(std::string type_name, DWORD id);

    // Reading packed values.
    DWORD get_dword(const BYTE* data, DWORD& index);
    void get_bool_data(const BYTE* data, DWORD& index, bool* value);
    void get_byte_data(const BYTE* data, DWORD& index, BYTE* value);
    void get_word_data(const BYTE* data, DWORD& index, WORD* value);
    void get_dword_data(const BYTE* data, DWORD& index, DWORD* value);
    void get_string_data(const BYTE* data, DWORD& index, bool allow_empty, std::string* value);
    void confirm_data_type_end(const BYTE* data, DWORD& index);
    void confirm_database_end(const BYTE* data, DWORD& index);

    // Writing packed values.
    void dump_dword_database(BYTE** data, DWORD& index, DWORD value);
    void dump_bool_to_database(BYTE** data, DWORD& index, std::string text);
    void dump_value_to_database(BYTE** data, DWORD& index, std::string text, DWORD count);
    void dump_string_to_database(BYTE** data, DWORD& index, bool allow_empty, std::string text,
                                 PGMDEV_MANAGER_TYPE type);
    void dump_enum_to_database(BYTE** data, DWORD& index, std::string value, std::string type_name);

    // Compression. The results are allocated with new BYTE[]; the caller frees them with delete[]. compress_data gives the
    // first `offset` bytes as they are, and behind them those up to `count` as one zlib stream: `out_count` bytes in all.
    // decompress_data takes a zlib stream of `decompressed_count` bytes, whose contents must have `original_count`.
    WORD calculate_crc16(const unsigned char* data, unsigned long size);  ///< the checksum slot of a file: always 0
    BYTE* compress_data(const BYTE* data, DWORD offset, DWORD count, DWORD& out_count);
    BYTE* decompress_data(const BYTE* data, DWORD decompressed_count, DWORD original_count);

    DWORD m_version = 0;          ///< of the loaded body
    DWORD m_device_count = 0;     ///< records, as the file says
    DWORD m_type_count = 0;       ///< members per record, as the file says
    DWORD m_index = 0;            ///< record that the last search or look-up found; INVALID_DWORD: none
    DWORD m_csv_memory_size = 0;  ///< bytes of the body before the index tables
    PGMDEV_DEVICE_INFO* m_device_database = nullptr;  ///< new[]: the records, cleared ones up to TOTAL_DATABASE_DEVICE
    DWORD m_debug_mode = 0;                           ///< what is listed after loading
    DWORD* m_family_table = nullptr;                  ///< new[]: record index by family, INVALID_DWORD: none
    DWORD* m_device_table = nullptr;                  ///< new[]: record index by device
    DWORD* m_part_table = nullptr;                    ///< new[]: record index by part number
    std::vector<PGMDEV_PGM_PART*> m_pgm_parts;        ///< new: the part list, while compiling

private:
    PGMDEV_DEVICE_INFO* look_up(const DWORD* table, DWORD entry);
    void parse_body(const BYTE* data, QWORD size, bool generating);
    void read_tables(const BYTE* data, QWORD size, DWORD& index);
    void list_loaded();
    bool find_record(DWORD identifier, DWORD limit, DWORD (*identifier_of)(const PGMDEV_DEVICE_INFO&),
                     const char* condition);
    bool find_pcf(const std::string& pcf);
    void compute_tables();
    DWORD generic_position(DEV_FAMILY_ENUM family);
    DWORD family_entry(DEV_FAMILY_ENUM family);
    DWORD device_entry(DEV_DEVICE_ENUM device);
    DWORD part_entry(int part);
    void write_tables(BYTE* data, QWORD size, DWORD& index) const;
    class LOADING;
    void make_tables();
    void release() noexcept;
    std::array<DWORD**, 3> tables();
    void drop_parts(std::size_t kept) noexcept;

    // A deriving class may put arrays (new[]) and parts (new) of its own into the members above, as pgmdev_shares.h says.
    PGMDEV_SHARES<PGMDEV_DEVICE_INFO[]> m_database_shares;
    std::array<PGMDEV_SHARES<DWORD[]>, 3> m_table_shares;
    /// Of the parts that copies share; a copy that takes one out of its list shares it until it goes.
    mutable std::map<PGMDEV_PGM_PART*, PGMDEV_SHARES<PGMDEV_PGM_PART>> m_part_shares;
};
