/** What the builder takes from a row and what it refuses: one row of a table each. */
#include <gtest/gtest.h>

#include <map>
#include <string>

#include "unit/arf/build/test_database.h"

namespace arf_test {
namespace {

using Fields = std::map<std::string, std::string>;

const Fields kGoodRow = {{"dpid", "30000001"},     {"locality", "Alpha"},
                         {"state", "NSW"},         {"postcode", "2000"},
                         {"street_name", "First"}, {"street_type", "Street"},
                         {"number_first", "1"},    {"number_first_suffix", ""},
                         {"number_last", ""},      {"number_last_suffix", ""},
                         {"street_suffix", ""},    {"postal_type", ""},
                         {"postal_number", ""},    {"unit_type", ""},
                         {"unit_number", ""},      {"level_type", ""},
                         {"level_number", ""},     {"lot", ""},
                         {"building", ""},         {"latitude", ""},
                         {"longitude", ""}};

/** A header and one row: the good one with some fields changed. */
std::string CsvWith(const Fields& changes)
{
  std::string header, row;
  for (const auto& [name, good] : kGoodRow) {
    const auto changed = changes.find(name);
    header += name + ",";
    row += '"' + (changed == changes.end() ? good : changed->second) + "\",";
  }
  header.back() = row.back() = '\n';
  return header + row;
}

struct Refused
{
  Fields changes;
  const char* fault;
};

const Fields kBox = {{"street_name", ""}, {"street_type", ""}, {"number_first", ""}, {"postal_type", "PO Box"}};

Fields Box(const std::string& number)
{
  Fields fields = kBox;
  fields["postal_number"] = number;
  return fields;
}

const Refused kRefused[] = {
    {{{"dpid", ""}}, "dpid: is empty"},
    {{{"dpid", "3000000"}}, "dpid: \"3000000\" is not a number from 10000000 to 99999999"},
    {{{"dpid", "300000001"}}, "dpid: \"300000001\" is not a number from 10000000 to 99999999"},
    {{{"dpid", "09999999"}}, "dpid: \"09999999\" is not a number from 10000000 to 99999999"},
    {{{"dpid", "3000000x"}}, "dpid: \"3000000x\" is not a number from 10000000 to 99999999"},
    {{{"dpid", "-3000000"}}, "dpid: \"-3000000\" is not a number from 10000000 to 99999999"},
    {{{"locality", ""}}, "locality: is empty"},
    {{{"locality", " \t"}}, "locality: is empty"},
    {{{"locality", "?!"}}, "locality: \"?!\" has neither a letter nor a digit"},
    {{{"locality", std::string(256, 'x')}}, "locality: is longer than 255 bytes"},
    {{{"state", ""}}, "state: is empty"},
    {{{"state", "NZ"}}, "state: \"NZ\" is not a state or territory"},
    {{{"postcode", ""}}, "postcode: is empty"},
    {{{"postcode", "800"}}, "postcode: \"800\" is not four digits (a leading zero may be lost)"},
    {{{"postcode", "20000"}}, "postcode: \"20000\" is not four digits"},
    {{{"postcode", "200A"}}, "postcode: \"200A\" is not four digits"},
    {{{"street_name", "..."}}, "street_name: \"...\" has neither a letter nor a digit"},
    {{{"street_name", ""}}, "street_type: is given without street_name"},
    {{{"street_name", ""}, {"street_type", ""}}, "number_first: is given without street_name"},
    {{{"street_name", ""}, {"street_type", ""}, {"number_first", ""}, {"street_suffix", "N"}},
     "street_suffix: is given without street_name"},
    {{{"street_name", ""}, {"street_type", ""}, {"number_first", ""}, {"number_first_suffix", "A"}},
     "number_first_suffix: is given without street_name"},
    {{{"street_name", ""}, {"street_type", ""}, {"number_first", ""}},
     "street_name: is empty, and so are postal_type, lot and building"},
    {{{"street_name", ""}, {"street_type", ""}, {"number_first", ""}, {"number_last", "4"}, {"lot", "1"}},
     "number_last: is given without number_first"},
    {{{"postal_type", "PO Box"}, {"postal_number", "1"}}, "street_name: is given beside postal_type"},
    {{{"street_name", ""}, {"street_type", ""}, {"postal_type", "PO BOX"}},
     "number_first: is given beside postal_type"},
    {{{"postal_number", "12"}}, "postal_number: is given without postal_type"},
    {Box(""), "postal_number: is empty"},
    {Box("ABC"), "postal_number: \"ABC\" is not the number of a postal delivery"},
    {Box("0"), "postal_number: \"0\" is not the number of a postal delivery"},
    {Box("1.5"), "postal_number: \"1.5\" is not the number of a postal delivery"},
    {Box("1234567890"), "postal_number: \"1234567890\" is not the number of a postal delivery"},
    {Box("ABCDE1"), "postal_number: \"ABCDE1\" is not the number of a postal delivery"},
    {{{"number_first", "one"}}, "number_first: \"ONE\" is not a number"},
    {{{"number_first", "-1"}}, "number_first: \"-1\" is not a number"},
    {{{"number_first", "6-8"}}, "number_first: \"6-8\" is not a number"},
    {{{"number_first", "1.5"}}, "number_first: \"1.5\" is not a number"},
    {{{"number_first", "1234567890"}}, "number_first: \"1234567890\" is not a number"},
    {{{"number_first", "1ABCDE"}}, "number_first: \"1ABCDE\" is not a number"},
    {{{"number_first", "1A"}, {"number_first_suffix", "B"}},
     "number_first: \"1A\" has a suffix of its own beside number_first_suffix"},
    {{{"number_first_suffix", "ABCDE"}}, "number_first_suffix: \"ABCDE\" is not a number's suffix"},
    {{{"number_first_suffix", "-"}}, "number_first_suffix: \"-\" is not a number's suffix"},
    {{{"number_first", ""}, {"number_first_suffix", "A"}}, "number_first_suffix: is given without a number"},
    {{{"number_first", "0"}, {"number_first_suffix", "A"}}, "number_first_suffix: is given without a number"},
    {{{"number_last", "x"}}, "number_last: \"X\" is not a number"},
    {{{"number_last_suffix", "B"}}, "number_last_suffix: is given without a number"},
    {{{"number_first", "8"}, {"number_last", "6"}}, "number_last: \"6\" is less than number_first"},
    {{{"number_first", ""}, {"number_last", "6"}}, "number_last: is given without number_first"},
    {{{"unit_number", std::string(300, '1')}}, "unit_number: is longer than 255 bytes"},
    {{{"unit_type", std::string(300, '1')}}, "unit_type: is longer than 255 bytes"},
    {{{"level_type", std::string(300, '1')}}, "level_type: is longer than 255 bytes"},
    {{{"level_number", std::string(300, '1')}}, "level_number: is longer than 255 bytes"},
    {{{"lot", std::string(300, '1')}}, "lot: is longer than 255 bytes"},
    {{{"building", std::string(300, '1')}}, "building: is longer than 255 bytes"},
    {{{"street_type", std::string(300, '1')}}, "street_type: is longer than 255 bytes"},
    {{{"street_suffix", std::string(300, '1')}}, "street_suffix: is longer than 255 bytes"},
    {{{"latitude", "-33.8"}}, "longitude: is empty, although latitude is not"},
    {{{"longitude", "151.2"}}, "latitude: is empty, although longitude is not"},
    {{{"latitude", "south"}, {"longitude", "151.2"}}, "latitude: \"south\" is not a number of degrees"},
    {{{"latitude", "nan"}, {"longitude", "151.2"}}, "latitude: \"nan\" is not a number of degrees"},
    {{{"latitude", "inf"}, {"longitude", "151.2"}}, "latitude: \"inf\" is not a number of degrees"},
    {{{"latitude", "1e999"}, {"longitude", "151.2"}}, "latitude: \"1e999\" is not a number of degrees"},
    {{{"latitude", "-33.8S"}, {"longitude", "151.2"}}, "latitude: \"-33.8S\" is not a number of degrees"},
    {{{"latitude", "-90.0001"}, {"longitude", "151.2"}}, "latitude: \"-90.0001\" is out of range"},
    {{{"latitude", "90.0001"}, {"longitude", "151.2"}}, "latitude: \"90.0001\" is out of range"},
    {{{"latitude", "-33"}, {"longitude", "180.5"}}, "longitude: \"180.5\" is out of range"},
    {{{"latitude", "-33"}, {"longitude", "-180.5"}}, "longitude: \"-180.5\" is out of range"},
    {{{"state", std::string(39, 'x') + "\u00E9\u00E9\u00E9"}},
     "state: \"XXXXXXXXXXXXXXXXXXXXXXXXXXXXXXXXXXXXXXX\u2026\" is not a state or territory"},
};

TEST(Rows, AreRefusedWithAReason)
{
  for (const Refused& row : kRefused) {
    const test_support::TempDir dir;
    const arf::BuildReport report = BuildFrom(dir, CsvWith(row.changes));
    EXPECT_EQ(report.outcome, arf::BuildOutcome::Failed) << row.fault;
    ASSERT_EQ(report.errors.size(), 1U) << row.fault;
    EXPECT_EQ(report.errorCount, 1U);
    EXPECT_EQ(report.errors[0], dir.Path("in.csv") + ":2: " + row.fault);
    EXPECT_FALSE(std::filesystem::exists(dir.Path("db")));
  }
}

/** The address that a row becomes, in one line: unit, level, lot, building; number; street; locality; place. */
std::string Describe(const arf::Database& database, std::uint32_t ordinal)
{
  const arf::Point p = database.PointAt(ordinal);
  const arf::Street street = database.StreetAt(p.street);
  const arf::Locality locality = database.LocalityAt(street.locality);
  std::string text;
  for (const std::string_view part : {p.unitType, p.unitNumber, p.levelType, p.levelNumber, p.lot, p.building}) {
    text.append(part).append("/");
  }
  const auto number = [](std::uint32_t value) { return value == 0 ? std::string() : std::to_string(value); };
  text.append("; ").append(p.numberPrefix).append(number(p.numberFirst)).append(p.numberFirstSuffix);
  text.append("-").append(number(p.numberLast)).append(p.numberLastSuffix).append("; ");
  text.append(street.isPostal ? "POSTAL " : "").append(street.name).append("/").append(street.type);
  text.append("/").append(street.suffix).append("; ").append(locality.name).append(" ").append(locality.state);
  text.append(" ").append(locality.postcode);
  if (p.latitude == arf::kNoCoordinate) return text;
  return text.append("; ").append(std::to_string(p.latitude)).append(" ").append(std::to_string(p.longitude));
}

struct Taken
{
  Fields changes;
  const char* address;
};

const Taken kTaken[] = {
    {{}, "//////; 1-; FIRST/STREET/; ALPHA NSW 2000"},
    {{{"dpid", " 99999999 "}}, "//////; 1-; FIRST/STREET/; ALPHA NSW 2000"},
    {{{"dpid", "10000000"}}, "//////; 1-; FIRST/STREET/; ALPHA NSW 2000"},
    {{{"locality", " st.  lucia\n"}}, "//////; 1-; FIRST/STREET/; ST. LUCIA NSW 2000"},
    {{{"state", "new south wales"}}, "//////; 1-; FIRST/STREET/; ALPHA NSW 2000"},
    {{{"state", "N.S.W."}}, "//////; 1-; FIRST/STREET/; ALPHA NSW 2000"},
    {{{"state", "vic"}, {"postcode", " 0800 "}}, "//////; 1-; FIRST/STREET/; ALPHA VIC 0800"},
    {{{"street_name", "O'Connor"}, {"street_type", "ave."}}, "//////; 1-; O'CONNOR/AVENUE/; ALPHA NSW 2000"},
    {{{"street_name", "Caf\xE9"}, {"street_type", "Cul-de-Sac"}}, "//////; 1-; CAF\u00C9/CUL-DE-SAC/; ALPHA NSW 2000"},
    {{{"street_type", "Unheard of"}}, "//////; 1-; FIRST/UNHEARD OF/; ALPHA NSW 2000"},
    {{{"street_name", "The Esplanade"}, {"street_type", ""}}, "//////; 1-; THE ESPLANADE//; ALPHA NSW 2000"},
    {{{"street_suffix", "n"}}, "//////; 1-; FIRST/STREET/NORTH; ALPHA NSW 2000"},
    {{{"street_suffix", "South-West"}}, "//////; 1-; FIRST/STREET/SOUTH WEST; ALPHA NSW 2000"},
    {{{"number_first", ""}}, "//////; -; FIRST/STREET/; ALPHA NSW 2000"},
    {{{"number_first", "0"}}, "//////; -; FIRST/STREET/; ALPHA NSW 2000"},
    {{{"number_first", "007"}}, "//////; 7-; FIRST/STREET/; ALPHA NSW 2000"},
    {{{"number_first", "999999999"}}, "//////; 999999999-; FIRST/STREET/; ALPHA NSW 2000"},
    {{{"number_first", "12a"}}, "//////; 12A-; FIRST/STREET/; ALPHA NSW 2000"},
    {{{"number_first", "12 a"}}, "//////; 12A-; FIRST/STREET/; ALPHA NSW 2000"},
    {{{"number_first", "12"}, {"number_first_suffix", "1/2"}}, "//////; 121/2-; FIRST/STREET/; ALPHA NSW 2000"},
    {{{"number_first", "12"}, {"number_last", "14B"}}, "//////; 12-14B; FIRST/STREET/; ALPHA NSW 2000"},
    {{{"number_first", "12A"}, {"number_last", "12"}, {"number_last_suffix", "b"}},
     "//////; 12A-12B; FIRST/STREET/; ALPHA NSW 2000"},
    {{{"number_first", "12A"}, {"number_last", "12A"}}, "//////; 12A-; FIRST/STREET/; ALPHA NSW 2000"},
    {{{"number_last", "0"}}, "//////; 1-; FIRST/STREET/; ALPHA NSW 2000"},
    {{{"unit_type", "u"}, {"unit_number", "3a"}}, "UNIT/3A/////; 1-; FIRST/STREET/; ALPHA NSW 2000"},
    {{{"unit_type", "Appt."}, {"unit_number", "07"}}, "APARTMENT/07/////; 1-; FIRST/STREET/; ALPHA NSW 2000"},
    {{{"unit_number", "3"}}, "/3/////; 1-; FIRST/STREET/; ALPHA NSW 2000"},
    {{{"unit_type", "rear"}}, "REAR//////; 1-; FIRST/STREET/; ALPHA NSW 2000"},
    {{{"unit_type", "igloo"}}, "IGLOO//////; 1-; FIRST/STREET/; ALPHA NSW 2000"},
    {{{"level_type", "L"}, {"level_number", "2"}}, "//LEVEL/2///; 1-; FIRST/STREET/; ALPHA NSW 2000"},
    {{{"level_type", "gf"}}, "//GROUND////; 1-; FIRST/STREET/; ALPHA NSW 2000"},
    {{{"lot", "3b"}, {"building", "\"\"The\"\" Mews"}}, "////3B/\"THE\" MEWS/; 1-; FIRST/STREET/; ALPHA NSW 2000"},
    {{{"street_name", ""}, {"street_type", ""}, {"number_first", ""}, {"lot", "3"}}, "////3//; -; //; ALPHA NSW 2000"},
    {{{"street_name", ""}, {"street_type", ""}, {"number_first", ""}, {"building", "Roadhouse"}},
     "/////ROADHOUSE/; -; //; ALPHA NSW 2000"},
    {Box("123"), "//////; 123-; POSTAL /PO BOX/; ALPHA NSW 2000"},
    {Box(" c 96 "), "//////; C96-; POSTAL /PO BOX/; ALPHA NSW 2000"},
    {Box("123-A"), "//////; 123A-; POSTAL /PO BOX/; ALPHA NSW 2000"},
    {{{"street_name", ""}, {"street_type", ""}, {"number_first", ""}, {"postal_type", "Poste Restante"}},
     "//////; -; POSTAL /CARE PO/; ALPHA NSW 2000"},
    {{{"street_name", ""}, {"street_type", ""}, {"number_first", ""}, {"postal_type", "Pigeon loft"}},
     "//////; -; POSTAL /PIGEON LOFT/; ALPHA NSW 2000"},
    {{{"latitude", "-33.8688"}, {"longitude", "151.2093"}},
     "//////; 1-; FIRST/STREET/; ALPHA NSW 2000; -33868800 151209300"},
    {{{"latitude", " -90 "}, {"longitude", "180"}}, "//////; 1-; FIRST/STREET/; ALPHA NSW 2000; -90000000 180000000"},
    {{{"latitude", "90"}, {"longitude", "-180.0"}}, "//////; 1-; FIRST/STREET/; ALPHA NSW 2000; 90000000 -180000000"},
    {{{"latitude", "0"}, {"longitude", "0"}}, "//////; 1-; FIRST/STREET/; ALPHA NSW 2000; 0 0"},
    {{{"latitude", "1e-6"}, {"longitude", "0.00000049"}}, "//////; 1-; FIRST/STREET/; ALPHA NSW 2000; 1 0"},
};

TEST(Rows, AreTakenInFullForm)
{
  for (const Taken& row : kTaken) {
    const test_support::TempDir dir;
    const arf::BuildReport report = BuildFrom(dir, CsvWith(row.changes));
    ASSERT_EQ(report.outcome, arf::BuildOutcome::Built) << row.address << ": " << report.errors[0];
    const auto database = OpenOrFail(dir.Path("db"), arf::OpenMode::Memory);
    ASSERT_NE(database, nullptr);
    EXPECT_EQ(Describe(*database, 0), row.address);
  }
}

}  // namespace
}  // namespace arf_test
