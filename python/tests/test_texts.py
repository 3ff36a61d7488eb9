"""Texts that would end early for the library, or that are no UTF-8."""

from __future__ import annotations

import dataclasses
import pathlib
from collections.abc import Callable
from typing import Any

import pytest
from conftest import ROOT

import pgmdev
from pgmdev import enums, flash, names, parts, profiles, settings, tables

WITH_ZERO = "KES50C6\0 and more"

ASKING: list[Callable[[str], Any]] = [
    flash.show,
    flash.suggest,
    flash.find,
    names.show,
    names.package_name,
    names.pgm_name,
    names.pgm_pcfs,
    names.dev_pcfs,
    names.family,
    names.use_full_name,
    names.suggest,
    parts.show,
    parts.complete,
    parts.from_device,
    parts.opn_index,
    parts.opn_hash,
    parts.suggest,
    lambda name: parts.find(family=name),
    profiles.for_family,
    profiles.for_device,
    profiles.for_part,
    lambda name: enums.value(enums.EnumType.SECTOR, name),
]


@pytest.mark.parametrize("ask", ASKING)
def test_a_name_does_not_end_at_a_zero_byte(ask: Callable[[str], Any]) -> None:
    with pytest.raises(ValueError, match="embedded null character"):
        ask(WITH_ZERO)


@pytest.mark.parametrize("ask", [flash.show, flash.find, names.show, parts.show, profiles.for_part])
def test_bytes_are_no_name(ask: Callable[[Any], Any]) -> None:
    with pytest.raises(TypeError, match="a name is a text, not the bytes b'KES50C6'"):
        ask(b"KES50C6")


@pytest.mark.parametrize("ask", ASKING)
def test_a_name_that_is_no_utf_8_is_none_that_is_known(ask: Callable[[str], Any]) -> None:
    assert ask("caf\udce9") == ask("NO SUCH NAME") or ask("caf\udce9") in ("CAF\udce9", "")


HALF_A_CHARACTER = "KES50\ud800"


@pytest.mark.parametrize("ask", [*ASKING, parts.all_from_pcf, profiles.for_pcf, flash.identify, flash.decode])
def test_half_a_character_is_no_text(ask: Callable[[str], Any]) -> None:
    with pytest.raises(UnicodeEncodeError, match="surrogates not allowed"):
        ask(HALF_A_CHARACTER)


def test_half_a_character_is_no_path_and_no_setting(tmp_path: pathlib.Path) -> None:
    before = settings.directories()
    asking: list[Callable[[], Any]] = [
        lambda: flash.load(HALF_A_CHARACTER),
        lambda: profiles.load(HALF_A_CHARACTER),
        lambda: tables.check(HALF_A_CHARACTER),
        lambda: tables.compile(ROOT / "data" / "flash" / "pgm_flash.csv", tmp_path / HALF_A_CHARACTER),
        lambda: pgmdev.configure(module_dir=HALF_A_CHARACTER),
        lambda: pgmdev.configure(settings={HALF_A_CHARACTER: "on"}),
        lambda: pgmdev.configure(settings={"TEST_KEY": HALF_A_CHARACTER}),
        lambda: settings.get(HALF_A_CHARACTER),
        lambda: flash.encode(dataclasses.replace(flash.load()[0], device_name=HALF_A_CHARACTER)),
    ]
    for ask in asking:
        with pytest.raises(UnicodeEncodeError, match="surrogates not allowed"):
            ask()
    assert settings.directories() == before
    assert settings.get("TEST_KEY") == ""


@pytest.mark.parametrize(
    "read",
    [flash.load, profiles.load, tables.check, tables.dump, tables.dump_csv, lambda path: tables.dump(path, "profile")],
)
def test_a_path_does_not_end_at_a_zero_byte(read: Callable[[str], Any]) -> None:
    with pytest.raises(ValueError, match="embedded null"):
        read(flash.load().path + "\0.csv")


def test_settings_do_not_end_at_a_zero_byte(tmp_path: pathlib.Path) -> None:
    before = settings.directories()
    with pytest.raises(ValueError, match="embedded null"):
        pgmdev.configure(module_dir=f"{tmp_path}\0more")
    for key, value in (("TEST_KEY\0", "on"), ("TEST_KEY", "on\0")):
        with pytest.raises(ValueError, match="embedded null"):
            pgmdev.configure(settings={key: value})
    assert settings.directories() == before
    assert settings.get("TEST_KEY") == ""


def test_settings_keep_bytes_that_are_no_utf_8() -> None:
    pgmdev.configure(settings={"TEST_KEY": "caf\udce9"})
    assert settings.get("TEST_KEY") == "caf\udce9"
    pgmdev.configure(settings={"TEST_KEY": None})


def test_any_text_may_be_decoded() -> None:
    for text in ("a\0b", "a\udce9b"):
        assert flash.decode(text)[0].faults[0].startswith("character 2 is none")
