// What holds for every function of the C interface that works on an instance: what it refuses, what becomes of a
// failure, how it treats the caller's buffer, and that two of them run at once.
#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <fstream>
#include <iterator>
#include <set>
#include <thread>

#include "blackbox/support/default_session.h"
#include "blackbox/support/delivery.h"
#include "blackbox/support/exported_functions.h"
#include "blackbox/support/guarded_buffer.h"
#include "blackbox/support/row_name.h"

namespace blackbox {
namespace {

constexpr int kPluginCode = 12;

constexpr auto kPatience = std::chrono::seconds(20);

TEST(Interface, EveryFunctionOfTheHeaderIsInTheTable)
{
  std::ifstream file(QXPAF_HEADER);
  const std::string header{std::istreambuf_iterator<char>(file), {}};
  const std::string start = "QXPAF_API int ";
  std::multiset<std::string> declared;
  for (size_t at = header.find(start); at != std::string::npos; at = header.find(start, at + 1)) {
    const size_t name = at + start.size();
    declared.insert(header.substr(name, header.find('(', name) - name));
  }
  std::multiset<std::string> listed;
  for (const ExportedFunction& function : ExportedFunctions()) listed.insert(function.name);
  EXPECT_EQ(declared, listed);
  size_t marks = 0;
  for (size_t at = header.find("QXPAF_API "); at != std::string::npos; at = header.find("QXPAF_API ", at + 1)) ++marks;
  EXPECT_EQ(marks, declared.size()) << "functions declared in another form are not recognised";
}

/** The rows of the table for which a condition holds. */
template <class Condition>
std::vector<ExportedFunction> Where(Condition condition)
{
  std::vector<ExportedFunction> rows;
  std::copy_if(ExportedFunctions().begin(), ExportedFunctions().end(), std::back_inserter(rows), condition);
  return rows;
}

bool HasInstance(const ExportedFunction& function)
{
  return function.on != On::kNothing;
}
bool ReachesThePlugin(const ExportedFunction& function)
{
  return function.operation != kFakeOperationCount;
}
bool HasUsualBuffer(const ExportedFunction& function)
{
  return ReachesThePlugin(function) && function.output != Output::kNone && function.output != Output::kOwn;
}
bool IsWorkless(const ExportedFunction& function)
{
  return !HasInstance(function) && !ReachesThePlugin(function) && function.run != nullptr;
}

class ConformanceTest : public DefaultSessionTest, public testing::WithParamInterface<ExportedFunction>
{
 protected:
  const ExportedFunction& Function() const { return GetParam(); }
  Fake& Plugin() { return Function().on == On::kId ? fake : au; }
  int InstanceId() const { return Function().on == On::kId ? id : id + 1; }

  /** Calls the function with enough of everything. */
  int Call(int instance)
  {
    GuardedBuffer text(Function().inPlace ? "12345678" : "", 255);
    const int status = Function().run(instance, "in", text.data(), 200);
    answer = text.Text();
    return status;
  }
  int Call() { return Call(id); }

