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
