"""Every chip, and what may become of its response, answers as it does to the command."""

from __future__ import annotations

import json
import pathlib
import subprocess
from dataclasses import replace
from typing import Any

import pytest
from conftest import DUMPS, Command, own, without
from responses import questions

import pgmdev
from pgmdev import flash


def test_records(command: Command) -> None:
    rows = command.ask("flash", "list")
    assert [{"index": index, **record.asdict()} for index, record in enumerate(flash.load())] == rows
    assert len(rows) > 800


def shown(name: str) -> dict[str, Any] | None:
    found = flash.show(name)
    if found is None:
        return None
    answer: dict[str, Any] = {"index": found.index, **found.record.asdict()}
    if found.alias:
        answer["alias"] = {"name": found.alias.name, "reason": found.alias.reason}
    answer["evidence"] = {each.group: without(each.asdict(), "group") for each in found.evidence}
    return answer


def test_names(command: Command) -> None:
    aliases = pathlib.Path(flash.default().path + ".aliases.csv").read_text(encoding="utf-8")
    further = [line.split(",")[0] for line in aliases.splitlines()][1:]
    names = [record.device_name for record in flash.load()] + further + ["w25q64jv ", "W25Q", "ſ25FL128S1"]
    assert len(further) > 100
    for name, answer in zip(names, command.ask_each(names, "flash", "show")):
        assert shown(name) == (own(answer) if answer["found"] else None), name


@pytest.mark.parametrize(
    ("patterns", "options"),
    [
        ({"pattern": "w25q*"}, ["w25q*"]),
        ({"pattern": "*128?V", "maker": "winbond"}, ["*128?V", "--maker=winbond"]),
        ({"maker": "m*", "voltage": "1.8v"}, ["--maker=m*", "--voltage=1.8v"]),
    ],
)
def test_patterns(command: Command, patterns: dict[str, str], options: list[str]) -> None:
    rows = command.ask("flash", "list", *options)
    assert [record.asdict() for record in flash.find(**patterns)] == [without(row, "index") for row in rows]
    assert 0 < len(rows) < len(flash.find())


def as_the_command_says(device: flash.Identification) -> dict[str, Any]:
    records = flash.load()

    def named(index: int) -> dict[str, Any]:
        record = records[index]
        return {"index": index, "manufacturer_name": record.manufacturer_name, "device_name": record.device_name}

    def candidate(each: flash.Candidate) -> dict[str, Any]:
        compared = [{**byte.asdict(), "expected": f"{byte.expected:02X}"} for byte in each.compared]
        differs = [difference.asdict() for difference in each.differences]
        return {**named(each.index), "standing": each.standing, "compared": compared, "differs": differs}

    return {
        "mapped": device.record is not None,
        "index": device.index,
        **(device.record.asdict() if device.record else {}),
        "given": device.given,
        "telling": device.telling,
        "by_hand": False,
        "sure": device.sure,
        "missing_bytes": list(device.missing_bytes),
        "ambiguities": [each.asdict() for each in device.ambiguities],
        "contradictions": [{**each.asdict(), "found": f"{each.found:02X}"} for each in device.contradictions],
        "fitting": list(device.fitting),
        "oddity": without(device.oddity.asdict(), "is_fault") if device.oddity else None,
        "nearest": [named(index) for index in device.nearest],
        "admitted": [candidate(each) for each in device.candidates],
    }


def test_responses(command: Command) -> None:
    """Those of all chips, and what becomes of them on their way."""
    asked = list(dict.fromkeys(questions([record.asdict() for record in flash.load()])))
    answers = command.ask_each(asked, "flash", "identify")
    assert len(answers) == len(asked) > 1500
    for text, answer in zip(asked, answers):
        is_silicon = text.startswith("silicon:")
        device = flash.identify(text.removeprefix("silicon:"), silicon_id=is_silicon)
        assert as_the_command_says(device) == without(own(answer), "position"), text


def test_what_is_a_response(command: Command) -> None:
    """Pairs of digits, each perhaps behind 0x, and what stands between them."""
    spelled = ["EF0x40", "0xEF0x40", "0XEF40", "EF-40", "ef : 40", "\tEF40 ", "\v EF40\f", "-EF40"]
    none = ["EF0x", "EF 0x 40", "E F40", "EF4", "0x0xEF40", "EF,40", "[EF40]", "café"]
    for text, answer in zip(spelled + none, command.ask_each(spelled + none, "flash", "identify")):
        assert ("error" in answer) == (text in none), text
    for text in [*spelled, "EF\t40", "EF\r\n40", "EF\u00a040"]:  # white space of any kind, where the command takes blanks
        assert flash.identify(text) == flash.identify(b"\xef\x40"), text
    for text in none:
        with pytest.raises(ValueError, match="is not an identification response"):
            flash.identify(text)


