"""The page in a real browser: it answers as the command does, can be used by everybody, and asks nobody.

    test_page.py COMMAND NODE_MODULES SCREENSHOTS
"""

import collections
import csv
import json
import pathlib
import random
import shutil
import sys
import tempfile
import time
import unittest

from selenium.webdriver.common.keys import Keys

sys.dont_write_bytecode = True
sys.path.insert(0, str(pathlib.Path(__file__).resolve().parent))

from browser import DESKTOP, PHONE, Command, Page, browser  # noqa: E402
from dumps import as_words  # noqa: E402
from responses import own_response, questions  # noqa: E402

ROOT = pathlib.Path(__file__).resolve().parents[2]
DUMPS = ROOT / "tests" / "data" / "sfdp"
LARGEST_PAGE = 1_000_000
VIEWS = ["#/chips", "#/chip/W25Q128JV", "#/identify/20BB21", "#/pictures", "#/boot", "#/profiles", "#/names/KES75F169"]
OF_A_NARROW_SCREEN = ["target-size", "scrollable-region-focusable", "meta-viewport", "empty-table-header", "region"]
LOOKS = {
    "light": (DESKTOP, "light", ""),
    "dark": (DESKTOP, "dark", ""),
    "phone": (PHONE, "light", ""),
    "phone-dark": (PHONE, "dark", ""),
    "print": (DESKTOP, "light", "print"),
}


def program():
    return pathlib.Path(sys.argv[1])


def without(answer, *keys):
    return {key: value for key, value in answer.items() if key not in keys}


def setUpModule():
    axe = pathlib.Path(sys.argv[2]) / "axe-core" / "axe.min.js"
    if not axe.is_file():
        raise FileNotFoundError(f"{axe}: ./test fetches it, or `npm ci` with tests/page/package-lock.json")
    PageTest.screenshots = pathlib.Path(sys.argv[3])
    PageTest.screenshots.mkdir(parents=True, exist_ok=True)
    PageTest.scratch = tempfile.TemporaryDirectory()
    PageTest.command = Command(program())
    PageTest.file = PageTest.command.page(pathlib.Path(PageTest.scratch.name) / "page")
    PageTest.driver = browser()
    PageTest.page = Page(PageTest.driver, axe.read_text(encoding="utf-8"))


def tearDownModule():
    PageTest.driver.quit()
    PageTest.scratch.cleanup()


class PageTest(unittest.TestCase):
    """All tests share one session of the browser, and one page."""

    def setUp(self):
        self.started = time.monotonic()
        self.page.look()
        self.page.load(self.file)

    def tearDown(self):
        self.assertEqual(self.page.complaints(), [])
        print(f"{time.monotonic() - self.started:6.2f} s  {self.id().split('.')[-1]}")

    def search(self, text):
        box = self.page.find("#search")
        box.clear()
        box.send_keys(text)

    def chips(self):
        return self.page.texts("#chips-table tbody th a")


