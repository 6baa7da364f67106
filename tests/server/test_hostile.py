"""Hundreds of thousands of lines and connections that no client would make, at a server with the real plug-in; then a
normal client gets its answers, and nothing is left of the others.

The seed is printed; QXPAF_TEST_SEED gives another one. PAFD_TEST_HOSTILE_LINES says how many lines (200000).
"""
import os
import pathlib
import random
import re
import select
import socket
import subprocess
import tempfile
import threading
import time
import unittest

from pafd_case import PATIENCE, Case, Client
from test_requests import NOT_REQUESTS, ON_INSTANCE, WITHOUT_INSTANCE

PAF = os.environ["PAFD_TEST_PAF"]
LIBRARY = os.environ["PAFD_TEST_LIBRARY"]
SAMPLE = pathlib.Path(os.environ["PAFD_TEST_SAMPLE"])
LINES = int(os.environ.get("PAFD_TEST_HOSTILE_LINES", "200000"))
ATTACKERS = 4
LINES_AT_ONCE = 500
LONGEST_LINE = 65536
REQUEST_TIMEOUT = 2  # seconds
HUGE_LINES = 15  # of a megabyte, by each attacker

NAMES = sorted({row[0] for row in ON_INSTANCE + WITHOUT_INSTANCE} | {"pafOpenPafId", "pafOpenArfId", "pafOpenPafMemId"})
NAMES = [name.encode() for name in NAMES]
OTHER_NAMES = [name.encode("latin-1") for name in NOT_REQUESTS]
NUMBERS = [b"", b"0", b"1", b"2", b"3", b"-1", b"2147483647", b"-2147483648", b"2147483648", b"4294967297",
           b"9223372036854775807", b"9223372036854775808", b"-9223372036854775809", b"9" * 400, b"-" + b"9" * 400,
           b"1e308", b"nan", b"inf", b"0x10", b"010", b" 1", b"+1", b"+-1", b"1.5", b"\x00", b"1\x002"]
TEXTS = [b"", b"AU", b"AU.Main", b"Nowhere", b"../../etc/passwd", b"/etc/passwd", b"DLL:libc;x", b"AU\x00.Main",
         b"UseSockets", b"TcpHost", b"TcpPort", b"OpenARF", b"Delimiter", b"OutputFields", b"Properties", b"ArfStatus:/",
         b"ArfVersion:DLL:x;y", b"iPindle:", b"PropertyName99999999999", b"Barcode2:3000000159C", b"BSP:", b"True",
         b"6 Macquarie St, Sydney NSW 2000", b"Unit 3, 12 Watson Tce Mount Gambier", b"PO Box 1", b"sydney nsw",
         b"-33.87,151.2;-33.86,151.21;nan,inf", b"%s%n%x%p", b"\xff\xfe\xfd", b"\xc3\x28\xa0\xa1", b"'; DROP TABLE",
         b"1-1-1-1/1/1/1", b"\r", b"\x1b[2J", b"1;1;1;1;1;1;1;1;1;1;1;1;1;1;1;1;1;1;1;1;1;1;1;1;1;1;1;1;1;1;1;1"]
# A status, and behind it whatever the request's kind of reply has.
REPLIES = re.compile(rb"(?:-?[0-9]+(?:\t[^\n]*)?\n)*")


def without_line_feed(data):
    return data.replace(b"\n", b"\v")


