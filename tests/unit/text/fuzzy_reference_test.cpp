// Every comparison against the reference: all pairs of short texts over small alphabets with digits, random pairs,
// realistic pairs. QXPAF_TEST_SEED repeats a run.
#include "reference/fuzzy_reference.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <bit>
#include <cstdint>
#include <string>

#include "qxpaf/text/fuzzy.h"
#include "support/random_seed.h"
#include "unit/text/matching_text.h"

namespace {

using matching_test::AllStrings;
using matching_test::ExactText;
using matching_test::RandomMatching;
using matching_test::Widened;

constexpr int kPairs = 100000;

constexpr std::string_view kAlphabets[] = {"AB",
                                           "A1",
                                           "AB12",
                                           "ABCDEFGHIJKLMNOPQRSTUVWXYZ",
                                           "01239/:AB ",
                                           "A\xB2\xE9\xFF"
                                           "9"};

/* ---- One pair, all ways ---- */

void ExpectSameDistance(const std::string& a, const std::string& b, int maxDist, bool digitsMayDiffer)
{
  const int expected = reference::CompareStrings2(a.c_str(), b.c_str(), maxDist, digitsMayDiffer);
  ASSERT_EQ(CompareStrings2(a.c_str(), b.c_str(), maxDist, digitsMayDiffer), expected)
      << a << " and " << b << " within " << maxDist << (digitsMayDiffer ? "" : ", digits fixed");
}

template <class Char>
void ExpectSameVerdict(const Char* a, const Char* b, bool firstMustMatch, bool digitsMayDiffer)
{
  bool identical = true;
  bool expectedIdentical = false;
  const bool near = StringsNearlyTheSame(a, b, identical, firstMustMatch, digitsMayDiffer);
  const bool expected = reference::StringsNearlyTheSame(a, b, expectedIdentical, firstMustMatch, digitsMayDiffer);
  ASSERT_EQ(near, expected) << firstMustMatch << digitsMayDiffer;
  ASSERT_EQ(identical, expectedIdentical) << firstMustMatch << digitsMayDiffer;
}

void ExpectSameVerdicts(const std::string& a, const std::string& b)
{
  SCOPED_TRACE(a + " and " + b);
  const std::wstring wideA = Widened(a);
  const std::wstring wideB = Widened(b);
  for (const bool firstMustMatch : {false, true}) {
    for (const bool digitsMayDiffer : {false, true}) {
      ASSERT_NO_FATAL_FAILURE(ExpectSameVerdict(a.c_str(), b.c_str(), firstMustMatch, digitsMayDiffer));
      ASSERT_NO_FATAL_FAILURE(ExpectSameVerdict(wideA.c_str(), wideB.c_str(), firstMustMatch, digitsMayDiffer));
    }
  }
}

template <class String>
void ExpectSameJaro(const String& a, const String& b)
{
  const float actual = CompareJaro(a, b);
  const float expected = reference::CompareJaro(a, b);
  ASSERT_EQ(std::bit_cast<std::uint32_t>(actual), std::bit_cast<std::uint32_t>(expected))
      << encoding_test::Hex(a) << "and " << encoding_test::Hex(b) << actual << " " << expected;
}

void ExpectSameJaros(const std::string& a, const std::string& b)
{
  ASSERT_NO_FATAL_FAILURE(ExpectSameJaro(a, b));
  ASSERT_NO_FATAL_FAILURE(ExpectSameJaro(Widened(a), Widened(b)));
}

template <class Expect>
void ForAllPairs(std::string_view alphabet, std::size_t longest, Expect expect)
{
  const auto texts = AllStrings(alphabet, longest);
  for (const std::string& a : texts)
    for (const std::string& b : texts) ASSERT_NO_FATAL_FAILURE(expect(a, b));
}

template <class Expect>
void ForRandomPairs(std::size_t longest, Expect expect)
{
  RandomMatching random(test_support::RandomSeed());
  for (int i = 0; i < kPairs; ++i) {
    const std::string_view alphabet = kAlphabets[random.Below(std::size(kAlphabets))];
    const std::string a = random.Of(alphabet, longest);
    const std::string b = random.Below(2) == 0 ? random.Of(alphabet, longest) : random.Slip(a, random.Below(5));
    ASSERT_NO_FATAL_FAILURE(expect(a, b));
  }
}

template <class Expect>
void ForRealisticPairs(Expect expect)
{
  RandomMatching random(test_support::RandomSeed());
  for (int i = 0; i < kPairs; ++i) {
    const std::string a = random.Realistic();
    ASSERT_NO_FATAL_FAILURE(expect(a, random.Below(3) == 0 ? random.Realistic() : random.Slip(a, random.Below(5))));
  }
}

/* ---- CompareStrings2 ---- */

void ExpectSameDistances(const std::string& a, const std::string& b, int largestBound)
{
  for (int maxDist = -1; maxDist <= largestBound; ++maxDist)
    for (const bool digitsMayDiffer : {false, true})
      ASSERT_NO_FATAL_FAILURE(ExpectSameDistance(a, b, maxDist, digitsMayDiffer));
}

TEST(CompareStrings2Reference, AllShortPairs)
{
  const auto upTo4 = [](const std::string& a, const std::string& b) { ExpectSameDistances(a, b, 4); };
  ForAllPairs("A12", 4, upTo4);
  ForAllPairs("AB1", 4, upTo4);
  ForAllPairs("AB12", 3, upTo4);
}

// Longer pairs, whose recursion would take too long, against the table of all rests.
TEST(CompareStrings2Reference, AllLongerPairs)
{
  const auto expect = [](const std::string& a, const std::string& b) {
    const auto [inA, inB] = std::mismatch(a.begin(), a.end(), b.begin(), b.end());
    if (inA == a.end() || inB == b.end()) return;
    const int distance = reference::UnboundedDistance(a, b, false);
    for (int maxDist = 0; maxDist <= 6; ++maxDist)
      ASSERT_EQ(CompareStrings2(a.c_str(), b.c_str(), maxDist, false), std::min(distance, maxDist + 1))
          << a << " and " << b << " within " << maxDist;
  };
  ForAllPairs("A12", 6, expect);
  ForAllPairs("AB12", 5, expect);
}

TEST(CompareStrings2Reference, RandomPairs)
{
  RandomMatching bounds(1);
  ForRandomPairs(14, [&bounds](const std::string& a, const std::string& b) {
    ExpectSameDistances(a, b, static_cast<int>(bounds.Below(4)));
  });
}

// What bounds give for a pair whose distance is known: texts that begin one with the other are not capped.
int WithinBound(const std::string& a, const std::string& b, int distance, int maxDist)
{
  const bool isBeginning = a.starts_with(b) || b.starts_with(a);
  return isBeginning ? distance : std::min(distance, maxDist + 1);
}

// Of the lengths of streets, against the table of all rests.
TEST(CompareStrings2Reference, LongerRandomPairs)
{
  ForRandomPairs(45, [](const std::string& a, const std::string& b) {
    const ExactText<char> exactA(a);
    const ExactText<char> exactB(b);
    for (const bool digitsMayDiffer : {false, true}) {
      const int distance = reference::UnboundedDistance(a, b, digitsMayDiffer);
      for (int maxDist = 0; maxDist <= 4; ++maxDist)
        ASSERT_EQ(CompareStrings2(exactA.Get(), exactB.Get(), maxDist, digitsMayDiffer),
                  WithinBound(a, b, distance, maxDist))
            << a << " and " << b << " within " << maxDist << (digitsMayDiffer ? "" : ", digits fixed");
    }
  });
}

TEST(CompareStrings2Reference, RealisticPairs)
{
  ForRealisticPairs([](const std::string& a, const std::string& b) { ExpectSameDistances(a, b, 2); });
}

TEST(CompareStrings2Reference, WideAgrees)
{
  ForRandomPairs(20, [](const std::string& a, const std::string& b) {
    const std::wstring wideA = Widened(a);
    const std::wstring wideB = Widened(b);
    for (const bool digitsMayDiffer : {false, true})
      for (const int maxDist : {0, 1, 2, 3, 10})
        ASSERT_EQ(CompareStrings2(a.c_str(), b.c_str(), maxDist, digitsMayDiffer),
                  CompareStrings2(wideA.c_str(), wideB.c_str(), maxDist, digitsMayDiffer))
            << a << " and " << b << " within " << maxDist;
  });
}

// Bounds on both sides of what fits on the stack.
TEST(CompareStrings2Reference, LargeBounds)
{
  RandomMatching random(test_support::RandomSeed());
  for (int i = 0; i < 60; ++i) {
    const std::string a = "A" + random.Of(kAlphabets[random.Below(std::size(kAlphabets))], 700);
    const std::string b = "B" + (random.Below(2) == 0 ? random.Of("AB12", 700) : random.Slip(a, random.Below(300)));
    for (const bool digitsMayDiffer : {false, true}) {
      const int distance = reference::UnboundedDistance(a, b, digitsMayDiffer);
      for (const int maxDist : {100, 254, 255, 256, 257, 300, 1000, 100000})
        ASSERT_EQ(CompareStrings2(a.c_str(), b.c_str(), maxDist, digitsMayDiffer), std::min(distance, maxDist + 1))
            << a << " and " << b << " within " << maxDist << (digitsMayDiffer ? "" : ", digits fixed");
    }
  }
}

// The two references agree where both can be asked.
TEST(CompareStrings2Reference, ReferencesAgree)
{
  ForAllPairs("A12", 4, [](const std::string& a, const std::string& b) {
    const auto [inA, inB] = std::mismatch(a.begin(), a.end(), b.begin(), b.end());
    if (inA == a.end() || inB == b.end()) return;
    for (const bool digitsMayDiffer : {false, true})
      ASSERT_EQ(reference::CompareStrings2(a.c_str(), b.c_str(), 3, digitsMayDiffer),
                std::min(4, reference::UnboundedDistance(a, b, digitsMayDiffer)))
          << a << " and " << b;
  });
}

/* ---- StringsNearlyTheSame ---- */

TEST(StringsNearlyTheSameReference, AllShortPairs)
{
  ForAllPairs("A12", 5, ExpectSameVerdicts);
  ForAllPairs("AB1", 5, ExpectSameVerdicts);
  ForAllPairs("AB12", 4, ExpectSameVerdicts);
}

TEST(StringsNearlyTheSameReference, RandomPairs)
{
  ForRandomPairs(30, ExpectSameVerdicts);
}

TEST(StringsNearlyTheSameReference, RealisticPairs)
{
  ForRealisticPairs(ExpectSameVerdicts);
}

/* ---- CompareJaro ---- */

TEST(CompareJaroReference, AllShortPairs)
{
  ForAllPairs("AB1", 5, ExpectSameJaros);
  ForAllPairs("AB12", 4, ExpectSameJaros);
  ForAllPairs("AB", 8, ExpectSameJaros);
}

TEST(CompareJaroReference, RandomPairs)
{
  ForRandomPairs(20, ExpectSameJaros);
  ForRandomPairs(90, ExpectSameJaros);
}

TEST(CompareJaroReference, RealisticPairs)
{
  ForRealisticPairs(ExpectSameJaros);
}

// Up to and beyond the length that is held in bits.
TEST(CompareJaroReference, AroundSixtyFourCharacters)
{
  RandomMatching random(test_support::RandomSeed());
  for (int i = 0; i < 20000; ++i) {
    std::string a = random.Of(kAlphabets[random.Below(std::size(kAlphabets))], 8);
    a.resize(60 + random.Below(8), 'A');
    std::string b = random.Slip(a, 1 + random.Below(6));
    if (random.Below(2) == 0) b.resize(random.Below(70), 'B');
    ASSERT_NO_FATAL_FAILURE(ExpectSameJaros(a, b));
    ASSERT_NO_FATAL_FAILURE(ExpectSameJaros(b, a));
  }
}

TEST(CompareJaroReference, LongTexts)
{
  RandomMatching random(test_support::RandomSeed());
  for (int i = 0; i < 50; ++i) {
    std::string a;
    while (a.size() < 2000) a += random.Realistic() + " ";
    ASSERT_NO_FATAL_FAILURE(ExpectSameJaros(a, random.Slip(a, 1 + random.Below(40))));
  }
}

// Characters that share their low byte, negative ones, and code points of all scripts.
TEST(CompareJaroReference, WideCharacters)
{
  RandomMatching random(test_support::RandomSeed());
  constexpr std::wstring_view kWide = L"A\x0141\x0241\x0341Z\x015A\x4E00\x4E01\x1F600\x1F641";
  const auto text = [&random, kWide](std::size_t longest) {
    std::wstring out(random.Below(longest + 1), L' ');
    for (wchar_t& c : out) c = random.Below(30) == 0 ? -191 : kWide[random.Below(kWide.size())];
    return out;
  };
  for (int i = 0; i < kPairs; ++i) {
    const std::size_t longest = random.Below(10) == 0 ? 150 : 15;
    ASSERT_NO_FATAL_FAILURE(ExpectSameJaro(text(longest), text(longest)));
  }
}

}  // namespace
