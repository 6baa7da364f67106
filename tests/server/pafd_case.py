"""Starting a server for a test, and talking to it."""
import contextlib
import os
import pathlib
import signal
import socket
import subprocess
import tempfile
import time
import unittest

PAFD = os.environ["PAFD"]
ECHO_PLUGINS = os.environ["PAFD_TEST_PLUGINS"]
SANITIZED = "PAFD_TEST_SANITIZED" in os.environ
PATIENCE = 30  # seconds; only a failure waits as long


class Client:
    """One connection."""

    def __init__(self, port, host="127.0.0.1"):
        self.socket = socket.create_connection((host, port), timeout=PATIENCE)
        self.received = b""

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self.close()

    def send(self, data):
        self.socket.sendall(data)

    def reply(self):
        """The next reply line without its line feed; None at the end of the connection, however it ends."""
        while b"\n" not in self.received:
            try:
                piece = self.socket.recv(65536)
            except ConnectionResetError:
                piece = b""
            if not piece:
                assert not self.received, f"half a reply: {self.received!r}"
                return None
            self.received += piece
        line, self.received = self.received.split(b"\n", 1)
        return line

    def ask(self, *fields):
        """Sends one request and takes its reply; texts are given and returned as Latin-1."""
        line = "\t".join(str(field) for field in fields)
        self.send(line.encode("latin-1") + b"\n")
        reply = self.reply()
        return None if reply is None else reply.decode("latin-1")

    def open(self, name="AU"):
        """Opens an instance. Returns its Id."""
        status, number = self.ask("pafOpenArfId", 0, name).split("\t")
        assert status == "0", f"opening {name!r} gave {status}"
        return int(number)

    def is_silent(self, seconds=0.2):
        """True when nothing arrives for that long."""
        self.socket.settimeout(seconds)
        try:
            return not self.received and self.socket.recv(1, socket.MSG_PEEK) is None
        except TimeoutError:
            return not self.received
        finally:
            self.socket.settimeout(PATIENCE)

    def reset(self):
        """Ends the connection with a reset instead of an orderly close."""
        self.socket.setsockopt(socket.SOL_SOCKET, socket.SO_LINGER, b"\1\0\0\0\0\0\0\0")
        self.socket.close()

    def close(self):
        self.socket.close()


class Server:
    """A running pafd with ports that the system chose. WORK in configuration lines is its working directory."""

    def __init__(self, directory, *options, lines=("PafDir=WORK", "ARF/AU/=/echo"), plugins=ECHO_PLUGINS,
                 listen="127.0.0.1:0", announced=True, metrics=False, preexec=None):
        self.config = pathlib.Path(directory) / "paf.conf"
        text = "".join(line + "\n" for line in lines)
        self.config.write_text(text.replace("WORK", str(directory)), encoding="utf-8")
        pathlib.Path(directory, "PAF.ver").touch()  # a database directory says whose it is; an empty file: AU
        self.log_file = pathlib.Path(directory) / "log"
        command = [PAFD, "--listen", listen, "--config", str(self.config), *options]
        if metrics:
            command += ["--metrics", "127.0.0.1:0"]
        environment = dict(os.environ, LD_LIBRARY_PATH=plugins, HOME=str(directory))
        with open(self.log_file, "wb") as log:
            self.process = subprocess.Popen(command, cwd=directory, env=environment, stdout=subprocess.PIPE,
                                            stderr=log, preexec_fn=preexec)
        self.port = self._port(b"clients") if announced else int(listen.rsplit(":", 1)[1])
        self.metrics_port = self._port(b"metrics") if metrics else None

    def _port(self, what):
        line = self.process.stdout.readline()
        if not line.startswith(what + b" "):
            self.process.wait(PATIENCE)
            self.process.stdout.close()
            raise AssertionError(f"no server: {line!r} {self.log()}")
        return int(line.rsplit(b":", 1)[1])

    def client(self):
        return Client(self.port)

    def log(self):
        return self.log_file.read_text(encoding="utf-8", errors="backslashreplace")

    def client_count(self):
        """How many instances are open in the whole server, asked over a connection that has none."""
        with self.client() as client:
            return int(client.ask("pafGetPropertiesId", 0, "ClientCount").split("\t")[1])

    def descriptors(self):
        return len(os.listdir(f"/proc/{self.process.pid}/fd"))

    def threads(self):
        return len(os.listdir(f"/proc/{self.process.pid}/task"))

    def resident_kib(self):
        status = pathlib.Path(f"/proc/{self.process.pid}/status").read_text("ascii")
        return int(status.split("VmRSS:")[1].split()[0])

    def metrics(self):
        with Client(self.metrics_port) as client:
            client.send(b"GET /metrics HTTP/1.1\r\nHost: test\r\n\r\n")
            text = read_all(client.socket).decode()
        return text.split("\r\n\r\n", 1)[1]

    def end(self, number=signal.SIGTERM):
        """Sends a signal. Returns exit status and seconds until the end."""
        began = time.monotonic()
        self.process.send_signal(number)
        status = self.process.wait(PATIENCE)
        self.process.stdout.close()
        return status, time.monotonic() - began


def read_all(connection):
    pieces = []
    with contextlib.suppress(ConnectionResetError):
        while piece := connection.recv(65536):
            pieces.append(piece)
    return b"".join(pieces)


class Case(unittest.TestCase):
    """Tests in a directory of their own; every server that is started is ended."""

    def setUp(self):
        directory = tempfile.TemporaryDirectory(prefix="pafd-test-")
        self.addCleanup(directory.cleanup)
        self.directory = directory.name

    def start(self, *options, **arguments):
        server = Server(self.directory, *options, **arguments)
        self.addCleanup(self.finish, server)
        return server

    def finish(self, server):
        if server.process.poll() is None:
            status, _ = server.end()
            self.assertEqual(status, 0, server.log())
        server.process.stdout.close()

    def wait_for(self, condition, what):
        deadline = time.monotonic() + PATIENCE
        while not condition():
            self.assertLess(time.monotonic(), deadline, f"never: {what}")
            time.sleep(0.01)

    def run_to_end(self, *options, lines=(), directory_files=()):
        """Starts a server that is not to run. Returns exit status, standard output, standard error."""
        config = pathlib.Path(self.directory, "paf.conf")
        config.write_text("".join(line + "\n" for line in lines), encoding="utf-8")
        for name in directory_files:
            pathlib.Path(self.directory, name).touch()
        environment = dict(os.environ, LD_LIBRARY_PATH=ECHO_PLUGINS, HOME=self.directory)
        result = subprocess.run([PAFD, *options], cwd=self.directory, env=environment, capture_output=True,
                                text=True, timeout=PATIENCE, check=False)
        return result.returncode, result.stdout, result.stderr
