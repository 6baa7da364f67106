"""Lines that no client would send. The seed is printed; QXPAF_TEST_SEED gives another one."""
import os
import random
import unittest

from pafd_case import Case, Client
from test_requests import NOT_REQUESTS, ON_INSTANCE, WITHOUT_INSTANCE

LINES = int(os.environ.get("PAFD_TEST_RANDOM_LINES", "10000"))
NAMES = sorted({row[0] for row in ON_INSTANCE + WITHOUT_INSTANCE}) + ["pafOpenPafId", "pafOpenArfId", "pafOpenPafMemId"]
NUMBERS = ["", "0", "1", "2", "3", "-1", "99999999999999999999", "-99999999999999999999", "1e9", "0x1", " 1", "+1"]
# Everything but a line feed; requests to wait are not made.
BYTES = bytes(byte for byte in range(256) if byte != 10)


class RandomTest(Case):
    def random_field(self, source):
        kind = source.randrange(6)
        if kind < 2:
            return source.choice(NUMBERS).encode()
        if kind == 2:
            return f"status:{source.randrange(-5, 7000)}".encode()
        if kind == 3:
            return f"fill:{source.randrange(3000)}".encode()
        return bytes(source.choices(BYTES, k=source.choice([0, 1, 5, 40, 300, 1100])))

    def random_line(self, source):
        kind = source.randrange(10)
        if kind == 0:
            return bytes(source.choices(BYTES, k=source.choice([0, 1, 10, 1000])))
        if kind == 1:
            return b"x" * source.randrange(60000, 70000)
        name = source.choice(NAMES if kind < 9 else NOT_REQUESTS)
        fields = [self.random_field(source) for _ in range(source.randrange(8))]
        return b"\t".join([name.encode("latin-1"), *fields])

    def check_reply(self, line, reply):
        self.assertIsNotNone(reply, line[:200])
        self.assertLessEqual(len(reply), 1023)
        first = reply.split(b"\t")[0]
        self.assertEqual(first, str(int(first)).encode(), line[:200])

    def test_every_line_gets_its_reply(self):
        seed = int(os.environ.get("QXPAF_TEST_SEED", "20000229"))
        print(f"seed: QXPAF_TEST_SEED={seed}")
        source = random.Random(seed)
        server = self.start("--quiet", "--max-instances", "5")
        before = (server.descriptors(), server.threads())
        with server.client() as normal:
            number = normal.open()
            client = server.client()
            for i in range(LINES):
                line = self.random_line(source)
                client.send(line + b"\n")
                self.check_reply(line, client.reply())
                if i % 100 == 99:
                    self.leave(source, client)
                    client = Client(server.port)
            client.close()
            self.assertEqual(normal.ask("pafGetDpidId", number, "a", "b"),
                             "0\tLookupAddress amas=1 address=<a\\nb>")
        self.wait_for(lambda: server.client_count() == 0, "all instances are closed")
        self.wait_for(lambda: (server.descriptors(), server.threads()) == before, "descriptors and threads are back")

    def leave(self, source, client):
        """Ends a connection in one of the ways that leave something undone."""
        way = source.randrange(4)
        if way == 0:
            client.send(self.random_line(source))
        elif way == 1:
            client.send(self.random_line(source) + b"\n")
        if way % 2:
            client.reset()
        client.close()


if __name__ == "__main__":
    unittest.main()
