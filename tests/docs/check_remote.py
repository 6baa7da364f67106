#!/usr/bin/env python3
"""Checks that the examples of the page on the C interface give the same when the databases are a server's.

The page's databases are made as check_interface.py makes them, in a directory where a server is started; the examples
run in another one, whose configuration names the server and nothing else. They must give what the page states, but for

    ONLY_LOCAL   blocks about the process that has the databases: compiled, not run
    cut          where a buffer is too small (6406), the server has the room: status 0, and the library cuts
    emptied      a failure that the server reports leaves an empty text instead of the text before
    joined       a line feed in an answer arrives as a TAB
    unsaid       the verdict of a validation comes with failures only
    REMOTELY     single results that differ by design, with what they are instead

Each row of the lists has its reason, and each must be needed: one that nothing on the page differs by is a fault.
"""
import contextlib
import os
import pathlib
import subprocess
import sys
import tempfile

import check_examples
import check_interface
from check_examples import Fault

# A text that the block holds, and why it is not run.
ONLY_LOCAL = [
    ('"DLL:QxArfAu;sample"', "the server opens no paths and libraries for clients that are not trusted"),
    ("pafGetNextAddressId(id, text, 8)", "after a buffer that is too small the server's list has gone on"),
    ('"UseSockets", "true"', "leaves the process in local mode"),
    ("SetTcpHost(", "leaves the process without the server's address"),
    ("pafUpdateArfs(", "answers 6408: databases are updated where they are"),
    ('(intptr_t)"Postcode"', "concordances and free text are not forwarded"),
    ("session.SearchAddresses(", "free text is not forwarded"),
    ("pafOpenPafMem(2)", "needs no opening, and keeps the Id of a closed default instance"),
    ("pafForceCloseAll(", "finds no search objects"),
]

# Code of the example, what the page states, what it gives with a server, and why.
REMOTELY = [
    ("text", '"ERR_QXARF_OPEN_FILE. gone/address.arf: No such file or directory"', '"ERR_QXARF_OPEN_FILE"',
     "what the plug-in says in opening stays with the server"),
    ("pafGetDpidNonAmasId(id, text, sizeof text)", "0", "1", "the failure before it has emptied the address"),
    ("text", '"30000017"', '""', "the failure before it has emptied the address"),
    ("text", '"sample"', '""', "OpenArfPaths: the process itself has no database open"),
    ("text", '"1"', '"2"', "ClientCount: pafFormatAddressS has opened an instance of the server's for the connection"),
    ('session.ValidateFullAddress("6 macquarie st sydney").Value().verdict', "'C'", "'\\x00'",
     "the verdict of a validation comes with failures only"),
    ("text", '""', '"921"', "pafPostcodeToBsp needs no opening"),
]


def is_cut(example, line, given):
    """A result of a call that the page says finds its buffer too small."""
    is_status = example.stated == "6406" and given == "0"
    return is_status or ("6406" in line and example.stated == '""')


def is_emptied(example, line, given):
    """A text behind a call that fails."""
    return example.stated.startswith('"') and given == '""' and line[0].isdigit() and line[0] != "0"


def program_of(page):
    """The program of the page; and the rows of ONLY_LOCAL that no block has."""
    program = check_examples.Program(page)
    unused = dict(ONLY_LOCAL)
    for block in check_examples.extract_blocks(page.read_text(encoding="utf-8"), page):
        code = "\n".join(line for _, line in block.lines)
        for text, _ in ONLY_LOCAL:
            if block.run and text in code:
                block.kind = "compile"
                unused.pop(text, None)
        program.add_block(block)
    on_own_threads(program)
    return program, [f"{page}: no block has {text}, which runs without a server only" for text in unused]


def is_joined(example, given):
    return example.stated.replace(r"\t", r"\x09").replace(r"\n", r"\x09") == given


def is_unsaid(example, line, given):
    return line[0] == "0" and example.stated.startswith("'") and given == r"'\x00'"


def is_by_rule(example, line, given):
    """Whether a result differs as it must; `line` are all the results that the page states in its place."""
    return (is_cut(example, line, given) or is_emptied(example, line, given) or is_joined(example, given)
            or is_unsaid(example, line, given))


def on_own_threads(program):
    """A thread that has closed its default instance gets no other: each block gets a thread of its own."""
    program.includes.append("#include <thread>")
    program.calls = [f"  std::thread([&] {{ {call.strip()} }}).join();" for call in program.calls]


def by_rule(program, report):
    """The report with results that differ as they must taken for right; and the rows of REMOTELY that nothing needs."""
    expected = {(source, stated): remote for source, stated, remote, _ in REMOTELY}
    stated_at, unused, lines = {}, dict(expected), []
    for example in program.examples:
        stated_at.setdefault(example.line, []).append(example.stated)
    for line in report:
        kind, number, given = line.split(" ", 2)
        if kind == "wrong":
            example = program.examples[int(number)]
            key = example.source, example.stated
            if expected.get(key) == given:
                unused.pop(key, None)
                line = f"right {number} "
            elif is_by_rule(example, stated_at[example.line], given):
                line = f"right {number} "
        lines.append(line)
    return lines, [f"{program.page}: {source} is {stated}, and never {expected[source, stated]}"
                   for source, stated in unused]


@contextlib.contextmanager
def served(arguments, directory, environment):
    """A server of the page's databases; gives its port."""
    command = [arguments.pafd.resolve(), "--quiet", "--listen", "127.0.0.1:0", "--config", ".morvex"]
    with open(directory / "log", "wb") as log, subprocess.Popen(
            command, cwd=directory, env=environment, stdout=subprocess.PIPE, stderr=log, text=True) as server:
        try:
            announced = server.stdout.readline()
            if not announced.startswith("clients "):
                raise Fault(f"no server: {announced}{(directory / 'log').read_text()}")
            yield announced.strip().rsplit(":", 1)[1]
        finally:
            server.terminate()
        if server.wait(arguments.timeout) != 0:
            raise Fault(f"the server ended with status {server.returncode}\n{(directory / 'log').read_text()}")


def run_as_client(program, arguments, directory, port):
    """The exit status and the report of the examples in a directory with nothing but the server's address."""
    client, work = directory / "client", directory / "work"
    client.mkdir()
    work.mkdir()
    (client / ".morvex").write_text(f"PindleSvr/TcpHost=127.0.0.1\nPindleSvr/TcpPort={port}\n", encoding="utf-8")
    arguments.directory = client
    return check_examples.run_program(check_examples.compile_program(program, work, arguments), work, arguments)


def check(arguments):
    program, faults = program_of(arguments.page)
    with tempfile.TemporaryDirectory(prefix="paf-docs-") as name:
        directory = pathlib.Path(name)
        environment = check_interface.set_up(arguments, directory)
        with served(arguments, directory, environment) as port:
            status, report = run_as_client(program, arguments, directory, port)
    report, unneeded = by_rule(program, report)
    faults += check_examples.judge(program, status, report) + unneeded
    if faults:
        raise Fault("\n".join(faults))
    print(f"{arguments.page}: {len(program.examples)} results are right with a server, {len(REMOTELY)} by another rule")


def main():
    parser = check_examples.make_parser(__doc__)
    parser.add_argument("--paf", type=pathlib.Path, required=True, help="the program paf")
    parser.add_argument("--pafd", type=pathlib.Path, required=True, help="the program pafd")
    parser.add_argument("--source", type=pathlib.Path, required=True, help="the folder with data/")
    return check_examples.exit_status(check, parser.parse_args())


if __name__ == "__main__":
    sys.exit(main())
