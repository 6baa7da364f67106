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

/** 0 for no digits, otherwise the number and one. */
std::uint64_t CodedNumber(std::string_view digits)
{
  std::uint64_t number = 0;
  for (const char digit : digits) number = number * 10 + static_cast<std::uint64_t>(digit - '0');
  return digits.empty() ? 0 : number + 1;
}

}  // namespace

std::uint64_t AttributeValues::Code(std::uint32_t front, std::uint64_t number)
{
  if (front >> (64 - kNumberBits) != 0) throw BuildError("an attribute has too many different values");
  return std::uint64_t{front} << kNumberBits | number;
}

void AttributeValues::Reserve(std::size_t rows)
{
  groups_.reserve(rows / kGroupRows + 1);
  if (!codes_.empty()) codes_.reserve(rows);
}

void AttributeValues::Add(std::string_view text)
{
  const std::size_t at = NumberAt(text);
  AddCode(Code(fronts_.Intern(text.substr(0, at)), CodedNumber(text.substr(at))));
}

void AttributeValues::AddCode(std::uint64_t code)
{
  if (rows_ % kGroupRows == 0) groups_.push_back({0, static_cast<std::uint32_t>(codes_.size())});
  if (code != 0) {
    groups_.back().filled |= std::uint64_t{1} << (rows_ % kGroupRows);
    codes_.push_back(code);
  }
  ++rows_;
}

std::optional<std::uint64_t> AttributeValues::FindCode(std::string_view text) const
{
  const std::size_t at = NumberAt(text);
  const std::optional<std::uint32_t> front = fronts_.Find(text.substr(0, at));
  return front ? std::optional(Code(*front, CodedNumber(text.substr(at)))) : std::nullopt;
}

void AttributeValues::Append(const AttributeValues& other, const std::vector<bool>& taken)
{
  std::vector<std::uint32_t> fronts;
  for (std::uint32_t i = 0; i < other.fronts_.Count(); ++i) fronts.push_back(fronts_.Intern(other.fronts_.At(i)));
  for (std::size_t row = 0; row < other.Size(); ++row) {
    const std::uint64_t code = other.CodeOf(row);
    if (taken[row]) AddCode(Code(fronts[FrontOf(code)], NumberOf(code)));
  }
}

void AttributeValues::Keep(const std::vector<bool>& keep)
{
  // In place: neither a row nor its code ever moves back.
  std::size_t kept = 0, keptCodes = 0;
  Group filling;
  for (std::size_t row = 0; row < rows_; ++row) {
    const std::uint64_t code = CodeOf(row);
    if (!keep[row]) continue;
    if (code != 0) {
      filling.filled |= std::uint64_t{1} << (kept % kGroupRows);
      codes_[keptCodes++] = code;
    }
    if (++kept % kGroupRows != 0) continue;
    groups_[kept / kGroupRows - 1] = filling;
    filling = {0, static_cast<std::uint32_t>(keptCodes)};
  }
  if (kept % kGroupRows != 0) groups_[kept / kGroupRows] = filling;
  groups_.resize((kept + kGroupRows - 1) / kGroupRows);
  codes_.resize(keptCodes);
  rows_ = kept;
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
