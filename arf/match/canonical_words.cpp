#include "arf/match/canonical_words.h"

#include <algorithm>

namespace arf {
namespace {

constexpr CanonicalRow kRows[] = {
    {"BCH", "BEACH"},       {"CK", "CREEK"},         {"CRK", "CREEK"},       {"E", "EAST"},
    {"EIGHTEENTH", "18TH"}, {"EIGHTH", "8TH"},       {"ELEVENTH", "11TH"},   {"FIFTEENTH", "15TH"},
    {"FIFTH", "5TH"},       {"FIRST", "1ST"},        {"FOURTEENTH", "14TH"}, {"FOURTH", "4TH"},
    {"FT", "FORT"},         {"GDNS", "GARDENS"},     {"GT", "GREAT"},        {"HARBOR", "HARBOUR"},
    {"HBR", "HARBOUR"},     {"HDS", "HEADS"},        {"HGTS", "HEIGHTS"},    {"HTS", "HEIGHTS"},
    {"IS", "ISLAND"},       {"ISL", "ISLAND"},       {"JCT", "JUNCTION"},    {"JN", "JUNCTION"},
    {"LT", "LITTLE"},       {"LTL", "LITTLE"},       {"LWR", "LOWER"},       {"MT", "MOUNT"},
    {"N", "NORTH"},         {"NINETEENTH", "19TH"},  {"NINTH", "9TH"},       {"NTH", "NORTH"},
    {"PK", "PARK"},         {"PT", "POINT"},         {"S", "SOUTH"},         {"SAINT", "ST"},
    {"SECOND", "2ND"},      {"SEVENTEENTH", "17TH"}, {"SEVENTH", "7TH"},     {"SIXTEENTH", "16TH"},
    {"SIXTH", "6TH"},       {"SPGS", "SPRINGS"},     {"SPRS", "SPRINGS"},    {"STH", "SOUTH"},
    {"TENTH", "10TH"},      {"THIRD", "3RD"},        {"THIRTEENTH", "13TH"}, {"TWELFTH", "12TH"},
    {"TWENTIETH", "20TH"},  {"UPR", "UPPER"},        {"VLLY", "VALLEY"},     {"VLY", "VALLEY"},
    {"W", "WEST"},
};
static_assert(std::is_sorted(std::begin(kRows), std::end(kRows),
                             [](const CanonicalRow& a, const CanonicalRow& b) { return a.written < b.written; }));

constexpr std::size_t kLongestWritten = 11;  // of the column above
constexpr std::string_view kArticle = "THE";

/** Where the rows of each first letter start; the rows of letter i end where those of letter i + 1 start. */
constexpr auto kLetterStarts = [] {
  std::array<std::uint8_t, 27> starts{};
  for (std::size_t letter = 0; letter < starts.size(); ++letter)
    for (const CanonicalRow& row : kRows)
      if (row.written.front() < static_cast<char>('A' + letter)) ++starts[letter];
  return starts;
}();

std::string_view FirstWord(std::string_view key)
{
  return key.substr(0, key.find(' '));
}

}  // namespace

std::span<const CanonicalRow> CanonicalRows()
{
  return kRows;
}

std::string_view CanonicalWord(std::string_view word)
{
  if (word.empty() || word.size() > kLongestWritten || word.front() < 'A' || word.front() > 'Z') return word;
  const auto letter = static_cast<std::size_t>(word.front() - 'A');
  for (std::size_t i = kLetterStarts[letter]; i < kLetterStarts[letter + 1]; ++i)
    if (kRows[i].written == word) return kRows[i].canonical;
  return word;
}

bool IsArticle(std::string_view word)
{
  return word == kArticle;
}

bool AreInitials(std::string_view word, std::string_view neighbour)
{
  const auto isLetter = [](std::string_view text) { return text.size() == 1 && (text[0] < '0' || text[0] > '9'); };
  return isLetter(word) && isLetter(neighbour);
}

CanonicalName::CanonicalName(std::string_view key)
{
  std::string_view before;
  while (!key.empty()) {
    const std::string_view word = FirstWord(key);
    key.remove_prefix(std::min(word.size() + 1, key.size()));
    const bool isInitial = AreInitials(word, before) || AreInitials(word, FirstWord(key));
    before = word;
    if (length_ == 0 && !hasArticle_ && IsArticle(word) && !key.empty()) {
      hasArticle_ = true;
      continue;
    }
    const std::string_view canonical = (isInitial ? word : CanonicalWord(word)).substr(0, text_.size() - 1 - length_);
    std::copy(canonical.begin(), canonical.end(), text_.begin() + static_cast<std::ptrdiff_t>(length_));
    length_ += canonical.size();
  }
  text_[length_] = '\0';
}

std::uint32_t CanonicalName::Hash() const
{
  return HashCanonical(kHashStart, View());
}

}  // namespace arf
