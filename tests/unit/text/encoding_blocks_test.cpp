// The conversions' work in blocks, on long runs of well-formed text with a rare disturbance: what random text seldom
// has. QXPAF_TEST_SEED repeats a run.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <random>
#include <string>
#include <vector>

#include "qxpaf/text/encoding.h"
#include "reference/encoding_reference.h"
#include "support/random_seed.h"
#include "text/ascii_run.h"
#include "text/utf8_count.h"
#include "text/utf8_encode_blocks.h"
#include "unit/text/encoding_text.h"

namespace {

using encoding_test::ExactText;
using encoding_test::Hex;

constexpr int kTexts = 60000;

class Blocks : public testing::Test
{
 protected:
  std::size_t Below(std::size_t limit) { return random_() % limit; }

  // Elements of one to four bytes in UTF-8, as a rule of one length.
  std::wstring Wide(std::size_t length)
  {
    static constexpr wchar_t kLast[] = {0x7F, 0x7FF, 0xD7FF, 0xFFFF, 0x10FFFF};
    const std::size_t usual = Below(3);
    std::wstring out;
    while (out.size() < length) {
      const wchar_t last = kLast[Below(16) == 0 ? Below(5) : Below(2) == 0 ? usual : 0];
      out += static_cast<wchar_t>(1 + Below(static_cast<std::size_t>(last)));
    }
    return out;
  }

  // Well-formed but for at most two bytes; it may end within a sequence.
  std::string NearlyUtf8()
  {
    std::string out = reference::WideToUtf8(Wide(Below(90)));
    if (!out.empty() && Below(3) == 0) out.pop_back();
    for (std::size_t i = Below(3); i > 0 && !out.empty(); --i)
      out[Below(out.size())] = static_cast<char>(1 + Below(0xFF));
    return out;
  }

  std::mt19937_64 random_{test_support::RandomSeed()};
};

TEST_F(Blocks, Utf8IsToldAsByTheReference)
{
  for (int i = 0; i < kTexts; ++i) {
    const std::string text = NearlyUtf8();
    const int ratio = static_cast<int>(1 + Below(8));
    const std::vector<char> exact(text.begin(), text.end());
    const ExactText<char> terminated(text, Below(16));
    ASSERT_EQ(IsBufferUtf8(exact.data(), exact.size(), ratio), reference::IsBufferUtf8(text, ratio)) << Hex(text);
    ASSERT_EQ(IsStringUtf8(terminated.Get(), ratio), reference::IsStringUtf8(text, ratio)) << Hex(text);
  }
}

TEST_F(Blocks, ReadingAndWritingAsByTheReference)
{
  for (int i = 0; i < kTexts; ++i) {
    const std::string text = NearlyUtf8();
    ASSERT_EQ(Hex(Utf8ToWide(text)), Hex(reference::ReadWide(text, text.size(), true).second)) << Hex(text);
    const std::wstring wide = Wide(Below(60));
    const ExactText<wchar_t> exact(wide, Below(4));
    ASSERT_EQ(Hex(WideToUtf8(exact.Get())), Hex(reference::WideToUtf8(wide))) << Hex(wide);
    ASSERT_EQ(Hex(WideToAnsi(exact.Get(), '?')), Hex(reference::WideToAnsi(wide, '?'))) << Hex(wide);
  }
}

// Text that begins with a long stretch of ASCII is not measured before it is converted.
TEST_F(Blocks, LongTextIsWrittenWhole)
{
  for (int i = 0; i < 2000; ++i) {
    const std::wstring text = std::wstring(Below(700), L'x') + Wide(Below(900));
    ASSERT_EQ(WideToUtf8(text), reference::WideToUtf8(text)) << Hex(text);
    const std::wstring cut = text + L'\0' + text;
    ASSERT_EQ(WideToUtf8(cut), reference::WideToUtf8(text)) << Hex(text);
  }
}

TEST_F(Blocks, EncodedBlocksAreThoseOfTheReference)
{
  for (int i = 0; i < kTexts; ++i) {
    const std::wstring text = Wide(Below(60));
    const std::vector<wchar_t> exact(text.begin(), text.end());
    std::vector<char> out(4 * text.size() + 16, '\xA5');
    const wchar_t* p = exact.data();
    const char* const end = qxpaf::EncodeBlocks(p, exact.data() + exact.size(), out.data());
    const std::wstring taken(exact.data(), static_cast<std::size_t>(p - exact.data()));
    ASSERT_EQ(std::string(out.data(), static_cast<std::size_t>(end - out.data())), reference::WideToUtf8(taken))
        << Hex(text);
  }
}

TEST_F(Blocks, CharactersAreCountedAtAnyLength)
{
  for (std::size_t length = 0; length < 1200; ++length) {
    std::vector<char> text(length);
    for (char& byte : text) byte = static_cast<char>(Below(0x100));
    const auto expected = std::count_if(text.begin(), text.end(), [](char c) { return (c & 0xC0) != 0x80; });
    ASSERT_EQ(qxpaf::CountUtf8Characters(text.data(), length), static_cast<std::size_t>(expected)) << length;
  }
  // More continuation bytes than a byte can count in any lane.
  const std::vector<char> continuations(100001, '\x80');
  EXPECT_EQ(qxpaf::CountUtf8Characters(continuations.data(), continuations.size()), 0U);
}

// Every byte value at every place of a block, and wide elements around the bounds of a byte.
TEST(Latin1Runs, TakeWhatIsTheSameOnBothSides)
{
  constexpr std::size_t kLength = 37;
  for (std::size_t at = 0; at < kLength; ++at) {
    for (const int value : {0x00, 0x7F, 0x80, 0x81, 0x9F, 0xA0, 0xE9, 0xFF}) {
      std::string narrow(kLength, '\xE9');
      narrow[at] = static_cast<char>(value);
      EXPECT_EQ(Hex(AnsiToWide(narrow)), Hex(reference::AnsiToWide(narrow)));
    }
    for (const wchar_t value : {0x7F, 0x80, 0x81, 0x9F, 0xA0, 0xFF, 0x100, 0x152, 0x20AC, 0xFFFF, 0x100E9, -1, -128}) {
      std::wstring wide(kLength, L'\xE9');
      wide[at] = value;
      EXPECT_EQ(Hex(WideToAnsi(wide, '?')), Hex(reference::WideToAnsi(wide, '?')));
    }
  }
}

}  // namespace
