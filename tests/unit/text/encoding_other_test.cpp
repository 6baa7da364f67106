// UCS-2, UTF-16, choice and recognition of encodings, numbers, bounded copy.
#include <gtest/gtest.h>

#include <cfloat>
#include <climits>
#include <limits>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include "qxpaf/text/encoding.h"
#include "reference/encoding_reference.h"
#include "support/guarded_buffer.h"
#include "unit/text/encoding_text.h"

namespace {

using encoding_test::Bytes;
using encoding_test::ExactText;
using encoding_test::Hex;
using encoding_test::Wide;
using test_support::GuardedBuffer;

TEST(UnicodeToUcs2, WideTextInBothByteOrders)
{
  const std::tuple<std::wstring, std::string> rows[] = {
      {L"", ""},
      {Wide({'A', 0xE9, 0x20AC}), Bytes({0x41, 0x00, 0xE9, 0x00, 0xAC, 0x20})},
      // Bits above 15 are dropped.
      {Wide({0x1F600, -1, 0x10000}), Bytes({0x00, 0xF6, 0xFF, 0xFF, 0x00, 0x00})},
      {Wide({'a', 0, 'b'}), Bytes({0x61, 0x00})},
  };
  for (const auto& [wide, littleEndian] : rows) {
    std::string bigEndian = littleEndian;
    for (std::size_t i = 0; i < bigEndian.size(); i += 2) std::swap(bigEndian[i], bigEndian[i + 1]);
    const ExactText<wchar_t> text(wide);
    EXPECT_EQ(Hex(UnicodeToUCS2LE(text.Get())), Hex(littleEndian)) << Hex(wide);
    EXPECT_EQ(Hex(UnicodeToUCS2BE(text.Get())), Hex(bigEndian)) << Hex(wide);
  }
}

TEST(UnicodeToUcs2, NarrowTextIsLatin1)
{
  EXPECT_EQ(UnicodeToUCS2LE(""), "");
  EXPECT_EQ(Hex(UnicodeToUCS2BE("A\xE9")), Hex(Bytes({0x00, 0x41, 0x00, 0xE9})));
  EXPECT_EQ(Hex(UnicodeToUCS2LE("A\xE9")), Hex(Bytes({0x41, 0x00, 0xE9, 0x00})));
  // Not through the table of the code page.
  EXPECT_EQ(Hex(UnicodeToUCS2LE("\x80\xFF")), Hex(Bytes({0x80, 0x00, 0xFF, 0x00})));
}

TEST(Utf32ToUtf16, Lists)
{
  const std::tuple<std::vector<unsigned int>, std::wstring> rows[] = {
      {{0}, L""},
      {{'a', 0xFFFF, 0}, Wide({'a', 0xFFFF})},
      {{0x10000, 0x1F600, 0}, Wide({0xD800, 0xDC00, 0xD83D, 0xDE00})},
      {{0xD800, 0xDFFF, 0}, Wide({0xD800, 0xDFFF})},
      {{'a', 0x10FFFE, 0x10FFFF, 0x110000, 0xFFFFFFFF, 'z', 0}, Wide({'a', 0xDBFF, 0xDFFE, 'z'})},
      {{'a', 0, 'b', 0}, L"a"},
  };
  for (const auto& [codePoints, expected] : rows) {
    std::wstring out = L"before";
    Utf32ToUtf16(out, codePoints.data());
    EXPECT_EQ(Hex(out), Hex(expected));
  }
}

TEST(Utf32ToUtf16, SingleValues)
{
  const std::tuple<unsigned int, std::wstring> rows[] = {
      {0, Wide({0})},
      {'a', L"a"},
      {0xFFFF, Wide({0xFFFF})},
      {0x10000, Wide({0xD800, 0xDC00})},
      {0x10FFFE, Wide({0xDBFF, 0xDFFE})},
      {0x10FFFF, L""},
      {0x110000, L""},
      {0xFFFFFFFF, L""},
  };
  for (const auto& [codePoint, expected] : rows) {
    std::wstring out = L"before";
    Utf32ToUtf16(out, codePoint);
    EXPECT_EQ(Hex(out), Hex(expected)) << codePoint;
  }
}

TEST(Utf32ToWide, KeepsAnyValue)
{
  for (const unsigned int value : {0U, 0x41U, 0x10FFFFU, 0x110000U, 0xFFFFFFFFU}) {
    std::wstring out = L"before";
    Utf32ToWide(out, value);
    EXPECT_EQ(Hex(out), Hex(Wide({value})));
  }
}

TEST(CharsetConvert, Latin1TakesEverythingUpTo255)
{
  EXPECT_EQ(CharsetConvert(Wide({0x100}), CharsetLatin1, '?'), "?");
  EXPECT_EQ(Hex(CharsetConvert(Wide({'a', 0x81, 0x80, 0xFF, 0x20AC, -23, -256, 'z'}), CharsetLatin1, '*')),
            Hex(Bytes({'a', 0x81, 0x80, 0xFF, '*', 0xE9, 0x00, 'z'})));
  EXPECT_EQ(CharsetConvert(Wide({'a', 0, 'b'}), CharsetLatin1, '?'), "a");
}

TEST(CharsetConvert, UnknownTargetsGiveNothing)
{
  for (const int target : {-1, 3, 7, INT_MAX})
    EXPECT_EQ(CharsetConvert(L"abc", static_cast<CharsetEnum>(target), '?'), "");
}

TEST(ConvertFromWide, AnyConverter)
{
  // Refuses what it has already written.
  const auto refuseVowels = [](char& out, wchar_t c) {
    out = static_cast<char>(c);
    return c != L'a' && c != L'e';
  };
  EXPECT_EQ(ConvertFromWide(L"", refuseVowels, '-'), "");
  EXPECT_EQ(ConvertFromWide(L"street name", refuseVowels, '-'), "str--t n-m-");
  EXPECT_EQ(ConvertFromWide(Wide({'b', 0, 'c'}), refuseVowels, '-'), "b");
}

struct DetectionRow
{
  std::string text;
  int ratio;
  bool buffer;
  bool string;
};

const DetectionRow kDetection[] = {
    {"", 10, false, false},
    {"plain ASCII text of some length, long enough for whole blocks", 10, false, false},
    {"caf\xC3\xA9", 10, true, true},
    {"\xF0\x9F\x98\x80", 10, true, true},
    {"\xF4\x8F\xBF\xBF\xE0\x80\x80\xED\xA0\x80", 10, true, true},
    // The mark decides for buffers only; for strings it is one good sequence, here among bad ones.
    {"\xEF\xBB\xBF", 10, true, true},
    {"\xEF\xBB\xBF\xFF\xFF", 1, true, false},
    {"\xEF\xBB", 1, false, false},
    {"x\xEF\xBB\xBF\xFF", 1, false, false},
    // Only bad ones.
    {"\x80", 10, false, false},
    {"\xC0\xC1\xF5\xFF", 10, false, false},
    {"caf\xE9", 10, false, false},
    // A good and a bad one: 1 / 1 is not more than 1.
    {"\xC3\xA9\xFF", 1, false, false},
    {"\xC3\xA9\xC3\xA9\xFF", 1, true, true},
    {"\xC3\xA9\xC3\xA9\xFF", 2, false, false},
    {"\xC3\xA9\xC3\xA9\xC3\xA9\xC3\xA9\xFF", 2, true, true},
    {"\xC3\xA9\xC3\xA9\xC3\xA9\xFF", 2, false, false},  // 3 / 2 is 1
    // Negative ratios and 0, which no quotient exists for.
    {"\xC3\xA9\xC3\xA9\xFF", -1, false, false},
    {"\xC3\xA9\xC3\xA9\xFF", INT_MIN, false, false},
    {"\xC3\xA9\xC3\xA9\xFF", 0, false, false},
    {"\xC3\xA9", 0, true, true},
    {"\xC3\xA9", -1, true, true},
    {"abc", 0, false, false},
    // A bad lead byte takes its whole length in a buffer (so that the é behind E2 x is lost), itself only in a string.
    {"\xE2x\xC3\xA9\xC3\xA9", 1, false, true},
    {"\xE2\xC3\xA9\xC3\xA9\xC3\xA9", 1, true, true},
    // A sequence that would run past the end is bad and the last.
    {"\xC3\xA9\xC3\xA9\xF0\xC3\xA9", 1, true, true},
    {"\xC3\xA9\xC3\xA9\xE2\x82", 1, true, false},
    {"\xC3\xA9\xC3", 1, false, false},
};

TEST(IsUtf8, BuffersAndStrings)
{
  for (const DetectionRow& row : kDetection) {
    const std::vector<char> exact(row.text.begin(), row.text.end());
    EXPECT_EQ(IsBufferUtf8(exact.data(), exact.size(), row.ratio), row.buffer) << Hex(row.text) << row.ratio;
    const ExactText<char> text(row.text);
    EXPECT_EQ(IsStringUtf8(text.Get(), row.ratio), row.string) << Hex(row.text) << row.ratio;
  }
}

TEST(IsUtf8, StringObjectsAlwaysHaveRatioTen)
{
  const std::string ten = "\xC3\xA9\xC3\xA9\xC3\xA9\xC3\xA9\xC3\xA9\xC3\xA9\xC3\xA9\xC3\xA9\xC3\xA9\xC3\xA9";
  for (const int ratio : {1, 2, 10, 100, 0, -1}) {
    EXPECT_FALSE(IsStringUtf8(std::string("\xC3\xA9\xC3\xA9\xFF"), ratio)) << ratio;
    EXPECT_FALSE(IsStringUtf8(ten + "\xFF", ratio)) << ratio;
    // 18 / 10 is 1.
    EXPECT_FALSE(IsStringUtf8(ten + ten.substr(4) + "\xFF", ratio)) << ratio;
    EXPECT_TRUE(IsStringUtf8(ten + ten + "\xFF", ratio)) << ratio;
    EXPECT_TRUE(IsStringUtf8(std::string("\xC3\xA9"), ratio)) << ratio;
  }
}

TEST(IsUtf8, ZerosEndStringsAndNotBuffers)
{
  const std::string text("a\0\xC3\xA9", 4);
  EXPECT_TRUE(IsBufferUtf8(text.data(), text.size(), 10));
  EXPECT_FALSE(IsStringUtf8(text.c_str(), 10));
  EXPECT_FALSE(IsStringUtf8(text, 10));
}

// The narrow and the wide form of the same number.
template <class Number>
void ExpectText(Number value, const std::string& expected)
{
  EXPECT_EQ(QX_to_string(value), expected);
  EXPECT_EQ(QX_to_wstring(value), std::wstring(expected.begin(), expected.end()).substr(0, 255));
}

TEST(NumberText, Integers)
{
  ExpectText(0, "0");
  ExpectText(INT_MAX, "2147483647");
  ExpectText(INT_MIN, "-2147483648");
  ExpectText(0U, "0");
  ExpectText(UINT_MAX, "4294967295");
  ExpectText(LONG_MAX, "9223372036854775807");
  ExpectText(LONG_MIN, "-9223372036854775808");
  ExpectText(ULONG_MAX, "18446744073709551615");
  ExpectText(LLONG_MAX, "9223372036854775807");
  ExpectText(LLONG_MIN, "-9223372036854775808");
  ExpectText(ULLONG_MAX, "18446744073709551615");
}

TEST(NumberText, FloatingPoint)
{
  ExpectText(1.5, "1.500000");
  ExpectText(1.5F, "1.500000");
  ExpectText(1.5L, "1.500000");
  ExpectText(-0.0, "-0.000000");
  ExpectText(0.1F, "0.100000");
  ExpectText(16777216.0F, "16777216.000000");
  ExpectText(-1234567.0000016, "-1234567.000002");
  ExpectText(1e-10, "0.000000");
  ExpectText(std::numeric_limits<double>::infinity(), "inf");
  ExpectText(-std::numeric_limits<long double>::infinity(), "-inf");
  ExpectText(std::numeric_limits<float>::quiet_NaN(), "nan");
}

TEST(NumberText, LargestValuesAreWholeWhenNarrow)
{
  const std::string largestDouble = QX_to_string(-DBL_MAX);
  EXPECT_EQ(largestDouble.size(), 1 + 309 + 7U);
  EXPECT_EQ(largestDouble.substr(0, 8), "-1797693");
  EXPECT_EQ(std::stod(largestDouble), -DBL_MAX);
  ExpectText(-DBL_MAX, largestDouble);
  const std::string largestLong = QX_to_string(LDBL_MAX);
  EXPECT_EQ(largestLong.size(), 4933 + 7U);
  EXPECT_EQ(std::stold(largestLong), LDBL_MAX);
  ExpectText(LDBL_MAX, largestLong);
  EXPECT_EQ(QX_to_string(FLT_MAX), QX_to_string(static_cast<double>(FLT_MAX)));
  EXPECT_EQ(QX_to_string(1e308).size(), 309 + 7U);
}

TEST(NumberText, WideTextIsCutTo255)
{
  // 248 digits, the point and six decimals fit just so.
  EXPECT_EQ(QX_to_wstring(2e247).size(), 255U);
  EXPECT_EQ(QX_to_wstring(2e247).substr(248), L".000000");
  EXPECT_EQ(QX_to_wstring(2e248).size(), 255U);
  EXPECT_EQ(QX_to_wstring(2e248).substr(249), L".00000");
  EXPECT_EQ(QX_to_wstring(DBL_MAX).size(), 255U);
  EXPECT_EQ(QX_to_wstring(LDBL_MAX).size(), 255U);
}

TEST(BoundedCopy, SizesAroundTheLength)
{
  const std::tuple<std::size_t, bool, std::string> rows[] = {
      {0, false, ""},
      {1, false, std::string(1, '\0')},
      {4, false, std::string("abc\0", 4)},
      {6, false, std::string("abcde\0", 6)},
      {7, true, std::string("abcdef\0", 7)},
      {9, true, std::string("abcdef\0\xA5\xA5", 9)},
  };
  const ExactText<char> text("abcdef");
  for (const auto& [size, whole, expected] : rows) {
    GuardedBuffer buffer(size);
    EXPECT_EQ(QX_strcpy(buffer.Data(), text.Get(), size), whole) << size;
    EXPECT_EQ(Hex(buffer.Bytes()), Hex(expected)) << size;
    EXPECT_TRUE(buffer.Intact()) << size;
  }
}

TEST(BoundedCopy, EmptyText)
{
  GuardedBuffer buffer(1);
  EXPECT_TRUE(QX_strcpy(buffer.Data(), "", 1));
  EXPECT_EQ(buffer.Bytes(), std::string(1, '\0'));
  EXPECT_TRUE(buffer.Intact());
}

TEST(BoundedCopy, NullPointersAndSizeZeroWriteNothing)
{
  GuardedBuffer buffer(4);
  const std::string before = buffer.Bytes();
  EXPECT_FALSE(QX_strcpy(nullptr, "abc", 4));
  EXPECT_FALSE(QX_strcpy(buffer.Data(), nullptr, 4));
  EXPECT_FALSE(QX_strcpy(nullptr, nullptr, 0));
  EXPECT_FALSE(QX_strcpy(buffer.Data(), "abc", 0));
  EXPECT_EQ(buffer.Bytes(), before);
  EXPECT_TRUE(QX_strcpy(buffer.Data(), "abc", ULONG_MAX));
  EXPECT_EQ(buffer.Bytes(), std::string("abc\0", 4));
}

}  // namespace
