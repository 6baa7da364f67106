// Corners of two streets: how they are written, where the streets meet, and which address a number at one of them says.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <memory>
#include <random>
#include <sstream>
#include <string>
#include <vector>

#include "arf/match/corner_words.h"
#include "arf/match/failure_text.h"
#include "arf/match/matcher.h"
#include "arf/match/street_meeting.h"
#include "support/random_seed.h"
#include "unit/arf/match/engine_fixture.h"

namespace {

using arf::Rules;
using arf::Verdict;

/* What the words are taken for. */

std::vector<std::string> ReadingsOf(const std::string& text)
{
  const auto input = std::make_unique<arf::InputText>();
  input->Read(text);
  std::vector<std::string> readings;
  for (const arf::CornerWords& words : arf::CornerReadings(*input, {0, input->Count()}))
    readings.push_back(std::string(input->Text(words.first)) + (words.isCertain ? " x " : " ? ") +
                       std::string(input->Text(words.second)));
  return readings;
}

TEST(CornerWords, Readings)
{
  using List = std::vector<std::string>;
  EXPECT_EQ(ReadingsOf("Cnr Smith St & Jones Rd"), List{"SMITH ST x JONES RD"});
  EXPECT_EQ(ReadingsOf("corner of Smith and Jones Sts"), List{"SMITH x JONES STS"});
  EXPECT_EQ(ReadingsOf("Smith St / Jones Rd"), List{"SMITH ST ? JONES RD"});
  EXPECT_EQ(ReadingsOf("Smith St + Jones Rd"), List{"SMITH ST ? JONES RD"});
  EXPECT_EQ(ReadingsOf("Smith & Jones corner"), List{"SMITH x JONES"});
  EXPECT_EQ(ReadingsOf("Cnr Smith St, Jones Rd"), List{"SMITH ST ? JONES RD"});
  EXPECT_EQ(ReadingsOf("Smith St (cnr Jones)"), List{"SMITH ST x JONES"});
  EXPECT_EQ(ReadingsOf("34 Smith St cnr Jones & Brown Sts"),
            (List{"34 SMITH ST x JONES BROWN STS", "JONES x BROWN STS"}));
  EXPECT_EQ(ReadingsOf("The Mall, cnr Smith & Jones Sts"), (List{"SMITH x JONES STS", "THE MALL x SMITH JONES STS"}));
  EXPECT_EQ(ReadingsOf("Smith & and & Jones"), List{"SMITH ? JONES"});
  EXPECT_EQ(ReadingsOf("Cnr Smith St"), List{"SMITH ST ? SMITH ST"});
  for (const char* none : {"", "12 Smith St", "3/12 Smith St", "12-14 Smith St", "Smith St", "& Smith", "Smith &",
                           "and Smith", "Smith and", "cnr", "corner of"})
    EXPECT_EQ(ReadingsOf(none), List{}) << none;
}

TEST(CornerWords, AreBounded)
{
  std::string text;
  for (int i = 0; i < 40; ++i) text += "A & ";
  EXPECT_EQ(ReadingsOf(text).size(), arf::CornerReadings::kMax);
}

TEST(CornerWords, PluralTypes)
{
  EXPECT_EQ(arf::PluralType("STREETS"), "STREET");
  EXPECT_EQ(arf::PluralType("STS"), "STREET");
  EXPECT_EQ(arf::PluralType("RDS"), "ROAD");
  for (const char* none : {"", "S", "ST", "STREET", "SMITHS"}) EXPECT_EQ(arf::PluralType(none), "") << none;
}

/* Where streets meet. */

struct Written
{
  const char* number;
  const char* street;
  double latitude, longitude;  ///< 0: none
};

std::string CsvOf(const std::vector<Written>& addresses, const std::string& place = "ALDERTON,NSW,2991")
{
  std::ostringstream csv;
  csv.precision(9);
  csv << "dpid,number_first,street_name,street_type,locality,state,postcode,latitude,longitude\n";
  int dpid = 30000001;
  for (const Written& a : addresses) {
    csv << dpid++ << ',' << a.number << ',' << a.street << ',' << place << ',';
    if (a.latitude != 0)
      csv << a.latitude << ',' << a.longitude;
    else
      csv << ',';
    csv << '\n';
  }
  return csv.str();
}

arf::Street StreetNamed(const arf::Database& data, std::string_view name)
{
  return data.StreetAt(data.StreetsNamed(data.FindStreetName(name).value())[0]);
}

double MetresBetween(const arf::Point& a, const arf::Point& b)
{
  constexpr double kRadians = 3.14159265358979323846 / 180e6;
  const double north = (a.latitude - b.latitude) * kRadians;
  const double east = (a.longitude - b.longitude) * kRadians * std::cos(a.latitude * kRadians);
  return 6'371'000 * std::sqrt(north * north + east * east);
}

std::vector<arf::Point> PointsOf(const arf::Database& data, const arf::Street& street)
{
  std::vector<arf::Point> points;
  arf::PointCursor cursor = data.Points(street);
  for (arf::Point point; cursor.Next(point);) points.push_back(point);
  return points;
}

TEST(StreetMeetings, SameAsComparingAllPairs)
{
  std::mt19937 random(test_support::RandomSeed());
  const auto below = [&](int count) { return static_cast<int>(random() % static_cast<unsigned>(count)); };
  const auto meetings = std::make_unique<arf::StreetMeetings>();
  int met = 0;
  for (int round = 0; round < 60; ++round) {
    const double spread = round % 2 == 0 ? 0.001 : 0.05;
    std::vector<Written> addresses;
    std::vector<std::string> numbers(60);
    for (int i = 0; i < 60; ++i) {
      numbers[static_cast<std::size_t>(i)] = std::to_string(i + 1);
      const char* street = i < 5 + round / 3 ? "HIGH,STREET" : "MILL,LANE";
      const bool located = below(8) > 0;
      addresses.push_back({numbers[static_cast<std::size_t>(i)].c_str(), street,
                           located ? -33.5 + spread * below(40) / 10 : 0, 151 + spread * below(40) / 10});
    }
    const test_support::TempDir dir;
    const auto engine = arf_test::OpenEngine(arf_test::BuildDatabaseFrom(dir, dir.Write("a.csv", CsvOf(addresses))));
    const arf::Database& data = engine->Data();
    const arf::Street high = StreetNamed(data, "HIGH"), mill = StreetNamed(data, "MILL");
    double least = 1e9;
    bool hasHigh = false, hasMill = false;
    for (const arf::Point& a : PointsOf(data, high)) {
      hasHigh = hasHigh || a.latitude != arf::kNoCoordinate;
      for (const arf::Point& b : PointsOf(data, mill)) {
        hasMill = hasMill || b.latitude != arf::kNoCoordinate;
        if (a.latitude != arf::kNoCoordinate && b.latitude != arf::kNoCoordinate)
          least = std::min(least, MetresBetween(a, b));
      }
    }
    std::uint32_t visited = 0;
    const arf::Meeting meeting = meetings->Find(data, high, mill, visited);
    EXPECT_EQ(visited, 60U);
    EXPECT_EQ(meeting.isLocated, hasHigh && hasMill);
    if (std::abs(least - arf::StreetMeetings::kNear) < 0.01) continue;  // rounding decides
    ASSERT_EQ(meeting.Found(), least < arf::StreetMeetings::kNear) << least;
    if (!meeting.Found()) continue;
    ++met;
    EXPECT_NEAR(meeting.metres, least, 0.01);
    const arf::Point first = data.PointAt(meeting.first), second = data.PointAt(meeting.second);
    EXPECT_EQ(first.street, high.index);
    EXPECT_EQ(second.street, mill.index);
    EXPECT_NEAR(MetresBetween(first, second), least, 0.01);
  }
  EXPECT_GT(met, 10);
  EXPECT_LT(met, 60);
}

TEST(StreetMeetings, WithoutNumbersOrPlaces)
{
  const test_support::TempDir dir;
  const auto engine = arf_test::OpenEngine(arf_test::BuildDatabaseFrom(
      dir, dir.Write("a.csv",
                     "dpid,lot,number_first,street_name,street_type,locality,state,postcode,latitude,longitude\n"
                     "30000001,5,,HIGH,STREET,ALDERTON,NSW,2991,-33.5,151\n"
                     "30000002,,3,HIGH,STREET,ALDERTON,NSW,2991,,\n"
                     "30000003,,3,MILL,LANE,ALDERTON,NSW,2991,-33.5,151\n")));
  const arf::Database& data = engine->Data();
  const auto meetings = std::make_unique<arf::StreetMeetings>();
  std::uint32_t visited = 0;
  const arf::Meeting meeting = meetings->Find(data, StreetNamed(data, "HIGH"), StreetNamed(data, "MILL"), visited);
  EXPECT_FALSE(meeting.isLocated);
  EXPECT_FALSE(meeting.Found());
}

/** Streets too long to be compared whole: nothing found does not say that they are apart. */
TEST(StreetMeetings, OfVeryLongStreets)
{
  const auto meetings = std::make_unique<arf::StreetMeetings>();
  for (const int count : {1024, 1025}) {
    std::vector<std::string> numbers;
    for (int i = 1; i <= count; ++i) numbers.push_back(std::to_string(i));
    std::vector<Written> addresses;
    for (int i = 0; i < 2 * count; ++i)
      addresses.push_back({numbers[static_cast<std::size_t>(i % count)].c_str(),
                           i < count ? "HIGH,STREET" : "MILL,LANE", i < count ? -33.5 : -34.5,
                           151 + 0.00001 * (i % count)});
    const test_support::TempDir dir;
    const auto engine = arf_test::OpenEngine(arf_test::BuildDatabaseFrom(dir, dir.Write("a.csv", CsvOf(addresses))));
    const arf::Database& data = engine->Data();
    std::uint32_t visited = 0;
    const arf::Meeting meeting = meetings->Find(data, StreetNamed(data, "HIGH"), StreetNamed(data, "MILL"), visited);
    EXPECT_FALSE(meeting.Found());
    EXPECT_EQ(meeting.isLocated, count == 1024) << count;
  }
}

/* Searches. A thousandth of a degree is 111 metres northwards and 93 eastwards. */

const arf::Engine& Town()
{
  static const test_support::TempDir dir;
  static const std::unique_ptr<const arf::Engine> engine = [] {
    std::string csv = CsvOf({{"2", "HIGH,STREET", -33.5000, 151.0000},
                             {"4", "HIGH,STREET", -33.5000, 151.0010},
                             {"6", "HIGH,STREET", -33.5000, 151.0020},
                             {"34", "HIGH,STREET", -33.5000, 151.0050},
                             {"1", "MILL,LANE", -33.4995, 151.0021},
                             {"9", "MILL,LANE", -33.4900, 151.0021},
                             {"1", "MILL,ROAD", -33.4000, 151.0021},
                             {"5", "GRAVEL,ROAD", -33.6000, 151.1000},
                             {"5", "QUARRY,ROAD", 0, 0},
                             {"5", "1ST,AVENUE", -33.6001, 151.1000}});
    csv +=
        "30000051,1,HIGH,STREET,BRAMLEY CITY,NSW,2992,-33.7,151\n"
        "30000052,1,CHURCH,STREET,BRAMLEY CITY,NSW,2992,-33.7001,151\n"
        "30000053,1,HIGH,STREET,CRANFORD,NSW,2993,-33.8,151\n"
        "30000054,1,CHURCH,STREET,CRANFORD,VIC,3993,-36.8,146\n"
        "30000055,2,HIGH,STREET,CRANFORD,VIC,3993,-36.8001,146\n";
    return arf_test::OpenEngine(arf_test::BuildDatabaseFrom(dir, dir.Write("town.csv", csv)));
  }();
  return *engine;
}

std::string OutcomeOf(const char* text, Rules rules)
{
  const auto matcher = std::make_unique<arf::Matcher>(Town());
  const arf::LookupAnswer answer = matcher->Lookup(text, rules);
  char buffer[512];
  arf::BoundedText out(buffer, sizeof buffer);
  if (answer.verdict == Verdict::Found) {
    out << Town().Data().DpidOf(answer.ordinal);
    char departures[256];
    arf::BoundedText list(departures, sizeof departures);
    arf::AppendDepartures(list, answer.departures);
    out.Word(departures);
  } else {
    out << (answer.verdict == Verdict::WrongNumber ? "S" : answer.verdict == Verdict::WrongStreet ? "L" : "-");
    char reason[400];
    arf::BoundedText failure(reason, sizeof reason);
    arf::AppendFailure(failure, Town().Data(), matcher->LastFailure());
    out.Word(reason);
  }
  return buffer;
}

constexpr const char* kMeet =
    "S HIGH STREET and MILL LANE meet near 6 HIGH STREET and 1 MILL LANE, ALDERTON NSW 2991; write a number and one of "
    "the streets.";

TEST(Corner, SaysWhereTheStreetsMeet)
{
  for (const char* text :
       {"Cnr High St & Mill La, Alderton", "corner of High St and Mill Lane, Alderton NSW 2991",
        "Corner High Street / Mill Lane Alderton", "High St / Mill Lane Alderton", "High St & Mill Lane, Alderton",
        "High St cnr Mill Lane, Alderton", "High St (cnr Mill Lane) Alderton", "High St and Mill Lane corner, Alderton",
        "Old Library, Cnr High St & Mill Lane, Alderton", "Cnr High St, Mill Lane, Alderton NSW",
        "Cnr High St & Mill Lane, NSW 2991 Alderton"}) {
    EXPECT_EQ(OutcomeOf(text, Rules::Strict), kMeet) << text;
    EXPECT_EQ(OutcomeOf(text, Rules::Lenient), kMeet) << text;
  }
}

/** MILL LANE is the Mill that comes near High Street. */
TEST(Corner, LenientlyWithErrors)
{
  for (const char* text : {"Cnr Hihg St & Mill Lane, Alderton", "Cnr High & Mill, Alderton", "High & Mill, Alderton",
                           "Cnr High St & Mill Lane, Aldreton", "Cnr High St & Mill Lane 2991",
                           "Cnr High St & Mill Lane, Alderton NSW 2999"}) {
    EXPECT_NE(OutcomeOf(text, Rules::Strict), kMeet) << text;
    EXPECT_EQ(OutcomeOf(text, Rules::Lenient), kMeet) << text;
  }
  EXPECT_EQ(OutcomeOf("Cnr High & Church, Bramley", Rules::Lenient),
            "S HIGH STREET and CHURCH STREET meet near 1 HIGH STREET and 1 CHURCH STREET, BRAMLEY CITY NSW 2992; write "
            "a number and one of the streets.");
}

TEST(Corner, TypeThatBothShare)
{
  const std::string meet =
      "S GRAVEL ROAD and QUARRY ROAD are both there, but their corner is no address, ALDERTON NSW 2991; write a number "
      "and one of the streets.";
  for (const char* text : {"Gravel & Quarry Rds, Alderton", "cnr of Gravel and Quarry Roads Alderton",
                           "Cnr Gravel & Quarry Rd Alderton"}) {
    EXPECT_EQ(OutcomeOf(text, Rules::Strict), meet) << text;
    EXPECT_EQ(OutcomeOf(text, Rules::Lenient), meet) << text;
  }
}

TEST(Corner, OtherFailures)
{
  struct Row
  {
    const char* written;
    const char* outcome;
  };
  const Row rows[] = {
      {"Cnr High St & Gravel Rd, Alderton",
       "S HIGH STREET and GRAVEL ROAD, ALDERTON NSW 2991 do not come near each other; write a number and one of the "
       "streets."},
      {"Cnr Gravel Rd & 1st Ave, Alderton",
       "S GRAVEL ROAD and 1ST AVENUE meet near 5 GRAVEL ROAD and 5 1ST AVENUE, ALDERTON NSW 2991; write a number and "
       "one of the streets."},
      {"Cnr High St & Nowhere Ave, Alderton",
       "L \"NOWHERE AVE\" was not found in ALDERTON NSW 2991; HIGH STREET is there."},
      {"Cnr Nowhere Ave & High St, Alderton",
       "L \"NOWHERE AVE\" was not found in ALDERTON NSW 2991; HIGH STREET is there."},
      {"Cnr Nowhere Ave & Elsewhere St, Alderton",
       "L Neither \"NOWHERE AVE\" nor \"ELSEWHERE ST\" was found in ALDERTON NSW 2991."},
      {"Cnr High St & Church St, Cranford",
       "S HIGH STREET and CHURCH STREET meet near 2 HIGH STREET and 1 CHURCH STREET, CRANFORD VIC 3993; write a number "
       "and one of the streets."},
      {"Cnr High St & Church St, Cranford NSW",
       "L \"CHURCH ST\" was not found in CRANFORD NSW 2993; HIGH STREET is there."},
      {"Cnr High St, Alderton",
       "S No number was written for HIGH STREET, ALDERTON NSW 2991; numbers there run from 2 to 34."},
      {"Cnr High St & High Street, Alderton",
       "S No number was written for HIGH STREET, ALDERTON NSW 2991; numbers there run from 2 to 34."},
      {"Cnr High St & Mill Lane, Nowhere NSW", "- No locality was recognised in \"NOWHERE\" for NSW."},
  };
  for (const Row& row : rows) {
    EXPECT_EQ(OutcomeOf(row.written, Rules::Strict), row.outcome) << row.written;
    EXPECT_EQ(OutcomeOf(row.written, Rules::Lenient), row.outcome) << row.written;
  }
}

TEST(Corner, NumberSaysTheAddress)
{
  for (const char* text : {"34 High St cnr Mill Lane Alderton", "34 High St (cnr Mill) Alderton",
                           "34 High St (cnr Mill Lane), Alderton NSW 2991", "Cnr 34 High St & Mill Lane Alderton",
                           "34 High St, corner of Mill Lane, Alderton", "34 High St & Mill Lane, Alderton",
                           "34 High St cnr Nowhere Ave, Alderton", "34 High St cnr Mill & Gravel Rds, Alderton"})
    EXPECT_EQ(OutcomeOf(text, Rules::Lenient), "30000004 corner=6") << text;
  EXPECT_EQ(OutcomeOf("34 High St cnr Mill Lane Alderton", Rules::Strict), kMeet);
  EXPECT_EQ(OutcomeOf("34 Hihg St (cnr Mill) Aldertn", Rules::Lenient),
            "30000004 street_typo_short=16;locality_typo=12;corner=6");
  EXPECT_EQ(OutcomeOf("Cnr High St & 9 Mill Lane, Alderton", Rules::Strict), "30000006 other_building=1");
}

TEST(Corner, NumberMustBeThere)
{
  EXPECT_EQ(OutcomeOf("99 High St cnr Mill Lane Alderton", Rules::Lenient),
            "S No number 99 in HIGH STREET, ALDERTON NSW 2991; numbers there run from 2 to 34.");
  for (const char* text : {"34 High St cnr 9 Mill Lane, Alderton", "34 High St & Nowhere Ave, Alderton",
                           "99 High St cnr 9 Mill Lane, Alderton"})
    EXPECT_NE(OutcomeOf(text, Rules::Lenient).substr(0, 1), "3") << text;
}

TEST(Corner, ReadingShowsTheFirstStreet)
{
  const auto matcher = std::make_unique<arf::Matcher>(Town());
  matcher->Lookup("Cnr High St & Mill Lane, Alderton NSW 2991", Rules::Strict);
  const arf::Reading& reading = matcher->LastReading();
  EXPECT_EQ(matcher->Input().Text(reading.streetName), "HIGH");
  EXPECT_EQ(reading.streetType, "STREET");
  EXPECT_EQ(matcher->Input().Text(reading.locality), "ALDERTON");
  EXPECT_EQ(reading.place.postcode.View(), "2991");
}

}  // namespace
