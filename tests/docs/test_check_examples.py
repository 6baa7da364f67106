"""Tests of check_examples.py: that it finds every kind of fault, and what it takes for right.

CXX names the compiler, QXPAF_LIBRARY the library, QXPAF_DOCS_FLAGS further options of the checker.
"""
import os
import pathlib
import subprocess
import sys
import tempfile
import unittest

HERE = pathlib.Path(__file__).resolve().parent
INCLUDE = HERE.parent.parent / "include"


def fenced(code, info="cpp"):
    return f"Prose.\n\n```{info}\n{code}\n```\n"


class CheckTest(unittest.TestCase):
    def setUp(self):
        directory = tempfile.TemporaryDirectory(prefix="paf-docs-test-")
        self.addCleanup(directory.cleanup)
        self.page = pathlib.Path(directory.name) / "page.md"

    def run_check(self, text, *options):
        self.page.write_text(text, encoding="utf-8")
        command = [sys.executable, "-B", HERE / "check_examples.py", "--compiler", os.environ.get("CXX", "c++"),
                   "--include", INCLUDE, "--library", os.environ["QXPAF_LIBRARY"],
                   *os.environ.get("QXPAF_DOCS_FLAGS", "").split(), *options, self.page]
        result = subprocess.run(command, capture_output=True, encoding="utf-8", check=False)
        return result.returncode, result.stdout.replace(str(self.page), "PAGE")

    def assert_right(self, text, *options):
        status, output = self.run_check(text, *options)
        self.assertEqual(status, 0, output)

    def assert_faults(self, text, *faults, options=()):
        status, output = self.run_check(text, *options)
        self.assertEqual(status, 1)
        self.assertEqual(output.splitlines(), list(faults))


class RightTest(CheckTest):
    def test_every_form_of_result(self):
        self.assert_right(fenced(r"""
const char* none = nullptr;
char buffer[8] = "abc";
int number = 7;
none;  // nullptr
buffer;  // "abc"
std::string("a\0b", 3);  // "a\0b"
std::string("\xE9t");  // "\xE9" "t"
std::string("é // \"");  // "é // \"": remark
L"é\n";  // L"é\n" (remark)
buffer[1];  // 'b'
L'é';  // L'é'
L'é';  // U+00E9
static_cast<unsigned char>(200);  // 200
-1L;  // -1
31;  // 0x1F
0.9444;  // 0.944
2.0;  // 2
number == 7;  // true
number = 8;  // 8, number = 8, number * (1 + 1) = 16, buffer[0] = 'a': all of them
number += number /* twice, // so to say */
          + 1;  // number = 17
""", "c"))

    def test_scope_includes_and_other_blocks(self):
        page = fenced("int x = 1;\nx;  // 1") + fenced("#include <cctype>\n// free\nint x = 2;\nx;  // 2")
        page += fenced("not C at all", "text") + "~~~text\n```cpp\n~~~\n" + "| `3;  // 4` |\n"
        page += fenced("std::abort();  // a free comment", "cpp no-run")
        page += fenced("int abs(int);  // a free comment\nint nowhere(void);", "c declarations")
        self.assert_right(page)

    def test_environment_and_directory(self):
        page = fenced('std::getenv("DOCS_VALUE");  // "a=b"\nFILE* page = std::fopen("page.md", "r");\n'
                      "page != nullptr;  // true\nstd::fclose(page);")
        self.assert_right(page, "--env", "DOCS_VALUE=a=b", "--directory", self.page.parent)


