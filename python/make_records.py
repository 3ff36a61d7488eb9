"""Writes the module pgmdev.records: a class for each kind of record, with the members of the library's member tables.

    make_records.py EXTENSION_MODULE HEADER_DIRECTORY OUTPUT

The tables tell names, types and units; what a member means stands in the headers, beside or above it.
"""

from __future__ import annotations

import importlib.util
import pathlib
import re
import sys
import textwrap
from types import ModuleType
from typing import NamedTuple

HEAD = '''"""The records of the library, made from its member tables.

All are frozen: they compare, hash, pickle, and turn into dictionaries by `asdict()`.
"""

from __future__ import annotations

from dataclasses import dataclass

from pgmdev._values import Value

__all__ = ["Flash", "HpsKind", "NandFlash", "Profile", "SpiFlash"]
'''
DEFAULTS = {"str": '""', "bool": "False", "int": "0", "str | int | None": "None"}
WIDTH = 116


class Member(NamedTuple):
    name: str
    type: str
    unit: str = ""
    hex: bool = False
    meaning: str = ""  # instead of the header's


OF_THE_USER = Member("user", "bool", meaning="whether it is the user's own, from the parameter container")


class Source(NamedTuple):
    name: str
    structure: str
    header: str
    about: str
    members: list[Member]


def meanings(header: pathlib.Path, structure: str) -> dict[str, str]:
    """What the header says of each member of a structure: behind it, or in the lines above it."""
    text = header.read_text(encoding="utf-8")
    start = re.search(rf"^struct (PGMDEV_EXPORT )?{structure} \{{$", text, re.MULTILINE)
    if start is None:
        raise SystemExit(f"{header}: there is no {structure}")
    said: dict[str, str] = {}
    above: list[str] = []
    for line in text[start.end() : text.index("\n};", start.end())].splitlines():
        if line.lstrip().startswith("/// "):
            above.append(line.strip()[4:])
            continue
        declared = re.match(r"\s+[\w:* ]+?\b(\w+)(?: = [\w:]+)?;(?:\s+///< (.*))?$", line)
        if declared:
            said[declared[1]] = " ".join(above) or declared[2] or ""
        above = []
    return said


def meaning_of(member: Member, source: Source, said: dict[str, str]) -> str:
    """A sentence, with the unit."""
    meaning = (member.meaning or said.get(member.name, "")).rstrip(".")
    if not meaning:
        raise SystemExit(f"{source.header} does not say what {member.name} is")
    meaning = meaning[0].upper() + meaning[1:]
    if member.unit and not re.search(rf"\b{re.escape(member.unit)}\b", meaning):
        meaning += f" [{member.unit}]"
    if member.hex:
        meaning += " (in tables hexadecimal)"
    return meaning + "."


def wrapped(text: str, first: str, others: str) -> list[str]:
    return textwrap.wrap(text, WIDTH, initial_indent=first, subsequent_indent=others)


def class_text(source: Source, headers: pathlib.Path) -> str:
    """The members stand in the text of the class for help(), and behind each of them for editors."""
    said = meanings(headers / source.header, source.structure)
    meaning = {member.name: meaning_of(member, source, said) for member in source.members}
    lines = ["", "", "@dataclass(frozen=True, slots=True)", f"class {source.name}(Value):"]
    lines += wrapped(f'"""{source.about}', "    ", "    ") + [""]
    for name, text in meaning.items():
        lines += wrapped(f"{name}: {text}", "    ", "        ")
    lines += ['    """', ""]
    for member in source.members:
        lines.append(f"    {member.name}: {member.type} = {DEFAULTS[member.type]}")
        lines += wrapped(f'"""{meaning[member.name]}"""', "    ", "    ")
    return "\n".join(lines) + "\n"


def sources(extension: ModuleType) -> list[Source]:
    def of(table: str, *more: Member) -> list[Member]:
        return [Member(*member) for member in getattr(extension, table)] + list(more)

    kinds = [Member("name", "str")] + [Member(name, "int") for name in extension.KIND_MEMBERS]
    return [
        Source("Flash", "PGMDEV_SFL_FLASH_INFO", "pgmdev_sfl_flash_info.h",
               "One serial flash device: how it is recognised, and how it is erased, programmed and protected.",
               of("FLASH_MEMBERS")),
        Source("Profile", "PGMDEV_DEVICE_INFO", "pgmdev_dev_info.h",
               "How the programmer treats a group of devices. Identifiers and enumerators are names; None stands for "
               "none.", of("PROFILE_MEMBERS")),
        Source("NandFlash", "PGMDEV_HPS_NAND_STRUCTURE", "pgmdev_hps_nand_mgr.h",
               "A NAND flash that a hard processor system boots from.", of("NAND_MEMBERS", OF_THE_USER)),
        Source("SpiFlash", "PGMDEV_HPS_SPI_STRUCTURE", "pgmdev_hps_spi_mgr.h",
               "An SPI flash that a hard processor system boots from.", of("SPI_MEMBERS", OF_THE_USER)),
        Source("HpsKind", "PGMDEV_HPS_STRUCTURE", "pgmdev_hps_mgr.h",
               "One kind of hard processor system. Addresses are those of its processors.", kinds),
    ]  # fmt: skip


def load(path: str) -> ModuleType:
    spec = importlib.util.spec_from_file_location("_pgmdev", path)
    if spec is None or spec.loader is None:
        raise SystemExit(f"{path} is no extension module")
    module = importlib.util.module_from_spec(spec)
    spec.loader.exec_module(module)
    return module


def main() -> None:
    extension, headers, output = sys.argv[1:]
    texts = [class_text(source, pathlib.Path(headers)) for source in sources(load(extension))]
    pathlib.Path(output).write_text(HEAD + "".join(texts), encoding="utf-8")


if __name__ == "__main__":
    main()
