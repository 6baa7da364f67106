"""Every request: what reaches the plug-in, and the reply line."""
import unittest

from pafd_case import Case

X = "x" * 1021

# Request fields behind the name ("ID" stands for the instance's), and the whole reply.
ON_INSTANCE = [
    ("pafGetDpidId", ["ID", "1 High St"], "0\tLookupAddress amas=1 address=<1 High St>"),
    ("pafGetDpidId", ["ID", "1 High St", "Carlton", "VIC"],
     r"0" "\t" r"LookupAddress amas=1 address=<1 High St\nCarlton\nVIC>"),
    ("pafGetDpidId", ["ID", "", "b", ""], "0\tLookupAddress amas=1 address=<\\nb\\n>"),
    ("pafGetDpidId", ["ID"], "0\tLookupAddress amas=1 address=<>"),
    ("pafGetDpidId", ["ID", "status:12"], "12\t"),
    ("pafGetDpidId", ["ID", "status:6405"], "6405\t"),
    ("pafGetDpidId", ["ID", "fill:5000"], "0\t" + X),
    ("pafGetDpidId", ["ID", "fill:1021"], "0\t" + X),
    ("pafGetDpidId", ["ID", "fill:1020"], "0\t" + "x" * 1020),
    ("pafGetDpidId", ["ID", "lines"], "0\tone\ttwo\tthree"),
    ("pafGetDpidId", ["ID", "a\rb"], "0\tLookupAddress amas=1 address=<a\rb>"),
    ("pafGetDpidId", ["ID", "\xe9\xff\x01"], "0\tLookupAddress amas=1 address=<\xe9\xff\x01>"),
    ("pafGetDpidId", ["ID", "cut\0here"], "0\tLookupAddress amas=1 address=<cut>"),
    ("pafGetDpidNonAmasId", ["ID", "1 High St", "Carlton"],
     "0\tLookupAddress amas=0 address=<1 High St\\nCarlton>"),
    ("pafFixLastLineId", ["ID", "calton vic"], "0\tFixLastLine input=<calton vic>"),
    ("pafFixLastLineId", ["ID", "fill:2000"], "0\t" + "x" * 511),
    ("pafFixLastLineId", ["ID", "status:3"], "3\t"),
    ("pafValidatePartialAddressId", ["ID", "1 High St"], "0\tPartial ="),
    ("pafGetAddressId", ["ID", "q"], "0\tGetAddress query=<q>"),
    ("pafGetAddressId", ["ID", "q", "r"], "0\tGetAddress query=<q\\nr>"),
    ("pafGetNextAddressId", ["ID"], "0\tGetNextAddress"),
    ("pafGetBorderPostcodesId", ["ID", 3644], "6408\t"),
    ("pafGetPopupHintId", ["ID", "a", "b", 7], "0\tGetPopupHint 1=<a> 2=<b> number=7"),
    ("pafGetPopupHintId", ["ID", "a", "b", "c", -7], "0\tGetPopupHint 1=<a> 2=<b\\nc> number=-7"),
    ("pafGetPopupHintId", ["ID", "a", "b"], "0\tGetPopupHint 1=<a> 2=<b> number=0"),
    ("pafGetPopupHintId", ["ID", "a", "b", "99999999999"], "0\tGetPopupHint 1=<a> 2=<b> number=2147483647"),
    ("pafGetNextPopupHintId", ["ID"], "0\tGetNextPopupHint"),
    ("pafDpidToAddressId", ["ID", 30000001], "0\tGetAddress query=<" + "\\t" * 7 + "30000001>"),
    ("pafGetAddressHintId", ["ID", "a", "b", "c"], "0\tGetAddressHint 1=<a> 2=<b\\nc>"),
    ("pafGetNextAddressHintId", ["ID"], "0\tGetNextAddressHint"),
    ("pafGetFindStatusId", ["ID"], "77"),
    ("pafGetParsedInputId", ["ID"], "0\tGetParsedInput"),
    ("pafGetPropertiesId", ["ID", "Anything"], "0\tGetProperties name=<Anything>"),
    ("pafGetPropertiesId", ["ID", "TestProperty"], "0\tTest Property Value"),
    ("pafGetPropertiesId", ["ID", "OpenARF"], "0\tAU"),
    ("pafGetPropertiesId", ["ID", "status:9"], "9\t"),
    ("pafSetPropertiesId", ["ID", "Name", "value"], "0"),
    ("pafSetPropertiesId", ["ID", "Name", "status:22"], "22"),
    ("pafValidateFullAddressId", ["ID", 5, "1 High St", "Carlton"],
     "0\tValidateFullAddress flags=5 input=<1 High St\\nCarlton>"),
    ("pafValidateFullAddressId", ["ID", 5, "status:8"], "8\tV"),
    ("pafFormatAddressId", ["ID", 3000000000, "fill:3"], "0\txxx"),
    ("pafSetGeographicalCodesId", ["ID", "NSW"], "0"),
    ("pafSetGeographicalCodesId", ["ID", "status:5"], "5"),
    ("pafBeginPolygonSearch", ["ID", "1", "2", "status:6"], "6"),
    ("pafGetNextAddressInPolygon", ["ID"], "0\t"),
    ("pafGetSearchStatistics", ["ID", "a", "b", "c", "d", "e"],
     "0\tGetSearchStatistics 1=<a> 2=<b> 3=<c> 4=<d\\ne>"),
    ("pafGetErrorDescription", [6405], "0\tInvalid Id passed to function"),
    ("pafGetErrorDescription", [4711], "0\t"),
    ("pafClosePafId", ["ID"], "0"),
]

