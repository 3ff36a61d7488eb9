"""What becomes of a fact: left out, evidence for a row, an alias, a row reached by its name only, or a new row."""

import os
import re

import rules
from flash_table import Row
from rows import Candidate, longest_credible
from sources import GROUPS, key_of

# Another value of these members drives a chip otherwise, so that it cannot be an alias.
MATERIAL = ["device_bit_size", "device_sector_byte", "die_count", "asc_voltage", "startup_protected", "aai_mode"]
TIMES = [("chip_erase_s_max", "bulk_erase_time"), ("sector_erase_s_max", "sec_erase_time"),
         ("page_program_us_max", "program_utime")]


class Merge:
    def __init__(self, table, aliases, evidence, left_out):
        self.table, self.aliases, self.evidence, self.left_out = table, aliases, evidence, left_out
        self.events = []  # (kind, text)

    def note(self, kind, text):
        self.events.append((kind, text))

    def take(self, fact):
        candidate = Candidate(fact)
        answering = self.table.answer(fact.response)
        known = [row for row in self.table.rows_named(candidate.name) if could_answer(row, fact.response, answering)]
        if known:
            self.strengthen(known[0], candidate)
            self.name_it(fact.device, known[0], "ordering code")
            return
        refusal = self.reason_to_leave_out(candidate)
        if refusal:
            self.left_out[fact.device, fact.identification()] = refusal
            self.note("left out", "%s %s: %s" % (fact.device, fact.identification(), refusal))
            return
        candidate.build()
        if answering is None:
            self.add_row(candidate)
        elif self.table.rows_named(candidate.name):
            self.note("conflict", "%s %s: the name has rows, and %s answers these bytes" % (
                candidate.name, fact.identification(), answering.name))
        elif candidate.name not in self.aliases:
            self.add_name(candidate, answering)

    def reason_to_leave_out(self, candidate):
        fact = candidate.fact
        for device, identification, reason in rules.LEFT_OUT:
            if re.match(device, fact.device) and fact.identification().startswith(identification):
                return reason
        if not candidate.can_be_row():
            return "the size is not given"
        return None

    def strengthen(self, row, candidate):
        """Compares a fact with the row of its name: where they agree, its sources are evidence."""
        if not candidate.can_be_row():
            self.add_evidence(row, candidate, {"identification"})
            return
        theirs = candidate.build()
        agreeing = set()
        for group in candidate.stated - {"times"}:
            members = [m for m in GROUPS[group] if group != "identification" and not same(row[m], theirs[m])]
            different = ["%s %s, listed %s" % (member, row[member], theirs[member]) for member in members]
            if not different or (group == "protection" and same_bits(row, theirs)):
                agreeing.add(group)
            else:
                self.note("conflict", "%s: %s (kept)" % (row.name, "; ".join(different)))
        self.add_evidence(row, candidate, agreeing)
        self.take_times(row, candidate)

    def add_evidence(self, row, candidate, groups):
        for sibling in self.table.rows_named(row.name):
            for source in candidate.fact.sources:
                stated = groups if "(same identification)" not in source else groups & {"identification"}
                for group in sorted(stated):
                    if group != "identification" or sibling is row:
                        self.evidence.add(sibling, group, source)

    def take_times(self, row, candidate):
        """A longer time only waits, a shorter one makes a good chip fail: the longest credible one counts."""
        fact = candidate.fact
        stated = {member: fact.number(column) for column, member in TIMES}
        if all(stated.values()):
            stated["bulk_erase_time"] *= row.number("die_count")
            own_table = [source for source in fact.sources if key_of(source)[0] == "sfdp"]
            if own_table and self.evidence.of(row)["times"]:
                return
            for member, value in stated.items():
                self.raise_time(row, member, value, "stated maximum")
            for source in fact.sources:
                self.evidence.add(row, "times", source)
        listed = fact.number("chip_erase_s_listed")
        if listed and listed > row.number("bulk_erase_time"):
            if listed > longest_credible(row):
                self.note("conflict", "%s: bulk_erase_time %s, listed %d, more than all sectors one by one (kept)" % (
                    row.name, row["bulk_erase_time"], listed))
            else:
                self.raise_time(row, "bulk_erase_time", listed, "listed for %s" % fact.device)

    def raise_time(self, row, member, value, why):
        if value <= row.number(member):
            return
        self.note("change", "%s: %s %s -> %d (%s)" % (row.name, member, row[member], value, why))
        for sibling in self.table.rows_named(row.name):
            sibling[member] = str(value)

    def name_it(self, alias, row, reason):
        if alias != row.name and alias not in self.aliases:
            self.aliases[alias] = (row.name, reason)
            self.note("alias", "%s is %s (%s)" % (alias, row.name, reason))

    def add_name(self, candidate, answering):
        """Another name for an identification that the table answers: an alias, or a row reached by its name only."""
        fact, row = candidate.fact, candidate.row
        sharing = [r for r in self.table.rows
                   if could_answer(r, fact.response, answering) and not self.differences(r, candidate)]
        if sharing:
            best = max(sharing, key=lambda r: (common_start(r.name, candidate.name), r is answering))
            reason = "answers %s as %s does" % (fact.identification(), best.name)
            self.name_it(candidate.name, best, reason)
            self.name_it(fact.device, best, "ordering code")
            self.take_times(best, candidate)
            return
        for column in ("bulk_erase_time", "sec_erase_time", "program_utime"):
            row[column] = str(max(row.number(column), answering.number(column)))
        self.table.insert_after(answering, row)
        different = "; ".join(self.differences(answering, candidate))
        self.finish(candidate, "by name", "%s, whose bytes %s answers" % (different, answering.name))

    @staticmethod
    def differences(row, candidate):
        """In what the record of a row would drive the chip otherwise."""
        theirs = candidate.row
        members = [member for member in MATERIAL if not same(row[member], theirs[member])]
        if candidate.says_top_bottom and row.number("bottom_value") != 255 and not same_bits(row, theirs):
            members += [m for m in ("protection_mask", "bottom_value") if not same(row[m], theirs[m])]
        return ["%s %s not %s" % (member, theirs[member], row[member]) for member in members]

    def add_row(self, candidate):
        row = candidate.row
        if self.table.rows_named(row.name):
            row["default_dev"] = "FALSE"
        place(self.table, row)
        self.finish(candidate, "row", row.recognition())

    def finish(self, candidate, kind, text):
        row, fact = candidate.row, candidate.fact
        self.note(kind, "%s %s: %s" % (row["manufacturer_name"], row.name, text))
        self.add_evidence(row, candidate, candidate.stated)
        self.aliases.pop(row.name, None)
        self.name_it(fact.device, row, "ordering code")


