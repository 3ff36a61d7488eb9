"""What the library reports, refuses and tells besides."""

from __future__ import annotations

import dataclasses
import hashlib
import logging
import operator
import os
import pathlib
import pickle
import subprocess
import sys
from collections.abc import Callable
from typing import Any

import pytest

import pgmdev
from pgmdev import enums, flash, hps, parts, profiles, tables


@pytest.mark.parametrize("name", ["InternalError", "ContainerError", "ContainerBusyError", "flash.SfdpRefusedError"])
def test_a_traceback_names_the_class_that_programs_catch(name: str) -> None:
    error = operator.attrgetter(name)(pgmdev)
    assert f"{error.__module__}.{error.__qualname__}" == f"pgmdev.{name}"
    assert pickle.loads(pickle.dumps(error)) is error


def test_a_missing_database(tmp_path: pathlib.Path, capfd: pytest.CaptureFixture[str]) -> None:
    with pytest.raises(pgmdev.InternalError) as caught:
        flash.load(tmp_path / "none.pcf")
    error = caught.value
    assert error.condition.startswith("FIO_FILE_SYSTEM::exists(")
    assert error.module == "PGMDEV"
    assert error.file == "pgm/pgmdev/pgmdev_flash_manager"
    assert error.line > 0
    assert error.message == f"{error.condition} [PGMDEV, pgm/pgmdev/pgmdev_flash_manager, line {error.line}]"
    assert str(error) == error.message
    assert capfd.readouterr() == ("", "")


def test_damaged_databases(tmp_path: pathlib.Path) -> None:
    damaged = tmp_path / "damaged.pcf"
    for load, whole in ((flash.load, flash.default().path), (profiles.load, profiles.default().path)):
        data = pathlib.Path(whole).read_bytes()
        for spoilt in (b"", data[:40], data[:-1], data[:200] + bytes(20) + data[220:], b"PGMIO_XX" + data[8:]):
            damaged.write_bytes(spoilt)
            with pytest.raises(pgmdev.InternalError):
                load(damaged)


def test_a_database_of_the_other_kind(tmp_path: pathlib.Path) -> None:
    with pytest.raises(pgmdev.InternalError, match="'D' && .* 'M'"):
        profiles.load(flash.default().path)
    with pytest.raises(pgmdev.InternalError):
        tables.dump(profiles.default().path)


def test_a_kind_of_table_that_there_is_not(tmp_path: pathlib.Path) -> None:
    kind: Any = "Flash"
    database = flash.default().path
    source = tmp_path / "table.csv"
    source.write_text(tables.dump_csv(database))
    calls: list[Callable[[], object]] = [
        lambda: tables.check(source, kind),
        lambda: tables.compile(source, tmp_path / "table.pcf", kind),
        lambda: tables.dump(database, kind),
        lambda: tables.dump_csv(database, kind),
    ]
    for call in calls:
        with pytest.raises(ValueError, match="'flash' or 'profile', not 'Flash'"):
            call()
    assert not (tmp_path / "table.pcf").exists()


def test_responses_that_are_none() -> None:
    responses: list[bytes | str] = [b"", "", b"\0" * 257]
    for nothing in responses:
        with pytest.raises(ValueError, match="1 to 256 bytes"):
            flash.identify(nothing)
    with pytest.raises(ValueError, match="'EF401G' is not an identification response: expected pairs of hexadecimal"):
        flash.identify("EF401G")


def test_a_dump_that_is_none() -> None:
    with pytest.raises(flash.SfdpRefusedError) as caught:
        flash.sfdp(b"SFDX" + bytes(100))
    assert (caught.value.offset, caught.value.field) == (3, "signature")
    assert str(caught.value) == caught.value.message
    assert caught.value.expected in caught.value.message


def test_arguments_of_another_type() -> None:
    with pytest.raises(AttributeError):
        flash.show(7)  # type: ignore[arg-type]
    with pytest.raises(TypeError):
        flash.load(7)  # type: ignore[arg-type]
    with pytest.raises(TypeError):
        flash.sfdp("text")  # type: ignore[arg-type]
    with pytest.raises(ValueError, match="memory_id does not take this value"):
        flash.encode(flash.Flash(memory_id=256))
    with pytest.raises(ValueError, match="one to three flash"):
        flash.encode([])
    with pytest.raises(ValueError, match="silicon_id does not take this value: None"):
        flash.encode(dataclasses.replace(flash.load()[0], silicon_id=None))


