"""What the page answers to scripts is what the command answers."""

from page_case import PageTest, without
from responses import questions


class Answers(PageTest):
    asks_only = True

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
