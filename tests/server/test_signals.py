"""The end by a signal, and the update of the databases."""
import pathlib
import signal
import threading
import time
import unittest

from pafd_case import Case


class EndTest(Case):
    def check_end(self, server, number=signal.SIGTERM, at_most=5.0):
        status, seconds = server.end(number)
        self.assertEqual(status, 0, server.log())
        self.assertLess(seconds, at_most)

    def test_idle_connections_are_ended_at_once(self):
        for number in (signal.SIGTERM, signal.SIGINT):
            with self.subTest(number):
                server = self.start()
                clients = [server.client() for _ in range(20)]
                for client in clients:
                    client.open()
                self.check_end(server, number, at_most=2)
                for client in clients:
                    self.assertIsNone(client.reply())
                    client.close()
                log = server.log()
                self.assertIn(f"{signal.Signals(number).name}: ending, 20 connections are open", log)
                self.assertEqual(log.count("ended: the server is stopping"), 20)
                self.assertTrue(log.endswith("info: ended\n"), log)

    def test_calls_in_flight_are_finished(self):
        server = self.start()
        clients = [server.client() for _ in range(5)]
        for client in clients:
            client.send(f"pafGetDpidId\t{client.open()}\twait:1500\n".encode())
        time.sleep(0.3)
        self.check_end(server)
        for client in clients:
            self.assertEqual(client.reply(), b"0\tLookupAddress amas=1 address=<wait:1500>")
            self.assertIsNone(client.reply())
            client.close()

    def test_calls_that_do_not_end_do_not_hold_it_up(self):
        server = self.start()
        with server.client() as client:
            client.send(f"pafGetDpidId\t{client.open()}\twait:20000\n".encode())
            time.sleep(0.3)
            self.check_end(server)
        self.assertIn("ending with 1 calls still running", server.log())

    def test_clients_that_take_no_reply_do_not_hold_it_up(self):
        server = self.start()
        with server.client() as client:
            line = f"pafGetDpidId\t{client.open()}\tfill:1021\n".encode()
            client.socket.settimeout(0.5)
            with self.assertRaises((TimeoutError, ConnectionError)):
                while True:
                    client.send(line * 1000)
            self.check_end(server)

    def test_busy_connections_are_ended(self):
        server = self.start("--quiet")
        stop = threading.Event()

        def ask():
            with server.client() as client:
                number = client.open()
                try:
                    while not stop.is_set() and client.ask("pafGetDpidId", number, "x") is not None:
                        pass
                except ConnectionError:
                    pass

        threads = [threading.Thread(target=ask) for _ in range(4)]
        for thread in threads:
            thread.start()
        time.sleep(0.3)
        self.check_end(server)
        for thread in threads:
            thread.join(10)
            self.assertFalse(thread.is_alive())
        stop.set()

    def test_the_port_is_free_at_once(self):
        server = self.start()
        with server.client() as client:
            client.open()
            self.check_end(server)
            again = self.start(listen=f"127.0.0.1:{server.port}", announced=False)
            self.wait_for(lambda: f"clients on 127.0.0.1:{server.port}" in again.log(), "it listens")
            with again.client() as other:
                self.assertEqual(other.ask(""), "4500")


class UpdateTest(Case):
    def paths(self, client):
        return client.ask("pafGetPropertiesId", 0, "OpenArfPaths")

    def move(self, server):
        config = pathlib.Path(self.directory, "paf.conf")
        config.write_text("ARF/AU/=/echo-new\n", encoding="utf-8")
        server.process.send_signal(signal.SIGHUP)

    def test_sighup_moves_the_instances(self):
        server = self.start(lines=["ARF/AU/=/echo"])
        with server.client() as client, server.client() as other:
            number = client.open()
            other.open()
            self.assertEqual(self.paths(client), "0\t/echo")
            self.move(server)
            self.wait_for(lambda: "databases and" in server.log(), "the update ends")
            self.assertIn("update: 1 databases and 2 instances moved", server.log())
            self.assertEqual(self.paths(client), "0\t/echo-new")
            self.assertEqual(client.ask("pafGetFindStatusId", number), "77")

    def test_sighup_without_anything_new(self):
        server = self.start()
        server.process.send_signal(signal.SIGHUP)
        self.wait_for(lambda: "update: 0 databases and 0 instances moved" in server.log(), "the update ends")
        self.assertIn("into another directory, name that in the configuration", server.log())

    def test_requests_are_served_while_an_update_waits(self):
        server = self.start(lines=["ARF/AU/=/echo"])
        with server.client() as busy, server.client() as client:
            number = busy.open()
            busy.send(f"pafGetDpidId\t{number}\twait:1500\n".encode())
            time.sleep(0.2)
            self.move(server)
            time.sleep(0.2)
            self.assertEqual(client.ask("pafGetErrorDescription", 6405), "0\tInvalid Id passed to function")
            with server.client() as new:
                self.assertEqual(new.ask(""), "4500")
            self.assertNotIn("instances moved", server.log())
            self.assertIsNotNone(busy.reply())
            self.wait_for(lambda: "update: 1 databases and 1 instances moved" in server.log(), "the update ends")

    def test_the_end_comes_during_an_update(self):
        server = self.start(lines=["ARF/AU/=/echo"])
        with server.client() as client:
            client.send(f"pafGetDpidId\t{client.open()}\twait:20000\n".encode())
            time.sleep(0.2)
            self.move(server)
            time.sleep(0.2)
            status, seconds = server.end()
            self.assertEqual(status, 0)
            self.assertLess(seconds, 5)


if __name__ == "__main__":
    unittest.main()
