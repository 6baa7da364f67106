// Roman numerals and dates.
#include <gtest/gtest.h>

#include <climits>
#include <cstring>
#include <ostream>
#include <string>

#include "qxpaf/text/normalise.h"
#include "reference/normalise_reference.h"
#include "unit/text/encoding_text.h"
#include "unit/text/normalise_text.h"

namespace reference {

void PrintTo(const Date& date, std::ostream* out)
{
  *out << (date.valid ? "valid " : "invalid ") << date.year << '-' << date.month << '-' << date.day;
}

}  // namespace reference

namespace {

using encoding_test::ExactText;
using normalise_test::kTexts;
using normalise_test::RandomText;
using reference::Date;

int Roman(const std::string& text)
{
  return ReadRomanNumeral(ExactText<char>(text).Get());
}

struct RomanRow
{
  const char* text;
  int value;
};

TEST(RomanNumerals, Rows)
{
  const RomanRow rows[] = {
      {"MCMXCIV", 1994}, {"mcmxciv", 1994}, {"McMxCiV", 1994}, {"iiii", 0},
      {"IL", 0},         {"", 0},           {"i", 1},          {"IX", 9},
      {"xlix", 49},      {"MMMMM", 5000},   {"mmmmmi", 5001},  {"vv", 0},
      {"iv ", 0},        {" iv", 0},        {"ivx", 0},        {"cmd", 0},
      {"dcd", 0},        {"cccc", 0},       {"im", 0},         {"a", 0},
      {"\t", 0},         {"I\x0D", 0},      {"\xE9", 0},       {"mdccclxxxviii", 1888},
  };
  for (const RomanRow& row : rows) EXPECT_EQ(Roman(row.text), row.value) << row.text;
}

std::string AsRoman(int value)
{
  static const char* const kDigits[3][10] = {{"", "I", "II", "III", "IV", "V", "VI", "VII", "VIII", "IX"},
                                             {"", "X", "XX", "XXX", "XL", "L", "LX", "LXX", "LXXX", "XC"},
                                             {"", "C", "CC", "CCC", "CD", "D", "DC", "DCC", "DCCC", "CM"}};
  return std::string(static_cast<std::size_t>(value / 1000), 'M') + kDigits[2][value / 100 % 10] +
         kDigits[1][value / 10 % 10] + kDigits[0][value % 10];
}

TEST(RomanNumerals, EveryValue)
{
  for (int value = 1; value < 4000; ++value) {
    std::string text = AsRoman(value);
    EXPECT_EQ(Roman(text), value);
    for (char& c : text) c ^= 0x20;
    EXPECT_EQ(Roman(text), value);
  }
}

TEST(RomanNumerals, AllShortTexts)
{
  const std::string letters = "ivxlcdm";
  long numerals = 0;
  for (int length = 0; length <= 6; ++length) {
    long combinations = 1;
    for (int i = 0; i < length; ++i) combinations *= 7;
    for (long n = 0; n < combinations; ++n) {
      std::string text;
      for (long i = 0, rest = n; i < length; ++i, rest /= 7) text += letters[static_cast<std::size_t>(rest % 7)];
      const int value = Roman(text);
      ASSERT_EQ(value, reference::ReadRomanNumeral(text)) << text;
      if (value != 0) ++numerals;
    }
  }
  EXPECT_GT(numerals, 1000);
}

TEST(RomanNumerals, LikeReference)
{
  RandomText random;
  for (int i = 0; i < kTexts; ++i) {
    std::string text = random.Of({"m", "M", "c", "C", "d", "x", "X", "l", "i", "I", "v", "ix", "cm", "lxx", "dc"}, 7);
    if (random.Below(8) == 0) text += random.Bytes(2);
    ASSERT_EQ(Roman(text), reference::ReadRomanNumeral(text)) << text;
  }
}

TEST(RomanNumerals, ManyThousands)
{
  std::string text(100000, 'M');
  text += 'i';
  EXPECT_EQ(Roman(text), 100000001);
  EXPECT_EQ(Roman(std::string(2200000, 'm')), INT_MAX);
}

constexpr int kUntouched = -77;

Date ReadDate(const std::string& text)
{
  Date date = {false, kUntouched, kUntouched, kUntouched};
  date.valid = ReadDateDMY(ExactText<char>(text).Get(), date.year, date.month, date.day);
  return date;
}

struct DateRow
{
  const char* text;
  Date date;
};

TEST(Dates, Rows)
{
  const DateRow rows[] = {
      {"15 Mar 2024", {true, 2024, 3, 15}},
      {"15/3/24", {true, 2024, 3, 15}},
      {"March 15, 2024", {true, 2024, 3, 15}},
      {"15mar24", {true, 2024, 3, 15}},
      {"15 2024 MAR", {true, 2024, 3, 15}},
      {"3/24", {true, 2024, 3, 31}},
      {"Mar 2024", {true, 2024, 3, 31}},
      {"2024 marching", {true, 2024, 3, 31}},
      {"24", {true, 2024, 12, 31}},
      {"1999", {true, 1999, 12, 31}},
      {"99", {true, 2099, 12, 31}},
      {"100", {true, 100, 12, 31}},
      {"  (1)-(2)-(3)", {true, 2003, 2, 1}},
      {"99/99/9999", {true, 9999, 99, 99}},
      {"1 2 3 4", {true, 2003, 2, 1}},
      {"1 2 3 nonsense", {true, 2003, 2, 1}},
      {"1 2 Mar 4", {true, 2002, 3, 1}},
      {"-5", {true, 2005, 12, 31}},
      {"007", {true, 2007, 12, 31}},
      {"0/3/24", {false, kUntouched, 0, 31}},
      {"15/0/24", {false, kUntouched, 0, 31}},
      {"1/2/000", {false, kUntouched, 0, 31}},
      {"Mar Apr", {false, kUntouched, 3, 31}},
      {"1 Mar Apr", {false, kUntouched, 3, 31}},
      {"Mar", {false, kUntouched, 3, 31}},
      {"", {false, kUntouched, 0, 31}},
      {" -/ ", {false, kUntouched, 0, 31}},
      {"1 Xyz 2024", {false, kUntouched, 0, 31}},
      {"1 Ma 2024", {false, kUntouched, 0, 31}},
      {"1 Ma", {false, kUntouched, 0, 31}},
      {"M", {false, kUntouched, 0, 31}},
      {"1 M\xE4r 2024", {false, kUntouched, 0, 31}},
      {"1/1/99999999999", {true, INT_MAX, 1, 1}},
      {"1/1/99999999999999999999999999", {true, INT_MAX, 1, 1}},
      {"4294967296/1/1", {true, 2001, 1, INT_MAX}},
      {"1/1/2147483647", {true, INT_MAX, 1, 1}},
  };
  for (const DateRow& row : rows) EXPECT_EQ(ReadDate(row.text), row.date) << row.text;
}

TEST(Dates, EveryMonth)
{
  const char* const names[] = {"January", "February", "March",     "April",   "May",      "June",
                               "July",    "August",   "September", "October", "November", "December"};
  for (int month = 1; month <= 12; ++month) {
    const std::string name = names[month - 1];
    for (const std::size_t length : {std::size_t{3}, std::size_t{4}, name.size()}) {
      std::string text = name.substr(0, length);
      EXPECT_EQ(ReadDate("7 " + text + " 1980"), (Date{true, 1980, month, 7})) << text;
      for (char& c : text) c ^= 0x20;
      EXPECT_EQ(ReadDate("7 " + text + " 1980"), (Date{true, 1980, month, 7})) << text;
    }
  }
}

TEST(Dates, LikeReference)
{
  RandomText random;
  for (int i = 0; i < 2 * kTexts; ++i) {
    std::string text =
        random.Of({"1",   "15",  "3",   "24",  "2024", "0",   "99",  "100", "00",  "Jan",  "feb",
                   "MAR", "apr", "May", "JUN", "jul",  "Aug", "sep", "oct", "nov", "DEC",  "ch",
                   "x",   "ma",  " ",   "/",   "-",    ".",   ", ",  " ",   "/",   "\xE9", "21474836479"},
                  8);
    ASSERT_EQ(ReadDate(text), reference::ReadDateDMY(text, kUntouched)) << text;
  }
}

}  // namespace
