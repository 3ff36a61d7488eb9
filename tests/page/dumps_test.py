"""What a flash says of itself, in all forms of dumps, is read as the command reads it."""

import collections
import json
import random

from dumps import as_words
from page_case import ROOT, PageTest, without

DUMPS = ROOT / "tests" / "data" / "sfdp"


class Dumps(PageTest):
    asks_only = True

    def test_it_reads_sfdp_as_the_command_does(self):
        chance = random.Random(2)
        dumps = [file.read_bytes() for file in sorted(DUMPS.glob("*.sfdp"))]
        self.assertGreater(len(dumps), 10)
        for whole in list(dumps):
            damaged = bytearray(whole)
            for _ in range(6):
                damaged[chance.randrange(16, len(damaged))] = chance.randrange(256)
            dumps += [whole[:chance.randrange(len(whole))], bytes(damaged)]
        dumps += [b"\xff" * 64, b"\0" * 8, b"\0\0\0" + dumps[0]]
        told = self.page.ask("arguments[0].map((each) => tessary.sfdp(each))", [dump.hex(" ") for dump in dumps])
        for dump, page in zip(dumps, told):
            answer = self.command.json("flash", "sfdp", dump.hex())
            if "error" in answer:
                self.assertEqual("the SFDP dump is refused: " + page["refusal"], answer["error"]["message"])
            else:
                self.assertEqual(page, without(answer, "query", "found"), dump.hex())

    def test_it_reads_the_dumps_that_tools_print(self):
        dump = (DUMPS / "W25Q128JV.sfdp").read_bytes()
        rows = [dump[i:i + 16] for i in range(0, len(dump), 16)]
        offset = lambda i: f"{16 * i:08x}"  # noqa: E731
        texts = {
            "with offsets and characters": "\n".join(
                f"{offset(i)}: {row.hex(' ', 2)}  ................" for i, row in enumerate(rows)),
            "with bars": "\n".join(f"{offset(i)}  {row.hex(' ')}  |...|" for i, row in enumerate(rows)),
            "as source": ", ".join(f"0x{byte:02x}" for byte in dump),
        }
        plain = self.page.ask("tessary.sfdp(arguments[0])", dump.hex())
        for kind, text in texts.items():
            self.assertEqual(self.page.ask("tessary.sfdp(arguments[0])", text), plain, kind)

    def test_it_reads_numbers_of_two_bytes_as_hexdump_prints_them(self):
        dump = (DUMPS / "W25Q128JV.sfdp").read_bytes()
        lines = as_words(dump)
        wide = as_words(dump, "  ")[:-1]
        for text in (lines, wide, [*wide[:-1], wide[-1] + "  |..|"], [*wide[:-1], wide[-1] + " x"], lines[1:],
                     as_words(dump, base="o"), as_words(dump, base="d"), [*lines[:2], *lines[4:]], lines + lines):
            self.reads_as_the_command_does(text)

    def test_it_reads_numbers_of_more_bytes_in_the_order_that_the_signature_tells(self):
        dump = (DUMPS / "W25Q128JV.sfdp").read_bytes()
        read = []
        for size in (2, 4, 8):
            for order in ("little", "big"):
                for form in ({"width": 8, "behind": ":", "start": 0x80000000}, {"width": 6}, {"base": "o"}, {"width": 0}):
                    lines = as_words(dump, size=size, order=order, **form)
                    shown = [line if line in ("", "*") else line + "    SFDP............" for line in lines[:-1]]
                    kinds = [lines, shown]
                    if size == 4:
                        kinds += [[*lines[:-3], *lines[-2:]], [lines[0].replace("53", "13", 1), *lines[1:]]]
                    read += [self.reads_as_the_command_does(text) for text in kinds]
        self.assertEqual(collections.Counter(read), {True: 48, False: 16})

    def test_it_reads_what_debuggers_print_and_arrays_of_sources(self):
        dump = (DUMPS / "W25Q128JV.sfdp").read_bytes()
        rows = [(0x20000000 + at, dump[at:at + 16]) for at in range(0, len(dump), 16)]
        words = [(at, [row[i:i + 4][::-1].hex() for i in range(0, 16, 4)]) for at, row in rows]
        forms = {
            "mdb of OpenOCD": [f"0x{at:08x}: {row.hex(' ')} " for at, row in rows],
            "mdw of OpenOCD": [f"0x{at:08x}: {' '.join(numbers)} " for at, numbers in words],
            "bytes of GDB": [f"0x{at:x}:\t0x" + row.hex(" ").replace(" ", "\t0x") for at, row in rows],
            "words of GDB in a kernel": [f"0x{at + 0xFFFF888000000000:x}:\t0x" + "\t0x".join(numbers) for at, numbers in words],
            "words of GDB": [f"0x{at:x} <a::b+8>:\t0x" + "\t0x".join(numbers) for at, numbers in words],
            "mem of J-Link": [f"{at:08X} = {row.hex(' ')}  SFDP............" for at, row in rows],
            "an array": ["int area[] = {", *("/* 16 */ 0x" + row.hex(" ").replace(" ", ", 0x") + ", // .." for _, row in rows),
                         "};"],
            "single digits": [" ".join(f"0x{byte:X}" for byte in row) for _, row in rows],
        }
        for kind, lines in forms.items():
            self.assertTrue(self.reads_as_the_command_does(lines), kind)
            wrong = [line.replace("53", "63").replace("50444653", "50444663") for line in lines]
            for refused in (wrong, [*lines[:2], "Continuing.", *lines[2:]]):
                self.assertFalse(self.reads_as_the_command_does(refused), kind)

    def reads_as_the_command_does(self, lines):
        """Whether both read the dump."""
        answer = json.loads(self.command.run("--json", "flash", "sfdp", "-", text="\n".join(lines)).stdout)
        told = self.page.ask("(() => { try { return tessary.sfdp(arguments[0]); } catch { return null; } })"
                             ".apply(null, arguments)", "\n".join(lines))
        if "error" in answer:
            self.assertTrue(told is None or "refusal" in told, lines)
        else:
            self.assertEqual(told, without(answer, "query", "found"), lines)
        return "error" not in answer

    def test_it_compares_the_record_with_what_the_flash_says(self):
        lines = (DUMPS / "index.csv").read_text(encoding="utf-8").splitlines()[1:]
        for name, _, _, response in (line.split(",")[:4] for line in lines):
            dump = (DUMPS / name).read_bytes().hex()
            answer = self.command.json("flash", "identify", "--sfdp", dump, response)["devices"][0]
            told = self.page.ask("tessary.identify_with_sfdp(arguments[0], arguments[1])", response, dump)
            self.assertEqual(told, answer, name)


