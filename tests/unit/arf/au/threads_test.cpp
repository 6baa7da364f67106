// Searchers of one database in different threads.
#include <gtest/gtest.h>

#include <atomic>
#include <map>
#include <random>
#include <string>
#include <thread>
#include <vector>

#include "support/random_seed.h"
#include "unit/arf/au/searcher_fixture.h"
#include "unit/arf/match/random_addresses.h"

namespace {

using arf_test::Answer;
using arf_test::Searcher;

class Threads : public testing::Test
{
 protected:
  static constexpr std::size_t kAddresses = 2'000;

  void SetUp() override
  {
    std::mt19937 random(test_support::RandomSeed());
    addresses_ = arf_test::RandomAddresses(random, kAddresses);
    const std::string csv = dir_.Write("addresses.csv", arf_test::ToCsv(addresses_));
    database_.reset(GetDb());
    char error[255] = "";
    ASSERT_EQ(database_->Open(arf_test::BuildDatabaseFrom(dir_, csv).c_str(), 3, error, sizeof error), 0) << error;
  }

  std::vector<Answer> AnswersOf(Searcher& searcher) const
  {
    std::vector<Answer> answers;
    for (const arf_test::RandomAddress& address : addresses_) {
      answers.push_back(searcher.Lookup(arf_test::WrittenForm(address), 1));
      answers.push_back(searcher.Lookup(arf_test::AbbreviatedForm(address), 0));
      answers.push_back(searcher.Fix(address.locality + " " + address.state));
      answers.push_back(searcher.Get("\t\t\t\t\t\t\t" + std::to_string(address.dpid)));
      answers.push_back(searcher.Parsed());
    }
    return answers;
  }

