"""A row of the table from a fact: what the fact states, and by rule what it does not."""

import re

import rules
from flash_table import Row

CONTINUATION = 0x7F


def name_of(fact):
    for pattern, name in rules.NAMES:
        if re.match(pattern, fact.device):
            return re.sub(pattern, name, fact.device)
    return fact.device


def maker_of(fact):
    return rules.MAKERS.get(fact.maker, fact.maker)


def compared_bytes(response):
    """(byte, position) for capacity, type and maker: the bytes that the walk compares."""
    if response[0] == CONTINUATION and len(response) > 3:
        return (response[3], 3), (response[0], 0), (response[1], 1)
    if response[0] == CONTINUATION:
        return (response[2], 2), (response[0], 0), (response[1], 1)
    return (response[2], 2), (response[1], 1), (response[0], 0)


class Candidate:
    """The row that a fact would make, and which groups of members it does state."""

    def __init__(self, fact):
        self.fact = fact
        self.name = name_of(fact)
        self.stated = {"identification"}
        self.row = Row()
        stack = rules.first_match(rules.STACKS, fact.device)
        self.bits = stack[0] if stack else fact.number("bits")
        self.dies = stack[1] if stack else self.find_dies()
        self.mbit = (self.bits or 0) // rules.MBIT

    def find_dies(self):
        ruled = rules.first_match(rules.DIES, self.fact.device)
        return ruled[0] if ruled else self.fact.number("dies") or 1

    def can_be_row(self):
        return self.bits is not None

    def build(self):
        fact, row = self.fact, self.row
        row.update(manufacturer_name=maker_of(fact), device_name=self.name, silicon_id="FALSE", default_dev="TRUE",
                   ini="NONE", half_size="FALSE", unprotect_value="0x00")
        pairs = zip(("memory_id", "memory_type", "mfc_id"), compared_bytes(fact.response))
        for column, (byte, position) in pairs:
            row[column] = "0x%02X" % byte
            row[column + "_index"] = str(position)
        self.fill_geometry()
        row["asc_voltage"] = self.voltage()
        self.fill_protection()
        self.fill_flags()
        self.fill_times()
        return row

    def fill_geometry(self):
        fact, row = self.fact, self.row
        listed = fact.number("sector_bytes")
        ruled = rules.first_match(rules.SECTORS, fact.device)
        sector = ruled[0] if ruled else listed or 65536
        if sector == listed and self.bits == fact.number("bits"):
            self.stated.add("geometry")
        row["orvane_id"] = str(rules.density_class(self.bits))
        row["die_count"] = str(self.dies)
        row["device_bit_size"] = str(self.bits)
        row["device_sector_byte"] = str(sector)

    def voltage(self):
        fact = self.fact
        for note, volts in rules.LISTED_VOLTAGES:
            if fact.says(note):
                self.stated.add("voltage")
                return volts
        known = rules.first_match(rules.VOLTAGE, fact.device)
        if fact.voltage and (not known or known[0] == fact.voltage):
            self.stated.add("voltage")
            return "%.1fV" % fact.voltage
        return "%.1fV" % (known or rules.first_match(rules.VOLTAGE_NOT_LISTED, fact.device))[0]

    def fill_protection(self):
        fact = self.fact
        ruled = next((mask, steps, bit) for pattern, least, mask, steps, bit in rules.PROTECTION
                     if re.match(pattern, self.name) and self.mbit >= least)
        bit = next((bit for note, bit in rules.TOP_BOTTOM_NOTES if fact.says(note)), 255)
        self.says_top_bottom = bit != 255
        mask, value = fact.mask, fact.all_protected
        too_few = mask == 0x1C and ruled[0] == 0x3C and fact.says(rules.ONE_TOOL_S_MASK)
        if mask is None or too_few or re.match(rules.PROTECTION_IS_KNOWN, self.name):
            mask, value, steps, bit = ruled[0], ruled[0], ruled[1], ruled[2]
        else:
            self.stated.add("protection")
            micron = mask == 0x5C and fact.flag_status
            steps = 15 if micron else rules.DIVISIONS.get(mask, 255)
            if bit == 255 and mask == ruled[0]:
                bit = ruled[2]
        self.row.update(protection_mask="0x%02X" % mask, protection_value="0x%02X" % value,
                        protection_division=str(steps), bottom_value=str(bit))

    def fill_flags(self):
        fact, row, name = self.fact, self.row, self.name
        big = self.bits > 128 * rules.MBIT
        sector = int(row["device_sector_byte"])
        no_quad = re.match(rules.NO_QUAD_READ, name) or fact.says(rules.OCTAL_NOTE)
        quad = self.mbit >= 128 and sector % 4096 == 0 and row["asc_voltage"] in ("1.8V", "3.3V") and not no_quad
        for column, value in (
            ("extended_mode", big),
            ("byte4_addressing", big),
            ("micron_flow", fact.flag_status and row["manufacturer_name"] == "Micron"),
            ("flag_status", fact.flag_status),
            ("spansion_flow", fact.response[0] == 0x01),
            ("startup_protected", re.match(rules.STARTUP_PROTECTED, name)),
            ("aai_mode", re.match(rules.AAI_MODE, name)),
            ("sdm_support", quad),
        ):
            row[column] = "TRUE" if value else "FALSE"
        self.stated.add("opcodes")

    def fill_times(self):
        fact, row = self.fact, self.row
        sector, page, per_mbit = rules.first_match(rules.TIMES, row["manufacturer_name"], self.name)
        stated = [fact.number(c) for c in ("chip_erase_s_max", "sector_erase_s_max", "page_program_us_max")]
        if all(stated):
            self.stated.add("times")
        erase = stated[1] or sector
        all_sectors = self.bits // 8 // int(row["device_sector_byte"]) * erase
        chip = stated[0] * self.dies if stated[0] else max(1, min(round(per_mbit * self.mbit), all_sectors))
        listed = fact.number("chip_erase_s_listed")
        if listed and chip < listed <= all_sectors:
            chip = listed
        row.update(sec_erase_time=str(erase), program_utime=str(stated[2] or page), bulk_erase_time=str(chip))


def longest_credible(row):
    """Erasing all sectors of a row one by one: what a listed chip-erase time is believed up to."""
    sectors = row.number("device_bit_size") // 8 // row.number("device_sector_byte")
    return sectors * row.number("sec_erase_time")
