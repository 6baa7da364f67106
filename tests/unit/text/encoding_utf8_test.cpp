// Whole strings from UTF-8 and to UTF-8.
#include <gtest/gtest.h>

#include <algorithm>
#include <climits>
#include <string>
#include <tuple>
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

struct WideRow
{
  std::string utf8;
  bool valid;
  std::wstring strict;  // what is read before the first invalid sequence
  std::wstring tolerant;
};

std::vector<WideRow> WideRows()
{
  return {
      {"", true, L"", L""},
      {"abc", true, L"abc", L"abc"},
      {"\xC3", false, L"", Wide({0xC3})},
      {"ab\xC3", false, L"ab", Wide({'a', 'b', 0xC3})},
      {"\xC0\xAF", true, L"/", L"/"},
      {"\xED\xA0\x80", true, Wide({0xD800}), Wide({0xD800})},
      {"\xE9x", false, L"", Wide({0xE9, 'x'})},
      {"Z\xC3\xBCrich \xE2\x82\xAC\xF0\x9F\x98\x80", true, Wide({'Z', 0xFC, 'r', 'i', 'c', 'h', ' ', 0x20AC, 0x1F600}),
       Wide({'Z', 0xFC, 'r', 'i', 'c', 'h', ' ', 0x20AC, 0x1F600})},
      // Above U+10FFFF the tolerant reader takes the four bytes one by one.
      {"a\xF4\x90\x80\x80z", false, L"a", Wide({'a', 0xF4, 0x90, 0x80, 0x80, 'z'})},
      {"\xF8\x88\xFF", false, L"", Wide({0xF8, 0x88, 0xFF})},
      {"\xF0\x9F\x98", false, L"", Wide({0xF0, 0x9F, 0x98})},
      // An overlong zero is a character, not the end.
      {"a\xC0\x80z", true, Wide({'a', 0, 'z'}), Wide({'a', 0, 'z'})},
      // Embedded zeros end the text.
      {std::string("ab\0\xFF", 4), true, L"ab", L"ab"},
  };
}

TEST(Utf8ToWide, StrictAndTolerantReaders)
{
  for (const WideRow& row : WideRows()) {
    const ExactText<char> text(row.utf8);
    std::wstring out = L"before";
    EXPECT_EQ(ReadUtf8String(out, text.Get()), row.valid) << Hex(row.utf8);
    EXPECT_EQ(Hex(out), Hex(row.strict)) << Hex(row.utf8);
    out = L"before";
    ReadUtf8StringTolerant(out, text.Get());
    EXPECT_EQ(Hex(out), Hex(row.tolerant)) << Hex(row.utf8);
    EXPECT_EQ(Hex(Utf8ToWide(row.utf8)), Hex(row.tolerant)) << Hex(row.utf8);
    EXPECT_EQ(Hex(FromUtf8IfWide<std::wstring>(row.utf8)), Hex(row.tolerant)) << Hex(row.utf8);
    EXPECT_EQ(FromUtf8IfWide<std::string>(row.utf8), row.utf8);
  }
}

TEST(Utf8ToWide, BoundedReading)
{
  struct Row
  {
    std::string utf8;
    unsigned long n;
    bool valid;
    std::wstring expected;
  };
  const std::string euros = "a\xE2\x82\xAC\xE2\x82\xAC";
  const Row rows[] = {
      {euros, 0, true, L""},
      {euros, 1, true, L"a"},
      // A sequence that starts before the bound is read whole.
      {euros, 2, true, Wide({'a', 0x20AC})},
      {euros, 3, true, Wide({'a', 0x20AC})},
      {euros, 4, true, Wide({'a', 0x20AC})},
      {euros, 5, true, Wide({'a', 0x20AC, 0x20AC})},
      {euros, 7, true, Wide({'a', 0x20AC, 0x20AC})},
      {euros, 8, true, Wide({'a', 0x20AC, 0x20AC})},
      {euros, ULONG_MAX, true, Wide({'a', 0x20AC, 0x20AC})},
      {"ab\xFF", 2, true, L"ab"},
      {"ab\xFF", 3, false, L"ab"},
      {"ab\xC3", 3, false, L"ab"},
      {std::string("a\0b", 3), 3, true, L"a"},
      {"", 5, true, L""},
  };
  for (const Row& row : rows) {
    const ExactText<char> text(row.utf8);
    std::wstring out = L"before";
    EXPECT_EQ(ReadUtf8String(out, text.Get(), row.n), row.valid) << Hex(row.utf8) << row.n;
    EXPECT_EQ(Hex(out), Hex(row.expected)) << Hex(row.utf8) << row.n;
  }
}

