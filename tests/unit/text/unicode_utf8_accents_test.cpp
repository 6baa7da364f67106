// Accent removal in place on UTF-8, in a buffer and in a string object: all pairs and triples of bytes that matter, the
// ends of the text, long and random text.
#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <vector>

#include "qxpaf/text/encoding.h"
#include "qxpaf/text/unicode.h"
#include "reference/unicode_reference.h"
#include "support/random_seed.h"
#include "unit/text/encoding_text.h"
#include "unit/text/unicode_text.h"

namespace {

using encoding_test::Hex;
using unicode_test::Code;
using unicode_test::EdgeBuffer;
using unicode_test::RandomUnicode;

std::string InString(std::string s)
{
  Utf8RemoveAccentsMe(s);
  return s;
}

// The twin's text up to its terminator, and zeros up to the old one.
std::string ReferenceInBuffer(const std::string& text)
{
  const std::size_t length = std::strlen(text.c_str());
  std::vector<char> buffer(text.c_str(), text.c_str() + text.size() + 1);
  reference::Utf8RemoveAccentsInBuffer(buffer.data());
  std::string out = buffer.data();
  out.resize(length);
  return out + text.substr(length);
}

class Utf8RemoveAccents : public testing::Test
{
 protected:
  // Both forms against their twins; the text may hold zeros.
  testing::AssertionResult AsTheTwins(const std::string& text)
  {
    Utf8RemoveAccentsMe(edge_.Put(text));
    if (edge_.Whole() != ReferenceInBuffer(text))
      return testing::AssertionFailure() << "buffer: " << Hex(text) << "gives " << Hex(edge_.Whole());
    if (!edge_.Intact()) return testing::AssertionFailure() << "written in front of " << Hex(text);
    if (InString(text) != reference::Utf8RemoveAccents(text))
      return testing::AssertionFailure() << "string: " << Hex(text) << "gives " << Hex(InString(text));
    return testing::AssertionSuccess();
  }