  test_support::TempDir dir_;
  std::vector<arf_test::RandomAddress> addresses_;
  arf_test::DatabasePointer database_;
};

TEST_F(Threads, AllGiveTheSameAnswers)
{
  Searcher alone(*database_);
  const std::vector<Answer> expected = AnswersOf(alone);
  constexpr std::size_t kThreads = 4;
  std::vector<std::vector<Answer>> answers(kThreads);
  std::vector<std::thread> threads;
  for (std::vector<Answer>& mine : answers)
    threads.emplace_back([&] {
      Searcher searcher(*database_);
      mine = AnswersOf(searcher);
    });
  for (std::thread& thread : threads) thread.join();
  for (const std::vector<Answer>& mine : answers) EXPECT_EQ(mine, expected);
}

/** Addresses in a grid of places, so that every kind of search finds some. */
std::string GridOfAddresses()
{
  std::string csv =
      "dpid,building,number_first,street_name,street_type,locality,state,postcode,latitude,longitude,mesh_block\n";
  constexpr const char* kStreets[] = {"KING", "QUEEN", "HARBOUR", "GEORGE", "MILL"};
  constexpr const char* kTowns[] = {"EASTVILLE", "WESTVILLE", "KINGSTON"};
  for (int i = 0; i < 1500; ++i) {
    const int town = i / 500;
    csv += std::to_string(30'000'000 + i) + (i % 50 == 0 ? ",MILL HOUSE " + std::to_string(i) : std::string(",")) +
           "," + std::to_string(1 + i % 100) + "," + kStreets[i / 100 % 5] + ",STREET," + kTowns[town] + ",NSW," +
           std::to_string(2000 + town) + ",-33." + std::to_string(800'000 + 37 * (i % 100)) + ",151." +
           std::to_string(200'000 + 41 * (i / 100)) + "," + std::to_string(10'000'000'000 + i / 40) + "\n";
  }
  return csv;
}

/** What enumerations, searches by place and by words, hints and the other operations answer, one behind the other. */
class Trace
{
 public:
  explicit Trace(IArfDb& database) : searcher_(database) {}

  std::vector<Answer> Of(int rounds)
  {
    SetUp();
    for (int round = 0; round < rounds; ++round) {
      AskByWords(round);
      AskByPlace(round);
      AskForHints(round);
      AskForText(round);
    }
    return std::move(answers_);
  }

 private:
  void SetUp()
  {
    Keep(searcher_.SetProperty("LatLongSearchRange", "300"));
    Keep(searcher_.SetProperty("OutputFields", "AddressLine1;Locality;DPID;MeshBlock"));
  }

  void Keep(const Answer& answer) { answers_.push_back(answer); }

  template <class Operation>
  void Ask(Operation operation)
  {
    char out[4096] = "";
    const int status = operation(out, static_cast<int>(sizeof out));
    Keep({status, out});
  }

  /** Up to twenty answers of an enumeration. */
  template <class Next>
  void AskAll(Next next)
  {
    for (int i = 0; i < 20; ++i) Ask(next);
  }

  void AskByWords(int round)
  {
    constexpr const char* kWords[] = {"harbour eastville 7", "mill house", "kingston", "georg westvill", "2001 queen"};
    Keep({searcher_->BeginAddressSearch(kWords[round % 5]), ""});
    AskAll([this](char* out, int size) { return searcher_->GetNextAddressSearch(out, size); });
  }

  void AskByPlace(int round)
  {
    const std::string latitude = "-33." + std::to_string(800'000 + 200 * (round % 20));
    const std::string record = std::string(42, '\t') + latitude + "\t151.2003";
    Keep(searcher_.Get(record));
    AskAll([this](char* out, int size) { return searcher_->GetNextAddress(out, size); });
    Keep({searcher_->BeginPolygonSearch("-33.80,151.20;-33.80,151.21;-33.81,151.21;-33.81,151.20", latitude.c_str()),
          ""});
    AskAll([this](char* out, int size) { return searcher_->GetNextAddressInPolygon(out, size); });
    Ask([&](char* out, int size) {
      return searcher_->GetSearchStatistics("Radius", (latitude + ",151.2003").c_str(), "500", "", out, size);
    });
  }

  void AskForHints(int round)
  {
    constexpr const char* kPrefixes[] = {"ki", "7 harb", "mill", "east", "q"};
    Ask([&](char* out, int size) { return searcher_->GetPopupHint(kPrefixes[round % 5], "", 20, out, size); });
    AskAll([this](char* out, int size) { return searcher_->GetNextPopupHint(out, size); });
  }

  void AskForText(int round)
  {
    constexpr const char* kTexts[] = {"7 harbor st eastvile", "99 king st kingston nsw 2002", "500 mill st westville"};
    const char* const text = kTexts[round % 3];
    Keep(searcher_.Lookup(text, 0));
    char verdict = 0;
    Ask([&](char* out, int size) { return searcher_->ValidateFullAddress(text, out, size, 0, &verdict); });
    Keep({verdict, ""});
    Ask([&](char* out, int size) { return searcher_->FormatAddress(text, out, 0, size); });
    Ask([&](char* out, int size) { return searcher_->ValidatePartialAddress(text, out, size); });
  }

  Searcher searcher_;
  std::vector<Answer> answers_;
};

/** What a database or a searcher only makes at the first query is made by all threads at once. */
TEST(ThreadsOfOneDatabase, MakeNoDifferenceToAnyOperation)
{
  const test_support::TempDir dir;
  const std::string path = arf_test::BuildDatabaseFrom(dir, dir.Write("addresses.csv", GridOfAddresses()));
  const auto open = [&path](int mode) {
    arf_test::DatabasePointer database(GetDb());
    char error[255] = "";
    EXPECT_EQ(database->Open(path.c_str(), mode, error, sizeof error), 0) << error;
    return database;
  };
  constexpr int kRounds = 30;
  const arf_test::DatabasePointer alone = open(2);
  const std::vector<Answer> expected = Trace(*alone).Of(kRounds);
  EXPECT_GT(std::count_if(expected.begin(), expected.end(), [](const Answer& a) { return a.text.size() > 10; }), 500);
  for (const int mode : {1, 2, 3}) {
    const arf_test::DatabasePointer shared = open(mode);
    std::vector<std::vector<Answer>> answers(3);
    std::vector<std::thread> threads;
    for (std::vector<Answer>& mine : answers) threads.emplace_back([&] { mine = Trace(*shared).Of(kRounds); });
    for (std::thread& thread : threads) thread.join();
    for (const std::vector<Answer>& mine : answers) EXPECT_EQ(mine, expected) << mode;
  }
}

TEST_F(Threads, SortPlanAndBarcodesAreShared)
{
  std::string plan = "date,2026-05-31\npostcode,bsp,npsp\n";
  for (int postcode = 1000; postcode < 9000; postcode += 7)
    plan += std::to_string(postcode) + ",b" + std::to_string(postcode) + ",n" + std::to_string(postcode) + "\n";
  dir_.Write("db/sortplan.csv", plan);
  const arf_test::DatabasePointer database(GetDb());
  char error[255] = "";
  ASSERT_EQ(database->Open(dir_.Path("db").c_str(), 3, error, sizeof error), 0) << error;
  std::vector<std::thread> threads;
  for (int start = 0; start < 4; ++start)
    threads.emplace_back([&] {
      Searcher searcher(*database);
      for (int postcode = 1000; postcode < 9000; postcode += 7) {
        const std::string text = std::to_string(postcode);
        EXPECT_EQ(searcher.Property("BSP:" + text), (Answer{0, "b" + text}));
        EXPECT_EQ(searcher.Property("NPSP:" + text), (Answer{0, "n" + text}));
        char bars[68];
        EXPECT_EQ(GetOtherProperties(("Barcode:" + text).c_str(), bars, sizeof bars), 0);
        EXPECT_EQ(searcher.Property("Barcode:" + text).text, bars);
      }
    });
  for (std::thread& thread : threads) thread.join();
}

/** What the library may ask of database and searcher while a query runs. */
TEST_F(Threads, IdentityIsReadableDuringQueries)
{
  Searcher searcher(*database_);
  std::atomic<bool> stop{false};
  std::thread reader([&] {
    while (!stop) {
      IArfDb* const database = searcher->GetArfDb();
      EXPECT_STREQ(database->GetCountry(), "AU");
      EXPECT_NE(database->GetPath()[0], '\0');
      EXPECT_EQ(database->GetOpenMode(), 3);
    }
  });
  AnswersOf(searcher);
  stop = true;
  reader.join();
}

TEST_F(Threads, ObjectsAreCountedAcrossThreads)
{
  std::vector<std::thread> threads;
  for (int i = 0; i < 4; ++i)
    threads.emplace_back([&] {
      for (int k = 0; k < 200; ++k) {
        const Searcher searcher(*database_);
        EXPECT_EQ(CanUnloadNow(), 0);
      }
    });
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(CanUnloadNow(), 0);
  database_.reset();
  EXPECT_NE(CanUnloadNow(), 0);
}

}  // namespace
