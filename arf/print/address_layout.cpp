#include "arf/print/address_layout.h"

#include <algorithm>
#include <array>

#include "arf/match/address_text.h"
#include "arf/print/address_lines.h"
#include "arf/tables/level_types.h"
#include "arf/tables/states.h"
#include "arf/tables/street_suffixes.h"
#include "arf/tables/street_types.h"
#include "arf/tables/unit_types.h"
#include "qxpaf/arf_au.h"
#include "qxpaf/text/encoding.h"
#include "qxpaf/text/normalise.h"
#include "qxpaf/text/unicode.h"

namespace arf {
namespace {

constexpr std::size_t kLongestWidth = 0xFFFF;

constexpr bool IsDigitByte(char c)
{
  return c >= '0' && c <= '9';
}

/** Words that stay in upper case wherever they stand. */
constexpr std::string_view kInitials[] = {"PO", "GPO", "RMB", "RMS", "RSD", "CMB", "CMA", "CPA", "MS", "LOC"};

/** Applies `change` to each word of a text in place. */
template <class Change>
void ForEachWord(char* text, std::size_t length, Change change)
{
  for (std::size_t begin = 0; begin < length;) {
    std::size_t end = begin;
    while (end < length && text[end] != ' ' && text[end] != ',') ++end;
    if (end > begin) change(text + begin, end - begin);
    begin = end + 1;
  }
}

void UpperAscii(char* word, std::size_t length)
{
  for (std::size_t i = 0; i < length; ++i)
    if (word[i] >= 'a' && word[i] <= 'z') word[i] = static_cast<char>(word[i] - 'a' + 'A');
}

/** "1ST", "22ND": digits with the letters of an ordinal, which stay small. */
bool IsOrdinal(std::string_view word)
{
  if (word.size() < 3 || !IsDigitByte(word[word.size() - 3])) return false;
  const std::string_view end = word.substr(word.size() - 2);
  return end == "st" || end == "nd" || end == "rd" || end == "th";
}

/** After title case: numbers with letters, initials and states get their capitals back. */
void RestoreCapitals(char* word, std::size_t length, bool isLastLine)
{
  const std::string_view view(word, length);
  const bool hasDigit = std::any_of(view.begin(), view.end(), IsDigitByte);
  if (hasDigit && !IsOrdinal(view)) return UpperAscii(word, length);
  std::array<char, 4> upper{};
  if (length >= upper.size()) return;
  std::copy(view.begin(), view.end(), upper.begin());
  UpperAscii(upper.data(), length);
  const std::string_view key(upper.data(), length);
  const bool isState = isLastLine && StateCode(key) == key;
  if (isState || std::find(std::begin(kInitials), std::end(kInitials), key) != std::end(kInitials))
    UpperAscii(word, length);
}

/** Appends UTF-8 text in upper case. Bytes that are no UTF-8 and characters without an upper case stay as they are. */
void AppendUpper(BoundedText& out, const char* text)
{
  constexpr wchar_t kSharpS = 0xDF;
  while (*text != '\0') {
    const char* const begin = text;
    wchar_t c = 0;
    if (!NextUtf8Char(c, text)) {
      text = begin + 1;
      c = 0;
    }
    const wchar_t upper = UnicodeToUpper(c);
    std::array<char, 4> bytes;
    if (c == kSharpS)
      out << "SS";
    else if (upper == c)
      out << std::string_view(begin, static_cast<std::size_t>(text - begin));
    else
      out << std::string_view(bytes.data(), static_cast<std::size_t>(WideCharToUtf8(bytes.data(), upper)));
  }
}

/** A line in the letter case that the options ask for. In upper case it may be longer. */
class CasedLine
{
 public:
  CasedLine(std::string_view line, const LayoutOptions& options, bool isLast)
      : cased_(upper_.data(), static_cast<int>(upper_.size())), length_(line.size())
  {
    std::copy(line.begin(), line.end(), text_.begin());
    text_[length_] = '\0';
    isUpper_ = options.upper || (isLast && options.lastLineUpper);
    if (isUpper_) {
      AppendUpper(cased_, text_.data());
      return;
    }
    TitleCaseUtf8(text_.data());
    ForEachWord(text_.data(), length_, [isLast](char* word, std::size_t n) { RestoreCapitals(word, n, isLast); });
  }
  CasedLine(const CasedLine&) = delete;
  CasedLine& operator=(const CasedLine&) = delete;

  std::string_view View() const { return isUpper_ ? cased_.View() : std::string_view(text_.data(), length_); }