class WrongTest(CheckTest):
    def test_wrong_results(self):
        self.assert_faults(
            fenced(r"""int n = 3;
n;  // 4
n == 3;  // 1
std::string("é");  // "e"
L"é";  // "é"
std::string("a\0b", 3);  // "a"
'x';  // "x"
0.9446;  // 0.944
0.1;  // 0
static_cast<const char*>(nullptr);  // ""
n = 5;  // n = 4"""),
            "PAGE:5: n gives 3, not 4",
            "PAGE:6: n == 3 gives true, not 1",
            'PAGE:7: std::string("é") gives "é", not "e"',
            r'PAGE:8: L"é" gives L"\x000000E9", not "é"',
            r'PAGE:9: std::string("a\0b", 3) gives "a\x00b", not "a"',
            "PAGE:10: 'x' gives 'x', not \"x\"",
            "PAGE:11: 0.9446 gives 0.945, not 0.944",
            "PAGE:12: 0.1 gives 0.10000000000000001, not 0",
            'PAGE:13: static_cast<const char*>(nullptr) gives nullptr, not ""',
            "PAGE:14: n gives 5, not 4")

    def test_never_reached_thrown_and_crashed(self):
        self.assert_faults(fenced("if (std::getenv(\"PATH\") == nullptr) {\n  1;  // 1\n}"),
                           "PAGE:5: 1 was never reached")
        thrower = '#include <stdexcept>\nthrow std::runtime_error("no");\n1;  // 1'
        self.assert_faults(fenced(thrower) + fenced("2;  // 2"),
                           "PAGE:3: the block throws an exception: no", "PAGE:6: 1 was never reached")
        self.assert_faults(fenced("1;  // 1") + fenced("std::_Exit(3);"), "PAGE:8: the block ends with status 3")

    def test_does_not_compile(self):
        for code in ("\nint x = missing;\n1;  // 1", "\nstd::abort();  // 1"):
            status, output = self.run_check(fenced(code))
            self.assertEqual(status, 1)
            self.assertIn("PAGE:5:", output)

    def test_declaration_of_another_type(self):
        page = fenced("int abs(int);\nlong\nabs(long);", "c declarations") + fenced("1;  // 1")
        status, output = self.run_check(page)
        self.assertEqual(status, 1)
        self.assertRegex(output, "PAGE:[56]:")

    def test_form(self):
        for line, fault in (
                ("f();  // gives 1", "PAGE:4: not in the form of a result: gives 1"),
                ("f();  // 1 or 2", "PAGE:4: not in the form of a result: 1 or 2"),
                ("f();  // 1, 2", "PAGE:4: not in the form of a result: 1, 2"),
                ("f();  //", "PAGE:4: not in the form of a result: "),
                ("f(1,  // 1", "PAGE:4: a result that does not stand behind the end of a statement"),
                ("{  // 1", "PAGE:4: a result that does not stand behind the end of a statement")):
            with self.subTest(line):
                self.assert_faults(fenced(line), fault)
        self.assert_faults(fenced("1;  // 1", "cpp maybe"), "PAGE:3: unknown words after ```cpp: maybe")
        self.assert_faults("```c\n1;  // 1\n", "PAGE:1: the block is never closed")

    def test_no_examples(self):
        for page in ("", "Prose `1;  // 1`.\n", fenced("int x = 1;"), fenced("1;  // 1", "text"),
                     fenced("1;  // 1", "c no-run")):
            self.assert_faults(page, "PAGE: no example states a result")

    def test_covers(self):
        header = self.page.parent / "some.h"
        header.write_text("QXPAF_API int abs(int c);\nQXPAF_API void\nlabs_(long c);\n", encoding="utf-8")
        self.assert_faults(fenced("abs(-1);  // 1"), "PAGE: abs of some.h is called 1 times, not 2 or more",
                           "PAGE: labs_ of some.h is called 0 times, not 2 or more", options=("--covers", header))
        header.write_text("QXPAF_API int abs(int c);\n", encoding="utf-8")
        self.assert_right(fenced("abs(-1);  // 1\nabs (2) == abs(-2);  // true"), "--covers", header)
        header.write_text("int abs(int c);\n", encoding="utf-8")
        self.assert_faults(fenced("abs(-1);  // 1"), f"{header}: exports nothing", options=("--covers", header))

    def test_covers_once(self):
        header = self.page.parent / "some.h"
        header.write_text("QXPAF_API int abs(int c);\n", encoding="utf-8")
        self.assert_right(fenced("abs(-1);  // 1"), "--covers", header, "--once")
        self.assert_faults(fenced("abs(-1);\n1;  // 1"),
                           "PAGE: abs of some.h is called 0 times with a result, not once or more",
                           options=("--covers", header, "--once"))


if __name__ == "__main__":
    unittest.main()
