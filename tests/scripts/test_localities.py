"""Tests of reading the list of localities that addresses are generated in."""

import unittest

from support import FolderTest

from addressgen import localities


class LocalityFileTest(FolderTest):
    """Reading a list of localities."""

    def load(self, text, encoding="utf-8"):
        return localities.load(self.write("list.csv", text, encoding))

    def test_columns_in_any_order_and_case(self):
        found = self.load('Longitude, STATE,"locality",extra,PostCode,latitude,population\n'
                          '147.3,tas," Hobart ",x,7000,-42.9,55\n\n"",nt,Darwin,,800,,\n', "utf-8-sig")
        self.assertEqual([("HOBART", "TAS", "7000"), ("DARWIN", "NT", "0800")], [item.key for item in found])
        self.assertEqual([(-42.9, 147.3), None], [item.position for item in found])
        self.assertEqual(55, found[0].population)

    def test_each_locality_once(self):
        found = self.load("postcode,locality,state\n7000,Hobart,TAS\n7000,HOBART,tas\n7001,HOBART,TAS\n")
        self.assertEqual(["7000", "7001"], [item.postcode for item in found])

    def test_estimated_populations(self):
        text = "postcode,locality,state\n3000,ALONE,VIC\n1001,BOXES,NSW\n" + "".join(
            f"3999,PLACE {i},VIC\n" for i in range(40))
        found = self.load(text)
        self.assertEqual([item.population for item in found], [item.population for item in self.load(text)])
        self.assertGreater(found[0].population, 3 * max(item.population for item in found[2:]))
        self.assertGreaterEqual(min(item.population for item in found), 30)
        self.assertEqual(localities.BOX_ONLY, found[1].profile)

    def test_bad_lists(self):
        head = "postcode,locality,state,latitude,longitude,population\n"
        for text, finding in (
                ("", "list.csv: the header row lacks postcode, locality, state"),
                ("postcode;locality;state\n", "list.csv: the header row lacks postcode, locality, state"),
                ("postcode,state\n", "list.csv: the header row lacks locality"),
                (head, "list.csv: holds no localities"),
                (head + "7000,HOBART\n", "list.csv:2: 2 fields where the header row has 6"),
                (head + "7000,,TAS,,,\n", "list.csv:2: locality '' is empty or holds control characters"),
                (head + '7000,"HO\nBART",TAS,,,\n', "list.csv:3: locality 'HO\nBART' is empty or holds control"),
                (head + "7000,HOBART,TASMANIA,,,\n", "list.csv:2: state 'TASMANIA' is none of ACT NSW NT QLD SA TAS"),
                (head + "7000,HOBART,TAS,,,\n70OO,HOBART,TAS,,,\n", "list.csv:3: postcode '70OO' is not four digits"),
                (head + "70000,HOBART,TAS,,,\n", "list.csv:2: postcode '70000' is not four digits"),
                (head + "7000,HOBART,TAS,-42.9,,\n", "list.csv:2: latitude '-42.9', longitude '' are not a position"),
                (head + "7000,HOBART,TAS,x,147,\n", "list.csv:2: latitude 'x', longitude '147' are not a position"),
                (head + "7000,HOBART,TAS,-90,147,\n", "list.csv:2: latitude '-90', longitude '147' are not a position"),
                (head + "7000,HOBART,TAS,nan,147,\n", "list.csv:2: latitude 'nan', longitude '147' are not a position"),
                (head + "7000,HOBART,TAS,,,-5\n", "list.csv:2: population '-5' is not a whole number"),
                (head + '7000,"HOBART,TAS,,,\n', "list.csv:2: unexpected end of data"),
        ):
            with self.subTest(finding):
                with self.assertRaises(localities.LocalityError) as caught:
                    self.load(text)
                self.assertIn(finding, str(caught.exception))

    def test_not_utf8(self):
        with self.assertRaisesRegex(localities.LocalityError, "list.csv: not UTF-8 text"):
            self.load("postcode,locality,state\n7000,Caf\u00e9,TAS\n", "latin-1")


if __name__ == "__main__":
    unittest.main()