  EdgeBuffer<char> edge_;
};

struct Row
{
  std::string text;
  std::string expected;
};

TEST_F(Utf8RemoveAccents, Rows)
{
  const Row rows[] = {
      {"", ""},
      {"plain 12/3", "plain 12/3"},
      {"\xC3\x87"
       "a va \xC3\xA0 Z\xC3\xBCrich",
       "Ca va a Zurich"},
      {"\xE1\xBB\x87", "e"},
      {"\xC3\x98\xC3\xB8", "Oo"},
      {"\xC3\x97\xC3\xB7", "\xC3\x97\xC3\xB7"},
      {"\xC3\x90\xC3\xB0", "\xC3\x90\xC3\xB0"},
      {"\xC4\xB0\xC4\xB1", "Ii"},
      {"\xC5\x89\xC5\xBF", "ns"},
      {"\xC7\xAF\xC7\xB0", "Uj"},
      {"\xC7\xAE", "\xC7\xAE"},
      {"\xC7\xA2\xC7\xBC\xC7\xA3\xC7\xBD", "\xC6\xC6\xE6\xE6"},
      {"\xE1\xBA\x9A\xE1\xBA\x9B\xE1\xBA\x9E", "as\xE1\xBA\x9E"},
      // A lead alone, at the end, before ASCII, before another lead.
      {"\xC3", "\xC3"},
      {"abc\xC3", "abc\xC3"},
      {"\xE1", "\xE1"},
      {"\xE1\xBB", "\xE1\xBB"},
      {"ab\xE1\xBB", "ab\xE1\xBB"},
      {"\xC3"
       "a",
       "\xC3"
       "a"},
      {"\xC3\xC3\xA9",
       "\xC3"
       "e"},
      {"\xE1\xC3\xA9",
       "\xE1"
       "e"},
      {"\xE1\xBB\xC3\xA9",
       "\xE1\xBB"
       "e"},
      {"\xE1\xE1\xBB\x87",
       "\xE1"
       "e"},
      // A replacement is passed: it starts no sequence with what follows it.
      {"\xC7\xA2\xA0", "\xC6\xA0"},
      {"\xC6\xC7\xA2\xA0", "\xC6\xC6\xA0"},
      {"\xC3\xA9\x81", "e\x81"},
      // What stays is taken byte by byte.
      {"\xC3\x97\xA9", "\xC3\x97\xA9"},
      {"\xC9\x90\xC3\xA9",
       "\xC9\x90"
       "e"},
      {"\xF0\xC3\xA9\x80\x80",
       "\xF0"
       "e\x80\x80"},
  };
  for (const Row& row : rows) {
    EXPECT_EQ(Hex(InString(row.text)), Hex(row.expected)) << Hex(row.text);
    Utf8RemoveAccentsMe(edge_.Put(row.text));
    EXPECT_EQ(Hex(std::string(edge_.Whole().c_str())), Hex(row.expected)) << Hex(row.text);
    EXPECT_TRUE(AsTheTwins(row.text));
  }
}

TEST_F(Utf8RemoveAccents, OnlyTheStringFormPassesZeros)
{
  const std::string text("\xC3\xA9\0\xC3\xA9\xC3", 6);
  EXPECT_EQ(InString(text), std::string("e\0e\xC3", 4));
  EXPECT_TRUE(AsTheTwins(text));
  EXPECT_TRUE(AsTheTwins(std::string("\xE1\0\xE1\xBB\0\xE1\xBB\x87", 8)));
}

TEST_F(Utf8RemoveAccents, EveryPairOfBytes)
{
  for (int b0 = 0; b0 < 256; ++b0)
    for (int b1 = 0; b1 < 256; ++b1) {
      const std::string pair = {static_cast<char>(b0), static_cast<char>(b1)};
      ASSERT_TRUE(AsTheTwins(pair));
      ASSERT_TRUE(AsTheTwins("x" + pair + "\xC3\xA9y"));
      ASSERT_TRUE(AsTheTwins("\xC3\xA9" + pair + "\x87z"));
    }
}

// Behind every lead that the second and third byte of a sequence of three could be taken with.
TEST_F(Utf8RemoveAccents, EveryTripleOfBytes)
{
  for (const int b0 : {0xC3, 0xC7, 0xC8, 0xE0, 0xE1, 0xE2})
    for (int b1 = 0; b1 < 256; ++b1)
      for (int b2 = 0; b2 < 256; ++b2) {
        const std::string triple = {static_cast<char>(b0), static_cast<char>(b1), static_cast<char>(b2)};
        ASSERT_TRUE(AsTheTwins(triple));
        ASSERT_TRUE(AsTheTwins("\xE1\xBA\xA0" + triple + "q"));
      }
}

// Through the encoder, so that what a character becomes is seen whole.
TEST_F(Utf8RemoveAccents, EveryCodePoint)
{
  for (wchar_t c = 1; c < 0x10000; ++c) {
    const std::string text = WideToUtf8(std::wstring(1, c));
    const char base = (c >= 0xC0 && c <= 0x23F) || (c >= 0x1E00 && c <= 0x1EFF) ? reference::Utf8Base(c) : '\0';
    ASSERT_EQ(InString(text), base != 0 ? std::string(1, base) : text) << Code(c);
  }
}

TEST_F(Utf8RemoveAccents, TextsWithoutAccentsAreNotWrittenTo)
{
  for (const char* text :
       {"", "12 Old Northern Rd, a line that is longer than a block", "\xC3\x97 \xD0\x9D\xE1\x83\x90 \xC3"}) {
    char* const s = edge_.Put(text);
    edge_.Protect();
    Utf8RemoveAccentsMe(s);
    edge_.Unprotect();
    EXPECT_STREQ(s, text);
  }
}

TEST_F(Utf8RemoveAccents, RandomText)
{
  RandomUnicode random(test_support::RandomSeed());
  for (int i = 0; i < 100'000; ++i) ASSERT_TRUE(AsTheTwins(random.Bytes()));
}

TEST_F(Utf8RemoveAccents, LongText)
{
  for (const char* part : {"\xC3\xA9", "\xE1\xBB\x87", "\xC3", "\xE1\xBB", "Rue de la R\xC3\xA9publique 14, ",
                           "H\xC3\xA0 N\xE1\xBB\x99i \xD0\x9D\xD0\xB5 ", "\xE1\xC3\xA9\xE1\xBB\x87\xC7\xA2"}) {
    std::string text;
    while (text.size() < 100'000) text += part;
    EXPECT_TRUE(AsTheTwins(text));
  }
}

}  // namespace
