#!/usr/bin/env python3
"""Compiles and runs the C and C++ examples of a Markdown page and compares what they give with what the page says.

An example stands in a block fenced as ```c or ```cpp. A block is the body of one function, so it is one scope; its
#include lines, and those of <string> and <cstring>, hold for the whole page. All blocks make one C++17 program.

    EXPRESSION;  // RESULT                      the value of the expression
    STATEMENT;   // NAME = RESULT               the value of NAME, any expression without = and quotes, after it
    EXPRESSION;  // RESULT, NAME = RESULT, ...  both, and as many names as needed
    ...          // RESULT: remark              a remark behind the last result, or
    ...          // RESULT (remark)             in brackets

RESULT is one of

    "text"  L"text"      text, written as a literal of the page's language; adjacent literals are joined
    'x'  L'x'  U+00E9    a char; a wchar_t, in either form
    12  -1  0x1F         a whole number; a floating point number that is exactly that
    0.944                a floating point number, rounded to the decimals shown
    true  false          a bool (a whole number is not one)
    nullptr              a null pointer

A statement may take several lines; its results stand behind its last one. Everything behind // that ends a line of code
must be results in this form, so that nothing on the page goes unchecked by mistake; comments on lines of their own and
in /* */ are free. Lines without results are statements to be run. A block fenced as ```c no-run or ```cpp no-run is
compiled but not run, and its comments are free. One fenced as ```c declarations stands outside of functions, as
extern "C", so that what it declares must agree with the headers; its comments are free too. Tables and blocks of other
languages are not looked at.

Exit status 0 when every result is right, 1 when one is wrong, was never reached or is not in this form, when a block
does not compile or the program fails, or when the page has no results; each fault is one line "page:line: what is
wrong". With --covers, the names that the header marks as exported must each be called twice or more in what is run;
with --once as well, once or more in a statement that states a result.
"""
import argparse
import dataclasses
import os
import pathlib
import re
import subprocess
import sys
import tempfile

FENCE = re.compile(r"^ *(?P<marks>`{3,}|~{3,}) *(?P<info>[^`]*)$")
# What may stand behind ```, and what becomes of the block.
KINDS = {"c": "run", "cpp": "run", "c no-run": "compile", "cpp no-run": "compile", "c declarations": "declare"}
TEXT = r'"(?:[^"\\]|\\.)*"'
RESULT = re.compile(rf"""
    (?P<wide>L{TEXT}(?:\ L?{TEXT})*) | (?P<text>{TEXT}(?:\ {TEXT})*) | (?P<char>L?'(?:[^'\\]|\\.)+') |
    U\+(?P<code>[0-9A-F]{{4,8}}) | (?P<float>-?\d+\.(?P<decimals>\d+)) | (?P<hex>0x[0-9A-Fa-f]+) | (?P<int>-?\d+) |
    (?P<word>true|false|nullptr)""", re.VERBOSE)
NAMED = re.compile(r"(?P<name>[A-Za-z_*&][^=\"]*?) = ")
BEHIND_RESULT = re.compile(r" \(.*\)$|: .+$|$|, ")
# The pieces of a line of code that may hold a // which starts no comment, and the // that does.
LEXEME = re.compile(rf"{TEXT}|'(?:[^'\\]|\\.)+'|/\*.*?\*/|(?P<comment>//)")
EXPORTED = re.compile(r"^QXPAF_API [^(;]*?(\w+)(?:<[^>]*>)?\(", re.MULTILINE)


class Fault(Exception):
    """A page that cannot be made into a program; the text names the place."""


@dataclasses.dataclass
class Block:
    line: int
    kind: str
    lines: list

    @property
    def run(self):
        return self.kind == "run"


@dataclasses.dataclass
class Example:
    """One result that the page states: what is evaluated, empty for the whole statement, and what it must show."""
    line: int
    source: str
    stated: str
    expected: str
    decimals: str


def parse_fence(info, place):
    """What becomes of the block; None for one of another language."""
    words = info.split()
    if not words or words[0] not in KINDS:
        return None
    kind = KINDS.get(" ".join(words))
    if kind is None:
        raise Fault(f"{place}: unknown words after ```{words[0]}: {' '.join(words[1:])}")
    return kind


def extract_blocks(text, page):
    blocks, marks, current = [], None, None
    for number, line in enumerate(text.splitlines(), 1):
        match = FENCE.match(line)
        if marks is None and match:
            marks, opened = match["marks"], number
            kind = parse_fence(match["info"], f"{page}:{number}")
            current = Block(number, kind, []) if kind else None
        elif match and match["marks"].startswith(marks) and not match["info"]:
            blocks += [current] if current else []
            marks, current = None, None
        elif current:
            current.lines.append((number, line))
    if marks is not None:
        raise Fault(f"{page}:{opened}: the block is never closed")
    return blocks


def split_comment(line):
    """The code of a line, and the text of the // comment at its end or None."""
    for match in LEXEME.finditer(line):
        if match["comment"]:
            return line[:match.start()].rstrip(), line[match.end():].strip()
    return line.rstrip(), None


