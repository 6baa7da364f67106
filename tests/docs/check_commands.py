#!/usr/bin/env python3
"""Runs the commands that a page shows and compares what they print with what the page says.

A command is a line "$ COMMAND" in an indented block; the lines below it, up to the next command, are what it prints on
standard output and standard error. The commands of a page run one after the other under bash, in the folder of a user
"jo" who has the sample's database in /srv/paf/sample and names it in the configuration file. /srv/paf, /home/jo and
/usr/local/lib are not those of this machine: they stand for folders of the run's own and for that of the library. Next to
the commands lie data/ and examples/, and a compiler finds the library as if it were installed.

    $ cat FILE          gives the file the content that is shown, when there is none yet
    12 rows/s, 0.3 s    how long something took, and with how many threads, is not compared

With --run-only a page's commands stand without "$ " and nothing is stated: every line of a block that begins with paf
or echo must succeed. Blocks that run other programs are passed over.
"""
import argparse
import difflib
import os
import pathlib
import re
import subprocess
import sys
import tempfile

INDENT = "    "
# What a user may have, for pages that speak of his own addresses.
OWN_ADDRESSES = """dpid,number_first,number_last,street_name,street_type,locality,state,postcode,latitude,longitude
20000001,12,14,GEORGE,STREET,PARRAMATTA,NSW,2150,-33.814000,151.003000
20000002,6,,EXAMPLE,STREET,SYDNEY,NSW,2000,-33.867500,151.212700
"""
OWN_CUSTOMERS = "name,address,suburb\nA,12 George St,Parramatta\nB,6 Example St,Sydney\n"
TIMES = [(re.compile(r"\b\d+ rows/s, [\d.]+ s, \d+ threads?"), "N rows/s, N s, N threads"),
         (re.compile(r"; [\d.]+ s$", re.MULTILINE), "; N s")]


def blocks_of(page):
    """The indented blocks of a page, each a list of lines without the indent."""
    blocks, block, fenced = [], [], False
    for line in [*page.splitlines(), "end"]:
        fenced ^= line.startswith("```")
        if line.startswith(INDENT) and not fenced:
            block.append(line[len(INDENT):])
        elif not line.strip() and block:
            block.append("")
        elif block:
            blocks.append(block)
            block = []
    return blocks


def examples_of(page):
    """Pairs of a command and the text that it prints."""
    examples = []
    for block in blocks_of(page):
        for line in block if block[0].startswith("$ ") else []:
            if line.startswith("$ "):
                examples.append((line[2:], []))
            else:
                examples[-1][1].append(line)
    return [(command, "\n".join(lines).rstrip("\n")) for command, lines in examples]


def plain_commands_of(page):
    return [line for block in blocks_of(page) if all(not line or line.startswith(("paf ", "echo ")) for line in block)
            for line in block if line]


def without_times(text):
    for pattern, replacement in TIMES:
        text = pattern.sub(replacement, text)
    return text


class User:
    """A user's folder, in which commands run."""

    def __init__(self, root, arguments):
        self.places = {"/srv/paf": root / "srv", "/home/jo": root / "home"}
        self.shown = {str(place): name for name, place in self.places.items()}
        library = str(arguments.library.resolve().parent)
        self.shown[library] = "/usr/local/lib"
        self.folder = root / "home" / "addresses"
        for folder in (root / "srv", self.folder):
            folder.mkdir(parents=True)
        for name in ("data", "examples"):
            (self.folder / name).symlink_to((arguments.source / name).resolve())
        drop = ("MORVEX_CONFIG_FILE", "PAF_DATABASE")
        self.environment = {name: value for name, value in os.environ.items() if name not in drop}
        self.environment.update(HOME=str(root / "home"), LC_ALL="C",
                                PATH=f"{arguments.paf.resolve().parent}:{os.environ['PATH']}",
                                CPATH=str(arguments.source.resolve() / "include"), LIBRARY_PATH=library,
                                LD_LIBRARY_PATH=library)

    def write(self, name, content):
        (self.folder / name).write_text(content, encoding="utf-8")

    def run(self, command):
        """The exit status, and everything that the command printed."""
        for name, place in self.places.items():
            command = command.replace(name, str(place))
        result = subprocess.run(["bash", "-c", command], cwd=self.folder, env=self.environment, timeout=120,
                                stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, check=False)
        text = result.stdout.decode("utf-8", "replace")
        for place, name in self.shown.items():
            text = text.replace(place, name)
        return result.returncode, text.rstrip("\n")

    def set_up(self):
        status, text = self.run("paf build data/sample/addresses.csv /srv/paf/sample && "
                                "echo ARF/AU/=/srv/paf/sample >~/.morvex")
        if status != 0:
            raise SystemExit(f"the sample's database cannot be built: {text}")


def give_file(user, command, stated):
    words = command.split()
    if len(words) == 2 and words[0] == "cat" and not (user.folder / words[1]).exists():
        user.write(words[1], stated + "\n")


def wrong_examples(user, page):
    """What the page does not say as it is, as texts."""
    examples = examples_of(page)
    if not any(command.startswith("paf ") for command, _ in examples):
        yield "there is no example"
    for command, stated in examples:
        give_file(user, command, stated)
        printed = user.run(command)[1]
        if without_times(printed) != without_times(stated):
            yield "\n".join([f"$ {command}", *difflib.unified_diff(stated.splitlines(), printed.splitlines(), "the page",
                                                                   "the program", lineterm="")])


def failing_commands(user, page):
    user.write("addresses.csv", OWN_ADDRESSES)
    user.write("customers.csv", OWN_CUSTOMERS)
    commands = plain_commands_of(page)
    if not any(command.startswith("paf ") for command in commands):
        yield "there is no command"
    for command in commands:
        status, text = user.run(command)
        if status != 0:
            yield f"{command}\nends with status {status}: {text}"


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--paf", type=pathlib.Path, required=True, help="the program")
    parser.add_argument("--library", type=pathlib.Path, required=True, help="libqxpaf.so")
    parser.add_argument("--source", type=pathlib.Path, required=True, help="the folder with data/, examples/ and include/")
    parser.add_argument("--run-only", action="store_true", help="commands without stated output")
    parser.add_argument("page", type=pathlib.Path)
    arguments = parser.parse_args()
    page = arguments.page.read_text(encoding="utf-8")
    with tempfile.TemporaryDirectory(prefix="paf-docs-") as root:
        user = User(pathlib.Path(root).resolve(), arguments)
        user.set_up()
        faults = list((failing_commands if arguments.run_only else wrong_examples)(user, page))
    for fault in faults:
        print(f"{arguments.page}: {fault}\n")
    return 1 if faults else 0


if __name__ == "__main__":
    sys.exit(main())
