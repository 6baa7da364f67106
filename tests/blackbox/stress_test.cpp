// Many threads open, ask, change and close instances while the databases move under them.
#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <filesystem>
#include <random>

#include "blackbox/support/country_fakes.h"
#include "blackbox/support/run_in_threads.h"
#include "blackbox/support/session.h"
#include "blackbox/support/workspace.h"
#include "qxpaf/paf.h"
#include "support/random_seed.h"

namespace blackbox {
namespace {

constexpr int kThreads = 8;
constexpr size_t kMostInstances = 3;  // of one thread
constexpr auto kDuration = std::chrono::seconds(3);

const std::vector<std::string> kNames = {"AU.a", "au.A", "NZ.b", "plain", "", "DLL:FakeOne;/p", "AU./stays"};

/** Fails unless the status is one of those that this call may answer here. */
void Expect(std::initializer_list<int> allowed, int status, const char* what)
{
  EXPECT_NE(std::find(allowed.begin(), allowed.end(), status), allowed.end()) << what << ": " << status;
}

/** The configuration at one of two times. Every database is in another place in the other. */
class MovingDatabases
{
 public:
  explicit MovingDatabases(const Workspace& workspace) : workspace_(workspace)
  {
    for (const char* const time : {"1", "2"}) {
      for (const char* const name : {"plain", "default"}) {
        workspace.MakeDatabase(std::string(name) + time, "DATABASENAME=AUSTRALIA\n");
      }
    }
    Move();
  }

  /** Puts the other configuration in place, at once: no reader sees half of a file. */
  void Move()
  {
    time_ = time_ == "1" ? "2" : "1";
    std::string contents;
    for (const char* const line : {"ARF/AU/a=/a", "ARF/NZ/b=/b", "ARF/plain=@/plain", "PafDir=@/default"}) {
      contents += Expand(line, workspace_) + time_ + "\n";
    }
    workspace_.WriteFile("next", contents);
    std::filesystem::rename(workspace_.Root() + "/next", workspace_.Root() + "/.morvex");
  }

  /** The end of the paths of the databases that have moved away. */
  char OtherTime() const { return time_ == "1" ? '2' : '1'; }

 private:
  const Workspace& workspace_;
  std::string time_ = "2";
};

/** One thread's share of the work, each step chosen by chance. */
class Client
{
 public:
  Client(int number, unsigned seed, std::atomic<int>* ids) : random_(seed), ids_(ids), shared_(ids[number]) {}

  void Step()
  {
    switch (Choose(8)) {
      case 0:
        return OpenOne();
      case 1:
        return CloseOne();
      case 2:
        return ChangeOne();
      case 3:
        return AskOne();
      case 4:
        return AskAStranger();
      case 5:
        return ReadOne();
      case 6:
        return ReadLibrary();
      default:
        return AskDefault();
    }
  }

  void CloseAll()
  {
    for (const int id : own_) EXPECT_EQ(pafClosePafId(id), 0);
    own_.clear();
  }

 private:
  size_t Choose(size_t count) { return random_() % count; }
  const std::string& ChooseName() { return kNames[Choose(kNames.size())]; }
  int& ChooseOwn() { return own_[Choose(own_.size())]; }

  void OpenOne()
  {
    if (own_.size() == kMostInstances) return;
    int id = 0;
    const std::string& name = ChooseName();
    const int status = pafOpenArfId(&id, static_cast<int>(Choose(4)), name.c_str());
    EXPECT_EQ(status, 0) << "opening " << name;
    if (status != 0) return;
    own_.push_back(id);
    shared_ = id;
  }

  void CloseOne()
  {
    if (own_.empty()) return;
    int& id = ChooseOwn();
    const int status = pafClosePafId(id);
    Expect({0, PAF_ERR_ID_IN_USE}, status, "closing");
    if (status != 0) return;
    std::swap(id, own_.back());
    own_.pop_back();
  }

  void ChangeOne()
  {
    if (own_.empty()) return;
    Expect({0, PAF_ERR_ID_IN_USE}, pafSetPropertiesId(ChooseOwn(), "OpenARF", ChooseName().c_str()), "changing");
  }

  void AskOne()
  {
    if (own_.empty()) return;
    char text[32] = "1 High St";
    const int status = pafLookupAddress(ChooseOwn(), text, sizeof text, 1);
    Expect({0, PAF_ERR_ID_IN_USE}, status, "asking");
    if (status == 0) {
      EXPECT_STREQ(text, "12345678");
    }
  }

  void AskAStranger()
  {
    char text[32] = "1 High St";
    const int status = pafLookupAddress(ids_[Choose(kThreads)], text, sizeof text, 1);
    Expect({0, PAF_ERR_ID_IN_USE, PAF_ERR_INVALID_ID}, status, "asking another thread's instance");
  }

