#include "qxpaf/text/fuzzy.h"

#include <gtest/gtest.h>

#include <climits>
#include <string>

#include "unit/text/matching_text.h"

namespace {

using matching_test::ExactText;
using matching_test::Widened;

template <class Signature>
constexpr bool Exactly(Signature*)
{
  return true;
}

// Compiled plug-ins bind to the mangled names, so the types are fixed to the last detail.
static_assert(Exactly<int(const char*, const char*, int, bool)>(CompareStrings2));
static_assert(Exactly<int(const wchar_t*, const wchar_t*, int, bool)>(CompareStrings2));
static_assert(Exactly<bool(const char*, const char*, bool&, bool, bool)>(StringsNearlyTheSame));
static_assert(Exactly<bool(const wchar_t*, const wchar_t*, bool&, bool, bool)>(StringsNearlyTheSame));
static_assert(Exactly<float(const std::string&, const std::string&)>(CompareJaro));
static_assert(Exactly<float(const std::wstring&, const std::wstring&)>(CompareJaro));

/* ---- CompareStrings2 ---- */

// The distance, narrow and wide alike.
int Distance(const std::string& a, const std::string& b, int maxDist, bool digitsMayDiffer)
{
  const int narrow = CompareStrings2(ExactText<char>(a).Get(), ExactText<char>(b).Get(), maxDist, digitsMayDiffer);
  const ExactText<wchar_t> wideA(Widened(a));
  const ExactText<wchar_t> wideB(Widened(b));
  EXPECT_EQ(CompareStrings2(wideA.Get(), wideB.Get(), maxDist, digitsMayDiffer), narrow) << a << " and " << b;
  return narrow;
}

struct DistanceRow
{
  const char* a;
  const char* b;
  int maxDist;
  bool digitsMayDiffer;
  int distance;
};

template <std::size_t n>
void ExpectDistances(const DistanceRow (&rows)[n])
{
  for (const DistanceRow& row : rows) {
    EXPECT_EQ(Distance(row.a, row.b, row.maxDist, row.digitsMayDiffer), row.distance)
        << row.a << " and " << row.b << " within " << row.maxDist << (row.digitsMayDiffer ? "" : ", digits fixed");
    EXPECT_EQ(Distance(row.b, row.a, row.maxDist, row.digitsMayDiffer), row.distance)
        << row.b << " and " << row.a << " within " << row.maxDist << (row.digitsMayDiffer ? "" : ", digits fixed");
  }
}

TEST(CompareStrings2, Slips)
{
  ExpectDistances({
      {"SMITH", "SMITH", 2, true, 0},
      {"", "", 2, true, 0},
      {"SMITH", "SMYTH", 2, true, 1},
      {"SMITH", "SMIHT", 2, true, 1},
      {"SMITH", "SMITHS", 2, true, 1},
      {"SMITH", "MITH", 2, true, 1},
      {"SMITH", "SMTH", 2, true, 1},
      {"SMITH", "SIMHT", 2, true, 2},
      {"SMITH", "SMOOTH", 2, true, 2},
      {"SMITH", "smith", 2, true, 3},
      {"SMITH", "JONES", 3, true, 4},
      {"SMITH", "JONES", 9, true, 5},
      {"CA", "ABC", 5, true, 3},  // nothing transposed is edited again
      {"KITTEN", "SITTING", 3, true, 3},
      {"KITTEN", "SITTING", 2, true, 3},
      {"\xE9"
       "A",
       "\xE8"
       "A",
       1, true, 1},
  });
}

TEST(CompareStrings2, Bounds)
{
  ExpectDistances({
      {"AB", "XYZW", 1, true, 2},  // the lengths differ by more than the bound
      {"AB", "XY", 1, true, 2},
      {"AB", "XY", 2, true, 2},
      {"AB", "CB", 0, true, 1},
      {"AB", "XYZW", 0, true, 1},
      {"AB", "AB", 0, true, 0},
      {"12", "13", 0, false, 1},
  });
}

// Where one text begins with the other, no bound caps the length that is left.
TEST(CompareStrings2, RestsAreNotCapped)
{
  for (const int maxDist : {INT_MIN, -1, 0, 1, 2, 3, INT_MAX}) {
    for (const bool digitsMayDiffer : {false, true}) {
      EXPECT_EQ(Distance("A", "AXYZ", maxDist, digitsMayDiffer), 3) << maxDist;
      EXPECT_EQ(Distance("1", "12345", maxDist, digitsMayDiffer), 4) << maxDist;
      EXPECT_EQ(Distance("", "SMITH", maxDist, digitsMayDiffer), 5) << maxDist;
      EXPECT_EQ(Distance("SMITH", "", maxDist, digitsMayDiffer), 5) << maxDist;
      EXPECT_EQ(Distance("SMITH", "SMITH", maxDist, digitsMayDiffer), 0) << maxDist;
    }
  }
}

TEST(CompareStrings2, FixedDigits)
{
  ExpectDistances({
      {"12 MAIN", "13 MAIN", 2, false, 3},
      {"12 MAIN", "13 MAIN", 2, true, 1},
      {"a1", "a21", 2, false, 3},  // the common beginning is matched first, then digits clash
      {"a1", "a21", 2, true, 1},
      {"1", "21", 3, false, 4},  // an equal end is not matched first
      {"1", "21", 3, true, 1},
      {"A1", "1", 2, false, 1},
      {"1A", "A1", 2, false, 1},  // digits may move
      {"A12", "A1B2", 2, false, 1},
      {"12A", "12B", 2, false, 1},
      {"A1", "B2", 5, false, 3},  // around the clash
      {"A1", "B2", 5, true, 2},
      {"A1", "B2", 2, false, 3},
      {"UNIT 5", "UNIT 6", 9, false, 10},
  });
}

// '0' and '9' are digits, their neighbours and digits of other scripts are not.
TEST(CompareStrings2, WhatDigitsAre)
{
  ExpectDistances({{"/A", "0A", 1, false, 1},
                   {":A", "9A", 1, false, 1},
                   {"0A", "9A", 1, false, 2},
                   {"\xB2"
                    "A",
                    "1A", 1, false, 1}});
  EXPECT_EQ(CompareStrings2(L"\x0661"
                            L"A",
                            L"\x0662"
                            L"A",
                            1, false),
            1);
  EXPECT_EQ(CompareStrings2(L"\xFF11"
                            L"A",
                            L"1A", 1, false),
            1);
  // Same low byte as the digit 1.
  EXPECT_EQ(CompareStrings2(L"\x0131"
                            L"A",
                            L"2A", 1, false),
            1);
}

TEST(CompareStrings2, ExtremeBounds)
{
  ExpectDistances({
      {"AB", "XY", -1, true, 0},
      {"AB", "XY", INT_MIN, true, INT_MIN + 1},
      {"12", "13", -3, false, -2},
      {"AB", "XY", INT_MAX, true, 2},
      {"AB", "XYZW", INT_MAX, false, 4},
      {"12", "13", INT_MAX, false, INT_MAX},  // nothing is larger
      {"12", "13", INT_MAX - 1, false, INT_MAX},
      {"A1", "B2", INT_MAX, false, 3},
      {"A1B2C3", "D4E5F6", 1000, false, 7},  // shifted, so that no digits meet
  });
}

TEST(CompareStrings2, LongTexts)
{
  std::string a;
  while (a.size() < 100000) a += "12 OLD NORTHERN ROAD ";
  std::string b = a;
  b[5] = 'X';
  b.insert(50000, "Y");
  std::swap(b[90000], b[90001]);
  ASSERT_NE(b[90000], b[90001]);
  for (const bool digitsMayDiffer : {false, true}) {
    EXPECT_EQ(Distance(a, b, 3, digitsMayDiffer), 3);
    EXPECT_EQ(Distance(a, b, 2, digitsMayDiffer), 3);
    EXPECT_EQ(Distance(a, b, 9, digitsMayDiffer), 3);
    EXPECT_EQ(Distance(a, std::string(a.size(), 'X'), 3, digitsMayDiffer), 4);
    EXPECT_EQ(Distance(a, a.substr(0, 10), 3, digitsMayDiffer), static_cast<int>(a.size()) - 10);
  }
  b += "9";
  b[95000] = b[95000] == '1' ? 'Q' : '1';
  EXPECT_LE(Distance(a, b, 40, true), 5);
}

/* ---- StringsNearlyTheSame ---- */

enum Verdict
{
  kDifferent,
  kNear,
  kIdentical
};

template <class Char>
Verdict Judge(const std::basic_string<Char>& a, const std::basic_string<Char>& b, bool firstMustMatch,
              bool digitsMayDiffer)
{
  const ExactText<Char> exactA(a);
  const ExactText<Char> exactB(b);
  bool identical = true;
  const bool near = StringsNearlyTheSame(exactA.Get(), exactB.Get(), identical, firstMustMatch, digitsMayDiffer);
  EXPECT_TRUE(near || !identical);
  return identical ? kIdentical : near ? kNear : kDifferent;
}

struct VerdictRow
{
  const char* a;
  const char* b;
  bool firstMustMatch;
  bool digitsMayDiffer;
  Verdict narrow;
  Verdict wide;
};

template <std::size_t n>
void ExpectVerdicts(const VerdictRow (&rows)[n])
{
  for (const VerdictRow& row : rows) {
    EXPECT_EQ(Judge<char>(row.a, row.b, row.firstMustMatch, row.digitsMayDiffer), row.narrow)
        << row.a << " and " << row.b << (row.digitsMayDiffer ? "" : ", digits fixed");
    EXPECT_EQ(Judge(Widened(row.a), Widened(row.b), row.firstMustMatch, row.digitsMayDiffer), row.wide)
        << row.a << " and " << row.b << (row.digitsMayDiffer ? "" : ", digits fixed") << ", wide";
  }
}

TEST(StringsNearlyTheSame, Slips)
{
  ExpectVerdicts({
      {"JONES", "JONES", false, true, kIdentical, kIdentical},
      {"", "", false, true, kIdentical, kIdentical},
      {"", "", true, false, kIdentical, kIdentical},
      {"JONES", "JONSE", false, true, kNear, kNear},
      {"JONES", "JONS", false, true, kNear, kNear},
      {"JONES", "JONESY", false, true, kNear, kNear},
      {"JONES", "JONE", false, true, kNear, kNear},
      {"JONES", "JOHNES", false, true, kNear, kNear},
      {"JONES", "JANES", false, true, kNear, kNear},
      {"JONES", "OJNES", false, true, kNear, kNear},
      {"A", "B", false, true, kNear, kNear},
      {"A", "", false, true, kNear, kNear},
      {"JONES", "JOHNS", false, true, kDifferent, kDifferent},
      {"JONES", "JON", false, true, kDifferent, kDifferent},
      {"JONES", "JONESYS", false, true, kDifferent, kDifferent},
      {"JONES", "jones", false, true, kDifferent, kDifferent},
      {"ABCD", "BADC", false, true, kDifferent, kDifferent},
      {"AB", "BC", false, true, kDifferent, kDifferent},
      {"AB", "", false, true, kDifferent, kDifferent},
  });
}

TEST(StringsNearlyTheSame, FirstMustMatch)
{
  ExpectVerdicts({
      {"JONES", "BONES", true, true, kDifferent, kDifferent},
      {"JONES", "BONES", false, true, kNear, kNear},
      {"JONES", "JONE", true, true, kNear, kNear},
      {"AB", "BA", true, true, kDifferent, kDifferent},
      {"", "A", true, true, kDifferent, kDifferent},
      {"A", "", true, true, kDifferent, kDifferent},
  });
}

TEST(StringsNearlyTheSame, Digits)
{
  ExpectVerdicts({
      {"UNIT 5", "UNIT 6", false, false, kDifferent, kDifferent},
      {"UNIT 5", "UNIT 6", false, true, kNear, kNear},
      {"UNIT 5", "UNIT 5A", false, false, kNear, kNear},
      {"UNIT 5A", "UNIT 5", false, false, kNear, kNear},
      {"UNIT 5", "UNIT 55", false, false, kDifferent, kNear},  // at the end, wide text takes a digit
      {"UNIT 55", "UNIT 5", false, false, kDifferent, kNear},
      {"UNIT 5", "UNIT 55", false, true, kNear, kNear},
      {"UNIT 5", "UNIT 555", false, true, kDifferent, kDifferent},
      {"", "1", false, false, kDifferent, kNear},
      {"5A", "55A", false, false, kDifferent, kDifferent},
      {"5A", "55A", false, true, kNear, kNear},
      {"12", "12", false, false, kIdentical, kIdentical},
      {"12 MAIN", "12 MIAN", false, false, kNear, kNear},
  });
}

// The condition on digits looks at one character of b and at one of a, so it is not symmetric.
TEST(StringsNearlyTheSame, DigitsAreJudgedOneSided)
{
  ExpectVerdicts({
      {"A1", "AB1", false, false, kNear, kNear},  // the digit of a is shifted
      {"AB1", "A1", false, false, kDifferent, kDifferent},
      {"A1B", "AB1", false, false, kNear, kNear},  // transposed
      {"AB1", "A1B", false, false, kDifferent, kDifferent},
      {"1X", "X", false, false, kDifferent, kDifferent},
      {"X", "1X", false, false, kDifferent, kDifferent},
      {"A1", "AB", false, false, kDifferent, kDifferent},
      {"A1X", "ABY", false, true, kDifferent, kDifferent},
      {"A0", "AB0", false, false, kNear, kNear},
      {"A9", "AB9", false, false, kNear, kNear},
      {"A/", "A0", false, false, kDifferent, kDifferent},
      {"A/", "A:", false, false, kNear, kNear},
  });
}

TEST(StringsNearlyTheSame, DigitsOfOtherScriptsAreOrdinary)
{
  EXPECT_EQ(Judge<wchar_t>(L"\x0661"
                           L"A",
                           L"\x0662"
                           L"A",
                           false, false),
            kNear);
  EXPECT_EQ(Judge<wchar_t>(L"\x0131"
                           L"A",
                           L"\x0132"
                           L"A",
                           false, false),
            kNear);
  EXPECT_EQ(Judge<wchar_t>(std::wstring(1, -1), std::wstring(1, -2), false, false), kNear);
}

TEST(StringsNearlyTheSame, LongTexts)
{
  const std::string a(100000, 'A');
  std::string b = a;
  EXPECT_EQ(Judge(a, b, true, false), kIdentical);
  b[99998] = 'B';
  EXPECT_EQ(Judge(a, b, true, false), kNear);
  EXPECT_EQ(Judge(a, b + "A", true, false), kNear);
  EXPECT_EQ(Judge(a, b + "C", true, false), kDifferent);
  EXPECT_EQ(Judge(a, a + "A", true, false), kNear);
  b[1] = 'B';
  EXPECT_EQ(Judge(a, b, true, false), kDifferent);
}

/* ---- CompareJaro ---- */

struct JaroRow
{
  const char* a;
  const char* b;
  float expected;
};

// Matches, half of those out of order, and the lengths.
float Formula(int m, int halfOutOfOrder, int la, int lb)
{
  const auto fm = static_cast<float>(m);
  return (static_cast<float>(m - halfOutOfOrder) / fm + fm / static_cast<float>(la) + fm / static_cast<float>(lb)) /
         3.0F;
}

TEST(CompareJaro, KnownPairs)
{
  const JaroRow rows[] = {
      {"", "", 0.0F},
      {"", "A", 0.0F},
      {"A", "", 0.0F},
      {"A", "A", 1.0F},
      {"A", "B", 0.0F},
      {"AB", "BA", 0.0F},  // no reach
      {"MARTHA", "MARTHA", 1.0F},
      {"MARTHA", "MARHTA", Formula(6, 1, 6, 6)},
      {"DWAYNE", "DUANE", Formula(4, 0, 6, 5)},
      {"DIXON", "DICKSONX", Formula(4, 0, 5, 8)},
      {"ABCD", "abcd", 0.0F},
      // 3 of 4 out of order: halved and rounded down
      {"ABCDXXXX", "BCADYYYY", Formula(4, 1, 8, 8)},
      {"AAAA", "AA", Formula(2, 0, 4, 2)},
      {"\xE9"
       "A",
       "\xE9"
       "B",
       Formula(1, 0, 2, 2)},
  };
  for (const JaroRow& row : rows) {
    EXPECT_EQ(CompareJaro(std::string(row.a), std::string(row.b)), row.expected) << row.a << " and " << row.b;
    EXPECT_EQ(CompareJaro(Widened(row.a), Widened(row.b)), row.expected) << row.a << " and " << row.b << ", wide";
  }
  EXPECT_NEAR(CompareJaro(std::string("MARTHA"), std::string("MARHTA")), 0.944, 0.0005);
  EXPECT_NEAR(CompareJaro(std::string("DWAYNE"), std::string("DUANE")), 0.822, 0.0005);
}

// At the edge of the reach and one behind it, for short and long texts.
TEST(CompareJaro, Reach)
{
  for (const int length : {4, 5, 10, 63, 64, 65, 66, 200}) {
    const int reach = length / 2 - 1;
    const auto size = static_cast<std::size_t>(length);
    std::string a(size, 'a');
    std::string b(size, 'b');
    a[1] = 'X';
    b[static_cast<std::size_t>(1 + reach)] = 'X';
    EXPECT_EQ(CompareJaro(a, b), Formula(1, 0, length, length)) << length;
    EXPECT_EQ(CompareJaro(b, a), Formula(1, 0, length, length)) << length;
    EXPECT_EQ(CompareJaro(Widened(a), Widened(b)), Formula(1, 0, length, length)) << length;
    std::swap(b[static_cast<std::size_t>(1 + reach)], b[static_cast<std::size_t>(2 + reach)]);
    EXPECT_EQ(CompareJaro(a, b), 0.0F) << length;
    EXPECT_EQ(CompareJaro(b, a), 0.0F) << length;
    EXPECT_EQ(CompareJaro(Widened(a), Widened(b)), 0.0F) << length;
  }
}

TEST(CompareJaro, WideCharactersOfEqualLowByteDiffer)
{
  EXPECT_EQ(CompareJaro(std::wstring(L"\x0141\x0241\x0341"), std::wstring(L"\x0541\x0241\x0641")), Formula(1, 0, 3, 3));
  const std::wstring many(100, L'\x0141');
  EXPECT_EQ(CompareJaro(many + L"\x0241", std::wstring(100, L'\x0341') + L"\x0241"), Formula(1, 0, 101, 101));
}

// Zeros are characters here; whatever the result, memory must stay untouched.
TEST(CompareJaro, EmbeddedZeros)
{
  for (const std::size_t length : {std::size_t{5}, std::size_t{64}, std::size_t{100}}) {
    const std::string zeros(length, '\0');
    std::string mixed = zeros;
    mixed[length / 2] = 'A';
    EXPECT_EQ(CompareJaro(zeros, zeros), 1.0F);
    EXPECT_LT(CompareJaro(zeros, mixed), 1.0F);
    EXPECT_LT(CompareJaro(mixed, zeros), 1.0F);
    EXPECT_EQ(CompareJaro(zeros, std::string(length, 'A')), 0.0F);
  }
}

TEST(CompareJaro, LongTexts)
{
  std::string a;
  while (a.size() < 100000) a += "12 OLD NORTHERN ROAD ";
  const auto length = static_cast<int>(a.size());
  EXPECT_EQ(CompareJaro(a, a), 1.0F);
  EXPECT_EQ(CompareJaro(a, std::string(a.size(), '#')), 0.0F);
  EXPECT_EQ(CompareJaro(std::string(a.size(), 'A'), std::string(10, 'A')), Formula(10, 0, length, 10));
}

}  // namespace
