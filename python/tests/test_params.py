"""The parameter container: blocks, values, and its lock."""

from __future__ import annotations

import pathlib
import threading
from typing import Any

import pytest
from conftest import Command

import pgmdev
from pgmdev import hps, params
from pgmdev.params import Block, Type

VALUES: list[tuple[Type, params.Parameter]] = [
    (Type.STRING, "W25Q64 µ"),
    (Type.BOOL, True),
    (Type.BYTE, 0xFE),
    (Type.WORD, 0xBEEF),
    (Type.DWORD, 0xDEADBEEF),
    (Type.QWORD, 0x0123456789ABCDEF),
]


def test_blocks(module_dir: pathlib.Path) -> None:
    assert params.path() == str(module_dir / "pgm_flash.ini")
    assert params.read(Block.SFL_FLASH) is None
    params.write(Block.SFL_FLASH, b"first")
    params.write(Block.HPS_NAND, b"second")
    params.write(Block.SFL_FLASH, b"\0\xff")
    assert params.read(Block.SFL_FLASH) == b"\0\xff"
    assert params.read(Block.HPS_NAND) == b"second"
    params.remove(Block.SFL_FLASH)
    assert params.read(Block.SFL_FLASH) is None
    assert params.read(Block.HPS_NAND) == b"second"
    assert Block.HPS_NAND.title == "HPS NAND"
    with pytest.raises(ValueError):
        params.write(Block.SFL_FLASH, b"")
    for block in (3, -1):
        with pytest.raises(ValueError, match=f"{block} is not a valid Block"):
            params.read(block)  # type: ignore[arg-type]


def test_values(module_dir: pathlib.Path) -> None:
    data = params.pack(VALUES)
    assert data[:10] == "W25Q64 µ".encode() + b"\0"
    assert data[10:] == bytes.fromhex("01 FE EFBE EFBEADDE EFCDAB8967452301")
    types = [type for type, _ in VALUES]
    assert params.unpack(data, types) == [value for _, value in VALUES]
    assert params.unpack(data, [Type.BYTE], offset=11) == [0xFE]
    with pytest.raises(ValueError, match="no whole QWORD at 18"):
        params.unpack(data[:22], types)
    assert [params.text(*each) for each in VALUES] == [
        "W25Q64 µ", "True", "254", "48879", "3735928559", "81985529216486895"]  # fmt: skip
    assert params.text(Type.WORD, 7, hexadecimal=True) == "0x0007"


def test_texts_that_are_no_utf8(module_dir: pathlib.Path) -> None:
    """They come and go as file names do in Python."""
    found = params.unpack(b"Caf\xe9\0", [Type.STRING])
    assert found == ["Caf\udce9"]
    assert params.pack([(Type.STRING, found[0])]) == b"Caf\xe9\0"
    with pytest.raises(UnicodeEncodeError):
        params.pack([(Type.STRING, "\ud800")])


def test_any_bytes_are_unpacked_and_no_text_is() -> None:
    some: list[Any] = [bytearray(b"\7a\0"), memoryview(b"\7a\0"), [7, 0x61, 0]]
    for data in some:
        assert params.unpack(data, [Type.BYTE, Type.STRING]) == [7, "a"]
    text: Any = "abc"
    with pytest.raises(TypeError, match="bytes are expected, not the text 'abc'"):
        params.unpack(text, [Type.BYTE])


@pytest.mark.parametrize("offset", [-1, 4])
def test_offsets_outside_of_the_data(offset: int) -> None:
    assert params.unpack(b"abc", [], offset=3) == []
    with pytest.raises(ValueError, match=f"{offset} is no place in 3 bytes"):
        params.unpack(b"abc", [Type.BYTE], offset=offset)


@pytest.mark.parametrize(
    ("type", "value"),
    [(Type.BYTE, 256), (Type.BYTE, 1.5), (Type.BYTE, -1), (Type.BOOL, 2), (Type.QWORD, 1 << 64), (Type.WORD, "7"),
     (Type.STRING, "a\0b")],
)
def test_values_that_do_not_fit(type: Type, value: Any) -> None:
    with pytest.raises(ValueError):
        params.pack([(type, value)])


@pytest.mark.parametrize("type", ["BYTE", "byte", 3, None, Block.HPS_SPI, Type])
def test_types_that_are_none(type: Any) -> None:
    message = "a params.Type is expected, such as params.Type.BYTE, not "
    with pytest.raises(TypeError, match=message):
        params.pack([(type, 7)])
    with pytest.raises(TypeError, match=message):
        params.unpack(b"\7", [type])
    with pytest.raises(TypeError, match=message):
        params.text(type, 7)


def test_the_command_sees_the_same(module_dir: pathlib.Path, command: Command) -> None:
    params.write(Block.SFL_FLASH, params.pack(VALUES[2:]))
    answer = command.ask("--module-dir", str(module_dir), "params", "show", "0", "BYTE", "WORD", "DWORD", "QWORD")
    assert [each["value"] for each in answer["values"]] == [params.text(*each) for each in VALUES[2:]]
    command.ask("--module-dir", str(module_dir), "params", "set", "0", "STRING=over")
    data = params.read(Block.SFL_FLASH)
    assert data is not None
    assert params.unpack(data, [Type.STRING]) == ["over"]


def test_damage_is_not_written_over(module_dir: pathlib.Path) -> None:
    params.write(Block.SFL_FLASH, b"precious")
    container = module_dir / "pgm_flash.ini"
    whole = container.read_bytes()
    for spoilt in (whole[:-1], b"letter", whole[:18], whole + b"\0", whole[:16] + b"\xff\xff\xff\xff" + whole[20:]):
        container.write_bytes(spoilt)
        with pytest.raises(pgmdev.ContainerError, match="damaged"):
            params.read(Block.SFL_FLASH)
        with pytest.raises(pgmdev.ContainerError, match="damaged"):
            params.write(Block.SFL_FLASH, b"new")
        assert container.read_bytes() == spoilt
    more = whole[:16] + b"\4\0\0\0" + (20 + 32).to_bytes(4, "little") + whole[24:44] + (60).to_bytes(4, "little")
    container.write_bytes(more + b"\1\0\0\0" + b"precious" + b"!")
    assert params.read(Block.SFL_FLASH) == b"precious"
    with pytest.raises(pgmdev.ContainerError, match="would lose"):
        params.write(Block.SFL_FLASH, b"new")


def test_a_container_that_cannot_be_written(module_dir: pathlib.Path) -> None:
    pgmdev.configure(module_dir=module_dir / "missing")
    with pytest.raises(pgmdev.ContainerError, match="cannot be written"):
        params.write(Block.SFL_FLASH, b"data")


def test_the_lock_keeps_others_out(module_dir: pathlib.Path) -> None:
    """Reading, adding and writing by several threads loses nothing, and the holder may take it again."""

    def add() -> None:
        for _ in range(5):
            with params.lock():
                params.write(Block.SFL_FLASH, (params.read(Block.SFL_FLASH) or b"") + b"x")

    threads = [threading.Thread(target=add) for _ in range(4)]
    for thread in threads:
        thread.start()
    for thread in threads:
        thread.join()
    assert params.read(Block.SFL_FLASH) == b"x" * 20


def test_the_lock_goes_with_a_failure(module_dir: pathlib.Path) -> None:
    with pytest.raises(ZeroDivisionError), params.lock():
        1 / 0
    done = threading.Thread(target=params.write, args=(Block.SFL_FLASH, b"data"))
    done.start()
    done.join(5)
    assert params.read(Block.SFL_FLASH) == b"data"
