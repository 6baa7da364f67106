"""TLS in front of the server with the configurations that docs/server.md shows."""
import os
import pathlib
import re
import shutil
import socket
import ssl
import subprocess
import unittest

from pafd_case import Case, Client
from test_haproxy import CONFIGURATION, HAPROXY, free_port
from test_pages import shown_block

STUNNEL = shutil.which("stunnel", path=os.environ.get("PATH", "") + ":/usr/sbin")
OPENSSL = shutil.which("openssl")
HOST = "addresses.example.org"
STUNNEL_OPTIONS = "foreground = yes\npid =\ndebug = 3\n"  # for tests: no daemon


@unittest.skipUnless(OPENSSL and STUNNEL and HAPROXY, "openssl, stunnel or haproxy is not installed")
class TlsTest(Case):
    def setUp(self):
        super().setUp()
        self.make_authority("ca")
        self.make_authority("strangers")
        for name, authority in (("server", "ca"), ("client", "ca"), ("stranger", "strangers")):
            self.make_certificate(name, authority)
        self.server = self.start()

    def path(self, name):
        return str(pathlib.Path(self.directory, name))

    def openssl(self, *arguments):
        subprocess.run([OPENSSL, *arguments], check=True, capture_output=True, cwd=self.directory)

    def make_authority(self, name):
        self.openssl("req", "-x509", "-newkey", "ec", "-pkeyopt", "ec_paramgen_curve:P-256", "-nodes", "-days", "2",
                     "-subj", f"/CN={name}", "-keyout", f"{name}.key", "-out", f"{name}.pem")

    def make_certificate(self, name, authority):
        """Makes NAME.pem with key and certificate, for HOST."""
        self.openssl("req", "-newkey", "ec", "-pkeyopt", "ec_paramgen_curve:P-256", "-nodes", "-subj", f"/CN={name}",
                     "-keyout", f"{name}.key", "-out", f"{name}.request")
        pathlib.Path(self.path("names")).write_text(f"subjectAltName=DNS:{HOST}\n", encoding="ascii")
        self.openssl("x509", "-req", "-in", f"{name}.request", "-CA", f"{authority}.pem", "-CAkey", f"{authority}.key",
                     "-CAcreateserial", "-days", "2", "-extfile", "names", "-out", f"{name}.crt")
        parts = [pathlib.Path(self.path(f"{name}.{part}")).read_text(encoding="ascii") for part in ("key", "crt")]
        pathlib.Path(self.path(f"{name}.pem")).write_text("".join(parts), encoding="ascii")

    def adapt(self, text, **places):
        """A shown configuration with the test's files and ports in place of the page's."""
        text = re.sub(r"/etc/(?:stunnel|haproxy)/(\w+\.pem)", lambda found: self.path(found[1]), text)
        text = text.replace("clients.pem", "ca.pem")
        for shown, ours in places.items():
            line = re.compile(rf"^(\s*{shown}) .*?(?=$| ssl )", re.MULTILINE)
            text, count = line.subn(lambda found, ours=ours: f"{found[1]} {ours}", text)
            self.assertEqual(count, 1, shown)
        return text

    def run_program(self, *command, **environment):
        log = open(self.path("proxy-log"), "ab")
        self.addCleanup(log.close)
        program = subprocess.Popen(command, stdin=subprocess.DEVNULL, stdout=log, stderr=log, cwd=self.directory,
                                   env=dict(os.environ, **environment))
        self.addCleanup(program.wait, 30)
        self.addCleanup(program.terminate)
        return program

    def start_stunnel(self, name, text):
        file = pathlib.Path(self.path(f"{name}.conf"))
        file.write_text(STUNNEL_OPTIONS + text + "\n", encoding="utf-8")
        self.run_program(STUNNEL, str(file))

    def start_stunnel_client(self, tls_port, certificate="client"):
        port = free_port()
        text = self.adapt(shown_block("[pafd]\nclient"), accept=f"= 127.0.0.1:{port}",
                          connect=f"= 127.0.0.1:{tls_port}")
        self.start_stunnel(f"{certificate}-side", text.replace("client.pem", f"{certificate}.pem"))
        self.wait_for(lambda: self.is_listening(port), "the client's stunnel listens")
        return port

    def start_stunnel_server(self):
        port = free_port()
        self.start_stunnel("server-side", self.adapt(shown_block("[pafd]\naccept"), accept=f"= 127.0.0.1:{port}",
                                                     connect=f"= 127.0.0.1:{self.server.port}"))
        self.wait_for(lambda: self.is_listening(port), "the server's stunnel listens")
        return port

    def start_haproxy(self):
        port = free_port()
        configuration = CONFIGURATION.read_text(encoding="utf-8")
        self.assertEqual(configuration.count('bind "${PAF_BIND}"'), 1)
        bind = self.adapt(shown_block("bind "), bind=f"127.0.0.1:{port}")
        pathlib.Path(self.path("haproxy.cfg")).write_text(configuration.replace('bind "${PAF_BIND}"', bind),
                                                          encoding="utf-8")
        place = f"127.0.0.1:{self.server.port}"
        self.run_program(HAPROXY, "-db", "-f", self.path("haproxy.cfg"), PAF_SERVER_ONE=place, PAF_SERVER_TWO=place)
        self.wait_for(lambda: self.is_listening(port), "haproxy listens")
        return port

    @staticmethod
    def is_listening(port):
        try:
            socket.create_connection(("127.0.0.1", port), timeout=5).close()
            return True
        except OSError:
            return False

    def answer_through(self, port):
        """What a request is answered; None when there is no way through."""
        try:
            with Client(port) as client:
                return client.ask("pafGetLocalityRecordCount")
        except ConnectionError:
            return None

    def check(self, tls_port):
        """Answers through TLS, and who gets none; in the end the server's end, which TLS makes an orderly one."""
        port = self.start_stunnel_client(tls_port)
        client = Client(port)
        self.addCleanup(client.close)
        number = client.open()
        self.assertEqual(client.ask("pafGetFindStatusId", number), self.find_status_without_tls())
        self.assertIsNone(self.answer_through(self.start_stunnel_client(tls_port, "stranger")))
        self.assertEqual(self.answer_through(port), "0")
        self.check_that_tls_is_needed(tls_port)
        self.assertEqual(self.server.end()[0], 0)
        self.assertEqual(client.socket.recv(1), b"")

    def find_status_without_tls(self):
        with self.server.client() as client:
            return client.ask("pafGetFindStatusId", client.open())

    def check_that_tls_is_needed(self, tls_port):
        self.assertIsNone(self.answer_through(tls_port))
        context = ssl.create_default_context(cafile=self.path("ca.pem"))
        with self.assertRaises((ssl.SSLError, ConnectionError)):
            with socket.create_connection(("127.0.0.1", tls_port), timeout=30) as plain:
                with context.wrap_socket(plain, server_hostname=HOST) as anonymous:
                    anonymous.sendall(b"pafGetLocalityRecordCount\n")
                    anonymous.recv(100)

    def test_stunnel_on_both_sides(self):
        self.check(self.start_stunnel_server())

    def test_haproxy_before_the_server(self):
        self.check(self.start_haproxy())


if __name__ == "__main__":
    unittest.main()
