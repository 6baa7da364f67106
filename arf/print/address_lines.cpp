#include "arf/print/address_lines.h"

#include <algorithm>

namespace arf {
namespace {

constexpr std::string_view kJoint = ", ";

bool IsContinuation(char byte)
{
  return (static_cast<unsigned char>(byte) & 0xC0) == 0x80;
}

/** Where the last space is that leaves at most `width` characters before it; npos when the first word is longer. */
std::size_t BreakOf(std::string_view line, std::size_t width)
{
  std::size_t best = std::string_view::npos;
  for (std::size_t space = line.find(' '); space != std::string_view::npos; space = line.find(' ', space + 1)) {
    if (CharactersOf(line.substr(0, space)) > width) break;
    best = space;
  }
  return best;
}

}  // namespace

std::size_t CharactersOf(std::string_view text)
{
  return text.size() - static_cast<std::size_t>(std::count_if(text.begin(), text.end(), IsContinuation));
}

bool AddressLines::Add(std::string_view line)
{
  if (line.empty()) return true;
  if (count_ == kMaxLines || line.size() > kMaxLength) return false;
  lines_[count_++] = Line(line);
  return true;
}

bool AddressLines::Extend(std::string_view between, std::string_view words)
{
  if (count_ == 0) return Add(words);
  return lines_[count_ - 1].Append(between) && lines_[count_ - 1].Append(words);
}

bool AddressLines::WrapLine(std::string_view line, std::size_t width)
{
  while (CharactersOf(line) > width) {
    const std::size_t end = BreakOf(line, width);
    if (end == std::string_view::npos || !Add(line.substr(0, end))) return false;
    line.remove_prefix(end + 1);
  }
  return Add(line);
}

bool AddressLines::Wrap(std::size_t width)
{
  const AddressLines before = *this;
  count_ = 0;
  for (std::size_t i = 0; i < before.count_; ++i)
    if (!WrapLine(before[i], width)) return false;
  return true;
}

bool AddressLines::JoinTo(std::size_t most, std::size_t width)
{
  if (count_ <= most) return true;
  const AddressLines before = *this;
  std::size_t surplus = count_ - most;
  count_ = 0;
  for (std::size_t i = 0; i < before.count_; ++i) {
    const bool isLast = i + 1 == before.count_ && most > 1;
    const bool fits =
        count_ > 0 &&
        (width == 0 || CharactersOf((*this)[count_ - 1]) + kJoint.size() + CharactersOf(before[i]) <= width);
    if (surplus > 0 && !isLast && fits) {
      if (!Extend(kJoint, before[i])) return false;
      --surplus;
    } else if (!Add(before[i])) {
      return false;
    }
  }
  return surplus == 0;
}

}  // namespace arf
