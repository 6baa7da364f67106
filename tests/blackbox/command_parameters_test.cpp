// How commands and their parameters are read, and the commands that open and close.
#include <gtest/gtest.h>

#include <algorithm>
#include <climits>

#include "blackbox/support/command_call.h"
#include "blackbox/support/fake.h"
#include "blackbox/support/row_name.h"
#include "blackbox/support/session.h"
#include "qxpaf/paf.h"

namespace blackbox {
namespace {

/** What stands behind "FixLastLine;", of which only the Id 1 is open, and what is left of it as data. */
struct ParameterRow
{
  const char* name;
  const char* input;
  bool idRead;
  const char* data;
};

const ParameterRow kParameters[] = {
    {"Plain", "Id=1;data", true, "data"},
    {"KeyInCapitals", "ID=1;data", true, "data"},
    {"KeyInSmallLetters", "id=1;data", true, "data"},
    {"KeyInMixedCase", "iD=1;data", true, "data"},
    {"NoData", "Id=1;", true, ""},
    {"DataThatIsATab", "Id=1;\t", true, "\t"},
    {"DataWithEqualsSign", "Id=1;a=b", true, "a=b"},
    {"DataWithSemicolon", "Id=1;a;b", true, "a;b"},
    {"DataWithBoth", "Id=1;a=b;c", true, "a=b;c"},
    {"RepeatedKey", "Id=1;Id=9;data", true, "Id=9;data"},
    {"EqualsSignInTheValue", "Id=1=2;data", true, "data"},
    {"TabInTheValue", "Id=1\t;data", true, "data"},
    {"BlankBeforeTheNumber", "Id= 1;data", true, "data"},
    {"TextBehindTheNumber", "Id=1x;data", true, "data"},
    {"SignedNumber", "Id=+01;data", true, "data"},
    {"NoNumber", "Id=x;data", false, "data"},
    {"EmptyValue", "Id=;data", false, "data"},
    {"OtherKeyIsLost", "Other=1;data", false, "data"},
    {"OtherKeyInThePlaceOfTheId", "Other=1;Id=1;data", false, "Id=1;data"},
    {"EmptyKey", "=1;data", false, "data"},
    {"LongerKey", "Idd=1;data", false, "data"},
    {"ShorterKey", "I=1;data", false, "data"},
    {"BlankBeforeTheKey", " Id=1;data", false, "data"},
    {"BlankBehindTheKey", "Id =1;data", false, "data"},
    {"NothingAtAll", "", false, ""},
    {"Missing", "data", false, "data"},
    {"NoSemicolon", "Id=1", false, "Id=1"},
    {"NoEqualsSign", "Id 1;data", false, "Id 1;data"},
    {"SemicolonBeforeTheEqualsSign", "data;Id=1;", false, "data;Id=1;"},
    {"OnlyASemicolon", ";Id=1;data", false, ";Id=1;data"},
    {"TabBeforeTheEqualsSign", "\tId=1;data", false, "\tId=1;data"},
    {"TabInTheKey", "Id\t=1;data", false, "Id\t=1;data"},
    {"TabInFrontOfEverything", "Sydney\tNSW\tId=1;x", false, "Sydney\tNSW\tId=1;x"},
};

class ParameterTest : public SessionTest, public testing::WithParamInterface<ParameterRow>
{
};

INSTANTIATE_TEST_SUITE_P(Every, ParameterTest, testing::ValuesIn(kParameters), RowName());

TEST_P(ParameterTest, IsReadOrLeftInTheData)
{
  ASSERT_EQ(id, 1);
  fake.Answer(kFakeFixLastLine, 12);  // a failure leaves the data at the buffer's start
  CommandCall call(std::string("FixLastLine;") + GetParam().input);
  EXPECT_EQ(call.Status(), GetParam().idRead ? 12 : PAF_ERR_INVALID_ID);
  EXPECT_EQ(call.Text(), GetParam().data);
  ASSERT_EQ(fake.Count(kFakeFixLastLine), GetParam().idRead ? 1u : 0u);
  if (GetParam().idRead) {
    EXPECT_EQ(fake.Last(kFakeFixLastLine).arguments.at(0), GetParam().data);
  }
}

/** Two parameters, one step for each. */
struct PairRow
{
  const char* name;
  const char* input;  // of FormatAddress, whose parameters are Id and Options
  int options;
  const char* data;
};

const PairRow kPairs[] = {
    {"Both", "Id=1;Options=7;x", 7, "x"},
    {"OnlyTheId", "Id=1;x", 0, "x"},
    {"NegativeOptions", "Id=1;Options=-5;x", -5, "x"},
    {"OptionsInAnyCase", "Id=1;oPTIONS=7;x", 7, "x"},
    {"EmptyOptions", "Id=1;Options=;x", 0, "x"},
    {"NoNumber", "Id=1;Options=many;x", 0, "x"},
    {"LargestNumber", "Id=1;Options=2147483647;x", INT_MAX, "x"},
    {"OtherKeyInThePlaceOfOptions", "Id=1;Other=7;x", 0, "x"},
    {"OptionsTooLate", "Id=1;Other=7;Options=5;x", 0, "Options=5;x"},
    {"IdAgain", "Id=1;Id=9;x", 0, "x"},
    {"OptionsTwice", "Id=1;Options=7;Options=8;x", 7, "Options=8;x"},
    {"TabEndsTheParameters", "Id=1;\tOptions=7;x", 0, "\tOptions=7;x"},
    {"ThirdStaysInTheData", "Id=1;Options=7;More=1;x", 7, "More=1;x"},
};

class PairTest : public SessionTest, public testing::WithParamInterface<PairRow>
{
};

INSTANTIATE_TEST_SUITE_P(Every, PairTest, testing::ValuesIn(kPairs), RowName());

TEST_P(PairTest, IsReadInItsOrder)
{
  CommandCall call(std::string("FormatAddress;") + GetParam().input);
  EXPECT_EQ(call.Status(), 0);
  const Call got = fake.Last(kFakeFormatAddress);
  EXPECT_EQ(got.arguments.at(0), GetParam().data);
  EXPECT_EQ(got.arguments.at(2), GetParam().options);
}

TEST_F(SessionTest, ParametersInTheWrongOrderAreLost)
{
  for (const std::string input : {"Options=7;x", "Options=7;Id=1;x"}) {
    CommandCall call("FormatAddress;" + input);
    EXPECT_EQ(call.Status(), PAF_ERR_INVALID_ID) << input;
  }
  CommandCall lenient("LookupAddress;Lenient=True;1 High St");
  EXPECT_EQ(lenient.Status(), PAF_ERR_INVALID_ID);
  EXPECT_EQ(lenient.Text(), "1 High St");
  CommandCall both("LookupAddress;Lenient=True;Id=1;1 High St");
  EXPECT_EQ(both.Status(), PAF_ERR_INVALID_ID);
  EXPECT_EQ(both.Text(), "1 High St");
  EXPECT_EQ(fake.Count(kFakeLookupAddress), 0u);
}

TEST_F(SessionTest, OnlyTrueIsLenient)
{
  struct Row
  {
    const char* value;
    int amas;
  };
  for (const Row& row :
       {Row{"True", 0}, Row{"TRUE", 0}, Row{"true", 0}, Row{"tRuE", 0}, Row{"False", 1}, Row{"1", 1}, Row{"yes", 1},
        Row{"", 1}, Row{"Tru", 1}, Row{"Truex", 1}, Row{" True", 1}, Row{"True ", 1}, Row{"True=True", 1}}) {
    CommandCall call("LookupAddress;Id=1;Lenient=" + std::string(row.value) + ";1 High St");
    EXPECT_EQ(call.Status(), 0);
    EXPECT_EQ(fake.Last(kFakeLookupAddress).arguments.at(3), row.amas) << row.value;
    EXPECT_EQ(fake.Last(kFakeLookupAddress).arguments.at(0), "1 High St");
  }
}

TEST_F(SessionTest, UnknownCommandsEmptyTheBuffer)
{
  fake->clearCalls();
  for (const std::string input :
       {"Nothing;Id=1;data", "Nothing;", ";", ";Id=1;", "OpenArfs;", "OpenAr;", " CloseArf;Id=1;", "CloseArf ;Id=1;",
        "CloseArf\t;Id=1;", "pafClosePafId;Id=1;", "FormatAddressS;Id=1;", "Id=1;CloseArf;"}) {
    for (int size : {-1, 0, 1, 100}) {
      CommandCall call(input, size);
      EXPECT_EQ(call.Status(), 0) << input;
      EXPECT_EQ(call.Text(), "") << input;
    }
  }
  EXPECT_EQ(fake.Sequence(), "");
}

TEST_F(SessionTest, WithoutASemicolonNoParameterIsRead)
{
  for (const std::string input :
       {"CloseArf", "CloseArf Id=1", "FixLastLine", "GetProperties", "LookupByGeocode", "FormatAddress", "CloseArfId=1",
        "SetStateFilter", "DpidToAddress", "OpenArf", "x", ""}) {
    for (int size : {-1, 0, 1, 100}) CommandCall call(input, size);
  }
  char out[8];
  EXPECT_EQ(pafGetNextAddressId(id, out, sizeof out), 0) << "the instance is still open";
  EXPECT_EQ(fake.Count(kFakeFixLastLine), 0u);
}

TEST_F(SessionTest, CloseArfClosesAndEmpties)
{
  for (int expected = 2; expected <= 4; ++expected) ASSERT_EQ(Open("DLL:FakeTwo;/session"), expected);
  for (const std::string input : {"CLOSEARF;ID=3;", "CloseArf;Id=2;ignored", "closearf;id=4;"}) {
    CommandCall call(input);
    EXPECT_EQ(call.Status(), 0) << input;
    EXPECT_EQ(call.Text(), "") << input;
  }
  EXPECT_EQ(fake->counter(kFakeLiveSearchers), 1);
  CommandCall atSizeZero("CloseArf;Id=1;", 0);
  EXPECT_EQ(atSizeZero.Status(), 0);
  EXPECT_EQ(atSizeZero.Text(), "");
  EXPECT_EQ(fake->counter(kFakeLiveSearchers), 0);
}

TEST_F(SessionTest, CloseArfLeavesTheBufferAloneOnFailure)
{
  for (const std::string parameters : {"", "Id=0;", "Id=-1;", "Id=999999;", "Other=1;", "Id=x;"}) {
    CommandCall call("CloseArf;" + parameters);
    EXPECT_EQ(call.Status(), PAF_ERR_INVALID_ID) << parameters;
    EXPECT_EQ(call.Text(), "CloseArf");
  }
  {
    BusyInstance busy(fake, id);
    CommandCall call("CloseArf;Id=1;");
    EXPECT_EQ(call.Status(), PAF_ERR_ID_IN_USE);
    EXPECT_EQ(call.Text(), "CloseArf");
  }
  ASSERT_EQ(pafForceCloseAll(), 0);
  CommandCall call("CloseArf;Id=1;");
  EXPECT_EQ(call.Status(), PAF_ERR_NO_SEARCHER);
  EXPECT_EQ(call.Text(), "CloseArf");
}

/** OpenArf on the Australian fake. */
class OpenArfTest : public testing::Test
{
 protected:
  static constexpr const char* kInput = "OpenArf;Database=AU./path;";

