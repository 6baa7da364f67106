// The functions without an Id, each of which is a function with one on the thread's default instance.
#include <gtest/gtest.h>

#include <climits>
#include <thread>

#include "blackbox/support/default_database.h"
#include "blackbox/support/guarded_buffer.h"
#include "blackbox/support/properties.h"
#include "blackbox/support/row_name.h"
#include "blackbox/support/session.h"
#include "qxpaf/paf.h"

namespace blackbox {
namespace {

constexpr size_t kBufferSize = 64;
constexpr int kNoArgument = -1;

/** One function and what of it the plug-in sees. */
struct Query
{
  const char* name;
  FakeOperation operation;
  bool creates;
  int sizeArgument;  ///< where the plug-in sees the size, and which
  int sizeSeen;
  const char* firstText;  ///< its first argument, null when that is no text
  int (*call)(char* text);
};

void PrintTo(const Query& query, std::ostream* out)
{
  *out << query.name;
}

const Query kQueries[] = {
    {"pafGetDpid", kFakeLookupAddress, true, 2, 2048, "1 High St", [](char* text) { return pafGetDpid(text, 63); }},
    {"pafGetDpidNonAmas", kFakeLookupAddress, true, 2, 2048, "1 High St",
     [](char* text) { return pafGetDpidNonAmas(text, 63); }},
    {"pafFixLastLine", kFakeFixLastLine, true, 2, 512, "1 High St",
     [](char* text) { return pafFixLastLine(text, 63); }},
    {"pafGetAddress", kFakeGetAddress, true, 2, 255, "query", [](char* out) { return pafGetAddress("query", out); }},
    {"pafGetNextAddress", kFakeGetNextAddress, true, 1, 255, nullptr, pafGetNextAddress},
    {"pafGetPopupHint", kFakeGetPopupHint, true, 4, 64, "a",
     [](char* out) { return pafGetPopupHint("a", "b", 3, out, 64); }},
    {"pafGetNextPopupHint", kFakeGetNextPopupHint, true, 1, 64, nullptr,
     [](char* out) { return pafGetNextPopupHint(out, 64); }},
    {"pafDpidToAddress", kFakeGetAddress, true, 2, 1024, "\t\t\t\t\t\t\t12345",
     [](char* out) { return pafDpidToAddress(12345L, out, 64); }},
    {"pafGetAddressHint", kFakeGetAddressHint, true, 3, 255, "a",
     [](char* out) { return pafGetAddressHint("a", "b", out); }},
    {"pafGetNextAddressHint", kFakeGetNextAddressHint, true, 1, 255, nullptr, pafGetNextAddressHint},
    {"pafGet_ParsedInput", kFakeGetParsedInput, true, 1, 255, nullptr, pafGet_ParsedInput},
    {"pafValidateFullAddress", kFakeValidateFullAddress, true, 2, 64, "address",
     [](char* out) {
       char flag = 'q';
       return pafValidateFullAddress("address", out, 64, 7, &flag);
     }},
    {"pafFormatAddress", kFakeFormatAddress, false, 3, 250, "address",
     [](char* out) { return pafFormatAddress("address", out, 5L); }},
    {"pafSetProperties", kFakeSetProperties, true, 3, 256, "name",
     [](char*) { return pafSetProperties("name", "value"); }},
    {"pafGetProperties", kFakeGetProperties, false, 2, 64, "name",
     [](char* out) { return pafGetProperties("name", out, 64); }},
    {"pafGet_FindStatus", kFakeGetFindStatus, true, kNoArgument, 0, nullptr, [](char*) { return pafGet_FindStatus(); }},
};

class DefaultQueryTest : public DefaultDatabaseTest, public testing::WithParamInterface<Query>
{
 protected:
  bool AnswersFindStatus() const { return GetParam().operation == kFakeGetFindStatus; }
  bool IsGetProperties() const { return GetParam().operation == kFakeGetProperties; }

  /** What the function answers for a status of the library. */
  int Failing(int status) const { return AnswersFindStatus() ? -1 : status; }

  int Call() { return GetParam().call(buffer.data()); }

  /** The database open and, also for functions that do not create it, the default instance. */
  void OpenInstance()
  {
    ASSERT_EQ(pafOpenPaf(), 0);
    ASSERT_EQ(pafGet_FindStatus(), 0);
    au->clearCalls();
  }

