"""Boot flash: the lists, and the user's own in the parameter container."""

from __future__ import annotations

import gc
import pathlib
from collections.abc import Callable
from dataclasses import replace
from typing import Any

import pytest
from conftest import Command, without

import pgmdev
from pgmdev import hps, params
from pgmdev.params import Block

NAND = hps.NandFlash(manufacturer_id=0x2C, device_id=0xD3, device_byte_size=1 << 30)
OTHER_NAND = replace(NAND, device_id=0xD5)


@pytest.fixture
def like() -> hps.SpiFlash:
    """A flash that is built in."""
    return hps.spi()[26]


def listed_by(command: Command, module_dir: pathlib.Path, verb: str) -> list[dict[str, Any]]:
    return [without(row, "index") for row in command.ask("--module-dir", str(module_dir), "hps", verb)]


def test_entries_of_the_command(module_dir: pathlib.Path, command: Command) -> None:
    """The lists are those of the first question, until they are read anew."""
    built_in = hps.nand()
    own = ["manufacturer_id=0x2C", "device_id=0xD3", "device_byte_size=0x40000000"]
    command.ask("--module-dir", str(module_dir), "hps", "add", "nand", *own)
    assert hps.nand() == built_in
    hps.reload()
    assert hps.nand() == [replace(NAND, user=True), *built_in]


def test_another_directory_has_other_entries(module_dir: pathlib.Path, tmp_path_factory: Any) -> None:
    hps.add(NAND)
    assert hps.nand()[0].user
    pgmdev.configure(module_dir=tmp_path_factory.mktemp("other"))
    assert not hps.nand()[0].user
    pgmdev.configure(module_dir=module_dir)
    assert hps.nand()[0].user


def test_adding(module_dir: pathlib.Path, command: Command, like: hps.SpiFlash) -> None:
    built_in = hps.spi()
    mine = replace(like, device_name="MINE", silicon_id=0x1940C8)
    first = replace(mine, device_name="FIRST")
    hps.add(mine)
    hps.add(first, before=mine)
    hps.add(like)
    own = [replace(each, user=True) for each in (first, mine, like)]
    assert hps.spi() == [*own, *built_in]
    assert listed_by(command, module_dir, "spi") == [each.asdict() for each in hps.spi()]
    assert not any(each.user for each in hps.nand())


def test_editing_and_removing(module_dir: pathlib.Path, command: Command) -> None:
    built_in = hps.nand()
    hps.add(NAND)
    hps.add(OTHER_NAND)
    mine = hps.nand()[0]
    hps.edit(mine, replace(mine, device_byte_size=1 << 31))
    assert [each.device_byte_size for each in hps.nand()[:2]] == [1 << 31, 1 << 30]
    assert listed_by(command, module_dir, "nand") == [each.asdict() for each in hps.nand()]
    hps.remove(OTHER_NAND)
    hps.remove(hps.nand()[0])
    assert hps.nand() == built_in
    assert params.read(Block.HPS_NAND) is None


def test_what_is_not_the_users_own(module_dir: pathlib.Path, like: hps.SpiFlash) -> None:
    changes: list[Callable[[], None]] = [
        lambda: hps.remove(like),
        lambda: hps.edit(like, replace(like, die_count=2)),
        lambda: hps.add(like, before=like),
        lambda: hps.remove(NAND),
    ]
    for change in changes:
        with pytest.raises(ValueError, match="it is none of the user's own: (Spi|Nand)Flash"):
            change()
    with pytest.raises(TypeError, match="NandFlash cannot take the place of SpiFlash"):
        hps.edit(like, NAND)  # type: ignore[type-var]
    with pytest.raises(TypeError, match="a NandFlash or a SpiFlash is expected, not 'MINE'"):
        hps.add("MINE")  # type: ignore[arg-type]
    assert params.read(Block.HPS_SPI) is None
    assert params.read(Block.HPS_NAND) is None


@pytest.mark.parametrize(
    ("values", "message"),
    [
        ({"device_bit_size": 1000}, "device_bit_size must be a power of two"),
        ({"page_byte": 0}, "page_byte must be a power of two"),
        ({"silicon_id": 0}, "silicon_id must be from 1 to 4294967295"),
        ({"die_count": 256}, "die_count must be from 1 to 255"),
        ({"device_name": "a\0b"}, "device_name must be a text without zero bytes"),
        ({"code_a": 1 << 32}, "code_a does not take this value"),
        ({"device_name": 7}, "device_name does not take this value"),
    ],
)
def test_values_that_no_flash_has(
    module_dir: pathlib.Path, like: hps.SpiFlash, values: dict[str, Any], message: str
) -> None:
    with pytest.raises(ValueError, match=message):
        hps.add(replace(like, **values))
    assert list(module_dir.iterdir()) == []


def test_nothing_is_lost(module_dir: pathlib.Path) -> None:
    """A list with something behind its last whole entry, and one of another version, are left alone."""
    hps.add(NAND)
    whole = params.read(Block.HPS_NAND)
    assert whole is not None
    for other in (whole + b"\1", whole[:-17], b"0" * 32 + whole[32:]):
        params.write(Block.HPS_NAND, other)
        with pytest.raises(pgmdev.ContainerError, match="HPS NAND holds more than this version reads"):
            hps.add(OTHER_NAND)
        assert params.read(Block.HPS_NAND) == other
    container = module_dir / "pgm_flash.ini"
    container.write_bytes(container.read_bytes()[:-1])
    with pytest.raises(pgmdev.ContainerError, match="damaged"):
        hps.add(OTHER_NAND)


@pytest.mark.parametrize("anew", [hps.reload, lambda: pgmdev.configure(settings={})])
def test_the_lists_may_be_read_anew_while_they_are_asked_for(anew: Callable[[], None]) -> None:
    """As a finalizer does it that runs when objects are made of the lists."""
    expected = [hps._values(each) for each in hps.spi()], [hps._values(each) for each in hps.nand()]
    threshold = gc.get_threshold()
    runs: list[str] = []

    def collected(phase: str, info: dict[str, int]) -> None:
        runs.append(phase)
        anew()

    gc.callbacks.append(collected)
    gc.set_threshold(1)
    try:
        asked = [(pgmdev._pgmdev.hps_spi(), pgmdev._pgmdev.hps_nand()) for _ in range(3)]
    finally:
        gc.set_threshold(*threshold)
        gc.callbacks.remove(collected)
    assert runs
    assert [(spi, nand) for (spi, _), (nand, _) in asked] == [expected] * 3


def test_the_current_kind() -> None:
    kind = hps.kinds()[1]
    assert hps.set_current(kind)
    assert hps.current() == kind
    assert hps.set_current(hps.kinds()[0].id)
    assert hps.current() == hps.kinds()[0]
    assert not hps.set_current(None)
    assert hps.current() is None