WITHOUT_INSTANCE = [
    ("pafReadLocalityRecord", [1], "6408\t0\t0\t"),
    ("pafReadGroupRecord", [1], "6408\t0\t0\t"),
    ("pafReadPointRecord", [1], "6408\t"),
    ("pafReadSynonymRecord", [1], "6408\t0\t"),
    ("pafReadBorderRecord", [1], "6408"),
    ("pafGetLocalityRecordCount", [], "0"),
    ("pafGetGroupRecordCount", [], "0"),
    ("pafGetPointRecordCount", [], "0"),
    ("pafGetSynonymRecordCount", [], "0"),
    ("pafBuildBarcode_", ["59", "30000001", "abc", 1], "0\tOther =<Barcode2:> =<3000000159Nabc>"),
    ("pafBuildBarcode_", ["59", "30000001", "abc", 0], "0\tOther =<Barcode2:> =<3000000159Cabc>"),
    ("pafCustInfoBarcode", ["30000001"], "0\tOther =<Barcode:> =<30000001>"),
    ("pafCustInfoBarcode", ["3000000152abc"], "0\tOther =<Barcode3:> =<3000000159abc>"),
    ("pafCustInfoBarcode", ["3000000111abc"], "6415\t"),
    ("pafGenerateBarcode", ["3000000159Nabc"], "0\tOther =<Barcode2:> =<3000000159Nabc>"),
    ("pafGenerateBarcode", ["fill:5000"], "0\t" + X),
    ("pafDpidToBarcode", ["30000001"], "0\tOther =<Barcode:> =<30000001>"),
    ("pafDpidToBarcode", ["3000000x"], "6415\t"),
    ("pafGetPropertiesId", [0, "ArfLibVersion"], "0\t5.10.246.2"),
    ("pafGetPropertiesId", [0, "ClientCount"], "0\t0"),
]

# Names that are exported, and some that are not; none may be requested.
NOT_REQUESTS = [
    "", " ", "pafforcecloseall", "pafForceCloseAll", "pafUnloadPlugins", "pafUpdateArfs", "pafCallPafFromBrimo",
    "pafLookupAddress", "pafOpenPaf", "pafOpenPafMem", "pafClosePaf", "pafSetProperties", "pafGetProperties",
    "pafOpenArfId2", "pafOpenPafId2", "pafGetDpid", "pafBeginGifConcordance", "pafGetNextGifConcordance",
    "pafBeginAddressSearch", "pafGetNextAddressSearch", "pafReadLocalityRecordId", "pafGetLocalityRecordCountId",
    "PAFGETDPIDID", "pafGetDpidid", "pafGetDpidId ", " pafGetDpidId", "pafGetDpidI", "pafGetDpidIdd",
    "pafGetDpidId\0", "GET / HTTP/1.1", "\xff\xfe",
]


