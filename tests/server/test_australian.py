"""The Australian plug-in and a real database behind the server."""
import os
import pathlib
import subprocess
import tempfile
import threading
import unittest

from pafd_case import Case

PAF = os.environ["PAFD_TEST_PAF"]
LIBRARY = os.environ["PAFD_TEST_LIBRARY"]
SAMPLE = pathlib.Path(os.environ["PAFD_TEST_SAMPLE"])
ADDRESSES = {
    "6 Macquarie Street, Sydney NSW 2000": "30000001",
    "6 macquarie st sydney": "30000001",
    "Unit 3, 12 Watson Tce Mount Gambier": "30000409",
    "General Post Office\t1 Martin Place\tSYDNEY  NSW  2000": "30000012",
}


class AustralianTest(Case):
    @classmethod
    def setUpClass(cls):
        directory = tempfile.TemporaryDirectory(prefix="pafd-sample-")
        cls.addClassCleanup(directory.cleanup)
        cls.database = directory.name + "/sample"
        subprocess.run([PAF, "build", str(SAMPLE / "addresses.csv"), cls.database, "--sort-plan",
                        str(SAMPLE / "sortplan.csv")], check=True, capture_output=True)

    def start_sample(self, *options):
        return self.start(*options, plugins=LIBRARY, lines=[f"PafDir={self.database}", f"ARF/AU/={self.database}"])

    def test_addresses(self):
        server = self.start_sample()
        with server.client() as client:
            for opening in ("pafOpenPafId", "pafOpenArfId\t0\tAU"):
                number = client.ask(opening).split("\t")[1]
                for address, dpid in ADDRESSES.items():
                    with self.subTest(address=address):
                        status, answer = client.ask("pafGetDpidNonAmasId", number, address).split("\t")
                        if status == "0":
                            self.assertEqual(answer, dpid)
                        else:
                            self.fail(client.ask("pafGetErrorDescription", status))

    def test_an_answer_and_the_reason_for_none(self):
        server = self.start_sample()
        with server.client() as client:
            number = client.open()
            record = client.ask("pafDpidToAddressId", number, 30000001).split("\t")
            self.assertEqual((record[0], record[4:7]), ("0", ["SYDNEY", "NSW", "2000"]))
            self.assertEqual(client.ask("pafDpidToAddressId", number, 99999999), "10\t")
            self.assertIn("No address has the identifier", client.ask("pafGetErrorDescription", 10))
            self.assertEqual(client.ask("pafGetErrorDescription", 10), "0\t")
            self.assertEqual(client.ask("pafFixLastLineId", number, "sidney 2000"), "0\tSYDNEY NSW 2000")

    def test_records_have_tabs(self):
        """A record query's fields are separated by TABs, which look like line feeds on the way."""
        server = self.start_sample()
        with server.client() as client:
            number = client.open()
            fields = client.ask("pafGetAddressId", number, "", "", "", "ALICE SPRINGS", "NT", "").split("\t")
            self.assertEqual((fields[0], fields[4]), ("0", "ALICE SPRINGS"))
            by_number = client.ask("pafGetAddressId", number, *[""] * 7, "30000001").split("\t")
            self.assertEqual((by_number[0], by_number[8]), ("0", "30000001"))
            following = client.ask("pafGetNextAddressId", number).split("\t")
            self.assertEqual(following[0], "0")

    def test_a_tab_as_delimiter(self):
        """It arrives as one field too many, like a line feed, which is no delimiter."""
        server = self.start_sample()
        with server.client() as client:
            number = client.open()
            for name in ("Delimiter", "DELIMITER"):
                self.assertEqual(client.ask("pafSetPropertiesId", number, "Delimiter", "|"), "0")
                self.assertEqual(client.ask("pafSetPropertiesId", number, name, "\t"), "0")
                self.assertEqual(client.ask("pafGetPropertiesId", number, "Delimiter"), "0\t\t")
            self.assertEqual(client.ask("pafSetPropertiesId", number, "Delimiter", "|"), "0")
            # Refused as without a server.
            for value in ("", "\t\t", "a", "\t|"):
                with self.subTest(value=value):
                    self.assertEqual(client.ask("pafSetPropertiesId", number, "Delimiter", value), "22")
                    self.assertEqual(client.ask("pafGetPropertiesId", number, "Delimiter"), "0\t|")
            self.assertEqual(client.ask("pafSetPropertiesId", number, "OutputFields", "\t"), "22")

    def test_barcodes_and_sort_plans(self):
        server = self.start_sample()
        with server.client() as client:
            self.assertRegex(client.ask("pafDpidToBarcode", "30000001"), "^0\t[0-3]{37}$")
            self.assertRegex(client.ask("pafBuildBarcode_", "59", "30000001", "AB1", 0), "^0\t[0-3]{52}$")
            self.assertRegex(client.ask("pafPostcodeToBsp", "2000"), "^0\t.+$")

    def test_eight_connections_at_once(self):
        server = self.start_sample("--quiet")
        failures = []

        def ask():
            try:
                with server.client() as client:
                    for _ in range(20):
                        number = client.open()
                        for address, dpid in ADDRESSES.items():
                            reply = client.ask("pafGetDpidNonAmasId", number, address)
                            if reply != "0\t" + dpid:
                                failures.append((address, reply))
                        client.ask("pafClosePafId", number)
            except Exception as error:  # a thread's failure must reach the test
                failures.append(error)

        threads = [threading.Thread(target=ask) for _ in range(8)]
        for thread in threads:
            thread.start()
        for thread in threads:
            thread.join()
        self.assertEqual(failures, [])
        self.wait_for(lambda: server.client_count() == 0, "all instances are closed")


if __name__ == "__main__":
    unittest.main()
