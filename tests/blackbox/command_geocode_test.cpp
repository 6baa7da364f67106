// The commands that build records: the delimiter, the geocode's parameters, its range, and whether it is unique.
#include <gtest/gtest.h>

#include "blackbox/support/command_call.h"
#include "blackbox/support/fake.h"
#include "blackbox/support/row_name.h"
#include "blackbox/support/session.h"
#include "qxpaf/paf.h"

namespace blackbox {
namespace {

constexpr const char* kRange = "LatLongSearchRange";

class RecordTest : public SessionTest
{
 protected:
  void SetUp() override
  {
    SessionTest::SetUp();
    ASSERT_EQ(id, 1);
    fake->clearCalls();
  }

  std::string Query() { return fake.Last(kFakeGetAddress).arguments.at(0).text; }
};

std::string Record(size_t fields, const std::string& rest, char delimiter = '\t')
{
  return std::string(fields, delimiter) + rest;
}

struct RecordCommand
{
  const char* name;
  size_t fields;
};
constexpr RecordCommand kRecordCommands[] = {{"LookupByAddressId", 7}, {"LookupByGeocode", 42}};

TEST_F(RecordTest, IsBuiltWithThePluginsDelimiterOrTab)
{
  struct Row
  {
    const char* property;  // null: the plug-in writes nothing
    char delimiter;
  };
  for (const Row& row : {Row{"", '\t'}, Row{nullptr, '\t'}, Row{"\t", '\t'}, Row{"|", '|'}, Row{",;", ','},
                         Row{"abcdef", 'a'}, Row{"\xff", '\xff'}, Row{"%", '%'}}) {
    fake->setProperty("Delimiter", row.property, 0);
    for (const RecordCommand& command : kRecordCommands) {
      fake->clearCalls();
      CommandCall call(command.name + std::string(";Id=1;a\tb"));
      EXPECT_EQ(call.Status(), 0);
      EXPECT_EQ(fake.Sequence(), "GetProperties GetAddress ");
      EXPECT_EQ(fake.Last(kFakeGetProperties).arguments.at(0), "Delimiter");
      EXPECT_EQ(fake.Last(kFakeGetProperties).arguments.at(2), 4);
      EXPECT_EQ(Query(), Record(command.fields, "a\tb", row.delimiter));
    }
  }
}

TEST_F(RecordTest, IsNotBuiltWhenTheDelimiterFails)
{
  fake->setProperty("Delimiter", "|", 12);
  for (const std::string command :
       {"LookupByAddressId;Id=1;x", "LookupByGeocode;Id=1;x", "LookupByGeocode;Range=5;Unique=True;Id=1;x"}) {
    fake->clearCalls();
    CommandCall call(command);
    EXPECT_EQ(call.Status(), 12);
    EXPECT_EQ(fake.Sequence(), "GetProperties ");
    EXPECT_EQ(Describe(12), "fake text for 12");
  }
}

struct GeocodeRow
{
  const char* name;
  const char* parameters;
  const char* rest;
  const char* sent;  // behind the 42 delimiters
  bool asksNext = false;
};

const GeocodeRow kGeocodes[] = {
    {"Plain", "Id=1;", "G1", "G1"},
    {"CommaWithoutLatLong", "Id=1;", "-33.8,151.2", "-33.8,151.2"},
    {"LatLong", "Id=1;LatLong=True;", "-33.8,151.2", "-33.8\t151.2"},
    {"LatLongInAnyCase", "iD=1;lATLONG=tRUE;", "-33.8,151.2", "-33.8\t151.2"},
    {"LatLongFirst", "LatLong=True;Id=1;", "-33.8,151.2", "-33.8\t151.2"},
    {"OnlyTheFirstComma", "Id=1;LatLong=True;", "1,2,3", "1\t2,3"},
    {"CommaInFront", "Id=1;LatLong=True;", ",2", "\t2"},
    {"CommaAtTheEnd", "Id=1;LatLong=True;", "1,", "1\t"},
    {"NoComma", "Id=1;LatLong=True;", "1 2", "1 2"},
    {"NoData", "Id=1;LatLong=True;", "", ""},
    {"LatLongFalse", "Id=1;LatLong=False;", "1,2", "1,2"},
    {"LatLongYes", "Id=1;LatLong=Yes;", "1,2", "1,2"},
    {"LatLongEmpty", "Id=1;LatLong=;", "1,2", "1,2"},
    {"OtherKeysAreSkipped", "A=1;Id=1;B=;=;LatLong=True;C=3;", "1,2", "1\t2"},
    {"TheLastIdCounts", "Id=9;Id=1;", "x", "x"},
    {"DataWithEqualsSign", "Id=1;", "a=b", "a=b"},
    {"DataWithSemicolon", "Id=1;", "a;b=c;", "a;b=c;"},
    {"TabEndsTheParameters", "Id=1;", "\tLatLong=True;1,2", "\tLatLong=True;1,2"},
    {"Unique", "Id=1;Unique=True;", "1,2", "1,2", true},
    {"UniqueInAnyCase", "uNIQUE=tRUE;Id=1;", "1,2", "1,2", true},
    {"UniqueYes", "Id=1;Unique=Yes;", "x", "x"},
    {"UniqueTakenBack", "Unique=True;Unique=False;Id=1;", "x", "x"},
    {"UniqueTakenBackByNothing", "Unique=True;Unique=;Id=1;", "x", "x"},
    {"UniqueGivenAgain", "Unique=False;Unique=True;Id=1;", "x", "x", true},
    {"UniqueBehindLatLong", "Id=1;LatLong=True;Unique=True;", "1,2", "1\t2", true},
    {"LatLongBehindUnique", "Id=1;Unique=True;LatLong=True;", "1,2", "1\t2"},
    {"LatLongBetweenUniques", "Unique=True;LatLong=True;Unique=True;Id=1;", "1,2", "1\t2", true},
};

class GeocodeTest : public RecordTest, public testing::WithParamInterface<GeocodeRow>
{
};

INSTANTIATE_TEST_SUITE_P(Every, GeocodeTest, testing::ValuesIn(kGeocodes), RowName());

TEST_P(GeocodeTest, IsAskedForAsItsParametersSay)
{
  CommandCall call(std::string("LookupByGeocode;") + GetParam().parameters + GetParam().rest);
  EXPECT_EQ(call.Status(), 0);
  EXPECT_EQ(Query(), Record(42, GetParam().sent));
  EXPECT_EQ(fake.Sequence(), std::string("GetProperties GetAddress ") + (GetParam().asksNext ? "GetNextAddress " : ""));
}

TEST_F(RecordTest, LatLongTakesThePluginsDelimiter)
{
  fake->setProperty("Delimiter", "|", 0);
  CommandCall call("LookupByGeocode;Id=1;LatLong=True;-33.8,151.2");
  EXPECT_EQ(Query(), Record(42, "-33.8|151.2", '|'));
}

TEST_F(RecordTest, AGeocodeWithoutAnIdIsRefused)
{
  for (const std::string parameters : {"", "Id=0;", "Id=1;Id=;", "Unique=True;", "LatLong=True;"}) {
    CommandCall call("LookupByGeocode;" + parameters + "1,2");
    EXPECT_EQ(call.Status(), PAF_ERR_INVALID_ID) << parameters;
  }
}

// ---- Range -------------------------------------------------------------------------------------------------------

/** The values that the property was set to, each followed by a blank. */
std::string RangesSet(const Fake& fake)
{
  std::string values;
  for (const Call& call : fake.Calls(kFakeSetProperties)) {
    EXPECT_EQ(call.arguments.at(0), kRange);
    values += call.arguments.at(1).text + " ";
  }
  return values;
}

TEST_F(RecordTest, ARangeIsSetForTheSearchAndTakenBack)
{
  fake->setProperty(kRange, "usual", 0);
  fake.Answer(kFakeGetAddress, 0, "an address");
  CommandCall call("LookupByGeocode;Id=1;Range=5=0;G1");
  EXPECT_EQ(call.Status(), 0);
  EXPECT_EQ(call.Text(), "an address");
  EXPECT_EQ(fake.Sequence(), "GetProperties GetProperties SetProperties GetAddress SetProperties ");
  const Call read = fake.Last(kFakeGetProperties);
  EXPECT_EQ(read.arguments.at(0), kRange);
  EXPECT_EQ(read.arguments.at(2), 64);
  EXPECT_EQ(RangesSet(fake), "5=0 usual ");
}

TEST_F(RecordTest, TheLastRangeCounts)
{
  fake->setProperty(kRange, "", 0);
  CommandCall call("LookupByGeocode;Range=1;Id=1;rANGE=2;G1");
  EXPECT_EQ(RangesSet(fake), "2  ");
}

TEST_F(RecordTest, ALongUsualRangeIsKeptAsFarAsItFits)
{
  fake->setProperty(kRange, std::string(63, 'r').c_str(), 0);
  CommandCall fits("LookupByGeocode;Id=1;Range=5;G1");
  EXPECT_EQ(RangesSet(fake), "5 " + std::string(63, 'r') + " ");
}

TEST_F(RecordTest, AFailedSearchKeepsTheRange)
{
  fake->setProperty(kRange, "usual", 0);
  fake.Answer(kFakeGetAddress, 12);
  CommandCall call("LookupByGeocode;Id=1;Range=5;Unique=True;G1");
  EXPECT_EQ(call.Status(), 12);
  EXPECT_EQ(RangesSet(fake), "5 ");
  EXPECT_EQ(fake.Count(kFakeGetNextAddress), 0u);
}

TEST_F(RecordTest, ARangeThatCannotBeReadEndsTheSearch)
{
  fake->setProperty(kRange, "usual", 12);
  CommandCall call("LookupByGeocode;Id=1;Range=5;G1");
  EXPECT_EQ(call.Status(), 12);
  EXPECT_EQ(fake.Sequence(), "GetProperties GetProperties ");
}

TEST_F(RecordTest, ARangeThatCannotBeSetEndsTheSearch)
{
  fake.Answer(kFakeSetProperties, 12, "no such range");
  CommandCall call("LookupByGeocode;Id=1;Range=5;G1");
  EXPECT_EQ(call.Status(), 12);
  EXPECT_EQ(fake.Sequence(), "GetProperties GetProperties SetProperties ");
  EXPECT_EQ(Describe(12), "no such range");
}

TEST_F(RecordTest, ARangeThatCannotBeTakenBackIsAFailure)
{
  fake->block(kFakeGetAddress);
  int status = 0;
  std::thread caller([&] { status = CommandCall("LookupByGeocode;Id=1;Range=5;Unique=True;G1").Status(); });
  ASSERT_GT(fake->waitUntilBlocked(kFakeGetAddress, 10000), 0);
  fake.Answer(kFakeSetProperties, 12, "no such range");
  fake->unblock(kFakeGetAddress);
  caller.join();
  EXPECT_EQ(status, 12);
  EXPECT_EQ(fake.Count(kFakeSetProperties), 2u);
  EXPECT_EQ(fake.Count(kFakeGetNextAddress), 0u);
}

// ---- Unique ------------------------------------------------------------------------------------------------------

struct UniqueRow
{
  const char* name;
  const char* delimiter;
  const char* second;  // the second answer
  bool unique;
};

const UniqueRow kUniques[] = {
    {"AnotherAddress", "|", "second", false},
    {"Empty", "|", "", true},
    {"OneDelimiterAndText", "|", "|second", false},
    {"SixDelimitersAndText", "|", "||||||second", false},
    {"SevenDelimitersAndText", "|", "|||||||second", true},
    {"OnlySixDelimiters", "|", "||||||", true},
    {"OnlySevenDelimiters", "|", "|||||||", true},
    {"OnlyOneDelimiter", "|", "|", true},
    {"ManyDelimiters", "|", "||||||||||||||||||||", true},
    {"SixOfSeveral", "ab", "abbaabsecond", false},
    {"SevenOfSeveral", "ab", "abbaabbsecond", true},
    {"AnotherDelimiterThanThePlugins", "|", "\t\t\t\t\t\t\tsecond", false},
    {"TabsAsDelimiter", "\t", "\t\t\t\t\t\t\tsecond", true},
    {"EmptyPropertyCountsNothing", "", "\t\t\t\t\t\t\t\t\t", false},
    {"EmptyPropertyAndEmptyAnswer", "", "", true},
    {"EmptyPropertyAndAnAddress", "", "second", false},
};

class UniqueTest : public RecordTest, public testing::WithParamInterface<UniqueRow>
{
};

INSTANTIATE_TEST_SUITE_P(Every, UniqueTest, testing::ValuesIn(kUniques), RowName());

TEST_P(UniqueTest, TheFirstAddressIsToldOnlyWhenThereIsNoSecond)
{
  const std::string first = "the first";
  fake->setProperty("Delimiter", GetParam().delimiter, 0);
  fake.Answer(kFakeGetAddress, 0, first.c_str());
  fake.Answer(kFakeGetNextAddress, 0, GetParam().second);
  CommandCall call("LookupByGeocode;Id=1;Unique=True;G1");
  EXPECT_EQ(call.Status(), 0);
  EXPECT_EQ(call.Text(), GetParam().unique ? first : "");
  EXPECT_EQ(fake.Last(kFakeGetNextAddress).arguments.at(0).raw.pointer, call.Start());
  EXPECT_EQ(fake.Last(kFakeGetNextAddress).arguments.at(1), 101);
}

TEST_F(RecordTest, AUniqueAddressIsToldInTheCharactersOfTheSize)
{
  const std::string first = "the first";
  fake.Answer(kFakeGetAddress, 0, first.c_str());
  for (size_t size : {0u, 1u, 8u, 9u, 10u, 3000u}) {
    CommandCall call("LookupByGeocode;Id=1;Unique=True;G1", static_cast<int>(size));
    EXPECT_EQ(call.Status(), 0);
    EXPECT_EQ(call.Text(), first.substr(0, size));
  }
}

TEST_F(RecordTest, AFailingNextAddressIsAFailure)
{
  fake.Answer(kFakeGetAddress, 0, "the first");
  fake.Answer(kFakeGetNextAddress, 12);
  CommandCall call("LookupByGeocode;Id=1;Unique=True;G1");
  EXPECT_EQ(call.Status(), 12);
  EXPECT_EQ(Describe(12), "fake text for 12");
}

TEST_F(RecordTest, TheRangeIsTakenBackBeforeTheSecondAddressIsAskedFor)
{
  fake->setProperty(kRange, "usual", 0);
  fake.Answer(kFakeGetAddress, 0, "the first");
  CommandCall call("LookupByGeocode;Unique=True;Range=5;Id=1;G1");
  EXPECT_EQ(call.Status(), 0);
  EXPECT_EQ(call.Text(), "the first");
  EXPECT_EQ(fake.Sequence(), "GetProperties GetProperties SetProperties GetAddress SetProperties GetNextAddress ");
}

}  // namespace
}  // namespace blackbox