def test_numbers_are_no_bytes(module_dir: pathlib.Path) -> None:
    """For bytes(3) is three zeros."""
    for ask in (flash.identify, flash.sfdp, lambda number: pgmdev.params.write(pgmdev.params.Block.SFL_FLASH, number)):
        with pytest.raises(TypeError, match="bytes are expected, not the number 3"):
            ask(3)  # type: ignore[operator]
    assert list(module_dir.iterdir()) == []
    of_other_types: list[Any] = [bytearray(b"\xef\x40\x17"), memoryview(b"\xef\x40\x17"), [0xEF, 0x40, 0x17]]
    for response in of_other_types:
        assert flash.identify(response) == flash.identify("EF4017")


def test_a_text_is_no_bytes(module_dir: pathlib.Path) -> None:
    """Identifications may be texts of hexadecimal digits, dumps and blocks may not: who tries is told what to do."""
    told = "bytes are expected, not the text '53 46 44 50'; bytes.fromhex reads hexadecimal digits"
    dump: Any = "53 46 44 50"
    with pytest.raises(TypeError, match=told):
        flash.sfdp(dump)
    with pytest.raises(TypeError, match=told):
        pgmdev.params.write(pgmdev.params.Block.SFL_FLASH, dump)
    assert list(module_dir.iterdir()) == []


def test_nothing_that_counts_is_bytes(module_dir: pathlib.Path) -> None:
    """bytes() takes whatever can be an index for a count."""
    numpy = pytest.importorskip("numpy")

    class Number:
        def __index__(self) -> int:
            return 3

    counting: list[Any] = [True, pgmdev.params.Type.BYTE, Number(), numpy.uint8(3), numpy.array(3)]
    for number in counting:
        with pytest.raises(TypeError, match="bytes are expected, not the number"):
            flash.identify(number)
        with pytest.raises(TypeError, match="bytes are expected, not the number"):
            pgmdev.params.write(pgmdev.params.Block.SFL_FLASH, number)
    assert list(module_dir.iterdir()) == []
    response = numpy.array([0xEF, 0x40, 0x17], numpy.uint8)
    assert flash.identify(response) == flash.identify("EF4017")
    assert flash.identify(response[:1]) == flash.identify("EF")


@pytest.mark.parametrize("number", [-1, 1 << 31, 1 << 32, 1 << 64, 1 << 100])
def test_numbers_that_stand_for_nothing(number: int) -> None:
    assert parts.opn(number) is None
    assert parts.from_hash(number) is None
    assert enums.name(enums.EnumType.SECTOR, number) is None
    assert profiles.for_family(number) is None
    assert profiles.for_device(number) is None
    assert profiles.for_part(number) is None
    assert not hps.set_current(number)


def test_faults_are_values(tmp_path: pathlib.Path) -> None:
    found = tables.check(tmp_path / "none.csv")
    assert not found.ok
    assert [fault.severity for fault in found.faults] == ["fault"]
    table = tmp_path / "table.csv"
    text = tables.dump_csv(flash.default().path)
    table.write_text(text.replace("TRUE", "YES", 1), encoding="utf-8")
    output = tmp_path / "table.pcf"
    found = tables.compile(table, output)
    fault = next(fault for fault in found.faults if fault.severity == "fault")
    line = text.splitlines()[fault.line - 1]
    assert line[fault.column - 1 :].startswith("TRUE")
    assert fault.cell == "YES"
    assert fault.member == "default_dev"
    assert fault.text.startswith(f"{fault.line}:{fault.column}: fault: ")
    assert not output.exists()


def test_nothing_of_another_kind_is_replaced(tmp_path: pathlib.Path) -> None:
    table = tmp_path / "table.csv"
    table.write_text(tables.dump_csv(flash.default().path), encoding="utf-8")
    letter = tmp_path / "letter.txt"
    letter.write_text("Dear reader")
    for victim in (letter, table):
        before = victim.read_bytes()
        with pytest.raises(FileExistsError):
            tables.compile(table, victim)
        assert victim.read_bytes() == before
    output = tmp_path / "out.pcf"
    output.touch()
    assert tables.compile(table, output).ok
    assert tables.compile(table, output).ok
    assert f"source = {table.name}\n" in (tmp_path / "out.pcf.info").read_text()


