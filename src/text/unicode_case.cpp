// Upper and lower case of wide and UTF-8 text, and case folding.
#include <algorithm>
#include <array>
#include <cstring>
#include <iterator>
#include <utility>

#include "qxpaf/text/encoding.h"
#include "qxpaf/text/unicode.h"
#include "text/ascii_run.h"
#include "text/unicode_map.h"
#include "text/unicode_tables.h"

namespace qxpaf {
namespace {

using LowerMapping = TableMapping<kLowerCase, AsciiCase::kLower>;
using UpperMapping = TableMapping<kUpperCase, AsciiCase::kUpper>;

// The letter that takes two capitals. It has no entry, and nothing else becomes it, in the table of upper case.
constexpr wchar_t kSharpS = 0x00DF;

// What one element becomes when that is more than one; length 0 otherwise.
struct Expansion
{
  std::size_t length = 0;
  std::array<wchar_t, 3> elements{};

  std::size_t Growth() const { return length == 0 ? 0 : length - 1; }
};

Expansion UpperExpansion(wchar_t c)
{
  return c == kSharpS ? Expansion{2, {L'S', L'S'}} : Expansion{};
}

// Replaces the elements that expand, which add `growth` elements in all, from the end to the start: each element is
// moved once, and none that stands before the first expansion.
template <class ExpansionOf>
void ExpandElements(std::wstring& s, std::size_t growth, ExpansionOf expansionOf)
{
  std::size_t from = s.size();
  s.resize(from + growth);
  for (std::size_t to = s.size(); from < to;) {
    const wchar_t c = s[--from];
    const Expansion expansion = expansionOf(c);
    if (expansion.length == 0) s[--to] = c;
    for (std::size_t i = expansion.length; i > 0; --i) s[--to] = expansion.elements[i - 1];
  }
}

bool IsListMark(std::uint32_t entry, std::uint32_t mark)
{
  return (entry & kListMarkMask) == mark;
}

// The elements for a fold entry that is no character. The two lists are crossed, and the first character of a row comes
// last: the entry for row k of the pairs stands for row k of the triples, if there is one, and the other way round.
// This is meant to be; folded text is compared with text that was folded and stored in this form.
Expansion FoldExpansion(std::uint32_t entry)
{
  const std::size_t row = entry & ~kListMarkMask;
  if (IsListMark(entry, kPairMark) && row < std::size(kFoldTriples)) {
    const auto& triple = kFoldTriples[row];
    return {3, {triple[1], triple[2], triple[0]}};
  }
  if (IsListMark(entry, kTripleMark) && row < std::size(kFoldPairs)) {
    const auto& pair = kFoldPairs[row];
    return {2, {pair[1], pair[0]}};
  }
  return {};
}

// Folds single elements, leaves those that expand (nothing else becomes one of them) and counts what they will add.
class FoldMapping
{
 public:
  static constexpr AsciiCase kAsciiCase = AsciiCase::kLower;

  wchar_t operator()(wchar_t c)
  {
    const std::uint32_t entry = kCaseFold.Entry(c);
    if (IsListMark(entry, kPairMark) || IsListMark(entry, kTripleMark)) [[unlikely]] {
      growth_ += FoldExpansion(entry).Growth();
      return c;
    }
    return entry != 0 ? static_cast<wchar_t>(entry) : c;
  }

  std::size_t Growth() const { return growth_; }

 private:
  std::size_t growth_ = 0;
};

}  // namespace
}  // namespace qxpaf

wchar_t UnicodeToLower(wchar_t c)
{
  return qxpaf::LowerMapping()(c);
}

wchar_t UnicodeToUpper(wchar_t c)
{
  return qxpaf::UpperMapping()(c);
}

std::wstring UnicodeToLower(std::wstring s)
{
  qxpaf::MapString<qxpaf::LowerMapping>(s);
  return s;
}

std::wstring UnicodeToUpper(std::wstring s)
{
  qxpaf::MapString<qxpaf::UpperMapping>(s);
  if (s.find(qxpaf::kSharpS) == std::wstring::npos) return s;
  const auto growth = std::count(s.begin(), s.end(), qxpaf::kSharpS);
  qxpaf::ExpandElements(s, static_cast<std::size_t>(growth), qxpaf::UpperExpansion);
  return s;
}

void UnicodeUpperCaseMe(wchar_t* s)
{
  qxpaf::MapTerminated<qxpaf::UpperMapping>(s);
}

std::string Utf8ToUpper(const std::string& s)
{
  const std::size_t n = std::strlen(s.c_str());
  if (qxpaf::AsciiRuns::Length(s.data(), n) == n) return ToUpper1252(s.substr(0, n));
  std::wstring wide;
  if (!ReadUtf8String(wide, s.c_str())) return s;
  return WideToUtf8(UnicodeToUpper(std::move(wide)));
}

std::wstring UnicodeCaseFold(std::wstring s)
{
  qxpaf::FoldMapping fold;
  qxpaf::MapText(s.data(), s.size(), fold);
  if (fold.Growth() != 0)
    qxpaf::ExpandElements(s, fold.Growth(), [](wchar_t c) { return qxpaf::FoldExpansion(qxpaf::kCaseFold.Entry(c)); });
  return s;
}

std::wstring UnicodeFold(const std::wstring& s)
{
  return s;
}
