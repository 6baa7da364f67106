// That phonetic keys and fuzzy comparisons allocate nothing but for long inputs, and what happens when those find no
// memory.
#include <gtest/gtest.h>

#include <new>
#include <string>

#include "qxpaf/text/fuzzy.h"
#include "qxpaf/text/phonetic.h"
#include "support/allocations.h"

namespace {

using test_support::AllocationsOf;

// With no memory left for anything but the exception.
template <class Work>
bool ThrowsBadAlloc(Work work)
{
  const test_support::MemoryIsOut none;
  try {
    work();
  } catch (const std::bad_alloc&) {
    return true;
  }
  return false;
}

TEST(MatchingAllocation, PhoneticKeysNeedNone)
{
  const std::string name(100000, 'B');
  std::string out(100001, ' ');
  EXPECT_EQ(AllocationsOf([&] { Soundex(out.data(), name.c_str(), 100000); }), 0);
  EXPECT_EQ(AllocationsOf([&] { Soundex2(name.c_str()); }), 0);
  EXPECT_EQ(AllocationsOf([&] { Nysiis(out.data(), name.c_str(), 100000); }), 0);
  EXPECT_EQ(AllocationsOf([&] { Metaphone(out.data(), name.c_str(), 100000); }), 0);
}

TEST(MatchingAllocation, ComparisonsNeedNoneAsARule)
{
  const std::string a = "A" + std::string(100000, 'X') + "1";
  const std::string b = "B" + std::string(100000, 'X') + "2";
  const std::wstring wideA(a.begin(), a.end());
  const std::wstring wideB(b.begin(), b.end());
  bool identical = false;
  EXPECT_EQ(AllocationsOf([&] { StringsNearlyTheSame(a.c_str(), b.c_str(), identical, false, true); }), 0);
  EXPECT_EQ(AllocationsOf([&] { StringsNearlyTheSame(wideA.c_str(), wideB.c_str(), identical, false, true); }), 0);
  for (const bool digitsMayDiffer : {false, true}) {
    EXPECT_EQ(AllocationsOf([&] { CompareStrings2(a.c_str(), b.c_str(), 3, digitsMayDiffer); }), 0);
    EXPECT_EQ(AllocationsOf([&] { CompareStrings2(wideA.c_str(), wideB.c_str(), 3, digitsMayDiffer); }), 0);
    EXPECT_EQ(AllocationsOf([&] { CompareStrings2("A1B2", "C3D4", 1000000, digitsMayDiffer); }), 0);
  }
}

TEST(MatchingAllocation, JaroNeedsNoneUpTo64Characters)
{
  const std::string a(64, 'A');
  const std::string b = std::string(63, 'A') + "B";
  const std::wstring wideA(a.begin(), a.end());
  const std::wstring wideB(b.begin(), b.end());
  EXPECT_EQ(AllocationsOf([&] { CompareJaro(a, b); }), 0);
  EXPECT_EQ(AllocationsOf([&] { CompareJaro(wideA, wideB); }), 0);
  const std::string c = "C" + a.substr(1);
  EXPECT_EQ(AllocationsOf([&] { CompareJaro(a, c); }), 0);
  const std::string longer = c + "A";
  EXPECT_GT(AllocationsOf([&] { CompareJaro(longer, b); }), 0);
}

TEST(MatchingAllocation, LongInputsReportThatMemoryIsOut)
{
  const std::string a = "A" + std::string(700, 'X');
  const std::string b = "B" + std::string(700, 'Y');
  EXPECT_TRUE(ThrowsBadAlloc([&] { CompareJaro(a, b); }));
  EXPECT_TRUE(ThrowsBadAlloc([&] { CompareStrings2(a.c_str(), b.c_str(), 600, true); }));
  int within = 0;
  EXPECT_FALSE(ThrowsBadAlloc([&] { within = CompareStrings2(a.c_str(), b.c_str(), 255, true); }));
  EXPECT_EQ(within, 256);
}

}  // namespace
