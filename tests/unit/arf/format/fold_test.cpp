#include "arf/format/fold.h"

#include <gtest/gtest.h>
#include <locale.h>
#include <wctype.h>

#include <cstring>
#include <memory>
#include <string>

#include "support/random_seed.h"

namespace {

using arf::DisplayForm;
using arf::MatchKey;

struct Row
{
  const char* text;
  const char* key;
  const char* display;
};

const Row kRows[] = {
    {"", "", ""},
    {"Smith", "SMITH", "SMITH"},
    {"  st.  kilda\tRd ", "ST KILDA RD", "ST. KILDA RD"},
    {"O'Connor", "OCONNOR", "O'CONNOR"},
    {"o`connor", "OCONNOR", "O`CONNOR"},
    {"o\u2019connor", "OCONNOR", "O\u2019CONNOR"},
    {"o\u2018connor", "OCONNOR", "O\u2018CONNOR"},
    {"o\u00B4connor", "OCONNOR", "O\u00B4CONNOR"},
    {"o\u02BCconnor", "OCONNOR", "O\u02BCCONNOR"},
    {"Winston-Hills", "WINSTON HILLS", "WINSTON-HILLS"},
    {"a\u2013b\u2014c", "A B C", "A\u2013B\u2014C"},
    {"a\u00A0 b", "A B", "A B"},
    {"a\r\nb", "A B", "A B"},
    {"a\u0085b\x7F", "A B", "A B"},
    {"12a/3-5", "12A 3 5", "12A/3-5"},
    {"(The) \"Mews\", & more!", "THE MEWS MORE", "(THE) \"MEWS\", & MORE!"},
    {"caf\u00E9", "CAFE", "CAF\u00C9"},
    {"cafe\u0301", "CAFE", "CAFE\u0301"},
    {"\u00DFtra\u00DFe", "SSTRASSE", "\u00DFTRA\u00DFE"},
    {"\u00C6r\u00F8 \u0152uvre \u0133s \u00DEing", "AERO OEUVRE IJS THING",
     "\u00C6R\u00D8 \u0152UVRE \u0132S \u00DEING"},
    {"\u00FF\u0131\u017F", "YIS", "\u0178IS"},
    {"3\u00D74", "3 4", "3\u00D74"},
    {"\u00A9 x", "X", "\u00A9 X"},
    {"\u4E2D\u6587", "\u4E2D\u6587", "\u4E2D\u6587"},
    {"\u03B1", "\u03B1", "\u03B1"},
    {"\xFF"
     "a\xC3",
     "\xFF"
     "A\xC3",
     "\xFF"
     "A\xC3"},
    {"' '", "", "' '"},
    {"--", "", "--"},
};

TEST(Fold, FoldsEveryRow)
{
  for (const Row& row : kRows) {
    EXPECT_EQ(MatchKey(row.text), row.key) << row.text;
    EXPECT_EQ(DisplayForm(row.text), row.display) << row.text;
  }
}

std::string Utf8(unsigned code)
{
  return {static_cast<char>(0xC0 | (code >> 6)), static_cast<char>(0x80 | (code & 0x3F))};
}

unsigned CodeOf(const std::string& text)
{
  if (text.size() == 1) return static_cast<unsigned char>(text[0]);
  return (static_cast<unsigned>(text[0]) & 0x1F) << 6 | (static_cast<unsigned>(text[1]) & 0x3F);
}

TEST(Fold, RaisesEveryLatinLetterAsTheSystemDoes)
{
  const locale_t locale = newlocale(LC_CTYPE_MASK, "C.UTF-8", nullptr);
  ASSERT_NE(locale, nullptr);
  for (unsigned code = 0xC0; code <= 0x17F; ++code) {
    const auto upper = static_cast<unsigned>(towupper_l(static_cast<wint_t>(code), locale));
    EXPECT_EQ(CodeOf(DisplayForm(Utf8(code))), upper) << std::hex << code;
    // Small and capital letters share their key.
    if (upper < 0x80) continue;
    EXPECT_EQ(MatchKey(Utf8(code)), MatchKey(Utf8(upper))) << std::hex << code;
  }
  freelocale(locale);
}

TEST(Fold, GivesEveryLatinLetterABase)
{
  for (unsigned code = 0xC0; code <= 0x17F; ++code) {
    if (code == 0xD7 || code == 0xF7) continue;  // × and ÷
    const std::string key = MatchKey(Utf8(code));
    ASSERT_FALSE(key.empty());
    for (const char c : key) EXPECT_TRUE(c >= 'A' && c <= 'Z') << std::hex << code;
  }
}

std::string RandomText(std::mt19937& random, std::span<const std::string_view> pieces)
{
  std::string text;
  for (std::size_t n = random() % 12; n > 0; --n) text += pieces[random() % pieces.size()];
  return text;
}

TEST(Fold, FoldsTextForGood)
{
  static constexpr std::string_view kPieces[] = {"a",      "Z",      "9",      " ",      ".",      "'",      "-",
                                                 "\u00E9", "\u2019", "\u0153", "\u0301", "\u2014", "\u4E2D", "\u00DF"};
  std::mt19937 random(test_support::RandomSeed());
  for (int i = 0; i < 20000; ++i) {
    const std::string text = RandomText(random, kPieces), key = MatchKey(text), display = DisplayForm(text);
    EXPECT_EQ(MatchKey(key), key);
    EXPECT_EQ(MatchKey(display), key);
    EXPECT_EQ(DisplayForm(display), display);
  }
}

TEST(Fold, NeverLengthensNorWritesBehindItsBuffer)
{
  static constexpr std::string_view kPieces[] = {"a",    " ",    "'",    "\xC3", "\xA9", "\xE2", "\x80",
                                                 "\x99", "\xC5", "\x93", "\x01", "\xFF", "\xCC", "\x81"};
  std::mt19937 random(test_support::RandomSeed());
  for (int i = 0; i < 20000; ++i) {
    const std::string text = RandomText(random, kPieces), key = MatchKey(text);
    EXPECT_LE(key.size(), text.size());
    EXPECT_LE(DisplayForm(text).size(), text.size());
    for (std::size_t room = 0; room <= key.size(); ++room) {
      const std::unique_ptr<char[]> out(new char[room]);
      const std::size_t length = MatchKey(text, std::span<char>(out.get(), room));
      ASSERT_LE(length, room);
      EXPECT_EQ(std::memcmp(out.get(), key.data(), length), 0);
      EXPECT_TRUE(length == room || room < key.size());
    }
  }
}

}  // namespace
