#include "qxpaf/text/phonetic.h"

#include <gtest/gtest.h>

#include <ostream>
#include <string>
#include <string_view>
#include <type_traits>

#include "support/guarded_buffer.h"
#include "unit/text/matching_text.h"

namespace {

using matching_test::ExactText;
using test_support::GuardedBuffer;

// Compiled plug-ins bind to the mangled names, so the types are fixed to the last detail.
static_assert(std::is_same_v<decltype(Soundex), void(char*, const char*, unsigned long)>);
static_assert(std::is_same_v<decltype(Soundex2), unsigned short(const char*)>);
static_assert(std::is_same_v<decltype(Nysiis), void(char*, const char*, unsigned long)>);
static_assert(std::is_same_v<decltype(Metaphone), void(char*, const char*, unsigned long)>);

using KeyFunction = void (*)(char*, const char*, unsigned long);

// Through buffers of exactly the documented sizes.
std::string KeyOf(KeyFunction function, const std::string& name, unsigned int len)
{
  const ExactText<char> exact(name);
  GuardedBuffer out(std::size_t{len} + 1);
  function(out.Data(), exact.Get(), len);
  EXPECT_TRUE(out.Intact()) << name;
  const std::string bytes = out.Bytes();
  EXPECT_NE(bytes.find('\0'), std::string::npos) << name;
  return bytes.substr(0, bytes.find('\0'));
}

// c so many times, then the rest. Not inlined, as the compiler would take the concatenation for an overrun.
[[gnu::noinline]] std::string Repeated(std::size_t times, char c, const std::string& rest)
{
  std::string out(times, c);
  out += rest;
  return out;
}

struct Row
{
  std::string name;
  unsigned int len;
  std::string key;
};

std::ostream& operator<<(std::ostream& out, const Row& row)
{
  return out << '"' << row.name << "\" (" << row.len << ") gives \"" << row.key << '"';
}

template <std::size_t n>
void ExpectKeys(KeyFunction function, const Row (&rows)[n])
{
  for (const Row& row : rows) EXPECT_EQ(KeyOf(function, row.name, row.len), row.key) << row;
}

/* ---- Soundex ---- */

constexpr struct
{
  std::string_view letters;
  char code;
} kSoundexCodes[] = {{"AEIOUY", '0'}, {"BFPV", '1'}, {"CGJKQSXZ", '2'}, {"DT", '3'},
                     {"L", '4'},      {"MN", '5'},   {"R", '6'},        {"HW", ' '}};

TEST(Soundex, KnownNames)
{
  const Row rows[] = {
      {"Robert", 4, "R163"},   {"Rupert", 4, "R163"},
      {"  robert", 4, "R163"}, {"Tymczak", 4, "T522"},
      {"Pfister", 4, "P236"},  {"Ashcraft", 4, "A261"},
      {"Lee", 4, "L000"},      {"42nd", 4, ""},
      {"Robert", 6, "R16300"}, {"Robert", 3, "R16"},
      {"Robert", 2, "R1"},     {"Robert", 1, "R"},
      {"Robert", 0, ""},       {"", 4, ""},
      {"   ", 4, ""},          {"-Robert", 4, ""},
      {"r", 4, "R000"},        {"\t\n\v\f\r Robert", 4, "R163"},
  };
  ExpectKeys(Soundex, rows);
}

TEST(Soundex, NonLettersAreWithoutEffect)
{
  const Row rows[] = {
      {"B-B", 4, "B000"},
      {"AB'B", 4, "A100"},
      {"AB4C 5D", 4, "A123"},
      {"AB\xE9"
       "B",
       4, "A100"},
      {"\xE9"
       "B",
       4, ""},
      {"\xA0"
       "B",
       4, ""},
      {"AB\x80\xFF"
       "C",
       4, "A120"},
      {"A\xC3\x89"
       "C",
       4, "A200"},
  };
  ExpectKeys(Soundex, rows);
}

TEST(Soundex, CodeOfEachLetter)
{
  for (const auto& row : kSoundexCodes) {
    for (const char letter : row.letters) {
      const std::string name = {'A', letter};
      const std::string digit(1, row.code == ' ' ? '0' : row.code);
      EXPECT_EQ(KeyOf(Soundex, name, 2), "A" + digit) << name;
      EXPECT_EQ(KeyOf(Soundex, {'a', static_cast<char>(letter + 32)}, 2), "A" + digit) << name;
    }
  }
}

// Between equal digits a vowel separates and H, W and non-letters do not; another digit does.
TEST(Soundex, WhatSeparatesEqualDigits)
{
  for (const char c : std::string_view("AEIOUY")) EXPECT_EQ(KeyOf(Soundex, {'A', 'B', c, 'P'}, 4), "A110") << c;
  for (const char c : std::string_view("HWhw-4 ")) EXPECT_EQ(KeyOf(Soundex, {'A', 'B', c, 'P'}, 4), "A100") << c;
  EXPECT_EQ(KeyOf(Soundex, "ABCB", 4), "A121");
}

TEST(Soundex, FirstLetterCountsAsWritten)
{
  for (const auto& row : kSoundexCodes) {
    for (const char first : row.letters) {
      for (const char second : row.letters) {
        const std::string key = KeyOf(Soundex, {first, second}, 2);
        EXPECT_EQ(key, std::string(1, first) + "0") << second;
      }
    }
  }
}

TEST(Soundex2, KnownNames)
{
  const struct
  {
    const char* name;
    int key;
  } rows[] = {
      {"Robert", 9331},
      {"ROBERT", 9331},
      {"robert", 9331},
      {"1abc", 0},
      {" Robert", 0},
      {"", 0},
      {"\xC9"
       "B",
       0},
      {"A", 512},
      {"Z", 26 * 512},
      {"zabracadabra", (26 << 9) | (1 << 6) | (6 << 3) | 2},
      {"Lee", 12 << 9},
      {"Pfister", (16 << 9) | (2 << 6) | (3 << 3) | 6},
      {"Ashcraft", (1 << 9) | (2 << 6) | (6 << 3) | 1},
      {"Tymczak", (20 << 9) | (5 << 6) | (2 << 3) | 2},
      {"A6-L", (1 << 9) | (4 << 6)},
  };
  for (const auto& row : rows) EXPECT_EQ(Soundex2(ExactText<char>(row.name).Get()), row.key) << row.name;
}

// The number is the text of four characters, packed.
TEST(Soundex2, AgreesWithTheText)
{
  for (const std::string& name : matching_test::AllStrings("ABPCLHr-", 5)) {
    const ExactText<char> exact(name);
    char text[5];
    Soundex(text, exact.Get(), 4);
    int key = 0;
    if (text[0] != 0) key = (text[0] - 'A' + 1) << 9 | (text[1] - '0') << 6 | (text[2] - '0') << 3 | (text[3] - '0');
    ASSERT_EQ(Soundex2(exact.Get()), key) << name;
  }
}

/* ---- Nysiis ---- */

TEST(Nysiis, KnownNames)
{
  const Row rows[] = {
      {"MacDonald", 20, "MCDANALD"}, {"Knight", 20, "NAT"}, {"Phillips", 20, "FALAP"},
      {"Evans", 20, "EVAN"},         {"edgar", 20, "EGAR"}, {" \t\n\v\f\r edgar", 20, "EGAR"},
      {"o'brien", 20, "OBRAN"},
  };
  ExpectKeys(Nysiis, rows);
}

TEST(Nysiis, Unusable)
{
  const Row rows[] = {{"", 6, ""},     {"   ", 6, ""}, {"B4B", 6, ""},  {"4", 6, ""},
                      {"BAB9", 6, ""}, {"-'-", 6, ""}, {"\xE9", 6, ""}, {"  7 BAB", 6, ""}};
  ExpectKeys(Nysiis, rows);
}

TEST(Nysiis, TrailingSibilants)
{
  const Row rows[] = {{"BABS", 6, "BAB"}, {"BABZ", 6, "BAB"}, {"BABSZZS", 6, "BAB"}, {"S", 6, "S"},
                      {"SSS", 6, "S"},    {"ZZ", 6, "S"},     {"ES", 6, "E"},        {"BANDS", 6, "BAN"}};
  ExpectKeys(Nysiis, rows);
}

TEST(Nysiis, Prefixes)
{
  const Row rows[] = {{"MACB", 6, "MCB"}, {"MAC", 6, "MC"}, {"MABC", 6, "MABC"}, {"PFAB", 6, "FAB"},
                      {"pfab", 6, "FAB"}, {"PF", 6, "F"},   {"BMAC", 6, "BNAC"}};
  ExpectKeys(Nysiis, rows);
}

TEST(Nysiis, Endings)
{
  const Row rows[] = {
      {"BARD", 6, "BAD"},  {"BAND", 6, "BAN"},   {"BALD", 6, "BALD"}, {"BYE", 6, "BY"},   {"BEE", 6, "BY"},
      {"BIE", 6, "BY"},    {"BAE", 6, "B"},      {"BADT", 6, "BAD"},  {"BART", 6, "BAD"}, {"BANT", 6, "BAN"},
      {"BALT", 6, "BALT"}, {"BIX", 6, "BCX"},    {"BEX", 6, "BCX"},   {"BAX", 6, "BAX"},  {"D", 6, "D"},
      {"E", 6, "E"},       {"T", 6, "T"},        {"X", 6, "X"},       {"RD", 6, "D"},     {"ND", 6, "N"},
      {"YE", 6, "Y"},      {"BANDD", 6, "BAND"},
  };
  ExpectKeys(Nysiis, rows);
}

TEST(Nysiis, LetterRules)
{
  const Row rows[] = {
      // A, I, O, U
      {"BAB", 9, "BAB"},
      {"BIB", 9, "BAB"},
      {"BOB", 9, "BAB"},
      {"BUB", 9, "BAB"},
      {"BAWL", 9, "BAL"},
      {"BIWL", 9, "BAL"},
      {"BOWL", 9, "BAL"},
      {"BUWL", 9, "BAL"},
      {"AWL", 9, "AL"},
      // D
      {"EDGAR", 9, "EGAR"},
      {"BODY", 9, "BADY"},
      // E
      {"BEVY", 9, "BAFY"},
      {"EVB", 9, "EVB"},
      {"BEWL", 9, "BAL"},
      {"EWB", 9, "EB"},
      // G
      {"BIGHT", 9, "BAT"},
      {"BIGHB", 9, "BAGHB"},
      {"BIGTH", 9, "BAGT"},
      {"GHT", 9, "T"},
      // H
      {"HOB", 9, "HAB"},
      {"BAHB", 9, "BAB"},
      {"BRHO", 9, "BR"},
      {"BRHAB", 9, "BRAB"},
      {"BRHEB", 9, "BRAB"},
      {"BRHIB", 9, "BRAB"},
      {"BRHUB", 9, "BRAB"},
      {"BRH", 9, "BR"},
      {"BRHB", 9, "BRHB"},
      {"BRHYB", 9, "BRHAB"},
      // K
      {"BAKNB", 9, "BANB"},
      {"BAK", 9, "BAC"},
      {"KNOB", 9, "NAB"},
      {"KOB", 9, "CAB"},
      // M
      {"MOM", 9, "MAN"},
      // P
      {"BAPHB", 9, "BAFB"},
      {"BAP", 9, "BAP"},
      {"PHOB", 9, "FAB"},
      // Q
      {"BAQ", 9, "BAG"},
      {"QUAB", 9, "QAB"},
      // S
      {"BASHB", 9, "BASB"},
      {"BASH", 9, "BAS"},
      {"BASCHB", 9, "BASB"},
      {"BASCH", 9, "BAS"},
      {"BASCB", 9, "BASCB"},
      {"SHOB", 9, "SAB"},
      {"SCHOB", 9, "SAB"},
      // W
      {"BWRB", 9, "BRB"},
      {"WRIB", 9, "RAB"},
      {"BWB", 9, "BWB"},
      // Y
      {"BYB", 9, "BAB"},
      {"YOB", 9, "YAB"},
      {"YWB", 9, "YAB"},
      {"BYWB", 9, "BAB"},
      {"BY", 9, "BY"},
      // Z
      {"BZB", 9, "BSB"},
      {"ZOB", 9, "SAB"},
      // the others
      {"BCFJLNRTVXB", 20, "BCFJLNRTVXB"},
  };
  ExpectKeys(Nysiis, rows);
}

TEST(Nysiis, EndRules)
{
  const Row rows[] = {{"BOA", 6, "B"}, {"BAY", 6, "BY"}, {"A", 6, "A"},    {"O", 6, "O"},
                      {"AY", 6, "Y"},  {"EY", 6, "Y"},   {"OYB", 6, "OB"}, {"IU", 6, "I"}};
  ExpectKeys(Nysiis, rows);
}

// One letter more than is asked for is looked at by the end rules before the key is cut.
TEST(Nysiis, CutsToLength)
{
  const Row rows[] = {{"BOBBOB", 9, "BABAB"}, {"BOBBOB", 5, "BABAB"}, {"BOBBOB", 4, "BABA"}, {"BOBBOB", 3, "BAB"},
                      {"BOBBOB", 2, "BA"},    {"BOBBOB", 1, "B"},     {"BOBBOB", 0, ""},     {"EBB", 0, ""},
                      {"BAY", 2, "BY"},       {"OB", 1, "O"}};
  ExpectKeys(Nysiis, rows);
}

TEST(Nysiis, LooksAt51Characters)
{
  const std::string dashes(49, '-');
  const Row rows[] = {{"B" + dashes + "CD", 6, "BC"}, {Repeated(30, ' ', "B" + dashes + "CD"), 6, "BC"},
                      {"B" + dashes + "-4", 6, "B"},  {"B" + dashes + "4", 6, ""},
                      {dashes + "--B", 6, ""},        {dashes + "-B", 6, "B"}};
  ExpectKeys(Nysiis, rows);
  std::string all;
  for (int i = 0; i < 60; ++i) all += i % 2 == 0 ? 'B' : 'C';
  EXPECT_EQ(KeyOf(Nysiis, all, 100), all.substr(0, 51));
}

TEST(Nysiis, ZerosFollowTheKey)
{
  for (const std::string name : {"", "B4", "BOA", "BAY", "EVANS", "KNIGHT"}) {
    GuardedBuffer out(21);
    Nysiis(out.Data(), ExactText<char>(name).Get(), 20);
    const std::string bytes = out.Bytes();
    EXPECT_EQ(bytes.find_last_not_of('\0') + 1, bytes.find('\0')) << name;
  }
}

/* ---- Metaphone ---- */

TEST(Metaphone, KnownNames)
{
  const Row rows[] = {
      {"THOMAS", 9, "0MS"},    {"KNIGHT", 9, "NT"}, {"knight", 9, "KNT"}, {"WRIGHT", 9, "WT"},   {"Wright", 9, "RT"},
      {"SCHMIDT", 9, "SKMTT"}, {"CHRIS", 9, "KRS"}, {"XAVIER", 9, "SFR"}, {"xavier", 9, "KSFR"}, {"MARC", 9, "MRS"},
      {"KING", 9, "KNJ"},      {"BADG", 9, "BJ"},   {"JUDGED", 9, "JJ"},
  };
  ExpectKeys(Metaphone, rows);
}

TEST(Metaphone, OneCharacter)
{
  const Row rows[] = {{"x", 4, "X"}, {"X", 1, "X"}, {"h", 4, "H"},       {"5", 4, "5"},
                      {"-", 4, "-"}, {" ", 4, " "}, {"\xE9", 4, "\xE9"}, {"x", 0, ""}};
  ExpectKeys(Metaphone, rows);
}

TEST(Metaphone, FirstTwoLetters)
{
  const Row rows[] = {
      {"AEB", 9, "EB"},  {"aeb", 9, "AB"}, {"Aeb", 9, "AB"},  {"GNB", 9, "NB"},  {"gnb", 9, "KNB"}, {"KNB", 9, "NB"},
      {"knb", 9, "KNB"}, {"PNB", 9, "NB"}, {"pnb", 9, "PNB"}, {"Pnb", 9, "PNB"}, {"WROB", 9, "WB"}, {"wrob", 9, "RB"},
      {"XB", 9, "SB"},   {"xb", 9, "KSB"}, {"AE", 9, "E"},    {"GN", 9, "N"},    {"KN", 9, "N"},    {"PN", 9, "N"},
      {"WR", 9, ""},     {"XX", 9, "SKS"}, {"XS", 9, "S"},    {"AEE", 9, "E"},   {"WRH", 9, ""},
  };
  ExpectKeys(Metaphone, rows);
}

TEST(Metaphone, RepeatedAndOtherCharacters)
{
  const Row rows[] = {{"ABBA", 9, "AB"},
                      {"ACCB", 9, "AKB"},
                      {"ABbB", 9, "AB"},
                      {"B-B", 9, "BB"},
                      {"B--B", 9, "BB"},
                      {"-AB", 9, "B"},
                      {" AB", 9, "B"},
                      {"B\xE9"
                       "B",
                       9, "BB"},
                      {"--", 9, ""},
                      {"", 9, ""},
                      {"AA", 9, "A"},
                      {"4B", 9, "B"}};
  ExpectKeys(Metaphone, rows);
}

TEST(Metaphone, LetterRules)
{
  const Row rows[] = {
      // vowels
      {"AB", 9, "AB"},
      {"EB", 9, "EB"},
      {"IB", 9, "IB"},
      {"OB", 9, "OB"},
      {"UB", 9, "UB"},
      {"EAIOUB", 9, "EB"},
      // B
      {"AMB", 9, "AM"},
      {"AMBA", 9, "AMB"},
      {"AMB-", 9, "AMB"},
      {"ALB", 9, "ALB"},
      // C
      {"BSCIB", 9, "BSB"},
      {"BSCEB", 9, "BSB"},
      {"BSCYB", 9, "BSB"},
      {"BSC", 9, "BS"},
      {"BSCIAB", 9, "BSB"},
      {"BCIAB", 9, "BXB"},
      {"BCIB", 9, "BSB"},
      {"BCEB", 9, "BSB"},
      {"BCYB", 9, "BSB"},
      {"BC", 9, "BS"},
      {"BSCHB", 9, "BSKB"},
      {"CHRB", 9, "KRB"},
      {"CHAB", 9, "XB"},
      {"CHEB", 9, "XB"},
      {"CHYB", 9, "KB"},
      {"CH", 9, "X"},
      {"CH-", 9, "K"},
      {"BCHRB", 9, "BXRB"},
      {"CAB", 9, "KB"},
      {"BCB", 9, "BKB"},
      {"BSCAB", 9, "BSKB"},
      // D
      {"BDGEB", 9, "BJB"},
      {"BDGIB", 9, "BJB"},
      {"BDGYB", 9, "BJB"},
      {"BDG", 9, "BJ"},
      {"BDGE", 9, "BJ"},
      {"BDGED", 9, "BJ"},
      {"BDGEDB", 9, "BJB"},
      {"BDGEGB", 9, "BJKB"},
      {"BDGAB", 9, "BTKB"},
      {"BDB", 9, "BTB"},
      // F, J, L, M, N, R
      {"AFAJALAMANAR", 9, "AFJLMNR"},
      // G
      {"BGHB", 9, "BB"},
      {"BGH", 9, "B"},
      {"BGHAB", 9, "BKB"},
      {"GHB", 9, "KB"},
      {"BGNB", 9, "BNB"},
      {"BGIB", 9, "BJB"},
      {"BGEB", 9, "BJB"},
      {"BGYB", 9, "BJB"},
      {"BG", 9, "BJ"},
      {"BGAB", 9, "BKB"},
      {"GEB", 9, "JB"},
      {"BGGEB", 9, "BKB"},
      // H
      {"AH", 9, "A"},
      {"ACHA", 9, "AX"},
      {"ASHA", 9, "AX"},
      {"APHA", 9, "AF"},
      {"ATHA", 9, "A0"},
      {"AGHA", 9, "AK"},
      {"HAB", 9, "HB"},
      {"BHAB", 9, "BHB"},
      {"BHB", 9, "BB"},
      {"BHYB", 9, "BB"},
      // K
      {"ACKA", 9, "AK"},
      {"AKA", 9, "AK"},
      // P, Q
      {"APA", 9, "AP"},
      {"APH", 9, "AF"},
      {"AQA", 9, "AK"},
      // S
      {"ASHB", 9, "AXB"},
      {"ASIOB", 9, "AXB"},
      {"ASIAB", 9, "AXB"},
      {"ASIB", 9, "ASB"},
      {"ASI", 9, "AS"},
      {"AS", 9, "AS"},
      // T
      {"ATIOB", 9, "AXB"},
      {"ATIAB", 9, "AXB"},
      {"ATHB", 9, "A0B"},
      {"ATCHB", 9, "AXB"},
      {"ATCB", 9, "ATKB"},
      {"ATIB", 9, "ATB"},
      {"ATI", 9, "AT"},
      {"AT", 9, "AT"},
      // V
      {"AVA", 9, "AF"},
      // W, Y
      {"AWAB", 9, "AWB"},
      {"AWB", 9, "AB"},
      {"AW", 9, "A"},
      {"AYAB", 9, "AYB"},
      {"AYB", 9, "AB"},
      {"AY", 9, "A"},
      // X, Z
      {"AXB", 9, "AKSB"},
      {"AZA", 9, "AS"},
  };
  ExpectKeys(Metaphone, rows);
}

TEST(Metaphone, StopsAtLength)
{
  const Row rows[] = {{"AXE", 1, "A"}, {"BOX", 2, "BK"},       {"BOX", 3, "BKS"},  {"BOX", 1, "B"},  {"BOX", 0, ""},
                      {"", 0, ""},     {"SCHMIDT", 4, "SKMT"}, {"BDGEB", 2, "BJ"}, {"AXXB", 2, "AK"}};
  ExpectKeys(Metaphone, rows);
}

/* ---- All ---- */

TEST(PhoneticKeys, EveryByte)
{
  for (const KeyFunction function : {Soundex, Nysiis, Metaphone}) {
    for (int byte = 1; byte < 256; ++byte) {
      const char c = static_cast<char>(byte);
      for (const std::string& name :
           {std::string{c}, std::string{c, 'B'}, std::string{'B', c}, std::string{'B', c, 'C'}})
        for (const unsigned int len : {0U, 1U, 2U, 4U}) EXPECT_LE(KeyOf(function, name, len).size(), len);
    }
  }
}

TEST(PhoneticKeys, LongNames)
{
  std::string name;
  while (name.size() < 100000) name += "BOXDGETHATCHERSCH";
  for (const KeyFunction function : {Soundex, Nysiis, Metaphone})
    for (const unsigned int len : {4U, 51U, 200000U}) EXPECT_LE(KeyOf(function, name, len).size(), len);
  EXPECT_EQ(KeyOf(Soundex, name, 4), "B232");
  EXPECT_EQ(Soundex2(name.c_str()), (2 << 9) | (2 << 6) | (3 << 3) | 2);
  EXPECT_EQ(KeyOf(Soundex, "R" + std::string(100000, 'h'), 4), "R000");
  EXPECT_EQ(KeyOf(Metaphone, std::string(100000, 'X'), 100000), "SKS");
  EXPECT_EQ(KeyOf(Nysiis, Repeated(100000, ' ', "BOB"), 4), "BAB");
}

}  // namespace
