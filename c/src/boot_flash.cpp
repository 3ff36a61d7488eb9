#include "pgmdev_c_boot_flash.h"

#include <array>

#include "member_tables.h"
#include "pgmdev_hps_mgr.h"
#include "pgmdev_hps_nand_mgr.h"
#include "pgmdev_hps_spi_mgr.h"

namespace {

/// A number of a kind.
struct FIGURE {
    const char* name;
    DWORD PGMDEV_HPS_STRUCTURE::*field;
    const char* unit = "";
    uint32_t base = 10;
};

constexpr std::array FIGURES{
    FIGURE{"core_count", &PGMDEV_HPS_STRUCTURE::core_count},
    FIGURE{"spi_selects", &PGMDEV_HPS_STRUCTURE::spi_selects},
    FIGURE{"nand_data_bits", &PGMDEV_HPS_STRUCTURE::nand_data_bits, "bits"},
    FIGURE{"on_chip_ram_base", &PGMDEV_HPS_STRUCTURE::on_chip_ram_base, "", 16},
    FIGURE{"on_chip_ram_byte", &PGMDEV_HPS_STRUCTURE::on_chip_ram_byte, "bytes"},
    FIGURE{"clock_manager_base", &PGMDEV_HPS_STRUCTURE::clock_manager_base, "", 16},
    FIGURE{"reset_manager_base", &PGMDEV_HPS_STRUCTURE::reset_manager_base, "", 16},
    FIGURE{"pin_multiplex_base", &PGMDEV_HPS_STRUCTURE::pin_multiplex_base, "", 16},
    FIGURE{"watchdog_base", &PGMDEV_HPS_STRUCTURE::watchdog_base, "", 16},
    FIGURE{"uart_base", &PGMDEV_HPS_STRUCTURE::uart_base, "", 16},
    FIGURE{"spi_controller_base", &PGMDEV_HPS_STRUCTURE::spi_controller_base, "", 16},
    FIGURE{"spi_data_base", &PGMDEV_HPS_STRUCTURE::spi_data_base, "", 16},
    FIGURE{"nand_controller_base", &PGMDEV_HPS_STRUCTURE::nand_controller_base, "", 16},
    FIGURE{"nand_data_base", &PGMDEV_HPS_STRUCTURE::nand_data_base, "", 16},
};

struct NAND {
    using RECORD = PGMDEV_HPS_NAND_STRUCTURE;
    using MANAGER = PGMDEV_HPS_NAND_MGR;
    static constexpr PGMDEV_FLASH_INI_ENUM BLOCK = PGMDEV_FLASH_INI_HPS_NAND;
    static constexpr std::string_view STAMP = PGMDEV_HPS_NAND_STAMP;
    static constexpr std::span<const PGMDEV_HPS_MEMBER<RECORD>> MEMBERS{PGMDEV_HPS_NAND_MEMBERS};
};

struct SPI {
    using RECORD = PGMDEV_HPS_SPI_STRUCTURE;
    using MANAGER = PGMDEV_HPS_SPI_MGR;
    static constexpr PGMDEV_FLASH_INI_ENUM BLOCK = PGMDEV_FLASH_INI_HPS_SPI;
    static constexpr std::string_view STAMP = PGMDEV_HPS_SPI_STAMP;
    static constexpr std::span<const PGMDEV_HPS_MEMBER<RECORD>> MEMBERS{PGMDEV_HPS_SPI_MEMBERS};
};

template <class FLASH>
pgmdev_records listed() {
    std::vector<MEMBER> members = members_of(FLASH::MEMBERS);
    members.push_back(flag_member("user"));
    pgmdev_records list(std::move(members));
    const auto& manager = *FLASH::MANAGER::get_mgr();
    for (const auto* record : manager.get_list()) {
        std::vector<DATUM> values = values_of(FLASH::MEMBERS, *record);
        values.push_back(flag_value(list.count() < manager.get_user_list().size()));
        list.add(std::move(values));
    }
    return list;
}

/// Writes a list as a block: the stamp, then the records.
template <class FLASH>
bool write_list(const pgmdev_value* values, std::size_t count) {
    std::vector<BYTE> block(FLASH::STAMP.begin(), FLASH::STAMP.end());
    const auto records = records_from<typename FLASH::RECORD>(FLASH::MEMBERS, values, count);
    for (const typename FLASH::RECORD& record : records) {
        pgmdev_append_hps_record(block, FLASH::MEMBERS, record);
    }
    return records.empty()
               ? PGMDEV_FLASH_INI::write_flash_ini_data(FLASH::BLOCK, nullptr, 0)
               : PGMDEV_FLASH_INI::write_flash_ini_data(FLASH::BLOCK, block.data(), static_cast<DWORD>(block.size()));
}

struct TYPE {
    pgmdev_records (*list)();
    bool (*write)(const pgmdev_value* values, std::size_t count);
    void (*forget)();
};

/// By pgmdev_boot_flash_type.
constexpr std::array<TYPE, PGMDEV_BOOT_FLASH_TYPES> TYPES{{
    {listed<NAND>, write_list<NAND>, NAND::MANAGER::delete_mgr},
    {listed<SPI>, write_list<SPI>, SPI::MANAGER::delete_mgr},
}};

const TYPE& type_at(pgmdev_boot_flash_type type) {
    require_argument(type < TYPES.size(), "there is no type of that number");
    return TYPES.at(type);
}

}  // namespace