 private:
  std::array<char, AddressLines::kMaxLength + 1> text_;
  std::array<char, 2 * AddressLines::kMaxLength + 1> upper_;  ///< no character of two bytes or more doubles
  BoundedText cased_;                                         ///< in upper_
  std::size_t length_;
  bool isUpper_;
};

bool Fit(AddressLines& lines, const LayoutOptions& options)
{
  if (options.maxWidth > 0 && !options.oneLine && !lines.Wrap(options.maxWidth)) return false;
  const std::size_t most = options.oneLine ? 1 : options.maxLines;
  if (most == 0) return true;
  return lines.JoinTo(most, options.maxWidth);
}

/** Cases the lines while the last of them is still a line of its own, then fits and writes them. */
bool WriteLines(const AddressLines& written, const LayoutOptions& options, char separator, BoundedText& out)
{
  AddressLines lines;
  for (std::size_t i = 0; i < written.Count(); ++i)
    if (!lines.Add(CasedLine(written[i], options, i + 1 == written.Count()).View())) return false;
  if (!Fit(lines, options)) return false;
  for (std::size_t i = 0; i < lines.Count(); ++i) {
    if (i > 0) out << separator;
    out << lines[i];
  }
  return true;
}

/** An address with its types abbreviated for print. One letter without a number would be read as something else. */
void Abbreviate(Point& point, Street& street)
{
  point.unitType = AbbreviateUnitType(point.unitType);
  const std::string_view level = AbbreviateLevelType(point.levelType);
  if (level.size() > 1 || !point.levelNumber.empty()) point.levelType = level;
  if (street.isPostal) return;
  street.type = AbbreviateStreetType(street.type);
  street.suffix = AbbreviateStreetSuffix(street.suffix);
}

bool EndsLine(char c)
{
  return c == ',' || c == '\n' || c == '\r' || c == '\t';
}

/** Adds the words of one part of a text, single-spaced. */
bool AddWords(AddressLines& lines, std::string_view part)
{
  bool isFirst = true;
  while (!part.empty()) {
    const std::size_t end = std::min(part.find(' '), part.size());
    const std::string_view word = part.substr(0, end);
    part.remove_prefix(std::min(end + 1, part.size()));
    if (word.empty()) continue;
    if (!(isFirst ? lines.Add(word) : lines.Extend(" ", word))) return false;
    isFirst = false;
  }
  return true;
}

}  // namespace

LayoutOptions LayoutOptions::Of(long formatOption)
{
  const auto has = [formatOption](long bit) { return (formatOption & bit) != 0; };
  LayoutOptions options;
  options.upper = has(PAF_AU_FORMAT_UPPER);
  options.lastLineUpper = !has(PAF_AU_FORMAT_LAST_LINE_TITLE);
  options.abbreviate = has(PAF_AU_FORMAT_ABBREVIATE);
  options.oneLine = has(PAF_AU_FORMAT_ONE_LINE);
  options.maxLines = static_cast<std::size_t>((formatOption >> PAF_AU_FORMAT_LINES_SHIFT) & 0xFF);
  options.maxWidth = static_cast<std::size_t>(formatOption >> PAF_AU_FORMAT_WIDTH_SHIFT) & kLongestWidth;
  return options;
}

bool LayOutAddress(const Database& database, std::uint32_t ordinal, const LayoutOptions& options, char separator,
                   BoundedText& out)
{
  Point point = database.PointAt(ordinal);
  Street street = database.StreetAt(point.street);
  const Locality locality = database.LocalityAt(street.locality);
  if (options.abbreviate) Abbreviate(point, street);
  std::array<char, AddressLines::kMaxLength + 1> streetBuffer, lastBuffer;
  BoundedText streetLine(streetBuffer.data(), static_cast<int>(streetBuffer.size()));
  BoundedText lastLine(lastBuffer.data(), static_cast<int>(lastBuffer.size()));
  AppendStreetLine(streetLine, point, street);
  AppendLocality(lastLine, locality);
  AddressLines lines;
  return streetLine.IsWhole() && lastLine.IsWhole() && lines.Add(point.building) && lines.Add(streetLine.View()) &&
         lines.Add(lastLine.View()) && WriteLines(lines, options, separator, out);
}

bool LayOutText(std::string_view text, const LayoutOptions& options, char separator, BoundedText& out)
{
  AddressLines lines;
  while (!text.empty()) {
    const auto end = static_cast<std::size_t>(std::find_if(text.begin(), text.end(), EndsLine) - text.begin());
    if (!AddWords(lines, text.substr(0, end))) return false;
    text.remove_prefix(std::min(end + 1, text.size()));
  }
  return WriteLines(lines, options, separator, out);
}

}  // namespace arf