  std::string answer;
};

#define CONFORMANCE_SUITE(Name, condition) \
  class Name : public ConformanceTest      \
  {                                        \
  };                                       \
  INSTANTIATE_TEST_SUITE_P(Every, Name, testing::ValuesIn(Where(condition)), RowName())

// ---- The instance ------------------------------------------------------------------------------------------------

CONFORMANCE_SUITE(InstanceConformance, HasInstance);

TEST_P(InstanceConformance, TheDefaultInstanceIsTheNextId)
{
  if (Function().on != On::kDefault) return;
  char out[8];
  EXPECT_EQ(pafGetNextAddressId(InstanceId(), out, sizeof out), 0);
  EXPECT_EQ(au.Count(kFakeGetNextAddress), 1u);
}

TEST_P(InstanceConformance, RefusesToWorkWithoutAnInstance)
{
  const int closed = Open("DLL:FakeTwo;/closed");
  ASSERT_EQ(pafClosePafId(closed), 0);
  ASSERT_EQ(pafClosePaf(), 0);
  fake->clearCalls();
  au->clearCalls();
  const int expected = Function().refusals.noInstance;
  for (int unknown : {0, -1, closed, 999999, INT_MAX, INT_MIN}) {
    EXPECT_EQ(Call(unknown), expected) << "Id " << unknown;
    if (expected == 0) {
      EXPECT_EQ(answer, "");
    }
  }
  EXPECT_EQ(fake.Sequence() + au.Sequence(), "");
  ASSERT_EQ(pafOpenPaf(), 0);
}

TEST_P(InstanceConformance, RefusesABusyInstance)
{
  BusyInstance busy(Plugin(), InstanceId());
  Plugin()->clearCalls();
  EXPECT_EQ(Call(), Function().refusals.busy);
  if (Function().refusals.busy == 0) {
    EXPECT_EQ(answer, "");
  }
  EXPECT_EQ(Plugin().Sequence(), "") << "a refused call must not reach the plug-in";
  EXPECT_EQ(busy.Finish(), 0);
}

TEST_P(InstanceConformance, RefusesAnInstanceWithoutSearcher)
{
  ASSERT_EQ(pafForceCloseAll(), 0);
  Plugin()->clearCalls();
  for (int time = 0; time < 2; ++time) {
    EXPECT_EQ(Call(), Function().refusals.noSearcher);
    if (Function().refusals.noSearcher == 0) {
      EXPECT_EQ(answer, "");
    }
  }
  EXPECT_EQ(Plugin().Sequence(), "");
}

// ---- Failures ----------------------------------------------------------------------------------------------------

CONFORMANCE_SUITE(PluginConformance, ReachesThePlugin);

TEST_P(PluginConformance, TellsThePluginsFailure)
{
  for (int status : {kPluginCode, 7777, -1, 6405, INT_MAX, INT_MIN}) {
    Plugin().Answer(Function().operation, status);
    EXPECT_EQ(Call(), Function().failure == Failure::kHidden ? 0 : status);
    if (Function().failure == Failure::kHidden) {
      EXPECT_EQ(answer, "");
    }
  }
}

TEST_P(PluginConformance, DescribesTheFailureOnceAndOnlyOnItsThread)
{
  Plugin().Answer(Function().operation, kPluginCode);
  Call();
  std::thread([] { EXPECT_EQ(Describe(kPluginCode), "") << "another thread has no such error"; }).join();
  // What a function hides is remembered all the same, by the function with an Id that it calls.
  const bool remembered =
      Function().failure == Failure::kRemembered || (Function().failure == Failure::kHidden && HasInstance(Function()));
  EXPECT_EQ(Describe(kPluginCode), remembered ? "fake text for 12" : "");
  EXPECT_EQ(Describe(kPluginCode), "") << "asking consumes the error";
}

TEST_P(PluginConformance, AskingForAnotherCodeConsumesTheFailure)
{
  Plugin().Answer(Function().operation, kPluginCode);
  Call();
  EXPECT_EQ(Describe(kPluginCode + 1), "");
  EXPECT_EQ(Describe(kPluginCode), "");
}

/** Calls the function on an instance of the calling thread's own; the gate of its operation is closed. */
int CallBeside(const ExportedFunction& function, int instance)
{
  char text[256] = "12345678";
  return function.run(instance, "in", text, 200);
}

TEST_P(PluginConformance, TwoInstancesAreInThePluginAtOnce)
{
  const int other = Open("DLL:FakeTwo;/other");
  Fake& plugin = Function().on == On::kId ? fake : au;
  std::vector<int> statuses(2, -99);
  std::vector<std::thread> threads;
  std::atomic<int> ready{0};
  std::atomic<bool> go{false};
  for (size_t number = 0; number < 2; ++number) {
    threads.emplace_back([&, number] {
      char out[255];
      EXPECT_EQ(pafGetNextAddress(out), 0) << "opens the thread's default instance";
      ++ready;
      while (!go) std::this_thread::yield();
      statuses[number] = CallBeside(Function(), number == 0 ? id : other);
    });
  }
  while (ready < 2) std::this_thread::yield();
  plugin->block(Function().operation);
  go = true;
  const auto limit = std::chrono::steady_clock::now() + kPatience;
  int inside = 0;
  while (inside < 2 && std::chrono::steady_clock::now() < limit) {
    inside = plugin->waitUntilBlocked(Function().operation, 1000);
    std::this_thread::yield();
  }
  EXPECT_EQ(inside, 2);
  plugin->unblock(Function().operation);
  for (std::thread& thread : threads) thread.join();
  const bool noBarcode = Function().operation == kFakeGetOtherProperties && Function().failure == Failure::kReturned &&
                         Function().name != std::string("pafDpidToBarcode");
  for (int status : statuses) EXPECT_EQ(status, noBarcode ? PAF_ERR_BARCODE : 0);
  EXPECT_EQ(pafClosePafId(other), 0);
}

// ---- Buffers -----------------------------------------------------------------------------------------------------

CONFORMANCE_SUITE(BufferConformance, HasUsualBuffer);

TEST_P(BufferConformance, DeliversAtEverySize)
{
  for (const std::string text : {"12345678", "", "1"}) {
    Plugin().Answer(Function().operation, 0, text.c_str());
    for (int size : {-1, 0, 1, 2, 6, 7, 8, 9, 10, 64, 3000}) {
      SCOPED_TRACE("size " + std::to_string(size));
      Delivery delivery(Function(), id, size, "");
      delivery.Expect(text);
    }
  }
}

TEST_P(BufferConformance, DeliversAnAnswerLongerThanTheBuffer)
{
  const std::string text(5000, 'x');
  Plugin().Answer(Function().operation, 0, text.c_str());
  for (int size : {1, 2, 9, 10, 11, 254, 255, 256, 257, 510, 511, 512, 513, 2046, 2047, 2048, 2049}) {
    if (Function().output == Output::kRefused && size >= 1024) continue;  // the plug-in cuts it for them
    SCOPED_TRACE("size " + std::to_string(size));
    Delivery delivery(Function(), id, size, "");
    delivery.Expect(text);
  }
}

TEST_P(BufferConformance, LeavesTheBufferAloneOnFailure)
{
  Plugin().Behave(Function().operation, kFakeSilent, kPluginCode);
  const bool property = Function().operation == kFakeGetProperties;
  Delivery delivery(Function(), id, 40, "input");
  if (Function().failure == Failure::kHidden || property) {
    EXPECT_EQ(delivery.Text(), "");
    delivery.ExpectUnchangedBehindTheSize();
  } else {
    EXPECT_TRUE(delivery.IsUnchanged());
  }
}

// ---- The rest ----------------------------------------------------------------------------------------------------

CONFORMANCE_SUITE(WorklessConformance, IsWorkless);

TEST_P(WorklessConformance, AnswersTheSameWhateverTheId)
{
  fake->clearCalls();
  BusyInstance busy(fake, id);
  const std::string before = fake.Sequence();
  for (int any : {id, id + 1, 0, -1, 999999}) {
    GuardedBuffer text(8);
    EXPECT_EQ(Function().run(any, "in", text.data(), 8), Function().refusals.noInstance);
    EXPECT_TRUE(text.IsUntouched());
  }
  EXPECT_EQ(fake.Sequence(), before);
}

using NullConformance = DefaultSessionTest;

TEST_F(NullConformance, OutArgumentsThatMayBeNull)
{
  char out[255];
  EXPECT_EQ(pafValidateFullAddressId(id, "in", out, sizeof out, 0, nullptr), 0);
  EXPECT_EQ(pafValidateFullAddress("in", out, sizeof out, 0, nullptr), 0);
  EXPECT_EQ(pafGetNextGifConcordance(id, out, 100, out + 100, 100, nullptr), 0);
  EXPECT_EQ(pafGetPropertiesId(id, "in", nullptr, 10), PAF_ERR_BUFFER_TOO_SMALL);
  EXPECT_EQ(pafGetPropertiesId(0, "TestProperty", nullptr, 10), PAF_ERR_BUFFER_TOO_SMALL);
  EXPECT_EQ(pafGetProperties("in", nullptr, 10), PAF_ERR_BUFFER_TOO_SMALL);
  EXPECT_EQ(pafUpdateArfs(nullptr, nullptr), 0);
  au.Answer(kFakeGetOtherProperties, 0, "0123");
  EXPECT_EQ(pafBuildBarcode_("11", "12345678", "x", 1, nullptr, nullptr), 0);
}

}  // namespace
}  // namespace blackbox
