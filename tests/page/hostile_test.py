"""Names that were made to become markup stay names."""

import pathlib
import shutil

from browser import Command
from page_case import ROOT, PageTest
from responses import own_response


LINES = (ROOT / "data" / "flash" / "pgm_flash.csv").read_text(encoding="utf-8").splitlines()
MEMBERS = [cell.strip() for cell in LINES[1].split(",")]
ROW = next(line for line in LINES[8:] if "W25Q128JV," in line)


def with_cells(**cells):
    """The row with other cells."""
    return ",".join(cells.get(member, cell) for member, cell in zip(MEMBERS, ROW.split(",")))


class Hostile(PageTest):
    def load_page_of(self, rows):
        """The page of a table of these rows, and the command that has written it."""
        directory = pathlib.Path(self.scratch.name) / self.id()
        databases = directory / "programmer"
        databases.mkdir(parents=True)
        source = directory / "hostile.csv"
        source.write_text("\n".join(LINES[:8] + rows) + "\n", encoding="utf-8")
        shipped = self.program.resolve().parent.parent / "share" / "tessary" / "devices" / "programmer"
        shutil.copy(shipped / "pgm_dev_info.pcf", databases)
        hostile = Command(self.program, directory)
        compiled = hostile.run("flash", "compile", source, databases / "pgm_flash.pcf")
        self.assertEqual(compiled.returncode, 0, compiled.stderr)
        self.page.load(hostile.page(directory / "page"))
        return hostile

    def test_names_never_become_markup(self):
        name = "</script><script>document.title=1</script><img/src=x/onerror=document.title=2>"
        hostile = self.load_page_of([ROW.replace("W25Q128JV", name).replace("Winbond", "<b>x")])
        self.assertEqual(self.chips(), [name])
        self.page.open("#/row/0")
        self.assertIn(name, self.page.find("#view-chip h2").text)
        self.assertEqual(self.page.ask("document.querySelectorAll('img, b, script[src]').length"), 0)
        answer = hostile.json("flash", "identify", own_response(hostile.json("flash", "list")[0]))["devices"][0]
        self.assertEqual(self.page.ask("tessary.identify('EF4018', true)"), answer)

    def test_names_of_any_script(self):
        """The column of names begins each where it differs from the one before, perhaps within a character."""
        names = ["чип1", "чип2", "чит3", "чит", "é1", "è1", "a💡b", "a💥b", "a/b", "a%2Fb", "a#b"]
        rows = [with_cells(device_name=name, memory_id=f"0x{i:02X}") for i, name in enumerate(names, 1)]
        self.load_page_of(rows)
        self.assertEqual(self.chips(), names)
        for place, name in enumerate(names):
            link = self.driver.find_elements("css selector", "#chips-table tbody th a")[place].get_attribute("href")
            self.page.open(f"#{link.split('#', 1)[1]}")
            self.assertEqual(self.page.find("#view-chip h2").text, f"Winbond {name}")

    def test_voltages_and_times_that_are_no_numbers(self):
        voltages = ["3.3V", "unknown", "1.8V", "2.5V"]
        rows = [with_cells(device_name=f"CHIP{i}", memory_id=f"0x{i:02X}", asc_voltage=voltage, bulk_erase_time=str(i))
                for i, voltage in enumerate(voltages)]
        self.load_page_of(rows)
        self.driver.find_elements("css selector", "#chips-table thead button")[5].click()
        self.assertEqual(self.page.texts("#chips-table tbody td:nth-child(6)"), ["unknown", "1.8V", "2.5V", "3.3V"])
        self.page.open("#/chip/CHIP0")  # whose erase time has no place in the picture: the browser says nothing of it
        self.assertEqual(self.page.ask("document.querySelectorAll('.own').length"), 0)
        self.page.open("#/chip/CHIP1")
        self.assertEqual(self.page.ask("document.querySelectorAll('.own').length"), 1)