  GuardedBuffer buffer{"1 High St", kBufferSize};
};

INSTANTIATE_TEST_SUITE_P(Every, DefaultQueryTest, testing::ValuesIn(kQueries), RowName());

TEST_P(DefaultQueryTest, NeedsTheOpenDatabase)
{
  const std::string before = buffer.Bytes();
  const int expected = GetParam().creates ? Failing(PAF_ERR_NOT_OPEN) : IsGetProperties() ? 0 : PAF_ERR_INVALID_ID;
  for (int time = 0; time < 3; ++time) EXPECT_EQ(Call(), expected);
  if (!IsGetProperties()) {
    EXPECT_EQ(buffer.Bytes(), before);
  }
  EXPECT_EQ(Property(0, "ClientCount"), "0") << "the Id was given back";
  EXPECT_EQ(Property(0, "ClientCount2"), "0");
  EXPECT_EQ(au.Sequence(), "");
  EXPECT_EQ(Open("AU.one"), 1);
  EXPECT_EQ(Call(), expected) << "other instances do not count";
}

TEST_P(DefaultQueryTest, CreatesTheInstanceWithItsFirstCallOrNotAtAll)
{
  ASSERT_EQ(pafOpenPaf(), 0);
  EXPECT_EQ(Property(0, "ClientCount"), "0");
  au->clearCalls();
  EXPECT_EQ(Call(), GetParam().creates || IsGetProperties() ? 0 : PAF_ERR_INVALID_ID);
  EXPECT_EQ(Property(0, "ClientCount"), GetParam().creates ? "1" : "0");
  EXPECT_EQ(au.Count(kFakeGetSearcher), GetParam().creates ? 1u : 0u);
  EXPECT_EQ(au.Count(GetParam().operation), GetParam().creates ? 1u : 0u);
  Call();
  EXPECT_EQ(au.Count(kFakeGetSearcher), GetParam().creates ? 1u : 0u) << "it is kept";
  EXPECT_EQ(au->refCount(path.c_str()), 1) << "default instances hold no reference";
}

TEST_P(DefaultQueryTest, PassesItsArgumentsOn)
{
  OpenInstance();
  EXPECT_EQ(Call(), 0);
  ASSERT_EQ(au.Count(GetParam().operation), 1u);
  const auto arguments = au.Last(GetParam().operation).arguments;
  if (GetParam().firstText != nullptr) {
    EXPECT_EQ(arguments.at(0), GetParam().firstText);
  }
  if (GetParam().sizeArgument != kNoArgument) {
    EXPECT_EQ(arguments.at(static_cast<size_t>(GetParam().sizeArgument)), GetParam().sizeSeen);
  }
}

TEST_P(DefaultQueryTest, PassesTheStatusOnAndRemembersIt)
{
  OpenInstance();
  for (int status : {12, -5, INT_MAX}) {
    au.Answer(GetParam().operation, status);
    EXPECT_EQ(Call(), status);
    EXPECT_EQ(Describe(status), AnswersFindStatus() ? "" : "fake text for " + std::to_string(status));
  }
}

TEST_P(DefaultQueryTest, IsRefusedWhileTheInstanceIsBusy)
{
  OpenInstance();
  {
    BusyInstance busy(au, 1);
    EXPECT_EQ(Call(), IsGetProperties() ? 0 : Failing(PAF_ERR_ID_IN_USE));
  }
  EXPECT_EQ(Call(), 0);
}

TEST_P(DefaultQueryTest, FailsOnAnInstanceWithoutASearcher)
{
  OpenInstance();
  ASSERT_EQ(pafForceCloseAll(), 0);
  EXPECT_EQ(Call(), IsGetProperties() ? 0 : Failing(PAF_ERR_NO_SEARCHER));
  EXPECT_EQ(Property(0, "ClientCount"), "1");
}

TEST_P(DefaultQueryTest, KeepsAnIdThatWasClosedByHand)
{
  OpenInstance();
  ASSERT_EQ(pafClosePafId(1), 0);
  EXPECT_EQ(Call(), IsGetProperties() ? 0 : Failing(PAF_ERR_INVALID_ID));
  EXPECT_EQ(au.Count(kFakeGetSearcher), 0u) << "no other instance takes its place";
  EXPECT_EQ(au->refCount(path.c_str()), 1) << "the database is not the instance's";
}

TEST_P(DefaultQueryTest, AnotherThreadHasAnotherInstance)
{
  OpenInstance();
  std::thread([this] {
    GuardedBuffer own("1 High St", kBufferSize);
    const bool works = GetParam().creates || IsGetProperties();
    EXPECT_EQ(GetParam().call(own.data()), works ? 0 : PAF_ERR_INVALID_ID);
    EXPECT_EQ(Property(0, "ClientCount"), GetParam().creates ? "2" : "1");
  }).join();
  EXPECT_EQ(Property(0, "ClientCount"), "1");
}

TEST_P(DefaultQueryTest, ADatabaseThatGivesNoSearcherGivesNoInstance)
{
  ASSERT_EQ(pafOpenPaf(), 0);
  au.Behave(kFakeGetSearcher, kFakeAnswerNull);
  if (GetParam().creates) {
    EXPECT_EQ(Call(), Failing(PAF_ERR_OUT_OF_MEMORY));
  }
  au.Behave(kFakeGetSearcher, kFakeThrowError);
  if (GetParam().creates) {
    EXPECT_EQ(Call(), Failing(PAF_ERR_PLUGIN_SYSTEM));
  }
  EXPECT_EQ(Property(0, "ClientCount"), "0");
  EXPECT_EQ(au->refCount(path.c_str()), 1);
  au->clearAnswer(kFakeGetSearcher);
  if (GetParam().creates) {
    EXPECT_EQ(Call(), 0) << "the next call tries again";
  }
}

class DefaultBuffersTest : public DefaultDatabaseTest
{
 protected:
  void SetUp() override
  {
    DefaultDatabaseTest::SetUp();
    ASSERT_EQ(pafOpenPaf(), 0);
    ASSERT_EQ(pafGet_FindStatus(), 0);
  }
};

using InOut = int (*)(char*, int);

TEST_F(DefaultBuffersTest, ALengthLeavesRoomForTheTerminator)
{
  const std::string result = "123456789012";
  au.Answer(kFakeLookupAddress, 0, result.c_str());
  au.Answer(kFakeFixLastLine, 0, result.c_str());
  for (InOut call : {InOut{pafGetDpid}, InOut{pafGetDpidNonAmas}, InOut{pafFixLastLine}}) {
    for (int length = 0; length <= 14; ++length) {
      GuardedBuffer buffer(static_cast<size_t>(length) + 1);
      buffer.data()[0] = '\0';
      EXPECT_EQ(call(buffer.data(), length), 0);
      EXPECT_EQ(buffer.Text(), result.substr(0, static_cast<size_t>(length))) << "length " << length;
    }
    GuardedBuffer large("x", 64);
    EXPECT_EQ(call(large.data(), INT_MAX), 0);
    EXPECT_EQ(large.Text(), result);
    for (int length : {-1, -2, INT_MIN}) {
      GuardedBuffer untouched("x", 8);
      const std::string before = untouched.Bytes();
      EXPECT_EQ(call(untouched.data(), length), 0);
      EXPECT_EQ(untouched.Bytes(), before) << "length " << length;
    }
  }
}

TEST_F(DefaultBuffersTest, AmasIsToldToThePlugin)
{
  char text[64] = "1 High St";
  ASSERT_EQ(pafGetDpid(text, 63), 0);
  EXPECT_EQ(au.Last(kFakeLookupAddress).arguments.at(3), 1);
  ASSERT_EQ(pafGetDpidNonAmas(text, 63), 0);
  EXPECT_EQ(au.Last(kFakeLookupAddress).arguments.at(3), 0);
}

TEST_F(DefaultBuffersTest, ThePromisedBufferMayBeFilledToItsLastByte)
{
  const struct
  {
    FakeOperation operation;
    size_t size;
    int (*call)(char* out);
  } kRows[] = {{kFakeGetAddress, 255, [](char* out) { return pafGetAddress("q", out); }},
               {kFakeGetNextAddress, 255, pafGetNextAddress},
               {kFakeGetAddressHint, 255, [](char* out) { return pafGetAddressHint("a", "b", out); }},
               {kFakeGetNextAddressHint, 255, pafGetNextAddressHint},
               {kFakeGetParsedInput, 255, pafGet_ParsedInput},
               {kFakeFormatAddress, 250, [](char* out) { return pafFormatAddress("a", out, 0L); }}};
  for (const auto& row : kRows) {
    au.Behave(row.operation, kFakeFill);
    GuardedBuffer buffer(row.size);
    EXPECT_EQ(row.call(buffer.data()), 0);
    EXPECT_EQ(buffer.Text(), std::string(row.size - 1, 'x')) << au->operationName(row.operation);
  }
}

TEST_F(DefaultBuffersTest, GivenSizesArePassedOn)
{
  for (int size : {INT_MIN, -1, 0, 1, 17}) {
    GuardedBuffer buffer(17);
    EXPECT_EQ(pafGetPopupHint("a", "b", 9, buffer.data(), size), 0);
    EXPECT_EQ(au.Last(kFakeGetPopupHint).arguments.at(2), 9);
    EXPECT_EQ(au.Last(kFakeGetPopupHint).arguments.at(4), size);
    EXPECT_EQ(pafGetNextPopupHint(buffer.data(), size), 0);
    EXPECT_EQ(au.Last(kFakeGetNextPopupHint).arguments.at(1), size);
    EXPECT_EQ(pafValidateFullAddress("a", buffer.data(), size, -3, nullptr), 0);
    EXPECT_EQ(au.Last(kFakeValidateFullAddress).arguments.at(2), size);
    EXPECT_EQ(au.Last(kFakeValidateFullAddress).arguments.at(3), -3);
  }
  au.Answer(kFakeGetAddress, 0, "12345678");
  GuardedBuffer small(8);
  EXPECT_EQ(pafDpidToAddress(1L, small.data(), 8), PAF_ERR_BUFFER_TOO_SMALL);
  EXPECT_TRUE(small.IsUntouched());
  GuardedBuffer exact(9);
  EXPECT_EQ(pafDpidToAddress(1L, exact.data(), 9), 0);
  EXPECT_EQ(exact.Text(), "12345678");
}

TEST_F(DefaultDatabaseTest, TheResultFlagIsClearedFirst)
{
  char out[8];
  char flag = 'q';
  EXPECT_EQ(pafValidateFullAddress("a", out, sizeof out, 0, &flag), PAF_ERR_NOT_OPEN);
  EXPECT_EQ(flag, '\0');
  EXPECT_EQ(pafValidateFullAddress("a", out, sizeof out, 0, nullptr), PAF_ERR_NOT_OPEN);
  ASSERT_EQ(pafOpenPaf(), 0);
  au.Answer(kFakeValidateFullAddress, 0, "", "", 'Y');
  flag = 'q';
  EXPECT_EQ(pafValidateFullAddress("a", out, sizeof out, 0, &flag), 0);
  EXPECT_EQ(flag, 'Y');
  EXPECT_EQ(au.Last(kFakeValidateFullAddress).arguments.at(4).raw.number, 0);
}

TEST_F(DefaultBuffersTest, TheFindStatusIsPassedOn)
{
  for (int status : {0, 1, -1, 7, INT_MAX, INT_MIN}) {
    au.Answer(kFakeGetFindStatus, status);
    EXPECT_EQ(pafGet_FindStatus(), status);
  }
}

TEST_F(DefaultBuffersTest, FormatAddressPassesTheOptionOn)
{
  char out[250];
  for (long option : {0L, 7L, -1L, LONG_MAX, LONG_MIN}) {
    EXPECT_EQ(pafFormatAddress("address", out, option), 0);
    EXPECT_EQ(au.Last(kFakeFormatAddress).arguments.at(2), option);
  }
}

TEST_F(DefaultBuffersTest, FormatAddressSFormatsInPlace)
{
  au.Answer(kFakeFormatAddress, 0, "12345678");
  for (int length = 0; length <= 10; ++length) {
    GuardedBuffer buffer(static_cast<size_t>(length) + 1);
    buffer.data()[0] = '\0';
    EXPECT_EQ(pafFormatAddressS(buffer.data(), length), 0);
    EXPECT_EQ(buffer.Text(), std::string("12345678").substr(0, static_cast<size_t>(length))) << "length " << length;
  }
  GuardedBuffer buffer("1 High St", 64);
  EXPECT_EQ(pafFormatAddressS(buffer.data(), 63), 0);
  EXPECT_EQ(buffer.Text(), "12345678");
  const auto arguments = au.Last(kFakeFormatAddress).arguments;
  EXPECT_EQ(arguments.at(0), "1 High St");
  EXPECT_EQ(arguments.at(2), 0);
  EXPECT_EQ(arguments.at(3), 256);
}

TEST_F(DefaultBuffersTest, FormatAddressSHoldsUpTo255Characters)
{
  au.Behave(kFakeFormatAddress, kFakeFill);
  for (int length : {254, 255, 256, 400, INT_MAX}) {
    GuardedBuffer buffer("a", 401);
    EXPECT_EQ(pafFormatAddressS(buffer.data(), length), 0);
    EXPECT_EQ(buffer.Text(), std::string(static_cast<size_t>(std::min(length, 255)), 'x')) << length;
  }
  au.Behave(kFakeFormatAddress, kFakeSilent);
  GuardedBuffer silent("a", 8);
  EXPECT_EQ(pafFormatAddressS(silent.data(), 7), 0);
  EXPECT_EQ(silent.Text(), "");
}

TEST_F(DefaultDatabaseTest, FormatAddressSReportsNoFailure)
{
  const auto expectEmpty = [] {
    GuardedBuffer buffer("1 High St", 16);
    EXPECT_EQ(pafFormatAddressS(buffer.data(), 15), 0);
    EXPECT_EQ(buffer.Text(), "");
    EXPECT_TRUE(buffer.IsUntouchedFrom(10));
  };
  expectEmpty();
  ASSERT_EQ(pafOpenPaf(), 0);
  expectEmpty();
  EXPECT_EQ(Property(0, "ClientCount"), "0") << "it creates no instance";
  ASSERT_EQ(pafGet_FindStatus(), 0);
  au.Answer(kFakeFormatAddress, 12, "text");
  expectEmpty();
  {
    BusyInstance busy(au, 1);
    expectEmpty();
  }
  ASSERT_EQ(pafForceCloseAll(), 0);
  expectEmpty();
  ASSERT_EQ(pafClosePafId(1), PAF_ERR_NO_SEARCHER);
}

/** Functions that do no work: the expected result, and whether anything is written. */
TEST_F(DefaultDatabaseTest, TheRecordReadersDoNothing)
{
  const auto expect = [] {
    char out[8] = {'q', 'q', 'q', 'q', 'q', 'q', 'q', 'q'};
    long numbers[2] = {71, 72};
    int words[2] = {71, 72};
    EXPECT_EQ(pafGetBorderPostcodes(2000, out, 8), PAF_ERR_NOT_IMPLEMENTED);
    EXPECT_EQ(pafReadLocalityRecord(1L, out, numbers, numbers + 1), PAF_ERR_NOT_IMPLEMENTED);
    EXPECT_EQ(pafReadGroupRecord(1L, out, numbers, numbers + 1), PAF_ERR_NOT_IMPLEMENTED);
    EXPECT_EQ(pafReadPointRecord(1L, out, 8), PAF_ERR_NOT_IMPLEMENTED);
    EXPECT_EQ(pafReadSynonymRecord(1L, out, numbers), PAF_ERR_NOT_IMPLEMENTED);
    EXPECT_EQ(pafReadBorderRecord(1, words, words + 1), PAF_ERR_NOT_IMPLEMENTED);
    EXPECT_EQ(pafGetLocalityRecordCount(), 0);
    EXPECT_EQ(pafGetGroupRecordCount(), 0);
    EXPECT_EQ(pafGetPointRecordCount(), 0);
    EXPECT_EQ(pafGetSynonymRecordCount(), 0);
    EXPECT_EQ(std::string(out, sizeof out), "qqqqqqqq");
    EXPECT_EQ(numbers[0] + numbers[1] + words[0] + words[1], 286);
    EXPECT_EQ(Property(0, "ClientCount"), "0");
  };
  expect();
  ASSERT_EQ(pafOpenPaf(), 0);
  au->clearCalls();
  expect();
  EXPECT_EQ(au.Sequence(), "");
}

}  // namespace
}  // namespace blackbox
