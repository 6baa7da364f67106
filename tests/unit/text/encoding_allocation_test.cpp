// How often the conversions allocate, and whether the results are as large as they need to be.
#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <utility>

#include "qxpaf/text/encoding.h"
#include "support/allocations.h"

namespace {

using test_support::Allocations;
using test_support::AllocationsOf;

// Up to here strings may round their capacity up to twice the capacity of a string without memory of its own.
constexpr std::size_t kRounded = 30;

// What convert returns, the allocations that it took being counted.
template <class Convert>
auto Counted(int atMost, Convert convert)
{
  const long before = Allocations();
  auto result = convert();
  EXPECT_LE(Allocations() - before, atMost) << result.size();
  return result;
}

template <class Convert>
void ExpectAllocations(int atMost, Convert convert)
{
  const auto result = Counted(atMost, convert);
  EXPECT_LE(result.capacity(), std::max(result.size() + 1, kRounded)) << result.size();
}

std::string Repeat(const std::string& text, std::size_t size)
{
  std::string out;
  while (out.size() + text.size() <= size) out += text;
  return out;
}

class Lengths : public testing::TestWithParam<std::size_t>
{
 protected:
  const std::string ascii_ = Repeat("1 GEORGE STREET ", GetParam());
  const std::string accented_ = Repeat("12 Rue de l'\xC3\x89glise, \xC5\x92uilly ", GetParam());
  const std::string mixed_ =
      Repeat("\xCE\x9F\xCE\xB4\xCF\x8C\xCF\x82 7, \xE6\x9D\xB1\xE4\xBA\xAC \xF0\x9F\x98\x80", GetParam());
};

TEST_P(Lengths, ReadersOfUtf8AllocateTheResultOnly)
{
  for (const std::string* text : {&ascii_, &accented_, &mixed_}) {
    ExpectAllocations(1, [&] { return Utf8ToWide(*text); });
    ExpectAllocations(1, [&] { return FromUtf8IfWide<std::wstring>(*text); });
    ExpectAllocations(1, [&] {
      std::wstring out;
      EXPECT_TRUE(ReadUtf8String(out, text->c_str()));
      return out;
    });
    ExpectAllocations(1, [&] {
      std::wstring out;
      EXPECT_TRUE(Utf8ToUtf16(out, text->c_str(), false));
      return out;
    });
    ExpectAllocations(1, [&] {
      std::string out;
      ReadUtf8StringTolerant(out, text->c_str());
      return out;
    });
  }
}

TEST_P(Lengths, ReadersReuseWhatTheStringHas)
{
  std::wstring out = Utf8ToWide(mixed_);
  EXPECT_EQ(AllocationsOf([&] { EXPECT_TRUE(ReadUtf8String(out, mixed_.c_str())); }), 0);
}

TEST_P(Lengths, MalformedTextCostsOneMoreAllocation)
{
  const std::string strays = Repeat("\x80\x81 ", GetParam());
  const std::string late = ascii_ + strays;
  Counted(2, [&] { return Utf8ToWide(strays); });
  Counted(2, [&] { return Utf8ToWide(late); });
}

TEST_P(Lengths, WritersOfUtf8AllocateTheResultOnly)
{
  for (const std::string* text : {&ascii_, &accented_, &mixed_}) {
    const std::wstring wide = Utf8ToWide(*text);
    ExpectAllocations(1, [&] { return WideToUtf8(wide); });
    ExpectAllocations(1, [&] { return StringToUtf8(wide.c_str()); });
    std::wstring units;
    ASSERT_TRUE(Utf8ToUtf16(units, text->c_str(), false));
    EXPECT_EQ(WideToUtf8(units), *text);
    ExpectAllocations(1, [&] { return WideToUtf8(units); });
  }
}

TEST_P(Lengths, AnsiConversionsAllocateTheResultOnly)
{
  for (const std::string* text : {&ascii_, &accented_, &mixed_}) {
    const std::wstring wide = Utf8ToWide(*text);
    const std::string ansi = WideToAnsi(wide, '?');
    ExpectAllocations(1, [&] { return WideToAnsi(wide, '?'); });
    ExpectAllocations(1, [&] { return CharsetConvert(wide, CharsetLatin1, '?'); });
    ExpectAllocations(1, [&] { return AnsiToWide(ansi); });
    ExpectAllocations(1, [&] { return StringToUtf8(ansi); });
    ExpectAllocations(1, [&] { return StringToUtf8(ansi.c_str()); });
  }
}

TEST_P(Lengths, Windows1252ToUtf8OfItsArgument)
{
  std::string ascii = ascii_;
  ExpectAllocations(0, [&] { return Windows1252ToUtf8(std::move(ascii)); });
  std::string accented = WideToAnsi(Utf8ToWide(accented_), '?');
  ExpectAllocations(1, [&] { return Windows1252ToUtf8(std::move(accented)); });
}

TEST_P(Lengths, Utf16AndUcs2AllocateTheResultOnly)
{
  const std::wstring wide = Utf8ToWide(mixed_);
  std::u32string codePoints(wide.begin(), wide.end());
  ExpectAllocations(1, [&] {
    std::wstring out;
    Utf32ToUtf16(out, reinterpret_cast<const unsigned int*>(codePoints.c_str()));
    return out;
  });
  ExpectAllocations(1, [&] { return UnicodeToUCS2BE(wide.c_str()); });
}

INSTANTIATE_TEST_SUITE_P(Texts, Lengths, testing::Values(0, 16, 45, 255, 256, 257, 600, 100000));

}  // namespace
