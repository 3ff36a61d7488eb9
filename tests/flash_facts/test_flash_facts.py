"""Merging facts into a small table, to the letter; and what holds of the files beside the real table."""

import pathlib
import shutil
import subprocess
import sys
import tempfile
import unittest

HERE = pathlib.Path(__file__).resolve().parent
TOOL = HERE.parents[1] / "tools" / "flash_facts"
DATA = HERE.parents[1] / "data" / "flash"
sys.path.insert(0, str(TOOL))
sys.dont_write_bytecode = True

from flash_table import Row  # noqa: E402
from merge import Files  # noqa: E402
from numbers_of_table import beaten_rows, own_response  # noqa: E402
from sources import GROUPS, class_of  # noqa: E402


def run(*arguments):
    return subprocess.run([sys.executable, "-B", *map(str, arguments)], capture_output=True, text=True, check=False)


class Merging(unittest.TestCase):
    def setUp(self):
        self.scratch = tempfile.TemporaryDirectory()
        self.directory = pathlib.Path(self.scratch.name)
        shutil.copy(HERE / "pgm_flash.csv", self.directory)
        self.table = self.directory / "pgm_flash.csv"

    def tearDown(self):
        self.scratch.cleanup()

    def merge(self, *arguments):
        return run(TOOL / "merge.py", "--directory", self.directory, *arguments)

    def test_a_dry_run_says_what_would_happen_and_changes_nothing(self):
        before = self.table.read_bytes()
        result = self.merge(HERE / "facts.csv")
        self.assertEqual(result.stderr, "")
        self.assertEqual(result.stdout, (HERE / "dry_run.txt").read_text(encoding="utf-8"))
        self.assertEqual(result.returncode, 0)
        self.assertEqual(self.table.read_bytes(), before)
        self.assertEqual([path.name for path in self.directory.iterdir()], ["pgm_flash.csv"])

    def test_writing_makes_the_files(self):
        self.assertEqual(self.merge("--write", HERE / "facts.csv").returncode, 0)
        for name in Files.NAMES:
            expected = (HERE / "written" / name).read_text(encoding="utf-8")
            self.assertEqual((self.directory / name).read_text(encoding="utf-8"), expected, name)

    def test_merging_twice_changes_nothing_more(self):
        self.merge("--write", HERE / "facts.csv")
        once = {name: (self.directory / name).read_bytes() for name in Files.NAMES}
        result = self.merge("--write", "--only", "row,by name,alias,change", HERE / "facts.csv")
        self.assertIn("0 row, 0 by name, 0 alias, 0 change,", result.stdout)
        self.assertEqual({name: (self.directory / name).read_bytes() for name in Files.NAMES}, once)

    def refusal(self, old, new):
        facts = self.directory / "facts.csv"
        facts.write_text((HERE / "facts.csv").read_text(encoding="utf-8").replace(old, new, 1), encoding="utf-8")
        before = self.table.read_bytes()
        result = self.merge("--write", facts)
        self.assertEqual((result.returncode, self.table.read_bytes()), (1, before))
        return result.stderr.replace(str(facts), "facts.csv")

    def test_faults_are_refused_with_their_place(self):
        self.assertEqual(self.refusal(",bits,", ",size,"), "merge.py: facts.csv: there is no column bits\n")
        self.assertEqual(self.refusal("source_1", "origin"), "merge.py: facts.csv: unknown column origin\n")
        self.assertIn("merge.py: facts.csv:2: non-hexadecimal number", self.refusal("EF,40,17", "EG,40,17"))
        self.assertIn("merge.py: facts.csv:2: invalid literal for int()", self.refusal("67108864", "64 Mbit"))
        self.assertEqual(self.refusal("EF,40,17", "EF,,17"),
                         "merge.py: facts.csv:2: expected a manufacturer, a device and at least three bytes\n")
        self.assertEqual(self.refusal("flashrom/flashrom:winbond", "hearsay"),
                         "merge.py: facts.csv:2: the source \"hearsay\" is not in sources.py\n")

    def told_of(self, content):
        """What is said of a file of facts with this content, which is refused in one line."""
        facts = self.directory / "facts.csv"
        facts.write_bytes(content)
        result = self.merge("--write", facts)
        self.assertEqual((result.returncode, result.stdout, result.stderr.count("\n")), (1, "", 1), result.stderr)
        return result.stderr.replace(str(facts), "facts.csv")

    def test_files_that_are_no_facts_are_refused_in_words(self):
        facts = (HERE / "facts.csv").read_bytes()
        self.assertEqual(self.told_of(b"\xff\xfe\0"), "merge.py: facts.csv: it is no text in UTF-8\n")
        self.assertIn("merge.py: facts.csv:2: ", self.told_of(facts[:facts.index(b"\n") + 20]))  # the end is cut off
        longer = facts.replace(b"\n", b",more\n").replace(b",more", b"", 1)
        self.assertIn("merge.py: facts.csv:2: ", self.told_of(longer))
        for name in (b"W25\0Q64", b'"W25,Q64"'):  # what would break the line of the table
            self.assertIn("is no name for a cell of the table", self.told_of(facts.replace(b"W25Q64JV-IQ", name, 1)))

    def test_a_byte_order_mark_is_passed_over(self):
        facts = self.directory / "facts.csv"
        facts.write_bytes(b"\xef\xbb\xbf" + (HERE / "facts.csv").read_bytes())
        self.assertEqual(self.merge(facts).stdout, (HERE / "dry_run.txt").read_text(encoding="utf-8"))

    def test_kinds_and_tables_that_there_are_not_are_refused(self):
        result = self.merge("--only", "row,changes", HERE / "facts.csv")
        self.assertEqual((result.returncode, result.stdout), (2, ""))
        kinds = "row, by name, alias, change, conflict, left out"
        self.assertIn(f"there is no kind changes; the kinds are {kinds}", result.stderr)
        self.table.unlink()
        result = self.merge("--write", HERE / "facts.csv")
        self.assertEqual((result.returncode, result.stdout), (1, ""))
        self.assertIn("pgm_flash.csv", result.stderr)
        self.assertEqual(list(self.directory.iterdir()), [])


