// Localities that were said in other words, in another state or with the country's name, and those of one name.
#include "arf/match/locality_wordings.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "arf/match/address_text.h"
#include "arf/match/failure_text.h"
#include "arf/match/last_line_fixer.h"
#include "arf/match/matcher.h"
#include "unit/arf/match/engine_fixture.h"

namespace {

using arf::Rules;
using arf::Verdict;

/** "KELBURN EAST", "HARLOW WEST": what the words may mean besides. */
std::vector<std::string> WordingsOf(const std::string& text)
{
  arf::InputText input;
  EXPECT_EQ(input.Read(text), arf::InputFault::None);
  std::vector<std::string> out;
  for (const arf::LocalityWording& wording : arf::LocalityWordings(input, {0, input.Count()}))
    out.emplace_back(wording.name.View());
  return out;
}

TEST(LocalityWordings, Rows)
{
  struct Row
  {
    const char* text;
    std::vector<std::string> wordings;
  };
  const Row rows[] = {
      {"East Kelburn", {"KELBURN EAST"}},
      {"E Kelburn", {"KELBURN EAST"}},
      {"Kelburn Sth", {"SOUTH KELBURN"}},
      {"Mt Tarn Upper", {"UPPER MT TARN"}},
      {"East Kelburn West", {"KELBURN WEST EAST", "WEST EAST KELBURN"}},
      {"Pt Tanner", {"PORT TANNER"}},
      {"Kelburn CBD", {"KELBURN CITY", "KELBURN"}},
      {"Kelburn City", {"KELBURN"}},
      {"Kelburn", {}},
      {"East", {}},
      {"CBD", {}},
      {"Eastern Kelburn", {}},
      {"East, Kelburn", {}},
      {"East Kelburn 3", {}},
      {"", {}},
  };
  for (const Row& row : rows) EXPECT_EQ(WordingsOf(row.text), row.wordings) << row.text;
}

TEST(LocalityWordings, NamesThatDoNotFitAreLeftOut)
{
  EXPECT_TRUE(WordingsOf("East " + std::string(200, 'A')).empty());
}

class OtherWordings : public testing::Test
{
 protected:
  static void SetUpTestSuite()
  {
    dir_ = new test_support::TempDir;
    dir_->Write("places.csv",
                "dpid,number_first,street_name,street_type,street_suffix,locality,state,postcode\n"
                "50000001,7,FERN,STREET,,KELBURN EAST,VIC,3991\n"
                "50000002,7,FERN,STREET,,KELBURN,VIC,3990\n"
                "50000003,9,FERN,STREET,,KELBURN,VIC,3990\n"
                "50000004,5,GUM,STREET,,KELBURN,VIC,3990\n"
                "50000005,6,REED,STREET,EAST,KELBURN,VIC,3990\n"
                "50000006,6,REED,STREET,,KELBURN EAST,VIC,3991\n"
                "50000010,3,OAK,ROAD,,WEST HARLOW,NSW,2981\n"
                "50000015,5,OAK,ROAD,,GLEN HARLOW WEST,NSW,2988\n"
                "50000011,4,ASH,LANE,,UPPER MOUNT TARN,QLD,4981\n"
                "50000012,6,ELM,COURT,,NORTH DURRA,NSW,2982\n"
                "50000013,6,ELM,COURT,,DURRA NORTH,NSW,2989\n"
                "50000014,8,ELM,COURT,,DURRA NORTH,NSW,2989\n"
                "50000020,44,MILL,ROAD,,RICHFORD,VIC,3983\n"
                "50000021,44,MILL,STREET,,RICHFORD,TAS,7983\n"
                "50000030,1,HILL,STREET,,GLEN ALDERLEY,VIC,3984\n"
                "50000031,1,HILL,STREET,,ALDERLY,NSW,2984\n"
                "50000032,2,HILL,STREET,,HAWTREE,VIC,3985\n"
                "50000033,2,HILL,STREET,,HAWTHREE,QLD,4985\n"
                "50000040,1,QUAY,STREET,,PORT TANNER,SA,5981\n"
                "50000041,1,QUAY,STREET,,POINT MERROW,SA,5982\n"
                "50000042,1,QUAY,STREET,,PORT MERROW,SA,5983\n"
                "50000050,1,KING,STREET,,BELLING,NSW,2985\n"
                "50000051,1,KING,STREET,,TARROW CITY,QLD,4986\n"
                "50000052,1,KING,STREET,,CITY,ACT,2699\n"
                "50000053,2,KING,STREET,,SOUTH BELLING,NSW,2986\n"
                "50000054,3,KING,STREET,,THE CREST,NSW,2987\n"
                "50000055,3,KING,STREET,,PERTH,WA,6999\n"
                "50000056,4,NORTH BAY,ROAD,,BELLING,NSW,2985\n"
                "50000057,4,BAY,ROAD,,BELLING,TAS,7999\n"
                "50000060,1,DAM,ROAD,,LINDEN WEST,QLD,4987\n"
                "50000061,2,DAM,ROAD,,LINDEN,WA,6987\n");
    engine_ = arf_test::OpenEngine(arf_test::BuildDatabaseFrom(*dir_, dir_->Path("places.csv"))).release();
  }
  static void TearDownTestSuite()
  {
    delete engine_;
    delete dir_;
  }

