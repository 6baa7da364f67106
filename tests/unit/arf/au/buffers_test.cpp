// Output buffers of every size around the need, between guard bytes.
#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

#include "support/guarded_buffer.h"
#include "unit/arf/au/searcher_fixture.h"

namespace {

using test_support::GuardedBuffer;

constexpr const char* kBarcode = "1301011000000000000001322231321110013";

/** An operation that fills a buffer with a known answer, or refuses the buffer. */
struct Operation
{
  std::string name;
  std::function<int(char* out, int size)> run;
  std::string answer;
};

std::vector<Operation> Operations(IArfSearcher& s)
{
  const std::string record = "1 GEORGE STREET\t\t\tSYDNEY\tNSW\t2000\tAUSTRALIA\t30000001";
  return {
      {"LookupAddress", [&](char* out, int size) { return s.LookupAddress("1 George St Sydney", out, size, 1); },
       "30000001"},
      {"FixLastLine", [&](char* out, int size) { return s.FixLastLine("2000 Sydney", out, size); }, "SYDNEY NSW 2000"},
      {"GetAddress", [&](char* out, int size) { return s.GetAddress("\t\t\t\t\t\t\t30000001", out, size); }, record},
      {"GetNextAddress",
       [&](char* out, int size) {
         char first[512];
         EXPECT_EQ(s.GetAddress("\t\t\t\t\t\t\t30000001", first, sizeof first), 0);
         return s.GetNextAddress(out, size);
       },
       "\t\t\t\t\t\t\t"},
      {"GetProperties", [&](char* out, int size) { return s.GetProperties("PafLibVersion", out, size); }, "5.10.246"},
      {"GetProperties of a list", [&](char* out, int size) { return s.GetProperties("Properties", out, size); },
       "Delimiter;OutputFields;PafEngineVersion;PafLibVersion;PafVersionInfo;Notice;LatLongSearchRange;StateFilter;"
       "AddressFilter;PointsOfInterest;GeographicalCodes;GeographicalCodesFilter;GifCommonMinimumPercent;"
       "MatchPenalties;"
       "PenaltyTable"},
      {"GetParsedInput",
       [&](char* out, int size) {
         char ignored[64];
         s.LookupAddress("xyzzy", ignored, sizeof ignored, 1);
         return s.GetParsedInput(out, size);
       },
       std::string(8, '\t') + "7" + std::string(17, '\t') + "XYZZY" + std::string(22, '\t')},
      {"GetProperties of a barcode",
       [&](char* out, int size) { return s.GetProperties("Barcode:30000001", out, size); }, kBarcode},
      {"GetOtherProperties of a barcode",
       [](char* out, int size) { return GetOtherProperties("Barcode:30000001", out, size); }, kBarcode},
      {"GetOtherProperties of the longest barcode",
       [](char* out, int size) { return GetOtherProperties("Barcode2:3000000162CHello 12#", out, size); },
       "1320021000000000000001021033133133223003300301013333322330320313213"},
      {"GetOtherProperties of a state",
       [](char* out, int size) { return GetOtherProperties("ArfStatus:/nowhere/at/all", out, size); }, "ARF Not Found"},
      {"GetOtherProperties", [](char* out, int size) { return GetOtherProperties("PafLibVersion", out, size); },
       "5.10.246"},
  };
}

class Buffers : public testing::Test
{
 protected:
  arf_test::DatabasePointer database_ = arf_test::OpenSmall();
  arf_test::Searcher searcher_{*database_};
};

TEST_F(Buffers, HoldTheWholeAnswerOrNothing)
{
  for (const Operation& operation : Operations(*searcher_)) {
    const std::size_t need = operation.answer.size() + 1;
    for (const std::size_t size :
         {std::size_t{0}, std::size_t{1}, std::size_t{2}, need - 1, need, need + 1, need + 100}) {
      GuardedBuffer buffer(size);
      const int status = operation.run(buffer.Data(), static_cast<int>(size));
      EXPECT_TRUE(buffer.Intact()) << operation.name << " " << size;
      EXPECT_EQ(status, size >= need ? 0 : PAF_ERR_BUFFER_TOO_SMALL) << operation.name << " " << size;
      if (size == 0) continue;
      EXPECT_EQ(std::string(buffer.Data()), size >= need ? operation.answer : "") << operation.name << " " << size;
    }
  }
}

TEST_F(Buffers, SizesBelowOneWriteNothing)
{
  for (const Operation& operation : Operations(*searcher_)) {
    for (const int size : {0, -1, -1000}) {
      GuardedBuffer buffer(4);
      EXPECT_EQ(operation.run(buffer.Data(), size), PAF_ERR_BUFFER_TOO_SMALL) << operation.name;
      EXPECT_EQ(buffer.Bytes(), std::string(4, GuardedBuffer::kFill)) << operation.name;
    }
    EXPECT_EQ(operation.run(nullptr, 0), PAF_ERR_BUFFER_TOO_SMALL) << operation.name;
    EXPECT_EQ(operation.run(nullptr, 10), PAF_ERR_BUFFER_TOO_SMALL) << operation.name;
  }
}

TEST_F(Buffers, FailuresLeaveAnEmptyText)
{
  for (const std::size_t size : {1U, 2U, 64U}) {
    GuardedBuffer buffer(size);
    EXPECT_EQ(searcher_->LookupAddress("xyzzy", buffer.Data(), static_cast<int>(size), 1), PAF_AU_ERR_NOT_FOUND);
    EXPECT_TRUE(buffer.Intact());
    EXPECT_EQ(buffer.Bytes().front(), '\0');
  }
}

TEST_F(Buffers, DescriptionsAreCut)
{
  char ignored[16];
  searcher_->LookupAddress("900 George St Sydney NSW 2000", ignored, sizeof ignored, 1);
  const std::string whole = searcher_.Description(PAF_AU_ERR_WRONG_NUMBER);
  ASSERT_GT(whole.size(), 20U);
  for (const std::size_t size : {std::size_t{0}, std::size_t{1}, std::size_t{2}, whole.size(), whole.size() + 1}) {
    GuardedBuffer buffer(size);
    searcher_->GetErrorDescription(buffer.Data(), PAF_AU_ERR_WRONG_NUMBER, static_cast<int>(size));
    EXPECT_TRUE(buffer.Intact());
    if (size > 0) {
      EXPECT_EQ(std::string(buffer.Data()), whole.substr(0, size - 1));
    }
  }
  searcher_->GetErrorDescription(nullptr, PAF_AU_ERR_WRONG_NUMBER, 10);
}

}  // namespace