class Answers(PageTest):
    def test_it_knows_every_row_with_all_members(self):
        told = self.page.ask("tessary.records()")
        rows = self.command.json("flash", "list", "--all-rows")
        by_row = lambda each: each["row"]  # noqa: E731
        self.assertEqual(sorted(told, key=by_row), sorted(rows, key=by_row))

    def test_it_identifies_as_the_command_does(self):
        asked = questions(self.command.json("flash", "list"))
        answers = self.command.lines("flash", "identify", questions=asked)
        told = self.page.ask("arguments[0].map((each) => tessary.identify(each))", asked)
        self.assertEqual(len(answers), len(asked))
        for question, answer, page in zip(asked, answers, told):
            expected = without(answer, "query", "found", "position", "candidates")
            self.assertEqual(without(page, "position"), expected, question)

    def test_a_chain_has_the_same_answer_under_its_own_key(self):
        answer = self.command.json("flash", "identify", "20BB21")["devices"][0]
        self.assertEqual(self.page.ask("tessary.identify('20BB21', true)"), answer)

    def test_it_refuses_what_the_command_refuses(self):
        for question in ("EF4", "xyz", "EF,40", "00" * 257):
            answer = self.command.lines("flash", "identify", questions=[question])[0]
            told = self.page.ask(
                "(() => { try { return tessary.identify(arguments[0]); } catch (error) { return error.message; } })"
                ".apply(null, arguments)", question)
            self.assertEqual(told, answer["error"]["message"])

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
                    kinds = [lines, shown, [*lines[:-3], *lines[-2:]], [lines[0].replace("53", "13", 1), *lines[1:]]]
                    read += [self.reads_as_the_command_does(text) for text in kinds]
        self.assertEqual(collections.Counter(read), {True: 48, False: 48})

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

    def test_it_spells_names_as_the_command_does(self):
        parts = [part["name"] for part in self.command.json("part", "list", "--hidden", "--fields", "name")]
        devices = [device["name"] for device in self.command.json("device", "list", "--fields", "name")]
        families = [family["name"] for family in self.command.json("family", "list", "--fields", "name")]
        asked = parts[::150] + devices[::12] + families[::3]
        asked += ["KES75F169", "KES_100", "KESTREL_PCF", "kes50c6", "NONE"]
        answers = self.command.lines("part", "info", questions=asked)
        told = self.page.ask("arguments[0].map((each) => tessary.spell(each) ?? null)", asked)
        for question, answer, page in zip(asked, answers, told):
            self.assertTrue(answer["found"], question)
            self.assertEqual(page, without(answer, "query", "found", "opn_hash"), question)


