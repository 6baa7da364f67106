"""Tests of the generator of the Unicode tables.

They need the data files: in the directory that QXPAF_UCD_DIR names, else in one beside the repository. Without them every
test is skipped.
"""

import contextlib
import io
import os
import pathlib
import shutil
import tempfile
import unittest

from support import FolderTest, ROOT, run_script

import gen_unicode

DATA = pathlib.Path(os.environ.get("QXPAF_UCD_DIR") or os.path.join(ROOT, "..", "shared", "ucd"))
TABLES = ROOT / "src" / "text" / "unicode_tables.cpp"

CHARACTERS = "5.1.0/UnicodeData.txt"
CLASSES = "5.2.0/UnicodeData.txt"
DERIVED = "5.2.0/DerivedCoreProperties.txt"
PROPERTIES = "5.2.0/PropList.txt"
FOLDS = "8.0.0/CaseFolding.txt"

# File, text, replacement, and what the message has to name.
DEFECTS = {
    "a mapping is missing": (CHARACTERS, ";;;;0061;\n", ";;;;;\n", "kLowerCase: entries: 982 instead of 983"),
    "a mapping differs": (CHARACTERS, "0130;LATIN CAPITAL LETTER I WITH DOT ABOVE;Lu;0;L;0049 0307;;;;N;"
                          "LATIN CAPITAL LETTER I DOT;;;0069;", "0130;LATIN CAPITAL LETTER I WITH DOT ABOVE;Lu;0;L;"
                          "0049 0307;;;;N;LATIN CAPITAL LETTER I DOT;;;0068;", "kLowerCase: entry of U+0130"),
    "a mapping is on a new page": (CHARACTERS, "0905;DEVANAGARI LETTER A;Lo;0;L;;;;;N;;;;;",
                                   "0905;DEVANAGARI LETTER A;Lo;0;L;;;;;N;;;;0906;", "kLowerCase: pages"),
    "an unknown category": (CLASSES, "0041;LATIN CAPITAL LETTER A;Lu;", "0041;LATIN CAPITAL LETTER A;Xx;",
                            "unknown category 'Xx'"),
    "a field too many": (CLASSES, "0041;LATIN CAPITAL LETTER A;Lu;", "0041;LATIN CAPITAL LETTER A;Lu;0;", "number of fields"),
    "a field too few": (CHARACTERS, "0041;LATIN CAPITAL LETTER A;Lu;0;", "0041;LATIN CAPITAL LETTER A;Lu;", "number of fields"),
    "no code point": (CHARACTERS, ";;;;0061;\n", ";;;;61;\n", "'61' is no code point"),
    "beyond the last code point": (CHARACTERS, ";;;;0061;\n", ";;;;110000;\n", "'110000' is no code point"),
    "a line is missing": (CHARACTERS, "0000;<control>;Cc;0;BN;;;;;N;NULL;;;;\n", "", "number of lines: 19335"),
    "lines are out of order": (CHARACTERS, "0043;LATIN CAPITAL", "0041;LATIN CAPITAL", "out of order"),
    "a range without an end": (CLASSES, "<Hangul Syllable, Last>", "<Hangul Syllable>", "last line of a range"),
    "a property has another name": (DERIVED, "; Alphabetic ", "; Alphabetical ", "properties: "),
    "another version of a file": (PROPERTIES, "# PropList-5.2.0.txt", "# PropList-6.0.0.txt", "first line"),
    "a class differs": (CLASSES, "0041;LATIN CAPITAL LETTER A;Lu;", "0041;LATIN CAPITAL LETTER A;Ll;",
                        "kProperties: entry of U+0041"),
    "a property row with a field more": (PROPERTIES, "0020          ; White_Space #", "0020 ; White_Space ; Yes #",
                                         "number of fields"),
    "an unknown fold status": (FOLDS, "0041; C; 0061;", "0041; X; 0061;", "unknown status 'X'"),
    "a fold twice": (FOLDS, "0042; C; 0062;", "0041; C; 0061;", "second fold"),
    "a fold is missing": (FOLDS, "0042; C; 0062;", "0042; T; 0062;", "kCaseFold: entries: 1197 instead of 1198"),
    "a fold of two is one": (FOLDS, "FB02; F; 0066 006C;", "FB02; F; 0066;", "kFoldPairs"),
    "a fold of a fold": (FOLDS, "0041; C; 0061;", "0041; C; 0042;", "fold of U+0041 has a fold"),
    "another decomposition": (CHARACTERS, "00E9;LATIN SMALL LETTER E WITH ACUTE;Ll;0;L;0065 0301;",
                              "00E9;LATIN SMALL LETTER E WITH ACUTE;Ll;0;L;0066 0301;", "accents of 5.2.0"),
}