def test_the_text_beside_a_database_fits_it_at_any_moment(
    tmp_path: pathlib.Path, monkeypatch: pytest.MonkeyPatch
) -> None:
    lines = tables.dump_csv(flash.default().path).splitlines(keepends=True)
    old, new, output = tmp_path / "old.csv", tmp_path / "new.csv", tmp_path / "out.pcf"
    old.write_text("".join(lines[:-1]), encoding="utf-8")
    new.write_text("".join(lines), encoding="utf-8")
    assert tables.compile(new, output).ok
    of_new = output.read_bytes()
    assert tables.compile(old, output).ok
    of_old = output.read_bytes()
    assert of_old != of_new

    def told() -> dict[str, str]:
        text = pathlib.Path(f"{output}.info").read_text()
        return dict(line.split(" = ") for line in text.splitlines())

    def digest(data: bytes) -> str:
        return hashlib.sha256(data).hexdigest()

    compile_flash = pgmdev._pgmdev.compile_flash

    def interrupted(csv: bytes, pcf: bytes) -> None:
        if pcf == os.fsencode(output):
            raise KeyboardInterrupt
        compile_flash(csv, pcf)

    with monkeypatch.context() as patched, pytest.raises(KeyboardInterrupt):
        patched.setattr(pgmdev._pgmdev, "compile_flash", interrupted)
        tables.compile(new, output)
    assert output.read_bytes() == of_old
    assert (told()["database_sha256"], told()["replaces_sha256"]) == (digest(of_new), digest(of_old))

    replace = os.replace
    settled = iter((True, False))

    def full(source: str, target: str) -> None:
        if not next(settled):
            raise OSError("no room")
        replace(source, target)

    with monkeypatch.context() as patched, pytest.warns(UserWarning, match="the database is in its place"):
        patched.setattr(os, "replace", full)
        assert tables.compile(new, output).ok
    assert output.read_bytes() == of_new
    assert (told()["database_sha256"], told()["replaces_sha256"]) == (digest(of_new), digest(of_old))
    assert not pathlib.Path(f"{output}.info.new").exists()

    assert tables.compile(new, output).ok
    assert told()["database_sha256"] == digest(of_new)
    assert "replaces_sha256" not in told()


def test_a_table_that_is_saved_meanwhile_is_not_mixed(tmp_path: pathlib.Path, monkeypatch: pytest.MonkeyPatch) -> None:
    """What is checked is what is told and compiled."""
    lines = tables.dump_csv(flash.default().path).splitlines(keepends=True)
    table, output = tmp_path / "table.csv", tmp_path / "out.pcf"
    table.write_text("".join(lines), encoding="utf-8")
    before = table.read_bytes()
    compile_flash = pgmdev._pgmdev.compile_flash

    def saved_meanwhile(csv: bytes, pcf: bytes) -> None:
        compile_flash(csv, pcf)
        table.write_text("".join(lines[:-1]), encoding="utf-8")

    with monkeypatch.context() as patched:
        patched.setattr(pgmdev._pgmdev, "compile_flash", saved_meanwhile)
        found = tables.compile(table, output)
    told = dict(line.split(" = ") for line in pathlib.Path(f"{output}.info").read_text().splitlines())
    assert list(tables.dump(output)) == list(found.records)
    assert told["source"] == "table.csv"
    assert told["source_sha256"] == hashlib.sha256(before).hexdigest()
    assert told["database_sha256"] == hashlib.sha256(output.read_bytes()).hexdigest()
    assert told["records"] == str(len(found.records))


def test_a_line_feed_in_a_name_makes_no_line_of_the_text(tmp_path: pathlib.Path) -> None:
    """The command tells such names likewise."""
    table, output = tmp_path / "a\nb = c.csv", tmp_path / os.fsdecode(b"x\n\xff.pcf")
    table.write_text(tables.dump_csv(flash.default().path), encoding="utf-8")
    assert tables.compile(table, output).ok
    told = pathlib.Path(f"{output}.info").read_bytes().splitlines()
    assert [line.split(b" = ")[0] for line in told] == [
        b"database", b"database_sha256", b"source", b"source_sha256", b"records", b"payload_size", b"compiled_by"
    ]  # fmt: skip
    assert told[0] == b"database = x\\x0A\\xFF.pcf"
    assert told[2] == b"source = a\\x0Ab = c.csv"


def test_only_files_are_compiled(tmp_path: pathlib.Path) -> None:
    """Nobody waits for a pipe, and no device is replaced."""
    table, pipe = tmp_path / "table.csv", tmp_path / "pipe"
    table.write_text(tables.dump_csv(flash.default().path), encoding="utf-8")
    os.mkfifo(pipe)
    for other in (pathlib.Path("/dev/null"), tmp_path, pipe):
        with pytest.raises(ValueError, match=f"it is no regular file: {other}$"):
            tables.compile(other, tmp_path / "out.pcf")
    for other in (tmp_path, pipe):
        with pytest.raises(FileExistsError, match=f"it is no flash database, and is not replaced: {other}$"):
            tables.compile(table, other)
    assert sorted(each.name for each in tmp_path.iterdir()) == ["pipe", "table.csv"]
    assert [fault.severity for fault in tables.compile(tmp_path / "none.csv", tmp_path / "out.pcf").faults] == ["fault"]


