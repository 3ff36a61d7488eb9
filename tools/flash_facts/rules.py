"""What the facts do not say, as tables. In each of them the first line that fits decides, and the last ones fit all.
Patterns are regular expressions that must fit from the beginning of the name."""

import re

MBIT = 1 << 20


def first_match(table, *subjects):
    """The values behind the patterns of the first line whose patterns all fit."""
    for line in table:
        patterns, values = line[:len(subjects)], line[len(subjects):]
        if all(re.match(pattern, subject) for pattern, subject in zip(patterns, subjects)):
            return values
    return None


# Chips that are not taken, and why: (device, identification, reason).
LEFT_OUT = [
    (r"", r"00", "the bytes listed answer command 90h or ABh; the chip does not answer 9Fh with them"),
    (r"AT26DF041$", r"", "programs byte by byte or with a sequential command of its own: no record describes that"),
    (r"ALVERSTONE", r"", "the code name of a parallel device"),
    (r"P5Q-", r"", "phase-change memory; its sectors are not those listed"),
    (r"(S79F|S98F|MT25T|S70F.256P|S70FL01GS)", r"", "two chips in one package; each has a response of its own"),
    (r"(IS25D[LW]P|MX25L25835E)", r"", "two dies with a select line each; either answers for itself"),
    (r"(MX66L(256|512|1G)85G|N25W128A11)", r"", "the size listed is not that of the name"),
    (r"W77Q16JW", r"EF8A16", "the capacity byte listed is that of the 32-Mbit chip"),
    (r"MT35XL02GC", r"2C5B", "the type byte listed is that of the 1.8-V chips; the name is that of a 3-V chip"),
    (r"(W77M26F|W25M121AW|MX65|W74M)", r"", "several different chips in one package"),
    (r".*(XXXXXX|ESF|-OSIT|UW2G345GXR)", r"", "an ordering code and not the name of a chip"),
]

# Endings of ordering codes: the common one has the plain name, the others a letter. (pattern, name)
NAMES = [
    (r"(W25[QR]\w+)-IQ$", r"\1"),
    (r"(W25[QR]02\w+)-IM$", r"\1"),
    (r"(W25[QR]\w+)-IM$", r"\1M"),
    (r"(W25Q(80JV|16JW))-DTR$", r"\1M"),
    (r"(W25H\w+)-(AM|DTR)$", r"\1"),
    (r"S25SL(004A)$", r"S25FL\1"),
    (r"(2[56][PVW]F0\d\d\w*)$", r"SST\1"),
]

# Makers as the table spells them. (as listed, as in the table)
MAKERS = {
    "Adesto-Tech": "Atmel", "Microchip": "SST", "chuangfeixin": "Chuangfeixin",
    "ATO-Solution": "ATO", "Terra-Semiconductor": "Terra", "PARAGON": "Paragon", "YUCHUANG": "Yuchuang",
}

# What the erase command of the row erases, where lists give one block of several or that of another command.
# (device, bytes)
SECTORS = [
    (r"(SST)?26[VW]F", 4096),
    (r"(MT35|IS25[LW]X)", 131072),
    (r"S[23]5HL256T", 262144),
    (r"EN25S16$", 65536),
]

# Nominal supply where a family's is well known and the lists contradict it or do not say. (device, volts)
VOLTAGE = [
    (r"(GD25L|GD55L|GD25NF|MX(25|66|77)U|MX25S|FM25M|N25Q\w*A1?11|N25Q008A11|MT25QU|MT35XU|S25[FH]S|S28HS|S70FS)", 1.8),
    (r"(SST26WF|DS25M|XT25Q|XT55Q|FM25W64|W25H\w*NW|W77T|W35T)", 1.8),
]
VOLTAGE_NOT_LISTED = [
    (r"(MX78U|M[XD]25[U])", 1.8),
    (r"", 3.3),
]
LISTED_VOLTAGES = [("listed as 1.2 V", "1.2V")]  # notes that say more than the voltage cell

# Dies where the lists do not say, or count a stack as one chip. (device, dies)
DIES = [
    (r"(MT35X[LU]01G|S28H[LS]02GT|W25[QH]01[JN])", 2),
    (r"(MT35X[LU]02G|W25[QH]02[JN])", 4),
    (r"W25M256JV", 2),
    (r"MT25Q[LU]256", 1),
]

# A stack of which the lists give one die. (device, bits, dies)
STACKS = [
    (r"GD25S51[23]MD", 512 * MBIT, 2),
]

