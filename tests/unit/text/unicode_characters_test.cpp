// Every code point through every mapping and class, against the reference record.
#include <gtest/gtest.h>

#include <climits>
#include <string>

#include "qxpaf/text/unicode.h"
#include "reference/unicode_reference.h"
#include "unit/text/unicode_text.h"

namespace {

using unicode_test::Code;

constexpr wchar_t kPlane = 0x10000;

// Around both ends of the plane, of the code space and of the type.
constexpr wchar_t kOutside[] = {-1,      -2,       -0x61,    -0xFFFF,  -0x10000, -0xFF9F,   INT_MIN,    INT_MIN + 0x61,
                                0x10000, 0x10001,  0x10041,  0x10061,  0x10428,  0x1D7CE,   0x1F600,    0x20000,
                                0x2FFFF, 0x10FFFE, 0x10FFFF, 0x110000, 0x110041, 0x1000061, 0x7FFF0041, INT_MAX};

struct MappingRow
{
  const char* name;
  wchar_t (*map)(wchar_t);
  const reference::Mapping& (*expected)();
};

const MappingRow kMappings[] = {
    {"UnicodeToLower", UnicodeToLower, reference::Lower},
    {"UnicodeToUpper", UnicodeToUpper, reference::Upper},
    {"UnicodeRemoveAccents", UnicodeRemoveAccents, reference::Accents},
};

struct ClassRow
{
  const char* name;
  bool (*is)(wchar_t);
  bool (*expected)(long);
};

const ClassRow kClasses[] = {
    {"UnicodeIsAlpha", UnicodeIsAlpha, reference::IsAlpha},    {"UnicodeIsUpper", UnicodeIsUpper, reference::IsUpper},
    {"UnicodeIsLower", UnicodeIsLower, reference::IsLower},    {"UnicodeIsSpace", UnicodeIsSpace, reference::IsSpace},
    {"UnicodeIsXdigit", UnicodeIsXdigit, reference::IsXdigit}, {"UnicodeIsDigit", UnicodeIsDigit, reference::IsDigit},
    {"UnicodeIsAlnum", UnicodeIsAlnum, reference::IsAlnum},    {"UnicodeIsPunct", UnicodeIsPunct, reference::IsPunct},
};

TEST(UnicodeMappings, EveryCodePoint)
{
  for (const MappingRow& row : kMappings)
    for (wchar_t c = 0; c < kPlane; ++c)
      ASSERT_EQ(row.map(c), reference::Map(row.expected(), c)) << row.name << ' ' << Code(c);
}

TEST(UnicodeMappings, NothingOutsideThePlane)
{
  for (const MappingRow& row : kMappings)
    for (const wchar_t c : kOutside) EXPECT_EQ(row.map(c), c) << row.name << ' ' << Code(c);
}

TEST(UnicodeMappings, NothingInTheSupplementaryPlanes)
{
  for (const MappingRow& row : kMappings)
    for (wchar_t c = kPlane; c <= 0x110000; ++c) ASSERT_EQ(row.map(c), c) << row.name << ' ' << Code(c);
}

TEST(UnicodeMappings, Examples)
{
  EXPECT_EQ(UnicodeToLower(0x0130), 0x0069);
  EXPECT_EQ(UnicodeToLower(0x1E9E), 0x00DF);
  EXPECT_EQ(UnicodeToUpper(0x0131), 0x0049);
  EXPECT_EQ(UnicodeToUpper(0x017F), 0x0053);
  EXPECT_EQ(UnicodeToUpper(0x03C2), 0x03A3);
  EXPECT_EQ(UnicodeToUpper(0x1F80), 0x1F88);
  EXPECT_EQ(UnicodeToUpper(0x00DF), 0x00DF);
  EXPECT_EQ(UnicodeToUpper(0x2C65), 0x023A);
  EXPECT_EQ(UnicodeToUpper(0x0265), 0x0265) << "its capital came later";
  EXPECT_EQ(UnicodeRemoveAccents(L'\x00D7'), 'O');
  EXPECT_EQ(UnicodeRemoveAccents(L'\x00F7'), 'o');
  EXPECT_EQ(UnicodeRemoveAccents(L'\x00D8'), 0x00D8);
  EXPECT_EQ(UnicodeRemoveAccents(L'\x00F8'), 0x00F8);
  EXPECT_EQ(UnicodeRemoveAccents(L'\x00D0'), 0x00D0);
}

// A record of accents by hand, beside the rows, of the letters that are no case of the rule.
TEST(UnicodeMappings, AccentsThatFollowNoRule)
{
  const wchar_t added[][2] = {{0x0110, 'D'},    {0x0111, 'd'},    {0x0126, 'H'},    {0x0127, 'h'}, {0x0141, 'L'},
                              {0x0142, 'l'},    {0x0166, 'T'},    {0x0167, 't'},    {0x00D7, 'O'}, {0x00F7, 'o'},
                              {0x01C4, 0x01F1}, {0x01C5, 0x01F2}, {0x01C6, 0x01F3}, {0x00E9, 'e'}, {0x1F80, 0x03B1},
                              {0x0419, 0x0418}, {0x0401, 0x0415}, {0x212B, 'A'},    {0x212A, 'K'}, {0x2126, 0x03A9},
                              {0x1FBE, 0x03B9}};
  for (const auto& row : added) EXPECT_EQ(UnicodeRemoveAccents(row[0]), row[1]) << Code(row[0]);
  std::wstring kept = L"\x00C6\x00D0\x00DE\x00DF\x0131\x0132\x0133\x0152\x0153\x017F\x1E9E\x1FBC\x1FCC\x1FFC";
  for (wchar_t c = 0x1F88; c <= 0x1FAF; ++c)
    if ((c & 8) != 0) kept += c;
  EXPECT_EQ(UnicodeRemoveAccents(kept), kept);
}

TEST(UnicodeClasses, EveryCodePoint)
{
  for (const ClassRow& row : kClasses)
    for (wchar_t c = 0; c < kPlane; ++c) ASSERT_EQ(row.is(c), row.expected(c)) << row.name << ' ' << Code(c);
}

TEST(UnicodeClasses, NothingOutsideThePlane)
{
  for (const ClassRow& row : kClasses) {
    for (const wchar_t c : kOutside) EXPECT_FALSE(row.is(c)) << row.name << ' ' << Code(c);
    for (wchar_t c = kPlane; c <= 0x110000; ++c) ASSERT_FALSE(row.is(c)) << row.name << ' ' << Code(c);
  }
}

TEST(UnicodeClasses, Examples)
{
  EXPECT_TRUE(UnicodeIsSpace(0x180E));
  EXPECT_FALSE(UnicodeIsSpace(0x001C));
  EXPECT_TRUE(UnicodeIsXdigit(0xFF21));
  EXPECT_TRUE(UnicodeIsDigit(0x0660));
  EXPECT_FALSE(UnicodeIsDigit(0x00B2));
  EXPECT_FALSE(UnicodeIsPunct('$'));
  EXPECT_TRUE(UnicodeIsPunct('_'));
  EXPECT_TRUE(UnicodeIsAlpha(0x0345)) << "marks can be alphabetic";
  EXPECT_TRUE(UnicodeIsAlpha(0x05B0)) << "a Hebrew point";
  EXPECT_TRUE(UnicodeIsUpper(0x2160) && UnicodeIsUpper(0x216F));
  EXPECT_FALSE(UnicodeIsUpper(0x01C5)) << "titlecase";
  EXPECT_TRUE(UnicodeIsLower(0x00AA) && UnicodeIsLower(0x00BA) && UnicodeIsLower(0x02B0) && UnicodeIsLower(0x02B8));
  EXPECT_TRUE(UnicodeIsAlnum(0x0660) && UnicodeIsAlnum('A'));
  EXPECT_FALSE(UnicodeIsAlnum('_') || UnicodeIsAlnum(0x00B2));
  EXPECT_FALSE(UnicodeIsAlpha(0x0378) || UnicodeIsPunct(0x0378) || UnicodeIsDigit(0x0378)) << "unassigned";
}

// Each element at every place of a block and of the rest behind the blocks, alone and between ASCII letters.
TEST(UnicodeMappings, StringFormsAgreeOnEveryCodePoint)
{
  unicode_test::EdgeBuffer<wchar_t> edge;
  for (wchar_t c = 1; c < kPlane; ++c) {
    const std::wstring text = {'b', 'Y', c, 'z', c, 'a', '@', '[', c, c, c, c, 'Z', c};
    ASSERT_EQ(UnicodeToLower(text), reference::MapEach(reference::Lower(), text)) << Code(c);
    ASSERT_EQ(UnicodeToUpper(text), reference::ToUpper(text)) << Code(c);
    ASSERT_EQ(UnicodeRemoveAccents(text), reference::MapEach(reference::Accents(), text)) << Code(c);
    ASSERT_EQ(UnicodeCaseFold(text), reference::CaseFold(text)) << Code(c);
    ASSERT_EQ(UnicodeFold(text), text) << Code(c);
    UnicodeUpperCaseMe(edge.Put(text));
    ASSERT_EQ(edge.Whole(), reference::MapEach(reference::Upper(), text)) << Code(c);
    UnicodeRemoveAccentsMe(edge.Put(text));
    ASSERT_EQ(edge.Whole(), reference::MapEach(reference::Accents(), text)) << Code(c);
    ASSERT_TRUE(edge.Intact());
  }
}

TEST(UnicodeMappings, StringFormsKeepWhatIsOutside)
{
  for (const wchar_t c : kOutside) {
    const std::wstring text = {c, 'a', 0xE9, c, c, c, c, 'Z', c};
    EXPECT_EQ(UnicodeToLower(text), reference::MapEach(reference::Lower(), text)) << Code(c);
    EXPECT_EQ(UnicodeToUpper(text), reference::ToUpper(text)) << Code(c);
    EXPECT_EQ(UnicodeRemoveAccents(text), reference::MapEach(reference::Accents(), text)) << Code(c);
    EXPECT_EQ(UnicodeCaseFold(text), reference::CaseFold(text)) << Code(c);
  }
}

TEST(Windows1252, EveryByteOfEveryTable)
{
  struct Row
  {
    const char* name;
    std::string (*map)(std::string);
    int (*expected)(int);
    int changed;
  };
  const Row rows[] = {{"ToUpper1252", ToUpper1252, reference::ToUpper1252, 60},
                      {"ToLower1252", ToLower1252, reference::ToLower1252, 60},
                      {"RemoveAccents1252", RemoveAccents1252, reference::RemoveAccents1252, 60},
                      {"UnicodeRemoveAccents", UnicodeRemoveAccents, reference::RemoveAccents1252, 60}};
  for (const Row& row : rows) {
    int changed = 0;
    for (int byte = 0; byte < 256; ++byte) {
      const char expected = static_cast<char>(row.expected(byte));
      changed += expected != static_cast<char>(byte);
      // At every place of blocks of sixteen and behind them, among ASCII.
      for (const std::size_t length : {1U, 15U, 16U, 17U, 33U})
        for (std::size_t at = 0; at < length; ++at) {
          std::string text(length, 'k');
          text[at] = static_cast<char>(byte);
          std::string result = reference::MapEach(row.expected, text);
          ASSERT_EQ(result[at], expected);
          ASSERT_EQ(row.map(text), result) << row.name << ' ' << byte << " at " << at << " of " << length;
        }
    }
    EXPECT_EQ(changed, row.changed) << row.name;
  }
}

TEST(Windows1252, LowerIsTheInverseOfUpper)
{
  for (int byte = 0; byte < 256; ++byte) {
    const std::string text(1, static_cast<char>(byte));
    EXPECT_TRUE(ToUpper1252(text) == text || ToLower1252(ToUpper1252(text)) == text) << byte;
    EXPECT_TRUE(ToLower1252(text) == text || ToUpper1252(ToLower1252(text)) == text) << byte;
  }
}

TEST(Windows1252, Examples)
{
  EXPECT_EQ(RemoveAccents1252("\xD0\xF0"), "Dd");
  EXPECT_EQ(RemoveAccents1252("\x8C\x9C\xC6\xD7\xD8\xDE\xDF\xE6\xF7\xF8\xFE"),
            "\x8C\x9C\xC6\xD7\xD8\xDE\xDF\xE6\xF7\xF8\xFE");
  EXPECT_EQ(ToUpper1252("\xB5\xDF\xF7\xFF"), "\xB5\xDF\xF7\x9F");
  EXPECT_EQ(ToLower1252("\xD7\x9F\x8A"), "\xD7\xFF\x9A");
  EXPECT_EQ(ToUpper1252(std::string("a\0b", 3)), std::string("A\0B", 3));
  EXPECT_EQ(ToUpper1252(""), "");
}

}  // namespace
