"""Where facts come from, what each source states, and how good that is."""

# The groups of members that a row of sources.csv judges, and the members of each.
GROUPS = {
    "identification": ["manufacturer_name", "device_name", "silicon_id", "memory_id", "memory_id_index", "memory_type",
                       "memory_type_index", "mfc_id", "mfc_id_index", "default_dev", "ini"],
    "geometry": ["orvane_id", "die_count", "device_bit_size", "device_sector_byte", "half_size"],
    "voltage": ["asc_voltage"],
    "opcodes": ["extended_mode", "micron_flow", "spansion_flow", "aai_mode", "flag_status", "byte4_addressing",
                "sdm_support"],
    "protection": ["startup_protected", "protection_mask", "protection_value", "unprotect_value", "protection_division",
                   "bottom_value"],
    "times": ["bulk_erase_time", "sec_erase_time", "program_utime"],
}

EVERYTHING_BUT_TIMES = "identification geometry voltage opcodes protection"

# (key, begins with, origin, groups that it states, what it is). Sources of one origin are copies or descendants of each
# other and count once.
SOURCES = [
    ("flashrom", "flashrom/flashrom", "flashrom", EVERYTHING_BUT_TIMES, "chip list of flashrom"),
    ("flashprog", "SourceArcade/flashprog", "flashrom", EVERYTHING_BUT_TIMES, "list of flashprog, from flashrom's"),
    ("linux", "torvalds/linux", "linux", "identification geometry opcodes", "chip lists of the Linux kernel"),
    ("linux-fork", "Linux fork", "linux", "identification geometry opcodes", "a fork of the Linux kernel's lists"),
    ("u-boot", "u-boot/u-boot", "linux", "identification geometry opcodes", "chip list of U-Boot, from the kernel's"),
    ("barebox", "barebox/barebox", "linux", "identification geometry opcodes", "chip list of barebox, also from it"),
    ("dediprog", "DediProgSW/SF100Linux", "dediprog", "identification geometry voltage protection",
     "chip list of the SF100 programmer's software"),
    ("imsprog", "bigbigmdm/IMSProg", "asprogrammer", "identification geometry voltage", "chip list of IMSProg"),
    ("usbasp", "nofeletru/UsbAsp-flash", "asprogrammer", "identification geometry voltage", "list of UsbAsp-flash"),
    ("snander", "McMCCRU/SNANDer", "snander", "identification geometry", "chip list of SNANDer"),
    ("openocd", "openocd-org/openocd", "openocd", "identification geometry", "chip list of OpenOCD"),
    ("embeddedsw", "Xilinx/embeddedsw", "embeddedsw", "identification geometry", "list of a QSPI driver's example"),
    ("bflb", "openbouffalo/bflb-mcu-tool", "bflb", "identification geometry", "flash settings of an MCU tool"),
    ("nvm.toml", "adafruit/nvm.toml", "adafruit", "identification geometry", "chip list nvm.toml"),
    ("spiflash", "adafruit/Adafruit_SPIFlash", "adafruit", "identification geometry", "chip list of Adafruit_SPIFlash"),
    ("litespi", "litex-hub/litespi", "litespi", "identification geometry opcodes", "chip list of LiteSPI"),
    ("openfpgaloader", "trabucayre/openFPGALoader", "openfpgaloader", "identification geometry protection",
     "chip list of openFPGALoader"),
    ("sfud", "armink/SFUD", "sfud", "identification geometry", "chip list of SFUD"),
    ("qemu", "qemu/qemu", "qemu", "identification geometry opcodes", "models of QEMU"),
    ("sfdp", "SFDP", "sfdp", "geometry opcodes times", "the chip's own parameter table"),
    ("stm32", "STMicroelectronics/", "stm32", "times", "board support headers for STM32, data-sheet figures"),
    ("smif", "public SMIF", "smif", "times", "public memory-slot configurations for PSoC, data-sheet figures"),
    ("header", "public header", "header", "times", "public board support headers"),
    ("rt-thread", "RT-Thread/rt-thread", "smif", "times", "memory-slot configuration in RT-Thread"),
    ("datasheet", "datasheet", "datasheet", "identification geometry voltage opcodes protection times",
     "the maker's data sheet"),
]

# Classes of evidence, the best first.
CLASSES = {
    "datasheet": "datasheet maximum",
    "sfdp": "chip's own SFDP",
    "two": "two independent public sources",
    "one": "one public source",
    "family": "family rule",
}


def key_of(source):
    """The line of the source table for what a fact names as its source."""
    for line in SOURCES:
        if source.startswith(line[1]):
            return line
    return None


def class_of(keys):
    """The class of evidence of a group that these sources support."""
    by_key = {line[0]: line for line in SOURCES}
    for best in ("datasheet", "sfdp"):
        if best in keys:
            return best
    origins = {by_key[key][2] for key in keys}
    return "two" if len(origins) > 1 else "one" if origins else "family"
