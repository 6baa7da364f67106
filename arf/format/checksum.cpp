#include "arf/format/checksum.h"

#include <cstring>

namespace arf {
namespace {

constexpr std::uint64_t kOdd = 0x9E3779B97F4A7C15;  // 2^64 divided by the golden ratio: odd, bits well spread

std::uint64_t Mix(std::uint64_t state, std::uint64_t word)
{
  state = (state ^ word) * kOdd;
  return state ^ (state >> 32);
}

}  // namespace

void Checksum::Add(const std::uint8_t* data, std::size_t size)
{
  std::array<std::uint64_t, kLanes> lanes = lanes_;
  for (std::size_t at = 0; at < size; at += kStripe) {
    std::array<std::uint64_t, kLanes> words;
    std::memcpy(words.data(), data + at, kStripe);
    for (std::size_t i = 0; i < kLanes; ++i) lanes[i] = Mix(lanes[i], words[i]);
  }
  lanes_ = lanes;
  size_ += size;
}

std::uint64_t Checksum::Value() const
{
  std::uint64_t value = Mix(kOdd, size_);
  for (const std::uint64_t lane : lanes_) value = Mix(value, lane);
  return Mix(value, kOdd);
}

}  // namespace arf