class Evidence(unittest.TestCase):
    def test_copies_of_one_list_count_once(self):
        self.assertEqual(class_of([]), "family")
        self.assertEqual(class_of(["flashrom"]), "one")
        self.assertEqual(class_of(["flashrom", "flashprog"]), "one")
        self.assertEqual(class_of(["flashrom", "linux"]), "two")
        self.assertEqual(class_of(["flashrom", "sfdp"]), "sfdp")
        self.assertEqual(class_of(["sfdp", "datasheet"]), "datasheet")


class Recognition(unittest.TestCase):
    ROW = {"silicon_id": "FALSE", "memory_id": "0x17", "memory_id_index": "2", "memory_type": "0x40",
           "memory_type_index": "1", "mfc_id": "0xEF", "mfc_id_index": "0"}

    def test_at_255_only_a_type_is_not_compared(self):
        for column, text in (
            ("memory_id", "17@255 40@1 EF@0"),
            ("memory_type", "17@2 EF@0"),
            ("mfc_id", "17@2 40@1 EF@255"),
        ):
            self.assertEqual(Row(self.ROW, **{column + "_index": "255"}).recognition(), text)

    def test_of_a_signature_no_maker_at_255_is(self):
        at_255 = dict.fromkeys(("memory_id_index", "memory_type_index", "mfc_id_index"), "255")
        self.assertEqual(Row(self.ROW, silicon_id="TRUE", **at_255).recognition(), "silicon 17@255")


class ShippedTable(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.files = Files(DATA)
        cls.table = cls.files.table

    def test_the_table_is_written_as_it_was_read(self):
        self.assertEqual(self.table.text(), (DATA / "pgm_flash.csv").read_text(encoding="utf-8"))

    def test_the_readme_has_the_numbers(self):
        result = run(TOOL / "numbers_of_table.py")
        self.assertEqual((result.returncode, result.stderr), (0, ""))

    def test_every_row_has_its_evidence_and_nothing_else_has(self):
        rows = [(row.name, row.recognition()) for row in self.table.rows]
        text = (DATA / "sources.csv").read_text(encoding="utf-8")
        self.assertEqual([tuple(line.split(",")[:2]) for line in text.splitlines()[1:]], rows)
        self.assertEqual(self.files.evidence.text(self.table), text)
        self.assertEqual(sorted(member for members in GROUPS.values() for member in members), sorted(self.table.columns))

    def test_an_alias_names_a_row_and_is_no_row(self):
        for alias, (name, reason) in self.files.aliases.items():
            self.assertIsNotNone(self.table.by_name(name), alias)
            self.assertEqual(self.table.rows_named(alias), [], alias)
            self.assertNotEqual(reason, "", alias)
            self.assertEqual(alias, alias.upper())
            self.assertNotRegex(alias + name + reason, "[,\"]", "readers split the line at commas")

    def test_a_chip_that_is_left_out_is_no_row(self):
        for (name, identification), reason in self.files.left_out.items():
            self.assertEqual(self.table.rows_named(name), [], name)
            self.assertNotEqual(reason, "", name)
            self.assertNotRegex(name + identification + reason, "[,\"]", "readers split the line at commas")

    def test_names_that_people_type_find_a_row(self):
        answering = {"IS25WP02G": "IS25WP02GG", "26VF064BA": "SST26VF064B", "M25P05-A": "M25P05", "M25P10-A": "M25P10"}
        for name, row in answering.items():
            self.assertEqual(self.files.aliases.get(name, ("none", ""))[0], row, name)

    def test_the_longest_credible_chip_erase_that_lists_give_stands(self):
        for name, seconds in {"GD25Q64": "160", "W25Q80BL": "25"}.items():
            self.assertEqual(self.table.by_name(name)["bulk_erase_time"], seconds, name)

    def test_chips_agree_with_their_own_parameter_tables(self):
        result = run(TOOL / "merge.py", HERE / "own_tables.csv")
        self.assertEqual(result.stdout, "0 row, 0 by name, 0 alias, 0 change, 0 conflict, 0 left out; nothing written\n")

    def test_no_row_without_the_maker_stands_above_another_maker(self):
        rows = self.table.rows
        first = next(i for i, row in enumerate(rows) if not row.compares_maker())
        self.assertLessEqual({row["manufacturer_name"] for row in rows[first:]}, {"Micron", "Spansion"})

    def test_further_bytes_do_not_change_the_chip_of_another_maker(self):
        for row in self.table.rows:
            if row["manufacturer_name"] in ("Micron", "Spansion") or row.is_silicon() or row["ini"] != "NONE":
                continue
            answering = self.table.answer(own_response(row))
            for junk in ("FF0180", "4D0180", "4D0181", "4D0080", "104400", "104000", "030100"):
                response = bytearray(own_response(row).ljust(3, b"\0"))
                if len(response) == 3:
                    self.assertIs(self.table.answer(bytes(response) + bytes.fromhex(junk)), answering, row.name)

    def test_rows_that_only_their_name_reaches_have_an_answering_row(self):
        self.assertTrue(all(answering.name != row.name for row, answering in beaten_rows(self.table)))


if __name__ == "__main__":
    unittest.main()