class Boxes(PageTest):
    def test_it_says_what_the_flash_leaves_as_the_command_does(self):
        dumps = [(DUMPS / name).read_bytes() for name in ("W25Q128JV.sfdp", "MT25QU256A.sfdp", "MX25L25635F.sfdp")]
        stack = bytearray(dumps[0])  # the density is that of a die of 256 Mbit
        stack[stack[0x0C] + 4:stack[0x0C] + 8] = (0x0FFFFFFF).to_bytes(4, "little")
        asked = [(response, bytes(dump)) for response in ("EF4018", "20BB19", "C84019", "C22537", "FFFFFF")
                 for dump in (*dumps, stack)]
        heads = set()
        self.page.open("#/identify")
        for response, dump in asked:
            said = self.command.run("--wide", "flash", "identify", "--sfdp", dump.hex(), response).stdout.splitlines()
            # How to map the flash by hand is told to users of the command alone.
            expected = [line.split("; --as")[0] for line in said if line.startswith("What the flash says of itself ")]
            self.driver.execute_script(
                """const [response, dump] = arguments;
                document.getElementById("response").value = response;
                document.getElementById("dump").value = dump;
                document.getElementById("dump").dispatchEvent(new Event("input"));""", response, dump.hex())
            self.assertEqual(self.page.texts("#identify-answer .ranking"), expected, response)
            heads |= {line.split(":")[0] + (": it is none" if "none of these" in line else "") for line in expected}
        self.assertEqual(heads, {"What the flash says of itself leaves all of them",
                                 "What the flash says of itself decides",
                                 "What the flash says of itself decides: it is none"})
