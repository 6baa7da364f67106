/** Hints through the plug-in's operations: the examples of the documentation, the form of a line, ends and failures. */
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <random>

#include "support/random_seed.h"
#include "unit/arf/au/searcher_fixture.h"

namespace arf_test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr const char* kEnd = "\t\t\t\t";

class HintsTest : public testing::Test
{
 protected:
  using Strings = std::vector<std::string>;

  Answer Popup(const char* text, const char* place = "", int number = 0, int size = 400)
  {
    return Fill(size, [&](char* out) { return searcher_->GetPopupHint(text, place, number, out, size); });
  }
  Answer NextPopup(int size = 400)
  {
    return Fill(size, [&](char* out) { return searcher_->GetNextPopupHint(out, size); });
  }
  Answer Address(const char* text, const char* place = "", int size = 400)
  {
    return Fill(size, [&](char* out) { return searcher_->GetAddressHint(text, place, out, size); });
  }
  Answer NextAddress(int size = 400)
  {
    return Fill(size, [&](char* out) { return searcher_->GetNextAddressHint(out, size); });
  }

  /** All hints of a list, with "|" for TAB. */
  Strings Popups(const char* text, const char* place = "", int number = 0)
  {
    return Rest(Popup(text, place, number), [this] { return NextPopup(); });
  }
  Strings Addresses(const char* text, const char* place = "")
  {
    return Rest(Address(text, place), [this] { return NextAddress(); });
  }

  DatabasePointer database_ = OpenSmall();
  Searcher searcher_{*database_};

 private:
  template <class Operation>
  static Answer Fill(int size, Operation operation)
  {
    std::string buffer(static_cast<std::size_t>(size), '#');
    const int status = operation(buffer.data());
    return {status, buffer.substr(0, buffer.find('\0'))};
  }

  template <class Next>
  static Strings Rest(Answer answer, Next next)
  {
    Strings all;
    for (; answer.status == 0 && answer.text != kEnd && all.size() < 1000; answer = next()) {
      std::replace(answer.text.begin(), answer.text.end(), '\t', '|');
      all.push_back(answer.text);
    }
    EXPECT_EQ(answer.status, 0);
    EXPECT_EQ(next(), (Answer{0, kEnd})) << "the end stays the end";
    return all;
  }
};

TEST_F(HintsTest, ExamplesOfTheDocumentation)
{
  EXPECT_THAT(Popups("rich"), ElementsAre("RICHMOND NSW 2753|L|2||0", "RICHMOND VIC 3121|L|2||0"));
  EXPECT_THAT(Popups("3/12 geo"), ElementsAre("UNIT 3 LEVEL 2 12-14 GEORGE STREET, SYDNEY NSW 2000|A|1|30000013|0"));
  EXPECT_THAT(Popups("1 windsor st, rich", "VIC"), ElementsAre("1 WINDSOR STREET, RICHMOND VIC 3121|A|1|30000132|0"));
  EXPECT_THAT(Popups("30 george"), ElementsAre("30 GEORGE STREET, SYDNEY NSW 2000|B|4||0",
                                               "SHOP 1 30 GEORGE STREET, SYDNEY NSW 2000|A|1|30000032|0",
                                               "UNIT 1 30 GEORGE STREET, SYDNEY NSW 2000|A|1|30000030|0",
                                               "CARSPACE 2 30 GEORGE STREET, SYDNEY NSW 2000|A|1|30000033|0",
                                               "UNIT 2 30 GEORGE STREET, SYDNEY NSW 2000|A|1|30000031|0"));
  EXPECT_THAT(Popups("geroge", "", 1), ElementsAre("GEORGE STREET, SYDNEY NSW 2000|S|18||2"));
  EXPECT_THAT(Popups("mt is", "", 1), ElementsAre("MOUNT ISA QLD 4825|L|1||1"));
  EXPECT_THAT(Popups("31"), ElementsAre("ST KILDA VIC 3182|L|3||0", "RICHMOND VIC 3121|L|2||0"));
  EXPECT_THAT(Popups("po box 123"), ElementsAre("PO BOX 123, SYDNEY NSW 2001|A|1|30000080|0"));
  EXPECT_THAT(Popups("sydney to"),
              testing::Contains("SYDNEY TOWN HALL, 483 GEORGE STREET, SYDNEY NSW 2000|A|1|30000002|0"));
  EXPECT_THAT(Popups("10 o connell"), ElementsAre("10 O'CONNELL STREET, SYDNEY NSW 2000|A|1|30000067|1"));
  EXPECT_THAT(Popups("george st 20a"), ElementsAre("20A GEORGE STREET, SYDNEY NSW 2000|A|1|30000021|1"));
  EXPECT_THAT(Addresses("11 smith rd"), ElementsAre("HARBOUR TOWER, 11 SMITH ROAD, SYDNEY NSW 2000|A|1|30000074|0",
                                                    "OPERA COURT, 11 SMITH ROAD, SYDNEY NSW 2000|A|1|30000075|0"));
}

