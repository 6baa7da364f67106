"""The unit file in packaging: systemd understands all of it."""
import pathlib
import re
import shutil
import subprocess
import unittest

from pafd_case import PAFD, Case

UNIT = pathlib.Path(__file__).parents[2] / "packaging" / "pafd.service"
ANALYZE = shutil.which("systemd-analyze")
PATIENCE = 60
MOST_EXPOSED = 2.0  # of 10; what systemd-analyze calls OK ends there


@unittest.skipUnless(ANALYZE, "systemd-analyze is not installed")
class ServiceTest(Case):
    def install(self, text):
        """The unit as a file of its own, with a program that is on this machine."""
        unit = pathlib.Path(self.directory, "pafd.service")
        unit.write_text(text.replace("/usr/bin/pafd", PAFD), encoding="utf-8")
        return unit

    def analyze(self, *arguments):
        return subprocess.run([ANALYZE, *map(str, arguments)], capture_output=True, text=True, timeout=PATIENCE,
                              check=False)

    def complaints(self, text):
        """What systemd says about the unit file; man pages need not be installed."""
        result = self.analyze("verify", "--man=no", "--recursive-errors=no", self.install(text))
        lines = [line for line in result.stderr.splitlines() if "pafd" in line]
        return lines or ([] if result.returncode == 0 else [result.stderr])

    def test_systemd_understands_it(self):
        self.assertEqual(self.complaints(UNIT.read_text(encoding="utf-8")), [])

    def test_mistakes_would_be_seen(self):
        text = UNIT.read_text(encoding="utf-8")
        for right, wrong in (("NoNewPrivileges=yes", "NoNewPrivilege=yes"),
                             ("ProtectSystem=strict", "ProtectSystem=very"),
                             ("ExecStart=/usr/bin/pafd", "ExecStart=/no/such/pafd")):
            with self.subTest(wrong=wrong):
                self.assertIn(right, text)
                self.assertNotEqual(self.complaints(text.replace(right, wrong)), [])

    def test_it_is_confined(self):
        unit = self.install(UNIT.read_text(encoding="utf-8"))
        result = self.analyze("security", "--offline=true", "--no-pager", unit)
        found = re.search(r"Overall exposure level for \S+: ([0-9.]+)", result.stdout)
        self.assertTrue(found, result.stdout + result.stderr)
        self.assertLess(float(found[1]), MOST_EXPOSED)


if __name__ == "__main__":
    unittest.main()