TEST(Utf8ToWide, BoundedReadingNeedsNoTerminator)
{
  const std::vector<char> bytes = {'a', '\xC3', '\xA9', 'b'};
  std::wstring wide;
  EXPECT_TRUE(ReadUtf8String(wide, bytes.data(), bytes.size()));
  EXPECT_EQ(Hex(wide), Hex(Wide({'a', 0xE9, 'b'})));
  std::string ansi;
  EXPECT_TRUE(ReadUtf8String(ansi, bytes.data(), bytes.size()));
  EXPECT_EQ(ansi,
            "a\xE9"
            "b");
}

TEST(Utf8ToUtf16, SurrogatePairsAndInvalidBytes)
{
  const std::tuple<std::string, bool, std::wstring, std::wstring> rows[] = {
      {"", true, L"", L""},
      {"\xF0\x9F\x98\x80", true, Wide({0xD83D, 0xDE00}), Wide({0xD83D, 0xDE00})},
      {"\xF0\x90\x80\x80", true, Wide({0xD800, 0xDC00}), Wide({0xD800, 0xDC00})},
      {"\xF4\x8F\xBF\xBF", true, Wide({0xDBFF, 0xDFFF}), Wide({0xDBFF, 0xDFFF})},
      {"\xEF\xBF\xBF", true, Wide({0xFFFF}), Wide({0xFFFF})},
      // Sign-extended, unlike the tolerant reader of whole code points.
      {"\xE9x", false, L"", Wide({-23, 'x'})},
      {"a\xFF", false, L"a", Wide({'a', -1})},
      {"\x80", false, L"", Wide({-128})},
      {"b\xF4\x90\x80\x80", false, L"b", Wide({'b', -12, -112, -128, -128})},
  };
  for (const auto& [utf8, valid, strict, tolerant] : rows) {
    const ExactText<char> text(utf8);
    std::wstring out = L"before";
    EXPECT_EQ(Utf8ToUtf16(out, text.Get(), false), valid) << Hex(utf8);
    EXPECT_EQ(Hex(out), Hex(strict)) << Hex(utf8);
    out = L"before";
    EXPECT_TRUE(Utf8ToUtf16(out, text.Get(), true)) << Hex(utf8);
    EXPECT_EQ(Hex(out), Hex(tolerant)) << Hex(utf8);
  }
}

TEST(Utf8ToUtf16, PairAtAnyPositionOfLongText)
{
  for (std::size_t before = 250; before < 260; ++before) {
    std::wstring out;
    EXPECT_TRUE(Utf8ToUtf16(out, (std::string(before, 'x') + "\xF0\x9F\x98\x80y").c_str(), false));
    EXPECT_EQ(Hex(out), Hex(std::wstring(before, L'x') + Wide({0xD83D, 0xDE00, 'y'})));
  }
}

TEST(Utf8ToAnsi, StrictAndTolerantReaders)
{
  const std::tuple<std::string, bool, std::string, std::string> rows[] = {
      {"", true, "", ""},
      {"Caf\xC3\xA9 \xE2\x82\xAC", true, "Caf\xE9 \x80", "Caf\xE9 \x80"},
      // No byte: U+0100, U+0081, U+1F600.
      {"a\xC4\x80z", false, "a", "a\x7Fz"},
      {"a\xC2\x81z", false, "a", "a\x7Fz"},
      {"a\xF0\x9F\x98\x80z", false, "a", "a\x7Fz"},
      // No sequence: the byte itself, then the next one.
      {"a\xE9z", false, "a", "a\xE9z"},
      {"\xC3", false, "", "\xC3"},
      {"a\xF4\x90\x80\x80z", false, "a", "a\xF4\x90\x80\x80z"},
      {"\xF0\x9F\x98", false, "", "\xF0\x9F\x98"},
      {"a\xC0\x80z", true, std::string("a\0z", 3), std::string("a\0z", 3)},
  };
  for (const auto& [utf8, valid, strict, tolerant] : rows) {
    const ExactText<char> text(utf8);
    std::string out = "before";
    EXPECT_EQ(ReadUtf8String(out, text.Get()), valid) << Hex(utf8);
    EXPECT_EQ(Hex(out), Hex(strict)) << Hex(utf8);
    out = "before";
    EXPECT_EQ(ReadUtf8String(out, text.Get(), utf8.size()), valid) << Hex(utf8);
    EXPECT_EQ(Hex(out), Hex(strict)) << Hex(utf8);
    out = "before";
    ReadUtf8StringTolerant(out, text.Get());
    EXPECT_EQ(Hex(out), Hex(tolerant)) << Hex(utf8);
  }
}

