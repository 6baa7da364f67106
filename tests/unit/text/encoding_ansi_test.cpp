// Whole strings between wide text and Windows-1252, and the overloads that take any text.
#include <gtest/gtest.h>

#include <algorithm>
#include <cwchar>
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
using test_support::GuardedBuffer;

struct NarrowingRow
{
  std::wstring wide;
  bool convertible;
  std::string ansi;    // with '?' for characters without a byte
  std::string prefix;  // before the first of them
};

std::vector<NarrowingRow> NarrowingRows()
{
  return {
      {L"", true, "", ""},
      {L"abc", true, "abc", "abc"},
      {Wide({0x20AC, 'x', 0x100}), false, "\x80x?", "\x80x"},
      {Wide({0x81}), false, "?", ""},
      {Wide({0xE9, 0xA0, 0xFF, 0x178}), true, "\xE9\xA0\xFF\x9F", "\xE9\xA0\xFF\x9F"},
      {Wide({0x100, 0x101, 'z'}), false, "??z", ""},
      {Wide({-1, -23}), true, "\xFF\xE9", "\xFF\xE9"},
      {Wide({'a', 0xD83D, 0xDE00}), false, "a??", "a"},
      // A value whose low byte is zero is a zero byte in the middle.
      {Wide({'a', -256, 'b'}), true, std::string("a\0b", 3), std::string("a\0b", 3)},
      {Wide({'a', 0, 0x100}), true, "a", "a"},
  };
}

TEST(WideToAnsi, ReplacingForms)
{
  for (const NarrowingRow& row : NarrowingRows()) {
    const ExactText<wchar_t> text(row.wide);
    EXPECT_EQ(Hex(WideToAnsi(text.Get(), '?')), Hex(row.ansi)) << Hex(row.wide);
    EXPECT_EQ(Hex(WideToAnsi(row.wide, '?')), Hex(row.ansi)) << Hex(row.wide);
    EXPECT_EQ(Hex(StringToAnsi(text.Get(), '?')), Hex(row.ansi)) << Hex(row.wide);
    EXPECT_EQ(Hex(StringToAnsi(row.wide, '?')), Hex(row.ansi)) << Hex(row.wide);
    EXPECT_EQ(Hex(CharsetConvert(row.wide, CharsetWindows1252, '?')), Hex(row.ansi)) << Hex(row.wide);
    EXPECT_EQ(Hex(ConvertFromWide(row.wide, CharWideToAnsi, '?')), Hex(row.ansi)) << Hex(row.wide);
    EXPECT_EQ(CanWideToAnsi(text.Get()), row.convertible) << Hex(row.wide);
  }
}

TEST(WideToAnsi, AnyByteMayReplace)
{
  for (const int replacement : {0, 0x7F, 0x80, 0xFF})
    EXPECT_EQ(WideToAnsi(Wide({'a', 0x100, 'b'}), static_cast<char>(replacement)), Bytes({'a', replacement, 'b'}));
}

template <class Convert>
void ExpectStrictIntoBuffer(const NarrowingRow& row, Convert convert)
{
  const ExactText<wchar_t> text(row.wide);
  GuardedBuffer buffer(std::wcslen(text.Get()) + 1);
  EXPECT_EQ(convert(buffer.Data(), text.Get()), row.convertible) << Hex(row.wide);
  std::string expected = row.convertible ? row.prefix + '\0' : row.prefix;
  // Nothing is written from the failure on.
  expected.resize(buffer.Size(), GuardedBuffer::kFill);
  EXPECT_EQ(Hex(buffer.Bytes()), Hex(expected)) << Hex(row.wide);
  EXPECT_TRUE(buffer.Intact()) << Hex(row.wide);
}

TEST(WideToAnsi, IntoABuffer)
{
  for (const NarrowingRow& row : NarrowingRows()) {
    ExpectStrictIntoBuffer(row, [](char* dst, const wchar_t* src) { return WideToAnsi(dst, src); });
    ExpectStrictIntoBuffer(row, [](char* dst, const wchar_t* src) { return StringToAnsi(dst, src); });
  }
}

TEST(WideToAnsi, IntoABufferAtAllLengthsAndFailurePoints)
{
  for (std::size_t length = 0; length <= 70; ++length) {
    const std::wstring ascii(length, L'x');
    const std::string expected(length, 'x');
    ExpectStrictIntoBuffer({ascii, true, expected, expected},
                           [](char* dst, const wchar_t* src) { return WideToAnsi(dst, src); });
    for (std::size_t failure = 0; failure < length; ++failure) {
      std::wstring text = ascii;
      text[failure] = 0x81;
      ExpectStrictIntoBuffer({text, false, "", expected.substr(0, failure)},
                             [](char* dst, const wchar_t* src) { return WideToAnsi(dst, src); });
    }
  }
}

TEST(WideToAnsi, InPlace)
{
  for (std::size_t length = 0; length <= 70; ++length) {
    std::vector<wchar_t> text(length + 1);
    std::string expected;
    for (std::size_t i = 0; i < length; ++i) {
      expected += static_cast<char>('0' + i);
      text[i] = static_cast<wchar_t>('0' + i);
    }
    char* const bytes = reinterpret_cast<char*>(text.data());
    ASSERT_TRUE(WideToAnsi(bytes, text.data()));
    ASSERT_EQ(std::string(bytes), expected);
  }
}

