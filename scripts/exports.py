#!/usr/bin/env python3
"""Keeps src/exports.map, the list of every symbol that leaves libqxpaf.so.

The headers decide what is exported: whatever carries QXPAF_API has default visibility in the compiled objects. This
script reads the objects, and either writes the list (--write) or compares it (--check). The linker in turn exports
exactly what the list names.

    scripts/exports.py --check src/exports.map OBJECT...
    scripts/exports.py --write src/exports.map OBJECT...
"""
import argparse
import re
import subprocess
import sys

# Instantiations of the C++ library's templates and its inline functions have default visibility too; they are not ours.
FOREIGN = re.compile(r"^(_ZN?K?St|_ZN?V?K?9__gnu_cxx|_ZT[ISV]N?St|_ZZNK?St|_ZGVN?St|_ZNSt|_ZNKSt|_ZSt|_ZN10__cxxabiv|DW\.ref\.|_ZN6__pstl"
                     r"|__asan|__tsan|__ubsan|__odr_asan|___asan|__sancov)")


def exported(objects):
    """Names of the defined global symbols with default visibility."""
    out = subprocess.run(["readelf", "-sW", *objects], check=True, capture_output=True, text=True).stdout
    names = set()
    for line in out.splitlines():
        parts = line.split()
        # Num: Value Size Type Bind Vis Ndx Name
        if len(parts) < 8 or parts[4] not in ("GLOBAL", "WEAK", "UNIQUE") or parts[5] != "DEFAULT" or parts[6] == "UND":
            continue
        name = parts[7]
        if not FOREIGN.match(name):
            names.add(name)
    return names


def demangle(names):
    ordered = sorted(names)
    out = subprocess.run(["c++filt"], input="\n".join(ordered), check=True, capture_output=True, text=True).stdout
    return dict(zip(ordered, out.splitlines()))


def render(names):
    readable = demangle(names)
    c_names = [n for n in sorted(names) if readable[n] == n]
    cpp_names = sorted((n for n in names if readable[n] != n), key=lambda n: (readable[n], n))
    lines = ["# Every symbol that leaves the library. Written by scripts/exports.py from the headers' export marks; a",
             "# removed or changed line breaks programs that are linked against the library.",
             "{", "  global:"]
    lines += [f"    {n};" for n in c_names]
    for n in cpp_names:
        lines += [f"    {n};  # {readable[n]}"]
    lines += ["  local:", "    *;", "};", ""]
    return "\n".join(lines)


def listed(path):
    with open(path, encoding="utf-8") as f:
        text = re.sub(r"#.*", "", f.read())
    body = text[text.index("global:") + len("global:"):text.index("local:")]
    return {name.strip() for name in body.split(";") if name.strip()}


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    mode = parser.add_mutually_exclusive_group(required=True)
    mode.add_argument("--check", metavar="MAP")
    mode.add_argument("--write", metavar="MAP")
    parser.add_argument("objects", nargs="+")
    args = parser.parse_args()
    names = exported(args.objects)
    if args.write:
        with open(args.write, "w", encoding="utf-8") as f:
            f.write(render(names))
        return 0
    known = listed(args.check)
    for name in sorted(names - known):
        print(f"exported by a header but not listed in {args.check}: {name}")
    for name in sorted(known - names):
        print(f"listed in {args.check} but exported by no header: {name}")
    return 1 if names != known else 0


if __name__ == "__main__":
    sys.exit(main())
