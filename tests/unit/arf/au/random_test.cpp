// Random and pathological texts through every operation: no crash, no overrun, no status that is not documented.
#include <gtest/gtest.h>

#include <random>
#include <set>
#include <string>
#include <vector>

#include "arf/au/status_text.h"
#include "support/guarded_buffer.h"
#include "support/random_seed.h"
#include "unit/arf/au/searcher_fixture.h"
#include "unit/arf/match/tsv.h"

namespace {

using Random = std::mt19937;

std::size_t Below(Random& random, std::size_t count)
{
  return std::uniform_int_distribution<std::size_t>(0, count - 1)(random);
}

/** Any bytes but NUL. */
std::string RandomBytes(Random& random)
{
  std::string text(Below(random, 200), ' ');
  for (char& c : text) c = static_cast<char>(1 + Below(random, 255));
  return text;
}

/** Words that addresses are made of, in any order. */
std::string RandomWords(Random& random)
{
  static const char* const kWords[] = {
      "1",        "12",         "12A",  "3",         "/",         "-",          ",",     "St",   "Street",
      "Rd",       "George",     "King", "NSW",       "VIC",       "2000",       "3000",  "Unit", "U3",
      "Level",    "L2",         "Lot",  "5",         "PO",        "Box",        "The",   "Gap",  "Sydney",
      "Richmond", "West",       "East", "Melbourne", "Esplanade", "Parliament", "House", "\t",   "\n",
      "N.S.W.",   "Mt",         "Isa",  "Australia", "of",        "Rear",       "GPO",   "99",   "C96",
      "138-144",  "4294967296", "0",    "'",         "\xE9"};
  std::string text;
  for (std::size_t count = Below(random, 25); count > 0; --count) {
    text += kWords[Below(random, std::size(kWords))];
    if (Below(random, 4) > 0) text += ' ';
  }
  return text;
}

/** A written address with some bytes changed. */
std::string Mutated(Random& random, const std::vector<arf_test::TsvRow>& rows)
{
  std::string text = rows[Below(random, rows.size())].fields[0];
  for (std::size_t changes = Below(random, 4); changes > 0 && !text.empty(); --changes) {
    const std::size_t position = Below(random, text.size());
    const char c = static_cast<char>(1 + Below(random, 255));
    switch (Below(random, 3)) {
      case 0:
        text[position] = c;
        break;
      case 1:
        text.insert(position, 1, c);
        break;
      default:
        text.erase(position, 1);
    }
  }
  return text;
}

bool IsDocumented(int status)
{
  return status == 0 || status == PAF_ERR_BUFFER_TOO_SMALL || status == PAF_ERR_NOT_IMPLEMENTED ||
         (status != PAF_AU_ERR_INTERNAL && arf::FindStatusText(status) != nullptr);
}

/** Every operation that takes a text, with a buffer of a random size between guards. */
void RunAll(Random& random, IArfSearcher& s, const std::string& text)
{
  const std::size_t size = Below(random, 120);
  test_support::GuardedBuffer buffer(size);
  char* const out = buffer.Data();
  const int outSize = static_cast<int>(size);
  const char* const in = text.c_str();
  const int statuses[] = {s.LookupAddress(in, out, outSize, 1),
                          s.LookupAddress(in, out, outSize, 0),
                          s.GetParsedInput(out, outSize),
                          s.FixLastLine(in, out, outSize),
                          s.GetParsedInput(out, outSize),
                          s.GetAddress(in, out, outSize),
                          s.GetNextAddress(out, outSize),
                          s.GetNextAddress(out, outSize),
                          s.GetProperties(in, out, outSize),
                          s.GetProperties(("Barcode:" + text).c_str(), out, outSize),
                          s.GetProperties(("barcode2:" + text).c_str(), out, outSize),
                          s.GetProperties(("Barcode3:3000000162" + text).c_str(), out, outSize),
                          s.GetProperties(("BSP:" + text).c_str(), out, outSize),
                          s.SetProperties(in, in, out, outSize),
                          s.SetProperties("OutputFields", in, out, outSize),
                          s.SetProperties("Delimiter", in, out, outSize),
                          GetOtherProperties(in, out, outSize)};
  for (const int status : statuses) {
    ASSERT_TRUE(IsDocumented(status)) << status << ": " << testing::PrintToString(text);
    s.GetErrorDescription(out, status, outSize);
  }
  ASSERT_TRUE(buffer.Intact()) << testing::PrintToString(text);
  if (size > 0) {
    ASSERT_NE(buffer.Bytes().find('\0'), std::string::npos) << testing::PrintToString(text);
  }
}

TEST(RandomInput, ThroughEveryOperation)
{
  Random random(test_support::RandomSeed());
  const arf_test::DatabasePointer database = arf_test::OpenSmall();
  arf_test::Searcher searcher(*database);
  const auto rows = arf_test::ReadTsv(arf_test::TestDataFile("lookup_cases.tsv"), 3);
  for (int i = 0; i < 12'000; ++i) {
    const std::string text = i % 3 == 0   ? RandomBytes(random)
                             : i % 3 == 1 ? RandomWords(random)
                                          : Mutated(random, rows);
    RunAll(random, *searcher, text);
    if (HasFatalFailure()) return;
  }
}

TEST(RandomInput, LookupsAreRepeatable)
{
  Random random(test_support::RandomSeed());
  const arf_test::DatabasePointer database = arf_test::OpenSmall();
  arf_test::Searcher used(*database);
  for (int i = 0; i < 2'000; ++i) {
    const std::string text = RandomWords(random);
    const int amas = static_cast<int>(Below(random, 2));
    arf_test::Searcher fresh(*database);
    ASSERT_EQ(used.Lookup(text, amas), fresh.Lookup(text, amas)) << text;
    ASSERT_EQ(used.Fix(text), fresh.Fix(text)) << text;
  }
}

/** What is found strictly is found leniently too, and without a change. */
TEST(RandomInput, LenientRulesKeepWhatStrictOnesFind)
{
  Random random(test_support::RandomSeed());
  const arf_test::DatabasePointer database = arf_test::OpenSmall();
  arf_test::Searcher searcher(*database);
  std::size_t found = 0;
  const auto rows = arf_test::ReadTsv(arf_test::TestDataFile("lookup_cases.tsv"), 3);
  for (int i = 0; i < 5'000; ++i) {
    const std::string text = Mutated(random, rows);
    const arf_test::Answer strict = searcher.Lookup(text, 1);
    if (strict.status != 0) continue;
    ++found;
    ASSERT_EQ(searcher.Lookup(text, 0), strict) << text;
    ASSERT_EQ(searcher->GetFindStatus(), PAF_AU_FIND_MATCHED) << text;
  }
  EXPECT_GT(found, 500U);
}

}  // namespace
