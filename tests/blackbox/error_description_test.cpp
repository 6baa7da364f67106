// Texts of status codes, and the calling thread's last error behind them.
#include <gtest/gtest.h>

#include <climits>
#include <map>
#include <set>
#include <thread>

#include "blackbox/support/fake.h"
#include "blackbox/support/guarded_buffer.h"
#include "blackbox/support/session.h"
#include "qxpaf/paf.h"

namespace blackbox {
namespace {

struct Row
{
  int code;
  const char* text;
};

const Row kRows[] = {
    {601, "Buffer too small"},
    {4100, "Call to socket server not recognised"},
    {4200, "Socket call"},
    {4201, "set socket option"},
    {4202, "socket bind"},
    {4203, "socket listen"},
    {4204, "socket connect"},
    {4205, "unknown socket host"},
    {4206, "unknown socket service"},
    {4207, "socket timed out"},
    {4208, "socket select"},
    {4500, "ERR_SOCSVR_CALL_NOT_RECOGNISED"},
    {4501, "ERR_SOCSVR_ACCEPT"},
    {4502, "ERR_SOCSVR_INPUT_TOO_LONG"},
    {4503, "ERR_SOCSVR_CREATE_THREAD"},
    {4504, "ERR_SOCSVR_THREAD_LIMIT"},
    {4550, "ERR_SOC_READLINE"},
    {4551, "ERR_SOC_SEND"},
    {4555, "ERR_SOC_RESPONSE_TOO_LONG"},
    {4556, "ERR_SOC_BROKEN"},
    {6400, "Paf library not initialised"},
    {6401, "TlsGetValue Error"},
    {6402, "TlsSetValue / pthread_setspecific error"},
    {6403, "TlsAlloc / pthread_key_create error"},
    {6404, "Out of Memory"},
    {6405, "Invalid Id passed to function"},
    {6406, "Buffer too small"},
    {6408, "Functionality not implemented"},
    {6409, "Action timed out"},
    {6410, "System error. Have FindPaf object"},
    {6411, "System error. No FindPaf object"},
    {6412, "Id already in use"},
    {6413, "PAF files not open"},
    {6414, "ERR_QXARF_SYSTEM_ERROR_1"},
    {6415, "ERR_QXARF_BARCODE"},
    {6493, "ERR_QXARF_DEFAULT_ARF_NOT_AU"},
    {6494, "ERR_QXARF_SYSTEM_1"},
    {6495, "ERR_QXARF_OPEN_FILE"},
    {6496, "ERR_QXARF_OUTOFMEMORY"},
    {6497, "ERR_QXARF_UNKNOWN_COUNTRY"},
    {6498, "Cannot open registry or configuration file"},
    {6499, "ARF not installed"},
};

class CodeTest : public testing::TestWithParam<Row>
{
 protected:
  int Code() const { return GetParam().code; }
  std::string Text() const { return GetParam().text; }

  /** An open that fails with this code and a text, which the library remembers. */
  void FailToOpen(Fake& fake, const char* text)
  {
    fake.Answer(kFakeDbOpen, Code(), text);
    EXPECT_EQ(pafOpenArfId2(0, "DLL:FakeTwo;/fails"), -Code());
  }