pgmdev_status pgmdev_hps_kinds(pgmdev_records** kinds, pgmdev_error** error) {
    return guarded(error, [&]() -> pgmdev_status {
        emptied(kinds);
        std::vector<MEMBER> members{number_member("id", 32, "", 16), text_member("name")};
        for (const FIGURE& figure : FIGURES) {
            members.push_back(number_member(figure.name, 32, figure.unit, figure.base));
        }
        pgmdev_records found(std::move(members));
        for (const PGMDEV_HPS_STRUCTURE& kind : PGMDEV_HPS_MGR::get_kinds()) {
            std::vector<DATUM> values{number_value(kind.id), text_value(kind.name)};
            for (const FIGURE& figure : FIGURES) {
                values.push_back(number_value(kind.*figure.field));
            }
            found.add(std::move(values));
        }
        *kinds = new pgmdev_records(std::move(found));
        return PGMDEV_STATUS_OK;
    });
}

pgmdev_status pgmdev_hps_set_current(uint32_t id, pgmdev_error** error) {
    return guarded(error, [&]() -> pgmdev_status {
        return PGMDEV_HPS_MGR::get_mgr()->set_current_hps(id) ? PGMDEV_STATUS_OK : PGMDEV_STATUS_NOT_FOUND;
    });
}

pgmdev_status pgmdev_hps_current(uint32_t* id, pgmdev_error** error) {
    return guarded(error, [&]() -> pgmdev_status {
        emptied(id);
        const PGMDEV_HPS_STRUCTURE* current = PGMDEV_HPS_MGR::get_mgr()->get_current_hps();
        if (current == nullptr) {
            return PGMDEV_STATUS_NOT_FOUND;
        }
        *id = current->id;
        return PGMDEV_STATUS_OK;
    });
}

pgmdev_status pgmdev_boot_flash_list(pgmdev_boot_flash_type type, pgmdev_records** list, pgmdev_error** error) {
    return guarded(error, [&]() -> pgmdev_status {
        emptied(list);
        *list = new pgmdev_records(type_at(type).list());
        return PGMDEV_STATUS_OK;
    });
}

pgmdev_status pgmdev_boot_flash_set_user(pgmdev_boot_flash_type type, const pgmdev_value* values, size_t count,
                                         pgmdev_error** error) {
    return guarded(error, [&]() -> pgmdev_status {
        if (!type_at(type).write(values, count)) {
            throw FAILURE(PGMDEV_STATUS_NOT_WRITTEN, "the parameter container could not be written");
        }
        return PGMDEV_STATUS_OK;
    });
}

pgmdev_status pgmdev_boot_flash_reread(pgmdev_error** error) {
    return guarded(error, [&]() -> pgmdev_status {
        for (const TYPE& type : TYPES) {
            type.forget();
        }
        return PGMDEV_STATUS_OK;
    });
}
