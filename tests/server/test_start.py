"""Starting: what the options mean, and the messages when it fails."""
import socket
import unittest

from pafd_case import Case

USAGE = [
    (["--frobnicate"], "--frobnicate"),
    (["extra"], "extra"),
    (["--max-connections", "0"], "--max-connections"),
    (["--max-connections", "many"], "--max-connections"),
    (["--max-line", "254"], "--max-line"),
    (["--max-line", "99999999999"], "--max-line"),
    (["--idle-timeout", "-1"], "--idle-timeout"),
    (["--request-timeout", "0"], "--request-timeout"),
    (["--max-instances", "0"], "--max-instances"),
    (["--listen"], "--listen"),
    (["--quiet", "--log-requests"], "--quiet excludes --log-requests"),
]

FAILURES = [
    (["--listen", "7070"], "'7070' is not of the form HOST:PORT"),
    (["--listen", ":7070"], "':7070' is not of the form HOST:PORT"),
    (["--listen", "127.0.0.1:"], "'127.0.0.1:': the port must be a number from 0 to 65535"),
    (["--listen", "127.0.0.1:65536"], "the port must be a number from 0 to 65535"),
    (["--listen", "127.0.0.1:0x10"], "the port must be a number from 0 to 65535"),
    (["--listen", "127.0.0.300:0"], "the host is no IPv4 address and no known name"),
    (["--listen", "0.0.0.0:0"], "--listen 0.0.0.0:0 can be reached from other machines"),
    (["--listen", "127.0.0.1:0", "--metrics", "0.0.0.0:0"], "--metrics 0.0.0.0:0 can be reached from other machines"),
    (["--listen", "192.0.2.1:0", "--allow", "10.0.0.0/8"],
     "cannot listen on 192.0.2.1:0: Cannot assign requested address"),
    (["--allow", "10.0.0.0/33"], "--allow '10.0.0.0/33': the number behind '/' must be from 0 to 32"),
    (["--allow", "10.0.0.1/8"], "did you mean 10.0.0.0/8?"),
    (["--allow", "10.0.0.0/8,nonsense"], "--allow 'nonsense' is no IPv4 network"),
    (["--config", "nowhere"], "cannot read the configuration file nowhere: No such file or directory"),
    (["--config", "/"], "cannot read the configuration file /: it is a directory"),
]


class StartTest(Case):
    def test_mistakes_in_options(self):
        for options, mentioned in USAGE:
            with self.subTest(options=options):
                status, out, err = self.run_to_end(*options)
                self.assertEqual((status, out), (2, ""))
                self.assertIn(mentioned, err)

    def test_failures(self):
        for options, message in FAILURES:
            with self.subTest(options=options):
                status, out, err = self.run_to_end(*options)
                self.assertEqual((status, out), (2, ""))
                self.assertEqual(err.splitlines()[-1][:6], "pafd: ")
                self.assertIn(message, err)

    def test_a_port_in_use(self):
        with socket.socket() as other:
            other.bind(("127.0.0.1", 0))
            other.listen()
            place = f"127.0.0.1:{other.getsockname()[1]}"
            for option in (["--listen", place], ["--listen", "127.0.0.1:0", "--metrics", place]):
                status, out, err = self.run_to_end(*option)
                self.assertEqual((status, out), (2, ""))
                self.assertEqual(err, f"pafd: cannot listen on {place}: Address already in use\n")

    def test_a_server_must_not_ask_a_server(self):
        for line in ("PindleSvr/TcpHost=example.org", "PindleSvr/TcpPort=7070"):
            with self.subTest(line=line):
                status, out, err = self.run_to_end("--config", "paf.conf", "--listen", "127.0.0.1:0", lines=[line])
                self.assertEqual((status, out), (2, ""))
                self.assertIn(f"pafd: the configuration has the line {line}, which", err)

    def test_a_server_can_ignore_that_libraries_are_to_ask_one(self):
        server = self.start("--ignore-remote", lines=["PindleSvr/TcpPort=1", "ARF/AU/=/echo"])
        with server.client() as client:
            self.assertEqual(client.ask("pafGetPropertiesId", 0, "UseSockets"), "0\tFalse")
            self.assertEqual(client.ask("pafGetFindStatusId", client.open()), "77")

    def test_a_configuration_file_that_would_not_be_read(self):
        status, _, err = self.run_to_end("--config", "paf.conf", directory_files=[".morvex"])
        self.assertEqual(status, 2)
        self.assertIn("would be read instead of paf.conf", err)

    def test_help_and_version(self):
        status, out, err = self.run_to_end("--help")
        self.assertEqual((status, err), (0, ""))
        for option in ("--listen", "--allow", "--metrics", "--config", "--max-connections", "--max-instances",
                       "--max-line", "--idle-timeout", "--request-timeout", "--quiet", "--log-requests",
                       "--trusted", "--ignore-remote"):
            self.assertIn(option, out)
        status, out, err = self.run_to_end("--version")
        self.assertEqual((status, out, err), (0, "pafd 5.10.246\n", ""))


class LogTest(Case):
    SECRET = "12 Hidden Lane"

    def talk(self, server):
        with server.client() as client:
            number = client.open()
            client.ask("pafGetDpidId", number, self.SECRET)
            client.ask("pafGetDpidId", number, "status:700", self.SECRET)
            client.ask("pafGetDpidId", number, "status:7", self.SECRET)
            client.ask(self.SECRET, "a\x1b[2Jb")
        self.wait_for(lambda: server.threads() == 1, "the connection ends")
        return server.log()

    def test_a_line_for_a_connection_and_one_for_an_error(self):
        log = self.talk(self.start())
        self.assertNotIn("Hidden", log)
        self.assertEqual(log.count("pafGetDpidId answered 700"), 1)
        self.assertEqual(log.count("a line that is no request answered 4500"), 1)
        self.assertNotIn("answered 7\n", log)
        self.assertRegex(log, r"connection 1 from 127\.0\.0\.1:\d+ ended: closed by the client; 5 requests, 3 errors")

    def test_requests_are_logged_on_demand_and_harmless(self):
        log = self.talk(self.start("--log-requests"))
        self.assertIn("request pafGetDpidId\\t1\\t12 Hidden Lane reply 0\\tLookupAddress", log)
        self.assertIn("request 12 Hidden Lane\\ta\\x1B[2Jb reply 4500", log)
        self.assertNotIn("\x1b", log)

    def test_quiet(self):
        log = self.talk(self.start("--quiet"))
        self.assertEqual(len(log.splitlines()), 2, log)

    def test_errors_of_a_connection_do_not_fill_the_log(self):
        server = self.start("--quiet")
        with server.client() as client:
            for _ in range(1000):
                client.ask("nonsense")
        lines = server.log().splitlines()
        self.assertEqual(len(lines), 10)
        self.assertTrue(lines[-1].endswith("; further errors of this connection are only counted"))

    def test_a_default_database_that_cannot_be_opened_is_told(self):
        server = self.start(lines=["PafDir=/nowhere"])
        self.assertIn("no default database for requests without an Id", server.log())

    def test_the_chosen_port_is_told(self):
        server = self.start()
        self.assertIn(f"clients on 127.0.0.1:{server.port}", server.log())


if __name__ == "__main__":
    unittest.main()
