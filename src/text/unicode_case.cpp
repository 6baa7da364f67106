// Upper and lower case of wide and UTF-8 text, and case folding.
#include <algorithm>
#include <array>
#include <cstring>
#include <cwchar>
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

// Replaces the elements that expand, which add `growth` elements in all, from the end to the start: each element is
// moved once, and none that stands before the first expansion. `Rule` has
//
//     static bool MayExpand(wchar_t c)
//     static Expansion Expand(wchar_t c)    may be empty
template <class Rule>
void ExpandElements(std::wstring& s, std::size_t growth)
{
  std::size_t from = s.size();
  std::size_t to = from + growth;
  s.resize(to);
  while (from < to) {
    const wchar_t c = s[--from];
    const Expansion expansion = Rule::MayExpand(c) ? Rule::Expand(c) : Expansion();
    to -= 1 + expansion.Growth();
    s[to] = c;
    std::copy_n(expansion.elements.begin(), expansion.length, s.begin() + static_cast<std::ptrdiff_t>(to));
  }
}

struct UpperRule
{
  static bool MayExpand(wchar_t c) { return c == kSharpS; }
  static Expansion Expand(wchar_t) { return {2, {L'S', L'S'}}; }
};

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

struct FoldRule
{
  static bool MayExpand(wchar_t c) { return kCaseFold.Entry(c) >= kPairMark; }
  static Expansion Expand(wchar_t c) { return FoldExpansion(kCaseFold.Entry(c)); }
};

// Folds single elements, leaves those that expand (nothing else becomes one of them) and counts what they will add.
class FoldMapping
{
 public:
  static constexpr AsciiCase kAsciiCase = AsciiCase::kLower;
  static constexpr const auto& kTable = kCaseFold;

  wchar_t operator()(wchar_t c, std::uint32_t entry)
  {
    if (entry >= kPairMark) [[unlikely]]
      return MapRare(c, entry);
    return entry != 0 ? static_cast<wchar_t>(entry) : c;
  }

  std::size_t Growth() const { return growth_; }

 private:
  // List marks, and what folds to characters behind them.
  wchar_t MapRare(wchar_t c, std::uint32_t entry)
  {
    if (!IsListMark(entry, kPairMark) && !IsListMark(entry, kTripleMark)) return static_cast<wchar_t>(entry);
    growth_ += FoldExpansion(entry).Growth();
    return c;
  }

  std::size_t growth_ = 0;
};

}  // namespace
}  // namespace qxpaf

wchar_t UnicodeToLower(wchar_t c)
{
  return qxpaf::MapCharacter<qxpaf::LowerMapping>(c);
}

wchar_t UnicodeToUpper(wchar_t c)
{
  return qxpaf::MapCharacter<qxpaf::UpperMapping>(c);
}

std::wstring UnicodeToLower(std::wstring s)
{
  qxpaf::MapWide<qxpaf::LowerMapping>(s.data(), s.size());
  return s;
}

std::wstring UnicodeToUpper(std::wstring s)
{
  qxpaf::MapWide<qxpaf::UpperMapping>(s.data(), s.size());
  if (s.find(qxpaf::kSharpS) == std::wstring::npos) return s;
  const auto growth = std::count(s.begin(), s.end(), qxpaf::kSharpS);
  qxpaf::ExpandElements<qxpaf::UpperRule>(s, static_cast<std::size_t>(growth));
  return s;
}

void UnicodeUpperCaseMe(wchar_t* s)
{
  qxpaf::MapWide<qxpaf::UpperMapping>(s, std::wcslen(s));
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
  qxpaf::MapWide(s.data(), s.size(), fold);
  if (fold.Growth() != 0) qxpaf::ExpandElements<qxpaf::FoldRule>(s, fold.Growth());
  return s;
}

std::wstring UnicodeFold(const std::wstring& s)
{
  return s;
}