class Use(PageTest):
    def test_the_list_is_searched_while_one_types(self):
        self.search("winbond 128 mbit 1.8v")
        rows = self.command.json("flash", "list", "--maker", "Winbond", "--size", "128Mbit", "--voltage", "1.8V")
        self.assertEqual(self.chips(), [row["device_name"] for row in rows])
        self.search("EF 40 18")
        self.assertIn("W25Q128JV", self.chips())
        self.search("w25q128fv")  # another name of it
        self.assertEqual(self.page.texts("#chips-table tbody th"), ["W25Q128JV also W25Q128FV"])
        # Neither 128 Mbit nor 512 Kbit is a find for 8 Mbit or 2 Kbit.
        for text, size in (("2 Gbit", "2Gbit"), ("2gbit", "2Gbit"), ("8 Mbit", "8Mbit"), ("1 MiB", "8Mbit")):
            self.search(text)
            rows = self.command.json("flash", "list", "--size", size)
            self.assertEqual(self.page.find("#chips-count").text.split(",")[0], f"{len(rows)} rows", text)
            self.assertEqual(self.chips(), [row["device_name"] for row in rows][:100], text)
        self.search("2kbit")
        self.assertEqual(self.chips(), [])
        self.search("no such chip")
        self.assertEqual(self.chips(), [])
        self.assertTrue(self.page.find("#chips-none").is_displayed())

    def test_filters_and_order(self):
        self.page.find("#maker").send_keys("Macronix")
        rows = self.command.json("flash", "list", "--maker", "Macronix")
        self.assertEqual(self.chips(), [row["device_name"] for row in rows])
        heading = lambda: self.driver.find_elements("css selector", "#chips-table thead button")[3]  # noqa: E731
        heading().click()
        sizes = [row["device_bit_size"] for row in sorted(rows, key=lambda row: row["device_bit_size"])]
        text = lambda bits: f"{bits >> 20} Mbit" if bits % (1 << 20) == 0 else f"{bits >> 10} Kbit"  # noqa: E731
        shown = lambda: self.page.texts("#chips-table tbody td:nth-child(4)")  # noqa: E731
        self.assertEqual(shown(), [text(size) for size in sizes])
        heading().click()
        self.assertEqual(shown(), [text(size) for size in reversed(sizes)])
        self.assertEqual(self.page.ask("document.querySelectorAll('[aria-sort=descending]').length"), 1)

    def test_switched_off_rows_are_shown_on_demand(self):
        off = [row["device_name"] for row in self.command.json("flash", "list", "--all-rows") if not row["enabled"]]
        self.assertGreater(len(off), 0)
        self.page.find("#switched-off").click()
        self.search(off[0])
        self.assertIn(off[0], self.chips())

    def test_the_keyboard_reaches_everything(self):
        body = self.page.find("body")
        body.send_keys("/")
        self.assertEqual(self.page.ask("document.activeElement.id"), "search")
        self.driver.switch_to.active_element.send_keys("mx25l12835f", Keys.ARROW_DOWN)
        self.assertEqual(self.page.ask("document.activeElement.tagName"), "A")
        self.driver.switch_to.active_element.send_keys(Keys.ENTER)
        self.page.wait_for("document.activeElement.tagName === 'H2'")
        self.driver.switch_to.active_element.send_keys(Keys.TAB)
        self.assertNotEqual(self.page.ask("document.activeElement.tagName"), "BODY")

    def test_a_chip_shows_members_evidence_and_what_else_answers_alike(self):
        record = self.command.json("flash", "show", "MT25QU01G")
        self.page.open("#/chip/MT25QU01G")
        self.assertIn("MT25QU01G", self.page.find("#view-chip h2").text)
        column = lambda number: dict(zip(  # noqa: E731
            self.page.texts("table.members tbody th"), self.page.texts(f"table.members tbody td:nth-child({number})")))
        members = column(2)
        self.assertEqual(members["device_bit_size"], f"{record['device_bit_size']} bits")
        self.assertEqual(members["bulk_erase_time"], f"{record['bulk_erase_time']} s")
        self.assertIn(record["evidence"]["times"]["evidence"], column(3)["program_utime"])

    def test_a_flash_of_ones_own_takes_the_evidence_from_nobody(self):
        text = self.command.run("flash", "define", "--like", "W25Q64JV", "--id", "EF4099", "device_name=OWN").stdout
        own = Command(program())
        own.start += ["--set", f"PGM_USER_SFL_FLASH_INFO={text.strip()}"]
        self.page.load(own.page(pathlib.Path(self.scratch.name) / "own"))
        evidence = own.json("flash", "show", "W25Q64JV")["evidence"]["times"]["evidence"]
        for name, told in (("OWN", ""), ("W25Q64JV", evidence)):
            self.page.open(f"#/chip/{name}")
            self.assertIn(f"program_utime\t3000 us\t{told}\n", self.page.texts("table.members")[0])

    def test_the_picture_of_capacities_counts_each_chip_once(self):
        counts = {}  # of each maker, by Kbit
        for row in self.command.json("flash", "list"):
            if row["default_dev"]:
                counts.setdefault(row["manufacturer_name"], collections.Counter())[row["device_bit_size"] >> 10] += 1
        self.assertEqual(counts["Micron"][512], 1)  # M25P05, which two rows recognise
        makers = sorted(counts, key=lambda maker: (-sum(counts[maker].values()), maker))
        self.page.open("#/pictures")
        text_of = "[...document.querySelector('#view-pictures svg').querySelectorAll('.%s')].map((e) => e.textContent)"
        self.assertEqual(self.page.ask(text_of % "count"),
                         [str(number) for maker in makers for _, number in sorted(counts[maker].items())])
        self.assertEqual(self.page.ask(text_of % "scale")[:3], ["0.5", "1", "2"])

    def test_a_further_name_leads_to_the_record_that_it_shares(self):
        alias = self.command.json("flash", "show", "W25Q64FV")["alias"]
        for address in ("#/chip/W25Q64FV", "#/chip/w25q64fv"):
            self.page.open(address)
            self.assertEqual(self.page.find("#view-chip h2").text, "Winbond W25Q64JV")
            self.assertEqual(self.page.find("#view-chip .alias").text,
                             f"W25Q64FV shares the record of W25Q64JV: {alias['reason']}.")
        self.page.open("#/identify/C22019")  # an ambiguity of three chips, of which one has a row
        self.assertIn("MX25L25635E, MX25L25635F, MX25L25645G: ", self.page.find("#identify-answer").text)
        self.page.open("#/chip/w25q64jv")
        self.assertEqual(self.page.texts("#view-chip .alias"), [])
        self.page.open("#/chip/W25Q64F")
        self.assertEqual(self.page.find("#view-chip h2").text, "No such chip")

    def test_a_chip_without_a_row_is_told_why_as_by_the_command(self):
        with (ROOT / "data" / "flash" / "left_out.csv").open(encoding="utf-8", newline="") as file:
            names = [line["device_name"].lower() for line in csv.DictReader(file)]
        answers = self.command.lines("flash", "show", questions=[*names, "W25Q64F"])
        shown = []
        for name in (*names, "W25Q64F"):
            self.page.open(f"#/chip/{name}")
            shown.append(self.page.texts("#view-chip h2, #view-chip .left-out"))
        told = lambda name, why: f'The flash "{name}" is left out of the table: {why}.'  # noqa: E731
        self.assertGreater(len(names), 50)
        self.assertEqual(shown, [["Left out of the table", told(name, answer["left_out"])]
                                 for name, answer in zip(names, answers)] + [["No such chip"]])
        said = self.command.run("flash", "show", "s70fl01gs").stderr
        self.page.open("#/chips")
        self.search(" s70fl01gs")
        self.assertTrue(self.page.find("#chips-left-out").is_displayed())
        self.assertIn(self.page.find("#chips-left-out").text[len("The"):-len(".")], said)
        self.search("s70fl01g")
        self.assertFalse(self.page.find("#chips-left-out").is_displayed())

    def test_the_boxes_answer(self):
        self.page.open("#/identify")
        self.page.find("#response").send_keys("20 BB 21")
        self.assertIn("others are possible", self.page.find("#identify-answer .verdict").text)
        self.page.find("#response").clear()
        self.page.find("#response").send_keys("EF4")
        self.assertIn("is not an identification response", self.page.find("#identify-answer .verdict").text)
        self.page.find("#dump").send_keys("53464450 xyz")
        self.assertIn("no text of hexadecimal digits, or lines are missing", self.page.find("#identify-answer .verdict").text)
        self.page.open("#/names")
        self.page.find("#name").send_keys("kes75f169")
        self.assertIn("Stands for 5 parts", self.page.find("#name-answer").text)

    def test_profiles_stand_side_by_side(self):
        self.page.open("#/profiles/41")
        self.page.find("#only-different").click()
        profiles = self.command.json("profile", "list")
        chosen = [profiles[index] for index in (0, 1, 2, 41)]
        differing = [key for key in chosen[0] if key != "index" and len({str(each[key]) for each in chosen}) > 1]
        self.assertEqual(self.page.texts("#profiles-table tbody th"), differing)