TEST_F(HintsTest, OneStreetIsFollowedByItsNumbers)
{
  const Strings hints = Popups("george st", "", 4);
  EXPECT_THAT(hints,
              ElementsAre("GEORGE STREET, SYDNEY NSW 2000|S|18||0", "1 GEORGE STREET, SYDNEY NSW 2000|A|1|30000001|0",
                          "12-14 GEORGE STREET, SYDNEY NSW 2000|B|7|30000010|0",
                          "20 GEORGE STREET, SYDNEY NSW 2000|A|1|30000020|0"));
  EXPECT_EQ(Popups("george st", "", 100).size(), 10U);
  EXPECT_EQ(Addresses("george st").size(), 18U);
}

TEST_F(HintsTest, OneLocalityIsFollowedByItsStreets)
{
  EXPECT_THAT(Popups("richmond vic"),
              ElementsAre("RICHMOND VIC 3121|L|2||0", "20 BRIDGE ROAD, RICHMOND VIC 3121|A|1|30000130|0",
                          "1 WINDSOR STREET, RICHMOND VIC 3121|A|1|30000132|0"));
  EXPECT_EQ(Addresses("richmond vic").size(), 2U);
}

TEST_F(HintsTest, NumbersFitExactly)
{
  EXPECT_THAT(Popups("20 geo"), ElementsAre("20 GEORGE STREET, SYDNEY NSW 2000|A|1|30000020|0"));
  EXPECT_THAT(Popups("20a geo"), ElementsAre("20A GEORGE STREET, SYDNEY NSW 2000|A|1|30000021|0"));
  EXPECT_THAT(Popups("20B-22C geo"), ElementsAre("20B-22C GEORGE STREET, SYDNEY NSW 2000|A|1|30000022|0"));
  EXPECT_THAT(Popups("13 geo", "", 1), ElementsAre("12-14 GEORGE STREET, SYDNEY NSW 2000|B|7|30000010|0"));
  EXPECT_THAT(Popups("140 pitt", "", 1), ElementsAre("138-144 PITT STREET, SYDNEY NSW 2000|B|2|30000050|0"));
  EXPECT_THAT(Popups("900 geo"), IsEmpty());
  EXPECT_THAT(Popups("9/12 geo"), IsEmpty());
  EXPECT_THAT(Popups("lot 5 sm"), ElementsAre("LOT 5 SMITH ROAD, SYDNEY NSW 2000|A|1|30000070|0"));
  EXPECT_THAT(Popups("g07/12 geo"), ElementsAre("UNIT G07 12-14 GEORGE STREET, SYDNEY NSW 2000|A|1|30000016|0"));
}

