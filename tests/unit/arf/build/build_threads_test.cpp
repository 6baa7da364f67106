// Files that several threads take apart: the database does not depend on how many.
#include <gmock/gmock.h>

#include "unit/arf/build/test_database.h"

namespace {

using arf::BuildOptions;
using arf::BuildOutcome;
using arf::BuildReport;

constexpr int kRows = 9'000;

/** A file of several blocks: long rows, of which every 1000th cannot be used. */
std::string LargeFile()
{
  std::string text =
      "ADDRESS_DETAIL_PID|NUMBER_FIRST|STREET_NAME|STREET_TYPE|LOCALITY_NAME|STATE|POSTCODE|MB_CODE|GEOCODE_TYPE|"
      "LONGITUDE|LATITUDE|REMARK\n";
  const std::string remark(900, 'x');
  for (int i = 0; i < kRows; ++i) {
    const std::string number = i % 1000 == 999 ? "wrong" : std::to_string(1 + i % 97);
    text += "GANSW" + std::to_string(700'000'000 + i) + "|" + number + "|STREET " + std::to_string(i % 211) +
            "|ROAD|TOWN " + std::string(1, static_cast<char>('A' + i % 23)) + "|NSW|" + std::to_string(2000 + i % 23) +
            "|" + std::to_string(10'000'000'000 + i % 500) + "|PROPERTY CENTROID|151." + std::to_string(100'000 + i) +
            "|-33." + std::to_string(100'000 + i) + "|" + remark + "\n";
  }
  return text;
}

class BuildThreads : public testing::Test
{
 protected:
  BuildReport Build(unsigned threads)
  {
    BuildOptions options;
    options.inputs = {dir_.Path("a.psv"), dir_.Path("b.psv")};
    options.outputDirectory = dir_.Path("db" + std::to_string(threads));
    options.threads = threads;
    return arf::BuildDatabase(options);
  }

  void SetUp() override
  {
    const std::string text = LargeFile();
    const std::size_t header = text.find('\n') + 1;
    const std::size_t middle = text.find('\n', text.size() / 2) + 1;
    dir_.Write("a.psv", text.substr(0, middle));
    dir_.Write("b.psv", text.substr(0, header) + text.substr(middle));
  }

  test_support::TempDir dir_;
};

TEST_F(BuildThreads, MakeNoDifference)
{
  const BuildReport alone = Build(1);
  ASSERT_EQ(alone.outcome, BuildOutcome::Built) << testing::PrintToString(alone.errors);
  EXPECT_EQ(alone.rowsRead, static_cast<std::uint64_t>(kRows));
  EXPECT_EQ(alone.rowsSkipped, 9U);
  const auto bytes = arf_test::ReadFile(dir_.Path("db1/address.arf"));
  for (const unsigned threads : {2U, 4U, 7U}) {
    const BuildReport report = Build(threads);
    EXPECT_EQ(report.outcome, BuildOutcome::Built);
    EXPECT_EQ(report.rowsRead, alone.rowsRead);
    ASSERT_EQ(report.skipped.size(), alone.skipped.size());
    EXPECT_EQ(report.skipped.at(0).rows, alone.skipped.at(0).rows);
    EXPECT_EQ(report.skipped.at(0).example, alone.skipped.at(0).example);
    EXPECT_TRUE(arf_test::ReadFile(dir_.Path("db" + std::to_string(threads) + "/address.arf")) == bytes) << threads;
  }
}

/** From another thread while all of the builder's are at work. */
TEST_F(BuildThreads, AllEndWhenTheBuildIsCancelled)
{
  std::atomic<bool> cancel = false;
  BuildOptions options;
  options.inputs = {dir_.Path("a.psv"), dir_.Path("b.psv")};
  options.outputDirectory = dir_.Path("cancelled");
  options.threads = 4;
  std::thread canceller;
  const BuildReport report = arf::BuildDatabase(
      options,
      [&](const arf::BuildProgress&) {
        if (!canceller.joinable()) canceller = std::thread([&] { cancel = true; });
        while (!cancel) std::this_thread::yield();
      },
      &cancel);
  canceller.join();
  EXPECT_EQ(report.outcome, BuildOutcome::Cancelled);
  EXPECT_FALSE(std::filesystem::exists(dir_.Path("cancelled/address.arf")));
}

}  // namespace
