"""Tests of check_interface.py: that it finds what a page leaves out."""
import argparse
import pathlib
import tempfile
import unittest

import check_interface
from check_examples import Fault, Program, extract_blocks

PAF_H = """QXPAF_API int pafAsk(int id);
QXPAF_API int pafLong(int id, const char* text1,
                      int size);
"""
PAF_HPP = """class Session
{
 public:
  static Result<Session> Open(const std::string& database, Mode mode = Mode::Any)
  {
    if (int status = pafOpen()) return Status(status);
  }
  Session& operator=(const Session&) = delete;
  Result<std::string> Ask() { return Answer(1); }
 private:
  void Hidden() {}
};
"""
COMMANDS = """constexpr Command kCommands[] = {
    {"Open", {"Database"}, Open, nullptr},
    {"Close", {}, Close, nullptr},
};
"""
COMPLETE = """```c declarations
int pafAsk(int id);
int pafLong(int id, const char* text1,
            int size);
```
```c
strcpy(text, "Open;Database=AU;");
pafCallPafFromBrimo(text, 255);  // 0
char other[64] = "Close;";
pafCallPafFromBrimo(other, 63);  // 0, other = ""
pafGetPropertiesId(0, "Colour",
                   text, 255);  // 0
pafSetProperties("Size", "1");  // 0
pafGetProperties("Shape:round", text, 255);  // 0
qxpaf::Session::Open("AU").Ok();  // true
session->Ask().Value();  // "x"
```
"""


class MissingTest(unittest.TestCase):
    def setUp(self):
        directory = tempfile.TemporaryDirectory(prefix="paf-docs-test-")
        self.addCleanup(directory.cleanup)
        self.root = pathlib.Path(directory.name)
        self.write("include/qxpaf/paf.h", PAF_H)
        self.write("include/qxpaf/paf.hpp", PAF_HPP)
        self.write("src/command/interpreter.cpp", COMMANDS)

    def write(self, name, text):
        path = self.root / name
        path.parent.mkdir(parents=True, exist_ok=True)
        path.write_text(text, encoding="utf-8")

    def missing(self, page, properties=("Colour", "Shape:", "Size")):
        program = Program(pathlib.Path("PAGE"))
        for block in extract_blocks(page, "PAGE"):
            program.add_block(block)
        arguments = argparse.Namespace(include=self.root / "include", source=self.root)
        return list(check_interface.missing(program, arguments, properties))

    def test_complete(self):
        self.assertEqual(self.missing(COMPLETE), [])

    def test_each_part_left_out(self):
        for left_out, instead, fault in (
                ("int pafAsk(int id);\n", "", "the function pafAsk is not declared"),
                ("int pafLong(int id, const char* text1,\n            int size);\n", "",
                 "the function pafLong is not declared"),
                ('"Open;Database', '"Shut;Database', "the command Open has no example"),
                ("pafCallPafFromBrimo(other, 63);  // 0, other = \"\"", "pafCallPafFromBrimo(other, 63);",
                 "the command Close has no example"),
                ('"Close;"', '"Close"', "the command Close has no example"),
                ('"Colour"', '"Colours"', "the property Colour has no example"),
                ('text, 255);  // 0\npafSet', 'text, 255);\npafSet', "the property Colour has no example"),
                ("pafSetProperties", "puts2", "the property Size has no example"),
                ('"Shape:', '"Shape', "the property Shape: has no example"),
                ("qxpaf::Session::Open", "Open", "the member Open of qxpaf::Session has no example"),
                ('session->Ask().Value();  // "x"', "session->Ask().Value();",
                 "the member Ask of qxpaf::Session has no example")):
            with self.subTest(left_out):
                self.assertIn(left_out, COMPLETE)
                self.assertEqual(self.missing(COMPLETE.replace(left_out, instead)), [fault])

    def test_statuses(self):
        page = "## Errors\n\n| 1 | One | do this |\n| 2 | Two | |\n\n## More\n\n| 3 | Three | |\n"
        self.assertEqual(check_interface.wrong_statuses(page, {"1": "One", "2": "Two"}), [])
        self.assertEqual(check_interface.wrong_statuses(page, {"1": "one", "2": "Two", "3": "Three"}),
                         ["the status 1 is not in the table with the text 'one'",
                          "the status 3 is not in the table with the text 'Three'"])

    def test_sources_of_another_form(self):
        self.write("src/command/interpreter.cpp", "Commands commands;\n")
        with self.assertRaisesRegex(Fault, "interpreter.cpp: no names found"):
            self.missing(COMPLETE)
        self.write("src/command/interpreter.cpp", COMMANDS)
        self.write("include/qxpaf/paf.hpp", "struct Session {};\n")
        with self.assertRaisesRegex(Fault, "no class Session found"):
            self.missing(COMPLETE)


class SetUpTest(unittest.TestCase):
    def set_up(self, page):
        with tempfile.TemporaryDirectory(prefix="paf-docs-test-") as name:
            directory = pathlib.Path(name)
            (directory / "PAGE").write_text(page, encoding="utf-8")
            (directory / "work").mkdir()
            arguments = argparse.Namespace(page=directory / "PAGE", source=directory, library=directory / "lib.so",
                                           paf=directory / "paf", timeout=60, env=[], directory=None)
            check_interface.set_up(arguments, directory / "work")
            return sorted(path.name for path in (directory / "work").iterdir()), arguments

    def test_runs_the_block(self):
        names, arguments = self.set_up("```sh\necho x >made\n```\n")
        self.assertEqual(names, ["data", "made"])
        self.assertEqual([setting.split("=")[0] for setting in arguments.env], ["LD_LIBRARY_PATH"])

    def test_faults(self):
        for page, fault in (("Prose.\n", "0 blocks"), ("```sh\n```\n\n```sh\n```\n", "2 blocks"),
                            ("```sh\nfalse\necho x\n```\n", "ends with status 1")):
            with self.subTest(page), self.assertRaisesRegex(Fault, fault):
                self.set_up(page)


if __name__ == "__main__":
    unittest.main()