class Everybody(PageTest):
    def test_every_link_leads_somewhere(self):
        seen = self.driver.execute_script(
            """const [seen, waiting] = [new Map(), ["#/chips"]];
            const known = new Set(waiting);
            const shown = () => document.querySelector("main > section:not([hidden])");
            const collect = () => document.querySelectorAll("section:not([hidden]) a, header a").forEach((link) => {
                const address = link.getAttribute("href");
                if (!known.has(address)) { known.add(address); waiting.push(address); }
            });
            document.getElementById("switched-off").click();
            document.getElementById("chips-more").click();
            document.getElementById("main").hidden = true;  // nothing needs to be laid out
            for (let address; (address = waiting.shift()) !== undefined;) {
                history.replaceState(null, "", address);  // as a click does, but without waiting for the screen
                dispatchEvent(new HashChangeEvent("hashchange"));
                seen.set(address, `${shown().querySelector("h2").textContent} ` +
                    `${shown().querySelector(".verdict")?.textContent ?? ""}`);
                if (!address.startsWith("#/names/") || seen.size < 60) { collect(); }
            }
            return [...seen];""")
        addresses = [address for address, _ in seen]
        print(f"        {len(addresses)} links")
        self.assertGreater(len(addresses), len(self.command.json("flash", "list", "--all-rows")))
        for address, shown in seen:
            self.assertTrue(address.startswith("#/"), address)
            self.assertNotEqual(shown.strip(), "", address)
            self.assertNotIn("No such chip", shown, address)
            self.assertNotIn("No part", shown, address)

    def test_the_accessibility_checker_has_nothing_to_say(self):
        self.search("winbond 128mbit")  # further rows are of the same kind
        for view in VIEWS:
            self.page.open(view)
            self.assertEqual(self.page.violations(), [], view)
            self.page.look(scheme="dark")  # where nothing but the colours is another
            self.assertEqual(self.page.violations(only=["color-contrast"]), [], f"{view}, dark")
            self.page.look(PHONE)
            self.assertEqual(self.page.violations(only=OF_A_NARROW_SCREEN), [], f"{view}, phone")
            self.assertLessEqual(self.page.ask("document.documentElement.scrollWidth"), PHONE[0], view)
            self.page.look()

    def test_pictures_for_those_who_look(self):
        for name, look in LOOKS.items():
            self.page.look(*look)
            for view in VIEWS if name == "light" else VIEWS[:3]:
                self.page.open(view)
                file = self.screenshots / f"{view.split('/')[1]}-{name}.png"
                self.assertTrue(self.driver.save_screenshot(str(file)))

    def test_it_asks_no_network_and_is_small(self):
        self.assertEqual(self.page.ask("performance.getEntriesByType('resource').map(({ name }) => name)"), [])
        self.assertLess(self.file.stat().st_size, LARGEST_PAGE)
        self.assertEqual([each.name for each in self.file.parent.iterdir()], ["index.html"])

    def test_how_long_it_takes(self):
        loaded = self.page.ask("performance.getEntriesByName('ready')[0].startTime")
        parsed = self.page.ask("performance.getEntriesByType('navigation')[0].responseEnd")
        asking = self.page.ask("(() => { const begin = performance.now(); tessary.identify('EF4018');"
                               " return performance.now() - begin; })()")
        print(f"        first answer {loaded:.0f} ms after the beginning, {loaded - parsed:.0f} ms behind the last "
              f"byte; an identification {asking:.1f} ms")
        self.assertGreater(loaded, 0)


