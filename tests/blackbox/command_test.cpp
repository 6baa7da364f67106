// Every command of the text interpreter: what it hands to the plug-in, what it answers, in how many characters.
#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <climits>

#include "blackbox/support/command_call.h"
#include "blackbox/support/default_session.h"
#include "blackbox/support/fake.h"
#include "blackbox/support/row_name.h"
#include "qxpaf/paf.h"

namespace blackbox {
namespace {

constexpr int kPluginCode = 12;
constexpr const char* kPluginText = "fake text for 12";
constexpr const char* kUnknownIdText = "Invalid Id passed to function";

/** What the plug-in should find in one place of its arguments. */
struct Expected
{
  enum Kind
  {
    kText,
    kData,  // the prefix `text` and the command's data behind it
    kNumber,
    kStart,  // the caller's buffer
    kSize,   // one more than the caller's size
    kOther   // something of the library's own
  };
  Kind kind;
  std::string text = "";
  long long number = 0;
};

Expected Text(const char* text)
{
  return {Expected::kText, text};
}
Expected Data(const std::string& prefix = "")
{
  return {Expected::kData, prefix};
}
Expected Number(long long number)
{
  return {Expected::kNumber, "", number};
}
const Expected kStart = {Expected::kStart};
const Expected kSize = {Expected::kSize};
const Expected kOther = {Expected::kOther};

/** How a command answers. */
enum class Answers
{
  kCutting,    // as much as fits
  kRefusing,   // 6406 when it does not fit
  kWithPlan,   // as much as fits, and nothing on failure, whose status is never told
  kWithErrors  // nothing, or why it failed
};

struct CommandRow
{
  const char* name;
  const char* command;
  const char* parameters;  // "@" stands for the Id of an open instance
  FakeOperation operation;
  std::vector<Expected> expected;
  Answers answers;
  size_t mostCharacters = 1000;  // it never answers more
  bool onDefault = false;        // works on the default instance, or does without an Id
};

const CommandRow kCommands[] = {
    {"LookupAddress",
     "LookupAddress",
     "Id=@;",
     kFakeLookupAddress,
     {Data(), kOther, Number(2048), Number(1)},
     Answers::kCutting},
    {"LookupAddressLenient",
     "LookupAddress",
     "Id=@;Lenient=True;",
     kFakeLookupAddress,
     {Data(), kOther, Number(2048), Number(0)},
     Answers::kCutting},
    {"LookupAddressNotLenient",
     "LookupAddress",
     "Id=@;Lenient=False;",
     kFakeLookupAddress,
     {Data(), kOther, Number(2048), Number(1)},
     Answers::kCutting},
    {"DpidToAddress",
     "DpidToAddress",
     "Dpid=12345;",
     kFakeGetAddress,
     {Text("\t\t\t\t\t\t\t12345"), kOther, Number(1024)},
     Answers::kRefusing,
     1000,
     true},
    {"SetGeographicalCodes",
     "SetGeographicalCodes",
     "Id=@;",
     kFakeSetGeographicalCodes,
     {Data(), kOther, Number(256)},
     Answers::kWithErrors},
    {"SetPointsOfInterest",
     "SetPointsOfInterest",
     "Id=@;",
     kFakeSetProperties,
     {Text("PointsOfInterest"), Data(), kOther, Number(256)},
     Answers::kWithErrors},
    {"SetOldPostcodeGif",
     "SetOldPostcodeGif",
     "Id=@;",
     kFakeSetProperties,
     {Text("OldPostcodeGif"), Data(), kOther, Number(256)},
     Answers::kWithErrors},
    {"SetGeographicalCodesFilter",
     "SetGeographicalCodesFilter",
     "Id=@;",
     kFakeSetProperties,
     {Text("GeographicalCodesFilter"), Data(), kOther, Number(256)},
     Answers::kWithErrors},
    {"SetStateFilter",
     "SetStateFilter",
     "Id=@;",
     kFakeSetProperties,
     {Text("StateFilter"), Data(), kOther, Number(256)},
     Answers::kWithErrors},
    {"SetAddressFilter",
     "SetAddressFilter",
     "Id=@;",
     kFakeSetProperties,
     {Text("AddressFilter"), Data(), kOther, Number(256)},
     Answers::kWithErrors},
    {"SetGifCommonMinimumPercent",
     "SetGifCommonMinimumPercent",
     "Id=@;",
     kFakeSetProperties,
     {Text("GifCommonMinimumPercent"), Data(), kOther, Number(256)},
     Answers::kWithErrors},
    {"LookupByAddressId",
     "LookupByAddressId",
     "Id=@;",
     kFakeGetAddress,
     {Data(std::string(7, '\t')), kStart, kSize},
     Answers::kCutting},
    {"LookupByGeocode",
     "LookupByGeocode",
     "Id=@;",
     kFakeGetAddress,
     {Data(std::string(42, '\t')), kStart, kSize},
     Answers::kCutting},
    {"FormatAddress",
     "FormatAddress",
     "Id=@;",
     kFakeFormatAddress,
     {Data(), kStart, Number(0), kSize},
     Answers::kCutting},
    {"FormatAddressOptions",
     "FormatAddress",
     "Id=@;Options=-7;",
     kFakeFormatAddress,
     {Data(), kStart, Number(-7), kSize},
     Answers::kCutting},
    {"FormatAddressOnDefault",
     "FormatAddress",
     "Id=0;Options=3;",
     kFakeFormatAddress,
     {Data(), kOther, Number(3), Number(250)},
     Answers::kCutting,
     249,
     true},
    {"ValidatePartialAddress",
     "ValidatePartialAddress",
     "Id=@;",
     kFakeValidatePartialAddress,
     {Data(), kOther, Number(10)},
     Answers::kCutting,
     9},
    {"FixLastLine", "FixLastLine", "Id=@;", kFakeFixLastLine, {Data(), kOther, Number(512)}, Answers::kCutting, 511},
    {"PostcodeToBsp", "PostcodeToBsp", "Id=@;", kFakeGetProperties, {Data("BSP:"), kStart, kSize}, Answers::kWithPlan},
    {"PostcodeToNpsp",
     "PostcodeToNpsp",
     "Id=@;",
     kFakeGetProperties,
     {Data("NPSP:"), kStart, kSize},
     Answers::kWithPlan},
    {"GetProperties", "GetProperties", "Id=@;", kFakeGetProperties, {Data(), kStart, kSize}, Answers::kCutting},
};

std::string WithId(std::string text, int id)
{
  const size_t at = text.find('@');
  return at == std::string::npos ? text : text.replace(at, 1, std::to_string(id));
}

template <int (*Change)(int)>
std::string Changed(std::string text)
{
  std::transform(text.begin(), text.end(), text.begin(), [](unsigned char c) { return static_cast<char>(Change(c)); });
  return text;
}

class CommandTest : public DefaultSessionTest, public testing::WithParamInterface<CommandRow>
{
 protected:
  const CommandRow& Row() const { return GetParam(); }
  Fake& Plugin() { return Row().onDefault ? au : fake; }
  void Program(int status, const std::string& text) { Plugin().Answer(Row().operation, status, text.c_str()); }

