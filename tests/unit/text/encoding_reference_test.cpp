// Every whole-string function against the reference, on random text. QXPAF_TEST_SEED repeats a run.
#include "reference/encoding_reference.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <cwchar>
#include <string>
#include <utility>
#include <vector>

#include "qxpaf/text/encoding.h"
#include "support/guarded_buffer.h"
#include "support/random_seed.h"
#include "unit/text/encoding_text.h"
#include "unit/text/random_text.h"

namespace {

using encoding_test::ExactText;
using encoding_test::Hex;
using encoding_test::RandomText;
using test_support::GuardedBuffer;

constexpr int kTexts = 100000;

class EncodingReference : public testing::Test
{
 protected:
  // Calls check(text, ExactText of it) on many texts, each at some alignment, until one fails.
  template <class Check>
  void OnNarrow(Check check)
  {
    for (int i = 0; i < kTexts && !testing::Test::HasFailure(); ++i) {
      const std::string text = random_.Narrow();
      const ExactText<char> exact(text, random_.Below(65));
      check(text, exact.Get());
      if (testing::Test::HasFailure()) ADD_FAILURE() << "text: " << Hex(text);
    }
  }

  template <class Check>
  void OnWide(Check check)
  {
    for (int i = 0; i < kTexts && !testing::Test::HasFailure(); ++i) {
      const std::wstring text = random_.Wide();
      const ExactText<wchar_t> exact(text, random_.Below(17));
      check(text, exact.Get());
      if (testing::Test::HasFailure()) ADD_FAILURE() << "text: " << Hex(text);
    }
  }

