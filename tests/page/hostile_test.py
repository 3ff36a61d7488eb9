"""Names that were made to become markup stay names."""

import pathlib
import shutil

from browser import Command
from page_case import ROOT, PageTest
from responses import own_response


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
        shipped = self.program.resolve().parent.parent / "share" / "tessary" / "devices" / "programmer"
        shutil.copy(shipped / "pgm_dev_info.pcf", databases)
        hostile = Command(self.program, directory)
        compiled = hostile.run("flash", "compile", directory / "hostile.csv", databases / "pgm_flash.pcf")
        self.assertEqual(compiled.returncode, 0, compiled.stderr)
        self.page.load(hostile.page(directory / "hostile"))
        self.assertEqual(self.chips(), [name])
        self.page.open("#/row/0")
        self.assertIn(name, self.page.find("#view-chip h2").text)
        self.assertEqual(self.page.ask("document.querySelectorAll('img, b, script[src]').length"), 0)
        answer = hostile.json("flash", "identify", own_response(hostile.json("flash", "list")[0]))["devices"][0]
        self.assertEqual(self.page.ask("tessary.identify('EF4018', true)"), answer)