# Upper limits where no source gives any: the longest that chips of the family or class are known for.
# (maker, device, seconds for a sector, microseconds for a page, seconds per Mbit for the chip)
TIMES = [
    (r"Winbond", r"W25P", 3, 5000, 2.5),
    (r"Winbond", r"(W25[QRH](512|0[12])|W35T|W77[QT](51|01|02))", 3, 4224, 5.25),
    (r"Winbond", r"", 2, 3000, 1.57),
    (r"GigaDevice", r"", 3, 2400, 1.57),
    (r"Macronix", r"MX25R", 4, 10000, 8),
    (r"Macronix", r"MX66\w*[12]G", 5, 3072, 3.5),
    (r"Macronix", r"", 2, 5000, 1.57),
    (r"ISSI", r"IS25[LW]X", 2, 2880, 2.5),
    (r"ISSI", r"IS25[LW]P(512|0[12]G)", 3, 1200, 1.875),
    (r"(ISSI|PMC)", r"", 2, 5000, 1.25),
    (r"Micron", r"MT35", 2, 2880, 2.5),
    (r"Micron", r"(M25P|TS25|ZP25)", 3, 5000, 2.5),
    (r"Micron", r"(M25PE|M45PE)", 5, 5000, 10),
    (r"Micron", r"", 3, 5000, 1.9),
    (r"Spansion", r"S2[58](H|FS256T)", 6, 2175, 1.36),
    (r"Spansion", r"S70FS", 3, 2000, 1.41),
    (r"Spansion", r"S25FL12[789]", 8, 3000, 2),
    (r"Spansion", r"", 3, 3000, 6),
    (r"SST", r"(SST)?26", 1, 2048, 0.1),
    (r"SST", r"(SST|PCT)?25", 1, 5000, 1),
    (r"Atmel", r"(AT25D|AT26)", 1, 3000, 2),
    (r"Atmel", r"", 3, 5000, 2.5),
    (r"(Eon|ESMT|ESI)", r"", 3, 5000, 2),
    (r"", r"", 3, 5000, 2),
]

# A longer time that is only listed, typical or maximum, is believed up to what erasing all sectors one by one takes.
SMALLEST_ERASE_S = 1

# Block-protect bits where the lists give none, or only what one tool writes into the register.
# (device, smallest size in Mbit, mask, steps, top/bottom bit)
PROTECTION = [
    (r"(SST)?26[VW]F", 0, 0x00, 255, 255),
    (r"(AT25D[FLQ]|AT26DF|AT25XE041B)", 0, 0x0C, 255, 255),
    (r"M45PE", 0, 0x00, 255, 255),
    (r"(S25H|S28H|S25FS|S70FS|S35HL)", 0, 0x1C, 7, 255),
    (r"(MX25L|MX25U|MX25[UL][MWR]|MX66|MX77|MX25V|MX75|MX25S|KH25)", 16, 0x3C, 15, 255),
    (r"(W25|W77|W35|GD25|GD55)", 256, 0x3C, 15, 6),
    (r"(W25|W77|W35|GD25|GD55)", 0, 0x1C, 7, 5),
    (r"(IS25|PM25LQ)", 0, 0x3C, 15, 255),
    (r"", 256, 0x3C, 15, 255),
    (r"", 0, 0x1C, 7, 255),
]
# Families whose bits are these whatever a list says: their other bits tell of errors, or of the pin that protects.
PROTECTION_IS_KNOWN = r"((SST)?26[VW]F|AT25D[FLQ]|AT26DF|AT25XE041B|M45PE|S25H|S28H|S25FS|S70FS|S35HL)"
DIVISIONS = {0x0C: 3, 0x1C: 7, 0x3C: 15}
TOP_BOTTOM_NOTES = [("TB is status bit 5", 5), ("TB is status bit 6", 6)]
ONE_TOOL_S_MASK = "mask as written by that tool"

# Members that follow from the family.
STARTUP_PROTECTED = r"((SST|PCT)2[56](?!WF0[48]0B|PF040C)|AT25D[FLQ]|AT26DF|F25L\d+PA|F25L0\d\dA)"
AAI_MODE = r"((SST|PCT)25[VP]F\w+B|SST25WF\d+$|F25L0\d\dA)"
# What has no quad read, for sdm_support: eight-line chips listed for their single line, and older ones.
NO_QUAD_READ = (r"(MX25[UL][MW]|MX66[UL][MW]|MX78|MT35|IS25[LW]X|S28|W35T|W77T|GD25L?X|GD55L?X|ATXP|M25P|S25FL128P|"
                r"S25SL|EN25F|25F)")
OCTAL_NOTE = "octal chip"

# Density classes: (from Mbit, class), the largest first.
DENSITY_CLASSES = [(512, 32), (256, 25), (128, 24), (64, 22), (32, 21), (16, 20), (4, 18), (0, 16)]


def density_class(bits):
    return next(number for least, number in DENSITY_CLASSES if bits >= least * MBIT)
