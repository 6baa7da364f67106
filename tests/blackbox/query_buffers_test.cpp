// What the functions leave in the caller's buffers: at every size, on success and on failure.
#include <gtest/gtest.h>

#include <climits>
#include <functional>

#include "blackbox/support/fake.h"
#include "blackbox/support/guarded_buffer.h"
#include "blackbox/support/row_name.h"
#include "blackbox/support/session.h"
#include "qxpaf/paf.h"

namespace blackbox {
namespace {

/** A function that reads its input from the buffer that receives its result, through a buffer of the library. */
struct CopyBack
{
  const char* name;
  FakeOperation operation;
  int localSize;
  int (*call)(int id, char* text, int size);
};

const CopyBack kCopyBacks[] = {
    {"pafLookupAddress", kFakeLookupAddress, 2048,
     [](int id, char* text, int size) { return pafLookupAddress(id, text, size, 1); }},
    {"pafGetDpidId", kFakeLookupAddress, 2048, pafGetDpidId},
    {"pafGetDpidNonAmasId", kFakeLookupAddress, 2048, pafGetDpidNonAmasId},
    {"pafFixLastLineId", kFakeFixLastLine, 512, pafFixLastLineId},
    {"pafValidatePartialAddressId", kFakeValidatePartialAddress, 10, pafValidatePartialAddressId},
};

class CopyBackTest : public SessionTest, public testing::WithParamInterface<CopyBack>
{
};

INSTANTIATE_TEST_SUITE_P(Every, CopyBackTest, testing::ValuesIn(kCopyBacks), RowName());

TEST_P(CopyBackTest, CutsTheResultToTheCallersSize)
{
  const std::string result = "12345678";
  fake.Answer(GetParam().operation, 0, result.c_str());
  for (int size = 1; size <= 12; ++size) {
    // The input is one character so that it fits the smallest buffer together with its terminator.
    GuardedBuffer buffer(static_cast<size_t>(size));
    buffer.data()[0] = size == 1 ? '\0' : 'a';
    if (size > 1) buffer.data()[1] = '\0';
    EXPECT_EQ(GetParam().call(id, buffer.data(), size), 0) << "size " << size;
    EXPECT_TRUE(buffer.IsTerminated());
    EXPECT_EQ(buffer.Text(), result.substr(0, static_cast<size_t>(size) - 1)) << "size " << size;
  }
}

TEST_P(CopyBackTest, WritesNothingBehindTheSizeOfALargerBuffer)
{
  fake.Answer(GetParam().operation, 0, "12345678");
  GuardedBuffer buffer("a", 32);
  EXPECT_EQ(GetParam().call(id, buffer.data(), 5), 0);
  EXPECT_EQ(buffer.Text(), "1234");
  EXPECT_TRUE(buffer.IsUntouchedFrom(5));
}

TEST_P(CopyBackTest, WritesNothingForASizeBelowOneAndAnswersThePluginsStatus)
{
  for (int size : {0, -1, -2048, INT_MIN}) {
    for (int status : {0, 12}) {
      fake.Answer(GetParam().operation, status, "12345678");
      GuardedBuffer buffer("input", 16);
      const std::string before = buffer.Bytes();
      EXPECT_EQ(GetParam().call(id, buffer.data(), size), status) << "size " << size;
      EXPECT_EQ(buffer.Bytes(), before) << "size " << size;
      EXPECT_EQ(fake.Last(GetParam().operation).arguments[0], "input");
    }
  }
}

TEST_P(CopyBackTest, LeavesTheBufferAloneOnFailure)
{
  fake.Answer(GetParam().operation, 12, "other");
  GuardedBuffer buffer("the input", 32);
  const std::string before = buffer.Bytes();
  EXPECT_EQ(GetParam().call(id, buffer.data(), 32), 12);
  EXPECT_EQ(buffer.Bytes(), before);
  EXPECT_EQ(GetParam().call(id + 100, buffer.data(), 32), PAF_ERR_INVALID_ID);
  EXPECT_EQ(buffer.Bytes(), before);
  ASSERT_EQ(pafForceCloseAll(), 0);
  EXPECT_EQ(GetParam().call(id, buffer.data(), 32), PAF_ERR_NO_SEARCHER);
  EXPECT_EQ(buffer.Bytes(), before);
}

TEST_P(CopyBackTest, CopiesAFullLocalBuffer)
{
  fake.Behave(GetParam().operation, kFakeFill);
  const auto full = static_cast<size_t>(GetParam().localSize) - 1;
  for (int size : {GetParam().localSize - 1, GetParam().localSize, GetParam().localSize + 1, 4096}) {
    GuardedBuffer buffer(static_cast<size_t>(size));
    buffer.data()[0] = '\0';
    EXPECT_EQ(GetParam().call(id, buffer.data(), size), 0);
    EXPECT_EQ(buffer.Text(), std::string(std::min(full, static_cast<size_t>(size) - 1), 'x')) << "size " << size;
  }
}

TEST_P(CopyBackTest, AnEmptyResultEmptiesTheBuffer)
{
  fake.Answer(GetParam().operation, 0, "");
  GuardedBuffer buffer("the input", 32);
  EXPECT_EQ(GetParam().call(id, buffer.data(), 32), 0);
  EXPECT_EQ(buffer.Text(), "");
}

/** A function whose buffer goes to the plug-in as it is. */
struct Direct
{
  const char* name;
  FakeOperation operation;
  size_t outArgument;   // where the plug-in sees the pointer
  size_t sizeArgument;  // and the size
  int smallestSize;     // below it the function refuses with 6406
  int (*call)(int id, char* out, int size);
};

const Direct kDirects[] = {
    {"pafGetAddressId", kFakeGetAddress, 1, 2, INT_MIN,
     [](int id, char* out, int size) { return pafGetAddressId(id, "q", out, size); }},
    {"pafGetNextAddressId", kFakeGetNextAddress, 0, 1, INT_MIN, pafGetNextAddressId},
    {"pafGetPopupHintId", kFakeGetPopupHint, 3, 4, INT_MIN,
     [](int id, char* out, int size) { return pafGetPopupHintId(id, "a", "b", 1, out, size); }},
    {"pafGetNextPopupHintId", kFakeGetNextPopupHint, 0, 1, INT_MIN, pafGetNextPopupHintId},
    {"pafGetAddressHintId", kFakeGetAddressHint, 2, 3, INT_MIN,
     [](int id, char* out, int size) { return pafGetAddressHintId(id, "a", "b", out, size); }},
    {"pafGetNextAddressHintId", kFakeGetNextAddressHint, 0, 1, INT_MIN, pafGetNextAddressHintId},
    {"pafGetParsedInputId", kFakeGetParsedInput, 0, 1, INT_MIN, pafGetParsedInputId},
    {"pafValidateFullAddressId", kFakeValidateFullAddress, 1, 2, INT_MIN,
     [](int id, char* out, int size) { return pafValidateFullAddressId(id, "a", out, size, 0, nullptr); }},
    {"pafFormatAddressId", kFakeFormatAddress, 1, 3, INT_MIN,
     [](int id, char* out, int size) { return pafFormatAddressId(id, "a", out, 0, size); }},
    {"pafGetNextAddressInPolygon", kFakeGetNextAddressInPolygon, 0, 1, 1, pafGetNextAddressInPolygon},
    {"pafGetSearchStatistics", kFakeGetSearchStatistics, 4, 5, 1,
     [](int id, char* out, int size) { return pafGetSearchStatistics(id, "a", "b", "c", "d", out, size); }},
    {"pafGetNextGifConcordanceFirst", kFakeGetNextGifConcordance, 0, 1, 1,
     [](int id, char* out, int size) {
       char second[8];
       return pafGetNextGifConcordance(id, out, size, second, sizeof second, nullptr);
     }},
    {"pafGetNextGifConcordanceSecond", kFakeGetNextGifConcordance, 2, 3, 1,
     [](int id, char* out, int size) {
       char first[8];
       return pafGetNextGifConcordance(id, first, sizeof first, out, size, nullptr);
     }},
    {"pafGetNextAddressSearch", kFakeGetNextAddressSearch, 0, 1, 1, pafGetNextAddressSearch},
};

class DirectTest : public SessionTest, public testing::WithParamInterface<Direct>
{
};

INSTANTIATE_TEST_SUITE_P(Every, DirectTest, testing::ValuesIn(kDirects), RowName());

TEST_P(DirectTest, PassesPointerAndSizeUnchanged)
{
  GuardedBuffer buffer(64);
  for (int size : {INT_MIN, -2, -1, 0, 1, 2, 63, 64}) {
    if (size < GetParam().smallestSize) continue;
    ASSERT_EQ(GetParam().call(id, buffer.data(), size), 0) << "size " << size;
    const Call call = fake.Last(GetParam().operation);
    EXPECT_TRUE(call.arguments[GetParam().outArgument].Is(buffer.data()));
    EXPECT_EQ(call.arguments[GetParam().sizeArgument], size);
  }
}

TEST_P(DirectTest, RefusesASizeBelowOneBeforeTheIdIsLookedUpWhereSaid)
{
  GuardedBuffer buffer(8);
  const bool refuses = GetParam().smallestSize == 1;
  fake->clearCalls();
  for (int size : {0, -1, INT_MIN}) {
    EXPECT_EQ(GetParam().call(id + 100, buffer.data(), size), refuses ? PAF_ERR_BUFFER_TOO_SMALL : PAF_ERR_INVALID_ID);
    EXPECT_EQ(GetParam().call(0, buffer.data(), size), refuses ? PAF_ERR_BUFFER_TOO_SMALL : PAF_ERR_INVALID_ID);
    EXPECT_EQ(GetParam().call(id, buffer.data(), size), refuses ? PAF_ERR_BUFFER_TOO_SMALL : 0);
  }
  EXPECT_TRUE(buffer.IsUntouched());
  EXPECT_EQ(fake.Count(GetParam().operation), refuses ? 0u : 3u);
}

TEST_P(DirectTest, DeliversWhatThePluginWroteAtEverySize)
{
  const std::string result = "an answer";
  fake.Answer(GetParam().operation, 0, result.c_str(), result.c_str());
  for (size_t size = 1; size <= result.size() + 2; ++size) {
    GuardedBuffer buffer(size);
    EXPECT_EQ(GetParam().call(id, buffer.data(), buffer.size()), 0);
    EXPECT_EQ(buffer.Text(), result.substr(0, size - 1));
  }
}

TEST_P(DirectTest, DeliversABufferFilledToItsLastByte)
{
  fake.Behave(GetParam().operation, kFakeFill);
  for (size_t size : {1u, 2u, 10u, 255u, 4096u}) {
    GuardedBuffer buffer(size);
    EXPECT_EQ(GetParam().call(id, buffer.data(), buffer.size()), 0);
    EXPECT_EQ(buffer.Text(), std::string(size - 1, 'x'));
  }
}

TEST_P(DirectTest, WritesNothingOfItsOwn)
{
  fake.Behave(GetParam().operation, kFakeSilent, 12);
  GuardedBuffer buffer(16);
  EXPECT_EQ(GetParam().call(id, buffer.data(), 16), 12);
  EXPECT_TRUE(buffer.IsUntouched());
  EXPECT_EQ(GetParam().call(id + 100, buffer.data(), 16), PAF_ERR_INVALID_ID);
  EXPECT_TRUE(buffer.IsUntouched());
}

TEST_F(SessionTest, GifConcordanceDeliversTwoTexts)
{
  fake.Answer(kFakeGetNextGifConcordance, 0, "first", "second");
  GuardedBuffer first(16);
  GuardedBuffer second(16);
  EXPECT_EQ(pafGetNextGifConcordance(id, first.data(), 16, second.data(), 16, nullptr), 0);
  EXPECT_EQ(first.Text(), "first");
  EXPECT_EQ(second.Text(), "second");
}

TEST_F(SessionTest, DpidToAddressRefusesWhatDoesNotFit)
{
  fake.Answer(kFakeGetAddress, 0, "12345678");
  for (int size : {INT_MIN, -1, 0, 1, 7, 8}) {
    GuardedBuffer buffer(16);
    EXPECT_EQ(pafDpidToAddressId(id, 1, buffer.data(), size), PAF_ERR_BUFFER_TOO_SMALL) << "size " << size;
    EXPECT_TRUE(buffer.IsUntouched()) << "size " << size;
  }
  for (size_t size : {9u, 10u, 4096u}) {
    GuardedBuffer buffer(size);
    EXPECT_EQ(pafDpidToAddressId(id, 1, buffer.data(), buffer.size()), 0);
    EXPECT_EQ(buffer.Text(), "12345678");
  }
}

TEST_F(SessionTest, DpidToAddressWithAnEmptyResultNeedsOneByte)
{
  fake.Answer(kFakeGetAddress, 0, "");
  GuardedBuffer none(4);
  EXPECT_EQ(pafDpidToAddressId(id, 1, none.data(), 0), PAF_ERR_BUFFER_TOO_SMALL);
  EXPECT_TRUE(none.IsUntouched());
  GuardedBuffer one(1);
  EXPECT_EQ(pafDpidToAddressId(id, 1, one.data(), 1), 0);
  EXPECT_EQ(one.Text(), "");
}

TEST_F(SessionTest, DpidToAddressDeliversUpTo1023Characters)
{
  fake.Behave(kFakeGetAddress, kFakeFill);
  GuardedBuffer tooSmall(1023);
  EXPECT_EQ(pafDpidToAddressId(id, 1, tooSmall.data(), 1023), PAF_ERR_BUFFER_TOO_SMALL);
  EXPECT_TRUE(tooSmall.IsUntouched());
  GuardedBuffer exact(1024);
  EXPECT_EQ(pafDpidToAddressId(id, 1, exact.data(), 1024), 0);
  EXPECT_EQ(exact.Text(), std::string(1023, 'x'));
}

TEST_F(SessionTest, DpidToAddressLooksTheIdUpBeforeTheSize)
{
  EXPECT_EQ(pafDpidToAddressId(id + 100, 1, nullptr, 0), PAF_ERR_INVALID_ID);
}

TEST_F(SessionTest, DpidToAddressPassesAFailureOnAndLeavesTheBufferAlone)
{
  fake.Answer(kFakeGetAddress, 12, "an answer nobody wants");
  GuardedBuffer buffer(64);
  EXPECT_EQ(pafDpidToAddressId(id, 1, buffer.data(), 64), 12);
  EXPECT_TRUE(buffer.IsUntouched());
  EXPECT_EQ(Describe(12), "fake text for 12");
}

TEST_F(SessionTest, DpidToAddressDoesNotRememberThatTheResultDidNotFit)
{
  fake.Answer(kFakeGetParsedInput, 12);
  char out[4];
  ASSERT_EQ(pafGetParsedInputId(id, out, sizeof out), 12);
  fake.Answer(kFakeGetAddress, 0, "12345678");
  EXPECT_EQ(pafDpidToAddressId(id, 1, out, sizeof out), PAF_ERR_BUFFER_TOO_SMALL);
  EXPECT_EQ(Describe(12), "fake text for 12");
}

}  // namespace
}  // namespace blackbox