def same(cell, other):
    return cell == other or (cell.startswith("0x") and int(cell, 0) == int(other, 0))


def same_bits(row, theirs):
    """Whether protection is the same but for the top/bottom bit, which lists leave out or count as one of the mask, and
    the sector bit above it."""
    if row["startup_protected"] != theirs["startup_protected"]:
        return False
    top_bottom, listed_bit = row.number("bottom_value"), theirs.number("bottom_value")
    listed, mask = theirs.number("protection_mask"), row.number("protection_mask")
    if listed_bit not in (255, top_bottom):
        return False
    further = 0 if top_bottom == 255 else sum(1 << bit for bit in range(top_bottom, 7))
    return listed & ~further == mask & ~further


def could_answer(row, response, answering):
    """Whether a chip of the row may have answered this, further bytes aside."""
    if not first_bytes_agree(row, response):
        return False
    if answering is not None and row["manufacturer_name"] == answering["manufacturer_name"]:
        return True
    return sum(1 for _, at in row.compared() if at < len(response)) > 1


def first_bytes_agree(row, response):
    """Whether a chip of the row answers these first three bytes."""
    return not row.is_silicon() and all(response[at] == byte for byte, at in row.compared() if at < len(response))


def common_start(a, b):
    return len(os.path.commonprefix([a.upper(), b.upper()]))


def family_of(name):
    match = re.match(r"\d*[A-Z]+\d{2}[A-Z]+|\d*[A-Z]+", name)
    return match.group() if match else name


def place(table, row):
    """Puts a row into its family by size, a new family behind the last of its maker, a new maker above those whose rows
    leave out the first byte, which must stay last."""
    family, maker = family_of(row.name), row["manufacturer_name"]
    late = [entry for entry in table.rows if not entry.compares_maker()]
    barrier = table.position(late[0]) if late else len(table.entries)

    def fits(block):
        above = table.position(block[0]) < barrier
        return block[0]["manufacturer_name"] == maker and (above or any(same_maker_byte(r, row) for r in block))

    blocks = [block for block in table.blocks() if fits(block)]
    for block in blocks:
        if all(r["ini"] == "NONE" for r in block) and any(family_of(r.name) == family for r in block):
            return insert_by_size(table, block, row)
    home = [block for block in blocks if any(same_maker_byte(r, row) for r in block)] or blocks
    if home:
        at = table.position(home[-1][-1]) + 1
        table.entries[at:at] = [None, row]
    else:
        while barrier > 0 and table.entries[barrier - 1] is None:
            barrier -= 1
        table.entries[barrier:barrier] = [None, None, row]
    return None


def same_maker_byte(row, other):
    return row.compared()[-1] == other.compared()[-1]


def insert_by_size(table, block, row):
    plain = [r for r in block if r.compares_maker() and len(r.compared()) == 3 and r.number("mfc_id_index") < 2]
    larger = [r for r in plain if r.number("device_bit_size") > row.number("device_bit_size")]
    if larger and len(plain) == len(block):
        table.insert_before(larger[0], row)
    else:
        table.insert_after(block[-1], row)
