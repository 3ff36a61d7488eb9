"""Several threads, several interpreters, and the interpreter's lock."""

from __future__ import annotations

import faulthandler
import importlib
import os
import pathlib
import subprocess
import sys
import threading
import time
from collections.abc import Callable
from concurrent.futures import ThreadPoolExecutor
from typing import Any

import pytest

import pgmdev
from pgmdev import flash, names, parts, profiles, tables

QUESTIONS: list[Callable[[], Any]] = [
    lambda: flash.identify("20BA18"),
    lambda: flash.show("w25q64fv"),
    lambda: flash.sfdp((pathlib.Path(__file__).parents[2] / "tests/data/sfdp/W25Q128JV.sfdp").read_bytes()),
    lambda: names.show("KES50C6"),
    lambda: parts.show("KES75F169"),
    lambda: parts.complete("KES50"),
    lambda: profiles.for_part("HERNX55Q240C8"),
    lambda: pgmdev.hps.spi(),
    lambda: tables.check("/no/such/file.csv"),
]


def test_threads_get_the_same_answers() -> None:
    expected = [ask() for ask in QUESTIONS]
    with ThreadPoolExecutor(8) as pool:
        rounds = [[pool.submit(ask) for ask in QUESTIONS] for _ in range(60)]
        for asked in rounds:
            assert [each.result() for each in asked] == expected


def test_threads_load_once() -> None:
    """Whoever comes first; the others wait and get the same."""
    pgmdev.configure()
    start = threading.Barrier(8)

    def load() -> tuple[int, int]:
        start.wait()
        return id(flash.load()), id(profiles.load())

    with ThreadPoolExecutor(8) as pool:
        assert len(set(pool.map(lambda _: load(), range(8)))) == 1


def test_first_questions_may_come_at_once() -> None:
    """In a process of its own, where nothing has been opened yet, with a listener that wants the interpreter's lock."""
    program = """
import logging
from concurrent.futures import ThreadPoolExecutor
import pgmdev
logging.getLogger("pgmdev").setLevel(logging.DEBUG)
logging.getLogger("pgmdev").addHandler(logging.NullHandler())
ask = lambda i: (pgmdev.parts.complete("KES50"), pgmdev.names.show("KES50C6").family, pgmdev.parts.opn_index("KES50C6"),
                 pgmdev.flash.identify("EF4017").record.device_name, len(pgmdev.hps.spi()) > 0)
with ThreadPoolExecutor(8) as pool:
    print(set(pool.map(ask, range(32))))
"""
    run = subprocess.run([sys.executable, "-B", "-c", program], capture_output=True, text=True, timeout=60)
    assert run.stdout == "{('KES50C6', 'KESTREL', 1337, 'W25Q64JV', True)}\n", run.stderr


@pytest.mark.parametrize("level", ["WARNING", "DEBUG"])
def test_a_process_ends_while_threads_still_ask(level: str) -> None:
    """They are in the library, or wait for the interpreter's lock, or are told of debug messages."""
    program = f"""
import logging, threading, time
import pgmdev
logging.getLogger("pgmdev").setLevel("{level}")
logging.getLogger("pgmdev").addHandler(logging.NullHandler())
path = pgmdev.flash.default().path
def ask():
    while True:
        pgmdev.flash.Database(path)
        pgmdev.parts.opn_hash("KES50C6")
        try:
            pgmdev.tables.compile("/no/such/file.csv", "/no/such/file.pcf")
            pgmdev._pgmdev.compile_flash("/no/such/file.csv", "/no/such/file.pcf")
        except pgmdev.InternalError:
            pass
for _ in range(8):
    threading.Thread(target=ask, daemon=True).start()
time.sleep(0.1)
"""
    run = subprocess.run([sys.executable, "-B", "-c", program], capture_output=True, text=True, timeout=60)
    assert (run.returncode, run.stdout, run.stderr) == (0, "", "")


def test_long_operations_release_the_lock(tmp_path: pathlib.Path) -> None:
    """While a table is read from a pipe that nobody writes yet, other threads run. If they did not, nothing would end
    this but a watchdog that needs no interpreter."""
    faulthandler.dump_traceback_later(60, exit=True)
    pipe = tmp_path / "pipe"
    os.mkfifo(pipe)
    reader = threading.Thread(target=pgmdev._pgmdev.flash_from_source, args=(os.fsencode(pipe),))
    reader.start()
    deadline = time.monotonic() + 10
    while time.monotonic() < deadline:
        try:
            writer = os.open(pipe, os.O_WRONLY | os.O_NONBLOCK)  # works once the reader waits
        except OSError:
            time.sleep(0.001)
            continue
        os.write(writer, b"no table")
        os.close(writer)
        break
    reader.join(10)
    faulthandler.cancel_dump_traceback_later()
    assert not reader.is_alive()


def test_a_second_interpreter_is_refused() -> None:
    interpreters = pytest.importorskip("_xxsubinterpreters")  # part of CPython 3.11 and 3.12
    second = interpreters.create()
    try:
        with pytest.raises(Exception, match="main interpreter"):
            interpreters.run_string(second, f"import sys; sys.path[:0] = {sys.path!r}; import pgmdev")
    finally:
        interpreters.destroy(second)
    assert flash.identify("EF4017").sure  # the first one goes on


def test_importing_again_makes_nothing_twice() -> None:
    before = sys.modules["pgmdev._pgmdev"]
    kept = {name: module for name, module in sys.modules.items() if name.split(".")[0] == "pgmdev"}
    for name in kept:
        del sys.modules[name]
    try:
        again = importlib.import_module("pgmdev")
        assert again._pgmdev.FlashDatabase is before.FlashDatabase
        assert again.flash.identify("EF4017").index == flash.identify("EF4017").index
    finally:
        for name in [name for name in sys.modules if name.split(".")[0] == "pgmdev"]:
            del sys.modules[name]
        sys.modules.update(kept)
        pgmdev._pgmdev.listen(pgmdev._tell)
