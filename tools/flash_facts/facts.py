"""Facts: what public sources say of chips, one chip a line, in the columns that docs/adding-a-flash-chip.md names."""

import csv

COLUMNS = [
    "manufacturer", "device", "jedec_manufacturer", "jedec_type", "jedec_capacity", "ext_id", "bits", "sector_bytes",
    "page_bytes", "erase_opcode", "program_opcode", "read_opcode", "four_byte", "dies", "chip_erase_s_max",
    "sector_erase_s_max", "page_program_us_max", "protect_mask", "protect_all", "flag_status", "voltage", "source",
]
OPTIONAL = ["source_1", "source_2", "chip_erase_s_listed"]
NUMBERS = ["bits", "sector_bytes", "page_bytes", "dies", "chip_erase_s_max", "sector_erase_s_max",
           "page_program_us_max", "chip_erase_s_listed"]


class FactsError(Exception):
    pass


class Fact:
    def __init__(self, cells, place):
        self.cells = cells
        self.place = place
        self.maker = cells["manufacturer"].strip().replace(" ", "-")
        self.device = cells["device"].strip().replace(" ", "-").upper()
        self.note = cells["source"].strip()
        self.sources = [cells[c].strip() for c in ("source_1", "source_2") if cells.get(c, "").strip()]
        identification = "".join(cells[c] for c in ("jedec_manufacturer", "jedec_type", "jedec_capacity", "ext_id"))
        try:
            self.response = bytes.fromhex(identification)
            self.numbers = {c: int(cells[c]) if cells.get(c) else None for c in NUMBERS}
            self.mask = int(cells["protect_mask"], 16) if cells["protect_mask"] else None
            self.all_protected = int(cells["protect_all"], 16) if cells["protect_all"] else self.mask
        except ValueError as error:
            raise FactsError("%s: %s" % (place, error)) from None
        if len(self.response) < 3 or not self.device or not self.maker:
            raise FactsError("%s: expected a manufacturer, a device and at least three bytes" % place)
        for name in (self.maker, self.device):
            if not name.isprintable() or any(c in ',"' or c.isspace() for c in name):
                raise FactsError("%s: %r is no name for a cell of the table" % (place, name))
        self.voltage = float(cells["voltage"]) if cells["voltage"] else None
        self.flag_status = cells["flag_status"] == "1"

    def number(self, column):
        return self.numbers[column]

    def says(self, text):
        return text in self.note

    def identification(self):
        return self.response.hex().upper()


def read_facts(path):
    try:
        with open(path, encoding="utf-8-sig", newline="") as file:
            return facts_of(csv.DictReader(file), path)
    except UnicodeDecodeError:
        raise FactsError("%s: it is no text in UTF-8" % path) from None
    except csv.Error as error:
        raise FactsError("%s: %s" % (path, error)) from None


def facts_of(reader, path):
    missing = [column for column in COLUMNS if column not in (reader.fieldnames or [])]
    if missing:
        raise FactsError("%s: there is no column %s" % (path, ", ".join(missing)))
    unknown = [c for c in reader.fieldnames if c not in COLUMNS + OPTIONAL]
    if unknown:
        raise FactsError("%s: unknown column %s" % (path, ", ".join(unknown)))
    facts = []
    for cells in reader:
        place = "%s:%d" % (path, reader.line_num)
        if None in cells or None in cells.values():
            raise FactsError("%s: expected %d cells" % (place, len(reader.fieldnames)))
        facts.append(Fact(cells, place))
    return facts
