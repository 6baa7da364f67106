#!/usr/bin/env python3
"""Runs one command-line test: NAME.sh, and beside it what is expected of it.

    NAME.out   standard output, exactly; a line that begins with "~ " is a regular expression for the whole line
    NAME.err   standard error, likewise; without the file standard error must be empty
    NAME.exit  the exit status; 0 without the file

The script runs under "bash -u" in an empty directory of its own, with that directory's "home" as HOME, no configuration
of its caller's, and paf in the PATH. CASE_DATA names the tests' data, CASE_FAKES the folders with fake plug-ins. In
what it prints, its directory reads WORK, the fakes' FAKES, and the library's LIB.
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


def environment(work, script, arguments):
    drop = ("MORVEX_CONFIG_FILE", "PAF_DATABASE", "LD_LIBRARY_PATH")
    result = {name: value for name, value in os.environ.items() if name not in drop}
    (work / "home").mkdir()
    result.update(HOME=str(work / "home"), PATH=f"{arguments.paf.parent}:{os.environ['PATH']}", LC_ALL="C",
                  CASE_DATA=str(script.parent / "data"), CASE_FAKES=str(arguments.fakes))
    if arguments.sanitized:
        result["LD_LIBRARY_PATH"] = str(arguments.library)
    return result


def neutral_lines(stream, places):
    text = stream.decode("utf-8", "surrogateescape")
    for name, place in places.items():
        text = text.replace(str(place), name)
    return text.splitlines()


def run(script, arguments, work):
    result = subprocess.run(["bash", "-u", str(script)], cwd=work, env=environment(work, script, arguments),
                            timeout=120, stdin=subprocess.DEVNULL, capture_output=True, check=False)
    places = {"WORK": work, "FAKES": arguments.fakes, "LIB": arguments.library}
    return result.returncode, neutral_lines(result.stdout, places), neutral_lines(result.stderr, places)


def resolved(path):
    return pathlib.Path(path).resolve()


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--paf", type=resolved, required=True, help="the program")
    parser.add_argument("--library", type=resolved, required=True, help="the folder that holds libqxpaf.so")
    parser.add_argument("--fakes", type=resolved, required=True, help="the folder that holds the folders of fakes")
    parser.add_argument("--sanitized", action="store_true",
                        help="name the library's folder in LD_LIBRARY_PATH: sanitizers open libraries from their own "
                             "runtime, so that the loader does not look beside libqxpaf.so")
    parser.add_argument("script", type=resolved)
    arguments = parser.parse_args()
    script = arguments.script
    with tempfile.TemporaryDirectory(prefix="paf-cli-") as directory:
        status, out, err = run(script, arguments, resolved(directory))
    wanted = int("".join(expected_lines(script.with_suffix(".exit"))) or "0")
    faults = compare("stdout", expected_lines(script.with_suffix(".out")), out)
    faults += compare("stderr", expected_lines(script.with_suffix(".err")), err)
    if status != wanted:
        faults.append(f"exit status {status}, expected {wanted}")
    print("\n".join(fault.encode("utf-8", "backslashreplace").decode() for fault in faults))
    return 1 if faults else 0


if __name__ == "__main__":
    sys.exit(main())