  /** "7 FERN STREET, KELBURN EAST VIC 3991 (locality_word_order=6)", or the kind of failure. */
  std::string Answer(const std::string& text, Rules rules = Rules::Lenient)
  {
    const arf::LookupAnswer answer = matcher_->Lookup(text, rules);
    if (answer.verdict != Verdict::Found) return NameOf(answer.verdict);
    arf::BoundedText out(buffer_, sizeof buffer_);
    arf::AppendAddress(out, engine_->Data(), answer.ordinal);
    std::string found = buffer_;
    out.Clear();
    arf::AppendDepartures(out, answer.departures);
    return found + " (" + buffer_ + ")";
  }

  std::string Line(const std::string& text)
  {
    const arf::LastLineAnswer answer = fixer_->Fix(text);
    if (answer.verdict != Verdict::Found) return NameOf(answer.verdict);
    arf::BoundedText out(buffer_, sizeof buffer_);
    arf::AppendLocality(out, engine_->Data().LocalityAt(answer.locality));
    return std::string(buffer_) + (answer.changed ? " changed" : "");
  }

  std::string Description()
  {
    arf::BoundedText out(buffer_, sizeof buffer_);
    arf::AppendFailure(out, engine_->Data(), matcher_->LastFailure());
    return buffer_;
  }

  static std::string NameOf(Verdict verdict)
  {
    switch (verdict) {
      case Verdict::WrongLocality:
        return "locality";
      case Verdict::WrongStreet:
        return "street";
      case Verdict::WrongNumber:
        return "number";
      case Verdict::Several:
        return "several";
      default:
        return "nothing";
    }
  }