  Workspace workspace{std::vector<std::string>{}};
  Fake au{"libqxarfau.so"};
};

TEST_F(OpenArfTest, AnswersTheIdFromNineCharactersOn)
{
  int id = 0;
  for (int size : {-7, -1, 0, 1, 5, 6, 7, 8, 9, 10, 17, 18, 19, 20, 21, 22, 100}) {
    CommandCall call(kInput, size);
    ++id;
    EXPECT_EQ(call.Status(), 0) << "size " << size;
    EXPECT_EQ(call.Text(), size <= 8 ? "" : std::to_string(id)) << "size " << size;
    EXPECT_EQ(au->counter(kFakeLiveSearchers), id) << "it is open all the same";
  }
  for (; id > 0; --id) EXPECT_EQ(pafClosePafId(id), 0);
}

TEST_F(OpenArfTest, OpensAsOpenArfIdWithModeZeroDoes)
{
  for (const char* mode : {"OpenPaf=Disk", "OpenPaf=Ram", "OpenPaf=Map", "Other=1"}) {
    workspace.Configure({mode});
    const int direct = Open("AU./direct", 0);
    const auto expected = au.Last(kFakeDbOpen).arguments;
    EXPECT_EQ(pafClosePafId(direct), 0);
    CommandCall call("OpenArf;Database=AU./direct;");
    const auto got = au.Last(kFakeDbOpen).arguments;
    EXPECT_EQ(got.at(0).text, expected.at(0).text);
    EXPECT_EQ(got.at(1).raw.number, expected.at(1).raw.number) << mode;
    EXPECT_EQ(au.Count(kFakeDbOpen) % 2, 0u);
    EXPECT_EQ(pafClosePafId(1), 0);
  }
}

TEST_F(OpenArfTest, ReadsTheDatabasesName)
{
  struct Row
  {
    const char* input;
    const char* path;
  };
  for (const Row& row : {Row{"OPENARF;DATABASE=AU./a;", "/a"}, Row{"openarf;database=AU./b=c;", "/b=c"},
                         Row{"OpenArf;Database=AU./with blank;more", "/with blank"},
                         Row{"OpenArf;Database=AU./tab\there;", "/tab\there"}}) {
    CommandCall call(row.input);
    EXPECT_EQ(call.Text(), "1") << row.input;
    EXPECT_EQ(au.Last(kFakeDbOpen).arguments.at(0), row.path);
    EXPECT_EQ(pafClosePafId(1), 0);
  }
}

TEST_F(OpenArfTest, OpensTheDefaultDatabaseWithoutAName)
{
  for (const std::string input : {"OpenArf;", "OpenArf;Database=;", "OpenArf;Id=AU./wrong;", "OpenArf;AU./no key"}) {
    CommandCall none(input);
    EXPECT_EQ(none.Status(), 0);
    EXPECT_EQ(none.Text(), "Error:ARF not installed") << input;
  }
  const std::string path = workspace.MakeDatabase("default", "DATABASENAME=AU\n");
  workspace.Configure({"PafDir=@/default"});
  for (const std::string input : {"OpenArf;", "OpenArf;Database=;"}) {
    CommandCall call(input);
    EXPECT_EQ(call.Text(), "1") << input;
    EXPECT_EQ(au.Last(kFakeDbOpen).arguments.at(0), path);
    EXPECT_EQ(pafClosePafId(1), 0);
  }
}

struct FailureRow
{
  const char* name;
  int status;
  const char* text;         // the plug-in's
  const char* description;  // "" where there is only the number
};

const FailureRow kFailures[] = {
    {"WithAReason", 77, "closed today, sorry", "closed today, sorry"},
    {"WithALibraryText", 6495, "", "ERR_QXARF_OPEN_FILE"},
    {"WithoutText", 77, "", ""},
    {"WithTheLongestNumber", INT_MIN, "", ""},
};

class OpenArfFailureTest : public OpenArfTest, public testing::WithParamInterface<FailureRow>
{
};

INSTANTIATE_TEST_SUITE_P(Every, OpenArfFailureTest, testing::ValuesIn(kFailures), RowName());

TEST_P(OpenArfFailureTest, AnswersErrorAndTheDescriptionFromSevenCharactersOn)
{
  au.Answer(kFakeDbOpen, GetParam().status, GetParam().text);
  for (int size : {-7, -1, 0, 1, 5, 6, 7, 8, 9, 10, 16, 17, 18, 19, 20, 21, 24, 25, 26, 27, 100}) {
    CommandCall call(kInput, size);
    EXPECT_EQ(call.Status(), 0) << "size " << size;
    if (size <= 6) {
      EXPECT_EQ(call.Text(), "OpenArf") << "left as it is at size " << size;
      continue;
    }
    std::string expected = std::string(GetParam().description).substr(0, static_cast<size_t>(size) - 7);
    if (expected.empty() && size >= 18) expected = std::to_string(GetParam().status);
    EXPECT_EQ(call.Text(), "Error:" + expected) << "size " << size;
  }
  EXPECT_EQ(au->counter(kFakeLiveSearchers), 0);
}

TEST_P(OpenArfFailureTest, ConsumesTheDescriptionThatItTold)
{
  au.Answer(kFakeDbOpen, GetParam().status, GetParam().text);
  CommandCall call(kInput);
  EXPECT_EQ(Describe(GetParam().status), GetParam().status == 6495 ? "ERR_QXARF_OPEN_FILE" : "");
}

TEST_F(OpenArfTest, JoinsTheReasonToTheLibrarysText)
{
  au.Answer(kFakeDbOpen, 6495, "no file x");
  CommandCall wide(kInput, 100);
  EXPECT_EQ(wide.Text(), "Error:ERR_QXARF_OPEN_FILE. no file x");
  // The description is told whole or without the reason: 19 + 2 + 9 characters need more than 30 of size - 6.
  CommandCall exact(kInput, 37);
  EXPECT_EQ(exact.Text(), "Error:ERR_QXARF_OPEN_FILE. no file x");
  CommandCall narrow(kInput, 36);
  EXPECT_EQ(narrow.Text(), "Error:ERR_QXARF_OPEN_FILE");
}

TEST_F(OpenArfTest, AWholeSessionThroughOneBuffer)
{
  au.Answer(kFakeLookupAddress, 0, "12345678");
  EXPECT_EQ(CommandCall(kInput).Text(), "1");
  CommandCall lookup("LookupAddress;Id=1;1 High St");
  EXPECT_EQ(lookup.Status(), 0);
  EXPECT_EQ(lookup.Text(), "12345678");
  CommandCall property("GetProperties;Id=1;OpenARF");
  EXPECT_EQ(property.Text(), "AU./path");
  CommandCall version("GetProperties;ArfLibVersion", 12);
  EXPECT_EQ(version.Text(), "5.10.246.2");
  CommandCall tooSmall("GetProperties;ArfLibVersion", 9);
  EXPECT_EQ(tooSmall.Status(), PAF_ERR_BUFFER_TOO_SMALL);
  EXPECT_EQ(tooSmall.Text(), "");
  CommandCall exact("GetProperties;ArfLibVersion", 10);
  EXPECT_EQ(exact.Text(), "5.10.246.2");
  EXPECT_EQ(CommandCall("CloseArf;Id=1;").Status(), 0);
  EXPECT_EQ(CommandCall("CloseArf;Id=1;").Status(), PAF_ERR_INVALID_ID);
}

}  // namespace
}  // namespace blackbox
