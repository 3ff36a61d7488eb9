#pragma once

/// \file
/// The lists of hard processor systems and of their boot flash, as programs get them.

#include <vector>

#include "hps/edit.h"
#include "hps/flash.h"
#include "terminal/json.h"

/// The kinds of hard processor systems.
std::vector<JSON> hps_kind_rows();

/// The entries of a list, for FLASH = HPS_NAND or HPS_SPI: the user's own first.
template <class FLASH>
std::vector<JSON> hps_flash_rows() {
    const auto& manager = *FLASH::MANAGER::get_mgr();
    const auto& list = manager.get_list();
    std::vector<JSON> rows;
    for (std::size_t i = 0; i < list.size(); ++i) {
        rows.push_back(entry_json<FLASH>(i, *list[i], i < manager.get_user_list().size()));
    }
    return rows;
}