TEST_F(HintsTest, OtherSpellingsAndTypingErrors)
{
  EXPECT_THAT(Popups("4 esplan"), ElementsAre("4 THE ESPLANADE, ST KILDA VIC 3182|A|1|30000104|1"));
  EXPECT_THAT(Popups("5 1st"), ElementsAre("5 1ST AVENUE, SYDNEY NSW 2000|A|1|30000065|0"));
  EXPECT_THAT(Popups("5 first"), ElementsAre("5 1ST AVENUE, SYDNEY NSW 2000|A|1|30000065|1"));
  EXPECT_THAT(Popups("10 o'con"), ElementsAre("10 O'CONNELL STREET, SYDNEY NSW 2000|A|1|30000067|0"));
  EXPECT_THAT(Popups("10 oconell"), ElementsAre("10 O'CONNELL STREET, SYDNEY NSW 2000|A|1|30000067|2"));
  EXPECT_THAT(Popups("8 acland st st kidla"), ElementsAre("8 ACLAND STREET, ST KILDA VIC 3182|A|1|30000106|2"));
  EXPECT_THAT(Popups("8 acland rd"), ElementsAre("8 ACLAND STREET, ST KILDA VIC 3182|A|1|30000106|1"));
  EXPECT_THAT(Popups("8 acx"), IsEmpty()) << "three letters are too few to see an error in";
}

TEST_F(HintsTest, TypesSuffixesAndPostalDeliveries)
{
  EXPECT_THAT(Popups("10 king st w"), ElementsAre("10 KING STREET WEST, SYDNEY NSW 2000|A|1|30000061|0"));
  EXPECT_THAT(Popups("12 king st e mel"), testing::Contains("12 KING STREET EAST, MELBOURNE VIC 3000|A|1|30000102|0"));
  EXPECT_THAT(Popups("4 factory cl"), ElementsAre("4 FACTORY CLOSE, DARWIN NT 0800|A|1|30000157|0"));
  EXPECT_THAT(Popups("gpo box c96 sy"), ElementsAre("GPO BOX C96, SYDNEY NSW 2001|A|1|30000082|0"));
  for (const char* typed : {"gpo b", "gpo box, syd"})
    EXPECT_THAT(Popups(typed),
                ElementsAre("GPO BOX, SYDNEY NSW 2001|S|2||0", "GPO BOX C96, SYDNEY NSW 2001|A|1|30000082|0",
                            "GPO BOX 99, SYDNEY NSW 2001|A|1|30000081|0"))
        << typed;
  EXPECT_THAT(Popups("gpo box 9"), ElementsAre("GPO BOX 99, SYDNEY NSW 2001|A|1|30000081|0"));
  EXPECT_THAT(Addresses("gpo b"),
              ElementsAre("GPO BOX C96, SYDNEY NSW 2001|A|1|30000082|0", "GPO BOX 99, SYDNEY NSW 2001|A|1|30000081|0"));
  EXPECT_THAT(Popups("po box 123", "2001"), ElementsAre("PO BOX 123, SYDNEY NSW 2001|A|1|30000080|0"));
}

/** Two addresses that read the same are one hint, with the identifier of the first. */
TEST_F(HintsTest, NoRepetitions)
{
  EXPECT_THAT(Popups("1/8 fact"), ElementsAre("UNIT 1 8 FACTORY LANE, DARWIN NT 0800|A|1|30000158|0"));
  EXPECT_THAT(Addresses("8 factory lane"), ElementsAre("UNIT 1 8 FACTORY LANE, DARWIN NT 0800|A|1|30000158|0"));
}

TEST_F(HintsTest, NothingIsNoFailure)
{
  for (const char* text : {"", " ", ",", "xyzzy", "900 george", "\xff\xfe"}) {
    EXPECT_EQ(Popup(text), (Answer{0, kEnd})) << text;
    EXPECT_EQ(NextPopup(), (Answer{0, kEnd})) << text;
    EXPECT_EQ(Address(text), (Answer{0, kEnd})) << text;
  }
  EXPECT_EQ(Popup(nullptr, nullptr), (Answer{0, kEnd}));
  EXPECT_EQ(Address(nullptr, nullptr), (Answer{0, kEnd}));
  EXPECT_THAT(Popups("geo", "Melbourne"), IsEmpty());
}

