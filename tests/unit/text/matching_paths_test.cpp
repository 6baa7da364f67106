// What the comparisons are made of, with and without vector instructions: the lanes, the quick look that tells unlike
// texts apart, and the pairs of the similarity. Each kind against the reference or plain loops, on texts that end where
// their memory ends. QXPAF_TEST_SEED repeats a run.
#include <gtest/gtest.h>

#include <cstddef>
#include <cstdlib>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "reference/fuzzy_reference.h"
#include "support/random_seed.h"
#include "text/byte_lanes.h"
#include "text/compared_text.h"
#include "text/jaro_match.h"
#include "text/slip_filter.h"
#include "unit/text/matching_text.h"

namespace {

using matching_test::AllStrings;
using matching_test::ExactText;
using matching_test::RandomMatching;
using matching_test::Widened;

constexpr int kPairs = 100000;

constexpr std::string_view kAlphabets[] = {"AB", "AB12", "ABCDEFGHIJKLMNOPQRSTUVWXYZ",
                                           "A\xB2\xE9\xFF"
                                           "9"};

// Without the terminator, so that a read behind the last character is one behind the memory.
std::vector<char> Unterminated(const std::string& text)
{
  return std::vector<char>(text.begin(), text.end());
}

/* ---- Lanes ---- */

template <class Lanes>
class ByteLaneKinds : public testing::Test
{
};

using LaneKinds = testing::Types<qxpaf::WordLanes, qxpaf::ByteLanes>;
TYPED_TEST_SUITE(ByteLaneKinds, LaneKinds);

unsigned int EqualBits(const std::string& a, const std::string& b)
{
  unsigned int bits = 0;
  for (std::size_t i = 0; i < a.size(); ++i) bits |= (a[i] == b[i] ? 1U : 0U) << i;
  return bits;
}

// The lanes of a text, zeros behind its end.
template <class Lanes>
std::string LaneText(const std::string& text)
{
  std::string lanes = text.substr(0, Lanes::kCount);
  lanes.resize(Lanes::kCount, '\0');
  return lanes;
}

TYPED_TEST(ByteLaneKinds, EqualLanesAtEveryLengthAndDistance)
{
  RandomMatching random(test_support::RandomSeed());
  for (int i = 0; i < kPairs; ++i) {
    const std::string_view alphabet = kAlphabets[random.Below(std::size(kAlphabets))];
    const std::string a = "A" + random.Of(alphabet, 24);
    const std::string b = "B" + random.Of(alphabet, 24);
    const std::vector<char> exactA = Unterminated(a);
    const std::vector<char> exactB = Unterminated(b);
    const auto lanesA = TypeParam::FirstOf(exactA.data(), exactA.size());
    const auto lanesB = TypeParam::FirstOf(exactB.data(), exactB.size());
    const std::string textA = LaneText<TypeParam>(a);
    const std::string textB = LaneText<TypeParam>(b);
    ASSERT_EQ(lanesA.EqualTo(lanesB).TopBits(), EqualBits(textA, textB)) << a << " " << b;
    ASSERT_EQ(lanesA.EqualTo(lanesB.template Up<2>()).TopBits(),
              EqualBits(textA, LaneText<TypeParam>(std::string(2, '\0') + b)))
        << a << " " << b;
    ASSERT_EQ(lanesA.EqualTo(lanesB.template Down<3>()).TopBits(),
              EqualBits(textA, LaneText<TypeParam>(textB.substr(3))))
        << a << " " << b;
    ASSERT_EQ(lanesA.EqualTo(TypeParam::Of(a.back())).TopBits(), EqualBits(textA, std::string(textA.size(), a.back())))
        << a;
  }
}

/* ---- The common beginning ---- */

template <class String>
void ExpectCommonLength(const String& text, std::size_t length, std::size_t common)
{
  using Char = typename String::value_type;
  std::vector<Char> a(text.begin(), text.begin() + static_cast<std::ptrdiff_t>(length));
  std::vector<Char> b = a;
  if (common < length) b[common] = static_cast<Char>(b[common] ^ 0x40);
  if (common + 1 < length) b.back() = static_cast<Char>(b.back() ^ 0x20);
  ASSERT_EQ(qxpaf::CommonLength(a.data(), b.data(), length), common) << length;
}

TEST(CommonLength, EveryLengthAndPlace)
{
  const std::string text = "THE QUICK BROWN FOX JUMPS OVER THE LAZY DOG";
  for (std::size_t length = 0; length <= text.size(); ++length) {
    for (std::size_t common = 0; common <= length; ++common) {
      ASSERT_NO_FATAL_FAILURE(ExpectCommonLength(text, length, common));
      ASSERT_NO_FATAL_FAILURE(ExpectCommonLength(Widened(text), length, common));
    }
  }
}

/* ---- The quick look ---- */

template <class Lanes>
class SlipFilterKinds : public testing::Test
{
};
TYPED_TEST_SUITE(SlipFilterKinds, LaneKinds);

struct Verdicts
{
  int pairs = 0;
  int farApart = 0;
  int farApartAtOnce = 0;
};

// No pair within the bound may be told apart.
template <class Lanes, int kSlips>
void ExpectSound(const std::string& a, const std::string& b, Verdicts& verdicts)
{
  const int distance = reference::UnboundedDistance(a, b, true);
  const std::vector<char> restA = Unterminated(a);
  const std::vector<char> restB = Unterminated(b);
  const ExactText<char> exactA(a);
  const ExactText<char> exactB(b);
  const bool farApart = qxpaf::NeedsMoreSlips<kSlips, Lanes>(restA.data(), a.size(), restB.data(), b.size());
  const bool atOnce = qxpaf::NeedsMoreSlipsAtOnce<kSlips, Lanes>(exactA.Get(), exactB.Get());
  if (farApart || atOnce) {
    ASSERT_GT(distance, kSlips) << a << " and " << b;
  }
  ++verdicts.pairs;
  verdicts.farApart += farApart;
  verdicts.farApartAtOnce += atOnce;
}

template <class Lanes>
void ExpectSoundForAll(const std::string& a, const std::string& b, Verdicts& verdicts)
{
  ASSERT_NO_FATAL_FAILURE((ExpectSound<Lanes, 1>(a, b, verdicts)));
  ASSERT_NO_FATAL_FAILURE((ExpectSound<Lanes, 2>(a, b, verdicts)));
  ASSERT_NO_FATAL_FAILURE((ExpectSound<Lanes, 3>(a, b, verdicts)));
}

TYPED_TEST(SlipFilterKinds, AllShortPairs)
{
  const auto texts = AllStrings("AB1", 5);
  Verdicts verdicts;
  for (const std::string& a : texts) {
    for (const std::string& b : texts) {
      if (a.empty() || b.empty()) continue;
      ASSERT_NO_FATAL_FAILURE(ExpectSoundForAll<TypeParam>(a, b, verdicts));
    }
  }
  EXPECT_GT(verdicts.farApart, 0);
}

// Mostly pairs around the bounds, where a mistake would show.
TYPED_TEST(SlipFilterKinds, SlippedPairs)
{
  RandomMatching random(test_support::RandomSeed());
  Verdicts verdicts;
  for (int i = 0; i < kPairs; ++i) {
    const std::string a = "A" + random.Of(kAlphabets[random.Below(std::size(kAlphabets))], 40);
    const std::string b = random.Slip(a, random.Below(6));
    if (b.empty()) continue;
    ASSERT_NO_FATAL_FAILURE(ExpectSoundForAll<TypeParam>(a, b, verdicts));
  }
}

// Characters that find their equals behind the last lane, and a transposition on each place.
TYPED_TEST(SlipFilterKinds, SlipsAcrossTheLastLane)
{
  const std::string a = "ABCDEFGHIJKLMNOPQRSTUVWXYZ";
  Verdicts verdicts;
  for (std::size_t inserted = 0; inserted <= 3; ++inserted) {
    for (std::size_t at = 0; at < a.size(); ++at) {
      for (std::size_t swapped = 0; swapped + 1 < a.size(); ++swapped) {
        std::string b = a;
        std::swap(b[swapped], b[swapped + 1]);
        b.insert(at, inserted, '-');
        ASSERT_NO_FATAL_FAILURE(ExpectSoundForAll<TypeParam>(a, b, verdicts));
        ASSERT_NO_FATAL_FAILURE(ExpectSoundForAll<TypeParam>(b, a, verdicts));
      }
    }
  }
}

// Unlike texts are told apart, or the look would be worth nothing.
TYPED_TEST(SlipFilterKinds, UnlikePairsAreToldApart)
{
  RandomMatching random(test_support::RandomSeed());
  Verdicts verdicts;
  for (int i = 0; i < kPairs / 10; ++i) {
    const std::string a = "ZQXJ" + random.Of("ABCDEFGHIJKL", 30);
    const std::string b = "WVYK" + random.Of("MNOPQRSTU", 30);
    ASSERT_NO_FATAL_FAILURE((ExpectSound<TypeParam, 2>(a, b, verdicts)));
  }
  EXPECT_EQ(verdicts.farApart, verdicts.pairs);
  EXPECT_GT(verdicts.farApartAtOnce, verdicts.pairs / 2);
}

/* ---- The pairs of the similarity ---- */

// What the steps of the similarity give, with the scan of b that they describe.
template <class String>
qxpaf::JaroMatches PlainMatches(const String& a, const String& b, std::ptrdiff_t reach)
{
  std::vector<bool> used(b.size(), false);
  String matched;
  for (std::size_t i = 0; i < a.size(); ++i) {
    for (std::size_t j = 0; j < b.size(); ++j) {
      if (std::abs(static_cast<std::ptrdiff_t>(i) - static_cast<std::ptrdiff_t>(j)) > reach || used[j] || a[i] != b[j])
        continue;
      used[j] = true;
      matched += a[i];
      break;
    }
  }
  std::size_t k = 0;
  std::ptrdiff_t outOfOrder = 0;
  for (std::size_t j = 0; j < b.size(); ++j)
    if (used[j]) outOfOrder += matched[k++] != b[j];
  return {static_cast<std::ptrdiff_t>(k), outOfOrder};
}

template <class String>
void ExpectPlainMatches(const String& a, const String& b, std::ptrdiff_t reach)
{
  using Char = typename String::value_type;
  const std::vector<Char> exactA(a.begin(), a.end());
  const std::vector<Char> exactB(b.begin(), b.end());
  const qxpaf::JaroTexts<Char> texts{exactA.data(), exactB.data(), static_cast<std::ptrdiff_t>(a.size()),
                                     static_cast<std::ptrdiff_t>(b.size()), reach};
  const qxpaf::JaroMatches expected = PlainMatches(a, b, reach);
  for (const auto& matches : {qxpaf::MatchShort(texts), qxpaf::MatchShortByTable(texts)}) {
    ASSERT_EQ(matches.count, expected.count) << encoding_test::Hex(a) << encoding_test::Hex(b) << reach;
    ASSERT_EQ(matches.outOfOrder, expected.outOfOrder) << encoding_test::Hex(a) << encoding_test::Hex(b) << reach;
  }
}

TEST(JaroMatch, AllWaysAgreeUpTo64Characters)
{
  RandomMatching random(test_support::RandomSeed());
  for (int i = 0; i < kPairs; ++i) {
    const std::string_view alphabet = kAlphabets[random.Below(std::size(kAlphabets))];
    const std::size_t longest = random.Below(3) == 0 ? 63 : 20;
    const std::string a = "A" + random.Of(alphabet, longest);
    const std::string b = "B" + (random.Below(2) == 0 ? random.Of(alphabet, longest) : a.substr(0, longest));
    // A text whose common beginning was dropped may have more reach than its own length.
    const auto reach = static_cast<std::ptrdiff_t>(random.Below(100));
    ASSERT_NO_FATAL_FAILURE(ExpectPlainMatches(a, b, reach));
    ASSERT_NO_FATAL_FAILURE(ExpectPlainMatches(Widened(a), Widened(b), reach));
  }
}

}  // namespace
