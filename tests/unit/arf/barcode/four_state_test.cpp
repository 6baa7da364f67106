// Whole barcodes: formats, lengths, encodings, refusals.
#include "arf/barcode/four_state.h"

#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

#include "support/random_seed.h"
#include "unit/arf/barcode/plain_four_state.h"

namespace arf {

void PrintTo(FourStateFault fault, std::ostream* out)
{
  *out << "fault " << static_cast<int>(fault);
}

}  // namespace arf

namespace {

using arf::CustomerEncoding;
using arf::FourStateFault;
using arf::FourStateRequest;

constexpr auto kAuto = CustomerEncoding::Automatic;
constexpr auto kN = CustomerEncoding::Numeric;
constexpr auto kC = CustomerEncoding::Text;

struct Outcome
{
  FourStateFault fault;
  std::string bars;
  friend bool operator==(const Outcome&, const Outcome&) = default;
};

void PrintTo(const Outcome& outcome, std::ostream* out)
{
  *out << static_cast<int>(outcome.fault) << ' ' << outcome.bars;
}

Outcome Encode(const FourStateRequest& request)
{
  arf::FourStateBars bars;
  const FourStateFault fault = arf::EncodeFourState(request, bars);
  return {fault, std::string(bars.View())};
}

Outcome Made(const std::string& bars)
{
  return {FourStateFault::None, bars};
}

/** One barcode field by field. */
TEST(FourState, WorkedExample)
{
  const std::string start = "13", format = "0101", dpid = "1000000000000001", filler = "3", stop = "13";
  const std::string whole = Encode({"30000001"}).bars;
  ASSERT_EQ(whole.size(), 37U);
  EXPECT_EQ(whole.substr(0, 23), start + format + dpid + filler);
  EXPECT_EQ(whole.substr(35), stop);
  // The symbols 010 110 000 000 000 000 013 leave the remainder 42 55 37 16.
  const std::vector<unsigned> symbols = {4, 20, 0, 0, 0, 0, 7};
  EXPECT_EQ(arf_test::PlainRemainder(symbols), (std::vector<unsigned>{42, 55, 37, 16}));
  EXPECT_EQ(whole.substr(23, 12), "222313211100");
}

struct FormatRow
{
  const char* code;
  std::size_t bars;
  std::size_t digits;
  std::size_t characters;
};
constexpr FormatRow kFormats[] = {{"11", 37, 0, 0},   {"45", 37, 0, 0}, {"59", 52, 8, 5},
                                  {"62", 67, 15, 10}, {"87", 37, 0, 0}, {"92", 37, 0, 0}};

TEST(FourState, Formats)
{
  ASSERT_EQ(arf::FourStateFormats().size(), std::size(kFormats));
  for (const FormatRow& row : kFormats) {
    const arf::FourStateFormat* format = arf::FindFourStateFormat(row.code);
    ASSERT_NE(format, nullptr) << row.code;
    EXPECT_EQ(format->bars, row.bars);
    EXPECT_EQ(format->customerDigits, row.digits);
    EXPECT_EQ(format->customerCharacters, row.characters);
    EXPECT_FALSE(format->name.empty());
    for (const std::string dpid : {"00000000", "00000001", "41234567", "99999999"})
      EXPECT_EQ(Encode({dpid, row.code}), Made(arf_test::PlainFourState(row.code, dpid, "", true)));
  }
  for (int code = 0; code < 100; ++code) {
    const std::string text = {static_cast<char>('0' + code / 10), static_cast<char>('0' + code % 10)};
    const auto isIt = [&](const FormatRow& row) { return text == row.code; };
    const bool isKnown = std::any_of(std::begin(kFormats), std::end(kFormats), isIt);
    EXPECT_EQ(Encode({"30000001", text}).fault, isKnown ? FourStateFault::None : FourStateFault::Format) << text;
  }
}

TEST(FourState, StandardIsTheDefault)
{
  EXPECT_EQ(Encode({"30000001"}), Encode({"30000001", "11"}));
}

TEST(FourState, ShortIdentifiersGetLeadingZeros)
{
  const std::string digits = "87654321";
  for (std::size_t length = 1; length <= 8; ++length) {
    const std::string dpid = digits.substr(0, length);
    EXPECT_EQ(Encode({dpid}), Encode({std::string(8 - length, '0') + dpid})) << dpid;
  }
}

TEST(FourState, BadIdentifiers)
{
  for (const std::string dpid :
       {"", "123456789", "1234567a", "1234 678", "-1234567", "12345678 ", "\xB2", "1234567\xE9", "0x123456"})
    EXPECT_EQ(Encode({dpid}), (Outcome{FourStateFault::Dpid, ""})) << dpid;
  EXPECT_EQ(Encode({std::string("1234567\0", 8)}), (Outcome{FourStateFault::Dpid, ""}));
}

TEST(FourState, BadFormats)
{
  for (const std::string format : {"", "1", "111", "52", "67", "00", "5", "9 ", "NN", "\xFF\xFF"})
    EXPECT_EQ(Encode({"30000001", format}), (Outcome{FourStateFault::Format, ""})) << format;
}

/** Customer information of every length around the limits of every format. */
TEST(FourState, LengthsOfCustomerInformation)
{
  for (const FormatRow& row : kFormats)
    for (std::size_t length = 0; length <= 20; ++length)
      for (const bool numeric : {false, true}) {
        const std::string text = std::string("98765432109876543210").substr(0, length);
        const std::size_t room = numeric ? row.digits : row.characters;
        const FourStateFault fault = length == 0     ? FourStateFault::None
                                     : room == 0     ? FourStateFault::CustomerNotTaken
                                     : length > room ? FourStateFault::CustomerTooLong
                                                     : FourStateFault::None;
        const std::string bars =
            fault == FourStateFault::None ? arf_test::PlainFourState(row.code, "30000001", text, numeric) : "";
        EXPECT_EQ(Encode({"30000001", row.code, text, numeric ? kN : kC}), (Outcome{fault, bars}))
            << row.code << ' ' << length << ' ' << numeric;
      }
}

TEST(FourState, EveryCharacterInEveryPlace)
{
  for (const auto& [character, bars] : arf_test::PlainTextTable())
    for (const auto& [format, room] : {std::pair{"59", 5U}, std::pair{"62", 10U}})
      for (std::size_t place = 0; place < room; ++place) {
        std::string text(room, 'x');
        text[place] = character;
        const std::string made = Encode({"30000001", format, text, kC}).bars;
        ASSERT_EQ(made, arf_test::PlainFourState(format, "30000001", text, false)) << text;
        EXPECT_EQ(made.substr(22 + 3 * place, 3), bars) << character;
      }
}

TEST(FourState, CharactersThatCannotBeWritten)
{
  for (int value = 0; value < 256; ++value) {
    const std::string text = {'A', static_cast<char>(value), 'B'};
    const bool isThere = arf_test::PlainTextTable().contains(text[1]);
    const FourStateFault expected = isThere ? FourStateFault::None : FourStateFault::CustomerCharacter;
    EXPECT_EQ(Encode({"30000001", "59", text, kC}).fault, expected) << value;
    EXPECT_EQ(Encode({"30000001", "59", text, kAuto}).fault, expected) << value;
    EXPECT_EQ(Encode({"30000001", "59", text, kN}).fault, FourStateFault::CustomerCharacter) << value;
  }
}

/** Digits alone are written in table N where nobody says otherwise, everything else in C. */
TEST(FourState, AutomaticEncoding)
{
  struct Row
  {
    const char* format;
    const char* customer;
    CustomerEncoding same;
  };
  const Row rows[] = {
      {"59", "1", kN},         {"59", "12345", kN}, {"59", "12345678", kN},        {"59", "1234A", kC},
      {"59", " 123", kC},      {"59", "#", kC},     {"62", "123456789012345", kN}, {"62", "1234567890", kN},
      {"62", "12345678x", kC}, {"62", "", kN}};
  for (const Row& row : rows) {
    EXPECT_EQ(Encode({"30000001", row.format, row.customer}), Encode({"30000001", row.format, row.customer, row.same}))
        << row.customer;
    EXPECT_EQ(arf::IsNumeric({"30000001", row.format, row.customer}), row.same == kN) << row.customer;
  }
  EXPECT_NE(Encode({"30000001", "59", "12345", kN}).bars, Encode({"30000001", "59", "12345", kC}).bars);
  EXPECT_EQ(Encode({"30000001", "59", "123456789"}).fault, FourStateFault::CustomerTooLong);
  EXPECT_EQ(Encode({"30000001", "59", "12345x"}).fault, FourStateFault::CustomerTooLong);
}

TEST(FourState, Descriptions)
{
  struct Row
  {
    FourStateRequest request;
    const char* text;
  };
  const Row rows[] = {
      {{"12x"}, "\"12x\" is no DPID: a DPID is a number of up to eight digits."},
      {{"1", "12"}, "\"12\" is no format control code: 11, 45, 59, 62, 87, 92 are."},
      {{"1", "45", "A"}, "Format 45 carries no customer information; 59 and 62 do."},
      {{"1", "59", "ABCDEF"},
       "The customer information \"ABCDEF\" is too long: format 59 carries up to 5 characters, or 8 digits in the "
       "numeric encoding."},
      {{"1", "62", "ABCDEFGHIJK"},
       "The customer information \"ABCDEFGHIJK\" is too long: format 62 carries up to 10 characters, or 15 digits in "
       "the numeric encoding."},
      {{"1", "62", "AB-C"}, "\"-\" cannot be encoded: customer information consists of letters, digits, spaces and #."},
      {{"1", "62", "caf\xC3\xA9"},
       "\"caf\xC3\xA9\" cannot be encoded: customer information consists of letters, digits, spaces and #."},
      {{"1", "62", "12A", kN}, "\"A\" cannot be encoded: the numeric encoding has digits only."},
      {{"1", "62", "12 ", kN}, "\"12 \" cannot be encoded: the numeric encoding has digits only."},
      {{"1"}, ""},
  };
  for (const Row& row : rows) {
    char out[256] = "";
    arf::BoundedText text(out, sizeof out);
    arf::DescribeFault(Encode(row.request).fault, row.request, text);
    EXPECT_STREQ(out, row.text);
  }
}

std::string RandomText(std::mt19937& random, const std::map<char, std::string>& table, std::size_t length)
{
  std::string text;
  while (text.size() < length) {
    const auto place = std::uniform_int_distribution<std::size_t>(0, table.size() - 1)(random);
    text += std::next(table.begin(), static_cast<std::ptrdiff_t>(place))->first;
  }
  return text;
}

TEST(FourState, RandomRequests)
{
  std::mt19937 random(test_support::RandomSeed());
  for (int i = 0; i < 20'000; ++i) {
    const FormatRow& format = kFormats[random() % std::size(kFormats)];
    const bool numeric = random() % 2 == 0;
    const std::size_t room = numeric ? format.digits : format.characters;
    const std::string dpid = RandomText(random, arf_test::PlainNumericTable(), 8);
    const std::string customer =
        RandomText(random, numeric ? arf_test::PlainNumericTable() : arf_test::PlainTextTable(), random() % (room + 1));
    ASSERT_EQ(Encode({dpid, format.code, customer, numeric ? kN : kC}),
              Made(arf_test::PlainFourState(format.code, dpid, customer, numeric)))
        << format.code << ' ' << dpid << ' ' << customer;
  }
}

TEST(FourState, RandomBytesAreJudged)
{
  std::mt19937 random(test_support::RandomSeed());
  const auto bytes = [&random](std::size_t most) {
    std::string text(random() % (most + 1), '\0');
    for (char& c : text) c = static_cast<char>(random() % 3 == 0 ? random() : '0' + random() % 10);
    return text;
  };
  for (int i = 0; i < 50'000; ++i) {
    const std::string dpid = bytes(9), format = i % 2 == 0 ? "62" : bytes(3), customer = bytes(20);
    const Outcome outcome = Encode({dpid, format, customer, static_cast<CustomerEncoding>(random() % 3)});
    ASSERT_EQ(outcome.bars.empty(), outcome.fault != FourStateFault::None);
    ASSERT_EQ(outcome.bars.find_first_not_of("0123"), std::string::npos);
  }
}

}  // namespace
