"""Types into a program on a terminal of its own: typist.py PROGRAM ARGUMENT... <<< STEPS

A step is a line: the keys, a TAB, and the text that must appear on the terminal before the next step. Keys are typed as
they stand, except for <up>, <down>, <enter>, <esc>, <backspace>, <ctrl-c>, <ctrl-u>, <ctrl-w>, <term> (a signal) and
<wait>, which types nothing. Prints the steps that came true, then the program's standard output, its exit status and
whether the terminal is as it was before.
"""
import fcntl
import os
import pty
import re
import select
import signal
import struct
import subprocess
import sys
import termios
import time

KEYS = {"up": "\033[A", "down": "\033OB", "enter": "\r", "esc": "\033", "backspace": "\177", "ctrl-c": "\003",
        "ctrl-u": "\025", "ctrl-w": "\027", "wait": ""}
PATIENCE = 60


def read_until(terminal, wanted):
    """What the terminal showed until the text appeared, without its escape sequences; fails after PATIENCE seconds."""
    shown, end = "", time.monotonic() + PATIENCE
    while wanted not in shown:
        ready, _, _ = select.select([terminal], [], [], max(0, end - time.monotonic()))
        if not ready:
            sys.exit(f"{wanted!r} did not appear in {shown!r}")
        shown += os.read(terminal, 65536).decode("utf-8", "replace")
        shown = re.sub("\033\\[[0-9]*[A-Zm]", "", shown)


def press(terminal, program, keys):
    for part in re.split("(<[a-z-]+>)", keys):
        if part == "<term>":
            program.send_signal(signal.SIGTERM)
        else:
            os.write(terminal, (KEYS[part[1:-1]] if part.startswith("<") else part).encode())


def main():
    terminal, other = pty.openpty()
    fcntl.ioctl(other, termios.TIOCSWINSZ, struct.pack("HHHH", 24, 100, 0, 0))
    before = termios.tcgetattr(other)
    with subprocess.Popen(sys.argv[1:], stdin=other, stdout=subprocess.PIPE, stderr=other) as program:
        for line in sys.stdin.read().splitlines():
            keys, _, wanted = line.partition("\t")
            press(terminal, program, keys)
            read_until(terminal, wanted)
            print(f"{keys}: {wanted}")
        print(program.stdout.read().decode(), end="")
        print("exit status", program.wait(PATIENCE))
    print("terminal as before" if termios.tcgetattr(other) == before else "terminal changed")


main()
