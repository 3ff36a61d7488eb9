#pragma once

/// \file
/// The device catalog of the source tree, read in the plainest way: the reference for what is generated from it. The
/// catalog is taken to be correct.

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <map>
#include <sstream>
#include <string>
#include <vector>

#include "support/plain_cells.h"

struct PLAIN_DEVICE {
    int number = 0;
    std::string name, family, pcf;  ///< pcf "-": none
    bool has_parts = false;
};

struct PLAIN_PART {
    int number = 0;  ///< 0: not in the device library
    std::string name, package_name, pgm_name, device, family, pcf;
    std::string package, pins, speed, temperature, status;
    bool hidden = false;
    int ordering_index = -1;
};

struct PLAIN_CATALOG {
    std::map<int, std::string> families;
    std::map<std::string, std::string> programmer_families;  ///< by family
    std::vector<PLAIN_DEVICE> devices;
    std::vector<PLAIN_PART> parts;
    std::map<std::string, std::string> aliases;  ///< the part's name by alias
    std::size_t ordering_entries = 0;
};

namespace plain {

inline std::vector<std::vector<std::string>> rows(const std::filesystem::path& path) {
    std::vector<std::vector<std::string>> rows;
    std::ifstream file(path);
    for (std::string line; std::getline(file, line);) {
        std::istringstream words(line.substr(0, line.find('#')));
        std::vector<std::string> row;
        for (std::string word; words >> word;) {
            row.push_back(word);
        }
        if (!row.empty()) {
            rows.push_back(row);
        }
    }
    return rows;
}

/// Replaces the first braces by each alternative in turn, and goes on with what that gives.
inline std::vector<std::string> names(const std::string& pattern) {
    const std::size_t open = pattern.find('{');
    if (open == std::string::npos) {
        return {pattern};
    }
    const std::size_t close = pattern.find('}');
    std::vector<std::string> found;
    for (const std::string& alternative : plain_cells(pattern.substr(open + 1, close - open - 1))) {
        for (const std::string& name : names(pattern.substr(0, open) + alternative + pattern.substr(close + 1))) {
            found.push_back(name);
        }
    }
    return found;
}

/// A code without parentheses, and what a name shows of it.
inline std::pair<std::string, std::string> code_and_suffix(const std::string& item) {
    return item[0] == '(' ? std::pair(item.substr(1, item.size() - 2), std::string()) : std::pair(item, item);
}

using PAIRS = std::map<std::string, std::pair<std::string, std::string>>;

inline PAIRS pairs(const std::filesystem::path& path) {
    PAIRS pairs;
    for (const auto& row : rows(path)) {
        pairs[row[0]] = {row[1], row[2]};
    }
    return pairs;
}

inline void add_parts(PLAIN_CATALOG& catalog, const std::vector<std::string>& row, const PAIRS& packages,
                      const PAIRS& grades) {
    PLAIN_DEVICE& device = catalog.devices.back();
    device.has_parts = true;
    int number = row[1] == "-" ? 0 : std::stoi(row[1]);
    const std::vector<std::string> status = plain_cells(row[5]);
    for (const std::string& pgm_name : names(row[2])) {
        for (const std::string& package_item : plain_cells(row[3])) {
            for (const std::string& grade_item : plain_cells(row[4])) {
                const auto [package, package_suffix] = code_and_suffix(package_item);
                const auto [grade, grade_suffix] = code_and_suffix(grade_item);
                PLAIN_PART part;
                part.number = number;
                part.pgm_name = pgm_name;
                part.package_name = pgm_name + package_suffix;
                part.name = part.package_name + grade_suffix;
                part.device = device.name;
                part.family = device.family;
                part.pcf = device.pcf;
                std::tie(part.package, part.pins) = packages.at(package);
                std::tie(part.speed, part.temperature) = grades.at(grade);
                part.status = status[0];
                part.hidden = status.size() > 1;
                catalog.parts.push_back(part);
                number += number == 0 ? 0 : 1;
            }
        }
    }
}

}  // namespace plain

inline PLAIN_CATALOG read_plain_catalog(const std::filesystem::path& directory) {
    PLAIN_CATALOG catalog;
    for (const auto& row : plain::rows(directory / "families.txt")) {
        catalog.families[std::stoi(row[0])] = row[1];
        catalog.programmer_families[row[1]] = row[2];
    }
    const plain::PAIRS packages = plain::pairs(directory / "packages.txt");
    const plain::PAIRS grades = plain::pairs(directory / "grades.txt");
    for (const auto& row : plain::rows(directory / "devices.txt")) {
        if (row[0] == "device") {
            catalog.devices.push_back({std::stoi(row[1]), row[2], row[3], row[4], false});
        } else if (row[0] == "parts") {
            plain::add_parts(catalog, row, packages, grades);
        } else {
            catalog.aliases[row[1]] = row[2];
        }
    }
    std::map<std::string, int> ordering_indexes;
    for (const auto& row : plain::rows(directory / "ordering-codes.txt")) {
        if (row[0] == "entries") {
            catalog.ordering_entries = std::stoul(row[1]);
            continue;
        }
        int index = std::stoi(row[0]);
        for (const std::string& name : plain::names(row[1])) {
            ordering_indexes[name] = index++;
        }
    }
    for (PLAIN_PART& part : catalog.parts) {
        const auto index = ordering_indexes.find(part.name);
        part.ordering_index = index == ordering_indexes.end() ? -1 : index->second;
    }
    return catalog;
}