  void ReadOne()
  {
    if (own_.empty()) return;
    char text[64];
    for (const char* const name : {"OpenARF", "CountryCode", "Anything"}) {
      EXPECT_EQ(pafGetPropertiesId(ChooseOwn(), name, text, sizeof text), 0) << name;
    }
  }

  void ReadLibrary()
  {
    char text[4096];
    for (const char* const name : {"OpenArfs", "OpenArfPaths", "ClientCount", "ClientCount2", "ARFs", "DefaultArf"}) {
      EXPECT_EQ(pafGetPropertiesId(0, name, text, sizeof text), 0) << name;
    }
  }

  void AskDefault()
  {
    // -1: another thread asks this instance, whose Id was that of an instance that was closed.
    Expect({0, -1}, pafGet_FindStatus(), "asking the default instance");
  }

  std::minstd_rand random_;
  std::vector<int> own_;
  std::atomic<int>* ids_;     // one instance of each thread
  std::atomic<int>& shared_;  // this thread's
};

class StressTest : public testing::Test
{
 protected:
  StressTest()
  {
    for (const char* const library : {"libqxarfau.so", "libqxarfnz.so", "libfakeone.so"}) {
      fakes[library].Answer(kFakeLookupAddress, 0, "12345678");
      fakes[library]->setRecording(0);
    }
  }

  void ExpectAllClosed()
  {
    EXPECT_EQ(fakes.Counter(kFakeLiveSearchers), 0);
    EXPECT_EQ(fakes.Counter(kFakeLiveDbs), 0);
    EXPECT_EQ(fakes.Counter(kFakeOpens), fakes.Counter(kFakeCloses));
    char count[16];
    EXPECT_EQ(pafGetPropertiesId(0, "ClientCount", count, sizeof count), 0);
    EXPECT_STREQ(count, "0");
  }

  Workspace workspace{std::vector<std::string>{}};
  CountryFakes fakes;
};

TEST_F(StressTest, InstancesAreUsedWhileTheirDatabasesMove)
{
  MovingDatabases databases(workspace);
  ASSERT_EQ(pafOpenPaf(), 0);
  std::atomic<int> ids[kThreads] = {};
  std::vector<Client> clients;
  const unsigned seed = test_support::RandomSeed();
  for (int number = 0; number < kThreads; ++number) {
    clients.emplace_back(number, seed + 97 * static_cast<unsigned>(number), ids);
  }
  int moved = 0;

  RunInThreads(kThreads + 1, kDuration, [&](int number, unsigned) {
    if (number < kThreads) return clients[static_cast<size_t>(number)].Step();
    databases.Move();
    int count = -1;
    EXPECT_EQ(pafUpdateArfs(nullptr, &count), 0);
    moved += count;
  });
  EXPECT_GT(moved, 0);
  RecordProperty("moved", moved);

  // With nobody at work an update leaves no instance behind.
  databases.Move();
  EXPECT_EQ(pafUpdateArfs(nullptr, nullptr), 0);
  char paths[4096];
  EXPECT_EQ(pafGetPropertiesId(0, "OpenArfPaths", paths, sizeof paths), 0);
  EXPECT_EQ((std::string(paths) + ";").find(databases.OtherTime() + std::string(";")), std::string::npos) << paths;

  for (Client& client : clients) client.CloseAll();
  EXPECT_EQ(pafClosePaf(), 0);
  ExpectAllClosed();
}

TEST_F(StressTest, DefaultInstancesComeAndGoWhileTheGlobalDatabaseMoves)
{
  MovingDatabases databases(workspace);
  ASSERT_EQ(pafOpenPaf(), 0) << "so that the others never close it";
  fakes["libqxarfau.so"].Answer(kFakeGetProperties, 0, "015");
  constexpr int kUsers = 4;
  RunInThreads(kUsers + 1, kDuration, [&](int number, unsigned round) {
    if (number == kUsers) {
      databases.Move();
      Expect({0, PAF_ERR_TIMED_OUT}, pafUpdateArfs(nullptr, nullptr), "updating");
      return;
    }
    ASSERT_EQ(pafOpenPaf(), 0);
    ASSERT_EQ(pafGet_FindStatus(), 0);
    char plan[8] = "2000";
    ASSERT_EQ(pafPostcodeToBsp(plan, 7), 0);
    ASSERT_STREQ(plan, "015");
    if (round % 2 == 0) {
      std::thread([] { ASSERT_EQ(pafGet_FindStatus(), 0); }).join();  // the end of a thread is the end of its instance
    }
    ASSERT_EQ(pafClosePaf(), 0);
  });
  databases.Move();
  int moved = -1;
  EXPECT_EQ(pafUpdateArfs(&moved, nullptr), 0);
  EXPECT_EQ(moved, 1);
  EXPECT_EQ(pafClosePaf(), 0);
  ExpectAllClosed();
}

}  // namespace
}  // namespace blackbox
