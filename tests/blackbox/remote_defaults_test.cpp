// Default instances in remote mode: each is an instance of the server.
#include <gtest/gtest.h>

#include <future>
#include <thread>

#include "blackbox/support/exported_functions.h"
#include "blackbox/support/guarded_buffer.h"
#include "blackbox/support/properties.h"
#include "blackbox/support/remote.h"
#include "blackbox/support/row_name.h"
#include "blackbox/support/session.h"
#include "qxpaf/paf.h"
#include "qxpaf/remote.h"

namespace blackbox {
namespace {

using fake::Reply;

constexpr const char* kIn = "1,2";

struct DefaultRow
{
  const char* name;
  const char* request;  // of the function called with the text kIn, on the server's instance 17
  Shape shape = Shape::kText;
};

// The functions that work on the thread's instance and open it when there is none.
const DefaultRow kCreating[] = {
    {"pafGetDpid", "pafGetDpidId|17|1,2"},
    {"pafGetDpidNonAmas", "pafGetDpidNonAmasId|17|1,2"},
    {"pafFixLastLine", "pafFixLastLineId|17|1,2"},
    {"pafGetAddress", "pafGetAddressId|17|1,2"},
    {"pafGetNextAddress", "pafGetNextAddressId|17"},
    {"pafGetPopupHint", "pafGetPopupHintId|17|1,2|1,2|3"},
    {"pafGetNextPopupHint", "pafGetNextPopupHintId|17"},
    {"pafDpidToAddress", "pafDpidToAddressId|17|12345"},
    {"pafGetAddressHint", "pafGetAddressHintId|17|1,2|1,2"},
    {"pafGetNextAddressHint", "pafGetNextAddressHintId|17"},
    {"pafGet_FindStatus", "pafGetFindStatusId|17", Shape::kNumber},
    {"pafGet_ParsedInput", "pafGetParsedInputId|17"},
    {"pafSetProperties", "pafSetPropertiesId|17|1,2|1,2", Shape::kNumber},
    {"pafValidateFullAddress", "pafValidateFullAddressId|17|1|1,2"},
};

const ExportedFunction& FunctionNamed(const std::string& name)
{
  for (const ExportedFunction& function : ExportedFunctions()) {
    if (name == function.name) return function;
  }
  ADD_FAILURE() << "no function " << name;
  return ExportedFunctions().front();
}

class RemoteDefault : public RemoteTest
{
 protected:
  void ExpectOpen(int serverId = kServerId, int mode = 0)
  {
    Expect("pafOpenPafMemId|" + std::to_string(mode), "0|" + std::to_string(serverId));
  }

  /** Opens the thread's instance; it becomes the first of the library. */
  void OpenDefault()
  {
    ExpectOpen();
    ASSERT_EQ(pafOpenPaf(), 0);
    Sent();
  }

  int Next(char* out) { return pafGetNextPopupHint(out, 16); }
};

class RemoteCreating : public RemoteDefault, public testing::WithParamInterface<DefaultRow>
{
 protected:
  const ExportedFunction& function = FunctionNamed(GetParam().name);