class Lines:
    """Malformed requests, the same for the same seed."""

    def __init__(self, seed):
        self.source = random.Random(seed)
        self.own = b"1"  # the Id of an instance of the connection that gets the lines

    def number(self):
        return self.source.choice(NUMBERS)

    def text(self):
        kind = self.source.randrange(12)
        if kind < 7:
            return self.source.choice(TEXTS)
        if kind < 9:
            return without_line_feed(self.source.randbytes(self.source.choice((1, 5, 40, 300))))
        if kind < 11:
            good = bytearray(self.source.choice(TEXTS))
            good.insert(self.source.randrange(len(good) + 1), self.source.choice((0, 9, 32, 255)))
            return bytes(good)
        return self.source.choice((b"a", b"9", b"\xc3", b"1,", b"a ", b"/")) * self.source.choice((100, 1000, 3000))

    def field(self):
        return self.number() if self.source.random() < 0.5 else self.text()

    def request(self):
        """Mostly an Id of the connection's own first, so that the plug-in gets to see the rest."""
        fields = [self.source.choice(NAMES)]
        if fields[0] == b"pafClosePafId" and self.source.random() < 0.9:
            fields[0] = b"pafGetDpidNonAmasId"
        if self.source.random() < 0.7:
            fields.append(self.own if self.source.random() < 0.8 else self.source.choice((b"1", b"2", b"3", b"4")))
        fields += [self.field() for _ in range(self.source.randrange(7))]
        return b"\t".join(fields)

    def line(self):
        kind = self.source.randrange(100)
        if kind < 70:
            return self.request()
        if kind < 80:
            return without_line_feed(self.source.randbytes(self.source.choice((1, 3, 30, 300))))
        if kind < 88:
            request = self.request()
            return request[:self.source.randrange(len(request) + 1)]
        if kind < 93:
            return b"\t".join([self.source.choice(OTHER_NAMES), self.field(), self.field()])
        if kind < 96:
            return self.source.choice((b"", b"\t", b"\t" * 300, b"\0", b"\0" * 50, b"\r", b" ", b"\xef\xbb\xbf"))
        if kind < 99:
            return b"pafOpenArfId\t" + self.number() + b"\t" + self.source.choice((b"AU", b"AU", self.text()))
        # Around the limit: the one is a request with a long text, the other too long.
        length = self.source.choice((LONGEST_LINE - 1, LONGEST_LINE, LONGEST_LINE + 1, LONGEST_LINE + 5000))
        return (self.request() + b"x" * length)[:length] if self.source.random() < 0.1 else b"pafGetFindStatusId\t1"

    def huge(self):
        return self.source.choice((b"x", b"\t", b"\0", b"pafGetDpidId\t1\t", b"\xff")) * (1 << 20)


class Attacker:
    """Connections one after the other, each with a batch of lines, and each left in another way."""

    def __init__(self, port, seed, lines):
        self.port = port
        self.source = Lines(seed)
        self.to_send = lines
        self.sent = self.answered = 0
        self.silent = []
        self.failure = None

    def run(self):
        try:
            for _ in range(HUGE_LINES):
                self.send_huge()
            while self.sent < self.to_send:
                self.send_batch(min(LINES_AT_ONCE, self.to_send - self.sent))
                self.come_and_go()
        except Exception as error:  # a thread's failure must reach the test
            self.failure = error

    def send_huge(self):
        with Client(self.port) as client:
            replies = self.exchange(client.socket, self.source.huge()[:1 << 20] + b"\n", 1)
            assert replies == b"4502\n", replies[:100]

    def send_batch(self, count):
        client = Client(self.port)
        self.source.own = str(client.open()).encode()
        lines = [self.source.line() for _ in range(count)]
        data = b"".join(line + b"\n" for line in lines)
        self.sent += count
        way = self.source.source.randrange(10)
        if way == 0:
            self.abandon(client, data)
            return
        replies = self.exchange(client.socket, data, count)
        self.answered += count
        assert REPLIES.fullmatch(replies), "a reply is no status and text"
        assert max(map(len, replies.split(b"\n"))) <= 1023, "a reply is too long"
        self.leave(client, way)

    @staticmethod
    def exchange(connection, data, count):
        """Sends everything while taking what comes. Returns that many reply lines."""
        connection.setblocking(False)
        view, pieces, lines = memoryview(data), [], 0
        while lines < count:
            readable, writable, _ = select.select([connection], [connection] if view else [], [], PATIENCE)
            assert readable or writable, f"no more than {lines} of {count} replies came"
            if readable:
                piece = connection.recv(1 << 16)
                assert piece, f"the server ended the connection after {lines} of {count} replies"
                pieces.append(piece)
                lines += piece.count(b"\n")
            if writable:
                view = view[connection.send(view[:1 << 16]):]
        assert not view, "the server answered what it had not got"
        connection.setblocking(True)
        replies = b"".join(pieces)
        assert lines == count and replies.endswith(b"\n"), f"{lines} replies to {count} lines"
        return replies

    @staticmethod
    def abandon(client, data):
        """Leaves in the middle, without having read a reply."""
        client.socket.setblocking(False)
        try:
            client.send(data[:50000])
        except BlockingIOError:
            pass
        client.reset()

    def leave(self, client, way):
        if way == 1 and len(self.silent) < 5:
            client.send(b"pafGetDpidId\t1\thalf a li")
            self.silent.append(client)
        elif way < 4:
            client.send(self.source.request())
            client.close()
        elif way < 6:
            client.send(self.source.request())
            client.reset()
        elif way < 8:
            client.reset()
        else:
            client.close()

    def come_and_go(self):
        for way in range(2):
            client = Client(self.port)
            if way == 0:
                client.reset()
            client.close()


