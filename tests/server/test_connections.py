"""Who is served, for how long, and what is left of a connection that has ended."""
import os
import pathlib
import resource
import socket
import time
import unittest

from pafd_case import SANITIZED, Case, Client


class EndTest(Case):
    def prepare(self, server):
        client = server.client()
        numbers = [client.open() for _ in range(3)]
        client.ask("pafPostcodeToBsp", "2000")
        self.assertEqual(server.client_count(), 4)
        return client, numbers

    def check_nothing_is_left(self, server, before):
        self.wait_for(lambda: server.client_count() == 0, "all instances are closed")
        self.wait_for(lambda: (server.descriptors(), server.threads()) == before, "descriptors and threads are back")

    def test_instances_are_closed_however_a_connection_ends(self):
        server = self.start("--idle-timeout", "1")
        before = (server.descriptors(), server.threads())

        def half_a_line(client):
            client.send(b"pafGetDpidId\t1\tx")
            client.close()

        def while_a_call_runs(client):
            client.send(b"pafGetDpidId\t1\twait:300\n")
            client.reset()

        ways = {"close": Client.close, "reset": Client.reset, "half a line": half_a_line,
                "in a call": while_a_call_runs, "idle": lambda client: time.sleep(0.1)}
        for name, end in ways.items():
            with self.subTest(name):
                client, _ = self.prepare(server)
                end(client)
                self.check_nothing_is_left(server, before)
                client.close()

    def test_closed_ids_are_no_ids(self):
        server = self.start()
        client, numbers = self.prepare(server)
        with client:
            self.assertEqual(client.ask("pafClosePafId", numbers[0]), "0")
            self.assertEqual(client.ask("pafClosePafId", numbers[0]), "6405")
            with server.client() as other:
                self.assertEqual(other.open(), numbers[0])
                self.assertEqual(client.ask("pafGetDpidId", numbers[0], "x"), "6405\t")
                self.assertEqual(client.ask("pafClosePafId", numbers[0]), "6405")
                self.assertEqual(other.ask("pafGetFindStatusId", numbers[0]), "77")

    def test_ids_of_other_connections_and_of_the_server_are_unknown(self):
        server = self.start()
        with server.client() as one, server.client() as other:
            one.ask("pafPostcodeToBsp", "2000")
            number = other.open()
            for guess in range(-1, 6):
                if guess != number:
                    self.assertEqual(other.ask("pafGetDpidId", guess, "x"), "6405\t")
                self.assertEqual(one.ask("pafClosePafId", guess), "6405")
                self.assertEqual(one.ask("pafGetPropertiesId", guess, "OpenARF"), "0\t")
            self.assertEqual(other.ask("pafGetPropertiesId", number, "OpenARF"), "0\tAU")

    def test_the_instances_of_a_connection_are_limited(self):
        server = self.start("--max-instances", "3")
        with server.client() as client:
            numbers = [client.open() for _ in range(3)]
            self.assertEqual(client.ask("pafOpenPafId"), "6404\t0")
            self.assertEqual(client.ask("pafOpenArfId", 0, "AU"), "6404\t0")
            client.ask("pafClosePafId", numbers[1])
            self.assertEqual(client.open(), numbers[1])

    def test_calls_of_connections_run_beside_each_other(self):
        server = self.start()
        clients = [server.client() for _ in range(8)]
        for client in clients:
            client.number = client.open()
        began = time.monotonic()
        for client in clients:
            client.send(f"pafGetDpidId\t{client.number}\twait:500\n".encode())
        for client in clients:
            self.assertTrue(client.reply().startswith(b"0\t"))
            client.close()
        self.assertLess(time.monotonic() - began, 3)

    def test_many_connections_come_and_go(self):
        server = self.start("--quiet")
        before = (server.descriptors(), server.threads())
        for i in range(1000):
            client = server.client()
            if i % 3:
                client.ask("pafGetErrorDescription", 6405)
            if i % 2:
                client.reset()
            client.close()
        self.check_nothing_is_left(server, before)