@pytest.mark.parametrize("dump", sorted(DUMPS.glob("*.sfdp")), ids=lambda dump: str(dump.stem))
def test_own_words(command: Command, dump: Any) -> None:
    answer = command.ask("flash", "sfdp", str(dump))
    said = flash.sfdp(dump.read_bytes())
    for same in ("standard", "access_protocol", "basic_dwords", "density_bits", "size_bytes", "address_bytes", "hybrid",
                 "erase_4k_uniform", "write_granularity_bytes", "dtr", "page_bytes", "page_bytes_known"):  # fmt: skip
        assert getattr(said, same) == answer[same], same
    for same in ("status_polling", "soft_reset", "enter_4byte", "exit_4byte", "warnings"):
        assert (None if getattr(said, same) is None else list(getattr(said, same))) == answer[same], same
    assert f"{said.major}.{said.minor}" == answer["revision"]
    assert [(each.mode, f"{each.opcode:02X}") for each in said.fast_reads] == [
        (each["mode"], each["opcode"]) for each in answer["fast_reads"]
    ]
    assert [(each.number, each.bytes, f"{each.opcode:02X}", each.ms.longest if each.ms else None)
            for each in said.erase_types] == [
        (each["type"], each["size_bytes"], each["opcode"], each["max_ms"]) for each in answer["erase_types"]
    ]  # fmt: skip
    assert [(each.name, each.dwords, each.offset) for each in said.headers] == [
        (each["name"], each["dwords"], each["offset"]) for each in answer["headers"]
    ]
    if said.chip_erase_ms:
        assert said.chip_erase_ms.asdict() == {
            "typical": answer["chip_erase"]["typical_ms"],
            "longest": answer["chip_erase"]["max_ms"],
        }
    assert (said.four_byte_instructions is None) == (answer["four_byte_instructions"] is None)
    assert [[(region.offset, region.bytes) for region in each.regions] for each in said.sector_maps] == [
        [(region["offset"], region["size_bytes"]) for region in each["regions"]] for each in answer["sector_maps"]
    ]
    derived = said.record()
    expected = answer["record"]
    assert (derived.record is None) == (expected is None)
    if derived.record:
        assert derived.record.asdict() == without(expected, "assumed", "row")
        assert [{"member": member, "taken": taken} for member, taken in derived.assumed] == expected["assumed"]


def test_texts_of_user_flash(command: Command) -> None:
    texts = [flash.encode([record]) for record in flash.load()[:40]]
    texts += [flash.encode(flash.load()[:3]), "rubbish", texts[0][:-4], texts[0][::-1]]
    for text, answer in zip(texts, command.ask_each(texts, "flash", "decode")):
        described = flash.decode(text)
        plain = [
            {**each.asdict(), "taken": place == 0 and not described[0].faults} for place, each in enumerate(described)
        ]
        assert plain == answer["descriptions"]
        assert (not described[0].faults) == answer["found"]


def test_a_flash_of_the_users_own_comes_first(command: Command) -> None:
    like = flash.show("W25Q64JV")
    assert like is not None
    chip = replace(like.record, device_name="OWN", memory_id=0x99)
    text = flash.encode(chip)
    with_text = [command.program, "--json", "--set", f"{flash.USER_FLASH_KEY}={text}", "flash", "show", "OWN"]
    answer = json.loads(subprocess.run(with_text, capture_output=True, check=True).stdout)
    before = flash.load()
    pgmdev.configure(settings={flash.USER_FLASH_KEY: text})
    try:
        assert len(flash.load()) == len(before) + 1
        found = flash.show("own")
        assert found is not None
        assert found.index == answer["index"] == 0
        assert found.record.asdict() == without(own(answer), "index", "evidence", "alias")
    finally:
        pgmdev.configure(settings={flash.USER_FLASH_KEY: None})
    assert flash.show("own") is None


def test_switches(command: Command) -> None:
    everything = command.ask("--set", "PGM_ALLOW_M45PE=on", "flash", "list")
    pgmdev.configure(settings={"PGM_ALLOW_M45PE": "on"})
    try:
        assert [record.asdict() for record in flash.load()] == [without(row, "index") for row in everything]
    finally:
        pgmdev.configure(settings={"PGM_ALLOW_M45PE": None})
    assert len(flash.load()) < len(everything)