class HostileTest(Case):
    def setUp(self):
        super().setUp()
        self.database = self.directory + "/sample"
        subprocess.run([PAF, "build", str(SAMPLE / "addresses.csv"), self.database, "--sort-plan",
                        str(SAMPLE / "sortplan.csv")], check=True, capture_output=True)

    def start_sample(self):
        return self.start("--quiet", "--max-instances", "20", "--request-timeout", str(REQUEST_TIMEOUT), metrics=True,
                          plugins=LIBRARY, lines=[f"PafDir={self.database}", f"ARF/AU/={self.database}",
                                                  f"ARF/AU/Main={self.database}"])

    def check_answers(self, client, number):
        self.assertEqual(client.ask("pafGetDpidNonAmasId", number, "6 macquarie st sydney"), "0\t30000001")
        self.assertEqual(client.ask("pafFixLastLineId", number, "sidney 2000"), "0\tSYDNEY NSW 2000")
        self.assertEqual(client.ask("pafGetDpidNonAmasId", number, "Unit 3, 12 Watson Tce Mount Gambier"),
                         "0\t30000409")
        self.assertTrue(client.ask("pafDpidToAddressId", number, 30000404).startswith("0\tLOT 3 STUART HIGHWAY\t"))
        self.assertEqual(client.ask("pafDpidToAddressId", number, 99999999), "10\t")

    @staticmethod
    def state(server):
        return {"instances": server.client_count(), "descriptors": server.descriptors(), "threads": server.threads(),
                "connections": HostileTest.sample(server, "pafd_connections")}

    @staticmethod
    def sample(server, name):
        """The sum of a metric's samples."""
        values = re.findall(rf"^{name}(?:\{{[^\n]*\}})? ([0-9.]+)$", server.metrics(), re.MULTILINE)
        return sum(float(value) for value in values)

    def attack(self, server, seed):
        attackers = [Attacker(server.port, seed + i, LINES // ATTACKERS) for i in range(ATTACKERS)]
        threads = [threading.Thread(target=attacker.run) for attacker in attackers]
        for thread in threads:
            thread.start()
        for thread in threads:
            thread.join()
        for attacker in attackers:
            if attacker.failure is not None:
                raise AssertionError(server.log()[-4000:]) from attacker.failure
        return attackers

    def check_silent(self, attackers):
        """Who began a line and fell silent loses the connection."""
        silent = [client for attacker in attackers for client in attacker.silent]
        self.assertGreater(len(silent), 0)
        for client in silent:
            client.socket.settimeout(PATIENCE)
            self.assertIsNone(client.reply(), "the server must not answer half a line")
            client.close()

    def test_nothing_is_left_of_hostile_clients(self):
        seed = int(os.environ.get("QXPAF_TEST_SEED", "20000229"))
        print(f"seed: QXPAF_TEST_SEED={seed}")
        began = time.monotonic()
        server = self.start_sample()
        with server.client() as normal:
            number = normal.open()
            self.check_answers(normal, number)
            with server.client() as other:  # what the first connections make for good is made before counting
                other.open()
            self.wait_for(lambda: server.client_count() == 1, "the other instance is closed")
            time.sleep(0.1)
            before = self.state(server)
            attackers = self.attack(server, seed)
            self.check_silent(attackers)
            self.check_answers(normal, number)
            self.wait_for(lambda: self.state(server) == before, f"{self.state(server)} is {before} again")
            with server.client() as client:
                self.check_answers(client, client.open())
            served = self.sample(server, "pafd_requests_total")
            sent = sum(attacker.sent for attacker in attackers) + ATTACKERS * HUGE_LINES
            answered = sum(attacker.answered for attacker in attackers) + ATTACKERS * HUGE_LINES
            print(f"{sent} lines, {answered} answers, {time.monotonic() - began:.1f} s")
            self.assertGreaterEqual(sent, LINES // ATTACKERS * ATTACKERS)
            self.assertGreater(answered, 0.8 * sent)
            self.assertGreaterEqual(served, answered)
        self.wait_for(lambda: server.client_count() == 0, "all instances are closed")
        status, _ = server.end()
        self.assertEqual(status, 0, server.log()[-4000:])
        for sign in ("Sanitizer", "runtime error", "terminate called", "Assertion"):
            self.assertNotIn(sign, server.log())


if __name__ == "__main__":
    unittest.main()