  static test_support::TempDir* dir_;
  static const arf::Engine* engine_;
  std::unique_ptr<arf::Matcher> matcher_ = std::make_unique<arf::Matcher>(*engine_);
  std::unique_ptr<arf::LastLineFixer> fixer_ = std::make_unique<arf::LastLineFixer>(*engine_);
  char buffer_[1024] = {};
};

test_support::TempDir* OtherWordings::dir_ = nullptr;
const arf::Engine* OtherWordings::engine_ = nullptr;

struct Row
{
  const char* written;
  const char* answer;
};

TEST_F(OtherWordings, DirectionOnTheOtherSide)
{
  const Row rows[] = {
      {"7 Fern St, East Kelburn VIC 3991", "7 FERN STREET, KELBURN EAST VIC 3991 (locality_word_order=6)"},
      {"7 Fern St East Kelburn VIC", "7 FERN STREET, KELBURN EAST VIC 3991 (locality_word_order=6)"},
      {"7 Fern St E Kelburn", "7 FERN STREET, KELBURN EAST VIC 3991 (locality_word_order=6)"},
      {"7 Fern St, VIC 3991 East Kelburn",
       "7 FERN STREET, KELBURN EAST VIC 3991 (place_order=1;locality_word_order=6)"},
      {"7 Fren St, East Kelburn VIC",
       "7 FERN STREET, KELBURN EAST VIC 3991 (street_typo_short=16;locality_word_order=6)"},
      {"7 Fern St, East Kelburn VIC 3919",
       "7 FERN STREET, KELBURN EAST VIC 3991 (locality_word_order=6;postcode_digit=12)"},
      {"3 Oak Rd, Harlow West NSW 2981", "3 OAK ROAD, WEST HARLOW NSW 2981 (locality_word_order=6)"},
      {"4 Ash Lane Mt Tarn Upper", "4 ASH LANE, UPPER MOUNT TARN QLD 4981 (locality_variant=1;locality_word_order=6)"},
      {"7 Fern St, East Kelburn VIC ph 0412 345 678",
       "7 FERN STREET, KELBURN EAST VIC 3991 (locality_word_order=6;noise=4)"},
      // the last words say another place, and are the end of a name with a typing error
      {"5 Oak Rd, Glen Harlow Wesst NSW", "5 OAK ROAD, GLEN HARLOW WEST NSW 2988 (locality_typo=12)"},
      {"5 Oak Rd Glenn Harlow West", "5 OAK ROAD, GLEN HARLOW WEST NSW 2988 (locality_typo=12)"},
      // the one written wins
      {"6 Elm Ct North Durra", "6 ELM COURT, NORTH DURRA NSW 2982 ()"},
      {"6 Elm Ct Durra North", "6 ELM COURT, DURRA NORTH NSW 2989 ()"},
      {"8 Elm Ct North Durra", "number"},
      // a street's suffix where the street has it
      {"6 Reed St East Kelburn", "6 REED STREET EAST, KELBURN VIC 3990 ()"},
      // nothing is guessed where number or street are not there
      {"9 Fern St, East Kelburn VIC 3991", "number"},
      {"9 Fern St East Kelburn", "number"},
      {"5 Gum St East Kelburn", "street"},
      {"Fern St East Kelburn", "number"},
      {"3 Oak Rd, Harlow West VIC 2981", "locality"},
      {"3 Oak Rd, Harlow West VIC", "locality"},
      {"3 Oak Rd, Harlow East NSW 2981", "locality"},
  };
  for (const Row& row : rows) {
    EXPECT_EQ(Answer(row.written), row.answer) << row.written;
    if (std::string(row.answer).find("order=6") == std::string::npos) continue;
    EXPECT_EQ(Answer(row.written, Rules::Strict).find('('), std::string::npos) << row.written;
  }
}

TEST_F(OtherWordings, FailuresNameTheLocalityMeant)
{
  Answer("9 Fern St, East Kelburn VIC 3991");
  EXPECT_EQ(Description(), "No number 9 in FERN STREET, KELBURN EAST VIC 3991; the only number there is 7.");
}

TEST_F(OtherWordings, NoSuffixAcrossABreak)
{
  EXPECT_EQ(Answer("5 Gum St West Kelburn"), "5 GUM STREET, KELBURN VIC 3990 (street_suffix_added=16)");
  EXPECT_EQ(Answer("5 Gum St, West Kelburn"), "street");
  EXPECT_EQ(Answer("6 Reed St, East, Kelburn"), "6 REED STREET EAST, KELBURN VIC 3990 (broken_street=2)");
}

TEST_F(OtherWordings, StateAndPostcodeOfTwoNamesakes)
{
  EXPECT_EQ(Answer("44 Mill St, Richford TAS 7983"), "44 MILL STREET, RICHFORD TAS 7983 ()");
  EXPECT_EQ(Answer("44 Mill St, Richford VIC 7983"), "locality");
  EXPECT_EQ(Answer("44 Mill Rd, Richford VIC 7983"), "locality");
  EXPECT_EQ(Answer("44 Mill Rd, Richfrod VIC 7983"), "locality");
  EXPECT_EQ(Answer("44 Mill Rd, Richford VIC 3938"), "44 MILL ROAD, RICHFORD VIC 3983 (postcode_digit=12)");
}

TEST_F(OtherWordings, NamesOfOtherStatesHaveNotBeenSeen)
{
  const Row rows[] = {
      {"1 Hill St, Glen Alderly VIC", "1 HILL STREET, GLEN ALDERLEY VIC 3984 (locality_typo=12)"},
      {"2 Hill St, Hawthree VIC", "2 HILL STREET, HAWTREE VIC 3985 (locality_typo=12)"},
      {"2 Hill St Hawtree QLD", "2 HILL STREET, HAWTHREE QLD 4985 (locality_typo=12)"},
      {"2 Hill St Hawtree VIC", "2 HILL STREET, HAWTREE VIC 3985 ()"},
      {"2 Hill St, Hawtree SA", "locality"},
      {"1 Hill St, Hawthree VIC", "locality"},
      {"2 Hill St, Hawtheee VIC", "2 HILL STREET, HAWTREE VIC 3985 (locality_two_typos=24)"},
  };
  for (const Row& row : rows) EXPECT_EQ(Answer(row.written), row.answer) << row.written;
  Answer("2 Hill St, Hawtree SA");
  EXPECT_EQ(Description(), "HAWTREE is VIC 3985, not SA.");
}

TEST_F(OtherWordings, PortsAndTheMiddleOfTowns)
{
  const Row rows[] = {
      {"1 Quay St, Pt Tanner SA 5981", "1 QUAY STREET, PORT TANNER SA 5981 (locality_variant=1)"},
      {"1 Quay St Pt Tanner", "1 QUAY STREET, PORT TANNER SA 5981 (locality_variant=1)"},
      {"1 Quay St, Pt Merrow SA", "1 QUAY STREET, POINT MERROW SA 5982 (locality_variant=1)"},
      {"1 King St Belling CBD NSW", "1 KING STREET, BELLING NSW 2985 (locality_part=16)"},
      {"1 King St, Belling City NSW 2985", "1 KING STREET, BELLING NSW 2985 (locality_part=16)"},
      {"1 King St, Tarrow CBD", "1 KING STREET, TARROW CITY QLD 4986 (locality_part=16)"},
      {"1 King St, City QLD 4986", "1 KING STREET, TARROW CITY QLD 4986 (locality_part=16)"},
      {"1 King St, City", "1 KING STREET, CITY ACT 2699 ()"},
      {"2 King St, Belling CBD", "number"},
      {"1 King St, Belling CBD VIC", "locality"},
  };
  for (const Row& row : rows) EXPECT_EQ(Answer(row.written), row.answer) << row.written;
}

/** The last word is a locality of the state, and the words before it belong to a longer name. */
TEST_F(OtherWordings, LongerNamesWithATypingError)
{
  const Row rows[] = {
      {"2 King St, Souht Belling NSW", "2 KING STREET, SOUTH BELLING NSW 2986 (locality_typo=12)"},
      {"2 King St Suth Belling NSW", "2 KING STREET, SOUTH BELLING NSW 2986 (locality_typo=12)"},
      {"2 King St Souht Belling", "street"},
      {"2 King St, Souht Belling TAS", "street"},
      {"9 King St, Souht Belling NSW", "street"},
      {"2 King St, Shout Beling NSW", "locality"},
  };
  for (const Row& row : rows) EXPECT_EQ(Answer(row.written), row.answer) << row.written;
}

TEST_F(OtherWordings, CityBehindTheLocality)
{
  const Row rows[] = {
      {"1 King St Belling Sydney NSW", "1 KING STREET, BELLING NSW 2985 (surplus_place=12)"},
      {"1 King St Belling Sydney 2985", "1 KING STREET, BELLING NSW 2985 (surplus_place=12)"},
      {"3 King St The Crest Wagga Wagga NSW 2987", "3 KING STREET, THE CREST NSW 2987 (surplus_place=12)"},
      {"1 King St, Belling Central Coast NSW", "1 KING STREET, BELLING NSW 2985 (surplus_place=12)"},
      {"3 King St Perth WA", "3 KING STREET, PERTH WA 6999 ()"},
      // nothing confirms the locality, or the city is of another state, or none
      {"1 King St Belling Sydney", "locality"},
      {"1 King St Belling Perth NSW", "locality"},
      {"1 King St Belling Sydney 2986", "locality"},
      {"1 King St Belling Kelburn NSW", "locality"},
      // street and number must be as written
      {"1 Kinng St Belling Sydney NSW", "locality"},
      {"7 King St Belling Sydney NSW", "locality"},
  };
  for (const Row& row : rows) {
    EXPECT_EQ(Answer(row.written), row.answer) << row.written;
    EXPECT_EQ(Answer(row.written, Rules::Strict).find("surplus"), std::string::npos) << row.written;
  }
}

TEST_F(OtherWordings, NothingButALocality)
{
  const Row rows[] = {
      {"South Belling", "No street was written for SOUTH BELLING NSW 2986."},
      {"East Kelburn", "No street was written for KELBURN EAST VIC 3991."},
      {"East Kelburn VIC 3991", "No street was written for KELBURN EAST VIC 3991."},
      {"West Kelburn", "\"WEST\" was not found in KELBURN VIC 3990."},
  };
  for (const Row& row : rows) {
    EXPECT_EQ(Answer(row.written), "street") << row.written;
    EXPECT_EQ(Description(), row.answer) << row.written;
  }
}

/** Of places of one name that all lack the street the largest is named. */
TEST_F(OtherWordings, FailuresNameTheLargestNamesake)
{
  EXPECT_EQ(Answer("1 Foo St Belling"), "street");
  EXPECT_EQ(Description(), "\"FOO ST\" was not found in BELLING NSW 2985.");
  Answer("1 Foo St Belling TAS");
  EXPECT_EQ(Description(), "\"FOO ST\" was not found in BELLING TAS 7999.");
  Answer("Belling");
  EXPECT_EQ(Description(), "No street was written for BELLING NSW 2985.");
}

TEST_F(OtherWordings, ALetterBehindADigitIsNoInitial)
{
  EXPECT_EQ(Answer("4 N Bay Rd Belling"), "4 NORTH BAY ROAD, BELLING NSW 2985 (street_variant=1)");
}

TEST_F(OtherWordings, StateOrCountryBehindADirection)
{
  for (const Rules rules : {Rules::Strict, Rules::Lenient}) {
    EXPECT_EQ(Answer("1 Dam Rd, Linden West AUSTRALIA 4987", rules), "1 DAM ROAD, LINDEN WEST QLD 4987 ()");
    EXPECT_EQ(Answer("2 Dam Rd, Linden West Australia 6987", rules), "2 DAM ROAD, LINDEN WA 6987 ()");
    EXPECT_EQ(Answer("2 Dam Rd, Linden West Australia", rules), "2 DAM ROAD, LINDEN WA 6987 ()");
    EXPECT_EQ(Answer("1 Dam Rd, Linden West Australia 6987", rules), "number");
    EXPECT_EQ(Answer("1 Dam Rd, Linden West Australia", rules), "number");
  }
  EXPECT_EQ(Answer("1 Damm Rd, Linden West AUSTRALIA 4987"), "1 DAM ROAD, LINDEN WEST QLD 4987 (street_typo_short=16)");
}

TEST_F(OtherWordings, LastLines)
{
  const Row rows[] = {
      {"East Kelburn VIC 3991", "KELBURN EAST VIC 3991 changed"},
      {"3991 East Kelburn", "KELBURN EAST VIC 3991 changed"},
      {"East Kelburn", "KELBURN EAST VIC 3991 changed"},
      {"East Kelburn VIC 3999", "KELBURN EAST VIC 3991 changed"},
      {"Mt Tarn Upper", "UPPER MOUNT TARN QLD 4981 changed"},
      {"North Durra", "NORTH DURRA NSW 2982"},
      {"East Kelburn NSW", "locality"},
      {"Pt Tanner", "PORT TANNER SA 5981"},
      {"Pt Merrow", "POINT MERROW SA 5982"},
      {"Belling CBD", "several"},
      {"Belling CBD NSW", "BELLING NSW 2985 changed"},
      {"Tarrow CBD QLD", "TARROW CITY QLD 4986 changed"},
      {"Hawthree VIC", "HAWTREE VIC 3985 changed"},
      {"Hawthree", "HAWTHREE QLD 4985"},
      {"Hawtree SA", "locality"},
      {"Mt Tran Upper", "nothing"},
      {"Upper Mt Tran", "UPPER MOUNT TARN QLD 4981 changed"},
      {"Linden West AUSTRALIA 4987", "LINDEN WEST QLD 4987"},
      {"Linden West AUSTRALIA", "LINDEN WA 6987"},
  };
  for (const Row& row : rows) EXPECT_EQ(Line(row.written), row.answer) << row.written;
}

}  // namespace
