/** One database read by many threads at the same time. */
#include <gtest/gtest.h>

#include <thread>
#include <vector>

#include "arf/tables/street_types.h"
#include "unit/arf/build/address_model.h"
#include "unit/arf/build/test_database.h"

namespace arf_test {
namespace {

using arf::Database;

/** Everything that a query may call, over the whole database. */
std::uint64_t ReadAll(const Database& database)
{
  std::uint64_t sum = 0;
  arf::AttributeText text;
  for (std::uint32_t i = 0; i < database.StreetCount(); ++i) {
    const arf::Street street = database.StreetAt(i);
    const arf::Locality locality = database.LocalityAt(street.locality);
    sum += arf::ExpandStreetType(street.type).size() + database.StreetsOf(locality.streets, street.name).count;
    sum += database.FindLocalityName(locality.name).value_or(0) + database.PostalStreetsOf(locality).count;
    arf::Point point;
    for (arf::PointCursor cursor = database.Points(street); cursor.Next(point);) {
      sum += database.PointAt(database.FindDpid(point.dpid).value_or(0)).numberFirst;
      sum += database.AttributeOf(point.ordinal, 0, text).size();
    }
  }
  return sum;
}

TEST(DatabaseThreads, AllReadTheSame)
{
  Random random(1);
  const test_support::TempDir dir;
  const auto database =
      OpenOrFail(BuiltDirectory(dir, ToCsv(RandomModel(random, 5000), random)), arf::OpenMode::Mapped);
  ASSERT_NE(database, nullptr);
  constexpr std::size_t kThreads = 6;
  std::vector<std::uint64_t> sums(kThreads);
  std::vector<std::thread> threads;
  for (std::size_t i = 0; i < kThreads; ++i) threads.emplace_back([&, i] { sums[i] = ReadAll(*database); });
  for (std::thread& thread : threads) thread.join();
  EXPECT_NE(sums[0], 0U);
  EXPECT_EQ(sums, std::vector<std::uint64_t>(kThreads, ReadAll(*database)));
}

}  // namespace
}  // namespace arf_test
