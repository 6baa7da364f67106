#include "arf/build/string_pool.h"

#include <algorithm>
#include <cstring>
#include <functional>
#include <numeric>
#include <utility>

#include "arf/build/build_error.h"

namespace arf {
namespace {

constexpr std::uint32_t kFree = UINT32_MAX;
constexpr std::size_t kChunkSize = 1 << 16;
constexpr std::size_t kFirstSlots = 64;

std::uint32_t HashOf(std::string_view text)
{
  const std::size_t hash = std::hash<std::string_view>()(text);
  return static_cast<std::uint32_t>(hash ^ (hash >> 32));
}

}  // namespace

StringPool::StringPool() : slots_(kFirstSlots, kFree)
{
  Intern({});
}

std::uint32_t StringPool::Intern(std::string_view text)
{
  const std::uint32_t hash = HashOf(text);
  std::size_t slot = SlotOf(text, hash);
  if (slots_[slot] != kFree) return slots_[slot];
  if (entries_.size() >= kFree) throw BuildError("more than four thousand million different texts");
  if (entries_.size() + 1 > slots_.size() / 4 * 3) {
    Grow();
    slot = SlotOf(text, hash);
  }
  slots_[slot] = Count();
  entries_.push_back({Keep(text), static_cast<std::uint32_t>(text.size()), hash});
  return slots_[slot];
}

std::optional<std::uint32_t> StringPool::Find(std::string_view text) const
{
  const std::uint32_t number = slots_[SlotOf(text, HashOf(text))];
  return number == kFree ? std::nullopt : std::optional(number);
}

/** The slot that holds the text, or the free one where it belongs. */
std::size_t StringPool::SlotOf(std::string_view text, std::uint32_t hash) const
{
  const std::size_t mask = slots_.size() - 1;
  std::size_t slot = hash & mask;
  while (slots_[slot] != kFree) {
    if (entries_[slots_[slot]].hash == hash && At(slots_[slot]) == text) break;
    slot = (slot + 1) & mask;
  }
  return slot;
}

void StringPool::Grow()
{
  slots_.assign(slots_.size() * 2, kFree);
  const std::size_t mask = slots_.size() - 1;
  for (std::uint32_t number = 0; number < Count(); ++number) {
    std::size_t slot = entries_[number].hash & mask;
    while (slots_[slot] != kFree) slot = (slot + 1) & mask;
    slots_[slot] = number;
  }
}

const char* StringPool::Keep(std::string_view text)
{
  if (text.size() > chunkLeft_) {
    const std::size_t size = std::max(kChunkSize, text.size());
    chunks_.push_back(std::make_unique_for_overwrite<char[]>(size));
    chunkNext_ = chunks_.back().get();
    chunkLeft_ = size;
  }
  if (!text.empty()) std::memcpy(chunkNext_, text.data(), text.size());
  chunkLeft_ -= text.size();
  return std::exchange(chunkNext_, chunkNext_ + text.size());
}

std::vector<std::uint32_t> StringPool::SortedNumbers() const
{
  std::vector<std::uint32_t> order(entries_.size());
  std::iota(order.begin(), order.end(), 0U);
  std::sort(order.begin(), order.end(), [&](std::uint32_t a, std::uint32_t b) { return At(a) < At(b); });
  return order;
}

std::vector<std::uint32_t> StringPool::Ranks() const
{
  return Inverse(SortedNumbers());
}

std::vector<std::uint32_t> Inverse(const std::vector<std::uint32_t>& order)
{
  std::vector<std::uint32_t> ranks(order.size());
  for (std::uint32_t i = 0; i < order.size(); ++i) ranks[order[i]] = i;
  return ranks;
}

}  // namespace arf