TEST_F(HintsTest, NumberLimitsTheList)
{
  for (const int number : {1, 2, 3, 7, 9, 1000000})
    EXPECT_LE(Popups("s", "", number).size(), static_cast<std::size_t>(number));
  EXPECT_EQ(Popups("s", "", 1).size(), 1U);
  EXPECT_EQ(Popups("george st", "", 0), Popups("george st", "", 10));
  EXPECT_EQ(Popups("george st", "", -5), Popups("george st", "", 10));
}

TEST_F(HintsTest, ShortBuffersLeaveTheHintWhereItIs)
{
  const std::string first = Popup("rich").text;
  const int size = static_cast<int>(first.size()) + 1;
  for (int shorter = 1; shorter < size; ++shorter) {
    EXPECT_EQ(Popup("rich", "", 0, shorter), (Answer{PAF_ERR_BUFFER_TOO_SMALL, ""})) << shorter;
    EXPECT_EQ(NextPopup(size).text, first);
  }
  EXPECT_EQ(searcher_->GetPopupHint("rich", "", 0, nullptr, 0), PAF_ERR_BUFFER_TOO_SMALL);
  EXPECT_EQ(NextPopup().text, first);
  EXPECT_NE(NextPopup().text, first);
}

TEST_F(HintsTest, NextNeedsAStart)
{
  EXPECT_EQ(NextPopup(), (Answer{PAF_AU_ERR_NO_ENUMERATION, ""}));
  EXPECT_EQ(NextAddress(), (Answer{PAF_AU_ERR_NO_ENUMERATION, ""}));
  Popup("rich");
  EXPECT_EQ(NextAddress().status, PAF_AU_ERR_NO_ENUMERATION) << "the two lists are apart";
  EXPECT_EQ(NextPopup().status, 0);
  const std::string tooLong(4097, 'A');
  EXPECT_EQ(Popup(tooLong.c_str()), (Answer{PAF_AU_ERR_INPUT_TOO_LONG, ""}));
  EXPECT_EQ(NextPopup().status, PAF_AU_ERR_NO_ENUMERATION) << "a refused text ends the list before";
  EXPECT_EQ(Popup("rich", tooLong.c_str()), (Answer{PAF_AU_ERR_INPUT_TOO_LONG, ""}));
}

TEST_F(HintsTest, TheListsRunApartFromEachOtherAndFromSearches)
{
  Popup("george st", "", 100);
  Address("richmond");
  searcher_.Lookup("1 George St Sydney");
  const int status = searcher_->GetFindStatus();
  EXPECT_EQ(NextPopup().text, "1 GEORGE STREET, SYDNEY NSW 2000\tA\t1\t30000001\t0");
  EXPECT_THAT(NextAddress().text, testing::HasSubstr("RICHMOND"));
  EXPECT_EQ(searcher_->GetFindStatus(), status);
}

TEST_F(HintsTest, DelimiterSeparatesTheFields)
{
  searcher_.SetProperty("Delimiter", ",");
  EXPECT_EQ(Popup("8 acland").text, "8 ACLAND STREET  ST KILDA VIC 3182,A,1,30000106,0");
  EXPECT_EQ(NextPopup().text, ",,,,");
}

TEST(Hints, NeedAnOpenDatabase)
{
  const DatabasePointer database(GetDb());
  Searcher searcher(*database);
  char out[100] = "#";
  EXPECT_EQ(searcher->GetPopupHint("a", "", 1, out, sizeof out), PAF_AU_ERR_NOT_OPEN);
  EXPECT_STREQ(out, "");
  EXPECT_EQ(searcher->GetNextPopupHint(out, sizeof out), PAF_AU_ERR_NOT_OPEN);
  EXPECT_EQ(searcher->GetAddressHint("a", "", out, sizeof out), PAF_AU_ERR_NOT_OPEN);
  EXPECT_EQ(searcher->GetNextAddressHint(out, sizeof out), PAF_AU_ERR_NOT_OPEN);
}

}  // namespace
}  // namespace arf_test
