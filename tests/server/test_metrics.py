"""What Prometheus reads."""
import re
import time
import unittest

from pafd_case import Case, Client, read_all


def values(text):
    return {line.rsplit(" ", 1)[0]: float(line.rsplit(" ", 1)[1]) for line in text.splitlines()
            if not line.startswith("#")}


class MetricsTest(Case):
    def test_counts(self):
        server = self.start("--max-connections", "2", metrics=True)
        before = values(server.metrics())
        self.assertEqual(before["pafd_connections"], 0)
        self.assertEqual(before["pafd_request_duration_seconds_count"], 0)
        with server.client() as client, server.client() as other:
            number = client.open()
            for text in ("a", "b", "status:12", "wait:300"):
                client.ask("pafGetDpidId", number, text)
            other.ask("no request")
            client.ask("pafGetFindStatusId", number)
            client.send(b"x" * 100000 + b"\n")
            client.reply()
            with server.client() as third:
                third.reply()
            now = values(server.metrics())
        expected = {
            "pafd_connections": 2, "pafd_connections_total": 2,
            'pafd_connections_turned_away_total{reason="too_many"}': 1,
            'pafd_connections_turned_away_total{reason="not_allowed"}': 0,
            'pafd_connections_turned_away_total{reason="no_thread"}': 0,
            'pafd_requests_total{name="pafOpenArfId",status="0"}': 1,
            'pafd_requests_total{name="pafGetDpidId",status="0"}': 3,
            'pafd_requests_total{name="pafGetDpidId",status="12"}': 1,
            'pafd_requests_total{name="pafGetFindStatusId",status="0"}': 1,
            'pafd_requests_total{name="unknown",status="4500"}': 1,
            'pafd_requests_total{name="unknown",status="4502"}': 1,
            "pafd_request_duration_seconds_count": 8,
            'pafd_request_duration_seconds_bucket{le="+Inf"}': 8,
            'pafd_request_duration_seconds_bucket{le="0.25"}': 7,
        }
        self.assertEqual({name: now.get(name) for name in expected}, expected)
        self.assertGreater(now["pafd_request_duration_seconds_sum"], 0.3)
        self.assertLess(now["pafd_request_duration_seconds_sum"], 5)
        self.wait_for(lambda: values(server.metrics())["pafd_connections"] == 0, "no connection is left")

    def test_the_text_is_well_formed(self):
        server = self.start(metrics=True)
        with server.client() as client:
            client.ask("pafGetErrorDescription", 1)
        text = server.metrics()
        self.assertTrue(text.endswith("\n"))
        sample = re.compile(r'[a-z_]+(\{[a-z]+="[^"]*"(,[a-z]+="[^"]*")*\})? [0-9.e+-]+')
        known = set()
        for line in text.splitlines():
            if line.startswith("# TYPE "):
                known.add(line.split()[2])
            elif not line.startswith("# HELP "):
                self.assertIsNotNone(sample.fullmatch(line), line)
                self.assertTrue(any(line.startswith(name) for name in known), line)
        buckets = [float(line.rsplit(" ", 1)[1]) for line in text.splitlines() if "_bucket{" in line]
        self.assertEqual(buckets, sorted(buckets))
        bounds = [float(match) for match in re.findall(r'le="([^"]*)"', text)]
        self.assertEqual(bounds, sorted(set(bounds)))

    def test_statuses_that_plug_ins_invent_are_limited(self):
        server = self.start("--quiet", metrics=True)
        with server.client() as client:
            number = client.open()
            for status in range(1, 200):
                client.ask("pafGetDpidId", number, f"status:{status}")
        found = [name for name in values(server.metrics()) if 'name="pafGetDpidId"' in name]
        self.assertEqual(len(found), 41)
        self.assertEqual(values(server.metrics())['pafd_requests_total{name="pafGetDpidId",status="other"}'], 159)

    def test_answers_of_the_small_web_server(self):
        server = self.start(metrics=True)
        rows = [(b"GET /metrics HTTP/1.0\r\n\r\n", b"HTTP/1.1 200 OK\r\n"),
                (b"GET /metrics?x=1 HTTP/1.1\r\nHost: a\r\n\r\n", b"HTTP/1.1 200 OK\r\n"),
                (b"GET /metrics HTTP/1.1\n\n", b"HTTP/1.1 200 OK\r\n"),
                (b"GET / HTTP/1.1\r\n\r\n", b"HTTP/1.1 404 Not Found\r\n"),
                (b"POST /metrics HTTP/1.1\r\n\r\n", b"HTTP/1.1 404 Not Found\r\n"),
                (b"\0\r\n\r\n", b"HTTP/1.1 404 Not Found\r\n")]
        for request, answer in rows:
            with self.subTest(request=request), Client(server.metrics_port) as client:
                for byte in request:
                    client.send(bytes([byte]))
                text = read_all(client.socket)
                self.assertTrue(text.startswith(answer), text[:60])
                head, body = text.split(b"\r\n\r\n", 1)
                self.assertIn(b"Content-Length: %d" % len(body), head)

    def test_readers_that_misbehave_hold_nobody_up(self):
        server = self.start(metrics=True)
        before = server.descriptors()
        silent = [Client(server.metrics_port) for _ in range(100)]
        flood = Client(server.metrics_port)
        try:
            flood.send(b"x" * 1_000_000)
        except ConnectionError:
            pass
        began = time.monotonic()
        with server.client() as client:
            self.assertEqual(client.ask(""), "4500")
        self.assertIn("pafd_connections_total 1", server.metrics())
        self.assertLess(time.monotonic() - began, 1)
        for client in silent:
            self.assertEqual(read_all(client.socket), b"")
            client.close()
        flood.close()
        self.wait_for(lambda: server.descriptors() == before, "no descriptor is left")


if __name__ == "__main__":
    unittest.main()
