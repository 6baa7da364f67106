#include "arf/search/concordance.h"

#include <algorithm>
#include <bit>

namespace arf {
namespace {

constexpr std::size_t kLeastTableSize = 1024;

/** FNV-1a with a final mixing; never 0. */
std::uint64_t HashOf(std::string_view text)
{
  std::uint64_t hash = 14695981039346656037U;
  for (const char c : text) hash = (hash ^ static_cast<unsigned char>(c)) * 1099511628211U;
  hash ^= hash >> 32;
  hash *= 0x9E3779B97F4A7C15U;
  return (hash ^ hash >> 29) | 1U;
}

std::size_t SlotOf(std::uint64_t from, std::uint64_t to)
{
  return static_cast<std::size_t>((from * 31 + to) >> 24);
}

/** The first bytes of a text as numbers that compare as they do. */
std::array<std::uint64_t, 2> BeginningOf(std::string_view text)
{
  std::array<std::uint64_t, 2> beginning{};
  for (std::size_t i = 0; i < std::min<std::size_t>(text.size(), 16); ++i)
    beginning[i / 8] |= std::uint64_t{static_cast<unsigned char>(text[i])} << (56 - i % 8 * 8);
  return beginning;
}

}  // namespace

void Concordance::Start(CodeKind from, std::string_view code, CodeKind to, double minimumPercent)
{
  from_ = from;
  to_ = to;
  if (table_.empty()) Reserve();
  std::fill(table_.begin(), table_.end(), Pair());
  used_ = 0;
  if (from.source == CodeKind::Postcode && !code.empty()) {
    for (const std::uint32_t index : database_.LocalitiesOfPostcode(code)) CountLocality(index, code);
  } else {
    for (std::uint32_t index = 0; index < database_.LocalityCount(); ++index) CountLocality(index, code);
  }
  Collect(minimumPercent);
  isStarted_ = true;
}

/** Room for what localities and postcodes can have with each other. */
void Concordance::Reserve()
{
  const std::size_t localities = database_.LocalityCount();
  table_.resize(std::bit_ceil(std::max(2 * localities + 2, kLeastTableSize)));
  pairs_.reserve(std::max(localities, kLeastTableSize / 2));
}

void Concordance::CountLocality(std::uint32_t index, std::string_view code)
{
  const Locality locality = database_.LocalityAt(index);
  if (locality.streets.count == 0) return;
  const std::uint32_t begin = database_.StreetAt(locality.streets.first).points.first;
  const Street last = database_.StreetAt(locality.streets.first + locality.streets.count - 1);
  const std::uint64_t end =
      std::min<std::uint64_t>(std::uint64_t{last.points.first} + last.points.count, database_.PointCount());
  // A code of the locality itself is that of all its points.
  const bool isFromFixed = from_.source != CodeKind::Attribute;
  const bool isToFixed = to_.source != CodeKind::Attribute;
  const bool isOneCode = isFromFixed && isToFixed;
  const auto all = static_cast<std::uint32_t>(end - std::min<std::uint64_t>(begin, end));
  const std::uint32_t step = isOneCode ? all : 1;
  const std::uint32_t addresses = isOneCode ? all - database_.AddressAliasCount({begin, all}) : 1;
  CodeText fromText, toText;
  std::string_view from = CodeOf(database_, from_, begin, locality, fromText);
  std::string_view to = CodeOf(database_, to_, begin, locality, toText);
  if (isFromFixed && !code.empty() && !IsSameCode(from_, code, from)) return;
  for (std::uint64_t i = begin; i < end; i += step) {
    const auto ordinal = static_cast<std::uint32_t>(i);
    if (addresses == 0 || (!isOneCode && database_.IsAddressAlias(ordinal))) continue;
    if (!isFromFixed) from = CodeOf(database_, from_, ordinal, locality, fromText);
    if (from.empty() || (!isFromFixed && !code.empty() && !IsSameCode(from_, code, from))) continue;
    if (!isToFixed) to = CodeOf(database_, to_, ordinal, locality, toText);
    if (!to.empty()) Count(ordinal, addresses, from, to);
  }
}

void Concordance::Count(std::uint32_t ordinal, std::uint32_t addresses, std::string_view fromCode,
                        std::string_view toCode)
{
  if (2 * used_ >= table_.size()) Grow();
  const std::uint64_t from = HashOf(fromCode), to = HashOf(toCode);
  const std::size_t mask = table_.size() - 1;
  std::size_t slot = SlotOf(from, to) & mask;
  while (table_[slot].from != 0 && (table_[slot].from != from || table_[slot].to != to)) slot = (slot + 1) & mask;
  Pair& pair = table_[slot];
  if (pair.from == 0) {
    pair = {from, to, {ordinal, 0, 0}};
    ++used_;
  }
  pair.found.addresses += addresses;
}

void Concordance::Grow()
{
  std::vector<Pair> before(table_.size() * 2);
  before.swap(table_);
  const std::size_t mask = table_.size() - 1;
  for (const Pair& pair : before) {
    if (pair.from == 0) continue;
    std::size_t slot = SlotOf(pair.from, pair.to) & mask;
    while (table_[slot].from != 0) slot = (slot + 1) & mask;
    table_[slot] = pair;
  }
}

std::string_view Concordance::CodeAt(CodeKind kind, const Correspondence& found, CodeText& text) const
{
  const Street street = database_.StreetAt(database_.StreetOf(found.ordinal));
  return CodeOf(database_, kind, found.ordinal, database_.LocalityAt(street.locality), text);
}

bool Concordance::IsBefore(const Ranked& a, const Ranked& b) const
{
  const Correspondence& x = a.pair.found;
  const Correspondence& y = b.pair.found;
  if (a.beginning != b.beginning) return a.beginning < b.beginning;
  if (a.pair.from == b.pair.from)
    return x.addresses > y.addresses || (x.addresses == y.addresses && x.ordinal < y.ordinal);
  CodeText xText, yText;
  return FromCode(x, xText) < FromCode(y, yText);
}

void Concordance::Collect(double minimumPercent)
{
  pairs_.clear();
  next_ = 0;
  for (const Pair& pair : table_) {
    if (pair.from == 0) continue;
    CodeText text;
    pairs_.push_back({BeginningOf(FromCode(pair.found, text)), pair});
  }
  std::sort(pairs_.begin(), pairs_.end(), [this](const Ranked& a, const Ranked& b) { return IsBefore(a, b); });
  for (std::size_t begin = 0, end = 0; begin < pairs_.size(); begin = end) {
    std::uint32_t total = 0;
    for (end = begin; end < pairs_.size() && pairs_[end].pair.from == pairs_[begin].pair.from; ++end)
      total += pairs_[end].pair.found.addresses;
    for (std::size_t i = begin; i < end; ++i) pairs_[i].pair.found.total = total;
  }
  std::erase_if(pairs_, [&](const Ranked& ranked) { return ranked.pair.found.Percent() < minimumPercent; });
}

}  // namespace arf
