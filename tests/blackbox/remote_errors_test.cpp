// Descriptions of errors in remote mode.
#include <gtest/gtest.h>

#include <thread>

#include "blackbox/support/guarded_buffer.h"
#include "blackbox/support/remote.h"
#include "blackbox/support/session.h"
#include "qxpaf/paf.h"

namespace blackbox {
namespace {

using fake::Reply;

constexpr const char* kTooLong = "ERR_SOC_RESPONSE_TOO_LONG. socket recv buffer too small: (90) Message too long";

class RemoteErrors : public RemoteTest
{
};

TEST_F(RemoteErrors, UnknownCodesAreAskedFromTheServer)
{
  for (const int code : {12, -5, 0, 990, 991, 4470, 4471, 6407, INT_MAX, INT_MIN}) {
    Expect("pafGetErrorDescription|" + std::to_string(code), "0|the server's words");
    EXPECT_EQ(Describe(code), "the server's words") << code;
    Expect("pafGetErrorDescription|" + std::to_string(code), "0|the server's words");
    EXPECT_EQ(Describe(code, 5), "the ") << code;
  }
}

TEST_F(RemoteErrors, KnownCodesAreNot)
{
  for (const int code : {601, 4100, 4200, 4500, 4504, 4550, 4556, 6400, 6405, 6415, 6493, 6499}) {
    EXPECT_NE(Describe(code), "") << code;
  }
  EXPECT_EQ(Sent(), Lines());
}

TEST_F(RemoteErrors, AServerWithoutWordsLeavesNone)
{
  for (const char* reply : {"0|", "0", "12|text", ""}) {
    Expect("pafGetErrorDescription|12", reply);
    EXPECT_EQ(Describe(12), "") << reply;
  }
}

TEST_F(RemoteErrors, AnUnreachableServerLeavesNoneAndIsNoFailure)
{
  Expect("pafGetErrorDescription|12", TooLong());
  EXPECT_EQ(Describe(12), "");
  EXPECT_EQ(Describe(4555), kTooLong) << "which is recorded like any other failure";
  EXPECT_EQ(Describe(12), "") << "the connection is broken";
  EXPECT_EQ(Sent().size(), 1u);
}

TEST_F(RemoteErrors, NoBufferNeedsNoServer)
{
  for (const int size : {0, -1, INT_MIN}) {
    GuardedBuffer buffer(4);
    EXPECT_EQ(pafGetErrorDescription(buffer.data(), 12, size), 0);
    EXPECT_TRUE(buffer.IsUntouched());
  }
  EXPECT_EQ(Sent(), Lines());
}

TEST_F(RemoteErrors, TheRecordedDetailIsAddedWhereAllOfItFits)
{
  const std::string whole = kTooLong;
  const size_t known = whole.find(". ");
  for (const size_t size : {whole.size() + 2, whole.size() + 1, whole.size(), known + 1, known, size_t{10}}) {
    const int id = OpenRemote();
    Break(id);
    const std::string expected = size > whole.size() ? whole : whole.substr(0, std::min(known, size - 1));
    EXPECT_EQ(Describe(4555, static_cast<int>(size)), expected) << size;
    EXPECT_EQ(Describe(4555), whole.substr(0, known)) << "told or not, it is consumed";
    EXPECT_EQ(pafClosePafId(id), 0);
  }
}

TEST_F(RemoteErrors, AnotherCodeConsumesTheDetail)
{
  Break(OpenRemote());
  EXPECT_EQ(Describe(6405), "Invalid Id passed to function");
  EXPECT_EQ(Describe(4555), "ERR_SOC_RESPONSE_TOO_LONG");
}

TEST_F(RemoteErrors, TheDetailIsItsThreads)
{
  Break(OpenRemote());
  std::thread([] { EXPECT_EQ(Describe(4555), "ERR_SOC_RESPONSE_TOO_LONG"); }).join();
  EXPECT_EQ(Describe(4555), kTooLong);
}

TEST_F(RemoteErrors, AnInstancesRecordIsNotAdded)
{
  ASSERT_EQ(pafSetPropertiesId(0, "UseSockets", "False"), 0);
  Fake fake("libfaketwo.so");
  const int id = Open("DLL:FakeTwo;/p");
  fake.Answer(kFakeSetProperties, 6406, "the plug-in's reason");
  ASSERT_EQ(pafSetPropertiesId(0, "UseSockets", "True"), 0);
  EXPECT_EQ(pafSetPropertiesId(id, "a", "b"), 6406);
  EXPECT_EQ(Describe(6406), "Buffer too small");
  fake.Answer(kFakeSetProperties, 12, "the plug-in's reason");
  EXPECT_EQ(pafSetPropertiesId(id, "a", "b"), 12);
  Expect("pafGetErrorDescription|12", "0|the server's words");
  EXPECT_EQ(Describe(12), "the server's words");
  fake->clearAnswer(kFakeSetProperties);
  EXPECT_EQ(pafClosePafId(id), 0);
}

TEST_F(RemoteErrors, ALibrarysOwnRecordIsTheAnswerToAnUnknownCode)
{
  // Recorded in local mode by a plug-in that could not open, and asked for in remote mode.
  ASSERT_EQ(pafSetPropertiesId(0, "UseSockets", "False"), 0);
  Fake fake("libfaketwo.so");
  fake.Answer(kFakeDbOpen, 77, "closed today");
  EXPECT_EQ(pafOpenArfId2(0, "DLL:FakeTwo;/p"), -77);
  ASSERT_EQ(pafSetPropertiesId(0, "UseSockets", "True"), 0);
  EXPECT_EQ(Describe(77), "closed today");
  EXPECT_EQ(Sent(), Lines());
  Expect("pafGetErrorDescription|77", "0|the server's words");
  EXPECT_EQ(Describe(77), "the server's words");
}

TEST_F(RemoteErrors, DescribingBringsNoInstanceBack)
{
  Break(OpenRemote());
  EXPECT_EQ(Describe(12), "");
  EXPECT_EQ(Describe(4556), "ERR_SOC_BROKEN") << "without a detail";
  EXPECT_EQ(Sent(), Lines());
}

}  // namespace
}  // namespace blackbox
