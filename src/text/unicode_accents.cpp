// Accent removal from wide text, and in place from UTF-8.
#include <algorithm>
#include <cstring>
#include <cwchar>
#include <iterator>

#include "qxpaf/text/unicode.h"
#include "text/unicode_map.h"
#include "text/unicode_tables.h"

namespace qxpaf {
namespace {

using AccentMapping = TableMapping<kAccents, AsciiCase::kKept>;

// What the entries of the UTF-8 tables are looked up with: the low six bits of a continuation byte; anything from 64 on
// for a byte that is none.
constexpr unsigned int kContinuationValues = 64;

unsigned int ContinuationValue(char byte)
{
  return static_cast<unsigned char>(byte) ^ 0x80U;
}

constexpr unsigned char kFirstLeadOfTwo = 0xC3;
constexpr unsigned char kLastLeadOfTwo = 0xC8;
constexpr unsigned char kLeadOfThree = 0xE1;
constexpr unsigned int kFirstMiddleOfThree = 0xB8;
constexpr unsigned int kRowsOfThree = std::size(kUtf8BasesOfThree) / kContinuationValues;

// Whether a sequence that starts with this byte can be replaced.
bool IsLead(unsigned char byte)
{
  return byte >= kFirstLeadOfTwo && (byte <= kLastLeadOfTwo || byte == kLeadOfThree);
}

// The byte that replaces the two at s, of which the first is a lead of two; 0 for none.
char BaseOfTwo(const char* s, const char* end)
{
  if (end - s < 2) return 0;
  const unsigned int row = static_cast<unsigned char>(s[0]) - unsigned{kFirstLeadOfTwo};
  const unsigned int last = ContinuationValue(s[1]);
  return last < kContinuationValues ? static_cast<char>(kUtf8BasesOfTwo[row * kContinuationValues + last]) : '\0';
}

// The same for the three at s, of which the first is the lead of three.
char BaseOfThree(const char* s, const char* end)
{
  if (end - s < 3) return 0;
  const unsigned int row = static_cast<unsigned char>(s[1]) - kFirstMiddleOfThree;
  const unsigned int last = ContinuationValue(s[2]);
  if (row >= kRowsOfThree || last >= kContinuationValues) return 0;
  return static_cast<char>(kUtf8BasesOfThree[row * kContinuationValues + last]);
}

// Replaces the sequence at `from`, whose first byte is a lead, and moves both positions; false when it stays. Kept
// apart by its branches on purpose: lengths that are computed would make every step wait for the tables.
bool Replace(const char*& from, const char* end, char*& to)
{
  if (static_cast<unsigned char>(*from) != kLeadOfThree) {
    const char base = BaseOfTwo(from, end);
    if (base == 0) [[unlikely]]
      return false;
    *to++ = base;
    from += 2;
    return true;
  }
  const char base = BaseOfThree(from, end);
  if (base == 0) [[unlikely]]
    return false;
  *to++ = base;
  from += 3;
  return true;
}

// The leads among eight bytes, by their top bits.
constexpr std::uint64_t kEachByte = 0x0101010101010101;
constexpr std::uint64_t kTopBits = 0x80 * kEachByte;

// Top bits of the bytes that are at least `byte`, which is above 0x80, if theirs is set. `low` are their other seven
// bits; none carries into the next byte.
constexpr std::uint64_t AtLeast(std::uint64_t low, unsigned int byte)
{
  return low + (0x100 - byte) * kEachByte;
}

constexpr std::uint64_t MarkLeads(std::uint64_t word)
{
  const std::uint64_t low = word & ~kTopBits;
  const std::uint64_t ofTwo = AtLeast(low, kFirstLeadOfTwo) & ~AtLeast(low, kLastLeadOfTwo + 1);
  const std::uint64_t ofThree = AtLeast(low, kLeadOfThree) & ~AtLeast(low, kLeadOfThree + 1);
  return word & (ofTwo | ofThree) & kTopBits;
}

// The first lead, or end.
const char* FindLead(const char* s, const char* end)
{
  std::uint64_t word;
  for (; static_cast<std::size_t>(end - s) >= sizeof word; s += sizeof word) {
    std::memcpy(&word, s, sizeof word);
    if (MarkLeads(word) != 0) break;
  }
  return std::find_if(s, end, [](char byte) { return IsLead(static_cast<unsigned char>(byte)); });
}

// The first sequence that is replaced, or end.
const char* FindReplaced(const char* s, const char* end)
{
  for (s = FindLead(s, end); s < end; s = FindLead(s + 1, end)) {
    const bool isThree = static_cast<unsigned char>(*s) == kLeadOfThree;
    if ((isThree ? BaseOfThree(s, end) : BaseOfTwo(s, end)) != 0) break;
  }
  return s;
}

// The bytes after which words without leads are looked for again.
constexpr std::ptrdiff_t kStretch = 12;

// Moves eight bytes at a time as long as there is no lead among them. The target does not lie behind the source.
void CopyWords(const char*& from, const char* end, char*& to)
{
  std::uint64_t word;
  while (static_cast<std::size_t>(end - from) >= sizeof word) {
    std::memcpy(&word, from, sizeof word);
    if (MarkLeads(word) != 0) return;
    std::memcpy(to, &word, sizeof word);
    from += sizeof word;
    to += sizeof word;
  }
}

// Closes the gaps on the way, every byte being moved once, and writes nothing
// where nothing is replaced. Returns the new length.
std::size_t RemoveAccents(char* s, std::size_t n)
{
  const char* const end = s + n;
  const char* from = FindReplaced(s, end);
  char* to = s + (from - s);
  while (from < end) {
    CopyWords(from, end, to);
    for (const char* const stop = from + std::min<std::ptrdiff_t>(end - from, kStretch); from < stop;) {
      if (IsLead(static_cast<unsigned char>(*from)) && Replace(from, end, to)) continue;
      *to++ = *from++;
    }
  }
  return static_cast<std::size_t>(to - s);
}

}  // namespace
}  // namespace qxpaf

wchar_t UnicodeRemoveAccents(wchar_t c)
{
  return qxpaf::MapCharacter<qxpaf::AccentMapping>(c);
}

std::wstring UnicodeRemoveAccents(std::wstring s)
{
  qxpaf::MapWide<qxpaf::AccentMapping>(s.data(), s.size());
  return s;
}

void UnicodeRemoveAccentsMe(wchar_t* s)
{
  qxpaf::MapWide<qxpaf::AccentMapping>(s, std::wcslen(s));
}

void Utf8RemoveAccentsMe(char* s)
{
  const std::size_t n = std::strlen(s);
  const std::size_t kept = qxpaf::RemoveAccents(s, n);
  std::fill(s + kept, s + n, '\0');
}

void Utf8RemoveAccentsMe(std::string& s)
{
  s.resize(qxpaf::RemoveAccents(s.data(), s.size()));
}
