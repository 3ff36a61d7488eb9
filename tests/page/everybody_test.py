"""The page can be used by everybody: all links, accessibility, looks, size and speed."""

from browser import DESKTOP, PHONE
from page_case import PageTest

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


class Everybody(PageTest):
    def test_every_link_leads_somewhere(self):
        seen = self.driver.execute_script(
            """const [seen, waiting] = [new Map(), ["#/chips"]];
            const known = new Set(waiting);
            const shown = () => document.querySelector("main > section:not([hidden])");
            const collect = (place) => place.querySelectorAll("a").forEach((link) => {
                const address = link.getAttribute("href");
                if (!known.has(address)) { known.add(address); waiting.push(address); }
            });
            document.getElementById("switched-off").click();
            document.getElementById("chips-more").click();
            document.getElementById("main").hidden = true;  // nothing needs to be laid out
            collect(document.querySelector("header"));
            for (let address; (address = waiting.shift()) !== undefined;) {
                tessary.show(address);  // as a click does, but without waiting for the screen
                const view = shown();
                seen.set(address, `${view.querySelector("h2").textContent} ` +
                    `${view.querySelector(".verdict")?.textContent ?? ""}`);
                if (!address.startsWith("#/names/") || seen.size < 60) { collect(view); }
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
