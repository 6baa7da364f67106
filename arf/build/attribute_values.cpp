#include "arf/build/attribute_values.h"

#include <algorithm>
#include <array>
#include <charconv>

#include "arf/build/build_error.h"

namespace arf {
namespace {

constexpr std::size_t kMaxDigits = 11;  // whose numbers, and one more, fit beside the front

bool IsDigit(char c)
{
  return c >= '0' && c <= '9';
}

/** Where the number at the end of a text begins; it has no leading zero, so the text can be put together again. */
std::size_t NumberAt(std::string_view text)
{
  std::size_t at = text.size();
  while (at > 0 && text.size() - at < kMaxDigits && IsDigit(text[at - 1])) --at;
  while (at < text.size() && text[at] == '0') ++at;
  return at;
}

}  // namespace

std::uint64_t AttributeValues::Code(std::uint32_t front, std::uint64_t number)
{
  if (front >> (64 - kNumberBits) != 0) throw BuildError("an attribute has too many different values");
  return std::uint64_t{front} << kNumberBits | number;
}

void AttributeValues::Add(std::string_view text)
{
  const std::size_t at = NumberAt(text);
  std::uint64_t number = 0;
  for (const char digit : text.substr(at)) number = number * 10 + static_cast<std::uint64_t>(digit - '0');
  codes_.push_back(Code(fronts_.Intern(text.substr(0, at)), at < text.size() ? number + 1 : 0));
}

void AttributeValues::Append(const AttributeValues& other, const std::vector<bool>& taken)
{
  std::vector<std::uint32_t> fronts;
  for (std::uint32_t i = 0; i < other.fronts_.Count(); ++i) fronts.push_back(fronts_.Intern(other.fronts_.At(i)));
  for (std::size_t row = 0; row < other.codes_.size(); ++row) {
    const std::uint64_t code = other.codes_[row];
    if (taken[row]) codes_.push_back(Code(fronts[FrontOf(code)], NumberOf(code)));
  }
}

void AttributeValues::Keep(const std::vector<bool>& keep)
{
  std::size_t kept = 0;
  for (std::size_t row = 0; row < codes_.size(); ++row) {
    if (keep[row]) codes_[kept++] = codes_[row];
  }
  codes_.resize(kept);
}

std::string_view AttributeValues::TextOfCode(std::uint64_t code, std::string& scratch) const
{
  scratch = fronts_.At(FrontOf(code));
  if (NumberOf(code) == 0) return scratch;
  std::array<char, 24> digits;
  const auto end = std::to_chars(digits.begin(), digits.end(), NumberOf(code) - 1).ptr;
  scratch.append(digits.begin(), end);
  return scratch;
}

}  // namespace arf
