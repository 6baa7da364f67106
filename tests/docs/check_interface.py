#!/usr/bin/env python3
"""Checks the page on the C interface as check_examples.py does, and that it leaves nothing out.

The page's block fenced as ```sh is run first: in a directory that holds nothing but "data", the folder of the samples,
with paf in the PATH. The examples then run there.

What must stand on the page, in an example that states a result, or else each is one line that says what is missing:

    functions     of paf.h: called, and declared in a block ```c declarations
    statuses      with a text of the library's: in the table below "## Errors", with that text
    properties    those that the library lists, without an instance and with one, and those in the tables of the sources
    commands      of the interpreter's table: in the text that pafCallPafFromBrimo is given
    members       of qxpaf::Session: called
"""
import os
import pathlib
import re
import subprocess
import sys
import tempfile

import check_examples
from check_examples import Fault

ERRORS = re.compile(r"^## Errors$(.*?)^## ", re.MULTILINE | re.DOTALL)
STATUS_ROW = re.compile(r"^\| (\d+) \| ([^|]+) \|", re.MULTILINE)
SETUP = re.compile(r"^```sh\n(.*?)^```$", re.MULTILINE | re.DOTALL)
# Where the names of properties stand in the sources that answer them.
PROPERTY_NAMES = {
    "src/api/library_properties.cpp": re.compile(r'\{"(\w+)",|"(\w+:)"'),
    "src/api/properties.cpp": re.compile(r'"([A-Za-z]\w*:?)"'),
    "arf/au/properties.cpp": re.compile(r'\{"([\w:]+)", (?:true|false), '),
}
COMMAND_NAME = re.compile(r'^    \{"(\w+)", \{', re.MULTILINE)
SESSION = re.compile(r"^class Session\n(.*?)^ private:$", re.MULTILINE | re.DOTALL)
MEMBER_NAME = re.compile(r"^  (?:static )?[\w:<>]+ (\w+)\(", re.MULTILINE)
PROPERTY_CALL = re.compile(r"Propert(?:y|ies|iesId)\(")
COMMAND_TEXT = re.compile(r'"(\w+);')


def names_in(path, pattern):
    """The names that the pattern finds in a file, each once; a Fault when it finds none, for then it is out of date."""
    found = ["".join(match.groups("")) for match in pattern.finditer(path.read_text(encoding="utf-8"))]
    if not found:
        raise Fault(f"{path}: no names found")
    return sorted(set(found))


def listed(arguments, directory, environment):
    """What the library itself lists: names of properties, and the texts of status codes by code."""
    result = subprocess.run([arguments.list_names.resolve()], cwd=directory, env=environment, check=True,
                            capture_output=True, text=True, timeout=arguments.timeout)
    rows = [line.split(" ", 2) for line in result.stdout.splitlines()]
    texts = {row[1]: row[2] for row in rows if row[0] == "status"}
    return {row[1] for row in rows if row[0] == "property"}, texts


def property_names(arguments, listed_names):
    names = set(listed_names)
    for source, pattern in PROPERTY_NAMES.items():
        names.update(names_in(arguments.source / source, pattern))
    return sorted(names)


def has_property(name, statements):
    """Whether a statement asks for the property; names that take an argument may have one behind them."""
    end = "" if name.endswith(":") or name == "PropertyName" else '"'
    return any(f'"{name}{end}' in code and PROPERTY_CALL.search(code) for code in statements)


def commands_of(program):
    """The commands that are given to pafCallPafFromBrimo where a result is stated."""
    given = None
    for code, stated in program.statements:
        match = COMMAND_TEXT.search(code)
        given = match[1] if match else given
        if stated and given and "pafCallPafFromBrimo(" in code:
            yield given
            given = None


def wrong_statuses(page, texts):
    """What the table of status codes does not say as the library does, as lines."""
    section = ERRORS.search(page)
    stated = dict(STATUS_ROW.findall(section[1] if section else ""))
    return [f"the status {code} is not in the table with the text {text!r}" for code, text in texts.items()
            if stated.get(code) != text]


def command_names(arguments):
    return names_in(arguments.source / "src/command/interpreter.cpp", COMMAND_NAME)


def session_members(arguments):
    header = arguments.include / "qxpaf/paf.hpp"
    session = SESSION.search(header.read_text(encoding="utf-8"))
    if session is None:
        raise Fault(f"{header}: no class Session found")
    return sorted(set(MEMBER_NAME.findall(session[1])))


def missing(program, arguments, properties):
    """What the page leaves out, as lines."""
    header = arguments.include / "qxpaf/paf.h"
    declared = "\n".join(program.declarations)
    for name in names_in(header, check_examples.EXPORTED):
        if not re.search(rf"\b{name}\(", declared):
            yield f"the function {name} is not declared"
    yield from (f"the property {name} has no example" for name in properties
                if not has_property(name, program.checked()))
    given = set(commands_of(program))
    yield from (f"the command {name} has no example" for name in command_names(arguments) if name not in given)
    code = "\n".join(program.checked())
    yield from (f"the member {name} of qxpaf::Session has no example" for name in session_members(arguments)
                if not re.search(rf"(?:\.|->|::){name}\(", code))


def set_up(arguments, directory):
    """Makes the databases of the page; gives the environment for what runs on them."""
    (directory / "data").symlink_to(arguments.source.resolve() / "data")
    page = getattr(arguments, "databases_of", None) or arguments.page
    blocks = SETUP.findall(page.read_text(encoding="utf-8"))
    if len(blocks) != 1:
        raise Fault(f"{page}: {len(blocks)} blocks ```sh, not 1")
    library = arguments.library.resolve().parent
    environment = dict(os.environ, PATH=f"{arguments.paf.resolve().parent}:{os.environ['PATH']}",
                       LD_LIBRARY_PATH=str(library))
    result = subprocess.run(["bash", "-eu", "-c", blocks[0]], cwd=directory, env=environment, capture_output=True,
                            text=True, timeout=arguments.timeout, check=False)
    if result.returncode != 0:
        raise Fault(f"{arguments.page}: the block ```sh ends with status {result.returncode}\n{result.stderr}")
    arguments.directory = directory
    arguments.env.append(f"LD_LIBRARY_PATH={library}")
    return environment


def check(arguments):
    with tempfile.TemporaryDirectory(prefix="paf-docs-") as name:
        directory = pathlib.Path(name)
        environment = set_up(arguments, directory)
        if arguments.databases_of:
            check_examples.check(arguments)
            return
        listed_names, texts = listed(arguments, directory, environment)
        properties = property_names(arguments, listed_names)
        arguments.covers += [arguments.include / "qxpaf" / "paf.h"]
        arguments.once = True
        program = check_examples.check(arguments)
    faults = [*missing(program, arguments, properties),
              *wrong_statuses(arguments.page.read_text(encoding="utf-8"), texts)]
    if faults:
        raise Fault("\n".join(f"{arguments.page}: {fault}" for fault in faults))
    print(f"{arguments.page}: {len(properties)} properties and {len(command_names(arguments))} commands have examples")


def main():
    parser = check_examples.make_parser(__doc__)
    parser.add_argument("--paf", type=pathlib.Path, required=True, help="the program paf")
    parser.add_argument("--list-names", type=pathlib.Path, required=True, help="the program made of list_names.c")
    parser.add_argument("--databases-of", type=pathlib.Path,
                        help="check the examples only, on the databases that this page makes")
    parser.add_argument("--source", type=pathlib.Path, required=True, help="the folder with src/, arf/ and data/")
    return check_examples.exit_status(check, parser.parse_args())


if __name__ == "__main__":
    sys.exit(main())
