"""The client library in remote mode, here in paf, and the server: the same answers as without a server."""
import os
import pathlib
import signal
import subprocess
import tempfile
import time
import unittest

from pafd_case import Case

PAF = os.environ["PAFD_TEST_PAF"]
LIBRARY = os.environ["PAFD_TEST_LIBRARY"]
SAMPLE = pathlib.Path(os.environ["PAFD_TEST_SAMPLE"])
EXAMPLE = os.environ["PAFD_TEST_EXAMPLE"]
PATIENCE = 60
COMMANDS = [
    ["lookup", "6 Macquarie Street, Sydney NSW 2000", "U 3/12 Watson Tce Mount Gambier", "nowhere at all",
     "9999 Macquarie St, Sydney NSW 2000", "General Post Office\n1 Martin Place\nSYDNEY  NSW  2000", ""],
    ["lookup", "--json", "6 macquarie st sydney", "12 Watson Tce, Mount Gambier"],
    ["lookup", "--strict", "6 Phillip Street, Sydney NSW 2000"],
    ["address", "30000001", "99999999"],
    ["fix", "sidney 2000", "Balarat Central vic", "xyzzy"],
    ["list", "ALICE SPRINGS NT"],
    ["barcode", "30000001"],
]


class RemoteTest(Case):
    @classmethod
    def setUpClass(cls):
        directory = tempfile.TemporaryDirectory(prefix="pafd-sample-")
        cls.addClassCleanup(directory.cleanup)
        cls.database = directory.name + "/sample"
        subprocess.run([PAF, "build", str(SAMPLE / "addresses.csv"), cls.database], check=True, capture_output=True)
        cls.local_lines = [f"PafDir={cls.database}", f"ARF/AU/={cls.database}"]

    def start_sample(self, **arguments):
        return self.start("--quiet", plugins=LIBRARY, lines=self.local_lines, **arguments)

    def environment(self, name, lines):
        config = pathlib.Path(self.directory, name)
        config.write_text("".join(line + "\n" for line in lines), encoding="utf-8")
        return dict(os.environ, HOME=self.directory, MORVEX_CONFIG_FILE=str(config), LD_LIBRARY_PATH=LIBRARY)

    def remote_environment(self, server):
        return self.environment("client.conf", ["PindleSvr/TcpHost=127.0.0.1", f"PindleSvr/TcpPort={server.port}"])

    def run_paf(self, command, environment):
        result = subprocess.run([PAF, *command], cwd=self.directory, env=environment, capture_output=True, text=True,
                                timeout=PATIENCE, check=False)
        return result.returncode, result.stdout, result.stderr

    def test_answers_are_those_of_local_mode(self):
        server = self.start_sample()
        local, remote = self.environment("local.conf", self.local_lines), self.remote_environment(server)
        for command in COMMANDS:
            with self.subTest(command=command):
                here = self.run_paf(command, local)
                self.assertNotEqual(here[1], "")
                self.assertEqual(self.run_paf(command, remote), here)

    def test_doctor_asks_the_server(self):
        server = self.start_sample()
        remote = self.remote_environment(server)
        status, out, _ = self.run_paf(["doctor"], remote)
        self.assertEqual(status, 0, out)
        self.assertRegex(out, rf"Socket server\n  127.0.0.1:{server.port} +answers\n +opens AU +yes\n")
        self.assertIn("none configured here", out)
        status, out, _ = self.run_paf(["doctor"], dict(remote, PAF_DATABASE="AU.Gone"))
        self.assertEqual(status, 2, out)
        self.assertRegex(out, r"answers\n +opens AU.Gone +NO: .*\(status 64\d\d\)")
        self.assertIn("its own configuration must name the database", out)
        server.end()
        status, out, _ = self.run_paf(["doctor"], remote)
        self.assertEqual(status, 2, out)
        self.assertIn("DOES NOT ANSWER", out)

    def test_what_a_server_cannot_do_is_said(self):
        remote = self.remote_environment(self.start_sample())
        for command in (["search", "parliament", "sydney"], ["concord", "Postcode", "Locality"]):
            with self.subTest(command=command):
                status, out, err = self.run_paf(command, remote)
                self.assertEqual((status, out), (2, ""))
                self.assertIn(f"a socket server cannot answer paf {command[0]}", err)

    def test_texts_are_not_cut(self):
        server = self.start_sample()
        local, remote = self.environment("local.conf", self.local_lines), self.remote_environment(server)
        address = "6 macquarie st sydney"
        fits = address + " " * (230 - len(address))
        self.assertEqual(self.run_paf(["lookup", fits], remote), self.run_paf(["lookup", fits], local))
        for command in ("lookup", "validate", "fix", "format", "hint"):
            with self.subTest(command=command):
                status, out, err = self.run_paf([command, " " * 240 + address], remote)
                self.assertEqual(status, 2)
                self.assertIn("bytes too long for a socket server", out + err)
        rows = pathlib.Path(self.directory, "in.csv")
        rows.write_text(f"address\n{address}\n{'x' * 300}\n{address}\n", encoding="utf-8")
        status, _, err = self.run_paf(["batch", "in.csv", "out.csv", "-t", "1"], remote)
        self.assertEqual((status, err), (1, ""))
        results = [line.split(",")[3] for line in pathlib.Path(self.directory, "out.csv").read_text().splitlines()]
        self.assertEqual(results, ["paf_result", "matched", "refused", "matched"])

    def converse(self, server):
        conversation = subprocess.Popen([PAF, "lookup"], cwd=self.directory, env=self.remote_environment(server),
                                        stdin=subprocess.PIPE, stdout=subprocess.PIPE, text=True, bufsize=1)
        self.addCleanup(self.end_conversation, conversation)
        return conversation

    @staticmethod
    def end_conversation(conversation):
        conversation.stdin.close()
        conversation.wait(PATIENCE)
        conversation.stdout.close()

    @staticmethod
    def ask(conversation):
        conversation.stdin.write("6 macquarie st sydney\n")
        return conversation.stdout.readline()

    def test_an_instance_outlives_a_restart_of_the_server(self):
        answer = "30000001\tPARLIAMENT OF NEW SOUTH WALES, 6 MACQUARIE STREET, SYDNEY NSW 2000\n"
        server = self.start_sample()
        conversation = self.converse(server)
        self.assertEqual(self.ask(conversation), answer)
        for number in (signal.SIGTERM, signal.SIGINT):
            self.assertEqual(server.end(number)[0], 0)
            time.sleep(0.1)
            self.assertIn("(status 4551)", self.ask(conversation))
            server = self.start_sample(listen=f"127.0.0.1:{server.port}", announced=False)
            self.wait_for(lambda: self.is_listening(server), "it listens")
            self.assertEqual(self.ask(conversation), answer)
            self.assertEqual(self.ask(conversation), answer)

    @staticmethod
    def is_listening(server):
        try:
            server.client().close()
            return True
        except ConnectionRefusedError:
            return False

    def test_an_example_asks_again_after_a_kill(self):
        server = self.start_sample()
        program = subprocess.Popen([EXAMPLE], cwd=self.directory, env=self.remote_environment(server),
                                   stdin=subprocess.PIPE, stdout=subprocess.PIPE, text=True, bufsize=1)
        self.addCleanup(self.end_conversation, program)
        answer = "instance 1: 6 macquarie st sydney: 30000001\n"
        self.assertEqual(self.ask(program), answer)
        server.process.kill()
        server.process.wait()
        server.process.stdout.close()
        server = self.start_sample(listen=f"127.0.0.1:{server.port}", announced=False)
        self.wait_for(lambda: self.is_listening(server), "it listens")
        self.assertEqual(self.ask(program), "instance 1, the server is lost: an empty answer\n")
        self.assertIn("(status 4551)", program.stdout.readline())
        self.assertEqual(program.stdout.readline(), answer)
        self.assertEqual(self.ask(program), answer)

    def test_an_instance_outlives_an_idle_time_out(self):
        server = self.start("--idle-timeout", "1", plugins=LIBRARY, lines=self.local_lines)
        conversation = self.converse(server)
        self.assertTrue(self.ask(conversation).startswith("30000001\t"))
        self.wait_for(lambda: "idle for too long" in server.log(), "the connection ends")
        time.sleep(0.2)
        self.assertIn("(status 4551)", self.ask(conversation))
        self.assertTrue(self.ask(conversation).startswith("30000001\t"))


if __name__ == "__main__":
    unittest.main()
