#!/usr/bin/env python3
"""Shows that check_handbook.py finds what it is there to find."""

import pathlib
import sys
import tempfile
import unittest

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parent))
import check_handbook  # noqa: E402
from program_texts import Sources  # noqa: E402

TABLE = "library/LibraryTexts.cpp"
SOURCE = """
// "a comment is never told"
constexpr Word kWords[] = {
    {"Save", {"Sauver", "Save", "Guardar", "Guardar"}},
    {"Gone", {"Fiche supprimée", "Card %1 deleted elsewhere", "Ficha eliminada", "Ficha eliminada"}},
};
constexpr const char* kLog = "Messages.Txt";
void Fail(int n) {
  throw Fault("the file " + name + " is locked"
              " by somebody", n);
}
"""


class Handbook(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.root = pathlib.Path(folder.name).resolve()
        self.write(f"src/{TABLE}", SOURCE)
        for other in ("ui/Other.cpp", "ui/tests/OfATest.cpp"):
            self.write(f"src/{other}", 'auto x = "what a test says";' if "tests" in other else "")
        self.page("en", "screen-library.md", "# A\n\n**Save**\n")
        self.page("fr", "screen-library.md", "# B\n\n**Sauver**\n")
        told = "| `the file … is locked by somebody` | x |\n"
        self.page("en", "faults.md", "# A\n\n" + told + "| `Card … deleted elsewhere` | x |\n")
        self.page("fr", "faults.md", "# B\n\n" + told + "| `Fiche supprimée` | x |\n")
        for language in ("en", "fr"):
            self.page(language, "files.md", "# A\n\n`Messages.Txt`\n")
        self.addCleanup(setattr, check_handbook, "SCREENS", check_handbook.SCREENS)
        self.addCleanup(setattr, check_handbook, "MESSAGES", check_handbook.MESSAGES)
        check_handbook.SCREENS = [(TABLE, ["screen-library.md"], "^none$")]
        check_handbook.MESSAGES = {TABLE: "^Gone$"}

    def write(self, name, text):
        path = self.root / name
        path.parent.mkdir(parents=True, exist_ok=True)
        path.write_text(text, encoding="utf-8")

    def page(self, language, name, text):
        self.write(f"docs/handbook/{language}/{name}", text)

    def found(self):
        return check_handbook.findings(self.root)

    def test_a_handbook_that_tells_all_is_left_alone(self):
        self.assertEqual(self.found(), [])

    def test_a_link_or_an_anchor_that_leads_nowhere_is_told(self):
        self.write("README.md", "# One `two`\n\n[a](#one-two) [b](#three) [c](docs/gone.md) `[d](e)`\n")
        self.assertEqual(self.found(), ["README.md: there is no heading for #three",
                                        "README.md: docs/gone.md leads nowhere"])

    def test_other_headings_commands_or_tables_in_french_are_told(self):
        self.page("en", "more.md", "# A\n\n```sh\nls\n```\n\n| a |\n")
        self.page("fr", "more.md", "# A\n\n## B\n\n```sh\nls -l\n```\n")
        self.assertEqual([line.split(":")[0:2] for line in self.found()],
                         [["more.md", " other headings in French"], ["more.md", " other commands in French"],
                          ["more.md", " 1 rows of tables in English, 0 in French"]])

    def test_a_page_in_one_language_is_told(self):
        self.page("en", "more.md", "# A\n")
        self.assertEqual(self.found(), ["more.md stands in one language only"])

    def test_a_picture_that_no_page_shows_or_that_is_large_is_told(self):
        self.write("docs/a.png", "")
        self.write("docs/b.png", "x" * (check_handbook.MOST_BYTES + 1))
        self.write("README.md", "![b](docs/b.png)\n")
        self.assertEqual(self.found(), ["docs/a.png stands on no page",
                                        f"docs/b.png has more than {check_handbook.MOST_BYTES} bytes"])

    def test_a_label_that_no_control_bears_is_told(self):
        self.page("fr", "screen-library.md", "# B\n\n**Sauver** **Save**\n")
        self.assertEqual(self.found(), ["fr/screen-library.md: no control is called **Save**"])

    def test_a_control_that_its_page_lacks_is_told(self):
        self.page("en", "screen-library.md", "# A\n\n`**Save**`\n")
        self.assertEqual(self.found(), ["en/screen-library.md: the control Save (**Save**) is missing"])

    def test_a_file_that_its_page_lacks_is_told(self):
        self.page("fr", "files.md", "# A\n")
        self.assertEqual(self.found(), [f"fr/files.md: Messages.Txt ({TABLE}) is missing"])

    def test_a_sentence_without_a_cure_is_told(self):
        self.write("src/ui/Other.cpp", 'Tell(cold ? "it is too cold" : "x");')
        self.assertEqual(self.found(), ['en/faults.md: "it is too cold" (ui/Other.cpp) has no cure',
                                        'fr/faults.md: "it is too cold" (ui/Other.cpp) has no cure'])

    def test_a_line_of_a_screen_without_a_cure_is_told_in_its_language(self):
        self.page("fr", "faults.md", "# B\n\n| `the file … is locked by somebody` | x |\n")
        self.assertEqual(self.found(), [f'fr/faults.md: "Fiche supprimée" ({TABLE}) has no cure'])

    def test_a_cure_for_what_the_program_does_not_say_is_told(self):
        path = self.root / "docs/handbook/en/faults.md"
        path.write_text(path.read_text(encoding="utf-8") + "| `the house … is on fire` | x |\n", encoding="utf-8")
        self.assertEqual(self.found(), ['en/faults.md: the program does not say "the house"',
                                        'en/faults.md: the program does not say "is on fire"'])


class ProgramTexts(unittest.TestCase):
    def test_a_row_may_take_its_french_from_the_routine_or_a_constant(self):
        with tempfile.TemporaryDirectory() as folder:
            src = pathlib.Path(folder)
            src.joinpath("A.h").write_text('inline constexpr const char* kRest = "Repos";')
            src.joinpath("B.cpp").write_text('{"Fini", {kNone, "Done", "Pronto", "Listo"}}, '
                                             '{"Rest", "tip", {Of::kRest, "At " "rest", "Parado", "Parado"}}, '
                                             '{kOne, kTwo, kThree, kFour}')
            rows = Sources(src).rows
        self.assertEqual([(row.name, row.texts) for row in rows],
                         [("Fini", ["Fini", "Done", "Pronto", "Listo"]),
                          ("Rest tip", ["Repos", "At rest", "Parado", "Parado"])])


if __name__ == "__main__":
    unittest.main()