class RequestTest(Case):
    def test_requests_on_an_instance(self):
        server = self.start()
        for name, fields, reply in ON_INSTANCE:
            with self.subTest(name=name, fields=fields), server.client() as client:
                number = client.open()
                self.assertEqual(client.ask(name, *[number if f == "ID" else f for f in fields]), reply)

    def test_requests_without_an_instance(self):
        server = self.start()
        with server.client() as client:
            for name, fields, reply in WITHOUT_INSTANCE:
                with self.subTest(name=name, fields=fields):
                    self.assertEqual(client.ask(name, *fields), reply)

    def test_requests_of_an_id_that_is_not_open(self):
        statuses = {"pafGetFindStatusId": "-1", "pafGetBorderPostcodesId": "6408\t", "pafClosePafId": "6405",
                    "pafSetPropertiesId": "6405", "pafSetGeographicalCodesId": "6405",
                    "pafBeginPolygonSearch": "6405"}
        server = self.start()
        names = {name for name, fields, _ in ON_INSTANCE if "ID" in fields} - {"pafGetPropertiesId"}
        with server.client() as other, server.client() as client:
            foreign = other.open()
            for name in sorted(names):
                for number in (0, -1, 5, foreign, foreign + 2**32, 10**30, -10**30, "", "x", " "):
                    with self.subTest(name=name, number=number):
                        self.assertEqual(client.ask(name, number), statuses.get(name, "6405\t"))
            self.assertEqual(other.ask("pafGetFindStatusId", foreign), "77")

    def test_opening(self):
        server = self.start()
        with server.client() as client:
            for line in ("pafOpenPafId", "pafOpenPafMemId\t1", "pafOpenArfId\t0\tAU", "pafOpenArfId\t2\taus",
                         "pafOpenArfId\t0\t", "pafOpenArfId"):
                with self.subTest(line=line):
                    status, number = client.ask(line).split("\t")
                    self.assertEqual(status, "0")
                    self.assertEqual(client.ask("pafGetFindStatusId", number), "77")
            self.assertEqual(client.ask("pafOpenArfId", 0, "Nowhere"), "6499\t0")
            self.assertEqual(client.ask("pafOpenArfId", 0, "zz.Nowhere"), "6497\t0")

    def test_what_has_no_answer_reaches_the_plug_in(self):
        rows = [(("pafSetPropertiesId", "ID", "Name", "a", "b"), "Name=<a\\nb>"),
                (("pafSetGeographicalCodesId", "ID", "a", "b"), "codes=<a\\nb>"),
                (("pafBeginPolygonSearch", "ID", "-35.5", "149", "a", "b"), "polygon=<a\\nb><-35.5,149>"),
                (("pafBeginPolygonSearch", "ID", "", "", "a"), "polygon=<a><>")]
        server = self.start()
        with server.client() as client:
            number = client.open()
            for fields, seen in rows:
                with self.subTest(fields=fields):
                    self.assertEqual(client.ask(*[number if f == "ID" else f for f in fields]), "0")
                    self.assertEqual(client.ask("pafGetNextAddressInPolygon", number), "0\t" + seen)

    def test_records_of_another_delimiter_are_lines(self):
        server = self.start()
        with server.client() as client:
            number = client.open()
            self.assertEqual(client.ask("pafSetPropertiesId", number, "Delimiter", "|"), "0")
            self.assertEqual(client.ask("pafGetAddressId", number, "a", "", "b"), "0\tGetAddress query=<a\\n\\nb>")

    def test_descriptions_come_from_the_plug_in_that_failed(self):
        server = self.start()
        with server.client() as client, server.client() as other:
            number = client.open()
            self.assertEqual(client.ask("pafGetDpidId", number, "status:12"), "12\t")
            self.assertEqual(other.ask("pafGetErrorDescription", 12), "0\t")
            self.assertEqual(client.ask("pafGetErrorDescription", 12), "0\techo of status 12")

    def test_names_that_are_no_requests(self):
        server = self.start()
        with server.client() as client:
            number = client.open()
            for name in NOT_REQUESTS:
                for fields in ((), (number,), (number, "x")):
                    with self.subTest(name=name, fields=fields):
                        self.assertEqual(client.ask(name, *fields), "4500")
            self.assertEqual(client.ask("pafGetFindStatusId", number), "77")

    def test_default_instances_belong_to_connections(self):
        server = self.start()
        with server.client() as one, server.client() as other:
            first = one.ask("pafPostcodeToBsp", "2000")
            second = other.ask("pafPostcodeToNpsp", "2000")
            self.assertRegex(first, r"^0\tBSP of \d+$")
            self.assertRegex(second, r"^0\tNPSP of \d+$")
            self.assertNotEqual(first.split()[-1], second.split()[-1])
            self.assertEqual(one.ask("pafPostcodeToBsp", "2000"), first)
            formatted = one.ask("pafFormatAddress", 4, "a", "b")
            self.assertEqual(formatted, f"0\tFormatAddress by={first.split()[-1]} option=4 input=<a\\nb>")
        self.wait_for(lambda: server.client_count() == 0, "the default instances are closed")

    def test_formatting_opens_the_default_instance(self):
        server = self.start()
        with server.client() as client:
            self.assertRegex(client.ask("pafFormatAddressS", "a", "b"),
                             r"^0\tFormatAddress by=\d+ option=0 input=<a\\nb>$")
            self.assertEqual(client.ask("pafFormatAddressS", "fill:300"), "0\t" + "x" * 255)
            self.assertEqual(client.ask("pafFormatAddressS", "status:4"), "0\t")
            self.assertEqual(client.ask("pafFormatAddress", 0, "fill:300"), "0\t" + "x" * 249)
            self.assertEqual(client.ask("pafFormatAddress", 0, "status:4"), "4\t")

    def test_without_a_default_database(self):
        server = self.start(lines=["ARF/AU/=/echo"])
        with server.client() as client:
            self.assertEqual(client.ask("pafFormatAddress", 0, "a"), "6405\t")
            self.assertEqual(client.ask("pafFormatAddressS", "a"), "0\t")
            self.assertEqual(client.ask("pafPostcodeToBsp", "2000"), "0\t")
            self.assertEqual(client.ask("pafOpenPafId"), "6499\t0")

    def test_the_last_reply_fits_the_clients_buffers(self):
        server = self.start("--max-line", "200000")
        with server.client() as client:
            number = client.open()
            for size in (255, 1000, 1022, 1023, 4096, 70000):
                text = "y" * size
                reply = client.ask("pafGetDpidId", number, text)
                self.assertLessEqual(len(reply), 1023)
                self.assertTrue(("0\tLookupAddress amas=1 address=<" + text + ">").startswith(reply))