  RandomText random_{test_support::RandomSeed()};
};

template <class String>
using Outcome = std::pair<bool, String>;

// The result and the string of a reader that is given one with something in it.
template <class String, class Read>
Outcome<String> Reading(Read read)
{
  String out(3, 'x');
  const bool result = read(out);
  return {result, out};
}

TEST_F(EncodingReference, ReadUtf8StringWide)
{
  OnNarrow([&](const std::string& text, const char* s) {
    const auto strict = [&](std::wstring& out) { return ReadUtf8String(out, s); };
    EXPECT_EQ(Reading<std::wstring>(strict), reference::ReadWide(text, text.size(), false));
    const unsigned long n = random_.Below(text.size() + 2);
    const auto bounded = [&](std::wstring& out) { return ReadUtf8String(out, s, n); };
    EXPECT_EQ(Reading<std::wstring>(bounded), reference::ReadWide(text, n, false)) << n;
  });
}

TEST_F(EncodingReference, ReadUtf8StringTolerantWide)
{
  OnNarrow([&](const std::string& text, const char* s) {
    const std::wstring expected = reference::ReadWide(text, text.size(), true).second;
    std::wstring out = L"before";
    ReadUtf8StringTolerant(out, s);
    EXPECT_EQ(out, expected);
    EXPECT_EQ(Utf8ToWide(text), expected);
  });
}

TEST_F(EncodingReference, ReadUtf8StringAnsi)
{
  OnNarrow([&](const std::string& text, const char* s) {
    const auto strict = [&](std::string& out) { return ReadUtf8String(out, s); };
    EXPECT_EQ(Reading<std::string>(strict), reference::ReadAnsi(text, text.size(), false));
    const unsigned long n = random_.Below(text.size() + 2);
    const auto bounded = [&](std::string& out) { return ReadUtf8String(out, s, n); };
    EXPECT_EQ(Reading<std::string>(bounded), reference::ReadAnsi(text, n, false)) << n;
  });
}

TEST_F(EncodingReference, ReadUtf8StringTolerantAnsi)
{
  OnNarrow([&](const std::string& text, const char* s) {
    std::string out = "before";
    ReadUtf8StringTolerant(out, s);
    EXPECT_EQ(out, reference::ReadAnsi(text, text.size(), true).second);
  });
}

TEST_F(EncodingReference, Utf8ToUtf16)
{
  OnNarrow([&](const std::string& text, const char* s) {
    for (const bool tolerant : {false, true}) {
      const auto read = [&](std::wstring& out) { return Utf8ToUtf16(out, s, tolerant); };
      EXPECT_EQ(Reading<std::wstring>(read), reference::Utf8ToUtf16(text, tolerant)) << tolerant;
    }
  });
}

TEST_F(EncodingReference, Stepping)
{
  OnNarrow([&](const std::string& text, const char* s) {
    std::wstring tolerant;
    for (const char* p = s; *p != '\0';) tolerant += static_cast<wchar_t>(NextUtf8Char(p));
    EXPECT_EQ(tolerant, reference::ReadWide(text, text.size(), true).second);
    EXPECT_EQ(Utf8Strlen(s), reference::Utf8Strlen(text));
    const bool startsInside = Utf8IsContinue(*s);
    std::size_t steps = 0;
    for (const char* p = s; Utf8Inc(p);) ++steps;
    EXPECT_EQ(steps, reference::Utf8Strlen(text) + startsInside);
  });
}

TEST_F(EncodingReference, Detection)
{
  OnNarrow([&](const std::string& text, const char* s) {
    const std::vector<char> buffer(text.begin(), text.end());
    const int ratio = static_cast<int>(random_.Below(6)) - 1;
    EXPECT_EQ(IsBufferUtf8(buffer.data(), buffer.size(), ratio), reference::IsBufferUtf8(text, ratio)) << ratio;
    EXPECT_EQ(IsStringUtf8(s, ratio), reference::IsStringUtf8(text, ratio)) << ratio;
    EXPECT_EQ(IsStringUtf8(text, ratio), reference::IsStringUtf8(text, 10)) << ratio;
  });
}

TEST_F(EncodingReference, FromAnsi)
{
  OnNarrow([&](const std::string& text, const char* s) {
    const std::string upToZero = reference::UpToZero(text);
    EXPECT_EQ(AnsiToWide(text), reference::AnsiToWide(text));
    EXPECT_EQ(AnsiToWide(s), reference::AnsiToWide(upToZero));
    EXPECT_EQ(AnsiToWide(s, text.size()), reference::AnsiToWide(text));
    EXPECT_EQ(Windows1252ToUtf8(text), reference::Windows1252ToUtf8(text));
    EXPECT_EQ(StringToUtf8(text), reference::Windows1252ToUtf8(text));
    EXPECT_EQ(StringToUtf8(s), reference::Windows1252ToUtf8(upToZero));
    EXPECT_EQ(UnicodeToUCS2LE(s), reference::Latin1ToUcs2(text, true));
    EXPECT_EQ(UnicodeToUCS2BE(s), reference::Latin1ToUcs2(text, false));
  });
}

TEST_F(EncodingReference, AnsiToStringC)
{
  OnNarrow([&](const std::string& text, const char* s) {
    const std::wstring expected = reference::AnsiToWide(reference::UpToZero(text));
    GuardedBuffer buffer((expected.size() + 1) * sizeof(wchar_t));
    AnsiToStringC(reinterpret_cast<wchar_t*>(buffer.Data()), s);
    EXPECT_EQ(std::memcmp(buffer.Data(), expected.c_str(), buffer.Size()), 0);
    EXPECT_TRUE(buffer.Intact());
  });
}

TEST_F(EncodingReference, Windows1252ToUtf8InPlace)
{
  OnNarrow([&](const std::string&, const char* s) {
    const std::size_t length = std::strlen(s);
    // Mostly enough room for a few sequences, now and then less than the text needs.
    const std::size_t size = random_.Below(10) == 0 ? random_.Below(length + 2) : length + 1 + random_.Below(12);
    GuardedBuffer buffer(std::max(size, length + 1));
    std::memcpy(buffer.Data(), s, length + 1);
    const std::string before = buffer.Bytes();
    const auto expected = reference::Windows1252ToUtf8InPlace({before.begin(), before.end()}, size);
    EXPECT_TRUE(Windows1252ToUtf8(buffer.Data(), size));
    EXPECT_EQ(Hex(buffer.Bytes()), Hex(std::string(expected.begin(), expected.end()))) << size;
    EXPECT_TRUE(buffer.Intact());
  });
}

TEST_F(EncodingReference, WideToUtf8)
{
  OnWide([&](const std::wstring& text, const wchar_t* s) {
    const std::string expected = reference::WideToUtf8(text);
    EXPECT_EQ(WideToUtf8(s), expected);
    EXPECT_EQ(WideToUtf8(text), expected);
    EXPECT_EQ(CharsetConvert(text, CharsetUtf8, '?'), expected);
  });
}

TEST_F(EncodingReference, WideToAnsi)
{
  OnWide([&](const std::wstring& text, const wchar_t* s) {
    const std::string expected = reference::WideToAnsi(text, '#');
    EXPECT_EQ(WideToAnsi(s, '#'), expected);
    EXPECT_EQ(WideToAnsi(text, '#'), expected);
    EXPECT_EQ(CharsetConvert(text, CharsetWindows1252, '#'), expected);
    EXPECT_EQ(CharsetConvert(text, CharsetLatin1, '#'), reference::WideToLatin1(text, '#'));
    EXPECT_EQ(UnicodeToUCS2LE(s), reference::WideToUcs2(text, true));
    EXPECT_EQ(UnicodeToUCS2BE(s), reference::WideToUcs2(text, false));
  });
}

TEST_F(EncodingReference, WideToAnsiStrict)
{
  OnWide([&](const std::wstring& text, const wchar_t* s) {
    const auto [convertible, prefix] = reference::WideToAnsiStrict(text);
    EXPECT_EQ(CanWideToAnsi(s), convertible);

    GuardedBuffer buffer(std::wcslen(s) + 1);
    EXPECT_EQ(WideToAnsi(buffer.Data(), s), convertible);
    std::string expected = convertible ? prefix + '\0' : prefix;
    expected.resize(buffer.Size(), GuardedBuffer::kFill);
    EXPECT_EQ(Hex(buffer.Bytes()), Hex(expected));
    EXPECT_TRUE(buffer.Intact());

    std::string whole = prefix;
    whole.resize(text.size());
    const auto convert = [&text = text](std::string& out) { return WideToAnsi(out, text); };
    EXPECT_EQ(Reading<std::string>(convert), Outcome<std::string>(convertible, whole));
  });
}

TEST_F(EncodingReference, Utf32ToUtf16)
{
  OnWide([&](const std::wstring& text, const wchar_t*) {
    std::vector<unsigned int> codePoints(text.begin(), text.end());
    codePoints.push_back(0);
    std::wstring out = L"before";
    Utf32ToUtf16(out, codePoints.data());
    EXPECT_EQ(out, reference::Utf32ToUtf16(codePoints));
  });
}

}  // namespace