TEST(WideToAnsi, IntoAString)
{
  for (const NarrowingRow& row : NarrowingRows()) {
    std::string expected = row.prefix;
    expected.resize(row.wide.size());
    for (const std::string& before : {std::string(), std::string("before"), std::string(100, '\xEE')}) {
      std::string out = before;
      EXPECT_EQ(WideToAnsi(out, row.wide), row.convertible) << Hex(row.wide);
      EXPECT_EQ(Hex(out), Hex(expected)) << Hex(row.wide);
      out = before;
      EXPECT_EQ(StringToAnsi(out, row.wide), row.convertible) << Hex(row.wide);
      EXPECT_EQ(Hex(out), Hex(expected)) << Hex(row.wide);
    }
  }
}

TEST(StringToAnsi, NarrowTextIsCopied)
{
  const std::string bytes("\xE9\0\x81", 3);
  EXPECT_EQ(StringToAnsi(bytes, '?'), bytes);
  EXPECT_EQ(StringToAnsi(bytes.c_str(), '?'), "\xE9");
  std::string out = "before";
  EXPECT_TRUE(StringToAnsi(out, bytes));
  EXPECT_EQ(out, bytes);
  for (const std::string& text : {std::string(), std::string("abc\xE9")}) {
    GuardedBuffer buffer(text.size() + 1);
    EXPECT_TRUE(StringToAnsi(buffer.Data(), text.c_str()));
    EXPECT_EQ(buffer.Bytes(), text + '\0');
    EXPECT_TRUE(buffer.Intact());
  }
}

std::string AllBytes()
{
  std::string all;
  for (int byte = 0; byte < 256; ++byte) all += static_cast<char>(byte);
  return all;
}

// Every function that widens n bytes must give the same elements.
void ExpectWidened(const std::string& ansi, const std::wstring& expected)
{
  const std::vector<char> exact(ansi.begin(), ansi.end());
  EXPECT_EQ(Hex(AnsiToWide(exact.data(), exact.size())), Hex(expected)) << Hex(ansi);
  EXPECT_EQ(Hex(AnsiToWide(ansi)), Hex(expected)) << Hex(ansi);
  EXPECT_EQ(Hex(StringToWide(ansi)), Hex(expected)) << Hex(ansi);
  std::wstring out = L"before";
  AnsiToString(out, exact.data(), exact.size());
  EXPECT_EQ(Hex(out), Hex(expected)) << Hex(ansi);
  std::string copy = "before";
  AnsiToString(copy, exact.data(), exact.size());
  EXPECT_EQ(copy, ansi);
}

TEST(AnsiToWide, ExactlyNBytes)
{
  ExpectWidened("", L"");
  ExpectWidened("abc", L"abc");
  ExpectWidened(std::string("a\0\x80\x81", 4), Wide({'a', 0, 0x20AC, 0x81}));
  ExpectWidened(AllBytes(), reference::AnsiToWide(AllBytes()));
  for (std::size_t length = 0; length < 80; ++length)
    ExpectWidened(std::string(length, 'x'), std::wstring(length, L'x'));
  EXPECT_EQ(AnsiToWide("abcdef", 3), L"abc");
}

TEST(AnsiToWide, ReservesForTheTerminator)
{
  for (const std::size_t n : {1U, 3U, 4U, 45U, 255U, 256U, 257U, 5000U})
    EXPECT_GE(AnsiToWide(std::string(n, '\x80')).capacity(), n + 1) << n;
}

// Every function that widens up to the terminator must give the same elements.
void ExpectTerminatedWidened(const std::string& ansi, const std::wstring& expected)
{
  const ExactText<char> text(ansi);
  EXPECT_EQ(Hex(AnsiToWide(text.Get())), Hex(expected)) << Hex(ansi);
  std::wstring out = L"before";
  AnsiToString(out, text.Get());
  EXPECT_EQ(Hex(out), Hex(expected)) << Hex(ansi);
  std::string copy = "before";
  AnsiToString(copy, text.Get());
  EXPECT_EQ(copy, text.Get());
}

TEST(AnsiToWide, UpToTheTerminator)
{
  ExpectTerminatedWidened("", L"");
  ExpectTerminatedWidened("a\x80\x81", Wide({'a', 0x20AC, 0x81}));
  ExpectTerminatedWidened(std::string("a\0b", 3), L"a");
  ExpectTerminatedWidened(AllBytes().substr(1), reference::AnsiToWide(AllBytes().substr(1)));
}

TEST(StringToWide, WideTextIsCopied)
{
  const std::wstring wide = Wide({'a', 0, -1, 0x110000});
  EXPECT_EQ(StringToWide(wide), wide);
}

TEST(AnsiToStringC, WritesTextAndTerminatorOnly)
{
  for (std::size_t length = 0; length <= 70; ++length) {
    const std::string ansi = AllBytes().substr(0x60, length);
    const std::wstring wide = reference::AnsiToWide(ansi);
    const ExactText<char> text(ansi);

    GuardedBuffer wideBuffer((length + 1) * sizeof(wchar_t));
    AnsiToStringC(reinterpret_cast<wchar_t*>(wideBuffer.Data()), text.Get());
    EXPECT_EQ(std::wcscmp(reinterpret_cast<wchar_t*>(wideBuffer.Data()), wide.c_str()), 0) << length;
    EXPECT_TRUE(wideBuffer.Intact()) << length;

    GuardedBuffer narrowBuffer(length + 1);
    AnsiToStringC(narrowBuffer.Data(), text.Get());
    EXPECT_EQ(narrowBuffer.Bytes(), ansi + '\0') << length;
    EXPECT_TRUE(narrowBuffer.Intact()) << length;
  }
}

}  // namespace