class Hostile(PageTest):
    def test_names_never_become_markup(self):
        directory = pathlib.Path(self.scratch.name)
        lines = (ROOT / "data" / "flash" / "pgm_flash.csv").read_text(encoding="utf-8").splitlines()
        name = "</script><script>document.title=1</script><img/src=x/onerror=document.title=2>"
        row = next(line for line in lines[8:] if "W25Q128JV," in line)
        row = row.replace("W25Q128JV", name).replace("Winbond", "<b>x")
        (directory / "hostile.csv").write_text("\n".join(lines[:8] + [row]) + "\n", encoding="utf-8")
        databases = directory / "programmer"
        databases.mkdir()
        shipped = program().resolve().parent.parent / "share" / "tessary" / "devices" / "programmer"
        shutil.copy(shipped / "pgm_dev_info.pcf", databases)
        hostile = Command(program(), directory)
        compiled = hostile.run("flash", "compile", directory / "hostile.csv", databases / "pgm_flash.pcf")
        self.assertEqual(compiled.returncode, 0, compiled.stderr)
        self.page.load(hostile.page(directory / "hostile"))
        self.assertEqual(self.chips(), [name])
        self.page.open("#/row/0")
        self.assertIn(name, self.page.find("#view-chip h2").text)
        self.assertEqual(self.page.ask("document.querySelectorAll('img, b, script[src]').length"), 0)
        answer = hostile.json("flash", "identify", own_response(hostile.json("flash", "list")[0]))["devices"][0]
        self.assertEqual(self.page.ask("tessary.identify('EF4018', true)"), answer)


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1], verbosity=0)
