// How often case folding, case and accent removal allocate.
#include <gtest/gtest.h>

#include <string>
#include <utility>

#include "qxpaf/text/unicode.h"
#include "support/allocations.h"

namespace {

using test_support::AllocationsOf;

const std::wstring kWide = L"Stra\x00E9ny 12, \x0410\x0411\x0412, \x1EA0\x1EA1, a line that is longer than a short one";
const std::wstring kGrowing = kWide + L" \x00DF\x0390\x00DF\x0149";
const std::string kNarrow = "Stra\xC3\xA9ny 12, a line that is longer than a short one \xE1\xBB\x87";

TEST(UnicodeAllocations, NoneForMovedTextThatDoesNotGrow)
{
  std::wstring (*const wide[])(std::wstring) = {UnicodeToLower, UnicodeToUpper, UnicodeCaseFold, UnicodeRemoveAccents};
  for (const auto map : wide) {
    std::wstring text = kWide;
    EXPECT_EQ(AllocationsOf([&] { text = map(std::move(text)); }), 0);
  }
  std::string (*const narrow[])(std::string) = {RemoveAccents1252, UnicodeRemoveAccents, ToUpper1252, ToLower1252};
  for (const auto map : narrow) {
    std::string text = kNarrow;
    EXPECT_EQ(AllocationsOf([&] { text = map(std::move(text)); }), 0);
  }
}

TEST(UnicodeAllocations, OneForMovedTextThatGrows)
{
  for (const auto map : {UnicodeCaseFold, static_cast<std::wstring (*)(std::wstring)>(UnicodeToUpper)}) {
    std::wstring text = kGrowing;
    EXPECT_EQ(AllocationsOf([&] { text = map(std::move(text)); }), 1);
  }
}

TEST(UnicodeAllocations, NoneInPlace)
{
  std::wstring wide = kGrowing;
  EXPECT_EQ(AllocationsOf([&] { UnicodeUpperCaseMe(wide.data()); }), 0);
  EXPECT_EQ(AllocationsOf([&] { UnicodeRemoveAccentsMe(wide.data()); }), 0);
  std::string narrow = kNarrow;
  EXPECT_EQ(AllocationsOf([&] { Utf8RemoveAccentsMe(narrow.data()); }), 0);
  narrow = kNarrow;
  EXPECT_EQ(AllocationsOf([&] { Utf8RemoveAccentsMe(narrow); }), 0);
}

TEST(UnicodeAllocations, OnlyTheCopyOfTextByReference)
{
  const std::string ascii(100, 'a');
  EXPECT_EQ(AllocationsOf([&] { Utf8ToUpper(ascii); }), 1);
  const std::string invalid = ascii + "\xC3";
  EXPECT_LE(AllocationsOf([&] { Utf8ToUpper(invalid); }), 2) << "wide text, and the copy of what is not valid";
  EXPECT_EQ(AllocationsOf([&] { UnicodeFold(kWide); }), 1);
}

}  // namespace