TEST(Utf8ToAnsi, BoundedReading)
{
  const ExactText<char> text("a\xC3\xA9\xC3");
  const std::tuple<unsigned long, bool, std::string> rows[] = {
      {0, true, ""}, {1, true, "a"}, {2, true, "a\xE9"}, {3, true, "a\xE9"}, {4, false, "a\xE9"}, {9, false, "a\xE9"}};
  for (const auto& [n, valid, expected] : rows) {
    std::string out = "before";
    EXPECT_EQ(ReadUtf8String(out, text.Get(), n), valid) << n;
    EXPECT_EQ(Hex(out), Hex(expected)) << n;
  }
}

// Every function that writes wide text as UTF-8 must give the same bytes.
void ExpectUtf8(const std::wstring& wide, const std::string& expected)
{
  const ExactText<wchar_t> text(wide);
  EXPECT_EQ(Hex(WideToUtf8(text.Get())), Hex(expected)) << Hex(wide);
  EXPECT_EQ(Hex(WideToUtf8(wide)), Hex(expected)) << Hex(wide);
  EXPECT_EQ(Hex(StringToUtf8(text.Get())), Hex(expected)) << Hex(wide);
  EXPECT_EQ(Hex(StringToUtf8(wide)), Hex(expected)) << Hex(wide);
  EXPECT_EQ(Hex(ToUtf8IfWide(text.Get())), Hex(expected)) << Hex(wide);
  EXPECT_EQ(Hex(ToUtf8IfWide(wide)), Hex(expected)) << Hex(wide);
  EXPECT_EQ(Hex(CharsetConvert(wide, CharsetUtf8, '?')), Hex(expected)) << Hex(wide);
  std::string narrow = "before";
  ToUtf8IfDestNotWide(narrow, wide);
  EXPECT_EQ(Hex(narrow), Hex(expected)) << Hex(wide);
  std::wstring copy = L"before";
  ToUtf8IfDestNotWide(copy, wide);
  EXPECT_EQ(copy, wide);
}

TEST(WideToUtf8, PairsLoneSurrogatesAndValuesOutsideUnicode)
{
  ExpectUtf8(L"", "");
  ExpectUtf8(L"abc", "abc");
  ExpectUtf8(Wide({0x7F, 0x80, 0x7FF, 0x800, 0xFFFF}), "\x7F\xC2\x80\xDF\xBF\xE0\xA0\x80\xEF\xBF\xBF");
  ExpectUtf8(Wide({0x10000, 0x10FFFF}), "\xF0\x90\x80\x80\xF4\x8F\xBF\xBF");
  ExpectUtf8(Wide({0xD83D, 0xDE00}), "\xF0\x9F\x98\x80");
  ExpectUtf8(Wide({0xDBFF, 0xDFFF}), "\xF4\x8F\xBF\xBF");
  ExpectUtf8(Wide({0xD800, 0xDC00}), "\xF0\x90\x80\x80");
  ExpectUtf8(Wide({0xD83D}), "\xED\xA0\xBD");
  ExpectUtf8(Wide({0xDE00, 0xD83D}), "\xED\xB8\x80\xED\xA0\xBD");
  ExpectUtf8(Wide({0xD83D, 0xD83D, 0xDE00}), "\xED\xA0\xBD\xF0\x9F\x98\x80");
  ExpectUtf8(Wide({0xD83D, 'x'}), "\xED\xA0\xBDx");
  ExpectUtf8(Wide({'a', 0x110000, -1, 0x7FFFFFFF, -2147483648, 'z'}), "az");
  ExpectUtf8(Wide({'a', 0, 'z'}), "a");
}

TEST(WideToUtf8, PairAcrossAnyPositionOfLongText)
{
  for (std::size_t before = 250; before < 260; ++before)
    ExpectUtf8(std::wstring(before, L'x') + Wide({0xD83D, 0xDE00, 'y'}),
               std::string(before, 'x') + "\xF0\x9F\x98\x80y");
}

TEST(WideToUtf8, ReservesForAsciiAndTheTerminator)
{
  for (const std::size_t n : {1U, 15U, 16U, 100U, 255U, 256U, 257U, 5000U}) {
    EXPECT_GE(WideToUtf8(std::wstring(n, L'x')).capacity(), n + 1) << n;
  }
}

TEST(WideToUtf8, ReservesNothingForWhatIsLeftOut)
{
  const std::string out = WideToUtf8(std::wstring(1000, static_cast<wchar_t>(0x110000)) + L"x");
  EXPECT_EQ(out, "x");
  EXPECT_LE(out.capacity(), 1002U);
}

