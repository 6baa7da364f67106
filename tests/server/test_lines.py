"""How bytes become requests: pieces, several at once, line ends, lines that are too long."""
import time
import unittest

from pafd_case import SANITIZED, Case

DEFAULT_MAX = 65536


def request(number, text):
    return f"pafGetFindStatusId\t{number}\t{text}".encode("latin-1")


def of_length(number, length):
    """A request line that is `length` bytes long."""
    line = request(number, "")
    return line + b"z" * (length - len(line))


class LinesTest(Case):
    def test_a_request_may_arrive_in_any_two_pieces(self):
        server = self.start()
        with server.client() as client:
            number = client.open()
            line = f"pafGetDpidId\t{number}\ta\tb\r\n".encode()
            for cut in range(1, len(line)):
                client.send(line[:cut])
                time.sleep(0.002)
                client.send(line[cut:])
                self.assertEqual(client.reply(), b"0\tLookupAddress amas=1 address=<a\\nb>")

    def test_a_request_may_arrive_byte_by_byte(self):
        server = self.start()
        with server.client() as client:
            for byte in b"pafGetErrorDescription\t6405\n":
                self.assertTrue(not client.received)
                client.send(bytes([byte]))
                time.sleep(0.001)
            self.assertEqual(client.reply(), b"0\tInvalid Id passed to function")

    def test_nothing_is_sent_before_the_line_feed_or_after_the_reply(self):
        server = self.start()
        with server.client() as client:
            client.send(b"pafGetErrorDescription\t6405\r")
            self.assertTrue(client.is_silent())
            client.send(b"\n")
            self.assertEqual(client.reply(), b"0\tInvalid Id passed to function")
            self.assertTrue(client.is_silent())

    def test_many_requests_in_one_piece_are_answered_in_order(self):
        server = self.start()
        with server.client() as client:
            number = client.open()
            count = 2000
            client.send(b"".join(f"pafGetDpidId\t{number}\tn{i}\n".encode() for i in range(count)))
            for i in range(count):
                self.assertEqual(client.reply(), f"0\tLookupAddress amas=1 address=<n{i}>".encode())

    def test_the_end_of_the_connection_is_no_end_of_a_request(self):
        server = self.start()
        with server.client() as client:
            number = client.open()
            client.send(f"pafClosePafId\t{number}".encode())
            client.socket.shutdown(1)
            self.assertIsNone(client.reply())
        self.wait_for(lambda: server.client_count() == 0, "the instance is closed")
        self.assertIn("ended: closed by the client; 1 requests", server.log())

    def test_a_client_may_stop_sending_and_take_its_replies(self):
        server = self.start()
        with server.client() as client:
            client.send(b"pafGetErrorDescription\t6405\n" * 50)
            client.socket.shutdown(1)
            for _ in range(50):
                self.assertEqual(client.reply(), b"0\tInvalid Id passed to function")
            self.assertIsNone(client.reply())

    def test_the_longest_line(self):
        for longest, options in ((DEFAULT_MAX, ()), (255, ("--max-line", "255")), (5000, ("--max-line", "5000"))):
            server = self.start(*options)
            with server.client() as client:
                number = client.open()
                for length, end, reply in ((longest, b"\n", b"77"), (longest, b"\r\n", b"77"),
                                           (longest + 1, b"\n", b"4502"), (longest + 1, b"\r\n", b"4502"),
                                           (longest + 2, b"\n", b"4502"), (longest - 1, b"\r\n", b"77"),
                                           (10 * longest, b"\n", b"4502"), (2_000_000, b"\n", b"4502")):
                    with self.subTest(longest=longest, length=length, end=end):
                        client.send(of_length(number, length) + end)
                        self.assertEqual(client.reply(), reply)
                        self.assertEqual(client.ask("pafGetFindStatusId", number), "77")

    def test_too_long_lines_among_others_in_one_piece(self):
        server = self.start("--max-line", "300")
        with server.client() as client:
            number = client.open()
            short, long = of_length(number, 40), of_length(number, 301)
            client.send(b"\n".join([short, long, short, long + long, long, short, b"", short]) + b"\n")
            replies = [client.reply() for _ in range(8)]
            self.assertEqual(replies, [b"77", b"4502", b"77", b"4502", b"4502", b"77", b"4500", b"77"])

    @unittest.skipIf(SANITIZED, "sanitizers keep freed memory")
    def test_long_lines_leave_no_memory_behind(self):
        server = self.start("--max-line", "4000000")
        with server.client() as client:
            number = client.open()
            client.ask("pafGetDpidId", number, "x" * 5000)
            before = server.resident_kib()
            reply = client.ask("pafGetDpidId", number, "x" * 3_900_000)
            self.assertEqual(len(reply), 1023)
            client.ask("pafGetDpidId", number, "x")
            client.ask("pafGetDpidId", number, "x")
            self.assertLess(server.resident_kib(), before + 1000)


if __name__ == "__main__":
    unittest.main()
