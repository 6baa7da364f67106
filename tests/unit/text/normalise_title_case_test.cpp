// Title case of single-byte text and of UTF-8.
#include <gtest/gtest.h>

#include <chrono>
#include <string>

#include "qxpaf/text/normalise.h"
#include "reference/normalise_reference.h"
#include "unit/text/normalise_text.h"

namespace {

using normalise_test::InPlace;
using normalise_test::kTexts;
using normalise_test::RandomText;

struct TitleRow
{
  const char* text;
  const char* result;
  const char* utf8;  // null where it is the same
};

constexpr TitleRow kRows[] = {
    {"", "", nullptr},
    {"JOHN MCDONALD", "John McDonald", nullptr},
    {"MACDONALD", "Macdonald", nullptr},
    {"mcdonald mc mcd", "McDonald Mc McD", nullptr},
    {"O'MCDONALD", "O'McDonald", nullptr},
    {"MC4TH", "Mc4th", nullptr},
    {"XMCDONALD", "Xmcdonald", nullptr},
    {"HENRY VIII", "Henry VIII", nullptr},
    {"VIII HENRY", "VIII Henry", "Viii Henry"},
    {"HENRY VIII,", "Henry VIII,", "Henry Viii,"},
    {"UNIT 4B", "Unit 4b", nullptr},
    {"4TH AVENUE", "4th Avenue", nullptr},
    {"LEVEL IV", "Level IV", nullptr},
    {"level xlix", "Level XLIX", nullptr},
    {"level l", "Level L", nullptr},    // 50, but a single letter keeps its capital
    {"level li", "Level Li", nullptr},  // 51
    {"level xl", "Level XL", nullptr},  // 40
    {"level iiii", "Level Iiii", nullptr},
    {"level xc", "Level Xc", nullptr},  // C is no letter of small numerals
    {"level lx", "Level Lx", nullptr},
    {"DI", "Di", nullptr},
    {"MIX", "Mix", nullptr},
    {"il", "Il", nullptr},
    {"iv", "IV", nullptr},
    {"iv-ix/xi.ii", "IV-IX/XI.II", "Iv-Ix/Xi.II"},
    {"4iv", "4iv", nullptr},
    {"DON'T", "Don't", nullptr},
    {"YOU'LL", "You'll", nullptr},
    {"O'BRIEN", "O'Brien", nullptr},
    {"D'ARCY", "D'Arcy", nullptr},
    {"'TIS", "'Tis", nullptr},
    {"JOHN'S", "John's", nullptr},
    {"JOHN'SX", "John'Sx", nullptr},
    {"WE'VE", "We've", nullptr},
    {"WE'RE", "We're", nullptr},
    {"WE'REX", "We'Rex", nullptr},
    {"YOU'LL'", "You'Ll'", nullptr},
    {"O'LL", "O'll", nullptr},
    {"O'RE", "O're", nullptr},
    {"O'REILLY", "O'Reilly", nullptr},
    {"O'VEAL", "O'Veal", nullptr},
    {"o'ra", "O'Ra", nullptr},
    {"ABC'12", "Abc'12", nullptr},
    {"ABC'1X", "Abc'1x", nullptr},
    {"A''B", "A''B", nullptr},
    {"AB''C", "Ab''C", nullptr},
    {"''", "''", nullptr},
    {"'", "'", nullptr},
    {"o'iv", "O'IV", nullptr},
    {"rock'n'roll", "Rock'N'Roll", nullptr},
    {"a_b-c.d", "A_B-C.D", nullptr},
    {"  two  blanks ", "  Two  Blanks ", nullptr},
};

TEST(TitleCased, Rows)
{
  for (const TitleRow& row : kRows) {
    EXPECT_EQ(InPlace(row.text, [](char* s) { EXPECT_EQ(TitleCase(s), s); }), row.result) << row.text;
    const char* const utf8 = row.utf8 != nullptr ? row.utf8 : row.result;
    EXPECT_EQ(InPlace(row.text, [](char* s) { EXPECT_EQ(TitleCaseUtf8(s), s); }), utf8) << row.text;
  }
}

TEST(TitleCased, OtherBytesEndWords)
{
  EXPECT_EQ(InPlace("x\xE9x", TitleCase), "X\xE9X");
  EXPECT_EQ(InPlace("iv\xC3\xA9iv", TitleCase), "IV\xC3\xA9IV");
}

struct Utf8Row
{
  const char* text;
  const char* result;
};

TEST(TitleCased, Utf8Rows)
{
  const Utf8Row rows[] = {
      {"ÉCOLE ÎLE-DE-BRÉHAT", "École Île-De-Bréhat"},
      {"οδός ΕΡΜΟΎ", "Οδός Ερμού"},
      {"O\u2019BRIEN DON\u2019T YOU\u2019LL", "O\u2019Brien Don\u2019t You\u2019ll"},
      {"É\u2019BRIEN", "É\u2019Brien"},  // one character before the apostrophe, two bytes
      {"ÉÉ'B", "Éé'b"},                  // two characters before it
      {"ÉÉ'ÉÉ", "Éé'Éé"},                // two word characters behind it
      {"ÉÉ'LLÉ ÉÉ'LL", "Éé'Llé Éé'll"},
      {"MCÉCOLE", "McÉcole"},
      {"ÉMC", "Émc"},
      {"straße ß", "Straße ß"},                // no upper case
      {"ıx ÿ ŸX", "ıx Ÿ Ÿx"},                  // I takes one byte instead of two
      {"\u2C65x \u023AX", "\u2C65x \u023Ax"},  // U+2C65 takes three bytes, its upper case U+023A two
      {"ſx KX", "ſx Kx"},                      // S takes one byte
      {"\u0664th 4TH", "\u0664th 4th"},        // a digit of another script
      {"東京 iv", "東京 IV"},
      {"iv\u3000", "Iv\u3000"},
      {"\xC9X", "\xC9x"},  // an invalid byte is the letter of its value, and keeps its case
      {"x\xE9y", "X\xE9y"},
      {"\xC1\x81X", "\xC1\x81x"},  // an overlong A, a letter that cannot change its length
      {"\xC3", "\xC3"},
      {"\xF0\x90\x90\xA8x", "\xF0\x90\x90\xA8X"},  // beyond the tables: no letter
      {"\xF4\x90\x80\x80x", "\xF4\x90\x80\x80X"},  // too large: four bytes, the first of them a letter
  };
  for (const Utf8Row& row : rows) EXPECT_EQ(InPlace(row.text, TitleCaseUtf8), row.result) << row.text;
}

TEST(TitleCased, LikeReference)
{
  RandomText random;
  for (int i = 0; i < 2 * kTexts; ++i) {
    const std::string text =
        i % 2 == 0
            ? random.Of({"M", "c", "C", "m", "I", "v", "X", "l", "L", "e", "R", "'", "'", "'", " ", "-", "4", "\xE9"},
                        14)
            : random.Address();
    ASSERT_EQ(InPlace(text, TitleCase), reference::TitleCase(text)) << text;
  }
}

TEST(TitleCased, Utf8LikeReference)
{
  RandomText random;
  for (int i = 0; i < 3 * kTexts; ++i) {
    const std::string text = i % 3 == 0   ? random.Of({"M",
                                                       "c",
                                                       "I",
                                                       "v",
                                                       "X",
                                                       "l",
                                                       "L",
                                                       "e",
                                                       "R",
                                                       "'",
                                                       "'",
                                                       "’",
                                                       " ",
                                                       "-",
                                                       "4",
                                                       "é",
                                                       "É",
                                                       "ß",
                                                       "ı",
                                                       "ⱥ",
                                                       "Ж",
                                                       "ж",
                                                       "٤",
                                                       "\xE9",
                                                       "\xC3",
                                                       "\x99",
                                                       "\xC1\x8D",
                                                       "\xC1\xA3",
                                                       "\xE2\x80",
                                                       "𐐨",
                                                       "ſ",
                                                       "ﬁ",
                                                       "ǆ",
                                                       "\u0345",
                                                       "\u05B0",
                                                       "\xC1\x89",
                                                       "\xF4\x90\x80\x80",
                                                       "\xC0\x80"},
                                                      14)
                             : i % 3 == 1 ? random.Address()
                                          : random.Bytes(24);
    ASSERT_EQ(InPlace(text, TitleCaseUtf8), reference::TitleCaseUtf8(text)) << text;
  }
}

TEST(TitleCased, LongLines)
{
  constexpr std::size_t kLength = 100000;
  for (const std::string part : {"x", "'", "iv ", "i", "a'", "a'll", "4", "mcd"}) {
    std::string text;
    while (text.size() < kLength) text += part;
    EXPECT_EQ(InPlace(text, TitleCase), reference::TitleCase(text)) << part;
    EXPECT_EQ(InPlace(text, TitleCaseUtf8), reference::TitleCaseUtf8(text)) << part;
  }
}

}  // namespace
