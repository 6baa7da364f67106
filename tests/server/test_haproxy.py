"""The HAProxy configuration in packaging: connections go to both servers, and survive the loss of one."""
import os
import pathlib
import shutil
import socket
import subprocess
import tempfile
import time
import unittest

from pafd_case import Case, Client, Server

CONFIGURATION = pathlib.Path(__file__).parents[2] / "packaging" / "haproxy.cfg"
HAPROXY = shutil.which("haproxy", path=os.environ.get("PATH", "") + ":/usr/sbin")


def free_port():
    with socket.socket() as other:
        other.bind(("127.0.0.1", 0))
        return other.getsockname()[1]


@unittest.skipUnless(HAPROXY, "haproxy is not installed")
class HaproxyTest(Case):
    def start_in(self, name, **arguments):
        directory = tempfile.TemporaryDirectory(prefix=f"pafd-{name}-")
        self.addCleanup(directory.cleanup)
        server = Server(directory.name, **arguments)
        self.addCleanup(self.finish, server)
        return server

    def start_proxy(self, one, two):
        self.port = free_port()
        environment = dict(os.environ, PAF_BIND=f"127.0.0.1:{self.port}", PAF_SERVER_ONE=f"127.0.0.1:{one.port}",
                           PAF_SERVER_TWO=f"127.0.0.1:{two.port}")
        proxy = subprocess.Popen([HAPROXY, "-db", "-f", str(CONFIGURATION)], env=environment,
                                 stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        self.addCleanup(proxy.wait, 30)
        self.addCleanup(proxy.terminate)
        self.wait_for(self.is_served, "the proxy answers")

    def is_served(self):
        try:
            with Client(self.port) as client:
                return client.ask("pafGetLocalityRecordCount") == "0"
        except ConnectionError:
            return False

    def start_all(self):
        servers = [self.start_in(name) for name in ("one", "two")]
        self.start_proxy(*servers)
        clients = [Client(self.port) for _ in range(10)]
        for client in clients:
            self.addCleanup(client.close)
            client.number = client.open()
        self.assertEqual([server.client_count() for server in servers], [5, 5])
        return servers[0], clients

    def is_lost(self, client):
        try:
            return client.ask("pafGetFindStatusId", client.number) is None
        except ConnectionError:
            return True

    def check_that_half_are_lost(self, clients):
        lost = [client for client in clients if self.is_lost(client)]
        self.assertEqual(len(lost), 5)
        for _ in range(20):
            with Client(self.port) as client:
                client.open()
        return lost

    def test_a_server_that_is_stopped(self):
        server, clients = self.start_all()
        self.assertEqual(server.end()[0], 0)
        time.sleep(0.2)
        for client in self.check_that_half_are_lost(clients):
            with self.assertRaises(ConnectionError):
                client.send(b"pafOpenPafId\n")

    def test_a_server_that_is_killed(self):
        server, clients = self.start_all()
        server.process.kill()
        server.process.wait()
        time.sleep(0.5)
        for client in self.check_that_half_are_lost(clients):
            with self.assertRaises(ConnectionError):
                client.send(b"pafOpenPafId\n")


if __name__ == "__main__":
    unittest.main()
