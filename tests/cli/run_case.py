#!/usr/bin/env python3
"""Runs one command-line test: NAME.sh, and beside it what is expected of it.

    NAME.out   standard output, exactly; a line that begins with "~ " is a regular expression for the whole line
    NAME.err   standard error, likewise; without the file standard error must be empty
    NAME.exit  the exit status; 0 without the file

The script runs under "bash -u" in an empty directory of its own, with that directory's "home" as HOME, no configuration
of its caller's, and paf in the PATH. In what it prints the directory reads WORK. CASE_DATA names the tests' data.
"""
import argparse
import difflib
import os
import pathlib
import re
import subprocess
import sys
import tempfile


def expected_lines(path):
    return path.read_text(encoding="utf-8").splitlines() if path.exists() else []


def line_matches(expected, actual):
    if expected.startswith("~ "):
        return re.fullmatch(expected[2:], actual) is not None
    return expected == actual


def compare(name, expected, actual):
    """The differences, as lines; empty when there are none."""
    if len(expected) == len(actual) and all(map(line_matches, expected, actual)):
        return []
    return list(difflib.unified_diff(expected, actual, f"{name} expected", f"{name} actual", lineterm=""))


def environment(work, paf, data):
    drop = ("MORVEX_CONFIG_FILE", "PAF_DATABASE")
    result = {name: value for name, value in os.environ.items() if name not in drop}
    (work / "home").mkdir()
    result.update(HOME=str(work / "home"), PATH=f"{paf.parent}:{os.environ['PATH']}", CASE_DATA=str(data), LC_ALL="C",
                  COLUMNS="80")
    return result


def run(script, paf, work):
    data = script.parent / "data"
    result = subprocess.run(["bash", "-u", str(script)], cwd=work, env=environment(work, paf, data), timeout=120,
                            stdin=subprocess.DEVNULL, capture_output=True, check=False)
    texts = [stream.decode("utf-8", "surrogateescape").replace(str(work), "WORK")
             for stream in (result.stdout, result.stderr)]
    return result.returncode, texts[0].splitlines(), texts[1].splitlines()


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--paf", type=pathlib.Path, required=True)
    parser.add_argument("script", type=pathlib.Path)
    arguments = parser.parse_args()
    script = arguments.script.resolve()
    with tempfile.TemporaryDirectory(prefix="paf-cli-") as directory:
        status, out, err = run(script, arguments.paf.resolve(), pathlib.Path(directory).resolve())
    wanted = int("".join(expected_lines(script.with_suffix(".exit"))) or "0")
    faults = compare("stdout", expected_lines(script.with_suffix(".out")), out)
    faults += compare("stderr", expected_lines(script.with_suffix(".err")), err)
    if status != wanted:
        faults.append(f"exit status {status}, expected {wanted}")
    print("\n".join(fault.encode("utf-8", "backslashreplace").decode() for fault in faults))
    return 1 if faults else 0


if __name__ == "__main__":
    sys.exit(main())
