"""Nothing that is asked again and again leaves anything behind."""

from __future__ import annotations

import gc
import pathlib
import sys
import tracemalloc
from collections.abc import Callable
from typing import Any

import pytest
from conftest import DUMPS

import pgmdev
from pgmdev import _pgmdev, flash, hps, names, params, parts, profiles, tables

DUMP = (DUMPS / "W25Q128JV.sfdp").read_bytes()
TEXT = flash.encode(flash.load()[:3])


def _refused(ask: Callable[[], Any]) -> Callable[[], None]:
    def expect() -> None:
        with pytest.raises(Exception):
            ask()

    return expect


QUESTIONS: dict[str, Callable[[], Any]] = {
    "identify": lambda: flash.identify("20BA18"),
    "patterns": lambda: (flash.find("w25q*"), parts.devices("KES*"), parts.families("K*")),
    "odd response": lambda: flash.identify("7F7F7F"),
    "show": lambda: flash.show("w25q64fv"),
    "sfdp": lambda: flash.sfdp(DUMP).record(),
    "decode": lambda: flash.decode(TEXT),
    "encode": lambda: flash.encode(flash.load()[:2]),
    "names": lambda: names.show("KES50C6"),
    "unknown name": lambda: names.show("nothing"),
    "part": lambda: parts.show("KES75F169"),
    "profile": lambda: profiles.for_part("KES50C6"),
    "boot flash": lambda: (hps.spi(), hps.nand(), hps.kinds(), hps.current()),
    "parameters": lambda: params.unpack(params.pack([(params.Type.STRING, "abc")]), [params.Type.STRING]),
    "block": lambda: params.read(params.Block.SFL_FLASH),
    "lock": lambda: _pgmdev.ContainerLock(),
    "enumerators": lambda: pgmdev.enums.names(pgmdev.enums.EnumType.SECTOR),
    "versions": lambda: (pgmdev.versions(), pgmdev.settings.directories()),
    "report": _refused(lambda: flash.load("/no/such/file.pcf")),
    "refused dump": _refused(lambda: flash.sfdp(b"none")),
    "refused record": _refused(lambda: flash.encode(flash.Flash(memory_id=256))),
    "refused boot flash": _refused(lambda: hps.add(hps.SpiFlash())),
    "boot flash as a block": lambda: _pgmdev.hps_nand_block([(1, 2, 4)] * 3),
    "text that is no UTF-8": lambda: params.pack([(params.Type.STRING, "\udcff")]),
    "missing table": lambda: tables.check("/no/such/file.csv"),
}


@pytest.mark.parametrize("ask", QUESTIONS.values(), ids=QUESTIONS.keys())
def test_memory_does_not_grow(ask: Callable[[], Any]) -> None:
    def held_after(rounds: int) -> int:
        for _ in range(rounds):
            ask()
        gc.collect()
        return tracemalloc.get_traced_memory()[0]

    tracemalloc.start()
    try:
        held_after(20)
        before = held_after(1)
        growth = held_after(150) - before
    finally:
        tracemalloc.stop()
    assert growth < 4000  # 150 objects of 40 bytes are more


def test_counts_of_references() -> None:
    watched: list[Any] = [None, True, False, flash.load(), flash.load()[0], flash.Flash, DUMP, TEXT, ""]
    before = [sys.getrefcount(each) for each in watched]
    for ask in QUESTIONS.values():
        for _ in range(20):
            ask()
    gc.collect()
    after = [sys.getrefcount(each) for each in watched]
    for each, first, last in zip(watched, before, after):
        assert abs(last - first) < 20, repr(each)[:60]


def test_databases_go_when_nobody_has_them(tmp_path: pathlib.Path) -> None:
    """Memory that the library itself has taken, which Python does not count."""

    def resident() -> int:
        return int(pathlib.Path("/proc/self/statm").read_text().split()[1]) * 4096

    for _ in range(5):
        flash.load(flash.default().path)
    gc.collect()
    before = resident()
    for _ in range(25):
        flash.load(flash.default().path)
    gc.collect()
    assert resident() - before < 10 * 2**20