@unittest.skipUnless(DATA.is_dir(), f"no Unicode data at {DATA}; QXPAF_UCD_DIR says where they are")
class GeneratorTest(FolderTest):
    """What the script writes, and what it refuses."""

    def copy_with(self, name, text, replacement):
        """A copy of the data in which a text in one file is replaced."""
        directory = pathlib.Path(tempfile.mkdtemp(dir=self.folder))
        shutil.copytree(DATA, directory, copy_function=os.symlink, dirs_exist_ok=True)
        original = (DATA / name).read_text(encoding="utf-8")
        self.assertIn(text, original)
        (directory / name).unlink()
        (directory / name).write_text(original.replace(text, replacement), encoding="utf-8")
        return directory

    def generate(self, directory):
        with contextlib.redirect_stdout(io.StringIO()):
            return gen_unicode.generate(str(directory), print)

    def test_committed_tables_are_what_the_data_give(self):
        run = run_script("gen_unicode.py", DATA, "--check", TABLES)
        self.assertEqual((run.returncode, run.stderr), (0, ""))

    def test_written_file_is_the_committed_one(self):
        for name in ("first.cpp", "second.cpp"):
            run = run_script("gen_unicode.py", DATA, "--output", self.folder / name)
            self.assertEqual((run.returncode, run.stderr), (0, ""))
            self.assertEqual((self.folder / name).read_bytes(), TABLES.read_bytes())

    def test_counts_are_reported(self):
        run = run_script("gen_unicode.py", DATA, "--check", TABLES)
        for line in ("kLowerCase: 983 entries, 16 pages", "kUpperCase: 991 entries, 17 pages", "kAccents: 778 entries, 9 pages",
                     "kCaseFold: 1198 entries, 19 pages", "kFoldPairs: 88 rows; kFoldTriples: 16 rows"):
            self.assertIn(line, run.stdout)
        self.assertRegex(run.stdout, "kProperties: [0-9]+ entries, 68 pages")

    def test_a_changed_table_is_noticed(self):
        text = TABLES.read_text(encoding="utf-8")
        changed = self.write("tables.cpp", text.replace("0x61", "0x62", 1))
        run = run_script("gen_unicode.py", DATA, "--check", changed)
        self.assertEqual(run.returncode, 1)
        self.assertIn("is not what the data give", run.stderr)

    def test_missing_files_are_named(self):
        for directory in (self.folder, self.folder / "none"):
            run = run_script("gen_unicode.py", directory, "--output", self.folder / "tables.cpp")
            self.assertEqual(run.returncode, 2)
            self.assertIn("UnicodeData.txt", run.stderr)
        self.assertFalse((self.folder / "tables.cpp").exists())

    def test_nothing_is_written_from_wrong_data(self):
        directory = self.copy_with(*DEFECTS["an unknown category"][:3])
        run = run_script("gen_unicode.py", directory, "--output", self.folder / "tables.cpp")
        self.assertEqual(run.returncode, 2)
        self.assertIn("UnicodeData.txt:66: unknown category 'Xx'", run.stderr)
        self.assertFalse((self.folder / "tables.cpp").exists())

    def test_defects_are_refused(self):
        for defect, (name, text, replacement, message) in DEFECTS.items():
            with self.subTest(defect):
                directory = self.copy_with(name, text, replacement)
                with self.assertRaises(gen_unicode.DataError) as caught:
                    self.generate(directory)
                self.assertIn(message, str(caught.exception))


class NoticeTest(unittest.TestCase):
    """What the licence of the data asks for."""

    def test_generated_file_carries_the_notice(self):
        head = TABLES.read_text(encoding="utf-8")[:1500]
        for text in ("do not edit", "5.1.0", "5.2.0", "8.0.0", "Unicode, Inc.", "LICENSE.unicode", "gen_unicode.py"):
            self.assertIn(text, head)

    def test_permission_notice_is_complete(self):
        text = " ".join((ROOT / "LICENSE.unicode").read_text(encoding="utf-8").split())
        for part in ("COPYRIGHT AND PERMISSION NOTICE", "1991-2015 Unicode, Inc.", "Permission is hereby granted",
                     "that the data or software has been modified", "PROVIDED \"AS IS\"", "Except as contained in this notice"):
            self.assertIn(part, text)


if __name__ == "__main__":
    unittest.main()
