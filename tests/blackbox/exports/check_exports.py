#!/usr/bin/env python3
"""Compares what a shared library exports with the list that its linker was given, in both directions.

    check_exports.py --library libqxpaf.so --list exports.map --required required.txt
    check_exports.py --self-test

Complains about symbols that are exported but not listed, listed but not exported, listed twice, listed with a readable
form that is not theirs, and about required symbols that are missing.
"""
import argparse
import re
import subprocess
import sys

# What instrumented builds add on their own.
INSTRUMENTATION = re.compile(r"^(__asan_|__odr_asan|__ubsan_|__tsan_|__gcov_)")


def parse_list(text):
    """Symbols of a version script or a plain list: [(symbol, readable form or "")]."""
    entries = []
    is_global = "global:" not in text
    for line in text.splitlines():
        code, _, comment = line.partition("#")
        code = code.strip()
        if code in ("global:", "local:"):
            is_global = code == "global:"
        elif code and is_global and code not in ("{", "};"):
            entries.append((code.rstrip(";").strip(), comment.strip()))
    return entries


def parse_nm(text):
    """Symbols in the output of `nm -D --defined-only`, without symbol versions."""
    names = {line.split()[-1].split("@")[0] for line in text.splitlines() if line.strip()}
    return {name for name in names if not INSTRUMENTATION.match(name)}


def demangle(names):
    names = list(names)
    result = subprocess.run(["c++filt"], input="\n".join(names), capture_output=True, text=True, check=True)
    return dict(zip(names, result.stdout.splitlines()))


def problems(exported, listed, required):
    """All complaints, as sentences."""
    names = [name for name, _ in listed]
    readable = demangle(set(names) | exported | {name for name, _ in required})
    found = [f"listed twice: {name}" for name in sorted({n for n in names if names.count(n) > 1})]
    found += [f"a pattern, not a name: {name}" for name in names if re.search(r"[*?\[]", name)]
    found += [f"exported, not listed: {name} ({readable[name]})" for name in sorted(exported - set(names))]
    found += [f"listed, not exported: {name} ({readable[name]})" for name in sorted(set(names) - exported)]
    found += [f"required, not exported: {name} ({readable[name]})" for name, _ in required if name not in exported]
    for name, form in listed + required:
        if name.startswith("_Z") and form != readable[name]:
            found.append(f"readable form of {name} is {readable[name]}, not {form or 'missing'}")
        if not name.startswith("_Z") and form:
            found.append(f"readable form of the plain name {name}")
    return found


def self_test():
    """Feeds one violation of each kind and demands that it is seen, and a clean case that must pass."""
    good = [("pafOpen", ""), ("_Z3fooi", "foo(int)")]
    exported = {"pafOpen", "_Z3fooi"}
    cases = [
        ("", exported, good, good),
        ("exported, not listed", exported | {"extra"}, good, good),
        ("listed, not exported", {"pafOpen"}, good, []),
        ("required, not exported", {"pafOpen"}, good[:1], good),
        ("listed twice", exported, good + good[:1], good),
        ("a pattern", exported, good + [("paf*", "")], good),
        ("readable form of _Z3fooi", exported, [good[0], ("_Z3fooi", "foo(long)")], good),
        ("readable form of _Z3fooi", exported, [good[0], ("_Z3fooi", "")], good),
        ("readable form of the plain", exported, [("pafOpen", "x"), good[1]], good),
    ]
    for expected, have, listed, required in cases:
        found = problems(have, listed, required)
        if expected and not any(p.startswith(expected) for p in found):
            sys.exit(f"self-test: not seen: {expected}; found {found}")
        if not expected and found:
            sys.exit(f"self-test: complaints about a clean case: {found}")
    script = "# comment\n{\n  global:\n    a;\n    _Z3fooi;  # foo(int)\n  local:\n    *;\n};\n"
    if parse_list(script) != [("a", ""), ("_Z3fooi", "foo(int)")]:
        sys.exit(f"self-test: version script read as {parse_list(script)}")
    if parse_nm("0001 T a@@V1\n0002 V _ZTV1x\n0003 B __odr_asan.x\n") != {"a", "_ZTV1x"}:
        sys.exit("self-test: output of nm")


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--library")
    parser.add_argument("--list")
    parser.add_argument("--required")
    parser.add_argument("--self-test", action="store_true")
    arguments = parser.parse_args()
    if arguments.self_test:
        self_test()
        return
    nm = subprocess.run(["nm", "-D", "--defined-only", arguments.library], capture_output=True, text=True, check=True)
    exported = parse_nm(nm.stdout)
    listed = parse_list(open(arguments.list, encoding="utf-8").read())
    required = parse_list(open(arguments.required, encoding="utf-8").read())
    found = problems(exported, listed, required)
    print(f"{len(exported)} exported, {len(listed)} listed, {len(required)} required")
    if found:
        sys.exit("\n".join(found))


if __name__ == "__main__":
    main()