class TrustTest(Case):
    PATHS = ["/echo", "./echo", "..", "echo/", "au./echo", "C:echo", "C:\\echo", "\\echo", "DLL:qxarfau;/echo",
             "dll:qxarfau", "au.C:x", "AU/../x"]

    def test_clients_cannot_name_files_and_libraries(self):
        server = self.start()
        with server.client() as client:
            number = client.open()
            for path in self.PATHS:
                with self.subTest(path=path):
                    if path != "..":
                        self.assertEqual(client.ask("pafSetPropertiesId", number, "openarf", path), "6499")
                        self.assertEqual(client.ask("pafGetPropertiesId", number, "arfversion:" + path), "6499\t")
                        self.assertEqual(client.ask("pafGetPropertiesId", 0, "ArfStatus:" + path), "6499\t")
                    self.assertRegex(client.ask("pafOpenArfId", 0, path), "^(6499|6497)\t0$")
            self.assertEqual(client.ask("pafGetPropertiesId", number, "OpenARF"), "0\tAU")

    def test_clients_cannot_switch_remote_mode(self):
        server = self.start()
        with server.client() as client:
            number = client.open()
            for name in ("UseSockets", "usesockets", "TcpHost", "TCPPORT"):
                for instance in (number, 0, "x"):
                    self.assertEqual(client.ask("pafSetPropertiesId", instance, name, "True"), "6408")
            self.assertEqual(client.ask("pafGetPropertiesId", 0, "UseSockets"), "0\tFalse")
            self.assertEqual(client.ask("pafSetPropertiesId", number, "OpenARF", "AU"), "0")

    def test_trusted_clients_may(self):
        server = self.start("--trusted")
        with server.client() as client:
            status, number = client.ask("pafOpenArfId", 0, "au./elsewhere").split("\t")
            self.assertEqual(status, "0")
            self.assertEqual(client.ask("pafSetPropertiesId", number, "OpenARF", "DLL:qxarfau;/there"), "0")
            self.assertEqual(client.ask("pafGetPropertiesId", number, "OpenARF"), "0\tDLL:qxarfau;/there")
            self.assertEqual(client.ask("pafSetPropertiesId", 0, "TcpPort", "7071"), "0")
            self.assertEqual(client.ask("pafGetPropertiesId", 0, "TcpPort"), "0\t7071")


if __name__ == "__main__":
    unittest.main()
