// Ten thousand random texts through every function that takes or gives one, in buffers of exactly their size.
#include <gtest/gtest.h>

#include <iterator>

#include "blackbox/support/command_call.h"
#include "blackbox/support/default_session.h"
#include "blackbox/support/delivery.h"
#include "blackbox/support/random_text.h"
#include "blackbox/support/row_name.h"

namespace blackbox {
namespace {

constexpr int kRounds = 10000;
constexpr int kLongRounds = 20;
constexpr int kLong = 100 * 1024;

std::vector<ExportedFunction> FunctionsOfThePlugin()
{
  std::vector<ExportedFunction> rows;
  std::copy_if(ExportedFunctions().begin(), ExportedFunctions().end(), std::back_inserter(rows),
               [](const ExportedFunction& function) { return function.operation != kFakeOperationCount; });
  return rows;
}

class RandomCallsTest : public DefaultSessionTest, public testing::WithParamInterface<ExportedFunction>
{
 protected:
  const ExportedFunction& Function() const { return GetParam(); }
  Fake& Plugin() { return Function().on == On::kId ? fake : au; }

  void CallOnce(int mostInput, int mostAnswer);
  void ExpectArrived(const std::string& in);

  RandomText random;
};

INSTANTIATE_TEST_SUITE_P(Every, RandomCallsTest, testing::ValuesIn(FunctionsOfThePlugin()), RowName());

void RandomCallsTest::ExpectArrived(const std::string& in)
{
  const std::vector<Argument> got = Plugin().Last(Function().operation).arguments;
  if (got.empty() || got[0].raw.kind != kFakeTextArgument || Function().output == Output::kRefused) return;
  ASSERT_EQ(got[0].text, in);
}

void RandomCallsTest::CallOnce(int mostInput, int mostAnswer)
{
  const std::string in = random.Bytes(mostInput);
  const std::string answer = random.Bytes(mostAnswer);
  // Those that hide their failures empty the buffer whatever its size.
  const int size = random.Number(Function().failure == Failure::kHidden ? 0 : -1, 320);
  Plugin()->clearCalls();
  Plugin().Answer(Function().operation, 0, answer.c_str());
  Delivery delivery(Function(), id, size, in);
  if (Function().output == Output::kOwn) {
    const int status = delivery.Status();
    ASSERT_TRUE(status == 0 || status == PAF_ERR_BUFFER_TOO_SMALL || status == PAF_ERR_BARCODE) << status;
    delivery.ExpectUnchangedBehindTheSize();
  } else if (Function().output == Output::kNone) {
    ASSERT_EQ(delivery.Status(), 0);
    ASSERT_TRUE(delivery.IsUnchanged());
    ExpectArrived(in);
  } else {
    delivery.Expect(Function().output == Output::kRefused ? answer.substr(0, 1023) : answer);
    if (Plugin().Count(Function().operation) != 0) ExpectArrived(in);
  }
}

TEST_P(RandomCallsTest, KeepWithinTheirBuffers)
{
  for (int round = 0; round < kRounds && !HasFailure(); ++round) CallOnce(300, 300);
}

TEST_P(RandomCallsTest, KeepWithinTheirBuffersWithLongTexts)
{
  for (int round = 0; round < kLongRounds && !HasFailure(); ++round) CallOnce(kLong, kLong);
}

// ---- Commands ----------------------------------------------------------------------------------------------------

class RandomCommandsTest : public DefaultSessionTest
{
 protected:
  void SetUp() override
  {
    DefaultSessionTest::SetUp();
    fake->setRecording(0);
    au->setRecording(0);
  }

  /** Commands open and close what they like: only the session's instance and the default one are open again. */
  void PutInstancesBack()
  {
    for (int any = 1; any <= 64; ++any) pafClosePafId(any);
    ASSERT_EQ(pafClosePaf(), 0);
    id = Open("DLL:FakeTwo;/session");
    au->clearAnswer(kFakeDbOpen);
    ASSERT_EQ(pafOpenPaf(), 0);
  }

  void Program()
  {
    const std::string answer = random.Bytes(200);
    for (FakeOperation operation :
         {kFakeLookupAddress, kFakeFixLastLine, kFakeValidatePartialAddress, kFakeGetAddress, kFakeGetNextAddress,
          kFakeGetProperties, kFakeSetProperties, kFakeFormatAddress, kFakeSetGeographicalCodes, kFakeDbOpen}) {
      const int status = random.Number(0, 3) == 0 ? random.Number(-5, 7000) : 0;
      fake.Answer(operation, status, answer.c_str());
      au.Answer(operation, operation == kFakeDbOpen ? status : 0, answer.c_str());
    }
    fake->clearAnswer(kFakeDbOpen);
  }

  RandomText random;
};

TEST_F(RandomCommandsTest, KeepWithinTheirBuffer)
{
  int answered = 0;
  for (int round = 0; round < kRounds && !HasFailure(); ++round) {
    if (round % 20 == 0) {
      PutInstancesBack();
      Program();
    }
    CommandCall call(RandomCommand(random), random.Number(-1, 320));
    if (call.Status() == 0 && !call.Text().empty()) ++answered;
  }
  EXPECT_GT(answered, kRounds / 20) << "too few of the commands were good ones";
}

TEST_F(RandomCommandsTest, KeepWithinTheirBufferWithLongTexts)
{
  for (int round = 0; round < kLongRounds * 10 && !HasFailure(); ++round) {
    if (round % 20 == 0) PutInstancesBack();
    const std::string command = RandomCommand(random) + random.Bytes(kLong);
    CommandCall(command, random.Number(0, 1) == 0 ? random.Number(0, 320) : kLong);
  }
}

TEST_F(RandomCommandsTest, OfAnyBytesAreUnknown)
{
  for (int round = 0; round < kRounds && !HasFailure(); ++round) {
    const std::string input = random.Bytes(300);
    CommandCall call(input, random.Number(0, 320));
    ASSERT_EQ(call.Status(), 0);
    ASSERT_EQ(call.Text(), "") << "no command has a name like " << input;
  }
}

TEST_F(RandomCommandsTest, LongDatabaseNamesAreRefusedOrOpened)
{
  for (int round = 0; round < kLongRounds && !HasFailure(); ++round) {
    for (const char* beginning : {"", "AU.", "AU./", "DLL:", "DLL:FakeTwo;", "/"}) {
      const std::string name = beginning + random.Bytes(kLong);
      const int opened = pafOpenArfId2(random.Number(0, 3), name.c_str());
      ASSERT_TRUE(opened > 0 || opened <= -990) << opened;
      if (opened > 0) {
        ASSERT_EQ(pafClosePafId(opened), 0);
      }
    }
  }
}

TEST_F(RandomCommandsTest, DescriptionsKeepWithinTheirBuffer)
{
  for (int round = 0; round < kRounds && !HasFailure(); ++round) {
    const int code = random.Number(0, 1) == 0 ? random.Number(6390, 6510) : random.Number(-10, 5000);
    fake.Answer(kFakeSetGeographicalCodes, code, random.Bytes(300).c_str());
    pafSetGeographicalCodesId(id, "codes");
    const int size = random.Number(-1, 300);
    GuardedBuffer text(size < 0 ? 0 : static_cast<size_t>(size));
    ASSERT_EQ(pafGetErrorDescription(text.data(), random.Number(0, 3) == 0 ? code + 1 : code, size), 0);
    ASSERT_EQ(text.IsTerminated(), size > 0);
  }
}

}  // namespace
}  // namespace blackbox
