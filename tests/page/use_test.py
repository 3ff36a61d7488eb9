"""Lists and boxes: searched, filtered, sorted and filled in, by mouse and keyboard."""

from selenium.webdriver.common.keys import Keys

from page_case import PageTest


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

    def test_the_enter_key_sends_the_search_to_nobody(self):
        self.search("mx25l12835f")
        self.driver.switch_to.active_element.send_keys(Keys.ENTER)  # the browser does not complain of the page's policy
        self.assertEqual(self.chips(), ["MX25L12833F"])

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

    def test_a_link_to_where_one_is_answers_again(self):
        self.page.open("#/identify/EF%2040%2018")
        box = self.page.find("#response")
        box.clear()
        box.send_keys("20 BB 21")
        self.page.find("#identify-examples a").click()  # the address stays
        self.assertEqual(box.get_property("value"), "EF 40 18")
        self.assertIn("W25Q128JV", self.page.find("#identify-answer .verdict").text)

    def test_the_skip_link_stays_in_the_view(self):
        self.page.open("#/chip/W25Q128JV")
        self.page.find(".skip").send_keys(Keys.ENTER)
        self.page.wait_for("document.activeElement.id === 'main'")
        self.driver.switch_to.active_element.send_keys(Keys.TAB)
        self.assertEqual(self.page.ask("document.activeElement.textContent"), "All chips")
        self.assertEqual(self.page.ask("location.hash"), "#/chip/W25Q128JV")

    def test_what_the_browser_keeps_of_the_filters_is_what_is_shown(self):
        self.page.find("#maker").send_keys("Macronix")
        self.page.open("#/profiles")
        self.page.find("#only-different").click()
        self.driver.get("about:blank")
        self.driver.back()
        self.page.wait_for("document.readyState === 'complete'")
        shown = self.page.texts("#profiles-table tbody tr")
        every = len(self.command.json("profile", "list")[0]) - 1
        self.assertEqual(len(shown) < every, self.page.find("#only-different").is_selected())
        self.page.open("#/chips")
        self.assertEqual(self.page.find("#maker").get_property("value"), "Macronix")
        rows = self.command.json("flash", "list", "--maker", "Macronix")
        self.assertEqual(self.chips(), [row["device_name"] for row in rows])

    def test_addresses_that_lead_nowhere(self):
        for address in ("#/constructor", "#/__proto__", "#/nothing", "#main"):
            self.page.open(address)
            self.assertEqual(self.page.texts("main > section:not([hidden]) h2"), ["Serial flash chips"], address)
        for address in ("#/row/", "#/row/length", "#/row/-1"):
            self.page.open(address)
            self.assertEqual(self.page.find("#view-chip h2").text, "No such chip", address)

    def test_only_ascii_letters_have_a_case(self):
        self.assertEqual(self.page.ask("tessary.spell('kes50c6').name"), "KES50C6")
        self.page.open("#/names/ke\u017f50c6")  # whose third letter is no S
        self.assertIn("No part", self.page.find("#name-answer").text)