class LimitTest(Case):
    def test_connections_above_the_limit_get_4504(self):
        server = self.start("--max-connections", "2")
        with server.client() as one, server.client() as two:
            one.ask("")
            two.ask("")
            for way in ("silent", "asking", "many"):
                with self.subTest(way), server.client() as third:
                    if way != "silent":
                        third.send(b"pafOpenPafId\n")
                    if way == "many":
                        third.send(b"pafOpenPafId\n" * 1000)
                    self.assertEqual(third.reply(), b"4504")
                    self.assertIsNone(third.reply())
            self.assertEqual(one.ask(""), "4500")
        self.assertIn("(status 4504)", server.log())
        self.wait_for(lambda: server.threads() == 1, "both threads have ended")
        with server.client() as client:
            self.assertEqual(client.ask(""), "4500")

    def test_the_usual_limit(self):
        server = self.start("--quiet")
        clients = [server.client() for _ in range(256)]
        for client in clients:
            self.assertEqual(client.ask(""), "4500")
        with server.client() as client:
            self.assertEqual(client.reply(), b"4504")
        for client in clients:
            client.close()

    @unittest.skipIf(SANITIZED, "sanitizers need more address space")
    def test_without_a_thread_connections_get_4503(self):
        gibi = 1 << 30

        def big_stacks():
            # A thread's stack is as large as this limit, and does not fit the address space that is left.
            resource.setrlimit(resource.RLIMIT_STACK, (4 * gibi, resource.RLIM_INFINITY))
            resource.setrlimit(resource.RLIMIT_AS, (3 * gibi, 3 * gibi))

        server = self.start(preexec=big_stacks)
        for _ in range(3):
            with server.client() as client:
                client.send(b"pafOpenPafId\n")
                self.assertEqual(client.reply(), b"4503")
                self.assertIsNone(client.reply())
        self.assertIn("(status 4503)", server.log())

    @unittest.skipIf(SANITIZED, "sanitizers keep descriptors of their own")
    def test_descriptors_that_run_out_stop_accepting_for_a_while_only(self):
        def few_descriptors():
            resource.setrlimit(resource.RLIMIT_NOFILE, (20, 20))

        server = self.start("--max-connections", "100", preexec=few_descriptors)
        clients = [server.client() for _ in range(30)]
        self.wait_for(lambda: "(status 4501)" in server.log(), "accepting fails")
        self.assertEqual(clients[0].ask(""), "4500")
        before = self.processor_time(server)
        time.sleep(0.5)
        self.assertLess(self.processor_time(server) - before, 0.2, "the server spins")
        for client in clients[:10]:
            client.close()
        self.assertEqual(clients[-10].ask(""), "4500")
        for client in clients:
            client.close()

    @staticmethod
    def processor_time(server):
        fields = pathlib.Path(f"/proc/{server.process.pid}/stat").read_text("ascii").rsplit(")", 1)[1].split()
        return (int(fields[11]) + int(fields[12])) / os.sysconf("SC_CLK_TCK")


class TimeTest(Case):
    def test_idle_connections_end(self):
        server = self.start("--idle-timeout", "1")
        with server.client() as client:
            began = time.monotonic()
            for _ in range(3):
                time.sleep(0.6)
                self.assertEqual(client.ask(""), "4500")
            self.assertIsNone(client.reply())
            self.assertGreater(time.monotonic() - began, 2.6)
        self.wait_for(lambda: "idle for too long" in server.log(), "the reason is logged")

    def test_a_client_notices_the_end_at_its_next_request(self):
        server = self.start("--idle-timeout", "1")
        with server.client() as client:
            client.ask("")
            self.wait_for(lambda: "idle for too long" in server.log(), "the connection ends")
            time.sleep(0.2)
            with self.assertRaises(ConnectionError):
                client.send(b"pafOpenPafId\n")

    def test_without_a_limit_connections_stay(self):
        server = self.start()
        with server.client() as client:
            client.ask("")
            time.sleep(2)
            self.assertEqual(client.ask(""), "4500")

    def test_a_request_must_arrive_in_time_however_it_drips(self):
        server = self.start("--request-timeout", "1")
        with server.client() as client:
            began = time.monotonic()
            with self.assertRaises(ConnectionError):
                for _ in range(100):
                    client.send(b"x")
                    time.sleep(0.1)
            self.assertLess(time.monotonic() - began, 5)
        self.assertIn("a request took too long to arrive", server.log())

    def test_half_a_request_and_silence(self):
        server = self.start("--request-timeout", "1")
        with server.client() as client:
            client.send(b"pafOpen")
            self.assertIsNone(client.reply())

    def test_replies_must_be_taken(self):
        server = self.start("--request-timeout", "1")
        with server.client() as client:
            number = client.open()
            line = f"pafGetDpidId\t{number}\tfill:1021\n".encode()
            client.socket.settimeout(0.5)
            with self.assertRaises((TimeoutError, ConnectionError)):
                while True:
                    client.send(line * 1000)
            self.wait_for(lambda: "did not take its reply" in server.log(), "the connection ends")
        self.wait_for(lambda: server.client_count() == 0, "the instance is closed")


class AllowTest(Case):
    def test_only_allowed_addresses_are_served(self):
        server = self.start("--allow", "127.0.0.2,127.1.0.0/16")
        for address, is_served in (("127.0.0.1", False), ("127.0.0.2", True), ("127.1.255.255", True),
                                   ("127.2.0.0", False), ("127.0.0.3", False)):
            with self.subTest(address):
                with socket.socket() as connection:
                    connection.settimeout(10)
                    connection.bind((address, 0))
                    connection.connect(("127.0.0.1", server.port))
                    reply = b""
                    try:
                        connection.sendall(b"pafGetLocalityRecordCount\n")
                        reply = connection.recv(10)
                    except ConnectionError:
                        pass
                    self.assertEqual(reply, b"0\n" if is_served else b"")
        self.assertIn("refused: its address is not allowed", server.log())

    def test_all_addresses_of_the_machine_with_an_allow_list(self):
        server = self.start("--allow", "127.0.0.0/8", "--allow", "10.0.0.0/8", listen="0.0.0.0:0")
        with server.client() as client:
            self.assertEqual(client.ask("pafGetLocalityRecordCount"), "0")


if __name__ == "__main__":
    unittest.main()
