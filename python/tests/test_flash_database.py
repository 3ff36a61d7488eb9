"""A flash database, the lists beside it, and pieces of its list."""

from __future__ import annotations

import os
import pathlib
import pickle
import shutil
import time

import pytest

from pgmdev import flash, parts


def copy_of_the_database(directory: pathlib.Path) -> None:
    shipped = flash.load().path
    for each in ("", ".aliases.csv", ".sources.csv"):
        shutil.copy(shipped + each, directory / ("flash.pcf" + each))


def test_what_is_read_later_is_where_the_database_was(tmp_path: pathlib.Path, monkeypatch: pytest.MonkeyPatch) -> None:
    copy_of_the_database(tmp_path)
    monkeypatch.chdir(tmp_path)
    chips = flash.load("flash.pcf")
    monkeypatch.chdir("/")
    assert chips.path == "flash.pcf"
    found = chips.show("W25Q64FV")
    expected = flash.show("W25Q64FV")
    assert found and expected
    assert found.evidence == expected.evidence != ()
    assert pickle.loads(pickle.dumps(chips)).records == chips.records


def test_lists_are_read_as_the_command_reads_them(tmp_path: pathlib.Path) -> None:
    copy_of_the_database(tmp_path)
    (tmp_path / "flash.pcf.aliases.csv").write_bytes(
        b"\xef\xbb\xbfalias,device_name,reason\r\n,\nONE,W25Q64JV,\nTWO , w25q64jv,\ta reason \r\nTWO,M25P80,later\n"
    )
    (tmp_path / "flash.pcf.sources.csv").write_bytes(
        b"device_name,compared,times\nW25Q64JV,17@2 40@1 EF@0,one:a\n W25Q64JV ,17@2 40@1 EF@0, two:b+c \n"
    )
    chips = flash.load(tmp_path / "flash.pcf")
    assert chips.show("ONE") is None  # a cell is missing
    found = chips.show("two")
    assert found and found.alias
    assert found.alias == flash.Alias("TWO", "w25q64jv", "a reason")
    assert [each.asdict() for each in found.evidence] == [
        {"group": "times", "evidence": "two independent public sources", "sources": ["b", "c"]}
    ]


def test_a_pipe_in_the_place_of_a_list_is_not_waited_for(tmp_path: pathlib.Path) -> None:
    shutil.copy(flash.load().path, tmp_path / "flash.pcf")
    for name in ("aliases.csv", "sources.csv"):
        list = tmp_path / f"flash.pcf.{name}"
        os.mkfifo(list)
        with pytest.raises(OSError, match="it is no regular file"):
            flash.load(tmp_path / "flash.pcf").show("W25Q64JV")
        list.unlink()
    assert flash.load(tmp_path / "flash.pcf").show("W25Q64JV")


def test_paths_may_be_bytes(tmp_path: pathlib.Path) -> None:
    copy_of_the_database(tmp_path)

    class Place:
        def __fspath__(self) -> bytes:
            return os.fsencode(tmp_path / "flash.pcf")

    chips = flash.load(Place())  # type: ignore[arg-type]
    assert chips.path == str(tmp_path / "flash.pcf")
    assert chips.show("W25Q64FV") == flash.show("W25Q64FV")


def test_many_stars_take_no_more_time() -> None:
    begin = time.monotonic()
    assert flash.find("*" * 60 + "!") == []
    assert flash.find("*a*2" * 15 + "!") == []
    assert time.monotonic() - begin < 5


def test_a_piece_of_a_list_is_such_a_list() -> None:
    found = flash.find("W25Q64*")
    assert type(found[:2]) is type(found)
    assert found[:2] == [found[0], found[1]]
    assert found[-1] == list(found)[-1]
    assert [part.name for part in parts.find("KES75F169*")[:2]] == ["KES75F169C4", "KES75F169C5"]
