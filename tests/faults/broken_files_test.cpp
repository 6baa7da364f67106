/** Opens every broken file; damages a small file in every bit and at every length; feeds the reader hostile contents.
 */
#include "faults/broken_files.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <set>

#include "faults/exercise.h"
#include "support/random_seed.h"
#include "unit/arf/build/address_model.h"
#include "unit/arf/build/test_database.h"

namespace arf_test {
namespace {

using arf::Database;
using arf::OpenFailure;
using arf::OpenResult;

/** A good database of every feature, the same for every test. */
const Bytes& GoodFile()
{
  static const Bytes file = [] {
    Random random(20);
    Model model = RandomModel(random, 300);
    for (std::uint32_t box = 1; box <= 100; ++box) {
      ModelAddress& address = model.addresses.emplace_back(PlainAddress(10'000'000 + box));
      address.isPostal = true;
      address.streetName = "";
      address.streetType = "PO BOX";
      address.numberFirst = box;
      address.attributes = {"1", "2", "3"};
    }
    const test_support::TempDir dir;
    return ReadFile(BuiltDirectory(dir, ToCsv(model, random)) + "/address.arf");
  }();
  return file;
}

std::unique_ptr<Database> OpenBytes(const Bytes& bytes, OpenResult& result)
{
  return Database::OpenBytes(bytes, "test.arf", result);
}

TEST(BrokenFiles, GoodFileOpens)
{
  OpenResult result;
  const auto database = OpenBytes(GoodFile(), result);
  ASSERT_NE(database, nullptr) << result.message;
  EXPECT_EQ(database->PointCount(), 400U);
  EXPECT_NE(Exercise(*database), 0U);
}

TEST(BrokenFiles, AreRefusedWithAReason)
{
  std::set<std::string> names;
  for (const BrokenFile& file : BreakFile(GoodFile())) {
    SCOPED_TRACE(file.name);
    EXPECT_TRUE(names.insert(file.name).second);
    EXPECT_NE(file.bytes, GoodFile());
    OpenResult result;
    const auto database = OpenBytes(file.bytes, result);
    EXPECT_EQ(result.failure, file.failure);
    EXPECT_EQ(database == nullptr, file.failure != OpenFailure::None);
    EXPECT_EQ(result.message, file.message.empty() ? "" : "test.arf: " + file.message);
    if (database) Exercise(*database);
  }
  EXPECT_GT(names.size(), 120U);
}

/** The same through files, in the modes that map and that read. */
TEST(BrokenFiles, AreRefusedOnDiskToo)
{
  const test_support::TempDir dir;
  for (const BrokenFile& file : BreakFile(GoodFile())) {
    WriteFile(dir.MakeDirectory("db") + "/address.arf", file.bytes);
    for (const arf::OpenMode mode : {arf::OpenMode::Disk, arf::OpenMode::Memory, arf::OpenMode::Mapped}) {
      OpenResult result;
      const auto database = Database::Open(dir.Path("db"), mode, result);
      EXPECT_EQ(result.failure, file.failure) << file.name;
      EXPECT_EQ(database == nullptr, file.failure != OpenFailure::None) << file.name;
      EXPECT_EQ(result.message, database ? "" : dir.Path("db/address.arf: ") + file.message);
    }
  }
}

TEST(BrokenFiles, EveryBitCounts)
{
  Bytes bytes = GoodFile();
  for (std::size_t bit = 0; bit < bytes.size() * 8; ++bit) {
    const auto mask = static_cast<std::uint8_t>(1U << (bit % 8));
    bytes[bit / 8] ^= mask;
    OpenResult result;
    ASSERT_EQ(OpenBytes(bytes, result), nullptr) << "bit " << bit % 8 << " of byte " << bit / 8;
    ASSERT_NE(result.failure, OpenFailure::None);
    ASSERT_FALSE(result.message.empty());
    bytes[bit / 8] ^= mask;
  }
}

TEST(BrokenFiles, QuickOpeningVerifiesWhatIsShort)
{
  constexpr std::size_t kMebibyte = 1 << 20;
  for (const std::size_t size : {kMebibyte, kMebibyte + 1}) {
    Bytes bytes = WithSection(GoodFile(), SectionId::BuildingNames, Bytes(size));
    const std::size_t middle = OffsetOf(bytes, SectionId::BuildingNames) + size / 2;
    OpenResult result;
    EXPECT_TRUE(Database::OpenBytes(bytes, "test.arf", result, arf::Verification::Quick)) << result.message;
    bytes[middle] ^= 1;
    EXPECT_FALSE(Database::OpenBytes(bytes, "test.arf", result, arf::Verification::Whole));
    EXPECT_EQ(result.failure, OpenFailure::Damaged);
    const auto quick = Database::OpenBytes(bytes, "test.arf", result, arf::Verification::Quick);
    EXPECT_EQ(quick != nullptr, size > kMebibyte) << size;
  }
}

TEST(BrokenFiles, EveryLengthButTheRightOneIsRefused)
{
  const Bytes& good = GoodFile();
  for (std::size_t length = 0; length < good.size(); ++length) {
    // A copy of exactly this length, so that the address sanitizer sees a read behind it.
    const Bytes bytes(good.begin(), good.begin() + static_cast<std::ptrdiff_t>(length));
    OpenResult result;
    ASSERT_EQ(OpenBytes(bytes, result), nullptr) << length;
    ASSERT_EQ(result.failure, length == 0 ? OpenFailure::NotADatabase : OpenFailure::Truncated) << length;
  }
  Bytes longer = good;
  longer.push_back(0);
  OpenResult result;
  EXPECT_EQ(OpenBytes(longer, result), nullptr);
  EXPECT_EQ(result.failure, OpenFailure::Damaged);
}

TEST(BrokenFiles, FurtherSectionsAndMinorVersionsAreNoDefect)
{
  Bytes bytes = WithExtraSection(GoodFile(), 77, {1, 2, 3});
  Put<std::uint16_t>(bytes, arf::layout::header::kMinor, 9);
  Reseal(bytes);
  OpenResult result;
  const auto database = OpenBytes(bytes, result);
  ASSERT_NE(database, nullptr) << result.message;
  const arf::SectionInfo section = database->SectionAt(database->SectionCount() - 1);
  EXPECT_EQ(section.id, 77U);
  EXPECT_EQ(section.name, "");
  EXPECT_EQ(section.length, 3U);
  // Its checksum is verified all the same.
  bytes[section.offset + 1] ^= 1;
  EXPECT_EQ(OpenBytes(bytes, result), nullptr);
  EXPECT_EQ(result.message, "test.arf: damaged: the checksum of the section \"section 77\" differs");
}

/** Changes a few places of a file in ways that tend to hurt. */
void Mutate(Random& random, Bytes& bytes)
{
  static constexpr std::uint32_t kValues[] = {0,      1,      2,          0x7F,       0x80,      0xFF,
                                              0x7FFF, 0xFFFF, 0x7FFFFFFF, 0x80000000, UINT32_MAX};
  const std::size_t headerLength = 64 + 17 * 32;
  for (auto changes = 1 + random() % 6; changes > 0; --changes) {
    // The header and its table are a small part of the file but deserve a good part of the changes.
    const std::size_t at =
        random() % 8 == 0 ? random() % headerLength : headerLength + random() % (bytes.size() - headerLength);
    switch (random() % 4) {
      case 0:
        bytes[at] ^= static_cast<std::uint8_t>(1U << (random() % 8));
        break;
      case 1:
        bytes[at] = static_cast<std::uint8_t>(random());
        break;
      case 2:
        Put(bytes, at & ~std::size_t{3}, kValues[random() % std::size(kValues)]);
        break;
      default:
        Put(bytes, at & ~std::size_t{3},
            Get<std::uint32_t>(bytes, at & ~std::size_t{3}) + static_cast<std::uint32_t>(random() % 5) - 2);
    }
  }
}

/** Contents that contradict themselves under right checksums: whatever is answered, nothing outside is read. */
TEST(BrokenFiles, HostileContentsStayInside)
{
  constexpr int kFiles = 40'000;
  const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(10);
  Random random(test_support::RandomSeed());
  int tried = 0, opened = 0;
  std::uint64_t sum = 0;
  for (; tried < kFiles && std::chrono::steady_clock::now() < deadline; ++tried) {
    Bytes bytes = GoodFile();
    Mutate(random, bytes);
    Reseal(bytes);
    OpenResult result;
    if (const auto database = OpenBytes(bytes, result)) {
      ++opened;
      sum += Exercise(*database);
    } else {
      ASSERT_FALSE(result.message.empty());
    }
  }
  std::printf("%d files, %d of them opened, sum %llu\n", tried, opened, static_cast<unsigned long long>(sum));
  EXPECT_GT(tried, 500);
  EXPECT_GT(opened, tried / 10);
}

}  // namespace
}  // namespace arf_test
