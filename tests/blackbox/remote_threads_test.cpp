// Many threads over the one connection, which the server drops again and again.
#include <gtest/gtest.h>

#include <atomic>
#include <filesystem>
#include <random>
#include <set>
#include <sstream>

#include "blackbox/support/guarded_buffer.h"
#include "blackbox/support/properties.h"
#include "blackbox/support/remote.h"
#include "blackbox/support/run_in_threads.h"
#include "blackbox/support/session.h"
#include "qxpaf/paf.h"

namespace blackbox {
namespace {

using fake::Reply;

constexpr int kThreads = 8;

std::ptrdiff_t Descriptors()
{
  const std::filesystem::directory_iterator all("/proc/self/fd");
  return std::distance(begin(all), end(all));
}

/**
 * A server that echoes, and that drops its connection now and then with everything it has open. Ids are never given out
 * twice, so that a client with an Id of a lost connection cannot go unnoticed.
 *
 * The end of the connection in place of an answer reads as status 0: an instance that is opened that way is one of
 * nothing. So openings fail in ways that the client can tell.
 */
class ForgetfulServer
{
 public:
  explicit ForgetfulServer(unsigned seed) : random_(seed) {}

  /** Called by the server's one thread. */
  Reply Answer(const std::string& request)
  {
    std::vector<std::string> fields;
    std::istringstream line(request);
    for (std::string field; std::getline(line, field, '\t');) fields.push_back(field);
    const bool opens = fields[0] == "pafOpenArfId";
    if (storm_ && random_() % 16 == 0) return Drop(opens);
    if (opens) {
      open_.insert(std::to_string(++lastId_));
      return Reply::Line("0\t" + std::to_string(lastId_));
    }
    if (open_.count(fields.at(1)) == 0) return Reply::Line("6405");
    if (fields[0] == "pafClosePafId") open_.erase(fields[1]);
    return Reply::Line("0\t" + (fields.size() > 2 ? fields[2] : ""));
  }

  void SetStorm(bool storm) { storm_ = storm; }
  unsigned Drops() const { return drops_; }

 private:
  Reply Drop(bool opens)
  {
    ++drops_;
    open_.clear();
    switch (opens ? 0 : random_() % 3) {
      case 0:
        return Reply::Line(std::string(1024, 'x')).ThenClose();
      case 1:
        return Reply::Close();
      default:
        return Reply::Reset();
    }
  }

  std::mt19937 random_;
  std::set<std::string> open_;
  int lastId_ = 0;
  std::atomic<bool> storm_{false};
  std::atomic<unsigned> drops_{0};
};

/** What a call may come back with while connections break; 6405 is the server's, for an instance that it lost. */
bool IsExpected(int status)
{
  static const std::set<int> kExpected = {0, 4551, 4555, 4556, PAF_ERR_INVALID_ID};
  return kExpected.count(status) != 0;
}

/** Asks with a text of the thread's own, which must come back whenever anything does. */
int Echo(int id, int number, bool* answered = nullptr)
{
  const std::string mine = "thread " + std::to_string(number);
  GuardedBuffer text(mine, 32);
  const int status = pafGetDpidId(id, text.data(), text.size());
  if (status == 0 && text.Text() != "") {
    EXPECT_EQ(text.Text(), mine) << "another thread's answer";
    if (answered != nullptr) *answered = true;
  }
  return status;
}

/** One of the calls, in turn. */
int CallSomething(int id, int number, unsigned round)
{
  GuardedBuffer text(32);
  switch (round % 6) {
    case 0:
      return Echo(id, number);
    case 1:
      return pafGetNextAddressId(id, text.data(), text.size());
    case 2:
      return pafSetPropertiesId(id, "Name", round % 12 < 6 ? "a" : "b");
    case 3:
      return pafGetPropertiesId(id, "Name", text.data(), text.size());
    case 4:
      return pafSetGeographicalCodesId(id, "LGA");
    default:
      return pafGetNextPopupHintId(id, text.data(), text.size());
  }
}

class RemoteThreads : public RemoteTest
{
 protected:
  void SetUp() override
  {
    RemoteTest::SetUp();
    std::printf("seed %u\n", seed);
    server.AnswerOthers([this](const std::string& request) { return forgetful.Answer(request); });
  }

  const unsigned seed = std::random_device()();
  ForgetfulServer forgetful{seed};
};

TEST_F(RemoteThreads, FindTheirInstancesAgain)
{
  std::vector<int> ids;
  for (int i = 0; i < kThreads; ++i) ids.push_back(Open("AU." + std::to_string(i), i));
  const std::ptrdiff_t descriptors = Descriptors();
  std::atomic<unsigned> calls{0};
  std::atomic<unsigned> successes{0};
  forgetful.SetStorm(true);
  RunInThreads(kThreads, std::chrono::milliseconds(3000), [&](int number, unsigned round) {
    const int status = CallSomething(ids[static_cast<size_t>(number)], number, round);
    EXPECT_TRUE(IsExpected(status)) << status;
    ++calls;
    if (status == 0) ++successes;
  });
  forgetful.SetStorm(false);
  EXPECT_GT(forgetful.Drops(), 10u);
  EXPECT_GT(successes, calls / 10);

  for (int i = 0; i < kThreads; ++i) {
    const int id = ids[static_cast<size_t>(i)];
    bool answered = false;
    // The end of the connection, then the failed request that tells of it, then the answer.
    for (int attempt = 0; attempt < 3 && !answered; ++attempt) Echo(id, i, &answered);
    EXPECT_TRUE(answered) << "instance " << i << " is lost for good";
    EXPECT_EQ(Property(id, "OpenARF"), "AU." + std::to_string(i));
  }
  EXPECT_EQ(Descriptors(), descriptors);
  for (const int id : ids) EXPECT_EQ(pafClosePafId(id), 0);
  EXPECT_EQ(OpenRemote(), 1) << "all Ids are free";
}

TEST_F(RemoteThreads, LeaveNothingBehindInTheStorm)
{
  const int first = OpenRemote();
  const std::ptrdiff_t descriptors = Descriptors();
  std::atomic<unsigned> opened{0};
  forgetful.SetStorm(true);
  RunInThreads(kThreads, std::chrono::milliseconds(1500), [&](int number, unsigned) {
    const int id = pafOpenArfId2(1, "AU.x");
    EXPECT_TRUE(id > 0 || IsExpected(-id)) << id;
    if (id < 0) return;
    ++opened;
    for (unsigned round = 0; round < 3; ++round) {
      const int status = CallSomething(id, number, round);
      EXPECT_TRUE(IsExpected(status)) << status;
    }
    const int status = pafClosePafId(id);
    EXPECT_TRUE(IsExpected(status)) << status;
  });
  forgetful.SetStorm(false);
  EXPECT_GT(opened, 10u);
  EXPECT_GT(forgetful.Drops(), 10u);
  EXPECT_EQ(Property(0, "OpenArfs"), "AU.x;") << "only the first is left";
  bool answered = false;
  for (int attempt = 0; attempt < 3 && !answered; ++attempt) Echo(first, 99, &answered);
  EXPECT_TRUE(answered);
  EXPECT_EQ(Descriptors(), descriptors);
}

}  // namespace
}  // namespace blackbox