  Workspace workspace{std::vector<std::string>{}};
};

INSTANTIATE_TEST_SUITE_P(Every, CodeTest, testing::ValuesIn(kRows),
                         [](const auto& row) { return std::to_string(row.param.code); });

TEST_P(CodeTest, HasItsTextCutToTheBuffer)
{
  const std::string text = Text();
  for (int size = 1; size <= static_cast<int>(text.size()) + 4; ++size)
    EXPECT_EQ(Describe(Code(), size), text.substr(0, static_cast<size_t>(size) - 1)) << "size " << size;
  EXPECT_EQ(Describe(Code(), 4096), text);
}

TEST_P(CodeTest, ARememberedDetailFollowsIfAllOfItFits)
{
  Fake fake("libfaketwo.so");
  const std::string detail = "the disk is on fire";
  const std::string both = Text() + ". " + detail;
  const int needed = static_cast<int>(both.size()) + 1;
  struct SizeRow
  {
    int size;
    std::string expected;
  };
  for (const SizeRow& row : {SizeRow{needed + 100, both}, SizeRow{needed, both}, SizeRow{needed - 1, Text()},
                             SizeRow{static_cast<int>(Text().size()) + 1, Text()}, SizeRow{1, ""}}) {
    FailToOpen(fake, detail.c_str());
    EXPECT_EQ(Describe(Code(), row.size), row.expected) << "size " << row.size;
    EXPECT_EQ(Describe(Code()), Text()) << "asking consumed the detail, size " << row.size;
  }
}

TEST_P(CodeTest, NoDetailFollowsWhenThePluginGaveNone)
{
  Fake fake("libfaketwo.so");
  FailToOpen(fake, "");
  EXPECT_EQ(Describe(Code()), Text());
}

TEST_P(CodeTest, ASearchersFailureAddsNothingButIsConsumed)
{
  Fake fake("libfaketwo.so");
  const int id = Open("DLL:FakeTwo;/works");
  fake.Answer(kFakeSetGeographicalCodes, Code(), "no such codes");
  ASSERT_EQ(pafSetGeographicalCodesId(id, "x"), Code());
  EXPECT_EQ(Describe(Code()), Text());
  EXPECT_EQ(fake.Count(kFakeGetErrorDescription), 0u) << "the text is the library's";
  pafClosePafId(id);
}

class DescribeTest : public SessionTest
{
 protected:
  void Fail(int code)
  {
    fake.Answer(kFakeGetParsedInput, code);
    char out[4];
    ASSERT_EQ(pafGetParsedInputId(id, out, sizeof out), code);
  }
};

TEST_F(DescribeTest, CodesOutsideTheTableHaveNoText)
{
  std::set<int> known;
  for (const Row& row : kRows) known.insert(row.code);
  for (int code = 1; code < 7000; ++code) {
    if (known.count(code) == 0) {
      ASSERT_EQ(Describe(code), "") << code;
    }
  }
  for (int code : {0, -1, -6405, 990, 991, 6407, 6492, 6500, INT_MAX, INT_MIN}) EXPECT_EQ(Describe(code), "") << code;
}

TEST_F(DescribeTest, ASizeBelowOneTouchesNothingAndConsumesNothing)
{
  Fail(12);
  GuardedBuffer buffer(8);
  for (int size : {0, -1, INT_MIN}) {
    EXPECT_EQ(pafGetErrorDescription(buffer.data(), 12, size), 0);
    EXPECT_EQ(pafGetErrorDescription(buffer.data(), 6405, size), 0);
    EXPECT_EQ(pafGetErrorDescription(nullptr, 12, size), 0);
  }
  EXPECT_TRUE(buffer.IsUntouched());
  EXPECT_EQ(Describe(12), "fake text for 12");
}

TEST_F(DescribeTest, AnEmptyAnswerIsWrittenToo)
{
  GuardedBuffer buffer(4);
  EXPECT_EQ(pafGetErrorDescription(buffer.data(), 12, 4), 0);
  EXPECT_EQ(buffer.Text(), "");
}

TEST_F(DescribeTest, AnotherCodeConsumesTheLastErrorToo)
{
  Fail(12);
  EXPECT_EQ(Describe(13), "");
  EXPECT_EQ(Describe(12), "");
  Fail(12);
  EXPECT_EQ(Describe(6405), "Invalid Id passed to function");
  EXPECT_EQ(Describe(12), "");
}

TEST_F(DescribeTest, AnotherThreadsAskingConsumesNothing)
{
  Fail(12);
  std::thread([] {
    EXPECT_EQ(Describe(12), "");
    EXPECT_EQ(Describe(6405), "Invalid Id passed to function");
  }).join();
  EXPECT_EQ(Describe(12), "fake text for 12");
}

TEST_F(DescribeTest, EachThreadHasItsOwnLastError)
{
  Fail(12);
  std::thread([this] {
    Fail(13);
    EXPECT_EQ(Describe(13), "fake text for 13");
  }).join();
  EXPECT_EQ(Describe(12), "fake text for 12");
}

TEST_F(DescribeTest, TheSearcherGetsTheCallersBufferCodeAndSize)
{
  Fail(12);
  GuardedBuffer buffer(77);
  EXPECT_EQ(pafGetErrorDescription(buffer.data(), 12, 77), 0);
  const Call call = fake.Last(kFakeGetErrorDescription);
  ASSERT_EQ(call.arguments.size(), 3u);
  EXPECT_TRUE(call.arguments[0].Is(buffer.data()));
  EXPECT_EQ(call.arguments[1], 12);
  EXPECT_EQ(call.arguments[2], 77);
}

TEST_F(DescribeTest, TheSearchersTextFillsBuffersOfEverySize)
{
  fake.Behave(kFakeGetErrorDescription, kFakeFill);
  for (int size : {1, 2, 10, 256, 4096}) {
    Fail(12);
    EXPECT_EQ(Describe(12, size), std::string(static_cast<size_t>(size) - 1, 'x'));
  }
}

TEST_F(DescribeTest, ASilentSearcherLeavesAnEmptyText)
{
  fake.Behave(kFakeGetErrorDescription, kFakeSilent);
  Fail(12);
  EXPECT_EQ(Describe(12), "");
}

TEST_F(DescribeTest, ABusyInstanceGivesNoTextAndTheErrorIsConsumed)
{
  Fail(12);
  {
    BusyInstance busy(fake, id);
    EXPECT_EQ(Describe(12), "");
  }
  EXPECT_EQ(Describe(12), "");
}

TEST_F(DescribeTest, AClosedInstanceGivesNoText)
{
  Fail(12);
  ASSERT_EQ(pafClosePafId(id), 0);
  EXPECT_EQ(Describe(12), "");
}

TEST_F(DescribeTest, AnInstanceWithoutSearcherGivesNoText)
{
  Fail(12);
  ASSERT_EQ(pafForceCloseAll(), 0);
  EXPECT_EQ(Describe(12), "");
}

TEST_F(DescribeTest, AskingLeavesTheInstanceIdle)
{
  Fail(12);
  Describe(12);
  fake->clearAnswer(kFakeGetParsedInput);
  char out[4];
  EXPECT_EQ(pafGetParsedInputId(id, out, sizeof out), 0);
}

TEST_F(DescribeTest, GeographicalCodesErrorTextIsGivenInsteadOfTheSearchersWords)
{
  const std::string longest(255, 'e');
  for (const std::string& reason : {std::string("e"), std::string("unknown code: XYZ"), longest}) {
    fake.Answer(kFakeSetGeographicalCodes, 12, reason.c_str());
    ASSERT_EQ(pafSetGeographicalCodesId(id, "XYZ"), 12);
    EXPECT_EQ(Describe(12), reason);
    EXPECT_EQ(Describe(12), "");
  }
  EXPECT_EQ(fake.Count(kFakeGetErrorDescription), 0u);
}

TEST_F(DescribeTest, GeographicalCodesErrorTextIsCutToTheBuffer)
{
  for (int size : {1, 2, 8, 9, 10, 512}) {
    fake.Answer(kFakeSetGeographicalCodes, 12, "bad code");
    ASSERT_EQ(pafSetGeographicalCodesId(id, "XYZ"), 12);
    EXPECT_EQ(Describe(12, size), std::string("bad code").substr(0, static_cast<size_t>(size) - 1));
  }
}

TEST_F(DescribeTest, GeographicalCodesWithoutErrorTextAskTheSearcher)
{
  fake.Answer(kFakeSetGeographicalCodes, 12, "");
  ASSERT_EQ(pafSetGeographicalCodesId(id, "XYZ"), 12);
  EXPECT_EQ(Describe(12), "fake text for 12");
}

TEST_F(DescribeTest, APluginsOpenFailureTextComesForItsCodeOnce)
{
  fake.Answer(kFakeDbOpen, 77, "cannot read index");
  EXPECT_EQ(pafOpenArfId2(0, "DLL:FakeTwo;/other"), -77);
  std::thread([] { EXPECT_EQ(Describe(77), ""); }).join();
  EXPECT_EQ(Describe(77), "cannot read index");
  EXPECT_EQ(Describe(77), "");
}

TEST_F(DescribeTest, AnOpenFailureWithoutTextIsNotRemembered)
{
  Fail(12);
  fake.Answer(kFakeDbOpen, 77, "");
  EXPECT_EQ(pafOpenArfId2(0, "DLL:FakeTwo;/other"), -77);
  EXPECT_EQ(Describe(12), "fake text for 12") << "the earlier error is still the last one";
}

TEST_F(DescribeTest, AnOpenFailureTextIsKeptUpTo254Characters)
{
  fake.Behave(kFakeDbOpen, kFakeFill, 77);
  EXPECT_EQ(pafOpenArfId2(0, "DLL:FakeTwo;/other"), -77);
  const Call call = fake.Last(kFakeDbOpen);
  EXPECT_EQ(call.arguments[3], 255);
  EXPECT_EQ(Describe(77), std::string(254, 'x'));
}

}  // namespace
}  // namespace blackbox
