"""The load driver (what it counts, that its processes start together, that wrong replies are seen) and its script."""
import json
import os
import pathlib
import shutil
import socket
import subprocess
import sys
import threading
import time
import unittest

from pafd_case import Case

LOAD = os.environ["PAFD_TEST_LOAD"]
LIBRARY = os.environ["PAFD_TEST_LIBRARY"]
PAF = os.environ["PAFD_TEST_PAF"]
SAMPLE = pathlib.Path(os.environ["PAFD_TEST_SAMPLE"])
SCRIPT = pathlib.Path(__file__).parents[2] / "scripts" / "bench_server"
PATIENCE = 60


class LineServer:
    """Answers every line by `answer(line, number of the line in its connection)`; None ends the connection."""

    def __init__(self, answer):
        self.answer = answer
        self.connections = 0
        self.lines = 0
        self.lock = threading.Lock()
        self.listener = socket.create_server(("127.0.0.1", 0))
        self.port = self.listener.getsockname()[1]
        threading.Thread(target=self.accept, daemon=True).start()

    def accept(self):
        while True:
            try:
                connection, _ = self.listener.accept()
            except OSError:
                return
            threading.Thread(target=self.serve, args=(connection,), daemon=True).start()

    def serve(self, connection):
        with self.lock:
            self.connections += 1
        with connection, connection.makefile("rb") as lines:
            for number, line in enumerate(lines):
                with self.lock:
                    self.lines += 1
                reply = self.answer(line, number)
                if reply is None:
                    return
                connection.sendall(reply)


class LoadTest(Case):
    def serve_lines(self, answer):
        server = LineServer(answer)
        self.addCleanup(server.listener.close)
        return server

    def load(self, kind, port, *options):
        result = subprocess.run([LOAD, kind, "--port", str(port), *options], capture_output=True, text=True,
                                timeout=PATIENCE, check=False, env=dict(os.environ, LD_LIBRARY_PATH=LIBRARY))
        return result.returncode, result.stdout, result.stderr

    def measure(self, kind, port, *options):
        code, out, error = self.load(kind, port, "--json", *options)
        self.assertEqual((code, error), (0, ""))
        return json.loads(out)

    def test_every_request_is_sent_and_counted(self):
        server = self.serve_lines(lambda line, _: b"+PONG\r\n" if line == b"PING\r\n" else None)
        measured = self.measure("redis-ping", server.port, "--processes", "3", "--requests", "40", "--warm-up", "5")
        self.assertEqual((measured["processes"], measured["requests"]), (3, 120))
        self.assertEqual((server.connections, server.lines), (3, 3 * 45))

    def test_latencies_are_those_of_the_replies(self):
        """Of 20 replies one takes 0.2 and two take 0.05 seconds; those before, which do not count, take longer."""
        pauses = {1: 1, 7: 0.05, 12: 0.2, 18: 0.05}

        def answer(_, number):
            time.sleep(pauses.get(number, 0))
            return b"+PONG\r\n"

        server = self.serve_lines(answer)
        measured = self.measure("redis-ping", server.port, "--requests", "20", "--warm-up", "2")
        times = measured["microseconds"]
        self.assertLess(times["p50"], 50_000)
        self.assertTrue(50_000 <= times["p90"] < times["p99"], times)
        self.assertTrue(200_000 <= times["p99"] == times["p99.9"] == times["max"] < 1_000_000, times)
        self.assertTrue(20 / 1 < measured["per_second"] <= 20 / 0.3, measured)

    def test_processes_start_together(self):
        """One is served late; the time until then is no part of the measurement."""
        late = threading.Event()

        def answer(_, number):
            if number == 0 and not late.is_set():
                late.set()
                time.sleep(1)
            return b"+PONG\r\n"

        server = self.serve_lines(answer)
        measured = self.measure("redis-ping", server.port, "--processes", "2", "--requests", "10", "--warm-up", "1")
        self.assertLess(measured["microseconds"]["max"], 1_000_000)
        self.assertGreater(measured["per_second"], 20 / 1)

    def test_a_wrong_reply_is_a_failure(self):
        for wrong in (b"-ERR\r\n", b"+PONG\n", None):
            with self.subTest(wrong=wrong):
                server = self.serve_lines(lambda _, number, wrong=wrong: b"+PONG\r\n" if number < 7 else wrong)
                code, out, error = self.load("redis-ping", server.port, "--processes", "2", "--requests", "9",
                                             "--warm-up", "0")
                self.assertEqual((code, out), (1, ""))
                self.assertIn("ended the connection" if wrong is None else wrong.decode().strip(), error)

    def test_nobody_listens(self):
        with socket.create_server(("127.0.0.1", 0)) as listener:
            port = listener.getsockname()[1]
        for kind in ("redis-ping", "raw-property", "property"):
            code, out, error = self.load(kind, port, "--processes", "4")
            self.assertEqual((code, out), (1, ""))
            self.assertIn("Connection refused", error)

    def test_both_ways_to_ask_a_real_server(self):
        database = self.directory + "/sample"
        subprocess.run([PAF, "build", str(SAMPLE / "addresses.csv"), database], check=True, capture_output=True)
        server = self.start(plugins=LIBRARY, lines=[f"ARF/AU/={database}"])
        small = ["--processes", "2", "--requests", "30", "--warm-up", "3"]
        for kind in ("property", "raw-property"):
            self.assertEqual(self.measure(kind, server.port, *small)["requests"], 60)
        self.assertEqual(self.measure("address", server.port, *small, "--address", "6 macquarie st sydney", "--address",
                                      "U 3/12 Watson Tce Mount Gambier")["requests"], 60)
        self.wait_for(lambda: server.log().count(" ended: closed by the client; ") == 6, "all connections have ended")
        # Opening, 33 requests and, through the library, closing.
        self.assertEqual(server.log().count("client; 35 requests, 0 errors"), 4)
        self.assertEqual(server.log().count("client; 34 requests, 0 errors"), 2)
        code, _, error = self.load("address", server.port, "--address", "6 macquarie st sydney", "--address", "nowhere")
        self.assertEqual(code, 1)
        self.assertIn("nowhere: ", error)