def test_paths(tmp_path: pathlib.Path) -> None:
    """Of any type, in any script, even such that are no text."""
    data = pathlib.Path(flash.default().path).read_bytes()
    for name in ("плата.pcf", os.fsdecode(b"\xff\xfe.pcf")):
        path = tmp_path / name
        path.write_bytes(data)
        assert len(flash.load(path)) == len(flash.load()) == len(flash.load(str(path)))


def test_debug_messages(caplog: pytest.LogCaptureFixture, tmp_path: pathlib.Path) -> None:
    table = tmp_path / "table.csv"
    table.write_text("rubbish")
    with caplog.at_level(logging.DEBUG, "pgmdev"), pytest.raises(pgmdev.InternalError):
        pgmdev._pgmdev.compile_flash(os.fsencode(table), os.fsencode(tmp_path / "out.pcf"))
    assert caplog.records
    assert {record.name for record in caplog.records} == {"pgmdev"}
    assert all(getattr(record, "pgmdev_level") >= 1 for record in caplog.records)


def test_a_failing_listener_stops_nothing(monkeypatch: pytest.MonkeyPatch, tmp_path: pathlib.Path) -> None:
    unraisable: list[object] = []
    monkeypatch.setattr(sys, "unraisablehook", unraisable.append)
    table = tmp_path / "table.csv"
    table.write_text("rubbish")
    pgmdev._pgmdev.listen(lambda level, text: 1 / 0)  # type: ignore[arg-type]
    try:
        with pytest.raises(pgmdev.InternalError):
            pgmdev._pgmdev.compile_flash(os.fsencode(table), os.fsencode(tmp_path / "out.pcf"))
    finally:
        pgmdev._pgmdev.listen(pgmdev._tell)
    assert unraisable


def test_a_message_that_finds_no_memory_stops_nothing(monkeypatch: pytest.MonkeyPatch, tmp_path: pathlib.Path) -> None:
    """The interpreter's error does not take the place of what the library reports."""
    memory = pytest.importorskip("_testcapi")
    monkeypatch.setattr(sys, "unraisablehook", lambda unraisable: None)
    table = tmp_path / "table.csv"
    table.write_text("rubbish")
    csv, pcf = os.fsencode(table), os.fsencode(tmp_path / "out.pcf")

    def listener(level: int, text: str) -> None:
        pass

    pgmdev._pgmdev.listen(listener)
    references = sys.getrefcount(listener)
    try:
        with pytest.raises(pgmdev.InternalError):
            memory.set_nomemory(0, 1)  # the first that is taken, which is for the text
            try:
                pgmdev._pgmdev.compile_flash(csv, pcf)
            finally:
                memory.remove_mem_hooks()
        assert sys.getrefcount(listener) == references
    finally:
        pgmdev._pgmdev.listen(pgmdev._tell)


def test_settings(tmp_path: pathlib.Path) -> None:
    assert set(pgmdev.settings.directories()) == {"install_dir", "db_dir", "module_dir"}
    first = flash.load()
    assert flash.load() is first
    pgmdev.configure(db_dir=tmp_path)
    try:
        assert pgmdev.settings.directories()["db_dir"] == str(tmp_path)
        with pytest.raises(pgmdev.InternalError):
            flash.identify("EF4017")
    finally:
        pgmdev.configure(db_dir="")
    assert flash.load() is not first
    assert list(flash.load()) == list(first)
    before = flash.load()
    with pytest.raises(TypeError):
        pgmdev.configure(settings={"PGM_ALLOW_M45PE": "on", "SOME_KEY": 7})  # type: ignore[dict-item]
    assert len(flash.load()) > len(before)  # by what was set before
    pgmdev.configure(settings={"PGM_ALLOW_M45PE": None})
    pgmdev.configure(settings={"SOME_KEY": "value"})
    assert pgmdev.settings.get("SOME_KEY") == "value"
    pgmdev.configure(settings={"SOME_KEY": None})
    assert pgmdev.settings.get("SOME_KEY") == ""


def test_a_process_ends_quietly() -> None:
    """Debug messages of its last moments included."""
    program = "import logging, atexit; logging.basicConfig(level=10); import pgmdev; pgmdev.flash.identify('EF4017')"
    run = subprocess.run([sys.executable, "-B", "-c", program], capture_output=True, text=True)
    assert (run.returncode, run.stdout) == (0, "")