def expected_text(match):
    """C++ for the form in which example_report.h shows the stated value, and the decimals to show."""
    if match["wide"] or match["text"]:
        return f"examples::Literal({match[0]})", "examples::kAllDecimals"
    if match["char"]:
        return f"examples::Show({match['char']})", "examples::kAllDecimals"
    if match["code"]:
        return f"examples::Show(static_cast<wchar_t>(0x{match['code']}))", "examples::kAllDecimals"
    if match["hex"]:
        return f"examples::Show({match['hex']})", "examples::kAllDecimals"
    return f'"{match[0]}"', str(len(match["decimals"])) if match["float"] else "examples::kAllDecimals"


def parse_result(comment, position, first):
    """The name (empty for the statement's own value) and the match of the result at the position, or None."""
    own = RESULT.match(comment, position) if first else None
    if own and BEHIND_RESULT.match(comment, own.end()):
        return "", own
    named = NAMED.match(comment, position)
    match = RESULT.match(comment, named.end()) if named else None
    return (named["name"], match) if match and BEHIND_RESULT.match(comment, match.end()) else None


def parse_results(comment, line, place):
    """The examples of one comment."""
    results, position = [], 0
    while not results or comment.startswith(", ", position):
        position += 2 if results else 0
        parsed = parse_result(comment, position, not results)
        if parsed is None:
            raise Fault(f"{place}: not in the form of a result: {comment}")
        name, match = parsed
        results.append(Example(line, name, match[0], *expected_text(match)))
        position = match.end()
    return results


class Program:
    """The C++ source that a page's blocks make, and the examples in it by number."""

    def __init__(self, page):
        self.page = page
        self.includes, self.declarations, self.body, self.calls = [], [], [], []
        self.examples = []
        self.statements = []  # what is run, in order: the code, and whether results are stated for it

    def at(self, line, text):
        quoted = str(self.page).replace("\\", "\\\\").replace('"', '\\"')
        return f'#line {line} "{quoted}"\n{text}'

    def executed(self):
        return [code for code, _ in self.statements]

    def checked(self):
        return [code for code, stated in self.statements if stated]

    def add_block(self, block):
        if block.kind == "declare":
            code = "\n".join(line for _, line in block.lines)
            self.declarations.append(self.at(block.line + 1, f'extern "C" {{ {code}\n}}'))
            return
        name = f"BlockAtLine{block.line}"
        self.body.append(f"static void {name}(examples::Report& exampleReport)\n{{\n(void)exampleReport;")
        pending = []
        for number, line in block.lines:
            if re.match(r"\s*#\s*include\b", line):
                self.includes.append(self.at(number, line))
            elif line.strip() and not (line.lstrip().startswith("//") and not pending):
                pending = self.add_line(block, pending, number, line)
        if pending:
            self.body.append(self.at(pending[0][0], "\n".join(code for _, code in pending)))
        self.body.append("}")
        if block.run:
            self.calls.append(f"  report.Run({block.line}, {name});")

    def add_line(self, block, pending, number, line):
        """Takes a line of a statement; returns the lines of the statement that is not complete yet."""
        code, comment = split_comment(line)
        pending = pending + [(number, code)]
        complete = code.endswith((";", "{", "}", ":")) or code.lstrip().startswith("#")
        if comment is not None and block.run:
            if not code.endswith(";"):
                raise Fault(f"{self.page}:{number}: a result that does not stand behind the end of a statement")
            self.add_examples(pending, comment)
        elif complete:
            self.add_statement(block, pending)
        return [] if complete else pending

    def add_statement(self, block, lines):
        code = "\n".join(code for _, code in lines)
        self.body.append(self.at(lines[0][0], code))
        if block.run:
            self.statements.append((code, False))

    def add_examples(self, lines, comment):
        line, code = lines[0][0], "\n".join(code for _, code in lines)
        examples = parse_results(comment, line, f"{self.page}:{lines[-1][0]}")
        self.statements.append((code, True))
        if examples[0].source:
            self.body.append(self.at(line, code))
        else:
            examples[0].source = code.strip().removesuffix(";")
        for example in examples:
            self.add_example(example)

    def add_example(self, example):
        number = len(self.examples)
        self.examples.append(example)
        self.body.append(self.at(example.line, f"exampleReport.Expect({number}, examples::Show({example.source}, "
                                               f"{example.decimals}), {example.expected});"))

    def text(self):
        main = ["int main(int, char** arguments)", "{", "  examples::Report report(arguments[1]);", *self.calls, "}"]
        lines = ['#include "example_report.h"', *self.includes, *self.declarations, *self.body,
                 '#line 1 "generated main"', *main]
        return "\n".join(lines) + "\n"