  std::string Input(const std::string& data, int instance) const
  {
    return Row().command + (";" + WithId(Row().parameters, instance)) + data;
  }
  std::string Input(const std::string& data = "some data") const { return Input(data, id); }

  void ExpectArguments(const std::string& data, CommandCall& call, int size);
};

INSTANTIATE_TEST_SUITE_P(Every, CommandTest, testing::ValuesIn(kCommands), RowName());

/** Whether an argument is what a row expects, in a call with this data and size. */
bool Arrived(const Argument& got, const Expected& expected, const std::string& data, const void* start, int size)
{
  switch (expected.kind) {
    case Expected::kText:
      return got == expected.text;
    case Expected::kData:
      return got == expected.text + data;
    case Expected::kNumber:
      return got == expected.number;
    case Expected::kStart:
      return got.Is(start);
    case Expected::kSize:
      return got == size + 1LL;
    default:
      return !got.Is(start);
  }
}

void CommandTest::ExpectArguments(const std::string& data, CommandCall& call, int size)
{
  const std::vector<Argument> got = Plugin().Last(Row().operation).arguments;
  ASSERT_EQ(got.size(), Row().expected.size());
  for (size_t i = 0; i < got.size(); ++i) {
    EXPECT_TRUE(Arrived(got[i], Row().expected[i], data, call.Start(), size))
        << "argument " << i << ": '" << got[i].text << "' or " << got[i].raw.number;
  }
}

TEST_P(CommandTest, HandsItsArgumentsOn)
{
  for (const std::string& data : {std::string("1 High St"), std::string(), std::string("a\tb\r\n"),
                                  std::string("\tId=9;\tx"), std::string("\xc3\xa9%s;;"), std::string(3000, 'd')}) {
    for (int size : {0, 1, 50, 5000}) {
      CommandCall call(Input(data), size);
      EXPECT_EQ(call.Status(), 0);
      ExpectArguments(data, call, size);
    }
  }
}

// Some commands move their data over their own parameters: the parameters must have been read before.
TEST_P(CommandTest, DataOfAnyLengthReachesTheInstanceOfTheParameters)
{
  for (size_t length = 0; length <= 80; ++length) {
    const std::string data(length, '7');
    CommandCall call(Input(data), 100);
    ASSERT_EQ(call.Status(), 0) << "with " << length << " characters of data";
    ExpectArguments(data, call, 100);
  }
}

TEST_P(CommandTest, NamesAndKeysCountInAnyCase)
{
  for (const std::string& input : {Changed<std::toupper>(Input("")), Changed<std::tolower>(Input(""))}) {
    Plugin()->clearCalls();
    CommandCall call(input);
    EXPECT_EQ(call.Status(), 0) << input;
    ExpectArguments("", call, 100);
  }
}

TEST_P(CommandTest, AnswersInTheCharactersOfTheSize)
{
  const std::string answer = "an answer!";
  Program(0, answer);
  for (int size = 0; size <= 14; ++size) {
    const auto length = static_cast<size_t>(size);
    CommandCall call(Input(), size);
    const bool refused = Row().answers == Answers::kRefusing && length < answer.size();
    EXPECT_EQ(call.Status(), refused ? PAF_ERR_BUFFER_TOO_SMALL : 0) << "size " << size;
    if (refused) {
      EXPECT_EQ(call.Text(), Row().command) << "untouched by the refusal";
    } else if (Row().answers == Answers::kWithErrors) {
      EXPECT_EQ(call.Text(), "");
    } else {
      EXPECT_EQ(call.Text(), answer.substr(0, std::min(length, Row().mostCharacters))) << "size " << size;
    }
  }
}

TEST_P(CommandTest, FillsItsBufferToTheLastByte)
{
  if (Row().answers == Answers::kWithErrors || Row().answers == Answers::kRefusing) return;
  for (size_t size : {0u, 1u, 8u, 9u, 10u, 248u, 249u, 250u, 510u, 511u, 512u, 900u}) {
    Program(0, std::string(size + 5, 'y'));
    CommandCall call(Input(), static_cast<int>(size));
    EXPECT_EQ(call.Status(), 0);
    EXPECT_EQ(call.Text(), std::string(std::min(size, Row().mostCharacters), 'y'));
  }
}

TEST_P(CommandTest, TouchesNothingOutsideForANegativeSize)
{
  Program(0, "an answer");
  for (int size : {-1, -2, -100, INT_MIN + 1, INT_MIN}) CommandCall(Input(), size);
}

TEST_P(CommandTest, TellsThePluginsFailure)
{
  fake->setProperty("Delimiter", "", 0);  // not the failing operation
  for (int status : {kPluginCode, 7777, -1, 6495}) {
    Program(status, "");
    CommandCall call(Input());
    EXPECT_EQ(call.Status(), Row().answers == Answers::kWithPlan ? 0 : status);
    if (Row().answers == Answers::kWithPlan) {
      EXPECT_EQ(call.Text(), "");
    }
  }
}

TEST_P(CommandTest, DescribesTheFailureOnceInTheBufferOrWhenAsked)
{
  fake->setProperty("Delimiter", "", 0);
  Program(kPluginCode, "");
  CommandCall call(Input());
  const bool inBuffer = Row().answers == Answers::kWithErrors;
  if (inBuffer) {
    EXPECT_EQ(call.Text(), kPluginText);
  }
  EXPECT_EQ(Describe(kPluginCode), inBuffer ? "" : kPluginText);
  EXPECT_EQ(Describe(kPluginCode), "");
}

TEST_P(CommandTest, AnswersAnUnknownIdLikeTheOperation)
{
  if (Row().onDefault) return;
  const bool property = Row().operation == kFakeGetProperties;  // needs no instance
  for (int unknown : {0, -1, id + 100, 999999, INT_MAX, INT_MIN}) {
    if (unknown == 0 && Row().operation == kFakeFormatAddress) continue;  // the default instance
    for (int size : {0, 1, 10, 28, 29, 30, 100}) {
      CommandCall call(Input("some data", unknown), size);
      EXPECT_EQ(call.Status(), property ? 0 : PAF_ERR_INVALID_ID) << "Id " << unknown;
      if (Row().answers == Answers::kWithErrors) {
        EXPECT_EQ(call.Text(), std::string(kUnknownIdText).substr(0, static_cast<size_t>(size)));
      } else if (property) {
        EXPECT_EQ(call.Text(), "");
      }
    }
  }
  EXPECT_EQ(fake.Sequence(), "");
}

TEST_P(CommandTest, AnswersABusyInstanceLikeTheOperation)
{
  if (Row().onDefault) return;
  BusyInstance busy(fake, id);
  CommandCall call(Input());
  const bool property = Row().operation == kFakeGetProperties;
  EXPECT_EQ(call.Status(), property ? 0 : PAF_ERR_ID_IN_USE);
  if (Row().answers == Answers::kWithErrors) {
    EXPECT_EQ(call.Text(), "Id already in use");
  }
}

/** The commands that write why they failed into the buffer. */
class SettingCommandTest : public CommandTest
{
};

std::vector<CommandRow> SettingCommands()
{
  std::vector<CommandRow> rows;
  std::copy_if(std::begin(kCommands), std::end(kCommands), std::back_inserter(rows),
               [](const CommandRow& row) { return row.answers == Answers::kWithErrors; });
  return rows;
}

INSTANTIATE_TEST_SUITE_P(Every, SettingCommandTest, testing::ValuesIn(SettingCommands()), RowName());

TEST_P(SettingCommandTest, ThereAreSeven)
{
  EXPECT_EQ(SettingCommands().size(), 7u);
}

TEST_P(SettingCommandTest, WritesThePluginsReasonCutToTheSize)
{
  const std::string reason = "no such code: NSW";
  for (size_t size = 0; size <= reason.size() + 3; ++size) {
    Program(kPluginCode, reason);
    CommandCall call(Input(), static_cast<int>(size));
    EXPECT_EQ(call.Status(), kPluginCode);
    EXPECT_EQ(call.Text(), reason.substr(0, size));
    EXPECT_EQ(Describe(kPluginCode), "") << "the description was consumed";
  }
}

TEST_P(SettingCommandTest, WritesTheLibrarysTextForItsOwnCode)
{
  Program(PAF_ERR_OPEN_FILE, "the plug-in's words");
  CommandCall call(Input());
  EXPECT_EQ(call.Status(), PAF_ERR_OPEN_FILE);
  EXPECT_EQ(call.Text(), "ERR_QXARF_OPEN_FILE");
}

TEST_P(SettingCommandTest, WritesTheReasonOfAnInstanceWithoutSearcher)
{
  ASSERT_EQ(pafForceCloseAll(), 0);
  CommandCall call(Input());
  EXPECT_EQ(call.Status(), PAF_ERR_NO_SEARCHER);
  EXPECT_EQ(call.Text(), "System error. No FindPaf object");
}

// FormatAddress reads its input inside the buffer that receives the answer.
TEST_F(SessionTest, FormatAddressHandsOverTheDataWhereItStands)
{
  const std::string header = "FormatAddress;Id=" + std::to_string(id) + ";Options=2;";
  CommandCall call(header + "1 High St");
  ASSERT_EQ(call.Status(), 0);
  const auto* start = static_cast<const char*>(call.Start());
  EXPECT_EQ(fake.Last(kFakeFormatAddress).arguments.at(0).raw.pointer, start + header.size());
}

TEST_F(SessionTest, FormatAddressWithoutADefaultInstanceIsRefused)
{
  for (const std::string parameters : {"", "Id=0;", "Id=0;Options=1;"}) {
    CommandCall call("FormatAddress;" + parameters + "1 High St");
    EXPECT_EQ(call.Status(), PAF_ERR_INVALID_ID) << parameters;
  }
}

TEST_F(SessionTest, DpidToAddressWithoutADefaultDatabaseIsRefused)
{
  CommandCall call("DpidToAddress;Dpid=1;");
  EXPECT_EQ(call.Status(), PAF_ERR_NOT_OPEN);
}

}  // namespace
}  // namespace blackbox