  /** Bytes of the caller's buffer for which the library may be told `size`. */
  size_t Bytes(int size) const
  {
    return static_cast<size_t>(function.impliedSize != 0 ? function.impliedSize : size + function.extra);
  }
  int Run(GuardedBuffer& buffer, int size) { return function.run(0, kIn, buffer.data(), size); }
};

INSTANTIATE_TEST_SUITE_P(Function, RemoteCreating, testing::ValuesIn(kCreating), RowName());

TEST_P(RemoteCreating, OpensTheThreadsInstanceOnce)
{
  ExpectOpen();
  for (int round = 0; round < 2; ++round) {
    Expect(GetParam().request, "0|answer");
    GuardedBuffer buffer(kIn, Bytes(40));
    EXPECT_EQ(Run(buffer, 40), 0);
    EXPECT_EQ(buffer.Text(), GetParam().shape == Shape::kText ? "answer" : kIn);
  }
  EXPECT_EQ(pafGetFindStatusId(2), -1) << "there is one instance only";
}

TEST_P(RemoteCreating, CutsToTheImpliedSize)
{
  OpenDefault();
  const bool text = GetParam().shape == Shape::kText;
  const std::string longText(600, 't');
  Expect(GetParam().request, text ? "0|" + longText : "0");
  GuardedBuffer buffer(kIn, Bytes(10));
  EXPECT_EQ(Run(buffer, 10), 0);
  EXPECT_EQ(buffer.Text(), text ? longText.substr(0, Bytes(10) - 1) : kIn);
}

TEST_P(RemoteCreating, ReturnsTheServersStatus)
{
  OpenDefault();
  for (const int status : {6405, 12, -1}) {
    Expect(GetParam().request, std::to_string(status));
    GuardedBuffer buffer(kIn, Bytes(40));
    EXPECT_EQ(Run(buffer, 40), status);
    EXPECT_EQ(buffer.Text(), GetParam().shape == Shape::kText ? "" : kIn);
  }
}

TEST_P(RemoteCreating, FailsWithTheOpening)
{
  const int failure = GetParam().name == std::string("pafGet_FindStatus") ? -1 : 6499;
  for (int round = 0; round < 2; ++round) {
    Expect("pafOpenPafMemId|0", "6499|words");
    GuardedBuffer buffer(kIn, Bytes(40));
    EXPECT_EQ(Run(buffer, 40), failure);
    EXPECT_EQ(buffer.Text(), kIn);
    EXPECT_EQ(pafClosePafId(1), PAF_ERR_INVALID_ID) << "its Id is free";
    EXPECT_EQ(pafClosePaf(), PAF_ERR_INVALID_ID) << "and no longer the thread's";
  }
  ExpectOpen();
  Expect(GetParam().request, "0|answer");
  GuardedBuffer buffer(kIn, Bytes(40));
  EXPECT_EQ(Run(buffer, 40), 0);
}

TEST_P(RemoteCreating, FailsWithTheConnection)
{
  ASSERT_EQ(pafSetPropertiesId(0, "TcpPort", "1"), 0);
  GuardedBuffer buffer(kIn, Bytes(40));
  EXPECT_EQ(Run(buffer, 40), GetParam().name == std::string("pafGet_FindStatus") ? -1 : 4204);
  EXPECT_EQ(buffer.Text(), kIn);
  EXPECT_EQ(Describe(4204), "socket connect. socket connect error to 127.0.0.1 1: (111) Connection refused");
}

TEST_P(RemoteCreating, UsesAClosedIdUntilItIsGivenOutAgain)
{
  OpenDefault();
  Expect("pafClosePafId|17", "0");
  ASSERT_EQ(pafClosePaf(), 0);
  Sent();
  GuardedBuffer buffer(kIn, Bytes(40));
  EXPECT_EQ(Run(buffer, 40), GetParam().name == std::string("pafGet_FindStatus") ? -1 : PAF_ERR_INVALID_ID);
  EXPECT_EQ(pafClosePaf(), PAF_ERR_INVALID_ID);
  EXPECT_EQ(Sent(), Lines());
  EXPECT_EQ(OpenRemote(), 1);
  Expect(GetParam().request, "0|answer");
  EXPECT_EQ(Run(buffer, 40), 0) << "now it is that instance";
}

TEST_F(RemoteDefault, IsOpenedAtOnce)
{
  ExpectOpen(17, 2);
  EXPECT_EQ(pafOpenPafMem(2), 0);
  EXPECT_EQ(pafOpenPafMem(3), 0) << "it is there";
  EXPECT_EQ(pafOpenPaf(), 0);
  Expect("pafGetFindStatusId|17", "8");
  EXPECT_EQ(pafGet_FindStatus(), 8);
  Expect("pafClosePafId|17", "0");
  EXPECT_EQ(pafClosePaf(), 0);
}

TEST_F(RemoteDefault, IsNotLeftByAFailedOpen)
{
  for (const char* reply : {"6499|words", "12"}) {
    Expect("pafOpenPafMemId|0", reply);
    EXPECT_EQ(pafOpenPaf(), std::stoi(reply));
    EXPECT_EQ(pafClosePaf(), PAF_ERR_INVALID_ID);
  }
  Expect("pafOpenPafMemId|-4", TooLong());
  EXPECT_EQ(pafOpenPafMem(-4), 4555);
  OpenDefault();
  EXPECT_EQ(Property(0, "OpenArfs"), ";") << "an instance without a name, with the first Id";
  Expect("pafGetFindStatusId|17", "1");
  EXPECT_EQ(pafGetFindStatusId(1), 1);
}

TEST_F(RemoteDefault, IsNotNeededToCloseNothing)
{
  EXPECT_EQ(pafClosePaf(), PAF_ERR_INVALID_ID);
  EXPECT_EQ(Sent(), Lines());
}

TEST_F(RemoteDefault, IsGoneWhateverTheServerSaysToItsClosing)
{
  OpenDefault();
  Expect("pafClosePafId|17", "12");
  EXPECT_EQ(pafClosePaf(), 12);
  EXPECT_EQ(pafClosePaf(), PAF_ERR_INVALID_ID);
  EXPECT_EQ(Property(0, "OpenArfs"), "");
}

TEST_F(RemoteDefault, IsNotMadeForFormatting)
{
  GuardedBuffer out(250);
  EXPECT_EQ(pafFormatAddress("a", out.data(), 0L), PAF_ERR_INVALID_ID);
  EXPECT_TRUE(out.IsUntouched());
  OpenDefault();
  Expect("pafFormatAddressId|17|2|a", "0|" + std::string(300, 'f'));
  EXPECT_EQ(pafFormatAddress("a", out.data(), 2L), 0);
  EXPECT_EQ(out.Text(), std::string(249, 'f'));
}

TEST_F(RemoteDefault, IsNotUsedByFormatAddressS)
{
  for (const bool open : {false, true}) {
    if (open) OpenDefault();
    Expect("pafFormatAddressS|1 High St|Burwood", "0|" + std::string(60, 'f'));
    GuardedBuffer text("1 High St\nBurwood", 31);
    EXPECT_EQ(pafFormatAddressS(text.data(), 30), 0);
    EXPECT_EQ(text.Text(), std::string(30, 'f'));
    Expect("pafFormatAddressS|a", "12|words");
    GuardedBuffer failing("a", 31);
    EXPECT_EQ(pafFormatAddressS(failing.data(), 30), 12) << "the server's status is told";
    EXPECT_EQ(failing.Text(), "");
  }
}

TEST_F(RemoteDefault, PropertiesAreReadFromTheServerItselfWithoutOne)
{
  Expect("pafGetPropertiesId|0|PafLibVersion", "0|5.10");
  EXPECT_EQ(ReadDefault("PafLibVersion"), (Answer{0, "5.10"}));
  EXPECT_EQ(ReadDefault("UseSockets"), (Answer{0, "True"}));
  EXPECT_EQ(ReadDefault("OpenARF"), (Answer{0, ""}));
  OpenDefault();
  Expect("pafGetPropertiesId|17|PafLibVersion", "0|5.11");
  EXPECT_EQ(ReadDefault("PafLibVersion"), (Answer{0, "5.11"}));
  EXPECT_EQ(ReadDefault("OpenARF"), (Answer{0, ""}));
}

TEST_F(RemoteDefault, ConnectionSettingsMakeNone)
{
  EXPECT_EQ(pafSetProperties("UseSockets", "true"), 0);
  EXPECT_EQ(pafSetProperties("TcpHost", "127.0.0.1"), 0);
  EXPECT_EQ(pafSetProperties("TcpPort", server.Port().c_str()), 0);
  EXPECT_EQ(pafClosePaf(), PAF_ERR_INVALID_ID);
  EXPECT_EQ(Sent(), Lines());
}

TEST_F(RemoteDefault, IsBroughtBackByName)
{
  ExpectOpen(17, 2);
  ASSERT_EQ(pafOpenPafMem(2), 0);
  Expect("pafSetPropertiesId|17|a|1", "0");
  ASSERT_EQ(pafSetProperties("a", "1"), 0);
  Break(1);
  Expect("pafOpenArfId|2|", "0|30");
  Expect("pafSetPropertiesId|30|a|1", "0");
  Expect("pafGetNextPopupHintId|30", "0|hint");
  char text[16];
  EXPECT_EQ(Next(text), 0);
  EXPECT_STREQ(text, "hint");
}

TEST_F(RemoteDefault, OpenedAfterABreakNeedsNoReturn)
{
  const int other = OpenRemote("NZ.y", 40);
  Break(other);
  ExpectOpen(18);
  ASSERT_EQ(pafOpenPaf(), 0);
  Expect("pafGetNextPopupHintId|18", "0|hint");
  char text[16];
  EXPECT_EQ(Next(text), 0) << "it was never lost";
  Expect("pafClosePafId|18", "0");
  EXPECT_EQ(pafClosePaf(), 0);
}

TEST_F(RemoteDefault, IsClosedWithoutAWordAfterABreak)
{
  OpenDefault();
  Break(1);
  EXPECT_EQ(pafClosePaf(), 0);
  EXPECT_EQ(Sent(), Lines());
  EXPECT_EQ(pafClosePaf(), PAF_ERR_INVALID_ID);
}

TEST_F(RemoteDefault, GoesWithItsThread)
{
  for (const char* reply : {"0", "12"}) {
    ExpectOpen();
    Expect("pafClosePafId|17", reply);
    std::thread([] { EXPECT_EQ(pafOpenPaf(), 0); }).join();
    EXPECT_EQ(Sent(), (Lines{"pafOpenPafMemId|0", "pafClosePafId|17"}));
    EXPECT_EQ(Property(0, "OpenArfs"), "");
  }
}

TEST_F(RemoteDefault, GoesWithItsThreadAfterABreak)
{
  ExpectOpen();
  std::thread([this] {
    EXPECT_EQ(pafOpenPaf(), 0);
    Break(1);
  }).join();
  EXPECT_EQ(Sent(), Lines());
  EXPECT_EQ(Property(0, "OpenArfs"), "");
}

TEST_F(RemoteDefault, GoesWithItsThreadWhenItCannotBeClosed)
{
  ExpectOpen();
  Expect("pafClosePafId|17", TooLong());
  std::thread([] { EXPECT_EQ(pafOpenPaf(), 0); }).join();
  EXPECT_EQ(Property(0, "OpenArfs"), "");
  OpenDefault();
  EXPECT_EQ(Property(0, "OpenArfs"), ";") << "the same Id again";
}

TEST_F(RemoteDefault, ThatWasClosedIsNotClosedAgainWithItsThread)
{
  ExpectOpen();
  Expect("pafClosePafId|17", "0");
  std::thread([] {
    EXPECT_EQ(pafOpenPaf(), 0);
    EXPECT_EQ(pafClosePaf(), 0);
  }).join();
  EXPECT_EQ(Sent().size(), 2u);
}

TEST_F(RemoteDefault, IsTheThreadsOwn)
{
  OpenDefault();
  ExpectOpen(18);
  Expect("pafGetFindStatusId|18", "2");
  Expect("pafClosePafId|18", "0");
  std::thread([] {
    GuardedBuffer out(250);
    EXPECT_EQ(pafFormatAddress("a", out.data(), 0L), PAF_ERR_INVALID_ID);
    EXPECT_EQ(pafGet_FindStatus(), 2);
  }).join();
  Expect("pafGetFindStatusId|17", "1");
  EXPECT_EQ(pafGet_FindStatus(), 1);
}

TEST_F(RemoteDefault, BusyAtItsThreadsEndStaysOpen)
{
  ExpectOpen();
  std::promise<void> reached;
  std::promise<void> goOn;
  server.AnswerOthers([&, once = goOn.get_future().share()](const std::string&) {
    reached.set_value();
    once.wait();
    return Reply::Line("0\tlate");
  });
  std::future<int> waiting;
  std::thread([&] {
    EXPECT_EQ(pafOpenPaf(), 0);
    waiting = std::async(std::launch::async, [] {
      char text[8];
      return pafGetParsedInputId(1, text, sizeof text);
    });
    reached.get_future().wait();
  }).join();
  goOn.set_value();
  EXPECT_EQ(waiting.get(), 0) << "the other thread's call is not disturbed";
  EXPECT_EQ(Sent(), (Lines{"pafOpenPafMemId|0", "pafGetParsedInputId|17"}));
}

}  // namespace
}  // namespace blackbox