def compile_program(program, work, arguments):
    source, binary = work / "examples.cpp", work / "examples"
    source.write_text(program.text(), encoding="utf-8")
    library = arguments.library.resolve()
    # Warnings are faults, but for values that an example makes and does not use.
    command = [arguments.compiler, "-std=c++17", "-O0", "-Wall", "-Wextra", "-Werror", "-Wno-unused", *arguments.flag,
               "-I", pathlib.Path(__file__).resolve().parent, "-I", arguments.include, source, "-o", binary, library,
               f"-Wl,-rpath,{library.parent}"]
    result = subprocess.run(command, capture_output=True, text=True, check=False)
    if result.returncode != 0:
        raise Fault(f"{program.page}: the examples do not compile\n{result.stderr}")
    return binary


def run_program(binary, work, arguments):
    """The exit status and the lines of the report."""
    report = work / "report"
    report.touch()
    directory = arguments.directory or work / "empty"
    (work / "empty").mkdir()
    environment = dict(os.environ, **dict(setting.split("=", 1) for setting in arguments.env))
    status = subprocess.run([binary, report], cwd=directory, env=environment, stdin=subprocess.DEVNULL,
                            timeout=arguments.timeout, check=False).returncode
    return status, report.read_text(encoding="utf-8", errors="backslashreplace").splitlines()


def judge(program, status, report):
    """The faults of a finished run, as lines."""
    faults, reached, open_block = [], set(), None
    for line in report:
        kind, number, *rest = line.split(" ", 2)
        number, text = int(number), "".join(rest)
        if kind in ("right", "wrong"):
            reached.add(number)
        if kind == "wrong":
            example = program.examples[number]
            faults.append(f"{program.page}:{example.line}: {example.source} gives {text}, not {example.stated}")
        elif kind == "thrown":
            faults.append(f"{program.page}:{number}: the block throws an exception: {text}")
        open_block = {"block": number, "done": None}.get(kind, open_block)
    if status != 0:
        place = f"{program.page}:{open_block}: the block" if open_block else f"{program.page}: the program"
        faults.append(f"{place} ends with status {status}")
    for number, example in enumerate(program.examples):
        if number not in reached:
            faults.append(f"{program.page}:{example.line}: {example.source} was never reached")
    return faults


def uncovered(program, headers, once):
    code = "\n".join(program.checked() if once else program.executed())
    wanted, where = (1, "times with a result, not once") if once else (2, "times, not 2")
    for header in headers:
        names = sorted(set(EXPORTED.findall(header.read_text(encoding="utf-8"))))
        if not names:
            raise Fault(f"{header}: exports nothing")
        for name in names:
            calls = len(re.findall(rf"\b{name}\s*(?:<[^>;]*>)?\(", code))
            if calls < wanted:
                yield f"{program.page}: {name} of {header.name} is called {calls} {where} or more"


def check(arguments):
    """Raises a Fault unless all is right; gives the program that the page made."""
    program = Program(arguments.page)
    for block in extract_blocks(arguments.page.read_text(encoding="utf-8"), arguments.page):
        program.add_block(block)
    if not program.examples:
        raise Fault(f"{arguments.page}: no example states a result")
    with tempfile.TemporaryDirectory(prefix="paf-docs-") as directory:
        work = pathlib.Path(directory)
        status, report = run_program(compile_program(program, work, arguments), work, arguments)
    faults = judge(program, status, report) + list(uncovered(program, arguments.covers, arguments.once))
    if faults:
        raise Fault("\n".join(faults))
    print(f"{arguments.page}: {len(program.examples)} results in {len(program.calls)} blocks are right")
    return program


def setting(text):
    if "=" not in text:
        raise argparse.ArgumentTypeError("NAME=VALUE expected")
    return text


def make_parser(description):
    parser = argparse.ArgumentParser(description=description, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("page", type=pathlib.Path, help="the Markdown file")
    parser.add_argument("--compiler", required=True, help="the C++ compiler")
    parser.add_argument("--include", type=pathlib.Path, required=True, help="the folder that holds qxpaf/")
    parser.add_argument("--library", type=pathlib.Path, required=True, help="libqxpaf.so")
    parser.add_argument("--flag", action="append", default=[], help="one more option for the compiler: --flag=-g")
    parser.add_argument("--env", action="append", default=[], type=setting, metavar="NAME=VALUE",
                        help="a variable for the environment in which the examples run")
    parser.add_argument("--directory", type=pathlib.Path, help="where they run (default: an empty folder of their own)")
    parser.add_argument("--covers", action="append", default=[], type=pathlib.Path, metavar="HEADER",
                        help="a header whose exported functions the examples must call")
    parser.add_argument("--once", action="store_true", help="once is enough, in a statement that states a result")
    parser.add_argument("--timeout", type=float, default=60, help="seconds that the examples may run (default 60)")
    return parser


def exit_status(check_page, arguments):
    """Checks a page, prints what is wrong, and gives the status for the program's end."""
    try:
        check_page(arguments)
    except Fault as fault:
        print(fault)
        return 1
    return 0


if __name__ == "__main__":
    sys.exit(exit_status(check, make_parser(__doc__).parse_args()))
