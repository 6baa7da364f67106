/** Opening, and what a small database answers at its edges. */
#include "arf/format/database.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <algorithm>
#include <filesystem>

#include "unit/arf/build/test_database.h"

namespace arf_test {
namespace {

using arf::Database;
using arf::OpenFailure;
using arf::OpenMode;
using arf::OpenResult;
using testing::HasSubstr;
using testing::StartsWith;

constexpr const char* kSmallCsv =
    "DPID,Street_Name,street_type,number_first,number_last,locality,state,postcode,postal_type,postal_number,lot\n"
    "30000001,O'Connor,St,1,,St. Kilda,Victoria,3182,,,\n"
    "30000002,OConnor,Street,138,144,ST KILDA,vic,3182,,,\n"
    "30000003,,,,,St Kilda,VIC,3182,PO Box,C96A,\n"
    "30000004,,,,,St Kilda,VIC,3182,,,7\n";

class SmallDatabase : public testing::Test
{
 protected:
  void Build(const std::string& csv)
  {
    database_.reset();
    database_ = OpenOrFail(BuiltDirectory(dir_, csv), OpenMode::Mapped);
    ASSERT_NE(database_, nullptr);
  }

  test_support::TempDir dir_;
  std::unique_ptr<Database> database_;
};

TEST_F(SmallDatabase, KeepsSpellingsApartAndFindsThemTogether)
{
  Build(kSmallCsv);
  ASSERT_EQ(database_->LocalityCount(), 2U);  // "ST KILDA" and "ST. KILDA" differ on paper
  const std::optional<std::uint32_t> name = database_->FindLocalityName("st kilda");
  ASSERT_TRUE(name.has_value());
  EXPECT_EQ(database_->LocalitiesNamed(*name).size(), 2U);
  EXPECT_EQ(database_->LocalityAt(0).name, "ST KILDA");
  EXPECT_EQ(database_->LocalityAt(1).name, "ST. KILDA");
  for (const char* spelling : {"O'Connor", "OCONNOR", "o\u2019connor"}) {
    const std::optional<std::uint32_t> street = database_->FindStreetName(spelling);
    ASSERT_TRUE(street.has_value()) << spelling;
    EXPECT_EQ(database_->StreetsNamed(*street).size(), 2U);
  }
}

TEST_F(SmallDatabase, PutsPostalDeliveriesAndNamelessStreetsFirst)
{
  Build(kSmallCsv);
  const arf::Locality locality = database_->LocalityAt(0);
  ASSERT_EQ(locality.streets.count, 3U);
  const arf::Street boxes = database_->StreetAt(locality.streets.first);
  EXPECT_TRUE(boxes.isPostal);
  EXPECT_EQ(boxes.type, "PO BOX");
  const arf::Point box = database_->PointAt(boxes.points.first);
  EXPECT_EQ(box.numberPrefix, "C");
  EXPECT_EQ(box.numberFirst, 96U);
  EXPECT_EQ(box.numberFirstSuffix, "A");
  const arf::Street nameless = database_->StreetAt(locality.streets.first + 1);
  EXPECT_FALSE(nameless.isPostal);
  EXPECT_EQ(nameless.name, "");
  EXPECT_EQ(database_->PointAt(nameless.points.first).lot, "7");
  EXPECT_EQ(database_->PostalStreetsOf(locality).count, 1U);
}

TEST_F(SmallDatabase, AnswersNothingOutOfRange)
{
  Build(kSmallCsv);
  for (const std::uint32_t index : {4U, 1000U, UINT32_MAX - 1, UINT32_MAX}) {
    EXPECT_EQ(database_->LocalityAt(index).name, "");
    EXPECT_EQ(database_->LocalityAt(index).streets.count, 0U);
    EXPECT_EQ(database_->StreetAt(index).points.count, 0U);
    EXPECT_EQ(database_->PointAt(index).dpid, 0U);
    EXPECT_EQ(database_->DpidOf(index), 0U);
    EXPECT_EQ(database_->Postcode(index), "");
    EXPECT_EQ(database_->LocalityName(index), "");
    EXPECT_EQ(database_->StreetName(index), "");
    EXPECT_EQ(database_->AttributeName(index), "");
    EXPECT_EQ(database_->InfoAt(index).key, "");
    EXPECT_EQ(database_->SectionAt(std::max(index, database_->SectionCount())).length, 0U);
  }
  arf::Street invented;
  invented.points = {UINT32_MAX, 5};
  invented.dataOffset = UINT32_MAX;
  arf::Point point;
  EXPECT_FALSE(database_->Points(invented).Next(point));
  EXPECT_FALSE(arf::PointCursor().Next(point));
  arf::Locality place;
  place.streets = {UINT32_MAX, UINT32_MAX};
  EXPECT_EQ(database_->StreetsOf(place.streets, "OCONNOR").count, 0U);
  EXPECT_EQ(database_->PostalStreetsOf(place).count, 0U);
}

TEST_F(SmallDatabase, GivesInfoAndSections)
{
  arf::BuildOptions options;
  options.databaseName = "AUSTRALIA TEST";
  options.info = {{"licence", "none"}, {"source", "made up"}};
  ASSERT_EQ(BuildFrom(dir_, kSmallCsv, options).outcome, arf::BuildOutcome::Built);
  database_ = OpenOrFail(dir_.Path("db"), OpenMode::Disk);
  ASSERT_NE(database_, nullptr);
  EXPECT_EQ(database_->Info("name"), "AUSTRALIA TEST");
  EXPECT_EQ(database_->Info("licence"), "none");
  EXPECT_EQ(database_->Info("source"), "made up");
  EXPECT_EQ(database_->Info("addresses"), "4");
  EXPECT_EQ(database_->Info("absent"), "");
  ASSERT_EQ(database_->InfoCount(), 4U);
  for (std::uint32_t i = 1; i < 4; ++i) EXPECT_LT(database_->InfoAt(i - 1).key, database_->InfoAt(i).key);
  EXPECT_EQ(database_->FileSize(), std::filesystem::file_size(dir_.Path("db/address.arf")));
  std::uint64_t end = 0;
  for (std::uint32_t i = 0; i < database_->SectionCount(); ++i) {
    const arf::SectionInfo section = database_->SectionAt(i);
    EXPECT_NE(section.name, "");
    EXPECT_GE(section.offset, end);
    end = section.offset + section.length;
  }
  EXPECT_LE(end, database_->FileSize());
}

TEST_F(SmallDatabase, HoldsASingleAddress)
{
  Build("dpid,street_name,locality,state,postcode\n99999999,A,B,NT,0800\n");
  EXPECT_EQ(database_->FindDpid(99999999), std::optional(0U));
  EXPECT_EQ(database_->FindDpid(99999998), std::nullopt);
  EXPECT_EQ(database_->PointAt(0).latitude, arf::kNoCoordinate);
}

TEST_F(SmallDatabase, KeepsAnsweringWhileTheFileIsReplaced)
{
  Build(kSmallCsv);
  const auto disk = OpenOrFail(dir_.Path("db"), OpenMode::Disk), memory = OpenOrFail(dir_.Path("db"), OpenMode::Memory);
  BuiltDirectory(dir_, "dpid,street_name,locality,state,postcode\n30000001,NEW,NEWTOWN,NSW,2042\n");
  for (const Database* old : {database_.get(), disk.get(), memory.get()}) {
    EXPECT_EQ(old->PointCount(), 4U);
    EXPECT_EQ(old->StreetAt(old->PointAt(*old->FindDpid(30000001)).street).name, "O'CONNOR");
  }
  EXPECT_EQ(OpenOrFail(dir_.Path("db"), OpenMode::Disk)->LocalityAt(0).name, "NEWTOWN");
}

TEST_F(SmallDatabase, InMemoryNeedsTheFileNoMore)
{
  Build(kSmallCsv);
  const auto memory = OpenOrFail(dir_.Path("db"), OpenMode::Memory);
  database_.reset();
  std::filesystem::resize_file(dir_.Path("db/address.arf"), 0);
  EXPECT_EQ(memory->PointAt(*memory->FindDpid(30000002)).numberLast, 144U);
}

TEST_F(SmallDatabase, OpensADirectoryGivenWithASlash)
{
  Build(kSmallCsv);
  EXPECT_NE(OpenOrFail(dir_.Path("db") + "/", OpenMode::Disk), nullptr);
}

struct Refusal
{
  const char* description;
  void (*prepare)(const test_support::TempDir& dir);
  OpenFailure failure;
  const char* message;  ///< a part of it
};

const Refusal kRefusals[] = {
    {"missing file", [](const test_support::TempDir& dir) { dir.MakeDirectory("db"); }, OpenFailure::CannotOpen,
     "No such file or directory"},
    {"missing directory", [](const test_support::TempDir&) {}, OpenFailure::CannotOpen, "No such file or directory"},
    {"directory instead of a file", [](const test_support::TempDir& dir) { dir.MakeDirectory("db/address.arf"); },
     OpenFailure::CannotOpen, "is a directory, not a file"},
    {"pipe",
     [](const test_support::TempDir& dir) {
       dir.MakeDirectory("db");
       ASSERT_EQ(mkfifo(dir.Path("db/address.arf").c_str(), 0600), 0);
     },
     OpenFailure::CannotOpen, "is not a regular file"},
    {"file instead of the directory", [](const test_support::TempDir& dir) { dir.Write("db", "x"); },
     OpenFailure::CannotOpen, "Not a directory"},
    {"empty file", [](const test_support::TempDir& dir) { dir.Write("db/address.arf", ""); }, OpenFailure::NotADatabase,
     "not an address database: the file is empty"},
    {"CSV", [](const test_support::TempDir& dir) { dir.Write("db/address.arf", kSmallCsv); }, OpenFailure::NotADatabase,
     "not an address database: looks like a text file"},
    {"program",
     [](const test_support::TempDir& dir) {
       dir.Write("db/address.arf",
                 "\x7F"
                 "ELF\x02\x01");
     },
     OpenFailure::NotADatabase, "not an address database: looks like a program or library"},
    {"other bytes", [](const test_support::TempDir& dir) { dir.Write("db/address.arf", "\x01\x02\x03\x04"); },
     OpenFailure::NotADatabase, "not an address database"},
    {"a few bytes of a database",
     [](const test_support::TempDir& dir) {
       dir.Write("db/address.arf",
                 "\x89"
                 "ARF");
     },
     OpenFailure::Truncated, "truncated: the file has only 4 bytes"},
};

TEST(Opening, RefusesWhatIsNoDatabase)
{
  for (const Refusal& refusal : kRefusals) {
    for (const OpenMode mode : {OpenMode::Disk, OpenMode::Memory, OpenMode::Mapped}) {
      SCOPED_TRACE(refusal.description);
      const test_support::TempDir dir;
      refusal.prepare(dir);
      OpenResult result;
      EXPECT_EQ(Database::Open(dir.Path("db"), mode, result), nullptr);
      EXPECT_EQ(result.failure, refusal.failure);
      EXPECT_THAT(result.message, StartsWith(dir.Path("db/address.arf") + ": "));
      EXPECT_THAT(result.message, HasSubstr(refusal.message));
    }
  }
}

}  // namespace
}  // namespace arf_test
