"""Answers are values: frozen, equal, hashable, readable, and they travel."""

from __future__ import annotations

import copy
import dataclasses
import decimal
import fractions
import inspect
import pickle
import re
from typing import Any

import pytest

import pgmdev
from pgmdev import _pgmdev, flash, hps, names, parts, profiles, records, tables
from pgmdev._values import Once, Table, Value


def some_values() -> list[Value]:
    shown = flash.show("W25Q64FV")
    spellings = names.show("KES50C6")
    info = parts.show("KES75F169")
    governing = profiles.for_part("KES50C6")
    assert shown and spellings and info and governing
    values: list[Value] = [shown, shown.record, spellings, info, governing, governing.record]
    values += [flash.identify("20BA18"), flash.identify("012018"), flash.identify("FFFFFF"), hps.kinds()[0]]
    values += [parts.devices()[0], parts.families()[0]]
    return values + [hps.nand()[0], hps.spi()[0], parts.find("KES50*", hidden=True)[0]]


@pytest.mark.parametrize("value", some_values(), ids=lambda value: type(value).__name__)
def test_values(value: Any) -> None:
    same = dataclasses.replace(value)
    assert same == value
    assert same is not value
    assert hash(same) == hash(value)
    assert len({same, value}) == 1
    assert repr(value).startswith(type(value).__name__ + "(")
    first = dataclasses.fields(value)[0].name
    assert f"{first}={getattr(value, first)!r}" in repr(value)
    assert list(value.asdict()) == [field.name for field in dataclasses.fields(value)]
    with pytest.raises(dataclasses.FrozenInstanceError):
        setattr(value, first, getattr(value, first))
    for protocol in range(2, pickle.HIGHEST_PROTOCOL + 1):
        assert pickle.loads(pickle.dumps(value, protocol)) == value
    assert copy.deepcopy(value) == value


def test_records_have_the_members_of_the_tables() -> None:
    for record, table in (
        (records.Flash, _pgmdev.FLASH_MEMBERS),
        (records.Profile, _pgmdev.PROFILE_MEMBERS),
    ):
        assert [(field.name, str(field.type)) for field in dataclasses.fields(record)] == [each[:2] for each in table]
        told = dict(re.findall(r"^(\w+): (.*(?:\n    .*)*)$", inspect.getdoc(record) or "", re.MULTILINE))
        for name, _, unit, _ in table:
            assert told[name].endswith(".")
            assert unit in " ".join(told[name].split())
    assert len(dataclasses.fields(records.Flash)) == 33
    assert records.Flash().die_count == 0


def test_a_table_is_a_list() -> None:
    found = parts.find("KES75F169*")
    assert isinstance(found, list)
    assert [part.name for part in found][:2] == ["KES75F169C4", "KES75F169C5"]
    assert pickle.loads(pickle.dumps(found)) == found
    assert isinstance(flash.load()[10:12], Table)
    assert flash.load()[-1] == list(flash.load())[-1]


def test_who_asks_while_it_is_made_waits_for_nobody() -> None:
    asked: list[int] = []

    def make() -> int:
        asked.append(len(asked))
        return asked[-1] if len(asked) > 1 else once() + 10

    once = Once(make)
    assert [once(), once()] == [1, 1]
    assert asked == [0, 1]


def test_databases_travel_by_their_paths() -> None:
    chips, governing = flash.load(), profiles.load()
    same_chips, same_governing = pickle.loads(pickle.dumps((chips, governing)))
    assert (same_chips.path, list(same_chips)) == (chips.path, list(chips))
    assert same_chips.show("w25q64fv") == chips.show("w25q64fv")
    assert (same_governing.path, list(same_governing)) == (governing.path, list(governing))
    assert same_governing.for_part("KES50C6") == governing.for_part("KES50C6")


def test_frames() -> None:
    import pandas

    frame = flash.load().records.to_frame()
    assert isinstance(frame, pandas.DataFrame)
    assert frame.shape == (len(flash.load()), 33)
    chip = frame[frame.device_name == "W25Q64JV"].iloc[0]
    assert chip.device_bit_size == 64 << 20
    assert frame.device_bit_size.dtype.kind == "i"
    assert frame.flag_status.dtype.kind == "b"
    by_family = parts.find().to_frame().groupby("family").size()
    assert by_family["KESTREL"] == len(parts.find(family="KESTREL"))
    assert list(Table(["one"]).to_frame()[0]) == ["one"]


@pytest.mark.parametrize(
    "some",
    [flash.find(), parts.find("KES75F*"), parts.devices(), parts.families(), hps.spi(), hps.kinds(), profiles.load()],
)
def test_a_frame_of_nothing_has_its_columns(some: Any) -> None:
    columns = list(some[:2].to_frame().columns)
    assert len(columns) > 2
    assert list(some[:0].to_frame().columns) == columns
    assert list(pickle.loads(pickle.dumps(some[:0])).to_frame().columns) == columns


def test_what_is_asked_of_a_frame_may_be_found_nowhere() -> None:
    frame = flash.find("no such flash").to_frame()
    assert len(frame[frame.asc_voltage == "1.8V"]) == 0
    assert len(parts.find("no such part").to_frame().speed) == 0
    assert list(flash.implausible(flash.load()[0]).to_frame().columns) == ["member", "found", "expected"]


def test_numbers_of_a_frame_may_be_asked_for() -> None:
    frame = parts.find("KES75F169C4").to_frame()
    assert not isinstance(frame.number[0], int)
    assert profiles.for_part(frame.number[0]) == profiles.for_part("KES75F169C4")


@pytest.mark.parametrize("number", [decimal.Decimal("2.5"), fractions.Fraction(5, 2), 2.5, "2"])
@pytest.mark.usefixtures("module_dir")
def test_a_fraction_is_no_number_of_a_record(number: Any) -> None:
    with pytest.raises(ValueError, match="die_count does not take this value"):
        flash.implausible(records.Flash(die_count=number))
    with pytest.raises(ValueError, match="page_byte does not take this value"):
        hps.add(dataclasses.replace(hps.spi()[0], page_byte=number))


def test_errors_travel() -> None:
    with pytest.raises(pgmdev.InternalError) as caught:
        flash.load("/no/such/file.pcf")
    again = pickle.loads(pickle.dumps(caught.value))
    assert again.args == caught.value.args
    assert again.message == caught.value.message


def test_everything_named_is_there() -> None:
    for module in (pgmdev, flash, hps, names, parts, profiles, records, tables, pgmdev.enums, pgmdev.params):
        for name in module.__all__:
            assert hasattr(module, name), f"{module.__name__}.{name}"
            if inspect.isroutine(getattr(module, name)) or inspect.isclass(getattr(module, name)):
                assert getattr(module, name).__doc__, name