class BenchServerTest(Case):
    SMALL = ["--rounds", "1", "--requests", "40", "--connections", "2", "--idle", "3", "--no-build"]

    def run_script(self, **environment):
        build = pathlib.Path(LOAD).parents[1]
        result = subprocess.run([sys.executable, SCRIPT, *self.SMALL, "--build", str(build)], capture_output=True,
                                text=True, timeout=PATIENCE, check=False, cwd=self.directory,
                                env=dict(os.environ, **environment))
        self.assertEqual((result.returncode, result.stderr), (0, ""))
        tables = [[cell.strip() for cell in line.strip("|").split("|")]
                  for line in result.stdout.splitlines() if line.startswith("|") and not line.startswith("|---")]
        return result.stdout, tables

    def check_tables(self, tables, asked):
        head, rows = tables[0], tables[1:]
        self.assertEqual(head[:4], ["connections", "asked", "requests/s", "p50 µs"])
        measured = [row for row in rows if len(row) == len(head)]
        self.assertEqual([row[0] for row in measured], ["1"] * asked + ["2"] * asked)
        for row in measured:
            self.assertGreater(float(row[2]), 0)
            self.assertGreater(float(row[3]), 0)
        memory = rows[len(measured):]
        self.assertEqual(memory[0], ["connection", "KiB"])
        self.assertEqual(len(memory), 4)
        # So few connections can be less than what the process gave back meanwhile.
        self.assertTrue(all(abs(float(kib)) < 1000 for _, kib in memory[1:]), memory)
        return measured

    @unittest.skipUnless(shutil.which("redis-server") and shutil.which("redis-benchmark"), "redis is not installed")
    def test_beside_redis(self):
        _, tables = self.run_script()
        rows = self.check_tables(tables, 7)
        rate, p50, other_rate, other_p50 = (float(rows[index][column]) for index in (3, 0) for column in (2, 3))
        for column, ratio in ((8, rate / other_rate), (9, p50 / other_p50)):
            self.assertAlmostEqual(float(rows[3][column]), ratio, delta=0.005 + 0.02 * ratio)

    def test_without_redis(self):
        """Only the programs of the directory are found."""
        text, tables = self.run_script(PATH=self.directory)
        self.assertIn("redis-server or redis-benchmark is missing", text)
        self.check_tables(tables, 5)


if __name__ == "__main__":
    unittest.main()