TEST(ToUtf8IfWide, NarrowTextIsCopied)
{
  const std::string bytes("\xE9\0\xFFx", 4);
  EXPECT_EQ(ToUtf8IfWide(bytes), bytes);
  EXPECT_EQ(ToUtf8IfWide(bytes.c_str()), "\xE9");
}

TEST(ToUtf8IfDestNotWide, WideTextIsCopiedWithItsZeros)
{
  const std::wstring source = Wide({'a', 0, 0x110000});
  std::wstring out;
  ToUtf8IfDestNotWide(out, source);
  EXPECT_EQ(out, source);
}

TEST(Windows1252ToUtf8, EveryByteIncludingZero)
{
  std::string all;
  std::string expected;
  for (int byte = 0; byte < 256; ++byte) {
    all += static_cast<char>(byte);
    expected += reference::WideCharToUtf8(reference::AnsiToWideChar(byte));
  }
  EXPECT_EQ(Hex(Windows1252ToUtf8(all)), Hex(expected));
  EXPECT_EQ(Hex(StringToUtf8(all)), Hex(expected));
  const std::string behindZero = all.substr(1);
  EXPECT_EQ(Hex(StringToUtf8(behindZero.c_str())), Hex(expected.substr(1)));
}

TEST(Windows1252ToUtf8, Text)
{
  const std::tuple<std::string, std::string> rows[] = {
      {"", ""},
      {"plain", "plain"},
      {"\xE9", "\xC3\xA9"},
      {"\x80 10 \x96 20", "\xE2\x82\xAC 10 \xE2\x80\x93 20"},
      // Bytes that look like UTF-8 are converted all the same, and unassigned ones become controls.
      {"\xC3\xA9", "\xC3\x83\xC2\xA9"},
      {"\x81\x8D\x8F\x90\x9D", "\xC2\x81\xC2\x8D\xC2\x8F\xC2\x90\xC2\x9D"},
  };
  for (const auto& [ansi, utf8] : rows) EXPECT_EQ(Hex(Windows1252ToUtf8(ansi)), Hex(utf8)) << Hex(ansi);
}

struct InPlaceRow
{
  std::string text;
  std::size_t size;  // told to the function; the buffer is as large as that, or as the text where that is larger
  std::string expected;
};

// Worked out step by step from the placement rule. 0xA5 is what the buffer held before.
const InPlaceRow kInPlaceRows[] = {
    {"", 1, Bytes({0})},
    {"plain", 6, Bytes({'p', 'l', 'a', 'i', 'n', 0})},
    // One byte too few for the sequence.
    {"\xE9", 2, Bytes({0xE9, 0})},
    {"\x80", 3, Bytes({0x80, 0, 0xA5})},
    // C3 A9 first; then A9 is read again and gives C2 A9.
    {"\xE9", 3, Bytes({0xC2, 0xA9, 0})},
    // E2 82 AC first; then 82 is read again and gives E2 80 9A.
    {"\x80", 4, Bytes({0xE2, 0x80, 0x9A, 0})},
    // Written at the start, not in its place; the moved byte takes the terminator's place.
    {"x\xE9", 5, Bytes({0xC3, 0xA9, 0xE9, 0xA5, 0xA5})},
    // The room does not shrink: each of the bytes finds all of it.
    {"\xE9y\xE9", 5, Bytes({0xC2, 0xA9, 0xA9, 0x79, 0})},
    // A size below the text's: only what stays inside it is done.
    {"xyz\xE9", 2, Bytes({'x', 'y', 'z', 0xE9, 0})},
    {"xyz\xE9", 3, Bytes({0xC3, 0xA9, 'y', 0xE9, 0})},
    {"xyz\xE9", 0, Bytes({'x', 'y', 'z', 0xE9, 0})},
};

TEST(Windows1252ToUtf8InPlace, PlacementRule)
{
  for (const InPlaceRow& row : kInPlaceRows) {
    test_support::GuardedBuffer buffer(std::max(row.size, row.text.size() + 1));
    std::copy_n(row.text.c_str(), row.text.size() + 1, buffer.Data());
    EXPECT_TRUE(Windows1252ToUtf8(buffer.Data(), row.size));
    EXPECT_EQ(Hex(buffer.Bytes()), Hex(row.expected)) << Hex(row.text) << row.size;
    EXPECT_TRUE(buffer.Intact()) << Hex(row.text) << row.size;
  }
}

}  // namespace
