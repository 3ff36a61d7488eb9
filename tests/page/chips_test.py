"""What is shown of a chip, of one that has another's record, and of one that has none."""

import collections
import csv
import pathlib

from browser import Command
from page_case import ROOT, PageTest


class Chips(PageTest):
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
        own = Command(self.program)
        own.start += ["--set", f"PGM_USER_SFL_FLASH_INFO={text.strip()}"]
        self.page.load(own.page(pathlib.Path(self.scratch.name) / "own"))
        evidence = own.json("flash", "show", "W25Q64JV")["evidence"]["times"]["evidence"]
        for name, told in (("OWN", ""), ("W25Q64JV", evidence)):
            self.page.open(f"#/chip/{name}")
            self.assertIn(f"program_utime\t3000 us\t{told}\n", self.page.texts("table.members")[0])

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
        shown = self.page.ask(
            """arguments[0].map((name) => {
                tessary.show(`#/chip/${name}`);
                return [...document.querySelectorAll("#view-chip h2, #view-chip .left-out")].map((e) => e.innerText);
            })""", [*names, "W25Q64F"])
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
